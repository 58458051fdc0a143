#include "traffic/windows.h"

#include <algorithm>

#include "base/clock.h"
#include "base/files.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

constexpr int kClampEvery = 5;  // minutes

void advance(TrafficCounters& window, const TrafficCounters& leaving, const TrafficCounters& run) {
  subtract(window, leaving);
  add(window, run);
}

// One file is open for both windows: the slots are read before any is stored.
bool advance_windows(TradeWork& work, int day_slot, int hour_slot) {
  const File file = open_to_read(statistics_path(work.id).c_str());
  // What lies behind the end of a short file reads as zero.
  TrafficCounters day_ago;
  TrafficCounters hour_ago;
  if (!file.is_open() || read_at(file, &day_ago, sizeof day_ago, slot_offset(day_slot)) < 0) {
    return false;
  }
  advance(work.last24, day_ago, work.run);
  // An hour that cannot be read costs this window its minute, and nobody else anything.
  if (read_at(file, &hour_ago, sizeof hour_ago, slot_offset(hour_slot)) >= 0) {
    advance(work.last60, hour_ago, work.run);
  }
  return true;
}

bool store_slot(const TradeWork& work, int day_slot) {
  File file = open_to_update(statistics_path(work.id).c_str());
  return file.is_open() && write_at(file, &work.run, sizeof work.run, slot_offset(day_slot)) &&
         file.close();
}

void clamp(TrafficCounters& window) {
  for (std::int32_t& value : window.values) value = std::max(value, 0);
}

}  // namespace

std::string statistics_path(std::int32_t id) { return "d/t/" + std::to_string(id); }

bool update_windows(std::vector<TradeWork>& works, std::time_t oldest, int run_minute) {
  const int day_slot = minute_of_day(oldest);
  const int hour_slot = minute_of_day(oldest - 60 * 60);
  for (TradeWork& work : works) {
    if (advance_windows(work, day_slot, hour_slot)) continue;
    report(event::statistics_unreadable, statistics_path(work.id));
    return false;
  }
  for (const TradeWork& work : works) {
    if (!store_slot(work, day_slot)) {
      report(event::statistics_unwritable, statistics_path(work.id));
    }
  }
  if (run_minute % kClampEvery != 0) return true;
  for (TradeWork& work : works) {
    clamp(work.last60);
    clamp(work.last24);
    clamp(work.last07);
  }
  return true;
}

}  // namespace vantrel
