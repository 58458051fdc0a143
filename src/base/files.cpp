#include "base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace vantrel {
namespace {

constexpr mode_t kNewFileMode = 0666;  // cut by the umask, as for any file

File open_file(const char* path, int flags) {
  int descriptor;
  do {
    descriptor = ::open(path, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kNewFileMode);
  } while (descriptor < 0 && errno == EINTR);
  return File(descriptor);
}

// The length of a regular file, 0 for anything else.
std::uint64_t file_size(const File& file) {
  struct stat status {};
  const bool regular = ::fstat(file.descriptor(), &status) == 0 && S_ISREG(status.st_mode);
  return regular ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool set_size(const File& file, std::uint64_t size) {
  return ::ftruncate(file.descriptor(), static_cast<off_t>(size)) == 0;
}

// Calls a write-like function until every byte is out.
template <typename Write>
bool write_fully(const char* bytes, std::size_t size, Write write) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = write(bytes + done, size - done, done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

// The permission and ownership a replaced file had go to the file that takes its place.
void take_over_owner_and_mode(const File& from, const File& to) {
  struct stat status {};
  if (::fstat(from.descriptor(), &status) != 0) return;
  if (::fchown(to.descriptor(), status.st_uid, status.st_gid) != 0) {
    // An unprivileged run cannot give files away: the new file then belongs to who runs it.
  }
  static_cast<void>(::fchmod(to.descriptor(), status.st_mode & 07777));
}

// The path behind symbolic links, so that the file is replaced and not the link to it.
std::string resolved(const char* path) {
  char* real = ::realpath(path, nullptr);
  std::string target = real != nullptr ? real : path;
  std::free(real);
  return target;
}

bool is_regular(const File& file) {
  struct stat status {};
  return ::fstat(file.descriptor(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

bool File::close() {
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
}

File open_to_read(const char* path) { return open_file(path, O_RDONLY); }
File open_to_update(const char* path) { return open_file(path, O_RDWR); }

std::ptrdiff_t read_at(const File& file, void* bytes, std::size_t size, std::uint64_t offset) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = ::pread(file.descriptor(), static_cast<char*>(bytes) + done, size - done,
                                  static_cast<off_t>(offset + done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return is_regular(file) ? -1 : 0;
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return static_cast<std::ptrdiff_t>(done);
}

bool write_at(const File& file, const void* bytes, std::size_t size, std::uint64_t offset) {
  return write_fully(static_cast<const char*>(bytes), size,
                     [&](const char* from, std::size_t count, std::size_t done) {
                       return ::pwrite(file.descriptor(), from, count,
                                       static_cast<off_t>(offset + done));
                     });
}

bool write_all(int descriptor, std::string_view text) {
  return write_fully(text.data(), text.size(),
                     [&](const char* from, std::size_t count, std::size_t) {
                       return ::write(descriptor, from, count);
                     });
}

bool can_be_opened(const char* path) { return open_to_read(path).is_open(); }

void FileBuffer::make_room(std::size_t capacity) {
  auto bigger = std::make_unique_for_overwrite<char[]>(capacity);
  if (size_ > 0) std::memcpy(bigger.get(), bytes_.get(), size_);
  bytes_ = std::move(bigger);
  capacity_ = capacity;
}

bool FileBuffer::read(const char* path) {
  size_ = 0;
  const File file = open_to_read(path);
  if (!file.is_open()) return false;
  if (fill(file)) return true;
  size_ = 0;
  return false;
}

bool FileBuffer::fill(const File& file) {
  if (!is_regular(file)) return true;
  // One byte more than the file is long: the read that comes back short has seen its end.
  const std::uint64_t expected = file_size(file) + 1;
  if (expected > capacity_) make_room(static_cast<std::size_t>(expected));
  for (;;) {
    const std::ptrdiff_t count = read_at(file, bytes_.get() + size_, capacity_ - size_, size_);
    if (count < 0) return false;
    size_ += static_cast<std::size_t>(count);
    if (size_ < capacity_) return true;
    make_room(capacity_ * 2);  // somebody appended meanwhile
  }
}

bool append_to_file(const char* path, std::string_view text, Torn torn) {
  File file = open_file(path, O_WRONLY | O_CREAT | O_APPEND);
  if (!file.is_open()) return false;
  const std::uint64_t before = torn == Torn::cut ? file_size(file) : 0;
  if (write_all(file.descriptor(), text)) return file.close();
  if (torn == Torn::cut) static_cast<void>(set_size(file, before));
  return false;
}

bool write_scratch_file(const char* path, std::string_view text) {
  File file = open_file(path, O_WRONLY | O_CREAT | O_TRUNC);
  if (!file.is_open()) return false;
  static_cast<void>(write_all(file.descriptor(), text));
  return file.close();
}

bool overwrite_file(const char* path, std::string_view text, Growth growth) {
  File file = open_file(path, O_RDWR | O_CREAT);
  if (!file.is_open()) return false;
  std::string old(static_cast<std::size_t>(file_size(file)), '\0');
  const std::ptrdiff_t kept = read_at(file, old.data(), old.size(), 0);
  if (kept < 0) return false;
  old.resize(static_cast<std::size_t>(kept));
  const bool extend =
      growth == Growth::before_writing && text.size() > old.size() && is_regular(file);
  const bool written = (!extend || set_size(file, text.size())) &&
                       write_at(file, text.data(), text.size(), 0) &&
                       (text.size() >= old.size() || set_size(file, text.size()));
  if (written) return file.close();
  static_cast<void>(write_at(file, old.data(), old.size(), 0));
  static_cast<void>(set_size(file, old.size()));
  return false;
}

bool replace_file(const char* path, std::string_view text) {
  const File old = open_file(path, O_WRONLY);
  if (!old.is_open() && errno != ENOENT) return false;
  if (old.is_open() && !is_regular(old)) return overwrite_file(path, text);

  const std::string target = resolved(path);
  const std::string beside = target + ".new";
  static_cast<void>(::unlink(beside.c_str()));
  File file = open_file(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL);
  if (!file.is_open()) {
    const bool folder_is_closed = errno == EACCES || errno == EPERM || errno == EROFS;
    return folder_is_closed && overwrite_file(path, text);
  }
  if (old.is_open()) take_over_owner_and_mode(old, file);
  const bool on_disk = write_all(file.descriptor(), text) && ::fsync(file.descriptor()) == 0;
  if (file.close() && on_disk && ::rename(beside.c_str(), target.c_str()) == 0) return true;
  static_cast<void>(::unlink(beside.c_str()));
  return false;
}

}  // namespace vantrel
