#include "run/events.h"

#include <algorithm>
#include <iostream>
#include <vector>

#include "base/numbers.h"
#include "base/text.h"
#include "site.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kLog = "l/sys/sys.log";

// The last lines of the log. It may be of any size: ever longer ends of it are looked at.
std::vector<std::string> last_lines(std::size_t count) {
  const std::size_t size = file_size(kLog);
  for (std::size_t length = 64 * 1024;; length *= 8) {
    const auto tail = read_tail(kLog, length);
    if (!tail && exists(kLog)) throw Unavailable{std::string(kLog) + " cannot be opened"};
    std::vector<std::string> lines = split(tail.value_or(""), '\n');
    const bool whole = length >= size;
    if (!whole && lines.size() <= count && length < (std::size_t{1} << 29)) continue;
    if (lines.size() > count) {
      lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(count));
    }
    return lines;
  }
}

// What the log's writer escaped as "&#47;" and the like.
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

// "202611161250" as "2026-11-16 12:50"; anything else as it is.
std::string log_time(std::string_view text) {
  if (text.size() != 12 || !std::all_of(text.begin(), text.end(), is_digit)) {
    return std::string(text);
  }
  std::string time(text);
  for (const auto& [place, mark] : {std::pair{10, ":"}, {8, " "}, {6, "-"}, {4, "-"}}) {
    time.insert(static_cast<std::size_t>(place), mark);
  }
  return time;
}

Json event_json(const std::string& line) {
  Pieces pieces(line);
  static_cast<void>(pieces.next_or_empty());
  const std::string_view time = pieces.next_or_empty();
  const std::string_view source = pieces.next_or_empty();
  const std::string_view code = pieces.next_or_empty();
  const std::string subject = unescaped(pieces.next_or_empty());
  const std::string_view level = pieces.next_or_empty();
  const Event* event = source == "cron" ? find_event(code, subject, level) : nullptr;
  return {{"time", log_time(time)},
          {"source", source},
          {"code", code},
          {"subject", subject},
          {"level", level},
          {"consequence", event == nullptr ? ""
                          : level == "1"   ? "the run ended"
                                           : "the run went on"},
          {"meaning", event == nullptr ? "" : event->meaning},
          {"remedy", event == nullptr ? "" : event->remedy}};
}

}  // namespace

Json events_view(std::size_t count) {
  Json events = Json::array();
  for (const std::string& line : last_lines(count)) events.push_back(event_json(line));
  Json view;
  view["events"] = std::move(events);
  return view;
}

void print_events(const Json& view) {
  if (view["events"].empty()) std::cout << "The event log is empty.\n";
  for (const Json& event : view["events"]) {
    const bool ended = event["level"] == "1";
    std::cout << cell(event["time"]) << "  "
              << coloured(ended ? Colour::red : Colour::yellow,
                          event["subject"] == "" ? "gap" : cell(event["subject"]));
    if (event["consequence"] == "") {
      // Not ours to explain: other programs of the site write here too.
      std::cout << "  (" << cell(event["source"]) << ", code " << cell(event["code"]) << ")\n";
      continue;
    }
    std::cout << "  " << cell(event["consequence"]) << "\n    " << cell(event["meaning"])
              << "\n    -> " << cell(event["remedy"]) << '\n';
  }
}

}  // namespace vantrel::inspect
