#include "settings/ip_table.h"

#include <algorithm>

#include "base/numbers.h"
#include "settings/range_reader.h"

namespace vantrel {
namespace {

// A range has at least four bars.
std::size_t most_ranges(const File& file) {
  constexpr std::size_t kShortestRange = 4;
  return static_cast<std::size_t>(file.size()) / kShortestRange + 1;
}

// The address as its four parts say, each a lenient number of its own.
std::uint32_t odd_ip_to_number(std::string_view text) {
  std::uint32_t number = 0;
  for (int part = 0; part < 4; ++part) {
    std::size_t length = text.size();
    if (part < 3) length = std::min(length, text.find('.'));
    number = (number << 8) + static_cast<std::uint32_t>(to_int(text.substr(0, length)));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return number;
}

}  // namespace

std::uint32_t ip_to_number(std::string_view text) {
  // Four parts of one to three digits each, so nearly all are. In a copy with zeros behind it no
  // step needs to ask where the text ends.
  constexpr std::size_t kHalf = sizeof(std::uint64_t);
  constexpr std::size_t kLongest = 15;
  if (text.size() < kHalf || text.size() > kLongest) return odd_ip_to_number(text);
  char copy[kLongest + 5] = {};
  const std::size_t behind_first = text.size() - kHalf;
  std::memcpy(copy, text.data(), kHalf);
  std::memcpy(copy + behind_first, text.data() + behind_first, kHalf);

  const char* next = copy;
  const auto take_digit = [&next](std::uint32_t& part) {
    const std::uint32_t digit = static_cast<unsigned char>(*next) - std::uint32_t{'0'};
    if (digit > 9) return false;
    part = part * 10 + digit;
    ++next;
    return true;
  };
  std::uint32_t number = 0;
  for (const char end : {'.', '.', '.', '\0'}) {
    std::uint32_t part = 0;
    if (!take_digit(part)) return odd_ip_to_number(text);
    if (take_digit(part)) static_cast<void>(take_digit(part));
    if (*next++ != end) return odd_ip_to_number(text);
    number = (number << 8) + part;
  }
  return next > copy + text.size() ? number : odd_ip_to_number(text);
}

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
