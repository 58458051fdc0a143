#include "glance.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>

#include "base/text.h"
#include "out/out_list.h"
#include "site.h"
#include "sums.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

namespace fs = std::filesystem;

Json seconds_of(const std::string& path) {
  const auto time = modified(path);
  return time ? Json(*time) : Json();
}

Json newest_backup_json() {
  Json newest;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("d/backup", error)) {
    const auto time = modified(entry.path().string());
    if (time && is_regular(entry.path().string()) && (newest.is_null() || newest < *time)) {
      newest = *time;
    }
  }
  return newest;
}

Json listed_json() {
  OutListHeader header;
  std::vector<OutListEntry> entries;
  const auto bytes = read_file(kOutListFile);
  return bytes && decode_out_list(*bytes, header, entries) ? Json(entries.size()) : Json();
}

// Events of the run alone: other programs write into the log too.
Json events_json() {
  EventsQuery query;
  query.count = std::numeric_limits<std::size_t>::max();
  query.since = "60m";
  std::map<std::pair<std::string, std::string>, std::size_t> counts;
  const Json view = events_view(query);
  for (const Json& event : view["events"]) {
    if (event["source"] != "cron") continue;
    counts[{event["code"], event["level"]}] += event["times"].get<std::size_t>();
  }
  Json events = Json::array();
  for (const auto& [kind, count] : counts) {
    events.push_back({{"code", kind.first}, {"level", kind.second}, {"count", count}});
  }
  return events;
}

void add_gaps(Json& site) {
  std::size_t gaps = 0;
  std::int64_t minutes = 0;
  const Json view = runs_view();
  for (const Json& stretch : view["stretches"]) {
    const Json& missed = stretch["minutes_missed_before"];
    if (missed.is_null() || missed == 0) continue;
    ++gaps;
    minutes += missed.get<std::int64_t>();
  }
  site["gaps"] = gaps;
  site["missed_minutes"] = minutes;
}

constexpr std::pair<const char*, TrafficCounters TradeWork::*> kWindows[] = {
    {"last60", &TradeWork::last60}, {"last24", &TradeWork::last24}, {"last07", &TradeWork::last07}};

Json windows_json(const TradeWork* entries, std::size_t count) {
  Json windows;
  for (const auto& [name, window] : kWindows) {
    Sums sums;
    for (std::size_t i = 0; i < count; ++i) sums += entries[i].*window;
    windows[name] = counters_json(sums);
  }
  return windows;
}

void add_store(Json& site, Detail detail) {
  const TradeStore store = load_store();
  const std::size_t count = store.works.size();
  const std::size_t reserved_entries = std::min(count, reserved::kLastEntry + 1);
  site["entries"] = count;
  site["trades"] = count - reserved_entries;
  site.update(windows_json(store.works.data(), count));
  if (detail != Detail::trades) return;
  site["trade_windows"] = Json::array();
  for (std::size_t i = reserved_entries; i < count; ++i) {
    const TradeWork& work = store.works[i];
    Json trade = {{"id", work.id}, {"name", printable(field_text(work.name))}};
    trade.update(windows_json(&work, 1));
    site["trade_windows"].push_back(std::move(trade));
  }
}

// The findings come in no particular order; the first of the worst is shown.
void add_verdict(Json& site) {
  const Json check = check_view();
  site["status"] = check["status"];
  site["worst"] = Json();
  const int status = check["status"];
  if (status == 0) return;
  const char* const severity = status == 2 ? "fatal" : "warning";
  for (const Json& finding : check["findings"]) {
    if (finding["severity"] != severity) continue;
    for (const char* key : {"severity", "subject", "finding", "remedy"}) {
      site["worst"][key] = finding[key];
    }
    return;
  }
}

// Runs a part of the examination; what is not there stays null.
template <typename Part>
void attempt(Part part) {
  try {
    part();
  } catch (const Unavailable&) {
  }
}

}  // namespace

Json nothing_known(const std::string& directory, const std::string& why) {
  Json site = {{"directory", directory}, {"path", directory}, {"status", 2}};
  site["worst"] = {{"severity", "fatal"}, {"subject", directory}, {"finding", why}, {"remedy", ""}};
  for (const char* key : {"last_run", "list_written", "backup", "entries", "trades", "listed",
                          "last60", "last24", "last07"}) {
    site[key] = Json();
  }
  return site;
}

Json look_at_site(const std::string& directory, Detail detail) {
  if (::chdir(directory.c_str()) != 0) {
    return nothing_known(directory, std::string("cannot be entered: ") + std::strerror(errno));
  }
  Json site = nothing_known(directory, "cannot be looked at");
  std::error_code error;
  site["path"] = fs::current_path(error).string();
  attempt([&] { add_verdict(site); });
  site["last_run"] = seconds_of("l/sys/cron.last");
  site["list_written"] = seconds_of(kOutListFile);
  site["backup"] = newest_backup_json();
  attempt([&] { site["listed"] = listed_json(); });
  attempt([&] { add_store(site, detail); });
  attempt([&] { site["events"] = events_json(); });
  attempt([&] { add_gaps(site); });
  return site;
}

}  // namespace vantrel::inspect
