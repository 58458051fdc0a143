#include "base/first_index.h"

#include <chrono>

namespace vantrel {
namespace {

// Spreads numbers that differ little over all bits.
std::uint64_t spread(std::uint64_t value) {
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
  return value ^ (value >> 31);
}

}  // namespace

// The nanoseconds since the machine started, and where the system placed this process: nothing that
// could fail or wait, as a source of true randomness might.
HashSeed::HashSeed() {
  const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
  const auto time = static_cast<std::uint64_t>(since_start.count());
  const auto place = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&time)) ^
                     spread(reinterpret_cast<std::uintptr_t>(this));
  first = spread(time ^ spread(place));
  second = spread(first + place) | 1;
}

const HashSeed hash_seed;

}  // namespace vantrel
