// The daily records of the sample site.
#pragma once

#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "sample/model.h"
#include "store/trade_record.h"

namespace vantrel::sample {

// Writes the history of one trade after the other, then that of the totals. The last record is that
// of the day before now.
class HistoryWriter {
 public:
  HistoryWriter(std::filesystem::path site, const Model& model, std::time_t now);

  // Days like day, more or less; the sum of the last seven. Throws on failure.
  TrafficCounters write_trade(std::size_t position, const TrafficCounters& day);
  // Throws on failure.
  void write_totals();

 private:
  struct Totals {
    TrafficCounters all;
    TrafficCounters trades;
    std::int32_t gallery_out = 0;
    std::int32_t no_referrer_in = 0;
    std::int32_t listed_in = 0;
  };

  static void add_to_totals(Totals& totals, std::size_t position, const TrafficCounters& counters);
  [[nodiscard]] std::string total_record(std::size_t day, bool of_trades) const;
  void write_history_file(const std::string& name, const std::string& text) const;

  std::filesystem::path site_;
  const Model& model_;
  std::vector<std::string> dates_;  // the oldest first
  std::time_t last_written_ = 0;
  std::vector<Totals> totals_;  // by day
};

}  // namespace vantrel::sample
