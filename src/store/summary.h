// The summary file d/t/sum: the three windows of every trade, carried from one run to the next.
//
// One line a trade, in the order of the work array:
//   | id | 14 counters of last60 | 14 of last24 | 14 of last07 |
// every piece ended by a bar, then a line feed; 44 bars in all. The run reads it as a stream of
// pieces and rewrites it whole; nothing else writes it. It cannot be rebuilt when it is lost.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "store/trade_index.h"

namespace vantrel {

inline constexpr const char* kSummaryFile = "d/t/sum";
// Piece 0 of a line is empty, or the line feed of the line before; piece 1 is the id.
inline constexpr std::size_t kSummaryPieces = 2 + 3 * kCounterCount;

// Adds the values of the file's text to the windows of the work array: lines with the same id add
// up, a line whose id no trade has goes to the reserved entry for the unknown. The work array has
// at least ten entries.
void add_summary(TradeStore& store, std::string_view text);

// Reads the file and adds its values. False, with an event, when it cannot be read.
[[nodiscard]] bool load_summary(TradeStore& store);

// The file's text for a work array.
[[nodiscard]] std::string encode_summary(const std::vector<TradeWork>& works);

// False, with an event, when the file cannot be written; the old one is then whole. Where another
// run has stored its totals since the file was loaded, what this run counted is added to those.
[[nodiscard]] bool write_summary(TradeStore& store);

// Two events when the marker d/jb of the administration side is missing.
void check_marker();

}  // namespace vantrel
