// The ranges of the address table one by one, with numbers for the countries they name.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "base/first_index.h"
#include "base/text_window.h"
#include "settings/range_shape.h"

namespace vantrel {

// Gives each country text a number, in the order in which they come.
class CountryNumbers {
 public:
  // countries: where the texts are to go, in lower case; it must outlive the numbers. Texts that
  // are there already have no number.
  explicit CountryNumbers(std::deque<std::string>& countries);

  [[nodiscard]] std::uint32_t number_of(std::string_view country);

  // The same for a text of two bytes, if it has a number and that fits in 16 bits; else 0.
  [[nodiscard]] std::uint32_t known_number(const char* country) const {
    return two_bytes_[two_byte_number(country)];
  }

 private:
  static std::size_t two_byte_number(const char* text) {
    std::uint16_t number = 0;
    std::memcpy(&number, text, sizeof number);
    return number;
  }

  std::deque<std::string>& countries_;
  TextIndex texts_;
  // By the two bytes as they were read. Few come, and calloc() takes no memory for the others.
  struct Free {
    void operator()(std::uint16_t* memory) const { std::free(memory); }
  };
  std::unique_ptr<std::uint16_t[], Free> two_bytes_;
};

struct CountryRange {
  std::uint32_t first;
  std::uint32_t last;     // inclusive
  std::uint32_t country;  // its number
};

class RangeReader {
 public:
  // countries: as for CountryNumbers.
  RangeReader(const File& file, std::deque<std::string>& countries)
      : window_(file), countries_(countries) {}

  // Calls take(range) for each range of the file until it returns false. False when the file cannot
  // be read.
  template <typename Take>
  [[nodiscard]] bool for_each(Take take) {
    do {
      if (!window_.read_on()) return false;
      for (;;) {
        if (!for_each_alike(take)) return true;
        CountryRange range;
        if (!read_any(range)) break;
        if (!take(range)) return true;
      }
    } while (!window_.at_end());
    return true;
  }

 private:
  // The ranges that are written as the one before. False when take wants no more.
  template <typename Take>
  [[nodiscard]] bool for_each_alike(Take& take) {
    const RangeShape shape = shape_;
    const char* next = window_.text().data();
    const char* const end = next + window_.text().size();
    bool wanted = true;
    for (RangeShape::Range text; wanted && shape.read(next, end, text); next += shape.length()) {
      const std::uint32_t country = countries_.known_number(text.country);
      if (country == 0) break;
      wanted = take(CountryRange{text.first, text.last, country});
    }
    window_.drop(static_cast<std::size_t>(next - window_.text().data()));
    return wanted;
  }

  // The next range, whatever its form. False when the window does not hold all of it.
  [[nodiscard]] bool read_any(CountryRange& range);

  TextWindow window_;
  CountryNumbers countries_;
  RangeShape shape_;
};
static_assert(RangeShape::kReadBefore <= TextWindow::kReadableBefore);

}  // namespace vantrel
