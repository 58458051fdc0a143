// A range of the address table that is written as the one before it.
//
// The table is the largest input of a quiet minute, and nearly all of its ranges are a line feed
// and "|first|last|cc|" with numbers as long as those before. Where a text is known to stand, its
// form is checked and its digits become a number sixteen bytes at a time, with nothing to search.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/text.h"
#include "base/vectors.h"

namespace vantrel {

static_assert(std::endian::native == std::endian::little, "the first digit is in the lowest byte");

// What the sixteen bytes must be that end with a number of so many digits: anything, then a byte
// and a bar, then digits.
class NumberShape {
 public:
  static constexpr std::size_t kBytes = sizeof(Bytes);
  static constexpr std::size_t kMostDigits = 10;
  static constexpr int kAnything = -1;

  // digits: 1 to 10. before_bar: what stands in front of the bar, or kAnything.
  NumberShape(std::size_t digits, int before_bar) {
    const std::size_t bar = kBytes - 1 - digits;
    for (std::size_t i = 0; i < kBytes; ++i) {
      lowest_[i] = i < bar ? 0 : i == bar ? '|' : '0';
      above_[i] = i < bar ? 0xFF : i == bar ? 0 : 9;
      // Ten times the first of two digits and the second meet in the upper byte of the product.
      if (i > bar) in_pairs_[i / 2] = 10 * 256 + 1;
    }
    if (before_bar == kAnything) return;
    lowest_[bar - 1] = static_cast<std::uint8_t>(before_bar);
    above_[bar - 1] = 0;
  }

  // The number's digits in groups of four, the last in lane 3. good keeps its bits where the bytes
  // are of the shape; without them the digits mean nothing. The sixteen bytes before end must be
  // readable.
  [[nodiscard]] Fours read(const char* end, Bytes& good) const {
    Bytes digits;
    std::memcpy(&digits, end - kBytes, kBytes);
    digits -= lowest_;
    good &= reinterpret_cast<Bytes>(digits <= above_);
    const Pairs pairs = reinterpret_cast<Pairs>(digits) * in_pairs_ >> 8;
    return sums_of_products(pairs, Pairs{100, 1, 100, 1, 100, 1, 100, 1});
  }

 private:
  Bytes lowest_{};    // '0' for a digit, the bar for the bar
  Bytes above_{};     // how far a byte may be above that
  Pairs in_pairs_{};  // 0 where there are no digits
};

// The form of one range, which most likely is that of the next.
class RangeShape {
 public:
  struct Range {
    std::uint32_t first;
    std::uint32_t last;
    const char* country;  // two bytes, which may be bars
  };

  // How many bytes in front of a text must be readable.
  static constexpr std::size_t kReadBefore = NumberShape::kBytes;

  // One that no range has.
  RangeShape() = default;
  // That of the range a text begins with.
  explicit RangeShape(std::string_view text) {
    Pieces pieces(text);
    const bool at_line = pieces.next_or_empty() == "\n";
    const std::size_t first = pieces.next_or_empty().size();
    const std::size_t last = pieces.next_or_empty().size();
    const bool two_letters = pieces.next_or_empty().size() == 2;
    const auto is_number = [](std::size_t size) {
      return size > 0 && size <= NumberShape::kMostDigits;
    };
    if (!at_line || !is_number(first) || !is_number(last) || !two_letters) return;
    first_ = NumberShape(first, '\n');
    last_ = NumberShape(last, NumberShape::kAnything);
    first_end_ = 2 + first;
    last_end_ = first_end_ + 1 + last;
    length_ = last_end_ + 4;
  }

  // Its length in bytes.
  [[nodiscard]] std::size_t length() const { return length_; }

  // The range at the begin of a text, if it has the form.
  [[nodiscard]] bool read(const char* text, const char* text_end, Range& range) const {
    if (static_cast<std::size_t>(text_end - text) < length_) return false;
    Bytes good = ~Bytes{};
    const Fours first = first_.read(text + first_end_, good);
    const Fours last = last_.read(text + last_end_, good);
    const auto numbers = reinterpret_cast<Halves>(
        sums_of_products(lower_halves(first, last), Pairs{0, 1, 10'000, 1, 0, 1, 10'000, 1}));
    range.first = two_and_eight_digits(numbers[0]);
    range.last = two_and_eight_digits(numbers[1]);
    const char* const end = text + last_end_;
    range.country = end + 1;
    return all_set(good) && *end == '|' && end[3] == '|';
  }

 private:
  // From the first two of ten digits, in the lower half, and the last eight; cut to 32 bits.
  static std::uint32_t two_and_eight_digits(std::uint64_t parts) {
    return static_cast<std::uint32_t>(parts) * 100'000'000 +
           static_cast<std::uint32_t>(parts >> 32);
  }

  NumberShape first_{1, NumberShape::kAnything};
  NumberShape last_{1, NumberShape::kAnything};
  std::size_t first_end_ = 0;
  std::size_t last_end_ = 0;
  std::size_t length_ = ~std::size_t{0};
};

}  // namespace vantrel
