#include "slots.h"

#include <algorithm>
#include <cstring>

#include "base/clock.h"
#include "traffic/windows.h"

namespace vantrel::inspect {

SlotHours hours_before(std::time_t last_run) {
  SlotHours hours;
  std::time_t ago = kHoursPerDay - 1;
  for (SlotHour& hour : hours) {
    hour.moment = last_run - ago * 60 * 60;
    hour.first_slot = local_time(hour.moment).tm_hour * 60;
    hour.slots = ago-- == 0 ? local_time(last_run).tm_min : 60;
  }
  return hours;
}

TrafficCounters sum_of(const SlotHour& hour, std::string_view statistics) {
  TrafficCounters sum;
  for (int minute = 0; minute < hour.slots; ++minute) {
    const auto offset = static_cast<std::size_t>(slot_offset(hour.first_slot + minute));
    if (offset >= statistics.size()) break;
    TrafficCounters slot_counters;
    std::memcpy(&slot_counters, statistics.data() + offset,
                std::min(sizeof slot_counters, statistics.size() - offset));
    add(sum, slot_counters);
  }
  return sum;
}

}  // namespace vantrel::inspect
