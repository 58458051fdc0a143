// The score of a trade, by which outgoing traffic is ranked: built in, or the operator's formula.
// Negative scores mark a failed ratio check and rank below every ordinary score.
//
// Both scorers return the steps they took, the score last: the run ranks by the score, the
// inspector shows how it came about.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

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

// How well a window's visitors pay back. Without one of the three qualities it counts as 0.
struct WindowQuality {
  bool counts = false;
  std::int32_t returned_percent = 0;  // rtc of rto
  double clicked_per_sent = 0.0;      // rtc per rti
  double day_bonus = 0.0;             // of the 24 hours only: uin / 1000
  double quality = 0.0;
};

// The check of what a trade gets or gives, by its mode.
struct RatioCheck {
  enum Result {
    none,           // a mode without checks
    passed,         // or, in mode 1, nothing to check: no visitor in 24 hours
    mode_off,       // mode 0
    gets_too_much,  // mode 1: out of rin above the limit for so many unique hits
    no_visitors,    // mode 2: no uin
    low_cef,        // mode 2: cef of uin below its cap
    high_out,       // mode 2: out of uin above its cap
    nothing_sent,   // mode 2: no out
    low_ctt,        // mode 2: ctt of out below its cap
  };
  Result result = none;
  double measured = 0.0;  // percent, where something was measured
  double limit = 0.0;     // percent
  double score = 0.0;     // a code below 0 when it failed
};

// What lifts the score of a trade that was sent nothing, or too little to judge.
enum class Lift {
  none,
  earned_in_day,   // its visitors clicked, nothing was sent: 300
  earned_in_hour,  // the same in the last 60 minutes
  sent_in_day,     // it sent visitors, nothing was sent back: 200 and more
  sent_in_hour,    // the same in the last 60 minutes, whatever the score was
  newcomer,        // 1 to 11 unique hits a day and at most 2 clicks sent: 150
};

struct BuiltinSteps {
  WindowQuality quality60;
  WindowQuality quality24;
  WindowQuality quality07;
  double mean = 0.0;  // of the three, by the weights of the windows
  std::int32_t fresh_limit =
      0;  // last24 out / 40: with fewer in last60 the score grows by a quarter
  bool fresh = false;
  double fresh_score = 0.0;
  RatioCheck check;
  Lift lift = Lift::none;  // the last that changed the score
  double score = 0.0;
};

struct FormulaSteps {
  bool evaluated = false;  // not in mode 0
  std::string text;        // the formula with the numbers put in
  double value = 0.0;      // of the formula
  // Whole ratios of the last 24 hours, and what fields 0 to 2 of the modifiers make of them.
  struct Term {
    double ratio = 0.0;
    double added = 0.0;
  };
  Term cef_per_uin;
  Term out_per_uin;
  Term ctt_per_out;
  double sum = 0.0;
  RatioCheck check;
  double score = 0.0;
};

[[nodiscard]] BuiltinSteps builtin_score(const ScoreArgs& args);

// The evaluator keeps the formula's variables from one trade to the next. errors: for whoever wants
// to see them.
[[nodiscard]] FormulaSteps formula_score(const ScoreArgs& args, ExpressionEvaluator& evaluator,
                                         ExpressionErrors* errors = nullptr);

// The formula with each of the 33 names such as rin60, ctg24 or rtc07 replaced by its counter. The
// replacement is textual: a name inside a longer word is replaced as well. origins, if wanted: for
// each character of the result the place in the formula it comes from.
[[nodiscard]] std::string substitute_counters(const ScoreArgs& args,
                                              std::vector<std::size_t>* origins = nullptr);

}  // namespace vantrel
