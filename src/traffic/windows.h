// The statistics files d/t/<id>, a ring of 1,440 minute slots each, and the windows they feed.
//
// Slot m, at offset m * 56, holds the 14 counters of the run that last handled minute m of the day.
// The administration side creates the files (80,640 zero bytes); the run overwrites single slots.
// A window is a running sum: the slot that leaves it is subtracted, the new counts are added.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "store/trade_record.h"

namespace vantrel {

inline constexpr int kMinutesPerDay = 1440;

[[nodiscard]] std::string statistics_path(std::int32_t id);
[[nodiscard]] constexpr std::uint64_t slot_offset(int minute_of_day) {
  return static_cast<std::uint64_t>(minute_of_day) * sizeof(TrafficCounters);
}

// Moves last24 and last60 of every entry on by its run counters and stores these in the slot of
// oldest, the oldest minute read. In every fifth minute (run_minute) negative window counters are
// then set to 0. False, with an event, when a statistics file cannot be read: nothing is stored in
// any file then.
[[nodiscard]] bool update_windows(std::vector<TradeWork>& works, std::time_t oldest,
                                  int run_minute);

}  // namespace vantrel
