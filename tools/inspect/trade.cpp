#include <algorithm>
#include <iostream>
#include <vector>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/text.h"
#include "history/history_file.h"
#include "out/out_list.h"
#include "site.h"
#include "slots.h"
#include "traffic/windows.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kDaysShown = 14;
// In the order they have in every file.
constexpr const char* kCounterNames[kCounterCount] = {
    "rin", "uin",      "out",       "clk",       "ctt", "ctg", "cef",
    "rec", "proxy_in", "proxy_out", "proxy_clk", "rti", "rto", "rtc"};

Json counters_json(const TrafficCounters& counters) {
  Json json;
  for (std::size_t i = 0; i < kCounterCount; ++i) json[kCounterNames[i]] = counters.values[i];
  return json;
}

std::size_t find_trade(const TradeStore& store, const std::string& name_or_id) {
  const auto named = std::find_if(store.works.begin(), store.works.end(), [&](const auto& work) {
    return field_text(work.name) == name_or_id;
  });
  if (named != store.works.end()) return static_cast<std::size_t>(named - store.works.begin());
  const std::int32_t id = to_int(name_or_id);
  const std::int32_t position =
      name_or_id == std::to_string(id) ? store.ids.find(id) : IdIndex::kNone;
  if (position == IdIndex::kNone) throw Unavailable{"there is no trade " + printable(name_or_id)};
  return static_cast<std::size_t>(position);
}

std::string mode_text(std::int32_t mode) {
  switch (mode) {
    case 0:
      return "0: no score, never admitted";
    case 1:
      return "1: checked by out per in";
    case 2:
      return "2: checked by its caps";
    default:
      return std::to_string(mode) + ": no checks";
  }
}

// Lines of d/caps are groups of four pieces: ignored, id, kind, value; later ones override.
Json caps_json(std::int32_t id) {
  Json caps = {
      {"cef_per_uin_least", Json()}, {"ctt_per_out_least", Json()}, {"out_per_uin_most", Json()}};
  const std::string text = read_file("d/caps").value_or("");
  Pieces pieces(text);
  for (std::string_view piece, owner, kind, value;
       pieces.next(piece) && pieces.next(owner) && pieces.next(kind) && pieces.next(value);) {
    if (to_int(owner) != id || value == "-1") continue;
    if (kind == "1") caps["cef_per_uin_least"] = to_int(value);
    if (kind == "2") caps["ctt_per_out_least"] = to_int(value);
    if (kind == "3") caps["out_per_uin_most"] = to_int(value);
  }
  return caps;
}

Json settings_json(const TradeWork& work, int hour) {
  return {{"url", field_text(work.text_80)},
          {"mode", mode_text(work.flag_880)},
          {"skim", work.param_844 == -1 ? Json() : Json(work.param_844)},
          {"guarantee_left", work.hits_left},
          {"quota_hours_left", work.hours_left},
          {"quota_now", active_quota(work, hour)},
          {"quota_by_hour", work.hourly},
          {"quota_overrides_minimum", work.param_888 == 1},
          {"forced_listing", work.param_892},
          {"boost",
           {{"metric", work.param_828},
            {"threshold", work.param_832},
            {"percent_below", work.param_836},
            {"percent_from", work.param_840}}},
          {"caps", caps_json(work.id)}};
}

// The hours before the last run, oldest first, summed from the minute slots.
Json hours_json(std::int32_t id, std::time_t last_run) {
  const std::string bytes = read_file(statistics_path(id)).value_or("");
  Json hours = Json::array();
  for (const SlotHour& hour : hours_before(last_run)) {
    Json row;
    row["hour"] = format_time("%Y-%m-%d %H:00", hour.moment);
    row.update(counters_json(sum_of(hour, bytes)));
    hours.push_back(row);
  }
  return hours;
}

// The last records of the history, 30 pieces each: filler, date, counters, filler.
Json days_json(std::string_view name) {
  Json days = Json::array();
  const auto path = trade_history_path(name);
  const std::string text = path ? read_file(*path).value_or("") : "";
  std::vector<std::pair<std::string_view, TrafficCounters>> records;
  Pieces pieces(text);
  std::string_view piece;
  for (std::size_t k = 0; pieces.next(piece); k = (k + 1) % 30) {
    if (k == 1) records.push_back({piece, {}});
    if (k >= 2 && k < 2 + kCounterCount) records.back().second.values[k - 2] = to_int(piece);
  }
  const std::size_t first = records.size() > kDaysShown ? records.size() - kDaysShown : 0;
  for (std::size_t i = first; i < records.size(); ++i) {
    Json row;
    row["date"] = records[i].first;
    row.update(counters_json(records[i].second));
    days.push_back(row);
  }
  return days;
}

// Times and days as rows of the four counters a webmaster looks at, with a bar for the incoming.
void print_chart(const Json& rows, const char* key) {
  std::int32_t most = 1;
  for (const Json& row : rows) most = std::max(most, row["rin"].get<std::int32_t>());
  std::vector<std::vector<std::string>> table;
  for (const Json& row : rows) {
    table.push_back({cell(row[key]), cell(row["rin"]), cell(row["uin"]), cell(row["out"]),
                     cell(row["clk"]), bar(row["rin"].get<double>() / most, 40)});
  }
  print_table({{key}, {"rin", true}, {"uin", true}, {"out", true}, {"clk", true}, {""}}, table);
}

void print_settings(const Json& settings) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& [key, value] : settings.items()) rows.push_back({key, cell(value)});
  print_table({{"setting"}, {"value"}}, rows);
}

}  // namespace

Json trade_view(const std::string& name_or_id) {
  const TradeStore store = load_store();
  const std::size_t position = find_trade(store, name_or_id);
  const TradeWork& work = store.works[position];
  const std::time_t end = last_run_or_now();
  return {{"id", work.id},
          {"name", field_text(work.name)},
          {"position", position},
          {"collects", collects(work, position)},
          {"last_run", time_text(end)},
          {"settings", settings_json(work, local_time(wall_clock()).tm_hour)},
          {"last60", counters_json(work.last60)},
          {"last24", counters_json(work.last24)},
          {"last07", counters_json(work.last07)},
          {"hours", hours_json(work.id, end)},
          {"days", days_json(field_text(work.name))}};
}

void print_trade(const Json& view) {
  std::cout << coloured(Colour::bold, cell(view["name"])) << ", id " << cell(view["id"])
            << ", position " << cell(view["position"]);
  if (view["collects"] != "") {
    std::cout << " (reserved entry: " << cell(view["collects"]) << ')';
  }
  std::cout << "\n\n";
  print_settings(view["settings"]);
  std::vector<std::vector<std::string>> rows;
  for (const char* name : kCounterNames) {
    rows.push_back(
        {name, cell(view["last60"][name]), cell(view["last24"][name]), cell(view["last07"][name])});
  }
  std::cout << "\nWindows up to " << cell(view["last_run"]) << '\n';
  print_table({{"counter"}, {"60 minutes", true}, {"24 hours", true}, {"7 days", true}}, rows);
  std::cout << "\nThe last 24 hours, from the minute slots\n";
  print_chart(view["hours"], "hour");
  std::cout << "\nThe last " << counted(view["days"].size(), "day") << " of the history\n";
  print_chart(view["days"], "date");
}

}  // namespace vantrel::inspect
