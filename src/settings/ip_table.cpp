#include "settings/ip_table.h"

#include <algorithm>

#include "settings/range_reader.h"

namespace vantrel {
namespace {

// A range has at least four bars.
std::size_t most_ranges(const File& file) {
  constexpr std::size_t kShortestRange = 4;
  return static_cast<std::size_t>(file.size()) / kShortestRange + 1;
}

}  // namespace

bool IpTable::load(const char* path) {
  const File file = open_to_read(path);
  if (!file.is_open() || !load_steps(file)) return false;
  return steps_ || load_ranges(file);
}

bool IpTable::load_steps(const File& file) {
  countries_.assign(1, std::string(kOutOfRange));
  RangeReader reader(file, countries_);
  AddressSteps steps(most_ranges(file));
  std::size_t size = 0;
  bool in_order = true;
  const bool read = reader.for_each([&](const CountryRange& range) {
    ++size;
    return in_order = steps.add(range);
  });
  steps.finish();
  if (in_order) steps_ = std::move(steps);
  size_ = size;
  return read;
}

bool IpTable::load_ranges(const File& file) {
  countries_.resize(1);
  RangeReader reader(file, countries_);
  ranges_ = std::make_unique_for_overwrite<CountryRange[]>(most_ranges(file));
  size_ = 0;
  return reader.for_each([this](const CountryRange& range) {
    ranges_[size_++] = range;
    return true;
  });
}

// In a table out of order the answer depends on the way of searching, and sites have lived with the
// answers of this one: a bisection with halving steps that ends where it has been before.
std::uint32_t IpTable::find_by_bisection(std::uint32_t address) const {
  // A search that walks on in single steps is lost; in a table in order seventy passes are plenty.
  constexpr std::size_t kMostPasses = 100;
  enum class Direction { none, up, down } direction = Direction::none;
  std::size_t visited[kMostPasses];
  constexpr std::uint32_t kNone = AddressSteps::kNoCountry;
  if (size_ == 0 || address < ranges_[0].first || address > ranges_[size_ - 1].last) return kNone;
  std::size_t i = size_ / 2;
  std::uint64_t divisor = 2;
  for (std::size_t pass = 0; pass < kMostPasses; ++pass) {
    if (ranges_[i].first <= address && address <= ranges_[i].last) return ranges_[i].country;
    if (std::find(visited, visited + pass, i) != visited + pass) return kNone;
    visited[pass] = i;
    if (address < ranges_[i].first) direction = Direction::down;
    if (divisor <= size_) divisor *= 2;  // past the size the step stays 1
    const std::size_t step = std::max<std::size_t>(1, static_cast<std::size_t>(size_ / divisor));
    if (address > ranges_[i].first) direction = Direction::up;
    if (direction == Direction::down) {
      if (i < step) return kNone;
      i -= step;
    } else if (direction == Direction::up) {
      i += step;
      if (i >= size_) return kNone;
    }
  }
  return kNone;
}

}  // namespace vantrel
