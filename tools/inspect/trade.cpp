#include <algorithm>
#include <vector>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/rehearsal.h"
#include "base/text.h"
#include "counters.h"
#include "data_time.h"
#include "history/history_file.h"
#include "out/out_list.h"
#include "out/out_settings.h"
#include "out/planning.h"
#include "site.h"
#include "slots.h"
#include "trade_page.h"
#include "traffic/windows.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kDaysShown = 14;

Json counters_json(const TrafficCounters& counters) {
  Json json;
  for (std::size_t i = 0; i < kCounterCount; ++i) json[kCounters[i].name] = counters.values[i];
  return json;
}

std::string mode_text(std::int32_t mode) {
  switch (mode) {
    case 0:
      return "0: gets no visitors";
    case 1:
      return "1: gets visitors as long as it does not get too many for those it sends";
    case 2:
      return "2: gets visitors as long as it keeps its caps";
    default:
      return std::to_string(mode) + ": gets visitors without checks";
  }
}

// As the run loads them, whether the two files it loads before them are there or not.
TradeCaps read_caps() {
  Rehearsal rehearsal;
  for (const char* other : {"d/out.set", "d/out.mod"}) rehearsal.put_in_place(other, "/dev/null");
  OutSettings settings;
  return load_out_settings(settings, 0) ? settings.caps : TradeCaps();
}

Json caps_json(const TradeCap& cap) {
  const auto json = [](std::int32_t value) { return value == -1 ? Json() : Json(value); };
  return {{"cef_per_uin_least", json(cap.cap_cef)},
          {"ctt_per_out_least", json(cap.cap_ctt)},
          {"out_per_uin_most", json(cap.cap_out)}};
}

Json settings_json(const TradeWork& work, int hour, const TradeCap& cap) {
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
           {{"active", has_boost(work)},
            {"metric", work.param_828},
            {"measured", boost_metric(work)},
            {"threshold", work.param_832},
            {"percent_below", work.param_836},
            {"percent_from", work.param_840}}},
          {"caps", caps_json(cap)},
          {"caps_count", work.flag_880 == 2}};
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
    row["date"] = stamp_text(records[i].first);
    row.update(counters_json(records[i].second));
    days.push_back(row);
  }
  return days;
}

}  // namespace

TradePages read_trade_pages() {
  return {load_store(), last_run_or_now(), local_time(wall_clock()).tm_hour, read_caps()};
}

Json trade_page(const TradePages& pages, std::size_t position) {
  const TradeWork& work = pages.store.works[position];
  return {{"id", work.id},
          {"name", field_text(work.name)},
          {"position", position},
          {"collects", collects(work, position)},
          {"settings", settings_json(work, pages.hour, caps_of(pages.caps, work.id))},
          {"last60", counters_json(work.last60)},
          {"last24", counters_json(work.last24)},
          {"last07", counters_json(work.last07)},
          {"hours", hours_json(work.id, pages.last_run)},
          {"days", days_json(field_text(work.name))}};
}

Json trade_view(const std::string& name_or_id) {
  const TradePages pages = read_trade_pages();
  Json view = trade_page(pages, find_trade(pages.store, name_or_id));
  add_data_time(view);
  return view;
}

}  // namespace vantrel::inspect
