#include "store/trade_index.h"

#include <cstring>
#include <new>

#include "base/files.h"
#include "run/event_log.h"

namespace vantrel {

std::vector<TradeRecord> read_trades(std::string_view bytes) {
  std::vector<TradeRecord> trades((bytes.size() + sizeof(TradeRecord) - 1) / sizeof(TradeRecord));
  if (!bytes.empty()) std::memcpy(trades.data(), bytes.data(), bytes.size());
  return trades;
}

bool load_trade_index(TradeStore& store) {
  FileBuffer file;
  if (!file.read(kIndexFile)) {
    report(event::index_unavailable);
    return false;
  }
  store.trades = read_trades(file.text());
  if (store.trades.size() >= kFewestTrades) return true;
  report(event::index_too_small);
  return false;
}

void hourly_step(TradeStore& store) {
  for (TradeRecord& trade : store.trades) {
    if (trade.hours_left <= 0) continue;
    --trade.hours_left;
    store.index_dirty = true;
  }
}

void fill_work_array(TradeStore& store) {
  store.works.resize(store.trades.size());
  store.ids = IdIndex(store.trades.size());
  for (std::size_t i = 0; i < store.trades.size(); ++i) {
    make_work(store.works[i], store.trades[i]);
    store.ids.add(store.works[i].id, static_cast<std::int32_t>(i));
  }
}

bool build_work_array(TradeStore& store) {
  try {
    store.works.resize(store.trades.size());
  } catch (const std::bad_alloc&) {
    report(event::index_not_populated);
    return false;
  }
  fill_work_array(store);
  return true;
}

bool write_trade_index(const TradeStore& store) {
  if (!store.index_dirty) return true;
  File file = open_to_update(kIndexFile);
  if (file.is_open() &&
      write_at(file, store.trades.data(), store.trades.size() * sizeof(TradeRecord), 0) &&
      file.close()) {
    return true;
  }
  report(event::index_unavailable);
  return false;
}

}  // namespace vantrel
