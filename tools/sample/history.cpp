#include "sample/history.h"

#include <sstream>
#include <utility>

#include "base/clock.h"
#include "sample/files.h"

namespace vantrel::sample {

HistoryWriter::HistoryWriter(std::filesystem::path site, const Model& model, std::time_t now)
    : site_(std::move(site)), model_(model) {
  // At noon no change of the clock moves a date.
  std::tm noon = local_time(now);
  noon.tm_hour = 12;
  for (int days = model.size.history_days; days > 0; --days) {
    std::tm day = noon;
    day.tm_mday -= days;
    day.tm_isdst = -1;
    dates_.push_back(format_time("%Y%m%d", std::mktime(&day)));
  }
  std::tm end_of_yesterday = noon;
  end_of_yesterday.tm_mday -= 1;
  end_of_yesterday.tm_hour = 23;
  end_of_yesterday.tm_min = 59;
  end_of_yesterday.tm_sec = 2;
  end_of_yesterday.tm_isdst = -1;
  last_written_ = std::mktime(&end_of_yesterday);
  totals_.resize(dates_.size());
}

TrafficCounters HistoryWriter::write_trade(std::size_t position, const TrafficCounters& day) {
  Random random = random_for(model_.size, "history", position);
  TrafficCounters week;
  std::string text;
  text.reserve(dates_.size() * 128);
  for (std::size_t i = 0; i < dates_.size(); ++i) {
    const std::int64_t percent = 80 + random.below(31);
    put(text, "");
    put(text, dates_[i]);
    TrafficCounters counters;
    for (std::size_t k = 0; k < kCounterCount; ++k) {
      counters.values[k] = static_cast<std::int32_t>(day.values[k] * percent / 100);
      put(text, counters.values[k]);
    }
    text += "||||||||||||||\n";
    if (dates_.size() - i <= 7) add(week, counters);
    add_to_totals(totals_[i], position, counters);
  }
  write_history_file(model_.names[position], text);
  return week;
}

void HistoryWriter::write_totals() {
  std::string all;
  std::string trades;
  for (std::size_t day = 0; day < dates_.size(); ++day) {
    all += total_record(day, false);
    trades += total_record(day, true);
  }
  write_history_file("all", all);
  write_history_file("trades", trades);
}

void HistoryWriter::add_to_totals(Totals& totals, std::size_t position,
                                  const TrafficCounters& counters) {
  add(totals.all, counters);
  if (position >= kReservedCount) add(totals.trades, counters);
  if (position == 1) totals.gallery_out = counters[slot::out];
  if (position == 3) totals.no_referrer_in = counters[slot::rin];
  if (position == reserved::kListed) totals.listed_in = counters[slot::rin];
}

std::string HistoryWriter::total_record(std::size_t day, bool of_trades) const {
  const Totals& totals = totals_[day];
  const TrafficCounters& sums = of_trades ? totals.trades : totals.all;
  std::ostringstream text;
  text << '|' << dates_[day] << '|' << static_cast<std::uint32_t>(totals.all[slot::rin]) << '|';
  for (std::size_t k = slot::uin; k < slot::rti; ++k) {
    text << static_cast<std::uint32_t>(sums.values[k]) << '|';
  }
  for (std::size_t k = slot::rti; k <= slot::rtc; ++k) {
    text << static_cast<float>(sums.values[k]) << '|';
  }
  text << static_cast<std::uint32_t>(totals.trades[slot::out]) << '|' << totals.gallery_out << '|'
       << totals.no_referrer_in << '|' << (of_trades ? 0 : totals.listed_in) << '|'
       << model_.names.size() - 10 << "||||||||||";
  return text.str();
}

// As the runs of 23:59 left it.
void HistoryWriter::write_history_file(const std::string& name, const std::string& text) const {
  const std::filesystem::path path = site_ / "d/h" / (name + ".his");
  write_file(path, text);
  set_modified(path, last_written_);
}

}  // namespace vantrel::sample
