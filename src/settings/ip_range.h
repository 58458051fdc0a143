// One range of the address table d/ip.psv: a stream of pieces in groups of four: ignored, first
// address, last address, country. Written by the administration side, ascending and without
// overlaps; the run does not sort it.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {

// A range as the table's text has it.
struct IpRange {
  std::uint32_t first = 0;
  std::uint32_t last = 0;  // inclusive
  std::string_view country;
};

// The next range, however its pieces are written; false at the end. One cut short by the end has 0
// and an empty text for what is missing.
[[nodiscard]] inline bool next_ip_range(Pieces& pieces, IpRange& range) {
  std::string_view piece;
  if (!pieces.next(piece) || !pieces.next(piece)) return false;
  range.first = to_unsigned(piece);
  range.last = to_unsigned(pieces.next_or_empty());
  range.country = pieces.next_or_empty();
  return true;
}

}  // namespace vantrel
