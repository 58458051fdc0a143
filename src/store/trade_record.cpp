#include "store/trade_record.h"

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {

void add(TrafficCounters& to, const TrafficCounters& counters) {
  for (std::size_t i = 0; i < kCounterCount; ++i) {
    to.values[i] = wrap_add(to.values[i], counters.values[i]);
  }
}

void subtract(TrafficCounters& from, const TrafficCounters& counters) {
  for (std::size_t i = 0; i < kCounterCount; ++i) {
    from.values[i] = wrap_sub(from.values[i], counters.values[i]);
  }
}

void make_default_trade(TradeRecord& trade) { trade = TradeRecord{}; }

void make_default_work(TradeWork& work) { work = TradeWork{}; }

void make_work(TradeWork& work, const TradeRecord& trade) {
  make_default_work(work);
  static_cast<TradeRecord&>(work) = trade;
}

}  // namespace vantrel
