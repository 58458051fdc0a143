#include <iostream>

#include "base/text.h"
#include "check_formula.h"
#include "preview.h"
#include "site.h"
#include "story.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

// A step: what came out, what it is, what went in.
Json step(Json value, const std::string& description, Json details = Json::array()) {
  return {
      {"value", std::move(value)}, {"description", description}, {"details", std::move(details)}};
}

Json number(double value) { return json_number(value); }

Json counter(const TrafficCounters& window, slot::Counter which, const char* description) {
  return step(window[which], description);
}

Json quality_step(const WindowQuality& quality, const TrafficCounters& window,
                  const std::string& name, std::int32_t weight) {
  Json details = {counter(window, slot::rti, "rti, quality of the visitors it sent"),
                  counter(window, slot::rto, "rto, quality of the clicks sent to it"),
                  counter(window, slot::rtc, "rtc, quality of its visitors' clicks")};
  if (!quality.counts) {
    std::string missing;
    for (const auto& [which, text] :
         {std::pair{slot::rti, "rti"}, {slot::rto, "rto"}, {slot::rtc, "rtc"}}) {
      if (window[which] == 0) missing += missing.empty() ? text : std::string(" and ") + text;
    }
    const bool several = missing.size() > 3;
    details.push_back(
        step(missing, std::string(several ? "are" : "is") + " 0, so this window counts as 0"));
  } else {
    details.push_back(step(quality.returned_percent, "p: rtc as a percentage of rto"));
    details.push_back(step(number(quality.clicked_per_sent), "q: rtc / rti"));
    if (quality.day_bonus != 0.0) {
      details.push_back(step(number(quality.day_bonus), "added: uin / 1000"));
    }
  }
  details.push_back(step(weight, "weight of this window in d/out.mod"));
  return step(
      number(quality.quality),
      "return quality of the last " + name + (quality.counts ? ": (2 p + p (0.5 q + 1)) / 3" : ""),
      std::move(details));
}

Json check_step(const RatioCheck& check, const Story& story) {
  const std::string mode = "mode " + std::to_string(story.before.flag_880);
  Json details = Json::array();
  if (check.measured != 0.0 || check.limit != 0.0) {
    const bool by_mode_1 = story.before.flag_880 == 1;
    details.push_back(step(number(check.measured),
                           by_mode_1 ? "percent: out of rin in 24 hours" : "percent measured"));
    details.push_back(step(number(check.limit), by_mode_1 && check.limit == 0.0
                                                    ? "no limit from 1,000 unique hits on"
                                                    : "percent is the limit"));
  }
  if (story.before.flag_880 == 1) {
    details.push_back(counter(story.before.last24, slot::uin, "unique hits in 24 hours"));
  }
  if (story.before.flag_880 == 2) {
    const TradeCap caps = caps_of(story.forecast.run.out.caps, story.before.id);
    details.push_back(step(caps.cap_cef, "least cef per uin in percent, -1 for none"));
    details.push_back(step(caps.cap_out, "most out per uin in percent, -1 for none"));
    details.push_back(step(caps.cap_ctt, "least ctt per out in percent, -1 for none"));
  }
  return step(number(check.score),
              mode + (check.result == RatioCheck::none     ? " checks nothing"
                      : check.result == RatioCheck::passed ? ": passed"
                                                           : ": failed, the score is a code"),
              std::move(details));
}

const char* lift_text(Lift lift) {
  switch (lift) {
    case Lift::none:
      return "not lifted";
    case Lift::earned_in_day:
      return "lifted to 300: rtc of 24 hours is above 0, rto is 0";
    case Lift::earned_in_hour:
      return "lifted to 300: rtc of 60 minutes is above 0, rto is 0";
    case Lift::sent_in_day:
      return "lifted to 200 + uin / 100: rti of 24 hours is above 0, rto is 0";
    case Lift::sent_in_hour:
      return "lifted to 200 + uin / 100: rti of 60 minutes is above 0, rto is 0";
    case Lift::newcomer:
      return "lifted to 150: a newcomer with 1 to 11 unique hits a day and at most 2 clicks";
  }
  return "";
}

Json builtin_steps(const Story& story) {
  const BuiltinSteps& steps = story.steps.builtin;
  const TradeWork& trade = story.before;
  const OutMod& modifiers = story.forecast.run.out.modifiers;
  Json windows = {quality_step(steps.quality60, trade.last60, "60 minutes", modifiers.number(3)),
                  quality_step(steps.quality24, trade.last24, "24 hours", modifiers.number(4)),
                  quality_step(steps.quality07, trade.last07, "7 days", modifiers.number(5))};
  Json fresh = {counter(trade.last60, slot::out, "out in the last 60 minutes"),
                step(steps.fresh_limit, "out in 24 hours / 40, without its fraction")};
  return {
      step(number(steps.mean), "mean of the three windows by their weights", std::move(windows)),
      step(
          number(steps.fresh_score),
          steps.fresh ? "times 1.25: it got little in the last hour" : "no boost for fresh traffic",
          std::move(fresh)),
      check_step(steps.check, story), step(number(steps.score), lift_text(steps.lift))};
}

