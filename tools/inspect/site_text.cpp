// The site as a whole for people, and its days and hours for a spreadsheet.
#include <algorithm>
#include <iostream>
#include <vector>

#include "counters.h"
#include "data_time.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kMeasures[] = {"rin", "uin", "out", "clk"};
constexpr const char* kShares[] = {"out_per_in", "proxy_in_share", "proxy_out_share"};
constexpr const char* kQualities[] = {"quality_in", "quality_out", "quality_back"};

std::string share_cell(const Json& share) { return share.is_null() ? "-" : cell(share) + '%'; }

std::vector<std::string> period_row(const std::string& period, const Json& traffic) {
  std::vector<std::string> row = {period};
  for (const char* measure : kMeasures) row.push_back(cell(traffic[measure]));
  for (const char* share : kShares) row.push_back(share_cell(traffic[share]));
  for (const char* quality : kQualities) row.push_back(cell(traffic[quality]));
  return row;
}

void print_periods(const Json& view) {
  std::vector<std::vector<std::string>> rows = {period_row("60 minutes", view["last60"]),
                                                period_row("24 hours", view["last24"]),
                                                period_row("7 days", view["last07"])};
  const Json& today = view["today"];
  rows.push_back(period_row(cell(today["date"]) + " until " + cell(today["until"]), today));
  for (const auto& [key, what] :
       {std::pair("yesterday", ", day before"), {"week_before", ", week before"}}) {
    if (!view[key].is_null()) rows.push_back(period_row(cell(view[key]["date"]) + what, view[key]));
  }
  const auto days = view["last30"]["days"].get<std::size_t>();
  if (days > 0) rows.push_back(period_row(counted(days, "day") + " recorded", view["last30"]));
  print_table({{"period"},
               {"in", true},
               {"unique", true},
               {"out", true},
               {"clicks", true},
               {"out/in", true},
               {"proxy in", true},
               {"proxy out", true},
               {"q in", true},
               {"q out", true},
               {"q back", true}},
              rows);
  std::cout
      << "q: points the traffic rules gave an incoming hit, a click sent out and a click of a\n"
         "trade's visitor on average; an ordinary one has 10.\n";
}

bool has_traffic(const Json& entry) {
  return entry["rin"] != 0 || entry["clk"] != 0 || entry["out"] != 0;
}

void print_reserved(const Json& reserved) {
  std::vector<std::vector<std::string>> rows;
  for (const Json& entry : reserved["entries"]) {
    if (!has_traffic(entry)) continue;
    rows.push_back({cell(entry["name"]), cell(entry["collects"]), cell(entry["rin"]),
                    share_cell(entry["share_in"]), cell(entry["clk"]),
                    share_cell(entry["share_clk"]), cell(entry["out"]),
                    share_cell(entry["share_out"])});
  }
  rows.push_back({"together", "", "", share_cell(reserved["share_in"]), "",
                  share_cell(reserved["share_clk"]), "", share_cell(reserved["share_out"])});
  print_table({{"entry"},
               {"collects"},
               {"in", true},
               {"share", true},
               {"clicks", true},
               {"share", true},
               {"out", true},
               {"share", true}},
              rows);
}

}  // namespace

void print_site(const Json& view) {
  std::cout << coloured(Colour::bold, "The whole site up to ") << data_time_words(view) << '\n';
  print_periods(view);
  std::cout
      << "\nWhat no named trade is credited with, of 24 hours. Hits with a marker are counted\n"
         "a second time, here and in the sums.\n";
  print_reserved(view["reserved"]["last24"]);
  std::cout << "\nThe last 24 hours, from the minute slots\n";
  print_chart(view["hours"], "hour");
  std::cout << "\nThe last " << counted(view["days"].size(), "day") << " of the history\n";
  print_chart(view["days"], "date");
  if (view["unreadable_days"] != 0) {
    std::cout << coloured(Colour::yellow,
                          counted(view["unreadable_days"].get<std::size_t>(), "record") +
                              " of the history without a date")
              << '\n';
  }
}

void print_site_csv(const Json& view, const std::string& rows) {
  const char* key = rows == "days" ? "date" : "hour";
  std::cout << key;
  for (const auto& counter : kCounters) std::cout << ',' << counter.name;
  std::cout << '\n';
  for (const Json& row : view[rows]) {
    std::cout << row[key].get_ref<const std::string&>();
    for (const auto& counter : kCounters) std::cout << ',' << row[counter.name].dump();
    std::cout << '\n';
  }
}

}  // namespace vantrel::inspect
