#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "base/start_clock.h"
#include "checks.h"
#include "site.h"
#include "store/housekeeping.h"
#include "store/summary.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kScratch = "l/hdd.check";
constexpr std::size_t kLargeLog = std::size_t{64} << 20;

void check_scratch(Findings& findings) {
  if (exists(kScratch) && !is_regular(kScratch) && !is_directory(kScratch)) {
    findings.as_event(kScratch, event::disk_full);
  } else if (!may_create_or_write(kScratch)) {
    findings.refused(kScratch, Need::create, event::disk_write_test);
  } else if (exists(kScratch) && !may_read(kScratch)) {
    findings.refused(kScratch, Need::read, event::disk_read_test);
  }
}

// Whether there are files that the next run would remove for room; see make_room().
bool has_due_files() {
  const std::time_t start = expected_start();
  if (std::ranges::any_of(old_logs(start - 60), exists)) return true;
  if (!start_clock_of(start).pruning_time()) return false;
  const auto backups = old_backups();
  return backups && !backups->empty();
}

// A full file system takes no logs. The run still overwrites the files it has, but without its
// check file it needs room for a new one.
void tell_full(Findings& findings, const std::string& what, const std::string& remedy) {
  const std::string missing = std::string(", and ") + kScratch + " is not there to be overwritten";
  if (file_size(kScratch) == 0 && !has_due_files()) {
    findings.ends_run("disk", what + missing, remedy);
  } else if (file_size(kScratch) == 0) {
    findings.lost("disk",
                  what + missing +
                      ": the next run has to remove the old logs or archives that are due first, "
                      "and ends early if others take their room",
                  remedy);
  } else {
    findings.lost("disk",
                  what +
                      ": hits of this minute are not logged, d/t/sum is overwritten in place, "
                      "and a list or log that grows is not written",
                  remedy);
  }
}

// Room for a new d/t/sum beside the old, and for what a minute brings.
void check_room(Findings& findings, const std::string& directory, std::uint64_t needed) {
  struct statvfs disk {};
  if (::statvfs(directory.c_str(), &disk) != 0) return;
  const bool root = ::geteuid() == 0;
  const std::uint64_t room =
      std::uint64_t{root ? disk.f_bfree : disk.f_bavail} * std::uint64_t{disk.f_frsize};
  const std::uint64_t files = root ? disk.f_ffree : disk.f_favail;
  const std::string remedy(event::disk_full.remedy);
  if (room < needed) {
    tell_full(findings, "the file system of " + directory + " is full", remedy);
  } else if (disk.f_files > 0 && files == 0) {
    tell_full(findings,
              "the file system of " + directory +
                  " takes no further file, though it has room (no inodes)",
              "remove small files from it: old hit logs, mails, sessions");
  } else if (room < needed * 20 + (std::uint64_t{1} << 20)) {
    findings.off("disk", "only " + std::to_string(room >> 10) + " KiB are left for " + directory,
                 remedy);
  }
}

}  // namespace

void check_event_log(Findings& findings) {
  constexpr const char* kLog = "l/sys/sys.log";
  if (!may_create_or_write(kLog)) {
    Finding mute = finding_off(kLog,
                               "cannot be written: the run is mute, whatever goes wrong is "
                               "reported nowhere",
                               "give the run's user write permission on it and on l/sys/");
    mute.above_all = true;
    findings.refused(kLog, Need::create, mute);
  } else if (exists(kLog) && !is_regular(kLog)) {
    Finding mute =
        finding_off(kLog, "is no file: the run is mute, no event is kept", "put the file back");
    mute.above_all = true;
    findings.add(mute);
  } else if (file_size(kLog) > kLargeLog) {
    findings.off(kLog, std::to_string(file_size(kLog) >> 20) + " MiB long",
                 "have it rotated; an example comes with the program");
  }
}

void check_disk(Findings& findings) {
  check_scratch(findings);
  for (const auto& [directory, needed] :
       {std::pair("l", std::uint64_t{1}), {"d/t", std::uint64_t{file_size(kSummaryFile)}}}) {
    if (!findings.is_off("disk")) check_room(findings, directory, needed);
  }
  findings.fine("disk", "takes data");
}

}  // namespace vantrel::inspect