Json error_steps(const Story& story) {
  Json errors = Json::array();
  for (const Forecast::FormulaError& found : story.forecast.formula_errors) {
    if (found.position != story.position) continue;
    errors.push_back(
        step(found.error.offset + 1,
             "is the place of an error: " + error_words(found.error, story.steps.formula.text)));
  }
  return errors;
}

Json formula_steps(const Story& story) {
  const FormulaSteps& steps = story.steps.formula;
  if (!steps.evaluated) return Json::array({check_step(steps.check, story)});
  const OutMod& modifiers = story.forecast.run.out.modifiers;
  const auto term = [&](const FormulaSteps::Term& added, const char* ratio, std::size_t factor) {
    return step(number(added.added),
                std::string("added for ") + ratio + " of 24 hours, without its fraction",
                {step(number(added.ratio), ratio),
                 step(modifiers.number(factor), "percentage in d/out.mod, 100 for no effect")});
  };
  return {step(modifiers.formula(), "the formula"),
          step(steps.text, "with the numbers put in"),
          step(number(steps.value), "its value", error_steps(story)),
          term(steps.cef_per_uin, "cef / uin", 0),
          term(steps.out_per_uin, "out / uin", 1),
          term(steps.ctt_per_out, "ctt / out", 2),
          check_step(steps.check, story)};
}

Json boost_step(const Story& story) {
  const TradeWork& trade = story.before;
  const Boost& boost = story.steps.boost;
  constexpr const char* kMetrics[] = {
      "rin", "rin", "out", "cef", "out per rin in percent", "cef per rin in percent"};
  if (!boost.active) return step(number(story.steps.score), "no boost of its own");
  const bool known = trade.param_828 >= 1 && trade.param_828 <= 5;
  return step(
      number(story.steps.score),
      "boost of its own: " + std::to_string(boost.percentage) + " percent",
      {step(boost.metric, std::string(kMetrics[known ? trade.param_828 : 0]) + " in 24 hours"),
       step(trade.param_832, "is the threshold"), step(trade.param_836, "percent below it"),
       step(trade.param_840, "percent from it on")});
}

Json score_step(const Story& story) {
  Json details = story.steps.by_formula ? formula_steps(story) : builtin_steps(story);
  details.push_back(boost_step(story));
  return step(number(story.steps.score),
              story.steps.by_formula ? "score, by the formula of d/out.mod" : "score, built in",
              std::move(details));
}

Json neighbour(const Forecast& forecast, std::size_t rank, const char* where) {
  const std::size_t position = forecast.ranked[rank];
  const TradeWork& entry = forecast.unranked[position];
  return step(number(forecast.scores[position].score), std::string("score of the entry ") + where,
              {step(field_text(entry.name), "its name"), step(entry.id, "its id")});
}

Json rank_step(const Story& story) {
  const Forecast& forecast = story.forecast;
  Json details = Json::array();
  if (story.rank > 0) details.push_back(neighbour(forecast, story.rank - 1, "above"));
  if (story.rank + 1 < forecast.ranked.size()) {
    details.push_back(neighbour(forecast, story.rank + 1, "below"));
  }
  return step(story.rank + 1,
              "rank among all " + std::to_string(forecast.ranked.size()) +
                  " entries of the index, reserved ones included",
              std::move(details));
}

Json admission_step(const Story& story) {
  const TradeWork& trade = story.before;
  const Admission& admission = story.admission;
  const int hour = story.forecast.run.clock.run_hour;
  Json details = {
      step(trade.last24[slot::uin], "unique hits in 24 hours",
           Json::array({step(story.forecast.run.settings.uin24_limit,
                             "is the least, on line 6 of d/set")})),
      step(quota_of(trade, hour),
           "quota of hour " + std::to_string(hour) +
               (admission.quota_open ? ": open" : ": not open"),
           {step(trade.last60[slot::out], "clicks sent in the last 60 minutes"),
            step(trade.hours_left, "hours it is in force, -1 for ever")}),
      step(trade.hits_left, admission.guarantee_open ? "guaranteed clicks left: open"
                                                     : "guaranteed clicks left: not open"),
      step(trade.param_892,
           admission.forced ? "forced listing: in force" : "forced listing: not in force"),
      step(trade.param_888 == 1, "a quota, guarantee or forced listing overrides the least"),
      step(trade.flag_880, "mode; 0 keeps it out")};
  return step(admission.admitted,
              admission.admitted
                  ? (admission.sends_enough ? "admitted: it sends enough" : "admitted by its claim")
                  : (trade.flag_880 == 0 ? "not admitted: mode 0"
                                         : "not admitted: it sends too little, without a claim"),
              std::move(details));
}

