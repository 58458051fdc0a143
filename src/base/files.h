// Every byte the run reads from or writes to a site's files goes through these functions. They
// report failure by their result only; the caller knows which event belongs to the file.
//
// What holds for all of them: a path leads wherever the webmaster's links lead, but nothing is
// written through a link of somebody else; a file that has other names, or that somebody holds a
// lease on, is not written to but replaced by a copy of its own first; only regular files have
// contents, so that a link to a device or a pipe cannot stall or flood the run; nothing opened here
// is inherited by the programs the run starts. While a run is only tried out (base/rehearsal.h)
// none of them changes the disk.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace vantrel {

// Tells one state of a file from the next: a file that was written to, or another one of the same
// name, has another version.
struct FileVersion {
  dev_t device = 0;
  ino_t inode = 0;
  std::uint64_t size = 0;
  std::time_t modified = 0;
  long nanoseconds = 0;

  bool operator==(const FileVersion&) const = default;
};

// That of no file when there is none.
[[nodiscard]] FileVersion version_of(const char* path);

// A file descriptor that closes itself. Negative when nothing is open.
class File {
 public:
  File() = default;
  // Takes a descriptor of open(), negative for none.
  explicit File(int descriptor);
  File(File&& other) noexcept;
  File& operator=(File&&) = delete;
  ~File() { static_cast<void>(close()); }

  [[nodiscard]] bool is_open() const { return descriptor_ >= 0; }
  [[nodiscard]] int descriptor() const { return descriptor_; }
  // A regular file; others have no contents and no length.
  [[nodiscard]] bool is_regular() const { return regular_; }
  // By hard links: another file may be meant by them.
  [[nodiscard]] bool has_other_names() const { return other_names_; }
  // Its length when it was opened, in bytes.
  [[nodiscard]] std::uint64_t size() const { return version_.size; }
  // As it was when it was opened.
  [[nodiscard]] const FileVersion& version() const { return version_; }
  // For written files: false when the system reports a late write error.
  bool close();

 private:
  int descriptor_ = -1;
  bool regular_ = false;
  bool other_names_ = false;
  FileVersion version_;
};

// Opens for reading without waiting for anything.
[[nodiscard]] File open_to_read(const char* path);
// Opens an existing file for reading and writing, its contents kept.
[[nodiscard]] File open_to_update(const char* path);
// Makes a file that only the run may read, for writing; what has the name already is removed.
[[nodiscard]] File open_new_file(const char* path);

// A symbolic link that the run may write through: its own, root's, or that of the site's owner.
[[nodiscard]] bool is_trusted_link(const char* path);

// The disk, or the user's share of it, is full.
[[nodiscard]] bool is_no_room(int error);

// Reads up to size bytes at offset; the number read, fewer only at the end of the file, or -1.
// A directory or a device reads as an empty file.
[[nodiscard]] std::ptrdiff_t read_at(const File& file, void* bytes, std::size_t size,
                                     std::uint64_t offset);
// Writes all bytes at offset.
[[nodiscard]] bool write_at(const File& file, const void* bytes, std::size_t size,
                            std::uint64_t offset);

// Cuts a file that is open for writing.
void cut_file(const File& file, std::uint64_t size);

[[nodiscard]] bool can_be_opened(const char* path);

// A file read whole. One buffer can read many files in turn and keeps its room.
class FileBuffer {
 public:
  // False when the file cannot be opened or read; the buffer is then empty. A directory or a
  // device counts as an empty file.
  [[nodiscard]] bool read(const char* path);

  [[nodiscard]] std::string_view text() const { return {bytes_.get(), size_}; }
  // For changes in place.
  [[nodiscard]] char* data() { return bytes_.get(); }
  [[nodiscard]] std::size_t size() const { return size_; }
  // Of the file when it was opened.
  [[nodiscard]] const FileVersion& version() const { return version_; }

 private:
  bool take(std::string_view text);
  bool fill(const File& file);
  void make_room(std::size_t capacity);

  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
  FileVersion version_;
};

// What to do with the part that arrived when an append fails half way (a full disk).
enum class Torn {
  keep,  // other programs append to the file too: it must not be cut under them
  cut,   // the run is the only writer: cut it, so that the next record starts where it should
};

// Where an append ended up.
struct Appended {
  std::uint64_t begin = 0;  // in the file
  bool no_room = false;     // why it failed
};

// Creates the file if it is missing. Not flushed to disk.
[[nodiscard]] bool append_to_file(const char* path, std::string_view text, Torn torn,
                                  Appended* where = nullptr);

// For scratch files: written over what stands there, which keeps the room it has on a full disk.
// False when it cannot be opened, with the system's reason in errno; when the text does not arrive
// the file is empty, which is for the caller to read back.
[[nodiscard]] bool write_scratch_file(const char* path, std::string_view text);

// Writes the text over the old contents in one write, and only then cuts the file to its new
// length, so that a reader never meets an empty or a short file. Room is taken before anything is
// overwritten; when the write fails all the same the old contents are put back, if the file may be
// read as well. Creates the file if it is missing. Not flushed to disk.
[[nodiscard]] bool overwrite_file(const char* path, std::string_view text);

// What became of a text that was to take the place of another one.
enum class Replaced {
  done,
  failed,     // the old text is whole
  overtaken,  // somebody else has stored another text since the file was read; this one is not
              // stored
};

// What a text must know that replaces another one.
struct Replacement {
  std::string_view text;
  // The version the text was made from; nullptr when it does not matter.
  const FileVersion* read = nullptr;
  // What fills the rest of a longer text that is overwritten, for the instant until it is cut: a
  // byte that means nothing there. NUL: the old text stays until then.
  char filler = '\0';
};

// The same for what cannot be replaced: fails where the file has other names or a lease is held.
[[nodiscard]] Replaced overwrite_in_place(const char* path, const Replacement& by);

// Takes the room that a file of that length needs, without making it longer. False when there is
// none; true where it cannot be known.
[[nodiscard]] bool take_room(const File& file, std::uint64_t size);

// All of text to an open descriptor, with no offset of its own (a pipe, the standard output).
bool write_all(int descriptor, std::string_view text);

}  // namespace vantrel
