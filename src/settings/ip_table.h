// From a visitor's address to a country: the table d/ip.psv, some hundred thousand ranges.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/files.h"
#include "settings/address_steps.h"
#include "settings/ip_number.h"
#include "settings/ip_range.h"

namespace vantrel {

class IpTable {
 public:
  static constexpr std::string_view kOutOfRange = "out of range";

  // False when the file cannot be read; the caller reports it.
  [[nodiscard]] bool load(const char* path);

  // First kOutOfRange, then the countries the table names, in lower case, each once.
  [[nodiscard]] const std::deque<std::string>& countries() const { return countries_; }

  // The number of the address's country in countries().
  [[nodiscard]] std::uint32_t country_number(std::uint32_t address) const {
    return steps_ ? steps_->country_of(address) : find_by_bisection(address);
  }
  [[nodiscard]] std::string_view country_of(std::uint32_t address) const {
    return countries_[country_number(address)];
  }

  // For an address that will be asked for soon, among many.
  [[gnu::always_inline]] void prefetch(std::uint32_t address) const {
    if (steps_) steps_->prefetch(address);
  }

  // How many ranges the file holds.
  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  // False when the file cannot be read. A table out of order leaves no steps.
  [[nodiscard]] bool load_steps(const File& file);
  [[nodiscard]] bool load_ranges(const File& file);
  [[nodiscard]] std::uint32_t find_by_bisection(std::uint32_t address) const;

  std::deque<std::string> countries_;
  std::size_t size_ = 0;
  // Of a table as it should be: ascending, every range first to last, none touching another.
  std::optional<AddressSteps> steps_;
  std::unique_ptr<CountryRange[]> ranges_;  // of any other, as it is
};

}  // namespace vantrel
