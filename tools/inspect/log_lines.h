// The lines of the event log l/sys/sys.log, as the views and the examinations read them.
#pragma once

#include <string>
#include <string_view>

#include "run/events.h"

namespace vantrel::inspect {

inline constexpr const char* kEventLog = "l/sys/sys.log";

// The fields of a line as they stand there; the views point into the line.
struct LogLine {
  std::string_view time, source, code, subject, level;
};
[[nodiscard]] LogLine line_of(std::string_view text);

// What the log's writer escaped as "&#47;" and the like.
[[nodiscard]] std::string unescaped(std::string_view text);

// The event of the maintenance run that wrote the line; nullptr for lines of other programs.
[[nodiscard]] const Event* event_of(const LogLine& line);

}  // namespace vantrel::inspect
