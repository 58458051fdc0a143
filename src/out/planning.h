// Outgoing planning: every trade is scored and ranked, the best that may receive traffic get the
// weights, and the outgoing list is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "out/expression.h"
#include "out/out_settings.h"
#include "out/scoring.h"
#include "settings/main_settings.h"
#include "store/trade_record.h"

namespace vantrel {

// The measure a trade's boost looks at, chosen by its param_828.
[[nodiscard]] std::int32_t boost_metric(const TradeWork& trade);

// The trade's quota of clicks for a local hour (0-23), whether its hours have run out or not.
[[nodiscard]] std::int32_t quota_of(const TradeWork& trade, int hour);

// True when threshold and both percentages of the trade's boost are set.
[[nodiscard]] bool has_boost(const TradeWork& trade);

// What a trade's own settings make of its score, if it is above 0.
struct Boost {
  bool active = false;
  std::int32_t metric = 0;      // the measure, where it counts
  std::int32_t percentage = 0;  // of the score, by whether the measure reaches the threshold
};

// How a trade came to its score. One of the two scorers was at work.
struct TradeScore {
  bool by_formula = false;
  BuiltinSteps builtin;
  FormulaSteps formula;
  Boost boost;
  double score = 0.0;

  [[nodiscard]] double before_boost() const { return by_formula ? formula.score : builtin.score; }
};

// Scores trades in the order of the work array: a formula's variables pass from one to the next.
class TradeScorer {
 public:
  // The settings must outlive it.
  explicit TradeScorer(const OutSettings& settings) : settings_(settings) {}

  [[nodiscard]] ScoreArgs args_of(const TradeWork& trade) const;
  // errors: gets those of the formula, for whoever wants to see them.
  [[nodiscard]] TradeScore score(const TradeWork& trade, ExpressionErrors* errors = nullptr);

 private:
  const OutSettings& settings_;
  ExpressionEvaluator evaluator_;
};

// Whether a trade gets a weight, and why. A claim lets a trade in that sends too little.
struct Admission {
  bool sends_enough = false;    // uin of 24 hours against the minimum
  bool may_claim = false;       // that, or its param_888
  bool quota_open = false;      // quota of the hour, in force, above out of 60 minutes
  bool guarantee_open = false;  // hits_left above out of 60 minutes
  bool forced = false;          // forced listing while its hours last
  bool claims = false;          // may claim, and has one of the three
  bool admitted = false;
};

// uin24_limit: unique hits a day a trade needs.
[[nodiscard]] Admission admission_of(const TradeWork& trade, std::int32_t uin24_limit, int hour);

// Sets the scores of all trades.
void score_trades(std::vector<TradeWork>& works, const OutSettings& settings);

// The positions of scores, best first: by score, equal ones in their order, those that are no
// number last.
[[nodiscard]] std::vector<std::size_t> ranking(const std::vector<double>& scores);

// Brings the work array into this order.
void rank_trades(std::vector<TradeWork>& works);

// Replaces the scores of the ranked trades by weights, and cancels the boosts of those that have no
// claim.
void hand_out_weights(std::vector<TradeWork>& ranked, const OutSet& weights,
                      std::int32_t uin24_limit, int hour);

// All of it; works is ranked afterwards, with final scores. False, after an error page, when
// d/nm/track cannot be read: d/out.lst is then the previous run's. A list that cannot be written
// is an event.
[[nodiscard]] bool plan_outgoing(std::vector<TradeWork>& works, const OutSettings& settings,
                                 const MainSettings& main_settings, int hour);

}  // namespace vantrel
