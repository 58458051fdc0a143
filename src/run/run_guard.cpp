#include "run/run_guard.h"

#include <sys/stat.h>

#include <deque>
#include <string_view>

#include "base/clock.h"
#include "base/files.h"
#include "base/flush.h"
#include "base/text.h"
#include "run/event_log.h"
#include "store/summary.h"

namespace vantrel {
namespace {

constexpr const char* kDiskCheckFile = "l/hdd.check";
constexpr const char* kLastRunFile = "l/sys/cron.last";
constexpr std::string_view kDiskCheckText = "0123456789";

// Fills the history with the newest lines. False when one of all lines is this run's stamp.
bool read_stamps(RunHistory& history, std::string_view text) {
  std::deque<std::string_view> newest;
  Pieces lines = lines_of(text);
  for (std::string_view line; lines.next(line);) {
    if (line == history.run_stamp) return false;
    ++history.count;
    newest.push_back(line);
    if (newest.size() == kStampsKept) newest.pop_front();  // leaves room for this run's own
  }
  history.stamps.assign(newest.begin(), newest.end());
  return true;
}

}  // namespace

bool check_disk() {
  if (!write_scratch_file(kDiskCheckFile, kDiskCheckText)) {
    report(event::disk_write_test);
    return false;
  }
  FileBuffer file;
  if (!file.read(kDiskCheckFile)) {
    report(event::disk_read_test);
    return false;
  }
  std::string_view last;
  Pieces lines = lines_of(file.text());
  while (lines.next(last)) continue;
  if (last == kDiskCheckText) return true;
  report(event::disk_full);
  return false;
}

bool room_for_totals() {
  if (room_to_replace(kSummaryFile)) return true;
  report(event::disk_full);
  return false;
}

bool ran_this_minute() {
  struct stat status {};
  if (::stat(kLastRunFile, &status) != 0) return false;
  return epoch_minute(status.st_mtime) == epoch_minute(wall_clock());
}

bool guard_run(RunHistory& history) {
  history.moment = wall_clock();
  history.run_stamp = format_time(kRunStampFormat, history.moment);
  FileBuffer file;
  static_cast<void>(file.read(kRunHistoryFile));
  if (!read_stamps(history, file.text())) {
    report(event::double_run);
    return false;
  }
  // A run that cannot be recorded is still worth its work.
  static_cast<void>(append_to_file(kRunHistoryFile, history.run_stamp + "\n", Torn::cut));
  // On disk before anything is counted: after a power cut the counts of d/t/sum, which are flushed
  // too, must not be there without it, or the next run would count the minute again.
  flush_file(kRunHistoryFile);
  static_cast<void>(overwrite_file(kLastRunFile, history.run_stamp));
  history.stamps.push_back(history.run_stamp);
  ++history.count;
  return true;
}

}  // namespace vantrel
