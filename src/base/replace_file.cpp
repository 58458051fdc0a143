#include "base/replace_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <vector>

#include "base/attributes.h"
#include "base/clock.h"
#include "base/rehearsal.h"

namespace vantrel {
namespace {

constexpr int kMostTurns = 5;
constexpr std::string_view kNew = ".new";

// The file behind a symbolic link, so that it is replaced and not the link to it. A link that
// cannot be trusted is not followed.
std::string resolved(const char* path) {
  char first = '\0';
  if (::readlink(path, &first, 1) < 0 || !is_trusted_link(path)) return path;
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path, nullptr), std::free);
  return real ? real.get() : path;
}

// The file that is to take the target's place. It goes when it has not.
class Beside {
 public:
  explicit Beside(const std::string& target)
      : path_(target + std::string(kNew) + "." + std::to_string(::getpid()) + "." +
              std::to_string(epoch_minute(wall_clock()))),
        file_(open_new_file(path_.c_str())) {}
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;
  ~Beside() {
    if (file_.is_open()) ::unlink(path_.c_str());
  }

  [[nodiscard]] const File& file() const { return file_; }
  [[nodiscard]] bool store(std::string_view text, Flush flush) const {
    return write_at(file_, text.data(), text.size(), 0) &&
           (flush == Flush::no || ::fsync(file_.descriptor()) == 0);
  }
  [[nodiscard]] bool take_place_of(const std::string& target) {
    if (::rename(path_.c_str(), target.c_str()) != 0) return false;
    file_.close();
    return true;
  }

 private:
  std::string path_;
  File file_;
};

// The folder does not let this run rename a file over that one.
bool no_rename_allowed(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV;
}

Replaced replace(const char* path, const Replacement& by, Flush flush) {
  const auto in_place = [&] { return overwrite_in_place(path, by); };
  const std::string target = resolved(path);
  struct stat old {};
  if (::lstat(target.c_str(), &old) != 0 || !S_ISREG(old.st_mode)) return in_place();
  if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return Replaced::failed;

  Beside beside(target);
  if (!beside.file().is_open()) return in_place();
  if (!take_over_attributes(target.c_str(), old, beside.file())) return in_place();
  if (!beside.store(by.text, flush)) return is_no_room(errno) ? in_place() : Replaced::failed;
  // The last moment: a run that is stopped here and overtaken finds its file gone.
  if (by.read != nullptr && version_of(target.c_str()) != *by.read) return Replaced::overtaken;
  if (beside.take_place_of(target)) return Replaced::done;
  if (errno == ENOENT) return Replaced::overtaken;
  return no_rename_allowed(errno) ? in_place() : Replaced::failed;
}

// What stands behind the name in that of a new file: nothing, or numbers.
bool is_leftover(std::string_view name, std::string_view of) {
  if (!name.starts_with(of)) return false;
  name.remove_prefix(of.size());
  return name.starts_with(kNew) &&
         name.find_first_not_of(".0123456789", kNew.size()) == std::string_view::npos;
}

void remove_leftovers(const std::string& folder, const std::vector<std::string>& files) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(folder.c_str()), ::closedir);
  if (!directory) return;
  while (const dirent* entry = ::readdir(directory.get())) {
    for (const std::string& file : files) {
      if (is_leftover(entry->d_name, file)) ::unlink((folder + entry->d_name).c_str());
    }
  }
}

}  // namespace

bool replace_file(const char* path, std::string_view text, Flush flush) {
  if (Rehearsal* tried = Rehearsal::current()) return tried->write(path, text);
  Replaced outcome = Replaced::overtaken;
  for (int turn = 0; turn < kMostTurns && outcome == Replaced::overtaken; ++turn) {
    outcome = replace(path, {text}, flush);
  }
  return outcome == Replaced::done;
}

Replaced replace_file(const char* path, const Replacement& by) {
  if (Rehearsal* tried = Rehearsal::current()) {
    return tried->write(path, by.text) ? Replaced::done : Replaced::failed;
  }
  return replace(path, by, Flush::yes);
}

bool update_file(const char* path, const Change& changed) {
  FileBuffer file;
  for (int turn = 0; turn < kMostTurns; ++turn) {
    if (!file.read(path)) return false;
    const std::optional<std::string> text = changed(file.text());
    if (!text) return true;
    const Replaced outcome = replace_file(path, {*text, &file.version()});
    if (outcome != Replaced::overtaken) return outcome == Replaced::done;
  }
  return false;
}

bool replace_by_copy(const char* path) {
  FileBuffer file;
  return file.read(path) && replace_file(path, {file.text(), &file.version()}) == Replaced::done;
}

bool room_to_store(const char* path) {
  if (Rehearsal::current() != nullptr) return true;
  constexpr std::uint64_t kGrowth = 64;  // one part in so many: a minute changes few digits
  const File file = open_to_update(path);
  if (!file.is_regular() || file.size() == 0) return true;
  return take_room(file, file.size() + file.size() / kGrowth);
}

void remove_leftovers(std::span<const char* const> paths) {
  if (Rehearsal::current() != nullptr) return;
  std::map<std::string, std::vector<std::string>> files_of;  // by folder
  for (const char* path : paths) {
    const std::string target = resolved(path);
    const std::size_t name = target.rfind('/') + 1;
    files_of[name == 0 ? "./" : target.substr(0, name)].push_back(target.substr(name));
  }
  for (const auto& [folder, files] : files_of) remove_leftovers(folder, files);
}

}  // namespace vantrel
