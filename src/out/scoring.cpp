#include "out/scoring.h"

#include <numeric>
#include <utility>

#include "base/numbers.h"

namespace vantrel {
namespace {

double quotient(std::int32_t a, std::int32_t b) {
  return static_cast<double>(a) / static_cast<double>(b);
}

// Nothing pays back where one of the three qualities is missing.
WindowQuality return_quality(const TrafficCounters& window) {
  const std::int32_t rti = window[slot::rti];
  const std::int32_t rto = window[slot::rto];
  const std::int32_t rtc = window[slot::rtc];
  WindowQuality steps;
  steps.counts = rti != 0 && rto != 0 && rtc != 0;
  if (!steps.counts) return steps;
  steps.returned_percent = percent_of(rtc, rto);
  steps.clicked_per_sent = quotient(rtc, rti);
  const double p = steps.returned_percent;
  steps.quality = (2.0 * p + p * (0.5 * steps.clicked_per_sent + 1.0)) / 3.0;
  return steps;
}

WindowQuality return_quality_of_day(const TrafficCounters& day) {
  WindowQuality steps = return_quality(day);
  if (!steps.counts) return steps;
  steps.day_bonus = day[slot::uin] / 1000.0;
  steps.quality += steps.day_bonus;
  return steps;
}

double weighted_mean(const BuiltinSteps& steps, const OutMod& modifiers) {
  const std::int32_t weight60 = modifiers.number(3);
  const std::int32_t weight24 = modifiers.number(4);
  const std::int32_t weight07 = modifiers.number(5);
  return (weight60 * steps.quality60.quality + weight24 * steps.quality24.quality +
          weight07 * steps.quality07.quality) /
         static_cast<double>(wrap_add(wrap_add(weight60, weight24), weight07));
}

// Mode 1: a trade may get so many percent of what it sends, the fewer visitors it has the fewer.
RatioCheck check_share(double score, const TrafficCounters& day) {
  constexpr struct {
    double percentage;
    std::int32_t most_unique;
  } kLimits[] = {{180, 99}, {200, 199}, {220, 399}, {240, 599}, {260, 799}, {280, 999}};
  if (day[slot::uin] <= 0) return {RatioCheck::passed, 0.0, 0.0, score};
  const double percentage = quotient(day[slot::out], day[slot::rin]) * 100;
  for (const auto& limit : kLimits) {
    if (day[slot::uin] > limit.most_unique) continue;
    const bool failed = percentage > limit.percentage;
    return {failed ? RatioCheck::gets_too_much : RatioCheck::passed, percentage, limit.percentage,
            failed ? -1.0 : score};
  }
  return {RatioCheck::passed, percentage, 0.0, score};
}

bool below(double percentage, std::int32_t cap) { return cap != -1 && percentage < cap; }
bool above(double percentage, std::int32_t cap) { return cap != -1 && percentage > cap; }

// The scores of a failed check in mode 2.
struct CapCodes {
  double no_visitors;
  double low_cef;
  double high_out;
  double nothing_sent;
  double low_ctt;
};

// Mode 2: the trade's own caps; what it does with its clicks has the last word. percentage(a, b) of
// two counters of the day: the two scorers round it differently.
template <typename Percentage>
RatioCheck check_caps(double score, const TrafficCounters& day, const TradeCap& caps,
                      const CapCodes& codes, Percentage percentage) {
  const auto failed = [](RatioCheck::Result result, double measured, std::int32_t cap,
                         double code) {
    return RatioCheck{result, measured, static_cast<double>(cap), code};
  };
  RatioCheck check{RatioCheck::passed, 0.0, 0.0, score};
  if (day[slot::uin] == 0) {
    check = failed(RatioCheck::no_visitors, 0.0, 0, codes.no_visitors);
  } else if (const double cef = percentage(slot::cef, slot::uin); below(cef, caps.cap_cef)) {
    check = failed(RatioCheck::low_cef, cef, caps.cap_cef, codes.low_cef);
  } else if (const double out = percentage(slot::out, slot::uin); above(out, caps.cap_out)) {
    check = failed(RatioCheck::high_out, out, caps.cap_out, codes.high_out);
  }
  if (day[slot::out] == 0) {
    check = failed(RatioCheck::nothing_sent, 0.0, 0, codes.nothing_sent);
  } else if (const double ctt = percentage(slot::ctt, slot::out); below(ctt, caps.cap_ctt)) {
    check = failed(RatioCheck::low_ctt, ctt, caps.cap_ctt, codes.low_ctt);
  }
  return check;
}

RatioCheck check_builtin_caps(double score, const TrafficCounters& day, const TradeCap& caps) {
  constexpr CapCodes kCodes{-3.0, -5.0, -4.0, -6.0, -7.0};
  return check_caps(score, day, caps, kCodes, [&day](slot::Counter a, slot::Counter b) {
    return quotient(day[a], day[b]) * 100;
  });
}

RatioCheck check_formula_caps(double score, const TrafficCounters& day, const TradeCap& caps) {
  constexpr CapCodes kCodes{-6.0, -9.0, -9.0, -6.0, -9.0};
  return check_caps(score, day, caps, kCodes,
                    [&day](slot::Counter a, slot::Counter b) { return day[a] * 100.0 / day[b]; });
}

RatioCheck check_ratios(double score, const ScoreArgs& args) {
  switch (args.mode) {
    case 0:
      return {RatioCheck::mode_off, 0.0, 0.0, 0.0};
    case 1:
      return check_share(score, args.last24);
    case 2:
      return check_builtin_caps(score, args.last24, args.caps);
    default:
      return {RatioCheck::none, 0.0, 0.0, score};
  }
}

// Trades that earned visitors and got none yet, and new ones, come first. A score that is no number
// stays what it is, but for the last hour's newcomers.
void lift(BuiltinSteps& steps, const TrafficCounters& hour, const TrafficCounters& day) {
  const auto owed = [](const TrafficCounters& window, slot::Counter earned) {
    return window[earned] > 0 && window[slot::rto] == 0;
  };
  const auto lift_to = [&steps](Lift lift, double score) {
    steps.lift = lift;
    steps.score = score;
  };
  const auto is_low = [&steps] { return steps.score < 100.0; };
  if (owed(day, slot::rtc) && is_low()) lift_to(Lift::earned_in_day, 300.0);
  if (owed(hour, slot::rtc) && is_low()) lift_to(Lift::earned_in_hour, 300.0);
  if (owed(day, slot::rti) && is_low()) lift_to(Lift::sent_in_day, day[slot::uin] / 100.0 + 200.0);
  if (owed(hour, slot::rti)) lift_to(Lift::sent_in_hour, hour[slot::uin] / 100.0 + 200.0);
  const bool is_new = day[slot::uin] >= 1 && day[slot::uin] <= 11 && day[slot::out] <= 2;
  if (is_new && is_low()) lift_to(Lift::newcomer, 150.0);
}

// The text while its names are replaced, and where its characters come from if somebody asks.
struct Substitution {
  std::string text;
  std::vector<std::size_t>* origins;

