#include "base/rehearsal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vantrel {
namespace {

Rehearsal* current_rehearsal = nullptr;

#ifdef O_NOATIME
constexpr int kLeaveTimes = O_NOATIME;
#else
constexpr int kLeaveTimes = 0;
#endif

bool may(const std::string& path, int how) {
  return ::faccessat(AT_FDCWD, path.c_str(), how, AT_EACCESS) == 0;
}

bool may_be_written(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return !S_ISDIR(status.st_mode) && may(path, W_OK);
  const std::size_t slash = path.rfind('/');
  return may(slash == std::string::npos ? "." : path.substr(0, slash), W_OK | X_OK);
}

}  // namespace

File open_untouched(const char* path) {
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  struct stat status {};
  if (::stat(path, &status) != 0) return File();
  if (!S_ISREG(status.st_mode)) {
    // A pipe would wake up its writer, a device might do anything.
    return may(path, R_OK) ? File(::open("/dev/null", kFlags)) : File();
  }
  // Only the owner of a file may ask for its time of access to be left alone.
  const int descriptor = ::open(path, kFlags | kLeaveTimes);
  const bool refused = descriptor < 0 && errno == EPERM;
  return File(refused ? ::open(path, kFlags) : descriptor);
}

Rehearsal::Rehearsal() { current_rehearsal = this; }
Rehearsal::~Rehearsal() { current_rehearsal = nullptr; }

Rehearsal* Rehearsal::current() { return current_rehearsal; }

void Rehearsal::put_in_place(const std::string& path, const std::string& other) {
  in_place_.insert_or_assign(path, other);
}

const std::string* Rehearsal::written(std::string_view path) const {
  const auto found = written_.find(path);
  return found == written_.end() ? nullptr : &found->second;
}

File Rehearsal::open(const char* path, bool to_update) const {
  const auto other = in_place_.find(std::string_view(path));
  if (other != in_place_.end()) return open_untouched(other->second.c_str());
  if (to_update && !may_be_written(path)) return File();
  return open_untouched(path);
}

bool Rehearsal::write(const char* path, std::string_view text) {
  written_.insert_or_assign(path, std::string(text));
  return may_be_written(path);
}

bool Rehearsal::append(const char* path, std::string_view text) {
  written_[path] += text;
  return may_be_written(path);
}

}  // namespace vantrel
