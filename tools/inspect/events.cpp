#include <algorithm>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <vector>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/text.h"
#include "history/history_file.h"
#include "log_lines.h"
#include "site.h"
#include "traffic/windows.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

// A site that reports something every minute writes some ten megabytes a year.
constexpr std::size_t kMostRead = std::size_t{64} << 20;

// Lines that say the same.
struct Group {
  LogLine last;
  std::string_view first_time;
  std::size_t times = 0;
  std::size_t last_line = 0;
};

// Every 0 of the shape stands for a digit.
bool has_shape(std::string_view text, std::string_view shape) {
  return text.size() == shape.size() &&
         std::equal(text.begin(), text.end(), shape.begin(),
                    [](char c, char place) { return place == '0' ? is_digit(c) : c == place; });
}

// "2026-11-23", with "12:50" or without; "12:50" of today; or so many minutes, hours or days ago
// ("90m", "12h", "2d"). As the log writes its times.
std::string since_stamp(const std::string& since) {
  constexpr struct {
    char letter;
    std::time_t seconds;
  } kUnits[] = {{'m', 60}, {'h', 60 * 60}, {'d', 24 * 60 * 60}};
  const std::string_view number =
      std::string_view(since).substr(0, since.empty() ? 0 : since.size() - 1);
  for (const auto& unit : kUnits) {
    if (!since.empty() && since.back() == unit.letter && !number.empty() && number.size() < 9 &&
        std::all_of(number.begin(), number.end(), is_digit)) {
      return format_time("%Y%m%d%H%M", wall_clock() - to_int(number) * unit.seconds);
    }
  }
  const bool today = has_shape(since, "00:00");
  const bool day = has_shape(since, "0000-00-00");
  if (!today && !day && !has_shape(since, "0000-00-00 00:00")) {
    throw WrongUsage{"--since takes 2026-11-23, \"2026-11-23 12:50\", 12:50, 90m, 12h or 2d"};
  }
  std::string stamp;
  if (today) stamp = format_time("%Y%m%d", wall_clock());
  std::copy_if(since.begin(), since.end(), std::back_inserter(stamp), is_digit);
  if (day) stamp += "0000";
  return stamp;
}

bool is_stamp(std::string_view text) {
  return text.size() == 12 && std::all_of(text.begin(), text.end(), is_digit);
}

// The files of a trade, as events name them. The log outlives its trades, and an index that cannot
// be read is a reason to look into it: then the given text is all there is.
std::vector<std::string> subjects_of(const std::string& name_or_id) {
  std::string name = name_or_id;
  std::optional<std::int32_t> id;
  if (name_or_id == std::to_string(to_int(name_or_id))) id = to_int(name_or_id);
  try {
    const TradeStore store = load_store();
    const TradeRecord& trade = store.trades[find_trade(store, name_or_id)];
    name = field_text(trade.name);
    id = trade.id;
  } catch (const Unavailable&) {
  }
  std::vector<std::string> subjects;
  if (id) subjects.push_back(statistics_path(*id));
  if (const auto history = trade_history_path(name)) subjects.push_back(*history);
  return subjects;
}

// Groups in the order of their last line.
std::vector<Group> groups_of(std::string_view log, const EventsQuery& query) {
  const std::string since = query.since.empty() ? "" : since_stamp(query.since);
  const auto subjects = query.trade.empty() ? std::vector<std::string>() : subjects_of(query.trade);
  std::map<std::string_view, Group> groups;
  std::string_view time;
  std::size_t number = 0;
  Pieces lines = lines_of(log);
  for (std::string_view text; lines.next(text);) {
    const LogLine line = line_of(text);
    // A damaged line is of the time of the one before it.
    if (is_stamp(line.time)) time = line.time;
    if (time < since || (!query.level.empty() && line.level != query.level)) continue;
    if (!query.trade.empty() &&
        std::find(subjects.begin(), subjects.end(), unescaped(line.subject)) == subjects.end()) {
      continue;
    }
    const bool timed = text.size() > 13 && text[0] == '|' && is_stamp(line.time);
    Group& group = groups[timed ? text.substr(13) : text];
    if (group.times++ == 0) group.first_time = line.time;
    group.last = line;
    group.last_line = ++number;
  }
  std::vector<Group> ordered;
  ordered.reserve(groups.size());
  for (const auto& [text, group] : groups) ordered.push_back(group);
  std::sort(ordered.begin(), ordered.end(),
            [](const Group& a, const Group& b) { return a.last_line < b.last_line; });
  return ordered;
}

Json event_json(const Group& group) {
  const LogLine& line = group.last;
  const std::string subject = unescaped(line.subject);
  const Event* event = event_of(line);
  return {{"time", stamp_text(line.time)},
          {"times", group.times},
          {"first", stamp_text(group.first_time)},
          {"source", line.source},
          {"code", line.code},
          {"subject", subject},
          {"level", line.level},
          {"consequence", event == nullptr    ? ""
                          : line.level == "1" ? "the run ended"
                                              : "the run went on"},
          {"meaning", event == nullptr ? "" : event->meaning},
          {"remedy", event == nullptr ? "" : event->remedy}};
}

void print_event(const Json& event) {
  const bool ended = event["level"] == "1";
  const bool repeated = event["times"] != 1;
  const bool damaged = event["consequence"] == "" && event["subject"] == "";
  std::cout << cell(repeated ? event["first"] : event["time"]) << "  "
            << coloured(ended ? Colour::red : Colour::yellow, damaged ? "a damaged line"
                                                              : event["subject"] == ""
                                                                  ? "gap"
                                                                  : cell(event["subject"]));
  if (event["consequence"] != "") {
    std::cout << "  " << cell(event["consequence"]);
  } else if (!damaged) {
    // Not ours to explain: other programs of the site write here too.
    std::cout << "  (" << cell(event["source"]) << ", code " << cell(event["code"]) << ')';
  }
  if (repeated)
    std::cout << ", " << cell(event["times"]) << " times, last at " << cell(event["time"]);
  std::cout << '\n';
  if (event["consequence"] == "") return;
  std::cout << "    " << cell(event["meaning"]) << "\n    -> " << cell(event["remedy"]) << '\n';
}

}  // namespace

Json events_view(const EventsQuery& query) {
  const auto log = read_tail(kEventLog, kMostRead);
  if (!log && exists(kEventLog)) throw Unavailable{std::string(kEventLog) + " cannot be opened"};
  std::vector<Group> groups = groups_of(log ? *log : std::string_view(), query);
  Json view;
  view["more"] = groups.size() > query.count ? groups.size() - query.count : 0;
  view["events"] = Json::array();
  if (groups.size() > query.count) {
    groups.erase(groups.begin(), groups.end() - static_cast<std::ptrdiff_t>(query.count));
  }
  for (const Group& group : groups) view["events"].push_back(event_json(group));
  return view;
}

void print_events(const Json& view) {
  if (view["more"] != 0) {
    std::cout << coloured(Colour::faint,
                          counted(view["more"].get<std::size_t>(), "other event") + " before these")
              << '\n';
  } else if (view["events"].empty()) {
    std::cout << "No events.\n";
  }
  for (const Json& event : view["events"]) print_event(event);
}

}  // namespace vantrel::inspect
