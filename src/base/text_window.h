// A file that is looked at once, from its begin to its end, through a buffer that does not hold all
// of it: memory a run has not touched before costs more than the reading.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "base/files.h"

namespace vantrel {

class TextWindow {
 public:
  // Bytes in front of text() that may be read as well, whatever they are.
  static constexpr std::size_t kReadableBefore = 16;

  // The file must stay open. What is appended to it from now on is not read.
  explicit TextWindow(const File& file);

  // What has been read and is still wanted; nothing at first.
  [[nodiscard]] std::string_view text() const { return {bytes_.get() + begin_, end_ - begin_}; }
  // Does the file end where text() ends?
  [[nodiscard]] bool at_end() const { return offset_ == file_.size(); }

  // Lets go of the first bytes of text().
  void drop(std::size_t bytes) { begin_ += bytes; }

  // Reads more behind text(), which then lies elsewhere: it is longer than before, or at_end().
  // False when the file cannot be read.
  [[nodiscard]] bool read_on();

 private:
  void make_room();

  const File& file_;
  std::uint64_t offset_ = 0;  // behind what has been read
  std::unique_ptr<char[]> bytes_;
  std::size_t capacity_;
  std::size_t begin_ = kReadableBefore;
  std::size_t end_ = kReadableBefore;
};

}  // namespace vantrel
