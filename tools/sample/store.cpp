#include "sample/store.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/clock.h"
#include "sample/files.h"
#include "sample/history.h"
#include "sample/trades.h"
#include "sample/traffic.h"

namespace vantrel::sample {
namespace {

struct Windows {
  TrafficCounters last60;
  TrafficCounters last24;
};

// newest: the minute the last run handled.
Windows sum_windows(const DayOfSlots& slots, std::time_t newest) {
  Windows windows;
  for (const TrafficCounters& counters : slots) add(windows.last24, counters);
  for (int minute = 0; minute < 60; ++minute) {
    const int of_day = minute_of_day(newest - minute * 60);
    add(windows.last60, slots[static_cast<std::size_t>(of_day)]);
  }
  return windows;
}

std::string_view bytes_of(const auto& array) {
  return {reinterpret_cast<const char*>(array.data()), array.size() * sizeof(array[0])};
}

void put_counters(std::string& text, const TrafficCounters& counters) {
  for (const std::int32_t value : counters.values) put(text, value);
}

std::uint64_t unsigned_value(std::int32_t value) { return static_cast<std::uint32_t>(value); }

}  // namespace

SiteTotals write_store(const std::filesystem::path& site, const Model& model, std::time_t now) {
  const std::filesystem::path folder = site / "d/t";
  write_file(folder / "index", bytes_of(make_trades(model)));
  const TrafficMaker traffic(model);
  HistoryWriter history(site, model, now);
  const std::uint32_t usual = model.by_rank[model.by_rank.size() * 7 / 10];
  SiteTotals totals;
  std::string summary;
  DayOfSlots slots;
  for (std::size_t position = 0; position < model.names.size(); ++position) {
    traffic.fill_day(position, slots);
    write_file(folder / std::to_string(position), bytes_of(slots));
    const Windows windows = sum_windows(slots, now - 120);
    const TrafficCounters last07 = history.write_trade(position, windows.last24);
    put(summary, "");
    put(summary, static_cast<std::int64_t>(position));
    put_counters(summary, windows.last60);
    put_counters(summary, windows.last24);
    put_counters(summary, last07);
    summary += '\n';
    const std::uint64_t incoming = unsigned_value(windows.last24[slot::rin]);
    totals.incoming += incoming;
    totals.busiest_incoming = std::max(totals.busiest_incoming, incoming);
    if (position == usual) totals.usual_unique = unsigned_value(windows.last24[slot::uin]);
  }
  history.write_totals();
  write_file(folder / "sum", summary);
  write_file(site / "d/jb", "");
  return totals;
}

void write_run_history(const std::filesystem::path& site, std::time_t now) {
  std::string stamps;
  for (int minutes = 20; minutes > 0; --minutes) {
    stamps += format_time("%m%d%H%M", now - minutes * 60) + '\n';
  }
  const std::filesystem::path folder = site / "l/sys";
  write_file(folder / "cron.run", stamps);
  write_file(folder / "cron.last", format_time("%m%d%H%M", now - 60));
  set_modified(folder / "cron.last", now - 60);
  write_file(site / "l/hdd.check", "0123456789");
}

}  // namespace vantrel::sample
