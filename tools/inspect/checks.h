// The parts of the examination, one a concept. A part looks at some files, asks the run's own code
// what they mean and adds its findings; none of them changes anything.
#pragma once

#include <ctime>

#include "findings.h"
#include "store/trade_index.h"

namespace vantrel::inspect {

// When the next run is to be expected: as far into its minute as the last one came.
[[nodiscard]] std::time_t expected_start();

void check_event_log(Findings& findings);  // without it the run is mute
void check_scheduler(Findings& findings);  // last run, d/sleep
void check_run_history(Findings& findings);
void check_processes(Findings& findings);  // runs that do not end
void check_recent_events(Findings& findings);
void check_disk(Findings& findings);
void check_hit_logs(Findings& findings, const TradeStore& store);

// The trade store. It is empty when there is no index; the windows are of the last run. False when
// the records are not worth judging one by one, nor what should agree with them.
[[nodiscard]] bool check_index(Findings& findings, TradeStore& store);
void check_summary(Findings& findings, TradeStore& store, bool has_trades);
void check_statistics(Findings& findings, const TradeStore& store);
void check_trades(Findings& findings, const TradeStore& store);  // settings of single trades
void check_history(Findings& findings, const TradeStore& store);
void check_marker(Findings& findings);

// Settings.
void check_main_settings(Findings& findings, const TradeStore& store);
void check_skim(Findings& findings);
void check_lists(Findings& findings, const TradeStore& store);  // d/se, d/proxy
void check_rules(Findings& findings);
void check_ratings(Findings& findings);  // the four ratings and the address table
void check_outgoing(Findings& findings, const TradeStore& store, bool has_trades);
void check_alerts(Findings& findings);

void check_programs(Findings& findings);  // companion scripts, tar
void check_backups(Findings& findings);

// What a run now would do: the last resort for what nobody thought of, and its list.
void check_outcome(Findings& findings);

}  // namespace vantrel::inspect
