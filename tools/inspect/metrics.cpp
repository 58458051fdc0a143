// What a monitoring system collects from a text file: families of samples, each announced once.
#include <iostream>
#include <set>
#include <utility>

#include "counters.h"
#include "glance.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

using Labels = std::vector<std::pair<const char*, std::string>>;

// Backslash, quote and line feed are what the format escapes; no other control character is left.
std::string label_text(const std::string& text) {
  std::string out;
  for (const char c : printable(text)) {
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out;
}

// The samples of one family. No two may have the same labels: of sites or trades that cannot be
// told apart the first counts, as it does for the run.
class Samples {
 public:
  explicit Samples(const char* family) : family_(family) {}

  void add(const Labels& labels, const Json& value) {
    if (value.is_null()) return;
    std::string text;
    for (const auto& [name, label] : labels) {
      text.append(text.empty() ? "" : ",").append(name).append("=\"");
      text.append(label_text(label)).append("\"");
    }
    if (!seen_.insert(text).second) return;
    std::cout << family_ << '{' << text << "} " << value.dump() << '\n';
  }

 private:
  const char* family_;
  std::set<std::string> seen_;
};

constexpr std::pair<const char*, const char*> kWindows[] = {
    {"last60", "60m"}, {"last24", "24h"}, {"last07", "7d"}};

// Counters are hits, clicks or points of quality; a family holds one of these.
enum class Unit { hits, clicks, points };

Unit unit_of(std::size_t counter) {
  if (counter >= slot::rti) return Unit::points;
  const bool hits = counter == slot::rin || counter == slot::uin || counter == slot::proxy_in;
  return hits ? Unit::hits : Unit::clicks;
}

void add_windows(Samples& samples, Labels labels, const Json& windows, Unit unit) {
  labels.insert(labels.end(), {{"window", ""}, {"counter", ""}});
  for (const auto& [key, window] : kWindows) {
    if (windows[key].is_null()) continue;
    labels[labels.size() - 2].second = window;
    for (std::size_t i = 0; i < kCounterCount; ++i) {
      if (unit_of(i) != unit) continue;
      labels.back().second = kCounters[i].name;
      samples.add(labels, windows[key][kCounters[i].name]);
    }
  }
}

Labels labels_of(const Json& site) { return {{"site", site["path"].get<std::string>()}}; }

void add_trades(Samples& samples, const Json& site, Unit unit) {
  for (const Json& trade : site.value("trade_windows", Json::array())) {
    Labels labels = labels_of(site);
    labels.insert(labels.end(),
                  {{"id", trade["id"].dump()}, {"trade", trade["name"].get<std::string>()}});
    add_windows(samples, labels, trade, unit);
  }
}

void add_events(Samples& samples, const Json& site) {
  for (const Json& event : site.value("events", Json::array())) {
    Labels labels = labels_of(site);
    labels.insert(labels.end(), {{"code", event["code"].get<std::string>()},
                                 {"level", event["level"].get<std::string>()}});
    samples.add(labels, event["count"]);
  }
}

struct Family {
  const char* name;
  const char* help;
  void (*add)(Samples& samples, const Json& site);
};

template <Unit unit>
void add_site_windows(Samples& samples, const Json& site) {
  add_windows(samples, labels_of(site), site, unit);
}
template <Unit unit>
void add_trade_windows(Samples& samples, const Json& site) {
  add_trades(samples, site, unit);
}

constexpr Family kFamilies[] = {
    {"vantrel_check_status", "Verdict of check: 0 fine, 1 something is off, 2 the run ends early.",
     [](Samples& s, const Json& site) { s.add(labels_of(site), site["status"]); }},
    {"vantrel_last_run_timestamp_seconds", "When the last run was let in.",
     [](Samples& s, const Json& site) { s.add(labels_of(site), site["last_run"]); }},
    {"vantrel_list_timestamp_seconds", "When the outgoing list was written.",
     [](Samples& s, const Json& site) { s.add(labels_of(site), site["list_written"]); }},
    {"vantrel_backup_timestamp_seconds", "When the newest backup was made.",
     [](Samples& s, const Json& site) { s.add(labels_of(site), site["backup"]); }},
    {"vantrel_events_last_hour", "Events of the run in the last 60 minutes; level 1 ended a run.",
     add_events},
    {"vantrel_run_gaps", "Gaps in the run history.",
     [](Samples& s, const Json& site) { s.add(labels_of(site), site.value("gaps", Json())); }},
    {"vantrel_run_gap_seconds", "Time without a run in these gaps.",
     [](Samples& s, const Json& site) {
       const Json minutes = site.value("missed_minutes", Json());
       if (!minutes.is_null()) s.add(labels_of(site), minutes.get<std::int64_t>() * 60);
     }},
    {"vantrel_trades", "Trades of the index, without its reserved entries.",
     [](Samples& s, const Json& site) { s.add(labels_of(site), site["trades"]); }},
    {"vantrel_listed_trades", "Trades in the outgoing list.",
     [](Samples& s, const Json& site) { s.add(labels_of(site), site["listed"]); }},
    {"vantrel_hits", "Incoming hits in a window, over all entries.", add_site_windows<Unit::hits>},
    {"vantrel_clicks", "Clicks in a window, over all entries.", add_site_windows<Unit::clicks>},
    {"vantrel_quality_points", "Quality of the traffic in a window, over all entries.",
     add_site_windows<Unit::points>},
    {"vantrel_trade_hits", "Incoming hits of a trade in a window.", add_trade_windows<Unit::hits>},
    {"vantrel_trade_clicks", "Clicks of a trade in a window.", add_trade_windows<Unit::clicks>},
    {"vantrel_trade_quality_points", "Quality of a trade's traffic in a window.",
     add_trade_windows<Unit::points>},
};

}  // namespace

Json metrics_view(std::vector<std::string> directories, bool trades) {
  if (directories.empty()) directories.emplace_back(".");
  Json view;
  view["trades"] = trades;
  view["sites"] = look_at_sites(directories, trades ? Detail::trades : Detail::site);
  return view;
}

void print_metrics(const Json& view) {
  for (const Family& family : kFamilies) {
    if (view["trades"] == false && std::string_view(family.name).starts_with("vantrel_trade_")) {
      continue;
    }
    std::cout << "# HELP " << family.name << ' ' << family.help << "\n# TYPE " << family.name
              << " gauge\n";
    Samples samples(family.name);
    for (const Json& site : view["sites"]) family.add(samples, site);
  }
}

}  // namespace vantrel::inspect
