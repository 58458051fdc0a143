#include "base/text_window.h"

#include <algorithm>
#include <cstring>

namespace vantrel {
namespace {

constexpr std::size_t kUsualCapacity = 64 * 1024;

}  // namespace

TextWindow::TextWindow(const File& file)
    : file_(file),
      bytes_(std::make_unique_for_overwrite<char[]>(kUsualCapacity)),
      capacity_(kUsualCapacity) {
  std::memset(bytes_.get(), 0, kReadableBefore);
}

// The text goes to the front, and into a wider buffer when it fills half of this one.
void TextWindow::make_room() {
  const char* const from = bytes_.get() + begin_ - kReadableBefore;
  const std::size_t kept = end_ - begin_ + kReadableBefore;
  if (kept > capacity_ / 2) {
    capacity_ *= 2;
    auto wider = std::make_unique_for_overwrite<char[]>(capacity_);
    std::memcpy(wider.get(), from, kept);
    bytes_ = std::move(wider);
  } else {
    std::memmove(bytes_.get(), from, kept);
  }
  begin_ = kReadableBefore;
  end_ = kept;
}

bool TextWindow::read_on() {
  make_room();
  const std::uint64_t wanted = std::min<std::uint64_t>(capacity_ - end_, file_.size() - offset_);
  const std::ptrdiff_t count =
      read_at(file_, bytes_.get() + end_, static_cast<std::size_t>(wanted), offset_);
  if (count < 0) return false;
  end_ += static_cast<std::size_t>(count);
  // A file that was cut meanwhile ends where it ends now.
  offset_ = static_cast<std::uint64_t>(count) == wanted ? offset_ + wanted : file_.size();
  return true;
}

}  // namespace vantrel
