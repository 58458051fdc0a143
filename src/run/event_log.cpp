#include "run/event_log.h"

#include "base/clock.h"
#include "base/files.h"

namespace vantrel {
namespace {

constexpr const char* kLog = "l/sys/sys.log";

// The replacement of a character that must not stand in the log, empty for all others.
std::string_view entity(char c) {
  switch (c) {
    case ';':
      return "&#59;";
    case '<':
      return "&#60;";
    case '>':
      return "&#62;";
    case '`':
      return "&#96;";
    case '\'':
      return "&#39;";
    case '"':
      return "&#34;";
    case '!':
      return "&#33;";
    case '\\':
      return "&#92;";
    case '/':
      return "&#47;";
    default:
      return {};
  }
}

}  // namespace

std::string sanitised(std::string_view field) {
  std::string text;
  for (const char c : field) {
    if (c == '\r' || c == '\n') continue;
    const std::string_view replacement = entity(c);
    if (replacement.empty()) {
      text += c;
    } else {
      text += replacement;
    }
  }
  return text;
}

void log_event(std::string_view source, std::string_view code, std::string_view subject,
               std::string_view level, std::string_view extra) {
  std::string line = "|";
  line += format_time("%Y%m%d%H%M", wall_clock());
  line.append("|").append(sanitised(source));
  line.append("|").append(code);
  line.append("|").append(sanitised(subject));
  line.append("|").append(sanitised(level));
  line.append("|").append(sanitised(extra)).append("|||\n");
  static_cast<void>(append_to_file(kLog, line, Torn::keep));
}

void report(const Event& event) { report(event, event.subject); }

void report(const Event& event, std::string_view subject) {
  log_event("cron", event.code, subject, event.level, "");
}

}  // namespace vantrel
