// Everything about one trade, for the views that show one and for those that show them all.
#pragma once

#include <cstddef>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "out/out_settings.h"
#include "screen.h"
#include "store/trade_index.h"

namespace vantrel::inspect {

// What the pages of all trades are made from, read once.
struct TradePages {
  TradeStore store;
  std::time_t last_run = 0;
  int hour = 0;  // the local hour whose quotas count
  TradeCaps caps;
};

// Throws Unavailable when there is no usable store.
[[nodiscard]] TradePages read_trade_pages();

// What "vantrel-inspect trade" shows of the trade at that position, but for the age of the data.
[[nodiscard]] Json trade_page(const TradePages& pages, std::size_t position);

// What the settings of such a page mean: what each is about, and a sentence.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> settings_words(const Json& settings);

}  // namespace vantrel::inspect
