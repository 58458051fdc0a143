// Random numbers that are the same on every machine: the distributions of the standard library are
// not, so the sample site draws from these.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantrel::sample {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  [[nodiscard]] std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
  }

  // 0 to limit - 1.
  [[nodiscard]] std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>(((next() >> 32) * limit) >> 32);
  }

  [[nodiscard]] bool percent(std::uint32_t chance) { return below(100) < chance; }

  template <typename Range>
  [[nodiscard]] const auto& one_of(const Range& range) {
    return range[below(static_cast<std::uint32_t>(range.size()))];
  }

 private:
  std::uint64_t state_;
};

// Popularity by Zipf's law: the second is drawn half as often as the first, the third a third.
class Zipf {
 public:
  explicit Zipf(std::size_t count) {
    std::uint32_t sum = 0;
    for (std::size_t rank = 0; rank < count; ++rank) sums_.push_back(sum += weight(rank));
  }

  // At least one rank must exist.
  [[nodiscard]] std::size_t draw(Random& random) const {
    const std::uint32_t drawn = random.below(sums_.back());
    const auto found = std::upper_bound(sums_.begin(), sums_.end(), drawn);
    return static_cast<std::size_t>(found - sums_.begin());
  }

  // How many of the given number of draws fall on a rank.
  [[nodiscard]] std::uint64_t share(std::size_t rank, std::uint64_t of) const {
    return of * weight(rank) / sums_.back();
  }

 private:
  [[nodiscard]] static std::uint32_t weight(std::size_t rank) {
    return std::max(1u, (1u << 20) / static_cast<std::uint32_t>(rank + 1));
  }

  std::vector<std::uint32_t> sums_;
};

}  // namespace vantrel::sample
