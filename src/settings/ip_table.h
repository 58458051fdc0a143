// From a visitor's address to a country: the table d/ip.psv, some hundred thousand ranges.
//
// A stream of pieces in groups of four: ignored, first address, last address, country. Written by
// the administration side, ascending and without overlaps; the run does not sort it.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/first_index.h"
#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {

// The text between the dots of w.x.y.z, each part as a lenient number: w·2^24 + x·2^16 + y·2^8 + z,
// wrapping. A missing part is 0; the fourth reaches to the end of the text.
[[nodiscard]] std::uint32_t ip_to_number(std::string_view text);

// One range as the table's text has it.
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

class IpTable {
 public:
  static constexpr std::string_view kOutOfRange = "out of range";

  // False when the file cannot be read; the caller reports it.
  [[nodiscard]] bool load(const char* path);

  // The countries the table names, in lower case, each once; last of all kOutOfRange.
  [[nodiscard]] const std::vector<std::string_view>& countries() const { return countries_; }

  // The number of the address's country in countries().
  [[nodiscard]] std::uint32_t country_number(std::uint32_t address) const;
  [[nodiscard]] std::string_view country_of(std::uint32_t address) const {
    return countries_[country_number(address)];
  }

  // Has the memory that country_number(address) will look at brought near. The table is larger than
  // what a processor keeps beside a stream of hits, and waiting for it costs more than all else.
  void prefetch(std::uint32_t address) const;

  [[nodiscard]] std::size_t size() const { return size_; }
  // Ascending, every range first to last, none touching another: what the file should be.
  [[nodiscard]] bool well_formed() const { return well_formed_; }

 private:
  struct Range {
    std::uint32_t first;
    std::uint32_t last;
    std::uint32_t country;  // index into countries_
  };

  void parse();
  void index_blocks();
  [[nodiscard]] std::size_t find_ordered(std::uint32_t address) const;
  [[nodiscard]] std::size_t find_by_bisection(std::uint32_t address) const;

  FileBuffer file_;  // the countries are views into it
  std::unique_ptr<Range[]> ranges_;
  std::size_t size_ = 0;
  // For each block of addresses the number of ranges that begin below it; for a table in order.
  std::vector<std::uint32_t> below_block_;
  std::vector<std::string_view> countries_;
  bool well_formed_ = true;
};

}  // namespace vantrel
