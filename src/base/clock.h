// The wall clock and the texts made of it. A moment is a std::time_t (seconds since the epoch) and
// is broken down into local time only where a text or a minute is needed; a step of the clock is
// elapsed time, so a minute back is always 60 seconds.
#pragma once

#include <ctime>
#include <string>

namespace vantrel {

[[nodiscard]] std::time_t wall_clock();

// The seam through which tests and simulations step the clock; nullptr gives the real one back.
void set_wall_clock(std::time_t (*source)());

[[nodiscard]] std::tm local_time(std::time_t moment);

// strftime of the local time. The text must fit in 63 bytes.
[[nodiscard]] std::string format_time(const char* format, std::time_t moment);
[[nodiscard]] std::string format_time(const char* format, const std::tm& local);

// Whole minutes since the epoch, truncated.
[[nodiscard]] constexpr std::time_t epoch_minute(std::time_t moment) { return moment / 60; }

// hour * 60 + minute of the local time, 0 to 1439.
[[nodiscard]] int minute_of_day(std::time_t moment);

}  // namespace vantrel
