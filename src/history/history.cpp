#include "history/history.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/files.h"
#include "base/flush.h"
#include "base/numbers.h"
#include "base/text.h"
#include "history/history_file.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

constexpr std::int32_t kLastReservedId = 10;

std::string subject_of(std::string_view name) { return "d/h/" + std::string(name) + ".his"; }

std::string trade_record(const TradeWork& work, const std::string& date) {
  std::string record = "|";
  record += date;
  for (const std::int32_t value : work.last24.values) {
    record += '|';
    append_number(record, value);
  }
  return record + "|||||||||||||||\n";
}

// Sums of last24 over some of the entries. The qualities are summed in single precision, as the
// pages that show them do.
struct Totals {
  TrafficCounters counters;
  float quality[3] = {0.0f, 0.0f, 0.0f};  // rti, rto, rtc

  void add_entry(const TradeWork& work) {
    add(counters, work.last24);
    quality[0] += static_cast<float>(work.last24[slot::rti]);
    quality[1] += static_cast<float>(work.last24[slot::rto]);
    quality[2] += static_cast<float>(work.last24[slot::rtc]);
  }
};

void append_value(std::string& record, std::int32_t value) {
  record += '|';
  append_number(record, static_cast<std::uint32_t>(value));
}

// Six significant digits.
void append_value(std::string& record, float value) {
  char text[32];
  std::snprintf(text, sizeof text, "|%g", static_cast<double>(value));
  record += text;
}

std::int32_t counter_of_id(const std::vector<TradeWork>& works, std::int32_t id,
                           slot::Counter counter) {
  const auto found = std::find_if(works.begin(), works.end(),
                                  [id](const TradeWork& work) { return work.id == id; });
  return found == works.end() ? 0 : found->last24[counter];
}

// The two records of totals: rin over all entries comes first in both, the rest is over the entries
// the file is about. listed_rin: the rin of the entry for listed names, which is no trade.
std::string totals_record(const std::vector<TradeWork>& works, const std::string& date,
                          const Totals& all, const Totals& about, const Totals& trades,
                          std::int32_t listed_rin) {
  std::string record = "|";
  record += date;
  append_value(record, all.counters[slot::rin]);
  for (std::size_t i = slot::uin; i <= slot::proxy_clk; ++i) {
    append_value(record, about.counters.values[i]);
  }
  for (const float quality : about.quality) append_value(record, quality);
  append_value(record, trades.counters[slot::out]);
  append_value(record, counter_of_id(works, 1, slot::out));
  append_value(record, counter_of_id(works, 3, slot::rin));
  append_value(record, listed_rin);
  append_value(record, static_cast<std::int32_t>(works.size() - 10));
  return record + "||||||||||";
}

}  // namespace

bool history_load_due(const StartClock& clock) {
  return clock.run_minute != 1 || clock.run_hour == 0;
}

void load_history(std::vector<TradeWork>& works) {
  HistoryReader reader;
  for (TradeWork& work : works) {
    work.last07 = TrafficCounters{};
    const std::string_view name = field_text(work.name);
    const auto path = trade_history_path(name);
    const auto sum = path ? reader.sum_of_last_week(path->c_str()) : std::nullopt;
    if (sum) {
      work.last07 = *sum;
    } else {
      report(event::trade_history_unavailable, subject_of(name));
    }
  }
}

bool history_due(const StartClock& clock) {
  if (clock.end_of_day()) return true;
  if (clock.run_hour != 0 || clock.run_minute < 2 || clock.run_minute > 19) return false;
  struct stat status {};
  if (::stat(kTotalsFile, &status) != 0) return false;
  const std::time_t age = epoch_minute(wall_clock()) - epoch_minute(status.st_mtime);
  return age >= 61 && age <= 2999;
}

void write_history(const std::vector<TradeWork>& ranked, const StartClock& clock) {
  const std::string date = format_time("%Y%m%d", clock.local);
  Totals all;
  Totals trades;
  for (const TradeWork& work : ranked) {
    const std::string_view name = field_text(work.name);
    const auto path = trade_history_path(name);
    if (!path || !append_to_file(path->c_str(), trade_record(work, date), Torn::cut)) {
      report(event::trade_history_unavailable, subject_of(name));
    }
    all.add_entry(work);
    if (work.id > kLastReservedId) trades.add_entry(work);
  }
  const std::int32_t listed_rin = counter_of_id(ranked, 8, slot::rin);
  if (!append_to_file(kTotalsFile, totals_record(ranked, date, all, all, trades, listed_rin),
                      Torn::cut)) {
    report(event::total_history_unwritable);
  }
  if (!append_to_file(kTradeTotalsFile, totals_record(ranked, date, all, trades, trades, 0),
                      Torn::cut)) {
    report(event::trades_history_unwritable);
  }
  // Written once a day, a record that a power cut takes is lost for good. One call for all of them.
  flush_file_system("d/h");
}

}  // namespace vantrel
