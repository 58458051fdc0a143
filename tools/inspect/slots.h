// The minute slots of statistics files, summed by hour.
#pragma once

#include <array>
#include <ctime>
#include <string_view>

#include "store/trade_record.h"

namespace vantrel::inspect {

// An hour by the clock within the last day, and its slots in every statistics file.
struct SlotHour {
  std::time_t moment = 0;  // some moment of it
  int first_slot = 0;
  int slots = 0;  // 60, fewer in the hour of the last run
};
using SlotHours = std::array<SlotHour, kHoursPerDay>;

// The 24 hours up to the last run, oldest first. In its own hour only the minutes before it count:
// the slots behind them are of the day before.
[[nodiscard]] SlotHours hours_before(std::time_t last_run);

// The sum of an hour's slots in the bytes of a statistics file; slots behind its end are zero.
[[nodiscard]] TrafficCounters sum_of(const SlotHour& hour, std::string_view statistics);

}  // namespace vantrel::inspect
