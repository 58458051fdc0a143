#include "traffic/hit_logs.h"

#include <algorithm>

#include "base/numbers.h"

namespace vantrel {
namespace {

// A run stamp "%m%d%H%M" as seconds, in a fixed year and without daylight saving.
std::time_t stamp_moment(std::string_view stamp) {
  std::tm parts{};
  parts.tm_year = 110;
  parts.tm_mon = to_int(stamp.substr(0, 2)) - 1;
  parts.tm_mday = to_int(stamp.substr(2, 2));
  parts.tm_hour = to_int(stamp.substr(4, 2));
  parts.tm_min = to_int(stamp.substr(6, 2));
  return std::mktime(&parts);
}

}  // namespace

double catch_up_minutes(const std::vector<std::string>& stamps) {
  constexpr std::size_t kStampLength = 8;
  if (stamps.size() < 2) return 1.0;
  const std::string& current = stamps[stamps.size() - 1];
  const std::string& previous = stamps[stamps.size() - 2];
  if (current.size() != kStampLength || previous.size() != kStampLength) return 1.0;
  const double seconds = std::difftime(stamp_moment(current), stamp_moment(previous));
  return std::clamp(seconds / 60.0, 1.0, 60.0);
}

}  // namespace vantrel
