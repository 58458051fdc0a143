#include <algorithm>
#include <iostream>
#include <vector>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/text.h"
#include "out/out_list.h"
#include "site.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kNumberColumns[] = {"in60",   "uniq60", "out60", "clk60", "in24",
                                          "uniq24", "out24",  "clk24", "in07",  "uniq07",
                                          "out07",  "clk07",  "ratio", "quota", "left"};

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
  row["quota"] = active_quota(work, hour);
  row["left"] = work.hits_left;
  return row;
}

void sort_rows(Json& rows, const std::string& column, bool reverse) {
  const bool by_number = std::find(std::begin(kNumberColumns), std::end(kNumberColumns), column) !=
                         std::end(kNumberColumns);
  if (!by_number && column != "id" && column != "name") {
    throw WrongUsage{"there is no column " + printable(column)};
  }
  // Of traffic one wants to see the most first.
  const bool descending = by_number != reverse;
  std::stable_sort(rows.begin(), rows.end(), [&](const Json& a, const Json& b) {
    return descending ? b[column] < a[column] : a[column] < b[column];
  });
}

}  // namespace

Json trades_view(const std::string& column, bool reverse) {
  const TradeStore store = load_store();
  const int hour = local_time(wall_clock()).tm_hour;
  Json rows = Json::array();
  for (std::size_t i = 0; i < store.works.size(); ++i) {
    rows.push_back(trade_row(store.works[i], i, hour));
  }
  if (!column.empty()) {
    sort_rows(rows, column, reverse);
  } else if (reverse) {
    std::reverse(rows.begin(), rows.end());
  }
  return {{"last_run", time_text(last_run_or_now())}, {"trades", rows}};
}

void print_trades(const Json& view) {
  std::vector<Column> columns = {{"id", true}, {"name"}};
  for (const char* column : kNumberColumns) columns.push_back({column, true});
  columns.push_back({"collects"});
  std::vector<std::vector<std::string>> rows;
  for (const Json& trade : view["trades"]) {
    std::vector<std::string> row = {cell(trade["id"]), cell(trade["name"])};
    for (const char* column : kNumberColumns) row.push_back(cell(trade[column]));
    row[14] += '%';
    row.push_back(cell(trade["collects"]));
    rows.push_back(std::move(row));
  }
  std::cout << "Traffic of the last 60 minutes, 24 hours and 7 days up to "
            << cell(view["last_run"]) << '\n';
  print_table(columns, rows);
}

}  // namespace vantrel::inspect
