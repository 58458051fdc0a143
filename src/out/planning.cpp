#include "out/planning.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "base/files.h"
#include "base/numbers.h"
#include "base/replace_file.h"
#include "base/text.h"
#include "out/out_list.h"
#include "run/error_page.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

Boost boost_of(const TradeWork& trade, double score) {
  Boost boost;
  boost.active = score > 0 && has_boost(trade);
  if (!boost.active) return boost;
  boost.metric = boost_metric(trade);
  boost.percentage = boost.metric < trade.param_832 ? trade.param_836 : trade.param_840;
  return boost;
}

// The second piece of d/nm/track, 1 without one; nothing when the file cannot be read.
std::optional<std::int32_t> load_track() {
  FileBuffer file;
  if (!file.read("d/nm/track")) return std::nullopt;
  Pieces pieces(file.text());
  std::string_view piece;
  return pieces.next(piece) && pieces.next(piece) ? to_int(piece) : 1;
}

}  // namespace

bool has_boost(const TradeWork& trade) {
  return trade.param_832 > 0 && trade.param_836 > 0 && trade.param_840 > 0;
}

std::int32_t boost_metric(const TradeWork& trade) {
  const TrafficCounters& day = trade.last24;
  const auto per_hit = [&day](slot::Counter counter) {
    return day[slot::rin] > 0 ? percent_of(day[counter], day[slot::rin]) : 0;
  };
  switch (trade.param_828) {
    case 2:
      return day[slot::out];
    case 3:
      return day[slot::cef];
    case 4:
      return per_hit(slot::out);
    case 5:
      return per_hit(slot::cef);
    default:
      return day[slot::rin];
  }
}

std::int32_t quota_of(const TradeWork& trade, int hour) { return trade.hourly[hour]; }

ScoreArgs TradeScorer::args_of(const TradeWork& trade) const {
  return {trade.last60,
          trade.last24,
          trade.last07,
          trade.flag_880,
          caps_of(settings_.caps, trade.id),
          settings_.modifiers};
}

TradeScore TradeScorer::score(const TradeWork& trade, ExpressionErrors* errors) {
  TradeScore steps;
  steps.by_formula = settings_.modifiers.uses_formula();
  if (steps.by_formula) {
    steps.formula = formula_score(args_of(trade), evaluator_, errors);
  } else {
    steps.builtin = builtin_score(args_of(trade));
  }
  steps.score = steps.before_boost();
  steps.boost = boost_of(trade, steps.score);
  if (steps.boost.active) steps.score *= steps.boost.percentage / 100.0;
  return steps;
}

Admission admission_of(const TradeWork& trade, std::int32_t uin24_limit, int hour) {
  const bool in_force = quota_in_force(trade);
  Admission admission;
  admission.sends_enough = trade.last24[slot::uin] >= uin24_limit;
  admission.may_claim = admission.sends_enough || trade.param_888 == 1;
  admission.quota_open = in_force && quota_of(trade, hour) > trade.last60[slot::out];
  admission.guarantee_open = trade.last60[slot::out] < trade.hits_left;
  admission.forced = in_force && trade.param_892 > 0;
  admission.claims =
      admission.may_claim && (admission.quota_open || admission.guarantee_open || admission.forced);
  admission.admitted = (admission.sends_enough || admission.claims) && trade.flag_880 != 0;
  return admission;
}

void score_trades(std::vector<TradeWork>& works, const OutSettings& settings) {
  TradeScorer scorer(settings);
  for (TradeWork& work : works) {
    work.score = scorer.score(work).score;
    work.plan_value = 0.0;
    work.plan_flag = 1;
  }
}

std::vector<std::size_t> ranking(const std::vector<double>& scores) {
  std::vector<std::size_t> order(scores.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto numbers_end = std::stable_partition(
      order.begin(), order.end(), [&](std::size_t i) { return !std::isnan(scores[i]); });
  std::stable_sort(order.begin(), numbers_end,
                   [&](std::size_t a, std::size_t b) { return scores[a] > scores[b]; });
  return order;
}

// In place, round by round: the entry at the start of a round makes room, each place takes the
// entry that belongs there, the last one takes the first. An entry has a kilobyte, a second array
// would be the largest of the run.
void rank_trades(std::vector<TradeWork>& works) {
  std::vector<double> scores;
  scores.reserve(works.size());
  for (const TradeWork& work : works) scores.push_back(work.score);
  std::vector<std::size_t> order = ranking(scores);
  for (std::size_t start = 0; start < order.size(); ++start) {
    if (order[start] == start) continue;
    const TradeWork first = works[start];
    std::size_t place = start;
    while (order[place] != start) {
      const std::size_t from = order[place];
      works[place] = works[from];
      order[place] = place;
      place = from;
    }
    works[place] = first;
    order[place] = place;
  }
}

void hand_out_weights(std::vector<TradeWork>& ranked, const OutSet& weights,
                      std::int32_t uin24_limit, int hour) {
  std::size_t handed_out = 0;
  for (std::size_t p = 0; p < ranked.size(); ++p) {
    TradeWork& trade = ranked[p];
    trade.score = 0.0;
    trade.plan_value = 0.0;
    const Admission admission = admission_of(trade, uin24_limit, hour);
    if (!admission.claims) {
      trade.hours_left = 0;
      trade.param_892 = 0;
    }
    if (!admission.admitted) continue;
    if (handed_out < weights.size()) {
      trade.score = weights[handed_out++];
    } else {
      const auto places_below = static_cast<double>(ranked.size() - p);
      trade.plan_value = places_below * places_below;
    }
  }
}

bool plan_outgoing(std::vector<TradeWork>& works, const OutSettings& settings,
                   const MainSettings& main_settings, int hour) {
  score_trades(works, settings);
  OutListHeader header = out_list_header(works, main_settings);
  rank_trades(works);
  hand_out_weights(works, settings.weights, main_settings.uin24_limit, hour);
  const std::optional<std::int32_t> track = load_track();
  if (!track) {
    error_page_file("d/nm/track", "", false);
    return false;
  }
  header.track = *track;
  if (!replace_file(kOutListFile, encode_out_list(header, works, hour), Flush::no)) {
    report(event::out_list_unwritable);
  }
  return true;
}

}  // namespace vantrel
