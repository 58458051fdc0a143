#include <algorithm>
#include <iostream>
#include <vector>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/text.h"
#include "data_time.h"
#include "out/out_list.h"
#include "site.h"
#include "sums.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kNumberColumns[] = {"in60",  "uniq60",  "out60", "clk60",  "in24",  "uniq24",
                                          "out24", "clk24",   "in07",  "uniq07", "out07", "clk07",
                                          "ratio", "quality", "proxy", "quota",  "left"};
// What is shown unless asked for otherwise, in this many places.
constexpr const char* kUsualColumns[] = {"in60",  "out60", "in24", "uniq24", "out24",
                                         "clk24", "ratio", "in07", "out07"};
constexpr std::size_t kUsualWidth = 100;
constexpr std::size_t kShortestName = 12;

bool is_number_column(const std::string& column) {
  return std::find(std::begin(kNumberColumns), std::end(kNumberColumns), column) !=
         std::end(kNumberColumns);
}

Json trade_row(const TradeWork& work, std::size_t position, int hour) {
  Json row = {
      {"id", work.id}, {"name", field_text(work.name)}, {"collects", collects(work, position)}};
  const char* const* column = kNumberColumns;
  for (const TrafficCounters* window : {&work.last60, &work.last24, &work.last07}) {
    for (const slot::Counter counter : {slot::rin, slot::uin, slot::out, slot::clk}) {
      row[*column++] = (*window)[counter];
    }
  }
  row["ratio"] = percent_of(work.last24[slot::out], work.last24[slot::rin]);
  row["quality"] = average(work.last24[slot::rti], work.last24[slot::rin]);
  row["proxy"] = percentage(work.last24[slot::proxy_in], work.last24[slot::rin]);
  row["quota"] = active_quota(work, hour);
  row["left"] = work.hits_left;
  return row;
}

// Over all entries, the reserved ones included, as in the day's totals of the history.
Json totals_of(const Json& rows) {
  Json totals;
  for (const char* column : kNumberColumns) {
    std::int64_t sum = 0;
    for (const Json& row : rows)
      sum += row[column].is_number() ? row[column].get<std::int64_t>() : 0;
    totals[column] = sum;
  }
  totals["quality"] = totals["proxy"] = Json();
  totals["ratio"] = percent_of(truncate_to_int(totals["out24"]), truncate_to_int(totals["in24"]));
  return totals;
}

void sort_rows(Json& rows, const std::string& column, bool reverse) {
  const bool by_number = is_number_column(column);
  if (!by_number && column != "id" && column != "name") {
    throw WrongUsage{"there is no column " + printable(column)};
  }
  // Of traffic one wants to see the most first.
  const bool descending = by_number != reverse;
  std::stable_sort(rows.begin(), rows.end(), [&](const Json& a, const Json& b) {
    return descending ? b[column] < a[column] : a[column] < b[column];
  });
}

std::vector<std::string> columns_of(const TradesQuery& query) {
  if (query.wide) return {std::begin(kNumberColumns), std::end(kNumberColumns)};
  if (query.columns.empty()) return {std::begin(kUsualColumns), std::end(kUsualColumns)};
  for (const std::string& column : query.columns) {
    if (!is_number_column(column)) throw WrongUsage{"there is no column " + printable(column)};
  }
  return query.columns;
}

// A reserved entry without any traffic says nothing.
bool is_idle(const Json& row) {
  return row["collects"] != "" &&
         std::all_of(std::begin(kNumberColumns), std::end(kNumberColumns),
                     [&](const char* column) { return row[column] == 0 || row[column].is_null(); });
}

std::string trade_cell(const Json& row, const std::string& column) {
  const bool percentage = column == "ratio" || (column == "proxy" && !row[column].is_null());
  return cell(row[column]) + (percentage ? "%" : "");
}

std::vector<std::string> cells_of(const Json& row, const Json& shown, const std::string& name) {
  std::vector<std::string> cells = {row.contains("id") ? cell(row["id"]) : "", name};
  for (const Json& column : shown) {
    cells.push_back(trade_cell(row, column));
  }
  return cells;
}

std::vector<Column> table_columns(const Json& shown) {
  std::vector<Column> columns = {{"id", true}, {"name"}};
  for (const Json& column : shown) columns.push_back({cell(column), true});
  return columns;
}

// A table that is too wide gets short names; if that is not enough, columns at its end are left
// out.
void fit(std::vector<Column>& columns, std::vector<std::vector<std::string>>& rows) {
  std::size_t longest = 0;
  for (const auto& row : rows) longest = std::max(longest, row[1].size());
  while (longest > kShortestName && table_width(columns, rows) > kUsualWidth) {
    --longest;
    for (auto& row : rows) row[1] = shortened(row[1], longest);
  }
  while (columns.size() > 3 && table_width(columns, rows) > kUsualWidth) {
    columns.pop_back();
    for (auto& row : rows) row.pop_back();
  }
}

void print_left_out(std::size_t idle, std::size_t below, std::size_t cut) {
  std::string words;
  const auto add_words = [&](std::size_t count, const std::string& text) {
    if (count > 0) words += (words.empty() ? "Not shown: " : "; ") + text;
  };
  add_words(idle, std::to_string(idle) + " reserved without traffic");
  add_words(below, std::to_string(below) + " behind these");
  add_words(cut, counted(cut, "column"));
  if (!words.empty()) std::cout << coloured(Colour::faint, words + ".") << '\n';
}

}  // namespace

Json trades_view(const TradesQuery& query) {
  const std::vector<std::string> columns = columns_of(query);
  const TradeStore store = load_store();
  const int hour = local_time(wall_clock()).tm_hour;
  Json rows = Json::array();
  for (std::size_t i = 0; i < store.works.size(); ++i) {
    rows.push_back(trade_row(store.works[i], i, hour));
  }
  Json view;
  view["entries"] = rows.size();
  view["totals"] = totals_of(rows);
  if (!query.sort.empty() || query.top) {
    sort_rows(rows, query.sort.empty() ? "in24" : query.sort, query.reverse);
  } else if (query.reverse) {
    std::reverse(rows.begin(), rows.end());
  }
  if (query.top && *query.top < rows.size()) {
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*query.top), rows.end());
  }
  view["columns"] = columns;
  view["fitted"] = !query.wide && query.columns.empty();
  view["trades"] = std::move(rows);
  add_data_time(view);
  return view;
}

void print_trades(const Json& view) {
  std::vector<Column> columns = table_columns(view["columns"]);
  std::vector<std::vector<std::string>> rows;
  const bool fitted = view["fitted"].get<bool>();
  std::size_t idle = 0;
  for (const Json& trade : view["trades"]) {
    if (fitted && is_idle(trade)) {
      ++idle;
      continue;
    }
    const std::string collected =
        trade["collects"] == "" ? "" : " (" + cell(trade["collects"]) + ')';
    rows.push_back(cells_of(trade, view["columns"], cell(trade["name"]) + collected));
  }
  rows.push_back(cells_of(view["totals"], view["columns"], "all " + cell(view["entries"])));
  const std::size_t wanted = columns.size();
  if (fitted) fit(columns, rows);
  std::cout << "Traffic of the last 60 minutes, 24 hours and 7 days up to " << data_time_words(view)
            << '\n';
  print_table(columns, rows);
  print_left_out(idle, view["entries"].get<std::size_t>() - view["trades"].size(),
                 wanted - columns.size());
}

}  // namespace vantrel::inspect
