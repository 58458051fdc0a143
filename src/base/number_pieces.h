// Pieces that are numbers, read and ended in one go. Most of what a run parses are a few plain
// digits and a bar; anything else takes the general way and gives what it always gave.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {

// Eight characters at once, if all of them are digits; the first is the lowest byte.
[[nodiscard]] inline bool eight_digits(const char* text, std::uint64_t& value) {
  std::uint64_t word;
  std::memcpy(&word, text, sizeof word);
  const std::uint64_t high = word & 0xF0F0F0F0F0F0F0F0u;
  const std::uint64_t above_nine = (word + 0x0606060606060606u) & 0xF0F0F0F0F0F0F0F0u;
  if (high != 0x3030303030303030u || above_nine != high) return false;
  word -= high;
  word = word * 10 + (word >> 8);  // pairs, then fours, then all eight
  word = (word & 0x000000FF000000FFu) * 0x000F424000000064u +
         ((word >> 16) & 0x000000FF000000FFu) * 0x0000271000000001u;
  value = word >> 32;
  return true;
}

// The next piece when it is nothing but digits, at most limit of them, and ended by a bar; an empty
// one is 0. The pieces must be separated by bars.
[[nodiscard]] inline bool next_digits(Pieces& pieces, std::size_t limit, std::uint64_t& value) {
  const std::string_view text = pieces.rest();
  if (text.size() <= limit) return false;
  const char* next = text.data();
  const char* const last = next + limit;
  value = 0;
  if (limit >= 8 && eight_digits(next, value)) next += 8;
  for (; next != last; ++next) {
    const std::uint64_t digit = static_cast<unsigned char>(*next) - std::uint64_t{'0'};
    if (digit > 9) break;
    value = value * 10 + digit;
  }
  if (*next != '|') return false;
  pieces.skip(static_cast<std::size_t>(next + 1 - text.data()));
  return true;
}

// to_int of the next piece, 0 when there is none.
[[nodiscard]] inline std::int32_t next_int(Pieces& pieces) {
  std::uint64_t value;
  if (next_digits(pieces, 7, value)) return static_cast<std::int32_t>(value);
  return to_int(pieces.next_or_empty());
}

// to_unsigned of the next piece, 0 when there is none.
[[nodiscard]] inline std::uint32_t next_unsigned(Pieces& pieces) {
  std::uint64_t value;
  if (next_digits(pieces, 18, value)) return static_cast<std::uint32_t>(value);
  return to_unsigned(pieces.next_or_empty());
}

}  // namespace vantrel
