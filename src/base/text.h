// Walking the site's text files: pieces ended by a bar, lines ended by a line feed.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// Hands out the pieces of a text one by one with the meaning of std::getline: a last piece without
// its separator is delivered if it is not empty, and nothing follows a separator that ends the
// text. In a stream of bars a line feed is part of the piece it stands in. The views point into the
// text.
class Pieces {
 public:
  explicit Pieces(std::string_view text, char separator = '|')
      : next_(text.data()), end_(text.data() + text.size()), separator_(separator) {}

  // False at the end of the text; piece is then unchanged.
  [[nodiscard]] bool next(std::string_view& piece) {
    // Most pieces are short: the first bytes are looked at in words of eight, and only what is
    // longer is worth a call. The lowest zero byte of a word, after the separator was taken off
    // every byte, is where the separator stands.
    constexpr std::size_t kInWords = 32;
    constexpr std::uint64_t kOnes = 0x0101010101010101u;
    if (static_cast<std::size_t>(end_ - next_) < kInWords) return next_by_call(piece);
    for (std::size_t i = 0; i < kInWords; i += sizeof(std::uint64_t)) {
      std::uint64_t word = 0;
      std::memcpy(&word, next_ + i, sizeof word);
      word ^= kOnes * static_cast<unsigned char>(separator_);
      const std::uint64_t zeros = (word - kOnes) & ~word & (kOnes << 7);
      if (zeros == 0) continue;
      const std::size_t length = i + static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
      piece = {next_, length};
      next_ += length + 1;
      return true;
    }
    return next_by_call(piece);
  }

  // As next(), for the places where a missing piece counts as an empty one.
  [[nodiscard]] std::string_view next_or_empty() {
    std::string_view piece;
    return next(piece) ? piece : std::string_view();
  }

  // What is left to walk, for a reader that looks at the bytes themselves; and to go on behind
  // them.
  [[nodiscard]] std::string_view rest() const {
    return {next_, static_cast<std::size_t>(end_ - next_)};
  }
  void skip(std::size_t bytes) { next_ += bytes; }

 private:
  // Where the text ends soon, or the piece is a long one.
  [[nodiscard]] bool next_by_call(std::string_view& piece) {
    if (next_ == end_) return false;
    const auto left = static_cast<std::size_t>(end_ - next_);
    const auto* stop = static_cast<const char*>(std::memchr(next_, separator_, left));
    piece = {next_, stop == nullptr ? left : static_cast<std::size_t>(stop - next_)};
    next_ = stop == nullptr ? end_ : stop + 1;
    return true;
  }

  const char* next_;
  const char* end_;
  char separator_;
};

[[nodiscard]] inline Pieces lines_of(std::string_view text) { return Pieces(text, '\n'); }

// The pieces of a text as texts of their own, at most so many: a caller that knows how many there
// should be has no use for the millions a damaged file may hold.
[[nodiscard]] std::vector<std::string> split(std::string_view text, char separator = '|',
                                             std::size_t at_most = ~std::size_t{0});

// Letters A-Z only; every other byte stays. In place.
void lower_case(char* text, std::size_t size);

// A fixed-width text field of a binary record: up to its NUL, or its whole width without one.
template <std::size_t Width>
[[nodiscard]] std::string_view field_text(const char (&field)[Width]) {
  const std::string_view whole(field, Width);
  return whole.substr(0, whole.find('\0'));
}

// Copies a text into a zeroed fixed-width field: up to a NUL of the source, cut so that the
// field's own terminator fits.
template <std::size_t Width>
void put_field_text(char (&field)[Width], std::string_view text) {
  if (text.empty()) return;
  const std::size_t length = std::min(text.find('\0'), text.size());
  std::memcpy(field, text.data(), length < Width ? length : Width - 1);
}

}  // namespace vantrel
