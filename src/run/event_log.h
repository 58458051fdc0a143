// The event log l/sys/sys.log: one line an event, appended; other programs of the site append to it
// too and the administration side shows it. It is the only place where the run says what went
// wrong.
#pragma once

#include <string>
#include <string_view>

#include "run/events.h"

namespace vantrel {

// Appends the line
//   | %Y%m%d%H%M | source | code | subject | level | extra |||
// (without the blanks) with the local time of the moment. A log that cannot be written loses the
// line silently: reporting must never stop the run.
void log_event(std::string_view source, std::string_view code, std::string_view subject,
               std::string_view level, std::string_view extra);

// Logs an event of the table for the maintenance run.
void report(const Event& event);
// The same for an event whose subject names the file at hand.
void report(const Event& event, std::string_view subject);

// A field as it stands in the log: no line breaks, and nothing a page that shows it could take for
// markup or code. A bar stays, as the readers of the log expect it: only the name of a trade can
// bring one, and then the line has more fields than it should.
[[nodiscard]] std::string sanitised(std::string_view field);

}  // namespace vantrel
