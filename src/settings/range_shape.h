// A range of the address table that is written as the one before it.
//
// The table is the largest input of a quiet minute, and nearly all of its ranges are a line feed
// and "|first|last|cc|" with numbers as long as those before. Where a text is known to stand, its
// form is checked and its digits become a number sixteen bytes at a time, with nothing to search.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "base/machine.h"
#include "base/text.h"
#include "base/vectors.h"

namespace vantrel {

// What sixteen bytes must be: ten digits at most, and what stands around them.
class NumberShape {
 public:
  static constexpr std::size_t kBytes = sizeof(Bytes);
  static constexpr std::size_t kMostDigits = 10;

  // pattern: what the last of the bytes are; d for a digit, ? for anything, else the byte itself.
  // The last digit has an odd place of the sixteen, so that no pair of digits is torn.
  explicit NumberShape(std::string_view pattern) {
    const std::size_t begin = kBytes - pattern.size();
    for (std::size_t i = 0; i < kBytes; ++i) {
      const char wanted = i < begin ? '?' : pattern[i - begin];
      lowest_[i] = wanted == '?' ? 0 : wanted == 'd' ? '0' : static_cast<std::uint8_t>(wanted);
      above_[i] = wanted == '?' ? 0xFF : wanted == 'd' ? 9 : 0;
      // Ten times the first of two digits and the second meet in the upper byte of the product.
      if (wanted == 'd') in_pairs_[i / 2] = 10 * 256 + 1;
    }
  }

  // The digits in groups of four places. good keeps its bits where the bytes are of the shape;
  // without them the digits mean nothing. The sixteen bytes before end must be readable.
  [[nodiscard]] Fours read(const char* end, Bytes& good) const {
    Bytes digits;
    std::memcpy(&digits, end - kBytes, kBytes);
    digits -= lowest_;
    good &= reinterpret_cast<Bytes>(digits <= above_);
    const Pairs pairs = reinterpret_cast<Pairs>(digits) * in_pairs_ >> 8;
    return sums_of_products(pairs, Pairs{100, 1, 100, 1, 100, 1, 100, 1});
  }

 private:
  Bytes lowest_{};    // the least the byte may be, '0' for a digit
  Bytes above_{};     // how far it may be above that
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
    first_ = NumberShape(std::string("\n|").append(first, 'd'));
    last_ = NumberShape(std::string("|").append(last, 'd').append("|??|"));
    first_end_ = 2 + first;
    length_ = first_end_ + 1 + last + 4;
  }

  // Its length in bytes.
  [[nodiscard]] std::size_t length() const { return length_; }

  // The range at the begin of a text, if it has the form.
  [[nodiscard]] bool read(const char* text, const char* text_end, Range& range) const {
    if (static_cast<std::size_t>(text_end - text) < length_) return false;
    Bytes good = ~Bytes{};
    const Fours first = first_.read(text + first_end_, good);
    const Fours last = last_.read(text + length_, good);
    // The first number ends with the sixteen bytes: of its ten digits two stand apart from eight.
    // Behind the last number come four bytes more: six of its digits stand apart from four.
    const auto parts = reinterpret_cast<Halves>(
        sums_of_products(lower_halves(first, last), Pairs{0, 1, 10'000, 1, 10'000, 1, 1, 0}));
    range.first = put_together(parts[0], 100'000'000);
    range.last = put_together(parts[1], 10'000);
    range.country = text + length_ - 3;
    return all_set(good);
  }

 private:
  // The upper digits, in the lower half, and those below unit; cut to 32 bits.
  static std::uint32_t put_together(std::uint64_t parts, std::uint32_t unit) {
    return static_cast<std::uint32_t>(parts) * unit + static_cast<std::uint32_t>(parts >> 32);
  }

  NumberShape first_{""};
  NumberShape last_{""};
  std::size_t first_end_ = 0;
  std::size_t length_ = ~std::size_t{0};
};

}  // namespace vantrel
