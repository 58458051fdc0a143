// Every event the maintenance run can write, in one table: the program reports from it, the
// inspector explains from it, the manual page prints it.
#pragma once

#include <span>
#include <string_view>

namespace vantrel {

// A kind of event. The texts code, subject and level go into the log as they are.
struct Event {
  std::string_view code;     // 1 a file, 2 a directory could not be opened; 3 a gap; 10 a message
  std::string_view subject;  // file or message; "<...>" stands for what the run fills in
  std::string_view level;    // "1": the run ended there; "0": it went on
  std::string_view meaning;  // for people: what it means for the site
  std::string_view remedy;   // for people: what to do about it
};

namespace event {
extern const Event disk_write_test;
extern const Event disk_read_test;
extern const Event disk_full;
extern const Event double_run;
extern const Event index_unavailable;
extern const Event index_too_small;
extern const Event index_not_populated;
extern const Event summary_unavailable;
extern const Event marker_missing;
extern const Event marker_consequence;
extern const Event trade_history_unavailable;
extern const Event skim_missing;
extern const Event skim_consequence;
extern const Event proxy_missing;
extern const Event geo_missing;
extern const Event ip_table_missing;
extern const Event agents_missing;
extern const Event requests_missing;
extern const Event tags_missing;
extern const Event settings_missing;
extern const Event settings_corrupt;
extern const Event statistics_unreadable;
extern const Event statistics_unwritable;
extern const Event out_set_missing;
extern const Event out_mod_missing;
extern const Event caps_missing;
extern const Event caps_consequence;
extern const Event out_list_unwritable;
extern const Event total_history_unwritable;
extern const Event trades_history_unwritable;
extern const Event alerts_unavailable;
extern const Event alerts_corrupt;
extern const Event mail_not_started;
extern const Event gap_found;
extern const Event run_history_unwritable;
extern const Event synchronizing;
extern const Event out_of_memory;
}  // namespace event

// All of them, in the order the phases can write them.
[[nodiscard]] std::span<const Event* const> all_events();

}  // namespace vantrel
