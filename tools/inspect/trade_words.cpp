// The trade view in words: what the settings of a trade mean, sentence by sentence.
#include <algorithm>
#include <iostream>
#include <vector>

#include "counters.h"
#include "data_time.h"
#include "trade_page.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kHoursInRow = 12;

std::string guarantee_words(const Json& settings) {
  const auto left = settings["guarantee_left"].get<std::int32_t>();
  return left > 0 ? counted(static_cast<std::size_t>(left), "more click") : "none";
}

// Quota and forced listing share the hours they are in force for.
std::string hours_words(std::int32_t hours_left) {
  if (hours_left == -1) return "in force for ever";
  if (hours_left <= 0) return "not in force, its hours have run out";
  return "in force for " + counted(static_cast<std::size_t>(hours_left), "more hour");
}

std::string forced_words(const Json& settings) {
  const auto forced = settings["forced_listing"].get<std::int32_t>();
  if (forced <= 0) return "no";
  return "forced " + std::to_string(forced) + ", " +
         hours_words(settings["quota_hours_left"].get<std::int32_t>());
}

// Twelve hours of the quota with a blank before each number; all of them equally wide.
std::string half_day(const Json& hourly, std::size_t first) {
  std::size_t width = 0;
  for (const Json& quota : hourly) width = std::max(width, quota.dump().size());
  std::string row;
  for (std::size_t hour = first; hour < first + kHoursInRow; ++hour) {
    const std::string number = hourly[hour].dump();
    row += ' ' + std::string(width - number.size(), ' ') + number;
  }
  return row;
}

// The measure of a boost, with the place for its number.
std::string measure_words(std::int32_t metric, const std::string& number) {
  switch (metric) {
    case 2:
      return number + " clicks sent to it in 24 hours";
    case 3:
      return number + " clicks of its visitors (cef) in 24 hours";
    case 4:
      return number + " clicks sent to it for 100 hits in 24 hours";
    case 5:
      return number + " clicks of its visitors (cef) for 100 hits in 24 hours";
    default:
      return number + " incoming hits in 24 hours";
  }
}

std::string boost_words(const Json& boost) {
  if (!boost["active"].get<bool>()) return "none";
  return "score times " + cell(boost["percent_below"]) + " % below " +
         measure_words(boost["metric"].get<std::int32_t>(), cell(boost["threshold"])) + ", " +
         cell(boost["percent_from"]) + " % from there on; now " + cell(boost["measured"]);
}

std::string caps_words(const Json& settings) {
  std::string words;
  const auto add_cap = [&](const char* key, const char* before, const char* behind) {
    const Json& cap = settings["caps"][key];
    if (cap.is_null()) return;
    words += (words.empty() ? "" : "; ") + std::string(before) + cell(cap) + behind;
  };
  add_cap("cef_per_uin_least", "cef at least ", " % of uin");
  add_cap("ctt_per_out_least", "ctt at least ", " % of out");
  add_cap("out_per_uin_most", "out at most ", " % of uin");
  if (words.empty()) return "none";
  return settings["caps_count"].get<bool>() ? words : words + "; not looked at in its mode";
}

}  // namespace

std::vector<std::pair<std::string, std::string>> settings_words(const Json& settings) {
  const Json& hourly = settings["quota_by_hour"];
  const bool has_quota =
      std::any_of(hourly.begin(), hourly.end(), [](const Json& quota) { return quota != 0; });
  const std::string quota =
      has_quota ? hours_words(settings["quota_hours_left"].get<std::int32_t>()) : "none";
  std::vector<std::pair<std::string, std::string>> rows = {
      {"address", cell(settings["url"])},
      {"scoring", "mode " + cell(settings["mode"])},
      {"skim", settings["skim"].is_null() ? "none" : cell(settings["skim"])},
      {"guarantee", guarantee_words(settings)},
      {"quota of clicks", quota}};
  if (has_quota) {
    rows.push_back({"  from 0:00", half_day(hourly, 0)});
    rows.push_back({"  from 12:00", half_day(hourly, kHoursInRow)});
  }
  rows.push_back({"forced listing", forced_words(settings)});
  rows.push_back({"these three count", settings["quota_overrides_minimum"].get<bool>()
                                           ? "even while it sends too few visitors"
                                           : "only while it sends enough visitors"});
  rows.push_back({"boost", boost_words(settings["boost"])});
  rows.push_back({"caps", caps_words(settings)});
  return rows;
}

namespace {

void print_settings(const Json& settings) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& [setting, words] : settings_words(settings)) rows.push_back({setting, words});
  print_table({{"setting"}, {"value"}}, rows);
}

void print_windows(const Json& view) {
  std::vector<std::vector<std::string>> rows;
  for (const auto& [name, counts] : kCounters) {
    rows.push_back({name, cell(view["last60"][name]), cell(view["last24"][name]),
                    cell(view["last07"][name]), counts});
  }
  std::cout << "\nWindows up to " << data_time_words(view) << '\n';
  print_table({{"counter"}, {"60 minutes", true}, {"24 hours", true}, {"7 days", true}, {"counts"}},
              rows);
}

}  // namespace

void print_trade(const Json& view) {
  std::cout << coloured(Colour::bold, cell(view["name"])) << ", id " << cell(view["id"])
            << ", position " << cell(view["position"]);
  if (view["collects"] != "") {
    std::cout << " (reserved entry: " << cell(view["collects"]) << ')';
  }
  std::cout << "\n\n";
  print_settings(view["settings"]);
  print_windows(view);
  std::cout << "\nThe last 24 hours, from the minute slots\n";
  print_chart(view["hours"], "hour");
  std::cout << "\nThe last " << counted(view["days"].size(), "day") << " of the history\n";
  print_chart(view["days"], "date");
}

}  // namespace vantrel::inspect
