#include "traffic/log_reader.h"

#include <bit>
#include <cassert>
#include <cstring>

#include "base/lower_block.h"

namespace vantrel {

bool LogReader::open(const char* path) {
  file_.emplace(open_to_read(path));
  if (!file_->is_open()) return false;
  if (text_ == nullptr) {
    // Memory that is never written costs nothing.
    bars_ = std::make_unique_for_overwrite<const char*[]>(kMostKept + kChunk);
    make_room(2 * kChunk);
  }
  offset_ = 0;
  text_[0] = '|';
  size_ = 1;
  bars_[0] = text_.get();
  bar_count_ = 1;
  return true;
}

bool LogReader::read_on(std::size_t dropped) {
  drop(dropped);
  if (capacity_ - size_ < kChunk + kBlockBytes) make_room(capacity_ * 2);
  char* const begin = text_.get() + size_;
  const std::ptrdiff_t count = read_at(*file_, begin, kChunk, offset_);
  char* end = begin + (count > 0 ? count : 0);
  const bool more = end == begin + kChunk;
  if (!more) {
    file_.reset();
    if (count >= 0 && end[-1] != '|') *end++ = '|';
  }
  add_bars(begin, end);
  offset_ += kChunk;
  size_ = static_cast<std::size_t>(end - text_.get());
  return more;
}

// What stays moves to the front, behind the bar that ended what goes.
void LogReader::drop(std::size_t pieces) {
  const char* const first = bars_[pieces];
  const std::ptrdiff_t distance = first - text_.get();
  bar_count_ -= pieces;
  assert(bar_count_ <= kMostKept);
  size_ -= static_cast<std::size_t>(distance);
  std::memmove(text_.get(), first, size_);
  for (std::size_t i = 0; i < bar_count_; ++i) bars_[i] = bars_[i + pieces] - distance;
}

void LogReader::make_room(std::size_t capacity) {
  auto bigger = std::make_unique_for_overwrite<char[]>(capacity);
  if (size_ > 0) std::memcpy(bigger.get(), text_.get(), size_);
  for (std::size_t i = 0; i < bar_count_; ++i) bars_[i] = bigger.get() + (bars_[i] - text_.get());
  text_ = std::move(bigger);
  capacity_ = capacity;
}

void LogReader::add_bars(char* begin, char* end) {
  std::memset(end, 0, kBlockBytes);  // the last block reaches behind the text
  const char** next = bars_.get() + bar_count_;
  for (char* block = begin; block < end; block += kBlockBytes) {
    for (std::uint64_t bars = lower_block(block); bars != 0; bars &= bars - 1) {
      *next++ = block + static_cast<unsigned>(std::countr_zero(bars));
    }
  }
  bar_count_ = static_cast<std::size_t>(next - bars_.get());
}

}  // namespace vantrel