Json weight_step(const Story& story) {
  const std::size_t count = story.forecast.run.out.weights.size();
  if (!story.admission.admitted) return step(0, "no weight: not admitted");
  const std::size_t before = story.forecast.admitted_above[story.rank];
  Json details = {
      step(before, "admitted entries above it"),
      step(count, story.forecast.run.out.modifiers.generates_weights() ? "weights, generated"
                                                                       : "weights in d/out.set")};
  if (before < count) {
    return step(number(story.after.score), "weight", std::move(details));
  }
  return step(number(story.after.plan_value),
              "second weight: the square of the entries from its rank on", std::move(details));
}

Json listing_step(const Story& story) {
  const Listing& listing = story.listing;
  return step(listing.listed, listing.listed ? "listed: both conditions hold" : "not listed",
              {step(listing.has_skim || (listing.scores && listing.has_weight),
                    "plays a part: has a weight in a mode other than 0, or a skim"),
               step(listing.sends || listing.has_quota || listing.has_guarantee,
                    "moves traffic: hits in 24 hours, a quota of this hour or a guarantee"),
               step(listing.is_trade, "is a trade: id above 9")});
}

Json skim_step(const Story& story) {
  const std::int32_t skim = story.after.param_844;
  const std::int32_t own = story.forecast.run.store.trades[story.position].param_844;
  const auto& change = story.forecast.run.skim_change;
  Json details = Json::array();
  if (change && skim == change->skim) {
    details.push_back(step(change->block + 1, "block of d/ds that set it, metric " + change->metric,
                           {step(change->value, change->above ? "is above" : "is below"),
                            step(change->threshold, "the threshold")}));
  }
  details.push_back(step(own, "its own skim, -1 for none"));
  return step(skim, skim == -1 ? "no skim" : "skim", std::move(details));
}

Json result_json(const Story& story) {
  return {{"rank", story.rank + 1},
          {"of", story.forecast.ranked.size()},
          {"score", number(story.steps.score)},
          {"weight", number(story.after.score)},
          {"second_weight", number(story.after.plan_value)},
          {"listed", story.listing.listed},
          {"state", state_text(list_state(story.after, story.forecast.run.clock.run_hour))},
          {"skim", story.after.param_844 == -1 ? Json() : Json(story.after.param_844)}};
}

void print_step(const Json& node, const std::string& indent) {
  std::cout << indent << cell(node["value"]) << "  " << cell(node["description"]) << '\n';
  for (const Json& detail : node["details"]) print_step(detail, indent + "  ");
}

}  // namespace

Json why_json(const Story& story) {
  const int hour = story.forecast.run.clock.run_hour;
  const Json state = state_text(list_state(story.after, hour));
  return {
      {"id", story.before.id},
      {"name", field_text(story.before.name)},
      {"position", story.position},
      {"hour", hour},
      {"tree", step(number(story.after.score), "weight in the outgoing list",
                    {score_step(story), rank_step(story), admission_step(story), weight_step(story),
                     listing_step(story), step(state, "state in the list"), skim_step(story)})},
      {"result", result_json(story)},
      {"reason", reason_of(story)},
      {"sentence", sentence_of(story)}};
}

Json why_view(const std::optional<std::string>& name_or_id, const ForesightQuery& query) {
  const Forecast forecast = foresee_list(assumptions_of(query, Moment::between_runs));
  if (name_or_id) {
    const std::size_t position = find_trade(forecast.run.store, *name_or_id);
    return why_json(story_of(forecast, rank_of(forecast, position)));
  }
  Json stories = Json::array();
  for (std::size_t rank = 0; rank < forecast.ranked.size(); ++rank) {
    stories.push_back(why_json(story_of(forecast, rank)));
  }
  Json view;
  view["trades"] = std::move(stories);
  return view;
}

void print_why(const Json& view) {
  if (view.contains("trades")) {
    std::vector<std::vector<std::string>> rows;
    for (const Json& story : view["trades"]) {
      rows.push_back({cell(story["id"]), cell(story["name"]), cell(story["sentence"])});
    }
    print_table({{"id", true}, {"name"}, {"why"}}, rows);
    return;
  }
  std::cout << coloured(Colour::bold, cell(view["name"])) << ", id " << cell(view["id"])
            << ", judged for hour " << cell(view["hour"]) << "\n\n";
  for (const Json& node : view["tree"]["details"]) print_step(node, "");
  std::cout << '\n' << cell(view["sentence"]) << '\n';
}

}  // namespace vantrel::inspect
