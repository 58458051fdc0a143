// The clock a run starts with.
#pragma once

#include <ctime>

namespace vantrel {

// The rounded local time of the start. Every condition on the minute or the hour uses it.
struct StartClock {
  std::tm local{};
  int run_minute = 0;  // 0-59
  int run_hour = 0;    // 0-23

  [[nodiscard]] bool end_of_day() const { return run_hour == 23 && run_minute == 59; }
  [[nodiscard]] bool midday() const { return run_hour == 11 && run_minute == 59; }
  [[nodiscard]] bool pruning_time() const { return run_hour == 23 && run_minute == 20; }
};

// A start in the seconds 53 to 59 counts as second 1 of the next minute: schedulers start early.
[[nodiscard]] StartClock take_start_clock();
// The same for a start at another moment.
[[nodiscard]] StartClock start_clock_of(std::time_t start);

}  // namespace vantrel
