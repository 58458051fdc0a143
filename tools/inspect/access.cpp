#include "access.h"

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include "base/text.h"
#include "screen.h"
#include "site.h"
#include "store/housekeeping.h"

namespace vantrel::inspect {
namespace {

bool may(const std::string& path, int how) {
  return ::faccessat(AT_FDCWD, path.c_str(), how, AT_EACCESS) == 0;
}

std::string name_of(uid_t user) {
  const passwd* entry = ::getpwuid(user);
  return entry != nullptr ? entry->pw_name : "user " + std::to_string(user);
}

// The first folder on the way to the path that cannot be passed.
std::optional<Cause> obstacle(const std::string& path) {
  for (std::size_t slash = path.find('/'); slash != path.npos; slash = path.find('/', slash + 1)) {
    const std::string folder = path.substr(0, slash);
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0) return Cause{Cause::missing, folder};
    if (!S_ISDIR(status.st_mode)) return Cause{Cause::no_folder, folder};
    if (!may(folder, X_OK)) return Cause{Cause::no_entry, folder};
  }
  return std::nullopt;
}

}  // namespace

std::optional<Cause> cause_of(const std::string& path, Need need) {
  if (auto folder = obstacle(path)) return folder;
  struct stat status {};
  std::string where = path;
  if (::stat(where.c_str(), &status) != 0) {
    if (need != Need::create) return std::nullopt;
    where = path.substr(0, path.rfind('/'));
    if (::stat(where.c_str(), &status) != 0) return std::nullopt;
  }
  if (may(where, need == Need::read ? R_OK : W_OK)) return std::nullopt;
  if (errno == EROFS) return Cause{Cause::read_only, "disk"};
  if (status.st_uid == ::geteuid()) return std::nullopt;
  return Cause{Cause::owner, name_of(status.st_uid)};
}

std::string current_user() { return name_of(::geteuid()); }

void become_user(const std::string& name) {
  const passwd* user = ::getpwnam(name.c_str());
  if (user == nullptr) throw WrongUsage{"there is no user " + printable(name)};
  if (user->pw_uid == ::geteuid()) return;
  if (::initgroups(user->pw_name, user->pw_gid) != 0 || ::setgid(user->pw_gid) != 0 ||
      ::setuid(user->pw_uid) != 0) {
    throw WrongUsage{"only root can look with the rights of another user"};
  }
}

std::optional<std::string> newest_backup() {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(kBackupDirectory), ::closedir);
  std::optional<std::string> newest;
  std::time_t newest_time = 0;
  while (directory) {
    const dirent* entry = ::readdir(directory.get());
    if (entry == nullptr) break;
    const std::string path = std::string(kBackupDirectory).append(entry->d_name);
    if (!is_regular(path)) continue;
    const std::time_t time = modified(path).value_or(0);
    if (newest && time <= newest_time) continue;
    newest = path;
    newest_time = time;
  }
  return newest;
}

std::string restore_command(const std::string& path) {
  const auto archive = newest_backup();
  if (!archive) return "no archive is in d/backup/: get " + path + " from a copy of your own";
  return "tar xzf " + *archive + " " + path;
}

std::optional<std::string> program_of(const std::string& command) {
  const std::string name = command.substr(0, command.find_first_of(" \t\n"));
  if (name.find('/') != name.npos) return may_execute(name) ? std::optional(name) : std::nullopt;
  const char* path = std::getenv("PATH");
  Pieces directories(path == nullptr ? "/usr/bin:/bin" : path, ':');
  for (std::string_view directory; directories.next(directory);) {
    std::string program = std::string(directory) + "/" + name;
    if (may_execute(program)) return program;
  }
  return std::nullopt;
}

}  // namespace vantrel::inspect