  void replace_all(std::string_view name, std::int32_t value);
};

void Substitution::replace_all(std::string_view name, std::int32_t value) {
  std::size_t found = text.find(name);
  if (found == std::string::npos) return;
  std::string replaced;
  std::vector<std::size_t> places;
  const auto keep_places = [&](std::size_t from, std::size_t to) {
    if (origins == nullptr) return;
    for (std::size_t i = from; i < to; ++i) places.push_back((*origins)[i]);
    places.resize(replaced.size(), to < origins->size() ? (*origins)[to] : 0);
  };
  std::size_t begin = 0;
  for (; found != std::string::npos; found = text.find(name, begin)) {
    replaced.append(text, begin, found - begin);
    append_number(replaced, value);
    keep_places(begin, found);
    begin = found + name.size();
  }
  replaced.append(text, begin);
  keep_places(begin, text.size());
  text = std::move(replaced);
  if (origins != nullptr) *origins = std::move(places);
}

// A counter per another one, without its fraction; 0.0 per none.
double whole_ratio(std::int32_t a, std::int32_t b) { return b == 0 ? 0.0 : wrap_div(a, b); }

double factor_less_100(const ScoreArgs& args, std::size_t i) {
  return wrap_sub(args.modifiers.number(i), 100);
}

}  // namespace

BuiltinSteps builtin_score(const ScoreArgs& args) {
  BuiltinSteps steps;
  steps.quality60 = return_quality(args.last60);
  steps.quality24 = return_quality_of_day(args.last24);
  steps.quality07 = return_quality(args.last07);
  steps.mean = weighted_mean(steps, args.modifiers);
  steps.fresh_limit = args.last24[slot::out] / 40;
  steps.fresh = args.last60[slot::out] < steps.fresh_limit;
  steps.fresh_score = steps.fresh ? steps.mean * 1.25 : steps.mean;
  steps.check = check_ratios(steps.fresh_score, args);
  steps.score = steps.check.score;
  lift(steps, args.last60, args.last24);
  return steps;
}

std::string substitute_counters(const ScoreArgs& args, std::vector<std::size_t>* origins) {
  constexpr struct {
    std::string_view stem;
    slot::Counter counter;
  } kStems[] = {{"rin", slot::rin}, {"uin", slot::uin}, {"out", slot::out}, {"clk", slot::clk},
                {"cef", slot::cef}, {"ctt", slot::ctt}, {"ctg", slot::ctg}, {"rec", slot::rec},
                {"rti", slot::rti}, {"rto", slot::rto}, {"rtc", slot::rtc}};
  const struct {
    std::string_view suffix;
    const TrafficCounters& window;
  } windows[] = {{"60", args.last60}, {"24", args.last24}, {"07", args.last07}};
  Substitution formula{std::string(args.modifiers.formula()), origins};
  if (origins != nullptr) {
    origins->resize(formula.text.size());
    std::iota(origins->begin(), origins->end(), std::size_t{0});
  }
  for (const auto& [suffix, window] : windows) {
    for (const auto& [stem, counter] : kStems) {
      formula.replace_all(std::string(stem).append(suffix), window[counter]);
    }
  }
  return std::move(formula.text);
}

FormulaSteps formula_score(const ScoreArgs& args, ExpressionEvaluator& evaluator,
                           ExpressionErrors* errors) {
  FormulaSteps steps;
  if (args.mode == 0) {
    steps.check.result = RatioCheck::mode_off;
    return steps;
  }
  const TrafficCounters& day = args.last24;
  steps.evaluated = true;
  steps.text = substitute_counters(args);
  steps.value = evaluator.evaluate_expression(steps.text, errors);
  const auto term = [&](slot::Counter a, slot::Counter b, std::size_t factor, double divisor) {
    const double ratio = whole_ratio(day[a], day[b]);
    return FormulaSteps::Term{ratio, factor_less_100(args, factor) * ratio / divisor};
  };
  steps.cef_per_uin = term(slot::cef, slot::uin, 0, 100.0);
  steps.out_per_uin = term(slot::out, slot::uin, 1, -100.0);
  steps.ctt_per_out = term(slot::ctt, slot::out, 2, 100.0);
  steps.sum =
      steps.value + steps.cef_per_uin.added + steps.out_per_uin.added + steps.ctt_per_out.added;
  steps.check = args.mode == 2 ? check_formula_caps(steps.sum, day, args.caps)
                               : RatioCheck{RatioCheck::none, 0.0, 0.0, steps.sum};
  steps.score = steps.check.score;
  return steps;
}

}  // namespace vantrel
