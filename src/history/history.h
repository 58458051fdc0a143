// History: one record a day for every trade (d/h/<name>.his) and two of totals (d/h/all.his,
// d/h/trades.his), and the 7-day window made of the last seven records of a trade.
//
// All three are streams of pieces that only grow; 30 pieces make a record. A trade's record:
//   0 empty, or the line feed of the record before   1 date %Y%m%d   2-15 the 14 counters of last24
//   16-29 empty, then a line feed
// A record of totals has no line feed: 0 empty, 1 date, 2-20 values, 21-29 empty.
#pragma once

#include <ctime>
#include <vector>

#include "base/start_clock.h"
#include "store/trade_record.h"

namespace vantrel {

// The totals of every day, over all entries and over the trades alone.
inline constexpr const char* kTotalsFile = "d/h/all.his";
inline constexpr const char* kTradeTotalsFile = "d/h/trades.his";

// True on every run but those of minute 1 in hours 1 to 23, when the 7-day window of the summary
// is used as it is.
[[nodiscard]] bool history_load_due(const StartClock& clock);

// Sets last07 of every entry to the sum of the last seven records of its history file. The file is
// read in pieces of fixed size, whatever its age. An event for each file that cannot be read.
void load_history(std::vector<TradeWork>& works);

// At 23:59; or from 0:02 to 0:19 when d/h/all.his was last written 61 to 2999 minutes ago, so that
// a day whose 23:59 run did not happen is not lost.
[[nodiscard]] bool history_due(const StartClock& clock);

// Appends a record dated with the run's day to every history file, trades in their ranked order.
// An event for each file that cannot be written. All are on disk when it returns.
void write_history(const std::vector<TradeWork>& ranked, const StartClock& clock);

}  // namespace vantrel
