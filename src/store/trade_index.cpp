#include "store/trade_index.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "base/files.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

std::size_t trades_in(std::uint64_t bytes) {
  return static_cast<std::size_t>((bytes + sizeof(TradeRecord) - 1) / sizeof(TradeRecord));
}

// The trades as they stand in the index now, with this run's countdowns taken from them.
void count_down_anew(TradeStore& store) {
  FileBuffer file;
  if (!file.read(kIndexFile)) return;
  const std::vector<TradeRecord> counted = std::move(store.trades);
  store.trades = read_trades(file.text());
  if (store.hours_stepped) hourly_step(store);
  const std::size_t both = std::min(counted.size(), store.trades.size());
  for (std::size_t i = 0; i < both; ++i) {
    std::int32_t& left = store.trades[i].hits_left;
    if (left <= 0 || store.trades[i].id != counted[i].id) continue;  // another one has its place
    left = std::max(0, left - (store.hits_left_before[i] - counted[i].hits_left));
  }
}

}  // namespace

std::vector<TradeRecord> read_trades(std::string_view bytes) {
  std::vector<TradeRecord> trades(trades_in(bytes.size()));
  if (!bytes.empty()) std::memcpy(trades.data(), bytes.data(), bytes.size());
  return trades;
}

// Straight into the array: beside it a copy of the file would be as large.
bool load_trade_index(TradeStore& store) {
  const File file = open_to_read(kIndexFile);
  store.trades.resize(trades_in(file.size()));
  const std::ptrdiff_t count = read_at(file, store.trades.data(), file.size(), 0);
  if (!file.is_open() || count < 0) {
    report(event::index_unavailable);
    return false;
  }
  store.trades.resize(trades_in(static_cast<std::uint64_t>(count)));
  store.index_read = file.version();
  if (store.trades.size() >= kFewestTrades) return true;
  report(event::index_too_small);
  return false;
}

void hourly_step(TradeStore& store) {
  store.hours_stepped = true;
  for (TradeRecord& trade : store.trades) {
    if (trade.hours_left <= 0) continue;
    --trade.hours_left;
    store.index_dirty = true;
  }
}

void fill_work_array(TradeStore& store) {
  store.works.resize(store.trades.size());
  store.ids = IdIndex(store.trades.size());
  store.hits_left_before.resize(store.trades.size());
  for (std::size_t i = 0; i < store.trades.size(); ++i) {
    make_work(store.works[i], store.trades[i]);
    store.hits_left_before[i] = store.trades[i].hits_left;
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

bool write_trade_index(TradeStore& store) {
  if (!store.index_dirty) return true;
  File file = open_to_update(kIndexFile);
  if (file.is_open() && file.version() != store.index_read) count_down_anew(store);
  if (file.is_open() &&
      write_at(file, store.trades.data(), store.trades.size() * sizeof(TradeRecord), 0) &&
      file.close()) {
    return true;
  }
  report(event::index_unavailable);
  return false;
}

}  // namespace vantrel
