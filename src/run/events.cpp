#include "run/events.h"

#include <iterator>

namespace vantrel {
namespace event {

const Event disk_write_test{"10", "unable to perform hdd check (write test)", "1",
                            "The scratch file l/hdd.check cannot be written.",
                            "Give the run's user write permission on l/ and l/hdd.check."};
const Event disk_read_test{"10", "unable to perform hdd check (read test)", "1",
                           "The scratch file l/hdd.check was written but cannot be read back.",
                           "Give the run's user read permission on l/hdd.check; check the disk."};
const Event disk_full{"10", "unable to perform hdd check (disk full?)", "1",
                      "What was written to l/hdd.check did not arrive, or there is no room for "
                      "the totals, not even over the old ones.",
                      "Free space on the file system of the site, or raise the quota."};
const Event double_run{"10", "cron has already run this minute (double cron detected)", "1",
                       "Another run was started in this minute; this one did nothing.",
                       "Look for a second crontab line or timer for the same site."};
const Event index_unavailable{
    "1", "d/t/index", "1", "The trade database cannot be opened or written.",
    "Restore d/t/index from a backup, or give the run's user read and write permission."};
const Event index_too_small{"10", "database was not fully loaded", "1",
                            "The trade database holds fewer than ten entries.",
                            "Restore d/t/index from the newest archive in d/backup/."};
const Event index_not_populated{"10", "database was not fully populated", "1",
                                "The trades did not fit into memory.",
                                "Give the machine or the run's user more memory."};
const Event summary_unavailable{
    "1", "d/t/sum", "1", "The totals of all windows cannot be opened or written.",
    "Restore d/t/sum from a backup, or give the run's user write permission on it and on d/t/."};
const Event marker_missing{
    "1", "d/t/jb", "0", "The marker file d/jb is missing.",
    "Let the administration side finish its statistics job, or create an empty d/jb."};
const Event marker_consequence{"10", "stats of the last X days may not be accurate", "0",
                               "Follows the event of the missing marker d/jb.",
                               "See the event before it."};
const Event trade_history_unavailable{
    "1", "d/h/<name>.his", "0",
    "A trade's history cannot be read or appended to; its 7-day window misses it.",
    "Normal for a new trade until its first 23:59; otherwise check the permissions of d/h/."};
const Event skim_missing{
    "1", "d/ds", "0", "The dynamic skim settings cannot be opened.",
    "Save the skim settings once in the administration, or check permissions."};
const Event skim_consequence{
    "10", "dynamic skim settings can not be loaded", "0",
    "Follows the event of the missing d/ds: every trade keeps its own skim.",
    "See the event before it."};
const Event proxy_missing{"1", "d/proxy", "0",
                          "The proxy list cannot be opened; no address counts as a proxy.",
                          "Save the proxy list once in the administration, or check permissions."};
const Event geo_missing{"1", "d/geo.rating", "1", "The country rating cannot be opened.",
                        "Save the country rating in the administration, or check permissions."};
const Event ip_table_missing{"1", "ip.psv", "1", "The address table d/ip.psv cannot be opened.",
                             "Install d/ip.psv again, or check permissions."};
const Event agents_missing{"1", "d/agent.rating", "1", "The user-agent rating cannot be opened.",
                           "Save the agent rating in the administration, or check permissions."};
const Event requests_missing{
    "1", "d/request.rating", "1", "The request rating cannot be opened.",
    "Save the request rating in the administration, or check permissions."};
const Event tags_missing{"1", "d/tags.rating", "1", "The tag rating cannot be opened.",
                         "Save the tag rating in the administration, or check permissions."};
const Event settings_missing{"1", "d/set", "1", "The main settings cannot be opened.",
                             "Save the main settings in the administration, or check permissions."};
const Event settings_corrupt{"10", "file d/set is corrupt", "1",
                             "The main settings do not have exactly six lines.",
                             "Save the main settings again, or restore d/set from a copy."};
const Event statistics_unreadable{
    "1", "d/t/<id>", "1", "A trade's statistics file cannot be read; no window was advanced.",
    "Create it with 80,640 zero bytes, readable and writable for the run's user."};
const Event statistics_unwritable{
    "1", "d/t/<id>", "0",
    "A trade's statistics file cannot be written; this minute is not stored in it.",
    "Give the run's user write permission on the file."};
const Event out_set_missing{
    "1", "d/out.set", "1", "The outgoing weights cannot be opened; the old outgoing list stays.",
    "Save the outgoing settings in the administration, or check permissions."};
const Event out_mod_missing{
    "1", "d/out.mod", "1", "The outgoing modifiers cannot be opened; the old outgoing list stays.",
    "Save the outgoing settings in the administration, or check permissions."};
const Event caps_missing{"1", "d/caps", "0", "The trade caps cannot be opened.",
                         "Save the caps once in the administration, or check permissions."};
const Event caps_consequence{"10", "unable to load the trade caps", "0",
                             "Follows the event of the missing d/caps: no trade has a cap.",
                             "See the event before it."};
const Event out_list_unwritable{
    "1", "d/out.lst", "0", "The outgoing list cannot be written; visitors follow the old one.",
    "Give the run's user write permission on d/out.lst, or free space."};
const Event total_history_unwritable{
    "1", "d/h/all.his", "0", "The day's totals over all entries cannot be appended.",
    "Give the run's user write permission on d/h/all.his, or free space."};
const Event trades_history_unwritable{
    "1", "d/h/trades.his", "0", "The day's totals over the trades cannot be appended.",
    "Give the run's user write permission on d/h/trades.his, or free space."};
const Event alerts_unavailable{
    "1", "d/alerts", "0", "The alert settings cannot be opened or written.",
    "Save the alert settings once in the administration, or check permissions."};
const Event alerts_corrupt{"10", "alerts settings file is corrupt", "0",
                           "The alert settings do not have exactly 14 fields; no alert is sent.",
                           "Save the alert settings again in the administration."};
const Event mail_not_started{
    "10", "unable to connect to sendmail", "0",
    "The system refused the process for the mail; the alert counts as sent.",
    "Give the run's user more processes or memory; a wrong path of the mail "
    "program is never reported."};
const Event gap_found{
    "3", "", "0",
    "The run history has a gap: one of the last 39 minutes has no run, or this one lasted into the "
    "next "
    "minute. A synchronisation follows.",
    "Nothing after a reboot; if it repeats, check the scheduler and the length of the runs."};
const Event run_history_unwritable{"1", "l/sys/cron.run", "0",
                                   "The run history cannot be shortened.",
                                   "Give the run's user write permission on l/sys/cron.run."};
const Event synchronizing{"10", "synchronizing databases", "0",
                          "The administration asked for a synchronisation; it is being started.",
                          "Nothing."};
const Event out_of_memory{"10", "not enough memory for the run", "1",
                          "The system refused the run memory it needs.",
                          "Give the machine or the run's user more memory; look for a file that "
                          "has grown out of proportion."};

}  // namespace event

namespace {

const Event* const kAll[] = {
    &event::disk_write_test,
    &event::disk_read_test,
    &event::disk_full,
    &event::index_unavailable,
    &event::index_too_small,
    &event::double_run,
    &event::index_not_populated,
    &event::summary_unavailable,
    &event::marker_missing,
    &event::marker_consequence,
    &event::trade_history_unavailable,
    &event::skim_missing,
    &event::skim_consequence,
    &event::proxy_missing,
    &event::geo_missing,
    &event::ip_table_missing,
    &event::agents_missing,
    &event::requests_missing,
    &event::tags_missing,
    &event::settings_missing,
    &event::settings_corrupt,
    &event::statistics_unreadable,
    &event::statistics_unwritable,
    &event::out_set_missing,
    &event::out_mod_missing,
    &event::caps_missing,
    &event::caps_consequence,
    &event::out_list_unwritable,
    &event::total_history_unwritable,
    &event::trades_history_unwritable,
    &event::alerts_unavailable,
    &event::alerts_corrupt,
    &event::mail_not_started,
    &event::gap_found,
    &event::run_history_unwritable,
    &event::synchronizing,
    &event::out_of_memory,
};

}  // namespace

std::span<const Event* const> all_events() { return kAll; }

}  // namespace vantrel
