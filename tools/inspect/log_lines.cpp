#include "log_lines.h"

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel::inspect {
namespace {

// "<...>" in the subject of the table stands for any text.
bool fits(std::string_view pattern, std::string_view subject) {
  const std::size_t open = pattern.find('<');
  if (open == pattern.npos) return pattern == subject;
  const std::string_view before = pattern.substr(0, open);
  const std::string_view after = pattern.substr(pattern.find('>') + 1);
  return subject.size() >= before.size() + after.size() && subject.starts_with(before) &&
         subject.ends_with(after);
}

// A subject of its own goes before one that stands for many.
const Event* find_event(std::string_view code, std::string_view subject, std::string_view level) {
  for (const bool literal : {true, false}) {
    for (const Event* event : all_events()) {
      const bool one_of_many = event->subject.find('<') != event->subject.npos;
      if (literal != one_of_many && event->code == code && event->level == level &&
          fits(event->subject, subject)) {
        return event;
      }
    }
  }
  return nullptr;
}

}  // namespace

LogLine line_of(std::string_view text) {
  Pieces pieces(text);
  static_cast<void>(pieces.next_or_empty());
  return {pieces.next_or_empty(), pieces.next_or_empty(), pieces.next_or_empty(),
          pieces.next_or_empty(), pieces.next_or_empty()};
}

std::string unescaped(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t end = text.starts_with("&#") ? text.substr(0, 6).find(';') : text.npos;
    const std::int32_t code = end == text.npos ? 0 : to_int(text.substr(2, end - 2));
    const bool known = code > 0x20 && code < 0x7F;
    out += known ? static_cast<char>(code) : text.front();
    text.remove_prefix(known ? end + 1 : 1);
  }
  return out;
}

const Event* event_of(const LogLine& line) {
  if (line.source != "cron") return nullptr;
  return find_event(line.code, unescaped(line.subject), line.level);
}

}  // namespace vantrel::inspect
