// The score of a trade, by which outgoing traffic is ranked: built in, or the operator's formula.
// Negative scores mark a failed ratio check and rank below every ordinary score.
#pragma once

#include <cstdint>
#include <string>

#include "out/expression.h"
#include "out/out_settings.h"
#include "store/trade_record.h"

namespace vantrel {

// What both scorers see of one trade.
struct ScoreArgs {
  const TrafficCounters& last60;
  const TrafficCounters& last24;
  const TrafficCounters& last07;
  std::int32_t mode;  // 0 scores nothing, 1 and 2 check ratios, anything else does not
  TradeCap caps;
  const OutMod& modifiers;
};

[[nodiscard]] double builtin_score(const ScoreArgs& args);

// The evaluator keeps the formula's variables from one trade to the next.
[[nodiscard]] double formula_score(const ScoreArgs& args, ExpressionEvaluator& evaluator);

// The formula with each of the 33 names such as rin60, ctg24 or rtc07 replaced by its counter. The
// replacement is textual: a name inside a longer word is replaced as well.
[[nodiscard]] std::string substitute_counters(const ScoreArgs& args);

}  // namespace vantrel
