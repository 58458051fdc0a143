#include "run/run_guard.h"

#include <sys/stat.h>

#include <cerrno>
#include <deque>
#include <string_view>

#include "base/clock.h"
#include "base/files.h"
#include "base/flush.h"
#include "base/replace_file.h"
#include "base/text.h"
#include "run/event_log.h"
#include "store/summary.h"

namespace vantrel {
namespace {

constexpr const char* kDiskCheckFile = "l/hdd.check";
constexpr std::string_view kDiskCheckText = "0123456789";

// Somebody wrote to the history between its reading and this run's note, which begins there. True
// when it was not a run of this minute or a later one: this run then counts from that one on.
bool is_still_due(RunHistory& history, std::uint64_t begin) {
  FileBuffer file;
  static_cast<void>(file.read(kRunHistoryFile));
  return !take_stamps(history, file.text().substr(0, begin)) &&
         (history.stamps.empty() || history.stamps.back() < history.run_stamp);
}

// Takes back the note that begins there, unless somebody has noted a run behind it.
void take_back(const RunHistory& history, std::uint64_t begin) {
  const File file = open_to_update(kRunHistoryFile);
  if (file.size() == begin + history.run_stamp.size() + 1) cut_file(file, begin);
}

}  // namespace

bool take_stamps(RunHistory& history, std::string_view text) {
  std::deque<std::string_view> newest;
  bool noted = false;
  history.count = 0;
  history.bytes = text.size();
  Pieces lines = lines_of(text);
  for (std::string_view line; lines.next(line);) {
    noted |= line == history.run_stamp;
    ++history.count;
    newest.push_back(line);
    if (newest.size() == kStampsKept) newest.pop_front();  // leaves room for this run's own
  }
  history.stamps.assign(newest.begin(), newest.end());
  return noted;
}

DiskFault check_disk() {
  if (!write_scratch_file(kDiskCheckFile, kDiskCheckText)) {
    return {&event::disk_write_test, is_no_room(errno)};
  }
  FileBuffer file;
  if (!file.read(kDiskCheckFile)) return {&event::disk_read_test};
  std::string_view last;
  Pieces lines = lines_of(file.text());
  while (lines.next(last)) continue;
  if (last == kDiskCheckText) return {};
  const bool is_file = file.version() != FileVersion{};  // a device does not fill up
  return {&event::disk_full, is_file};
}

DiskFault check_room_for_totals() {
  if (room_to_store(kSummaryFile)) return {};
  return {&event::disk_full, true};
}

bool ran_this_minute() {
  struct stat status {};
  if (::stat(kLastRunFile, &status) != 0) return false;
  return epoch_minute(status.st_mtime) == epoch_minute(wall_clock());
}

bool read_run_history(RunHistory& history) {
  FileBuffer file;
  static_cast<void>(file.read(kRunHistoryFile));
  // The clock behind the file: what others note from now on stands behind what was read.
  history.moment = wall_clock();
  history.run_stamp = format_time(kRunStampFormat, history.moment);
  if (!take_stamps(history, file.text())) return true;
  report(event::double_run);
  return false;
}

bool note_run(RunHistory& history) {
  Appended note;
  const bool noted = append_to_file(kRunHistoryFile, history.run_stamp + "\n", Torn::cut, &note);
  if (note.no_room) {
    report(event::disk_full);
    return false;
  }
  if (noted && note.begin != history.bytes && !is_still_due(history, note.begin)) {
    take_back(history, note.begin);
    report(event::double_run);
    return false;
  }
  // On disk before anything is counted: after a power cut the counts of d/t/sum, which are flushed
  // too, must not be there without it, or the next run would count the minute again.
  flush_file(kRunHistoryFile);
  static_cast<void>(overwrite_file(kLastRunFile, history.run_stamp));
  history.stamps.push_back(history.run_stamp);
  ++history.count;
  return true;
}

}  // namespace vantrel
