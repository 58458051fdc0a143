// Outgoing planning: every trade is scored and ranked, the best that may receive traffic get the
// weights, and the outgoing list is written.
#pragma once

#include <cstdint>
#include <vector>

#include "out/out_settings.h"
#include "settings/main_settings.h"
#include "store/trade_record.h"

namespace vantrel {

// The measure a trade's boost looks at, chosen by its param_828.
[[nodiscard]] std::int32_t boost_metric(const TradeWork& trade);

// The trade's quota of clicks for a local hour (0-23), whether its hours have run out or not.
[[nodiscard]] std::int32_t quota_of(const TradeWork& trade, int hour);

// Scores (with boost) of all trades, in the order of the work array.
void score_trades(std::vector<TradeWork>& works, const OutSettings& settings);

// By score, highest first, equal ones in their order; scores that are no number last.
void rank_trades(std::vector<TradeWork>& works);

// Replaces the scores of the ranked trades by weights. uin24_limit: unique hits a day a trade
// needs.
void hand_out_weights(std::vector<TradeWork>& ranked, const OutSet& weights,
                      std::int32_t uin24_limit, int hour);

// All of it; works is ranked afterwards, with final scores. False, after an error page, when
// d/nm/track cannot be read: d/out.lst is then the previous run's. A list that cannot be written
// is an event.
[[nodiscard]] bool plan_outgoing(std::vector<TradeWork>& works, const OutSettings& settings,
                                 const MainSettings& main_settings, int hour);

}  // namespace vantrel
