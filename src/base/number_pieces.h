// Pieces that are numbers, read and ended in one go. Most of what a run parses are a few plain
// digits and a bar; anything else takes the general way and gives what it always gave.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {

// to_int of the next piece, 0 when there is none. The pieces must be separated by bars.
[[nodiscard]] inline std::int32_t next_int(Pieces& pieces) {
  constexpr std::size_t kFewDigits = 9;  // they fit whatever they are
  const std::string_view text = pieces.rest();
  if (text.size() > kFewDigits) {
    std::int32_t value = 0;
    for (std::size_t i = 0; i <= kFewDigits; ++i) {
      const unsigned digit = static_cast<unsigned char>(text[i]) - unsigned{'0'};
      if (digit <= 9 && i < kFewDigits) {
        value = value * 10 + static_cast<std::int32_t>(digit);
      } else if (text[i] == '|') {
        pieces.skip(i + 1);
        return value;
      } else {
        break;
      }
    }
  }
  return to_int(pieces.next_or_empty());
}

}  // namespace vantrel
