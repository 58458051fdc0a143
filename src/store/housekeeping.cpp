#include "store/housekeeping.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/shell.h"
#include "run/error_page.h"
#include "store/hit_log_names.h"

namespace vantrel {
namespace {

constexpr std::size_t kBackupsKept = 90;
constexpr std::time_t kLogsKept = 25 * 60 * 60;  // seconds

struct Backup {
  std::string path;
  std::int32_t age = -1;  // seconds, -1 when it is not known
};

std::int32_t age_of(const std::string& path) {
  struct stat status {};
  const std::time_t now = wall_clock();
  if (::stat(path.c_str(), &status) != 0 || now == static_cast<std::time_t>(-1)) return -1;
  return truncate_to_int(std::difftime(now, status.st_mtime));
}

}  // namespace

void make_backup(const std::string& hour_stamp) {
  const std::string archive = kBackupDirectory + hour_stamp + ".tar.gz";
  // What the run would not write through, or wait for, tar must not either.
  if (!open_to_update(archive.c_str()).is_open()) std::remove(archive.c_str());
  std::string command = "tar zcf " + archive;
  for (const char* folder : kBackupFolders) command.append(" ").append(folder);
  run_command(command);
}

std::array<std::string, 4> old_logs(std::time_t walked) {
  const std::string stamp = format_time(kMinuteStampFormat, walked - kLogsKept);
  const std::string before = format_time(kMinuteStampFormat, walked - kLogsKept - 60);
  return {in_log_path(stamp), out_log_path(stamp), in_log_path(before), out_log_path(before)};
}

void remove_old_logs(std::time_t walked) {
  for (const std::string& path : old_logs(walked)) std::remove(path.c_str());
}

void make_room(bool pruning_time) {
  remove_old_logs(wall_clock() - 60);
  if (pruning_time) prune_backups();
}

std::optional<std::vector<std::string>> old_backups() {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(kBackupDirectory), ::closedir);
  if (!directory) return std::nullopt;
  std::vector<Backup> backups;
  while (const dirent* entry = ::readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    std::string path = std::string(kBackupDirectory).append(name);
    const std::int32_t age = age_of(path);
    backups.push_back({std::move(path), age});
  }
  // In a site that was copied without its times all are of one age, and a folder is listed in
  // another order on every file system: then the names say which are newer.
  std::sort(backups.begin(), backups.end(), [](const Backup& a, const Backup& b) {
    return a.age != b.age ? a.age < b.age : a.path > b.path;
  });
  std::vector<std::string> old;
  for (std::size_t i = kBackupsKept; i < backups.size(); ++i) old.push_back(backups[i].path);
  return old;
}

void prune_backups() {
  const auto old = old_backups();
  if (!old) {
    error_page_directory(kBackupDirectory, "", false);
    return;
  }
  for (const std::string& path : *old) std::remove(path.c_str());
}

}  // namespace vantrel
