#include "base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/rehearsal.h"

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

bool set_size(const File& file, std::uint64_t size) {
  return ::ftruncate(file.descriptor(), static_cast<off_t>(size)) == 0;
}

File open_to_overwrite(const char* path) {
  File file = open_file(path, O_RDWR | O_CREAT);
  if (file.is_open() || errno != EACCES) return file;
  return open_file(path, O_WRONLY);
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

// Gives the file that takes another one's place its owner, group and mode. False when somebody
// would lose access by it: an unprivileged run cannot give files away, and then only a mode that
// means the same for everybody keeps its meaning.
bool take_over_access(const File& from, const File& to) {
  struct stat status {};
  if (::fstat(from.descriptor(), &status) != 0) return false;
  const mode_t others = status.st_mode & 7;
  const bool same_for_all =
      (status.st_mode >> 3 & 7) == others && (status.st_mode >> 6 & 7) == others;
  const bool given = ::fchown(to.descriptor(), status.st_uid, status.st_gid) == 0;
  return (given || same_for_all) && ::fchmod(to.descriptor(), status.st_mode & 07777) == 0;
}

// Opens the file beside the one to replace, empty and for this run alone. Another run that is at
// the same point, held up by a slow disk, is waited for; a killed one has let go of its lock.
File open_beside(const char* path) {
  constexpr int kMostTurns = 100;
  for (int turn = 0; turn < kMostTurns; ++turn) {
    File file = open_file(path, O_WRONLY | O_CREAT | O_NOFOLLOW);
    if (!file.is_open()) return file;
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    while (::fcntl(file.descriptor(), F_SETLKW, &whole) != 0 && errno == EINTR) continue;
    struct stat opened {};
    struct stat named {};
    const bool same = ::fstat(file.descriptor(), &opened) == 0 && ::lstat(path, &named) == 0 &&
                      opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
    if (same && opened.st_nlink == 1) return file;
    // Else it was renamed away while this run waited; or it is another file as well, as copies by
    // hard links make it, which must not be written over.
    if (same && ::unlink(path) != 0) return File();
  }
  errno = EBUSY;
  return File();
}

// The folder does not let this run make or rename files.
bool no_new_file_allowed(int error) { return error == EACCES || error == EPERM || error == EROFS; }

bool no_room(int error) { return error == ENOSPC || error == EDQUOT; }

// The path behind symbolic links, so that the file is replaced and not the link to it.
std::string resolved(const char* path) {
  char* real = ::realpath(path, nullptr);
  std::string target = real != nullptr ? real : path;
  std::free(real);
  return target;
}

}  // namespace

File::File(int descriptor) : descriptor_(descriptor) {
  if (descriptor < 0) return;
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) {
    // Nothing is known of the file: to take it for an empty one could cost its contents.
    close();
  } else if (S_ISREG(status.st_mode)) {
    regular_ = true;
    size_ = static_cast<std::uint64_t>(status.st_size);
  }
}

