// Made-up counters of a trade: what a day of traffic like that of the hit logs leaves in its
// statistics file.
#pragma once

#include <array>
#include <vector>

#include "sample/model.h"
#include "store/trade_record.h"
#include "traffic/windows.h"

namespace vantrel::sample {

using DayOfSlots = std::array<TrafficCounters, kMinutesPerDay>;

class TrafficMaker {
 public:
  // The model must outlive the maker.
  explicit TrafficMaker(const Model& model);

  // The last day of the entry at a position.
  void fill_day(std::size_t position, DayOfSlots& slots) const;

 private:
  // Of all records of a direction, in units of kWhole.
  struct Shares {
    std::uint64_t incoming = 0;
    std::uint64_t source = 0;
    std::uint64_t target = 0;
  };
  static constexpr std::uint64_t kWhole = 1 << 24;

  [[nodiscard]] Shares shares_of(std::size_t position) const;

  const Model& model_;
  std::array<std::uint64_t, kHoursPerDay> records_;  // a minute, by hour
};

}  // namespace vantrel::sample
