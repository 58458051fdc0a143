// The end of a complete run: looks for signs that the statistics have gone wrong, has the databases
// synchronised when they have or when the administration side asks for it, shortens the run history
// and starts the companion scripts.
#pragma once

#include <vector>

#include "base/start_clock.h"
#include "run/run_guard.h"
#include "settings/main_settings.h"
#include "store/trade_record.h"

namespace vantrel {

// catch_up_minutes: how many minutes of logs the run read; more than one means a run was missed.
// Every program is waited for, and what becomes of it is not looked at.
void finish_run(const StartClock& clock, const RunHistory& history, double catch_up_minutes,
                const std::vector<TradeWork>& works, const MainSettings& settings);

}  // namespace vantrel
