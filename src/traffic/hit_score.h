// The quality score of one hit.
#pragma once

#include <array>

#include "base/numbers.h"
#include "settings/traffic_settings.h"

namespace vantrel {

// What a rule does to a score.
struct RuleEffect {
  float amount = 0.0f;  // is added
  bool blocks = false;  // makes the score 0 for good
};
using RuleEffects = std::array<RuleEffect, TrafficSettings::kRuleCount>;

[[nodiscard]] inline RuleEffects effects_of(const TrafficSettings& traffic) {
  RuleEffects effects;
  for (std::size_t i = 0; i < effects.size(); ++i) {
    const TrafficRule& rule = traffic.rules[i];
    if (rule.op_code == TrafficRule::kAdd) effects[i].amount = rule.value;
    if (rule.op_code == TrafficRule::kSubtract) effects[i].amount = -rule.value;
    if (rule.op_code == TrafficRule::kBlock) effects[i].blocks = true;
  }
  return effects;
}

// Starts at 10 and is raised or lowered by the traffic rules the hit meets. Kept in single
// precision, as the rules are.
class HitScore {
 public:
  explicit HitScore(const RuleEffects& effects) : effects_(effects.data()) {}

  // rule: a number below TrafficSettings::kRuleCount. Without a branch: which rules a hit meets,
  // and what they do, is nothing a processor could guess.
  void apply_rule(std::size_t rule) {
    score_ += effects_[rule].amount;
    blocked_ |= effects_[rule].blocks;
  }

  [[nodiscard]] bool blocked() const { return blocked_; }

  // Adds the hit's score to a counter; the new sum is truncated, not the score.
  void add_to(std::int32_t& counter) const {
    counter = truncate_to_int(static_cast<float>(counter) + (blocked_ ? 0.0f : score_));
  }

 private:
  const RuleEffect* effects_;
  float score_ = 10.0f;
  bool blocked_ = false;
};

}  // namespace vantrel
