// An address table in order, as a staircase: from one start up to the next, an address belongs to
// one country, or to none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "settings/range_reader.h"

namespace vantrel {

class AddressSteps {
 public:
  static constexpr std::uint32_t kNoCountry = 0;

  // Room for so many ranges; memory that is never written costs nothing.
  explicit AddressSteps(std::size_t most_ranges);

  // Adds a range behind all others. False, and nothing is added, when it begins before the end of
  // another, ends before it begins, or has a country whose number does not fit in 16 bits.
  [[nodiscard]] bool add(const CountryRange& range) {
    if (range.first < next_free_ || range.last < range.first || range.country > 0xFFFF)
      return false;
    if (range.first > next_free_) put(static_cast<std::uint32_t>(next_free_), kNoCountry);
    put(range.first, range.country);
    next_free_ = std::uint64_t{range.last} + 1;
    return true;
  }

  // After the last range.
  void finish();

  // The number of the country, kNoCountry for none.
  [[nodiscard]] std::uint32_t country_of(std::uint32_t address) const;

  // Has the memory that country_of(address) will look at brought near. The table is larger than
  // what a processor keeps beside a stream of hits, and waiting for it costs more than all else.
  // Always inline: a call that has no other effect would be left out.
  [[gnu::always_inline]] void prefetch(std::uint32_t address) const {
    const std::uint32_t* const steps = &step_before_[block_of(address)];
    for (const std::uint32_t step : {steps[0], steps[1]}) {
      __builtin_prefetch(&starts_[step]);
      __builtin_prefetch(&countries_[step]);
    }
  }

 private:
  // Addresses with the same upper bits; some ranges begin in each block.
  static constexpr int kBlockBits = 18;
  static constexpr std::size_t kBlocks = std::size_t{1} << (32 - kBlockBits);
  static std::size_t block_of(std::uint32_t address) { return address >> kBlockBits; }

  void put(std::uint32_t start, std::uint32_t country) {
    starts_[size_] = start;
    countries_[size_] = static_cast<std::uint16_t>(country);
    step_before_[block_of(start) + 1] = static_cast<std::uint32_t>(size_++);
  }

  std::unique_ptr<std::uint32_t[]> starts_;  // ascending, the first is 0
  std::unique_ptr<std::uint16_t[]> countries_;
  std::size_t size_ = 0;
  std::uint64_t next_free_ = 0;  // behind the last range
  // By block, the last step that begins before it; step 0 for the first block.
  std::vector<std::uint32_t> step_before_;
};

}  // namespace vantrel
