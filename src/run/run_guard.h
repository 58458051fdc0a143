// The checks that keep a run from harming the databases: a disk that takes no data, a second run in
// the same minute. And the run history they rest on.
#pragma once

#include <ctime>
#include <string>
#include <vector>

namespace vantrel {

// l/sys/cron.run: one run stamp a line, oldest first, appended by every run that is let in and cut
// to the newest 20 by the end-of-run check.
inline constexpr const char* kRunHistoryFile = "l/sys/cron.run";
inline constexpr const char* kRunStampFormat = "%m%d%H%M";

// How many of the newest stamps anything looks at.
inline constexpr std::size_t kStampsKept = 40;

struct RunHistory {
  std::time_t moment = 0;  // when the guard read the clock: what the minute walk starts from
  std::string run_stamp;   // that moment as "%m%d%H%M"
  std::vector<std::string> stamps;  // the newest of them, oldest first, this run's stamp last
  std::size_t count = 0;            // how many there are, this run's among them
};

// Writes ten characters to l/hdd.check and reads them back. False, with an event, when they do not
// arrive.
[[nodiscard]] bool check_disk();

// The check file gets back the block it had, even on a disk that has no other. False, with an
// event, when there is no room for the totals: a run that cannot store them must not note its
// minute as counted.
[[nodiscard]] bool room_for_totals();

// True when l/sys/cron.last was modified in the current minute: another run is at work.
[[nodiscard]] bool ran_this_minute();

// Reads the clock and the run history and records this run in l/sys/cron.run and l/sys/cron.last.
// False, with an event, when this minute's stamp stands there already; nothing is written then.
[[nodiscard]] bool guard_run(RunHistory& history);

}  // namespace vantrel
