#include "base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/rehearsal.h"
#include "base/replace_file.h"

namespace vantrel {
namespace {

constexpr mode_t kNewFileMode = 0666;  // cut by the umask, as for any file

File open_file(const char* path, int flags) {
  int descriptor = -1;
  do {
    descriptor = ::open(path, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kNewFileMode);
  } while (descriptor < 0 && errno == EINTR);
  return File(descriptor);
}

bool set_size(const File& file, std::uint64_t size) {
  return ::ftruncate(file.descriptor(), static_cast<off_t>(size)) == 0;
}

// Links are followed where they can be trusted.
File open_to_write(const char* path, int flags) {
  File file = open_file(path, flags | O_NOFOLLOW);
  if (file.is_open() || errno != ELOOP || !is_trusted_link(path)) return file;
  return open_file(path, flags);
}

// errno is that of a failed open: the system offers no other way past a lease than to wait.
bool needs_copy(const File& file) {
  return file.is_open() ? file.has_other_names() : errno == EWOULDBLOCK;
}

// The same, and never a file that is not the site's alone.
File open_own(const char* path, int flags) {
  File file = open_to_write(path, flags);
  if (!needs_copy(file)) return file;
  return replace_by_copy(path) ? open_to_write(path, flags) : File();
}

File open_to_overwrite(const char* path) {
  File file = open_to_write(path, O_RDWR | O_CREAT);
  if (file.is_open() || errno != EACCES) return file;
  return open_to_write(path, O_WRONLY);
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

FileVersion version_from(const struct stat& status) {
  return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
          status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
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
    version_ = version_from(status);
    other_names_ = status.st_nlink > 1;
  }
}

File::File(File&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      regular_(other.regular_),
      other_names_(other.other_names_),
      version_(other.version_) {}

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
  return open_own(path, O_RDWR);
}

File open_new_file(const char* path) {
  constexpr mode_t kOwnerOnly = 0600;
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY;
  int descriptor = ::open(path, kFlags, kOwnerOnly);
  if (descriptor < 0 && errno == EEXIST && ::unlink(path) == 0) {
    descriptor = ::open(path, kFlags, kOwnerOnly);
  }
  return File(descriptor);
}

FileVersion version_of(const char* path) {
  struct stat status {};
  return ::stat(path, &status) == 0 ? version_from(status) : FileVersion{};
}

bool is_trusted_link(const char* path) {
  struct stat link {};
  struct stat site {};
  if (::lstat(path, &link) != 0 || !S_ISLNK(link.st_mode)) return false;
  return link.st_uid == ::geteuid() || link.st_uid == 0 ||
         (::stat(".", &site) == 0 && link.st_uid == site.st_uid);
}

bool is_no_room(int error) { return error == ENOSPC || error == EDQUOT; }

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

void cut_file(const File& file, std::uint64_t size) { static_cast<void>(set_size(file, size)); }

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
  version_ = file.version();
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

bool append_to_file(const char* path, std::string_view text, Torn torn, Appended* where) {
  if (Rehearsal* tried = Rehearsal::current()) {
    if (where != nullptr) where->begin = version_of(path).size;
    return tried->append(path, text);
  }
  File file = open_own(path, O_WRONLY | O_CREAT | O_APPEND);
  if (!file.is_open()) return false;
  if (write_all(file.descriptor(), text)) {
    if (where != nullptr) {
      // Others may have appended since the file was opened.
      const auto end = static_cast<std::uint64_t>(::lseek(file.descriptor(), 0, SEEK_CUR));
      where->begin = end - text.size();
    }
    return file.close();
  }
  if (where != nullptr) where->no_room = is_no_room(errno);
  if (torn == Torn::cut) static_cast<void>(set_size(file, file.size()));
  return false;
}

bool write_scratch_file(const char* path, std::string_view text) {
  if (Rehearsal* tried = Rehearsal::current()) return tried->write(path, text);
  File file = open_own(path, O_WRONLY | O_CREAT);
  if (!file.is_open()) return false;
  const bool written = write_at(file, text.data(), text.size(), 0);
  if (!written || file.size() > text.size()) {
    static_cast<void>(set_size(file, written ? text.size() : 0));
  }
  file.close();
  return true;
}

bool take_room(const File& file, std::uint64_t size) {
#ifdef FALLOC_FL_KEEP_SIZE
  if (::fallocate(file.descriptor(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) != 0) {
    return !is_no_room(errno);
  }
#endif
  return true;
}

namespace {

bool is_version(const File& file, const FileVersion& version) {
  struct stat status {};
  return ::fstat(file.descriptor(), &status) == 0 && version_from(status) == version;
}

// To the length of a shorter text that was written over it, unless somebody has appended to the
// file or cut it meanwhile.
bool cut_rest(const File& file, std::uint64_t size) {
  if (size >= file.size()) return true;
  struct stat status {};
  if (::fstat(file.descriptor(), &status) != 0) return false;
  return static_cast<std::uint64_t>(status.st_size) != file.size() || set_size(file, size);
}

Replaced overwrite(File& file, const Replacement& by) {
  // What will be written over; the rest stays until all of the text is there. One that cannot be
  // read cannot be put back.
  std::string text(by.text);
  if (by.filler != '\0' && text.size() < file.size()) text.resize(file.size(), by.filler);
  std::string old(std::min<std::size_t>(text.size(), file.size()), '\0');
  old.resize(static_cast<std::size_t>(
      std::max<std::ptrdiff_t>(read_at(file, old.data(), old.size(), 0), 0)));
  if (by.read != nullptr && !is_version(file, *by.read)) return Replaced::overtaken;
  const bool grows = text.size() > file.size() && file.is_regular();
  if (grows && !take_room(file, text.size())) return Replaced::failed;
  if (write_at(file, text.data(), text.size(), 0) && cut_rest(file, by.text.size())) {
    return file.close() ? Replaced::done : Replaced::failed;
  }
  static_cast<void>(write_at(file, old.data(), old.size(), 0));
  static_cast<void>(set_size(file, file.size()));
  return Replaced::failed;
}

}  // namespace

bool overwrite_file(const char* path, std::string_view text) {
  if (Rehearsal* tried = Rehearsal::current()) return tried->write(path, text);
  File file = open_to_overwrite(path);
  if (needs_copy(file)) return replace_file(path, text);
  return file.is_open() && overwrite(file, {text}) == Replaced::done;
}

Replaced overwrite_in_place(const char* path, const Replacement& by) {
  File file = open_to_overwrite(path);
  if (!file.is_open() || file.has_other_names()) return Replaced::failed;
  return overwrite(file, by);
}

}  // namespace vantrel
