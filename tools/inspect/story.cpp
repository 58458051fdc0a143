#include "story.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"

namespace vantrel::inspect {
namespace {

std::string number(std::int32_t value) { return std::to_string(value); }

std::string percent(double value) { return short_number(value) + " %"; }

std::string check_reason(const RatioCheck& check, std::int32_t mode) {
  const std::string measured = short_number(check.measured) + "%";
  const std::string limit = short_number(check.limit) + "%";
  switch (check.result) {
    case RatioCheck::mode_off:
      return "mode 0";
    case RatioCheck::gets_too_much:
      return "mode 1: " + measured + " > " + limit;
    case RatioCheck::no_visitors:
      return "mode 2: no visitors";
    case RatioCheck::low_cef:
      return "cap cef: " + measured + " < " + limit;
    case RatioCheck::high_out:
      return "cap out: " + measured + " > " + limit;
    case RatioCheck::nothing_sent:
      return "mode 2: nothing sent";
    case RatioCheck::low_ctt:
      return "cap ctt: " + measured + " < " + limit;
    default:
      return "mode " + number(mode);
  }
}

std::string check_sentence(const RatioCheck& check, const TrafficCounters& day) {
  switch (check.result) {
    case RatioCheck::gets_too_much:
      return "mode 1 stopped it, it got " + percent(check.measured) + " of what it sent at " +
             number(day[slot::uin]) + " unique hits a day; the limit there is " +
             percent(check.limit);
    case RatioCheck::no_visitors:
      return "mode 2 stopped it, it sent no unique hit in 24 hours";
    case RatioCheck::low_cef:
      return "its cap stopped it, cef is " + percent(check.measured) +
             " of its unique hits; the least allowed is " + percent(check.limit);
    case RatioCheck::high_out:
      return "its cap stopped it, it got " + percent(check.measured) +
             " of its unique hits; the most allowed is " + percent(check.limit);
    case RatioCheck::nothing_sent:
      return "mode 2 stopped it, nothing was sent to it in 24 hours, so its clicks cannot be "
             "judged; "
             "another mode or a quota sends it some";
    case RatioCheck::low_ctt:
      return "its cap stopped it, ctt is " + percent(check.measured) +
             " of the clicks sent to it; the least allowed is " + percent(check.limit);
    default:
      return "mode 0 keeps it from scoring and from weights";
  }
}

std::string lift_reason(Lift lift) {
  switch (lift) {
    case Lift::earned_in_day:
    case Lift::earned_in_hour:
      return "earned, got none";
    case Lift::sent_in_day:
    case Lift::sent_in_hour:
      return "sends, got none";
    default:
      return "newcomer";
  }
}

std::string lift_sentence(Lift lift, double score) {
  const std::string lifted = ", which lifts its score to " + short_number(score);
  switch (lift) {
    case Lift::earned_in_day:
      return "its visitors clicked in the last 24 hours and nothing of quality was sent back" +
             lifted;
    case Lift::earned_in_hour:
      return "its visitors clicked in the last hour and nothing of quality was sent back in it" +
             lifted;
    case Lift::sent_in_day:
      return "it sent visitors in the last 24 hours and got nothing of quality back" + lifted;
    case Lift::sent_in_hour:
      return "it sent visitors in the last hour and got nothing of quality back in it" + lifted;
    default:
      return "it is new and got at most 2 clicks" + lifted;
  }
}

std::string claim_reason(const Admission& admission) {
  if (admission.guarantee_open) return "guarantee";
  return admission.quota_open ? "quota" : "forced";
}

std::string claim_words(const Admission& admission) {
  const std::string reason = claim_reason(admission);
  return reason == "forced" ? "forced listing" : reason;
}

// Why a trade in mode 1 or above is not admitted: it sends too little, and nothing lets it in.
std::string minimum_sentence(const Story& story) {
  const std::int32_t limit = story.forecast.run.settings.uin24_limit;
  std::string text = "it sent " + number(story.before.last24[slot::uin]) +
                     " unique hits in 24 hours, the minimum on line 6 of d/set is " + number(limit);
  const Admission& admission = story.admission;
  if (admission.quota_open || admission.guarantee_open || admission.forced) {
    text += "; its " + claim_words(admission) +
            " does not count below the minimum, unless it is set to override it";
  }
  return text;
}

bool is_built_in(const Story& story) { return !story.steps.by_formula; }

bool pays_nothing(const Story& story) {
  const BuiltinSteps& steps = story.steps.builtin;
  return is_built_in(story) && steps.lift == Lift::none && steps.mean == 0.0;
}

std::string score_sentence(const Story& story) {
  const TradeScore& steps = story.steps;
  if (std::isnan(steps.score)) {
    return steps.by_formula
               ? "the formula's value is no number"
               : "the window weights of d/out.mod add up to 0, so no score is a number";
  }
  if (pays_nothing(story)) return "no window has all three qualities, so its score is 0";
  std::string text =
      steps.by_formula ? "the formula gives it " : "its visitors' return quality is ";
  text += short_number(steps.before_boost());
  if (steps.boost.active) {
    text += ", its own boost makes " + number(steps.boost.percentage) + " % of it";
  }
  return text;
}

// What led to the score.
std::string cause(const Story& story) {
  const RatioCheck& check = check_of(story.steps);
  if (is_built_in(story) && story.steps.builtin.lift != Lift::none) {
    return lift_sentence(story.steps.builtin.lift, story.steps.builtin.score);
  }
  if (failed(check)) return check_sentence(check, story.before.last24);
  return score_sentence(story);
}

std::string outcome(const Story& story) {
  const TradeWork& trade = story.after;
  const std::string unlisted = story.listing.listed ? "" : " and is not listed";
  if (trade.score != 0.0) return "it has weight " + short_number(trade.score) + unlisted;
  if (trade.plan_value != 0.0) {
    return "the weights had all gone to better ranks, it has second weight " +
           short_number(trade.plan_value) + unlisted;
  }
  return "it has no weight" + unlisted;
}

}  // namespace

Story story_of(const Forecast& forecast, std::size_t rank) {
  const std::size_t position = forecast.ranked[rank];
  const int hour = forecast.run.clock.run_hour;
  const TradeWork& before = forecast.unranked[position];
  const TradeWork& after = forecast.planned(rank);
  return {forecast,
          position,
          rank,
          before,
          after,
          forecast.scores[position],
          admission_of(before, forecast.run.settings.uin24_limit, hour),
          listing_of(after, hour)};
}

std::size_t rank_of(const Forecast& forecast, std::size_t position) {
  const auto found = std::find(forecast.ranked.begin(), forecast.ranked.end(), position);
  return static_cast<std::size_t>(found - forecast.ranked.begin());
}

const RatioCheck& check_of(const TradeScore& steps) {
  return steps.by_formula ? steps.formula.check : steps.builtin.check;
}

bool failed(const RatioCheck& check) {
  return check.result != RatioCheck::none && check.result != RatioCheck::passed;
}

std::string reason_of(const Story& story) {
  const RatioCheck& check = check_of(story.steps);
  if (story.before.flag_880 == 0) return "mode 0";
  if (!story.admission.admitted) return "below minimum";
  if (!story.admission.sends_enough) return claim_reason(story.admission);
  if (is_built_in(story) && story.steps.builtin.lift != Lift::none) {
    return lift_reason(story.steps.builtin.lift);
  }
  if (failed(check)) return check_reason(check, story.before.flag_880);
  if (std::isnan(story.steps.score)) return "no number";
  if (pays_nothing(story)) return "no return quality";
  if (story.steps.boost.active) return "boost " + number(story.steps.boost.percentage) + "%";
  return story.steps.by_formula ? "formula" : "return quality";
}

std::string sentence_of(const Story& story) {
  std::string text = "Rank " + std::to_string(story.rank + 1) + " of " +
                     std::to_string(story.forecast.ranked.size()) + ": ";
  if (story.before.flag_880 == 0) {
    text += "mode 0 keeps it from weights";
  } else if (!story.admission.admitted) {
    text += minimum_sentence(story);
  } else {
    text += cause(story);
    if (!story.admission.sends_enough) {
      text += "; its " + claim_words(story.admission) + " lets it in below the minimum";
    }
  }
  return text + "; " + outcome(story) + ".";
}

std::string short_number(double value) {
  if (!std::isfinite(value) || std::fabs(value) >= 1e15) return number_text(value);
  const double rounded = std::round(value * 100) / 100;
  return number_text(rounded == 0 ? 0 : rounded);
}

std::string state_text(ListState state) {
  switch (state) {
    case ListState::none:
      return "normal";
    case ListState::quota:
      return "quota or guarantee";
    case ListState::forced_1:
      return "forced 1";
    case ListState::forced_2:
      return "forced 2";
  }
  return "state " + std::to_string(static_cast<std::int32_t>(state));
}

Reasons reasons_by_id(const Forecast& forecast) {
  Reasons reasons;
  for (std::size_t rank = 0; rank < forecast.ranked.size(); ++rank) {
    const Story story = story_of(forecast, rank);
    reasons.try_emplace(story.before.id,
                        Reason{story.steps.score, story.after.score, reason_of(story)});
  }
  return reasons;
}

double counted_weight(double weight) { return std::isfinite(weight) && weight > 0 ? weight : 0; }

double total_weight(const std::vector<OutListEntry>& entries) {
  double total = 0;
  for (const OutListEntry& entry : entries) total += counted_weight(entry.weight);
  return total;
}

Json json_number(double value) {
  if (!std::isfinite(value)) return number_text(value);
  return value == 0 ? 0.0 : value;  // no -0
}

std::string score_cell(const Json& value) {
  return value.is_number() ? short_number(value.get<double>()) : cell(value);
}

}  // namespace vantrel::inspect
