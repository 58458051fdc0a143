// The site as a whole: sums over all entries of the store, from its windows, its minute slots and
// the daily totals.
#include <set>

#include "base/clock.h"
#include "base/text.h"
#include "daily.h"
#include "data_time.h"
#include "site.h"
#include "slots.h"
#include "sums.h"
#include "traffic/windows.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kDaysShown = 30;

using Window = TrafficCounters TradeWork::*;
using HourSums = std::array<Sums, kHoursPerDay>;

Sums sum_of_window(const TradeStore& store, Window window, std::size_t entries) {
  Sums sums;
  for (std::size_t i = 0; i < std::min(entries, store.works.size()); ++i) {
    sums += store.works[i].*window;
  }
  return sums;
}

// Entries that share an id share its file, which then holds what the last of them got.
HourSums sum_hours(const TradeStore& store, const SlotHours& hours) {
  HourSums sums;
  std::set<std::int32_t> seen;
  for (const TradeWork& work : store.works) {
    if (!seen.insert(work.id).second) continue;
    const std::string statistics = read_file(statistics_path(work.id)).value_or("");
    for (std::size_t i = 0; i < hours.size(); ++i) sums[i] += sum_of(hours[i], statistics);
  }
  return sums;
}

Json hours_json(const SlotHours& hours, const HourSums& sums) {
  Json rows = Json::array();
  for (std::size_t i = 0; i < hours.size(); ++i) {
    Json row;
    row["hour"] = format_time("%Y-%m-%d %H:00", hours[i].moment);
    row.update(counters_json(sums[i]));
    rows.push_back(std::move(row));
  }
  return rows;
}

Json today_json(const SlotHours& hours, const HourSums& sums, std::time_t last_run) {
  const std::string today = date_text(last_run);
  Sums sum;
  for (std::size_t i = 0; i < hours.size(); ++i) {
    if (date_text(hours[i].moment) == today) sum += sums[i];
  }
  Json json = {{"date", today}, {"until", format_time("%H:%M", last_run)}};
  json.update(traffic_json(sum));
  return json;
}

Json day_json(const Day& day) {
  Json json = {{"date", day.date}, {"late", day.late}};
  json.update(traffic_json(day.all));
  json["trades"] = day.trades ? counters_json(*day.trades) : Json();
  json["gallery_out"] = day.gallery_out;
  json["noref_in"] = day.noref_in;
  json["listed_in"] = day.listed_in;
  return json;
}

// Null when that day was not recorded. The later of two records of a day counts.
Json recorded_json(const std::vector<Day>& days, const std::string& date) {
  for (auto day = days.rbegin(); day != days.rend(); ++day) {
    if (day->date == date) return day_json(*day);
  }
  return {};
}

Json last_days_json(const std::vector<Day>& days, Json& total) {
  Json rows = Json::array();
  Sums sum;
  for (std::size_t i = days.size() - std::min(days.size(), kDaysShown); i < days.size(); ++i) {
    rows.push_back(day_json(days[i]));
    sum += days[i].all;
  }
  total = {{"days", rows.size()}};
  total.update(traffic_json(sum));
  return rows;
}

// Hits with a marker are counted a second time in their entry; they are no share of the rest.
std::int64_t once(const Sums& sums, const TrafficCounters& marked) {
  return sums[slot::rin] - marked[slot::rin];
}

Json reserved_json(const TradeStore& store, Window window) {
  const TrafficCounters& marked = store.works[reserved::kMarked].*window;
  const Sums all = sum_of_window(store, window, store.works.size());
  const Sums part = sum_of_window(store, window, reserved::kLastEntry + 1);
  Json entries = Json::array();
  for (std::size_t i = 0; i <= reserved::kLastEntry && i < store.works.size(); ++i) {
    const TradeWork& work = store.works[i];
    const TrafficCounters& counters = work.*window;
    entries.push_back({{"position", i},
                       {"id", work.id},
                       {"name", field_text(work.name)},
                       {"collects", collects(work, i)},
                       {"rin", counters[slot::rin]},
                       {"clk", counters[slot::clk]},
                       {"out", counters[slot::out]},
                       {"share_in", percentage(counters[slot::rin], once(all, marked))},
                       {"share_clk", percentage(counters[slot::clk], all[slot::clk])},
                       {"share_out", percentage(counters[slot::out], all[slot::out])}});
  }
  return {{"share_in", percentage(once(part, marked), once(all, marked))},
          {"share_clk", percentage(part[slot::clk], all[slot::clk])},
          {"share_out", percentage(part[slot::out], all[slot::out])},
          {"entries", entries}};
}

}  // namespace

Json site_view() {
  const TradeStore store = load_store();
  const std::time_t last_run = last_run_or_now();
  const SlotHours hours = hours_before(last_run);
  const HourSums sums = sum_hours(store, hours);
  const DailyTotals totals = read_daily_totals(wall_clock());
  Json view = {{"entries", store.works.size()}};
  add_data_time(view);
  const std::pair<const char*, Window> windows[] = {{"last60", &TradeWork::last60},
                                                    {"last24", &TradeWork::last24},
                                                    {"last07", &TradeWork::last07}};
  for (const auto& [name, window] : windows) {
    view[name] = traffic_json(sum_of_window(store, window, store.works.size()));
  }
  view["today"] = today_json(hours, sums, last_run);
  view["yesterday"] = recorded_json(totals.days, date_text(last_run, 1));
  view["week_before"] = recorded_json(totals.days, date_text(last_run, 7));
  Json days = last_days_json(totals.days, view["last30"]);
  for (const auto& [name, window] : windows) view["reserved"][name] = reserved_json(store, window);
  view["hours"] = hours_json(hours, sums);
  view["days"] = std::move(days);
  view["unreadable_days"] = totals.unreadable;
  return view;
}

}  // namespace vantrel::inspect
