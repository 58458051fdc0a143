#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <string>

#include "base/clock.h"
#include "base/files.h"
#include "base/rehearsal.h"
#include "checks.h"
#include "site.h"
#include "store/housekeeping.h"

extern char** environ;

namespace vantrel::inspect {
namespace {

constexpr const char* kBackup = "d/backup";
constexpr std::size_t kLargestRead = std::size_t{256} << 20;

// Lists the archive with tar, its standard input, so that looking leaves no trace.
bool tar_reads(const std::string& path) {
  const File archive = open_untouched(path.c_str());
  if (!archive.is_open()) return false;
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, archive.descriptor(), 0);
  posix_spawn_file_actions_addopen(&files, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&files, 2, "/dev/null", O_WRONLY, 0);
  std::string words[] = {"tar", "tzf", "-"};
  char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  pid_t child = 0;
  const bool started = ::posix_spawnp(&child, "tar", &files, nullptr, arguments, environ) == 0;
  posix_spawn_file_actions_destroy(&files);
  int status = 0;
  return started && ::waitpid(child, &status, 0) == child && status == 0;
}

void check_newest(Findings& findings) {
  const std::string next =
      "look at what tar says: cd into the site and do what the run does, tar zcf "
      "d/backup/by-hand.tar.gz d/t d/gr d/h d/tpl d/css";
  const auto newest = newest_backup();
  if (!newest) {
    // Archives are made at 11:59 and 23:59; a site with a day of history has lived that long.
    if (file_size("d/h/all.his") > 0) {
      findings.lost(kBackup, "holds no archive, though the site has lived for a day", next);
    } else {
      findings.note(kBackup, "holds no archive yet; the first is made at 11:59 or 23:59");
    }
    return;
  }
  const std::time_t age = wall_clock() - modified(*newest).value_or(0);
  if (file_size(*newest) == 0) {
    findings.lost(kBackup, "the newest archive, " + *newest + ", is empty", next);
  } else if (!may_read(*newest)) {
    findings.off(kBackup, "the newest archive, " + *newest + ", cannot be read by this user",
                 "give the run's user read permission on it");
  } else if (file_size(*newest) <= kLargestRead && !tar_reads(*newest)) {
    findings.lost(kBackup, "the newest archive, " + *newest + ", cannot be read by tar", next);
  } else if (age > 13 * 60 * 60) {
    findings.lost(kBackup,
                  "the newest archive, " + *newest + ", is " + duration_text(age) +
                      " old; one is due at 11:59 and 23:59",
                  next);
  }
}

}  // namespace

void check_backups(Findings& findings) {
  Finding unusable = finding_off(kBackup, "no backup is kept: the directory cannot be used",
                                 "make the directory, readable and writable for the run's user");
  unusable.question = Question::loss;
  if (!is_directory(kBackup) || !may_read(kBackup) || !may_write(kBackup) || !may_enter(kBackup)) {
    findings.refused(kBackup, may_read(kBackup) ? Need::write : Need::read, unusable);
    return;
  }
  NameList missing;
  for (const char* folder : kBackupFolders) {
    if (!is_directory(folder)) missing.add(folder);
  }
  if (!missing.empty()) {
    findings.off(kBackup,
                 "folders that the archive is to hold are missing: " + missing.text() +
                     "; tar says so on the standard error of the run at 11:59 and 23:59",
                 "make the folders");
  }
  check_newest(findings);
  findings.fine(kBackup, "the newest archive can be read");
}

}  // namespace vantrel::inspect
