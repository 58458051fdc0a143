// The trade records of the sample site.
#pragma once

#include <vector>

#include "sample/model.h"
#include "store/trade_record.h"

namespace vantrel::sample {

// By position. Every kind of setting of a trade is in use by some of the first 25 trades.
[[nodiscard]] std::vector<TradeRecord> make_trades(const Model& model);

}  // namespace vantrel::sample
