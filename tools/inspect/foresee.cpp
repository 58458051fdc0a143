#include "foresee.h"

#include "base/clock.h"
#include "base/rehearsal.h"
#include "base/text.h"
#include "log_lines.h"
#include "out/out_list.h"
#include "run/sleep_gate.h"
#include "settings/dynamic_skim.h"
#include "site.h"
#include "store/summary.h"

namespace vantrel::inspect {
namespace {

// The windows as the last run left them, the settings as they are now.
bool take_stored(Run& run, const Assumptions& assumptions) {
  const bool next = assumptions.moment == Moment::next_run;
  run.clock = next ? start_clock_of(next_start()) : take_start_clock();
  if (!load_trade_index(run.store)) return false;
  if (next && !assumptions.hour && run.clock.run_minute == 0) hourly_step(run.store);
  if (!build_work_array(run.store) || !load_summary(run.store)) return false;
  run.skim_change = apply_dynamic_skim(run.store.works);
  return load_main_settings(run.settings);
}

bool take_state(Run& run, const Assumptions& assumptions) {
  if (assumptions.moment != Moment::run_now) return take_stored(run, assumptions);
  return open_run(run) && load_store(run) && account_traffic(run);
}

std::vector<ForeseenEvent> events_in(const Rehearsal& rehearsal) {
  std::vector<ForeseenEvent> events;
  const std::string* log = rehearsal.written(kEventLog);
  if (log == nullptr) return events;
  Pieces lines = lines_of(*log);
  for (std::string_view text; lines.next(text);) {
    const LogLine line = line_of(text);
    if (const Event* event = event_of(line)) events.push_back({event, unescaped(line.subject)});
  }
  return events;
}

// Why there is no list. An error page names its file in the second pair of bold marks.
std::string ending_of(const Forecast& forecast, const Rehearsal& rehearsal) {
  if (!forecast.events.empty() && forecast.events.back().event->level == "1") {
    return forecast.events.back().subject;
  }
  const std::string& page = rehearsal.printed();
  const std::size_t bold = page.rfind("<b>");
  if (bold != std::string::npos) {
    const std::size_t name = bold + 3;
    return "Unable to open file " + page.substr(name, page.find('<', name) - name);
  }
  if (sleep_gate_closed(forecast.run.clock)) {
    return "d/sleep holds back a run started in this second";
  }
  return "another run was let in in this minute";
}

// Scores all trades once more, for the steps, in the order in which planning does.
void keep_scores(Forecast& forecast) {
  TradeScorer scorer(forecast.run.out);
  for (std::size_t i = 0; i < forecast.unranked.size(); ++i) {
    ExpressionErrors errors;
    forecast.scores.push_back(scorer.score(forecast.unranked[i], &errors));
    for (const ExpressionError& error : errors) forecast.formula_errors.push_back({i, error});
  }
  std::vector<double> scores;
  for (const TradeScore& steps : forecast.scores) scores.push_back(steps.score);
  forecast.ranked = ranking(scores);
  const Run& run = forecast.run;
  std::size_t admitted = 0;
  for (const std::size_t position : forecast.ranked) {
    forecast.admitted_above.push_back(admitted);
    const TradeWork& trade = forecast.unranked[position];
    const bool admits = admission_of(trade, run.settings.uin24_limit, run.clock.run_hour).admitted;
    admitted += admits ? 1 : 0;
  }
}

}  // namespace

std::time_t next_start() {
  const std::time_t now = wall_clock();
  return ran_this_minute() ? (epoch_minute(now) + 1) * 60 : now;
}

Forecast foresee(const Assumptions& assumptions) {
  Forecast forecast;
  Run& run = forecast.run;
  Rehearsal rehearsal;
  for (const auto& [path, other] : assumptions.with) rehearsal.put_in_place(path, other);
  if (take_state(run, assumptions)) {
    if (assumptions.hour) run.clock.run_hour = *assumptions.hour;
    forecast.unranked = run.store.works;
    forecast.reaches_list = plan_traffic(run);
  }
  forecast.events = events_in(rehearsal);
  if (!forecast.reaches_list) {
    forecast.ending = ending_of(forecast, rehearsal);
    return forecast;
  }
  if (const std::string* list = rehearsal.written(kOutListFile)) forecast.list = *list;
  keep_scores(forecast);
  return forecast;
}

Forecast foresee_list(const Assumptions& assumptions) {
  Forecast forecast = foresee(assumptions);
  if (!forecast.reaches_list) throw Unavailable{"there would be no list: " + forecast.ending};
  return forecast;
}

}  // namespace vantrel::inspect
