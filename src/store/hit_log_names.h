// Names of the raw hit logs, for who reads them and who clears them away. Local time.
#pragma once

#include <string>
#include <string_view>

namespace vantrel {

inline constexpr const char* kMinuteStampFormat = "%y-%j-%H-%M";
inline constexpr const char* kHourStampFormat = "%y-%j-%H";  // names the backups

[[nodiscard]] std::string in_log_path(std::string_view minute_stamp);
[[nodiscard]] std::string out_log_path(std::string_view minute_stamp);

}  // namespace vantrel
