#include "report.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <vector>

#include "base/clock.h"
#include "base/files.h"
#include "base/replace_file.h"
#include "counters.h"
#include "forms.h"
#include "pack.h"
#include "page.h"
#include "site.h"
#include "story.h"
#include "trade_page.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kEventsShown = 1000;
constexpr std::size_t kNamed = 8;
constexpr std::size_t kDaysOfWeek = 7;
constexpr double kFewestSent = 50;  // of fewer visitors a ratio says nothing

std::string site_directory() {
  std::array<char, PATH_MAX> path{};
  return ::realpath(".", path.data()) != nullptr ? path.data() : ".";
}

// Puts the members of an object together, each as soon as it is there.
class PackedObject {
 public:
  void add(const std::string& key, const std::string& text) {
    text_ += (text_.empty() ? "{\"" : ",\"") + key + "\":" + text;
  }
  void add_view(const std::string& key, Json (*view)()) { add_packed(key, available(view)); }
  void add_packed(const std::string& key, const Json& json) {
    std::string text;
    packer.pack(json, text);
    add(key, text);
  }
  [[nodiscard]] std::string text() const { return text_ + '}'; }

  static Json available(Json (*view)()) {
    try {
      return view();
    } catch (const Unavailable& error) {
      return {{"unavailable", error.reason}};
    }
  }

  Packer packer;

 private:
  std::string text_;
};

// A trade that the page names, and what puts it in front of others.
struct Named {
  std::size_t position;
  double amount;
};

Json positions_of_most(std::vector<Named>& trades) {
  std::stable_sort(trades.begin(), trades.end(),
                   [](const Named& a, const Named& b) { return a.amount > b.amount; });
  Json positions = Json::array();
  for (std::size_t i = 0; i < std::min(trades.size(), kNamed); ++i) {
    positions.push_back(trades[i].position);
  }
  return positions;
}

// Worst payers got the most visitors for one they sent in the day; newcomers have not a week of
// history.
class Notable {
 public:
  void look_at(const TradeWork& trade, std::size_t position, std::size_t days) {
    const double in = trade.last24[slot::rin];
    const double out = trade.last24[slot::out];
    if (out > in && out >= kFewestSent) payers_.push_back({position, out / std::max(in, 1.0)});
    if (days < kDaysOfWeek && (in > 0 || out > 0)) newcomers_.push_back({position, in});
  }
  [[nodiscard]] Json json() {
    return {{"worst_payers", positions_of_most(payers_)},
            {"newcomers", positions_of_most(newcomers_)}};
  }

 private:
  std::vector<Named> payers_, newcomers_;
};

// Of single hours and days the page shows what it draws.
Json drawn(const Json& rows) {
  Json list = Json::array();
  for (const Json& row : rows) {
    const auto time = row.begin();
    list.push_back({{time.key(), time.value()},
                    {"rin", row["rin"]},
                    {"uin", row["uin"]},
                    {"out", row["out"]},
                    {"clk", row["clk"]}});
  }
  return list;
}

Json counter_words() {
  Json words;
  for (const auto& [name, counts] : kCounters) words[name] = counts;
  return words;
}

// All trades, one packed page behind the other: as they are they would fill the memory.
std::string trade_pages(Forms& forms, Notable& notable) {
  std::vector<std::string> texts;
  try {
    const TradePages pages = read_trade_pages();
    for (std::size_t i = 0; i < pages.store.works.size(); ++i) {
      Json page = trade_page(pages, i);
      if (page["collects"] == "") notable.look_at(pages.store.works[i], i, page["days"].size());
      for (const char* rows : {"hours", "days"}) page[rows] = drawn(page[rows]);
      Json& words = page["words"] = Json::array();
      for (const auto& [setting, meaning] : settings_words(page["settings"])) {
        words.push_back({{"setting", setting}, {"meaning", meaning}});
      }
      page.erase("settings");  // the words say as much
      texts.push_back(forms.pack(page));
    }
  } catch (const Unavailable&) {
    texts.clear();  // the view of all trades says why
  }
  return joined(texts);
}

// Why each stands where it stands, by position as well.
std::string why_pages(Forms& forms) {
  std::vector<std::string> pages;
  try {
    const Forecast forecast = foresee_list();
    pages.resize(forecast.ranked.size());
    for (std::size_t rank = 0; rank < pages.size(); ++rank) {
      pages[forecast.ranked[rank]] = forms.pack(why_json(story_of(forecast, rank)));
    }
  } catch (const Unavailable&) {
    return "[]";  // what keeps the run from its list is among the findings
  }
  return joined(pages);
}

}  // namespace

bool has_report() { return !kPageStart.empty(); }

std::string report_data() {
  PackedObject data;
  data.add("directory", page_text(site_directory()));
  data.add("made", page_text(time_text(wall_clock())));
  data.add_view("check", [] { return check_view(); });
  data.add_view("site", site_view);
  data.add_view("list", list_view);
  data.add_view("trades", [] { return trades_view({}); });
  data.add_view("events", [] {
    return events_view({.count = kEventsShown, .since = "", .level = "", .trade = ""});
  });
  data.add_view("runs", runs_view);
  data.add_packed("counters", counter_words());
  Forms forms(data.packer);
  Notable notable;
  data.add("trade", trade_pages(forms, notable));
  data.add_packed("notable", notable.json());
  data.add("why", why_pages(forms));
  data.add("forms", forms.forms());
  data.add("shapes", data.packer.shapes());
  data.add("pool", data.packer.pool());
  return data.text();
}

std::string report_page(const std::string& data) {
  if (!has_report()) {
    throw Unavailable{"built without its page: libjs-chart.js was not installed"};
  }
  std::string page;
  page.reserve(kPageStart.size() + data.size() + kPageEnd.size());
  return page.append(kPageStart).append(data).append(kPageEnd);
}

void write_report(const std::string& page, const std::string& path) {
  const bool written = path.empty() ? write_all(1, page) : replace_file(path.c_str(), page);
  if (!written) {
    throw Unavailable{(path.empty() ? "the page" : printable(path)) + " cannot be written"};
  }
}

}  // namespace vantrel::inspect
