#include "base/clock.h"

namespace vantrel {
namespace {

std::time_t (*clock_source)() = nullptr;

}  // namespace

std::time_t wall_clock() { return clock_source != nullptr ? clock_source() : std::time(nullptr); }

void set_wall_clock(std::time_t (*source)()) { clock_source = source; }

std::tm local_time(std::time_t moment) {
  std::tm local{};
  localtime_r(&moment, &local);
  return local;
}

std::string format_time(const char* format, std::time_t moment) {
  return format_time(format, local_time(moment));
}

std::string format_time(const char* format, const std::tm& local) {
  char text[64];
  return {text, std::strftime(text, sizeof text, format, &local)};
}

int minute_of_day(std::time_t moment) {
  const std::tm local = local_time(moment);
  return local.tm_hour * 60 + local.tm_min;
}

}  // namespace vantrel
