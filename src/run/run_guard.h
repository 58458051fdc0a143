// The checks that keep a run from harming the databases: a disk that takes no data, a second run in
// the same minute. And the run history they rest on.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "run/events.h"

namespace vantrel {

// l/sys/cron.run: one run stamp a line, oldest first, appended by every run that is let in and cut
// to the newest 20 by the end-of-run check.
inline constexpr const char* kRunHistoryFile = "l/sys/cron.run";
inline constexpr const char* kLastRunFile = "l/sys/cron.last";
inline constexpr const char* kRunStampFormat = "%m%d%H%M";

// How many of the newest stamps anything looks at.
inline constexpr std::size_t kStampsKept = 40;

struct RunHistory {
  std::time_t moment = 0;  // when the guard read the clock: what the minute walk starts from
  std::string run_stamp;   // that moment as "%m%d%H%M"
  std::vector<std::string> stamps;  // the newest of them, oldest first, this run's stamp last
  std::size_t count = 0;            // how many there are, this run's among them
  std::uint64_t bytes = 0;          // length of the file they were read from
};

// What is wrong with the disk: nothing when there is no event.
struct DiskFault {
  const Event* event = nullptr;
  bool full = false;  // removing something may help
};

// Writes ten characters to l/hdd.check and reads them back.
[[nodiscard]] DiskFault check_disk();

// Can the totals of this run be stored, beside the old ones or over them? A run that could not
// store them must not note its minute as counted. The room is taken.
[[nodiscard]] DiskFault check_room_for_totals();

// True when l/sys/cron.last was modified in the current minute: another run is at work.
[[nodiscard]] bool ran_this_minute();

// Fills the history with the newest lines of the file's text. True when this run's stamp is among
// all of them.
bool take_stamps(RunHistory& history, std::string_view text);

// Reads the clock and the run history. False, with an event, when this minute's stamp stands there
// already.
[[nodiscard]] bool read_run_history(RunHistory& history);

// Notes the run in l/sys/cron.run and l/sys/cron.last. False, with an event, when another run has
// noted this minute or a later one since the history was read, or when there is no room for the
// note; nothing is left of it then. A run whose note cannot be written for another reason goes on.
[[nodiscard]] bool note_run(RunHistory& history);

}  // namespace vantrel
