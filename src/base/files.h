// Every byte the run reads from or writes to a site's files goes through these functions. They
// report failure by their result only; the caller knows which event belongs to the file.
//
// What holds for all of them: a path leads wherever the webmaster's links lead; only regular files
// have contents, so that a link to a device or a pipe cannot stall or flood the run; nothing opened
// here is inherited by the programs the run starts. While a run is only tried out
// (base/rehearsal.h) none of them changes the disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace vantrel {

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
  // Its length when it was opened, in bytes.
  [[nodiscard]] std::uint64_t size() const { return size_; }
  // For written files: false when the system reports a late write error.
  bool close();

 private:
  int descriptor_ = -1;
  bool regular_ = false;
  std::uint64_t size_ = 0;
};

// Opens for reading without waiting for anything.
[[nodiscard]] File open_to_read(const char* path);
// Opens an existing file for reading and writing, its contents kept.
[[nodiscard]] File open_to_update(const char* path);

// Reads up to size bytes at offset; the number read, fewer only at the end of the file, or -1.
// A directory or a device reads as an empty file.
[[nodiscard]] std::ptrdiff_t read_at(const File& file, void* bytes, std::size_t size,
                                     std::uint64_t offset);
// Writes all bytes at offset.
[[nodiscard]] bool write_at(const File& file, const void* bytes, std::size_t size,
                            std::uint64_t offset);

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

 private:
  bool take(std::string_view text);
  bool fill(const File& file);
  void make_room(std::size_t capacity);

  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

// What to do with the part that arrived when an append fails half way (a full disk).
enum class Torn {
  keep,  // other programs append to the file too: it must not be cut under them
  cut,   // the run is the only writer: cut it, so that the next record starts where it should
};

// Creates the file if it is missing. Not flushed to disk.
[[nodiscard]] bool append_to_file(const char* path, std::string_view text, Torn torn);

// Empties the file, then writes it: for scratch files only. False when it cannot be opened; whether
// the text arrived is for the caller to read back.
[[nodiscard]] bool write_scratch_file(const char* path, std::string_view text);

// How a file that is overwritten in place gets longer. The system makes a file longer block by
// block while it writes, and a reader can come between two blocks.
enum class Growth {
  while_writing,   // one write: a run killed at any call leaves the old contents or the new ones
  before_writing,  // the length first, zeros behind the old end: a reader never meets a torn length
};

// For a file that stays in place because others hold or read it at any moment: written over the old
// contents as one buffer, and only then cut to its new length, so that a reader never meets an
// empty or a short file. When the write fails the old contents are put back, if the file may be
// read as well. Creates the file if it is missing. Not flushed to disk.
[[nodiscard]] bool overwrite_file(const char* path, std::string_view text,
                                  Growth growth = Growth::while_writing);

// For what cannot be rebuilt: the new text is written beside the file (name + ".new"), flushed to
// disk and renamed over it, so that a kill or a power cut leaves the old file or the new one. The
// mode is kept, and the owner where the system allows. A leftover of a killed run is used again,
// and two runs that overlap take turns. A file that is no regular file, whose folder takes no new
// file, or whose new owner would lock somebody out, is overwritten in place instead. On failure,
// and when the existing file is not writable, the old file is whole.
[[nodiscard]] bool replace_file(const char* path, std::string_view text);

// Is there room on the disk for the file that replace_file() writes beside this one, if it is as
// long as this one? Tried by taking the room and giving it back. True where it cannot be known.
[[nodiscard]] bool room_to_replace(const char* path);

// All of text to an open descriptor, with no offset of its own (a pipe, the standard output).
bool write_all(int descriptor, std::string_view text);

}  // namespace vantrel
