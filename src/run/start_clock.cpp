#include "run/start_clock.h"

#include <algorithm>

#include "base/clock.h"
#include "base/files.h"
#include "base/numbers.h"

namespace vantrel {

StartClock take_start_clock() { return start_clock_of(wall_clock()); }

StartClock start_clock_of(std::time_t start) {
  StartClock clock;
  clock.local = local_time(start);
  const int second = clock.local.tm_sec;
  if (second >= 53 && second <= 59) clock.local = local_time(start + (61 - second));
  clock.run_minute = clock.local.tm_min;
  clock.run_hour = clock.local.tm_hour;
  return clock;
}

bool sleep_gate_closed(const StartClock& clock) {
  FileBuffer file;
  if (!file.read("d/sleep")) return false;
  const std::string_view text = file.text();
  const auto begin = std::find_if_not(text.begin(), text.end(), is_space);
  const auto end = std::find_if(begin, text.end(), is_space);
  const std::int32_t second = to_int({begin, end});
  return second >= 1 && second <= 49 && second > clock.local.tm_sec;
}

}  // namespace vantrel
