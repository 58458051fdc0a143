// The quality score of one hit.
#pragma once

#include "base/numbers.h"
#include "settings/traffic_settings.h"

namespace vantrel {

// Starts at 10 and is raised or lowered by the traffic rules the hit meets; a blocking rule makes
// it 0 for good. Kept in single precision, as the rules are.
class HitScore {
 public:
  explicit HitScore(const TrafficSettings& traffic) : rules_(traffic.rules.data()) {}

  // rule: a number below TrafficSettings::kRuleCount.
  void apply_rule(std::size_t rule) {
    if (blocked_) return;
    switch (rules_[rule].op_code) {
      case TrafficRule::kAdd:
        score_ += rules_[rule].value;
        break;
      case TrafficRule::kSubtract:
        score_ -= rules_[rule].value;
        break;
      case TrafficRule::kBlock:
        blocked_ = true;
        break;
      default:
        break;
    }
  }

  [[nodiscard]] bool blocked() const { return blocked_; }

  // Adds the hit's score to a counter; the new sum is truncated, not the score.
  void add_to(std::int32_t& counter) const {
    counter = truncate_to_int(static_cast<float>(counter) + (blocked_ ? 0.0f : score_));
  }

 private:
  const TrafficRule* rules_;
  float score_ = 10.0f;
  bool blocked_ = false;
};

}  // namespace vantrel
