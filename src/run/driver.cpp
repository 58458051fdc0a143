#include "run/driver.h"

#include "history/history.h"
#include "out/planning.h"
#include "report/alerts.h"
#include "run/end_check.h"
#include "settings/dynamic_skim.h"
#include "settings/rating_tables.h"
#include "settings/traffic_settings.h"
#include "store/housekeeping.h"
#include "store/summary.h"
#include "traffic/accounting.h"
#include "traffic/hit_processing.h"

namespace vantrel {
namespace {

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

}  // namespace

// May this run touch the databases? The trade index comes before the guard, so that a run without
// one leaves no trace in the run history.
bool open_run(Run& run) {
  run.clock = take_start_clock();
  return !sleep_gate_closed(run.clock) && check_disk() && !ran_this_minute() &&
         load_trade_index(run.store) && room_for_totals() && guard_run(run.history);
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
