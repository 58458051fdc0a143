#include "settings/address_steps.h"

#include <algorithm>
#include <limits>

namespace vantrel {

// Every range may have a gap in front of it, and there is one behind the last.
AddressSteps::AddressSteps(std::size_t most_ranges)
    : starts_(std::make_unique_for_overwrite<std::uint32_t[]>(2 * most_ranges + 1)),
      countries_(std::make_unique_for_overwrite<std::uint16_t[]>(2 * most_ranges + 1)),
      step_before_(kBlocks + 1) {}

void AddressSteps::finish() {
  if (next_free_ <= std::numeric_limits<std::uint32_t>::max()) {
    put(static_cast<std::uint32_t>(next_free_), kNoCountry);
  }
  // Where no step begins, the one from before goes on.
  for (std::size_t block = 1; block <= kBlocks; ++block) {
    step_before_[block] = std::max(step_before_[block], step_before_[block - 1]);
  }
}

// Halving without a branch: where the address lies is nothing a processor could guess.
std::uint32_t AddressSteps::country_of(std::uint32_t address) const {
  const std::size_t block = block_of(address);
  std::size_t i = step_before_[block];
  std::size_t candidates = step_before_[block + 1] - i + 1;
  while (candidates > 1) {
    const std::size_t half = candidates / 2;
    i += starts_[i + half] <= address ? half : 0;
    candidates -= half;
  }
  return countries_[i];
}

}  // namespace vantrel
