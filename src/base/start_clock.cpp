#include "base/start_clock.h"

#include "base/clock.h"

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

}  // namespace vantrel
