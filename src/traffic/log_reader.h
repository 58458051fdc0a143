// The text of a hit log, a part at a time, in one buffer that serves all logs of a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "base/files.h"

namespace vantrel {

// Holds some pieces of a log in lower case and where their bars stand: bars()[i] is the bar in
// front of piece i, bars()[i + 1] the one behind it. The log begins behind a bar of our own, and a
// last piece without its bar gets one, so that all pieces look alike.
class LogReader {
 public:
  // Starts on a log, with no piece yet. False when it cannot be opened.
  [[nodiscard]] bool open(const char* path);

  // Drops the first so many of the pieces; fewer than kMostKept may stay. Then reads on. False at
  // the end of the log, or where the system can read no further: there are no pieces behind these.
  [[nodiscard]] bool read_on(std::size_t dropped);

  [[nodiscard]] std::size_t pieces() const { return bar_count_ - 1; }
  // Valid until the next read_on().
  [[nodiscard]] const char* const* bars() const { return bars_.get(); }

  static constexpr std::size_t kMostKept = 16;
  // Read at a time, in bytes: so few that they stay near the processor until they are counted.
  static constexpr std::size_t kChunk = 32 * 1024;

 private:
  void drop(std::size_t pieces);
  void make_room(std::size_t capacity);
  void add_bars(char* begin, char* end);

  std::optional<File> file_;
  std::uint64_t offset_ = 0;  // in the file, of what is read next
  std::unique_ptr<char[]> text_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;  // grows only for a piece that is longer than a chunk
  std::unique_ptr<const char*[]> bars_;
  std::size_t bar_count_ = 0;
};

}  // namespace vantrel
