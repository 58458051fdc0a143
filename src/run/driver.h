// One maintenance run from start to end, and its phases for whoever wants to see how far a run
// gets.
#pragma once

#include <optional>

#include "base/start_clock.h"
#include "out/out_settings.h"
#include "run/run_guard.h"
#include "settings/dynamic_skim.h"
#include "settings/main_settings.h"
#include "store/trade_index.h"
#include "traffic/hit_logs.h"

namespace vantrel {

// What the phases hand on to one another.
struct Run {
  StartClock clock;
  RunHistory history;
  TradeStore store;
  std::optional<SkimChange> skim_change;
  MainSettings settings;
  OutSettings out;
  MinuteWalk walk;
  double catch_up_minutes = 1.0;
};

// Does the work of one minute in the working directory, a site. Every failure is in the event log
// when it returns; nothing is thrown but what the machine's memory refuses.
void maintenance_run();

// Its phases up to the outgoing list, in this order. False when the run ends there; the event is
// then written, but for a start before d/sleep or in the minute of another run, which end silently.
[[nodiscard]] bool open_run(Run& run);         // guards, trade index
[[nodiscard]] bool load_store(Run& run);       // windows of the last run, history
[[nodiscard]] bool account_traffic(Run& run);  // settings, hit logs; the windows move on
[[nodiscard]] bool plan_traffic(Run& run);     // scores, ranking, d/out.lst

}  // namespace vantrel
