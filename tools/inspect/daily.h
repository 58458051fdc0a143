// The daily totals of the whole site, from d/h/all.his and d/h/trades.his.
#pragma once

#include <cstddef>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sums.h"

namespace vantrel::inspect {

// A day that was recorded.
struct Day {
  std::string date;            // the day that was counted, "2026-11-16"
  bool late = false;           // recorded after midnight, and dated with the new day
  Sums all;                    // over all entries
  std::optional<Sums> trades;  // over the trades alone, rin over all; d/h/trades.his may miss a day
  std::int32_t gallery_out = 0;  // clicks to the gallery, the entry with id 1
  std::int32_t noref_in = 0;     // hits of the entry with id 3: visitors without a referrer
  std::int32_t listed_in = 0;    // hits of the entry with id 8: names listed in d/se
};

struct DailyTotals {
  std::vector<Day> days;       // oldest first
  std::size_t unreadable = 0;  // records without a date, left out
};

inline constexpr std::size_t kMostDays = 400;

// The newest days of both files, at most kMostDays. A day is recorded at 23:59. When that run did
// not happen, one shortly after midnight makes up for it and dates the record with its own day:
// such a record is the first of two of one date, or is dated today while today is not over.
[[nodiscard]] DailyTotals read_daily_totals(std::time_t now);

// Noon of the day "20261116", nothing when that is no day.
[[nodiscard]] std::optional<std::time_t> noon_of(std::string_view date);

// "2026-11-16", so many days before the local day of the moment.
[[nodiscard]] std::string date_text(std::time_t moment, int days_before = 0);

}  // namespace vantrel::inspect
