#include "out/scoring.h"

#include "base/numbers.h"

namespace vantrel {
namespace {

double quotient(std::int32_t a, std::int32_t b) {
  return static_cast<double>(a) / static_cast<double>(b);
}

// How well a window's visitors pay back, 0.0 where one of the three qualities is missing.
double return_quality(const TrafficCounters& window) {
  const std::int32_t rti = window[slot::rti];
  const std::int32_t rto = window[slot::rto];
  const std::int32_t rtc = window[slot::rtc];
  if (rti == 0 || rto == 0 || rtc == 0) return 0.0;
  const double p = percent_of(rtc, rto);
  const double q = quotient(rtc, rti);
  return (2.0 * p + p * (0.5 * q + 1.0)) / 3.0;
}

double return_quality_of_day(const TrafficCounters& day) {
  const double quality = return_quality(day);
  const bool counts = day[slot::rti] != 0 && day[slot::rto] != 0 && day[slot::rtc] != 0;
  return counts ? quality + day[slot::uin] / 1000.0 : quality;
}

double weighted_mean(const ScoreArgs& args) {
  const std::int32_t weight60 = args.modifiers.number(3);
  const std::int32_t weight24 = args.modifiers.number(4);
  const std::int32_t weight07 = args.modifiers.number(5);
  return (weight60 * return_quality(args.last60) + weight24 * return_quality_of_day(args.last24) +
          weight07 * return_quality(args.last07)) /
         static_cast<double>(wrap_add(wrap_add(weight60, weight24), weight07));
}

// Mode 1: a trade may get so many percent of what it sends, the fewer visitors it has the fewer.
bool gets_too_much(const TrafficCounters& day) {
  constexpr struct {
    double percentage;
    std::int32_t most_unique;
  } kLimits[] = {{180, 99}, {200, 199}, {220, 399}, {240, 599}, {260, 799}, {280, 999}};
  const double percentage = quotient(day[slot::out], day[slot::rin]) * 100;
  for (const auto& limit : kLimits) {
    if (percentage > limit.percentage && day[slot::uin] <= limit.most_unique) return true;
  }
  return false;
}

bool below(double percentage, std::int32_t cap) { return cap != -1 && percentage < cap; }
bool above(double percentage, std::int32_t cap) { return cap != -1 && percentage > cap; }

// Mode 2: the trade's own caps.
double check_caps(double score, const TrafficCounters& day, const TradeCap& caps) {
  if (day[slot::uin] == 0) {
    score = -3.0;
  } else if (below(quotient(day[slot::cef], day[slot::uin]) * 100, caps.cap_cef)) {
    score = -5.0;
  } else if (above(quotient(day[slot::out], day[slot::uin]) * 100, caps.cap_out)) {
    score = -4.0;
  }
  if (day[slot::out] == 0) {
    score = -6.0;
  } else if (below(quotient(day[slot::ctt], day[slot::out]) * 100, caps.cap_ctt)) {
    score = -7.0;
  }
  return score;
}

double check_ratios(double score, const ScoreArgs& args) {
  const TrafficCounters& day = args.last24;
  if (args.mode == 0) return 0.0;
  if (args.mode == 1 && day[slot::uin] > 0 && score != -1.0 && gets_too_much(day)) return -1.0;
  return args.mode == 2 ? check_caps(score, day, args.caps) : score;
}

// Trades that earned visitors and got none yet, and new ones, come first. A score that is no number
// stays what it is, but for the last hour's newcomers.
double lift(double score, const TrafficCounters& hour, const TrafficCounters& day) {
  const auto owed = [](const TrafficCounters& window, slot::Counter earned) {
    return window[earned] > 0 && window[slot::rto] == 0;
  };
  if (owed(day, slot::rtc) && score < 100.0) score = 300.0;
  if (owed(hour, slot::rtc) && score < 100.0) score = 300.0;
  if (owed(day, slot::rti) && score < 100.0) score = day[slot::uin] / 100.0 + 200.0;
  if (owed(hour, slot::rti)) score = hour[slot::uin] / 100.0 + 200.0;
  const bool is_new = day[slot::uin] >= 1 && day[slot::uin] <= 11 && day[slot::out] <= 2;
  if (is_new && score < 100.0) score = 150.0;
  return score;
}

void replace_all(std::string& text, std::string_view name, std::int32_t value) {
  std::size_t found = text.find(name);
  if (found == std::string::npos) return;
  std::string replaced;
  std::size_t begin = 0;
  for (; found != std::string::npos; found = text.find(name, begin)) {
    replaced.append(text, begin, found - begin);
    append_number(replaced, value);
    begin = found + name.size();
  }
  replaced.append(text, begin);
  text = std::move(replaced);
}

// A counter per another one, without its fraction; 0.0 per none.
double whole_ratio(std::int32_t a, std::int32_t b) { return b == 0 ? 0.0 : wrap_div(a, b); }

double factor_less_100(const ScoreArgs& args, std::size_t i) {
  return wrap_sub(args.modifiers.number(i), 100);
}

// Mode 2 of the formula scorer: the same caps, but one code for them all.
double check_formula_caps(double score, const TrafficCounters& day, const TradeCap& caps) {
  const auto percentage = [&day](slot::Counter a, slot::Counter b) {
    return day[a] * 100.0 / day[b];
  };
  if (day[slot::uin] == 0) {
    score = -6.0;
  } else if (below(percentage(slot::cef, slot::uin), caps.cap_cef) ||
             above(percentage(slot::out, slot::uin), caps.cap_out)) {
    score = -9.0;
  }
  if (day[slot::out] == 0) {
    score = -6.0;
  } else if (below(percentage(slot::ctt, slot::out), caps.cap_ctt)) {
    score = -9.0;
  }
  return score;
}

}  // namespace

double builtin_score(const ScoreArgs& args) {
  double score = weighted_mean(args);
  if (args.last60[slot::out] < args.last24[slot::out] / 40) score *= 1.25;
  score = check_ratios(score, args);
  return lift(score, args.last60, args.last24);
}

std::string substitute_counters(const ScoreArgs& args) {
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
  std::string text(args.modifiers.formula());
  for (const auto& [suffix, window] : windows) {
    for (const auto& [stem, counter] : kStems) {
      replace_all(text, std::string(stem).append(suffix), window[counter]);
    }
  }
  return text;
}

double formula_score(const ScoreArgs& args, ExpressionEvaluator& evaluator) {
  if (args.mode == 0) return 0.0;
  const TrafficCounters& day = args.last24;
  const double formula = evaluator.evaluate_expression(substitute_counters(args));
  const double ctt_per_out = whole_ratio(day[slot::ctt], day[slot::out]);
  const double out_per_uin = whole_ratio(day[slot::out], day[slot::uin]);
  const double cef_per_uin = whole_ratio(day[slot::cef], day[slot::uin]);
  const double score = formula + factor_less_100(args, 0) * cef_per_uin / 100.0 +
                       factor_less_100(args, 1) * out_per_uin / -100.0 +
                       factor_less_100(args, 2) * ctt_per_out / 100.0;
  return args.mode == 2 ? check_formula_caps(score, day, args.caps) : score;
}

}  // namespace vantrel