File::File(File&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      regular_(other.regular_),
      size_(other.size_) {}

bool File::close() {
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR;
}

File open_to_read(const char* path) {
  if (const Rehearsal* tried = Rehearsal::current()) return tried->open(path, false);
  return open_file(path, O_RDONLY);
}

File open_to_update(const char* path) {
  if (const Rehearsal* tried = Rehearsal::current()) return tried->open(path, true);
  return open_file(path, O_RDWR);
}

std::ptrdiff_t read_at(const File& file, void* bytes, std::size_t size, std::uint64_t offset) {
  if (!file.is_regular()) return 0;
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count = ::pread(file.descriptor(), static_cast<char*>(bytes) + done, size - done,
                                  static_cast<off_t>(offset + done));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return -1;
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return static_cast<std::ptrdiff_t>(done);
}

bool write_at(const File& file, const void* bytes, std::size_t size, std::uint64_t offset) {
  if (Rehearsal::current() != nullptr) return true;
  return write_fully(static_cast<const char*>(bytes), size,
                     [&](const char* from, std::size_t count, std::size_t done) {
                       return ::pwrite(file.descriptor(), from, count,
                                       static_cast<off_t>(offset + done));
                     });
}

bool write_all(int descriptor, std::string_view text) {
  if (Rehearsal* tried = Rehearsal::current()) {
    tried->print(text);
    return true;
  }
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
  if (const Rehearsal* tried = Rehearsal::current()) {
    // A file that is read back holds what was written to it.
    if (const std::string* text = tried->written(path)) return take(*text);
  }
  const File file = open_to_read(path);
  if (!file.is_open()) return false;
  if (fill(file)) return true;
  size_ = 0;
  return false;
}

bool FileBuffer::take(std::string_view text) {
  if (text.size() > capacity_) make_room(text.size());
  text.copy(bytes_.get(), text.size());
  size_ = text.size();
  return true;
}

bool FileBuffer::fill(const File& file) {
  // One byte more than the file is long: the read that comes back short has seen its end.
  const std::uint64_t expected = file.size() + 1;
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
  if (Rehearsal* tried = Rehearsal::current()) return tried->append(path, text);
  File file = open_file(path, O_WRONLY | O_CREAT | O_APPEND);
  if (!file.is_open()) return false;
  const std::uint64_t before = torn == Torn::cut ? file.size() : 0;
  if (write_all(file.descriptor(), text)) return file.close();
  if (torn == Torn::cut) static_cast<void>(set_size(file, before));
  return false;
}

bool write_scratch_file(const char* path, std::string_view text) {
  if (Rehearsal* tried = Rehearsal::current()) return tried->write(path, text);
  File file = open_file(path, O_WRONLY | O_CREAT | O_TRUNC);
  if (!file.is_open()) return false;
  write_all(file.descriptor(), text);
  file.close();
  return true;
}

bool overwrite_file(const char* path, std::string_view text, Growth growth) {
  if (Rehearsal* tried = Rehearsal::current()) return tried->write(path, text);
  File file = open_to_overwrite(path);
  if (!file.is_open()) return false;
  // What will be written over; the rest stays until all of the text is there.
  std::string old(std::min<std::size_t>(text.size(), file.size()), '\0');
  const std::ptrdiff_t kept = read_at(file, old.data(), old.size(), 0);
  if (kept < 0 && errno != EBADF) return false;  // one that may only be written cannot be put back
  old.resize(static_cast<std::size_t>(std::max<std::ptrdiff_t>(kept, 0)));
  const bool extend =
      growth == Growth::before_writing && text.size() > file.size() && file.is_regular();
  const bool written = (!extend || set_size(file, text.size())) &&
                       write_at(file, text.data(), text.size(), 0) &&
                       (text.size() >= file.size() || set_size(file, text.size()));
  if (written) return file.close();
  static_cast<void>(write_at(file, old.data(), old.size(), 0));
  static_cast<void>(set_size(file, file.size()));
  return false;
}

bool room_to_replace(const char* path) {
  if (Rehearsal::current() != nullptr) return true;
  const File old = open_to_read(path);
  if (old.size() == 0) return true;
  const std::string beside = resolved(path) + ".new";
  const File file = open_beside(beside.c_str());
  if (!file.is_open()) return !no_room(errno);
  if (!file.is_regular()) return true;
  const int error = ::posix_fallocate(file.descriptor(), 0, static_cast<off_t>(old.size()));
  ::unlink(beside.c_str());
  return !no_room(error);
}

bool replace_file(const char* path, std::string_view text) {
  if (Rehearsal* tried = Rehearsal::current()) return tried->write(path, text);
  const File old = open_file(path, O_WRONLY);
  if (!old.is_open() && errno != ENOENT) return false;
  if (old.is_open() && !old.is_regular()) return overwrite_file(path, text);

  const std::string target = resolved(path);
  const std::string beside = target + ".new";
  File file = open_beside(beside.c_str());
  if (!file.is_open()) {
    const bool in_place =
        no_new_file_allowed(errno) || errno == ELOOP || errno == EISDIR || errno == ENXIO;
    return in_place && overwrite_file(path, text);
  }
  if (!file.is_regular()) return overwrite_file(path, text);
  if (old.is_open() && !take_over_access(old, file)) {
    ::unlink(beside.c_str());
    return overwrite_file(path, text);
  }
  const bool on_disk = set_size(file, 0) && write_at(file, text.data(), text.size(), 0) &&
                       ::fsync(file.descriptor()) == 0;
  // Renamed before it is closed: closing lets go of the lock.
  if (on_disk && ::rename(beside.c_str(), target.c_str()) == 0) return true;
  const bool in_place = on_disk && no_new_file_allowed(errno);
  ::unlink(beside.c_str());
  return in_place && overwrite_file(path, text);
}

}  // namespace vantrel
