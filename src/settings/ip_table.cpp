#include "settings/ip_table.h"

#include <algorithm>

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {
namespace {

constexpr std::size_t kNotFound = ~std::size_t{0};

}  // namespace

std::uint32_t ip_to_number(std::string_view text) {
  std::uint32_t number = 0;
  for (int part = 0; part < 4; ++part) {
    const std::size_t dot = part < 3 ? text.find('.') : std::string_view::npos;
    number = (number << 8) + static_cast<std::uint32_t>(to_int(text.substr(0, dot)));
    text = dot == std::string_view::npos ? std::string_view() : text.substr(dot + 1);
  }
  return number;
}

bool IpTable::load(const char* path) {
  if (!file_.read(path)) return false;
  lower_case(file_.data(), file_.size());
  parse();
  return true;
}

void IpTable::parse() {
  TextIndex numbers;
  const auto number_of = [&](std::string_view country) {
    const auto next = static_cast<std::int32_t>(countries_.size());
    const std::int32_t number = numbers.add(country, next);
    if (number == next) countries_.push_back(country);
    return static_cast<std::uint32_t>(number);
  };
  Pieces pieces(file_.text());
  for (std::string_view ignored, first; pieces.next(ignored) && pieces.next(first);) {
    const std::uint32_t from = to_unsigned(first);
    const std::uint32_t to = to_unsigned(pieces.next_or_empty());
    well_formed_ = well_formed_ && from <= to && (last_.empty() || last_.back() < from);
    first_.push_back(from);
    last_.push_back(to);
    country_.push_back(number_of(pieces.next_or_empty()));
  }
  countries_.push_back(kOutOfRange);
}

std::uint32_t IpTable::country_number(std::uint32_t address) const {
  const auto out_of_range = static_cast<std::uint32_t>(countries_.size() - 1);
  if (first_.empty() || address < first_.front() || address > last_.back()) return out_of_range;
  const std::size_t i = well_formed_ ? find_ordered(address) : find_by_bisection(address);
  return i == kNotFound ? out_of_range : country_[i];
}

// In a table in order at most one range holds the address: the last one that begins at or below it.
std::size_t IpTable::find_ordered(std::uint32_t address) const {
  const auto above = std::upper_bound(first_.begin(), first_.end(), address);
  const auto i = static_cast<std::size_t>(above - first_.begin()) - 1;
  return address <= last_[i] ? i : kNotFound;
}

// In a table out of order the answer depends on the way of searching, and sites have lived with the
// answers of this one: a bisection with halving steps that ends where it has been before.
std::size_t IpTable::find_by_bisection(std::uint32_t address) const {
  // A search that walks on in single steps is lost; in a table in order seventy passes are plenty.
  constexpr std::size_t kMostPasses = 100;
  enum class Direction { none, up, down } direction = Direction::none;
  const std::size_t size = first_.size();
  std::size_t visited[kMostPasses];
  std::size_t i = size / 2;
  std::uint64_t divisor = 2;
  for (std::size_t pass = 0; pass < kMostPasses; ++pass) {
    if (first_[i] <= address && address <= last_[i]) return i;
    if (std::find(visited, visited + pass, i) != visited + pass) return kNotFound;
    visited[pass] = i;
    if (address < first_[i]) direction = Direction::down;
    if (divisor <= size) divisor *= 2;  // past the size the step stays 1
    const std::size_t step = std::max<std::size_t>(1, static_cast<std::size_t>(size / divisor));
    if (address > first_[i]) direction = Direction::up;
    if (direction == Direction::down) {
      if (i < step) return kNotFound;
      i -= step;
    } else if (direction == Direction::up) {
      i += step;
      if (i >= size) return kNotFound;
    }
  }
  return kNotFound;
}

}  // namespace vantrel
