#include "run/driver.h"

#include "base/replace_file.h"
#include "history/history.h"
#include "out/out_list.h"
#include "out/planning.h"
#include "report/alerts.h"
#include "run/end_check.h"
#include "run/event_log.h"
#include "run/sleep_gate.h"
#include "settings/dynamic_skim.h"
#include "settings/rating_tables.h"
#include "settings/traffic_settings.h"
#include "store/housekeeping.h"
#include "store/summary.h"
#include "traffic/accounting.h"
#include "traffic/hit_processing.h"

namespace vantrel {
namespace {

// What is stored beside the old file first: a killed run leaves the new one behind.
constexpr const char* kReplacedFiles[] = {kSummaryFile, kSettingsFile, kOutListFile,
                                          kRunHistoryFile, "d/alerts"};

// Settings that only hit processing needs; they are gone when it is done.
struct TrafficTables {
  TrafficSettings traffic;
  RatingTables ratings;
};

void process_hit_logs(Run& run, const TrafficTables& tables) {
  HitProcessor processor(run.store, tables.traffic, tables.ratings, run.settings.cef_limit);
  run.catch_up_minutes = catch_up_minutes(run.history.stamps);
  for_each_log_minute(run.walk, run.history.moment, run.catch_up_minutes,
                      [&processor](const MinuteWalk& walk) {
                        processor.process_in_file(in_log_path(walk.minute_stamp));
                        processor.process_out_file(out_log_path(walk.minute_stamp));
                      });
}

// A full disk may hold what is due to go, and a run that ends for want of room would never remove
// it.
[[nodiscard]] bool disk_passes(DiskFault (*check)(), const StartClock& clock) {
  DiskFault fault = check();
  if (fault.full) {
    make_room(clock.pruning_time());
    fault = check();
  }
  if (fault.event != nullptr) report(*fault.event);
  return fault.event == nullptr;
}

}  // namespace

// May this run touch the databases? The trade index comes before the guard, so that a run without
// one leaves no trace in the run history; the look for room behind the guard, because a second run
// of a minute must do nothing, and before the note, because a noted minute is never counted again.
bool open_run(Run& run) {
  run.clock = take_start_clock();
  if (sleep_gate_closed(run.clock) || !disk_passes(check_disk, run.clock) || ran_this_minute() ||
      !load_trade_index(run.store) || !read_run_history(run.history) ||
      !disk_passes(check_room_for_totals, run.clock) || !note_run(run.history)) {
    return false;
  }
  remove_leftovers(kReplacedFiles);
  return true;
}

bool load_store(Run& run) {
  if (run.clock.run_minute == 0) hourly_step(run.store);
  if (!build_work_array(run.store) || !load_summary(run.store)) return false;
  check_marker();
  if (history_load_due(run.clock)) load_history(run.store.works);
  return true;
}

bool account_traffic(Run& run) {
  TrafficTables tables;
  run.skim_change = apply_dynamic_skim(run.store.works);
  if (!load_traffic_settings(tables.traffic) || !load_rating_tables(tables.ratings) ||
      !load_main_settings(run.settings)) {
    return false;
  }
  process_hit_logs(run, tables);
  return finish_accounting(run.store, run.walk.moment, run.clock.run_minute);
}

bool plan_traffic(Run& run) {
  return load_out_settings(run.out, run.store.works.size()) &&
         plan_outgoing(run.store.works, run.out, run.settings, run.clock.run_hour);
}

namespace {

void keep_house(const Run& run) {
  if (history_due(run.clock)) write_history(run.store.works, run.clock);
  if (run.clock.end_of_day() || run.clock.midday()) make_backup(run.walk.hour_stamp);
  remove_old_logs(run.walk.moment);
  if (run.clock.pruning_time()) prune_backups();
}

}  // namespace

void maintenance_run() {
  Run run;
  if (!open_run(run)) return;
  if (!load_store(run)) return;
  if (!account_traffic(run)) return;
  if (!plan_traffic(run)) return;
  keep_house(run);
  run_alerts(run.store.works);
  finish_run(run.clock, run.history, run.catch_up_minutes, run.store.works, run.settings);
}

}  // namespace vantrel
