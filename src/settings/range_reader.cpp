#include "settings/range_reader.h"

#include <limits>
#include <new>

#include "settings/ip_range.h"

namespace vantrel {

CountryNumbers::CountryNumbers(std::deque<std::string>& countries)
    : countries_(countries),
      two_bytes_(static_cast<std::uint16_t*>(std::calloc(1 << 16, sizeof(std::uint16_t)))) {
  if (two_bytes_ == nullptr) throw std::bad_alloc();
}

std::uint32_t CountryNumbers::number_of(std::string_view country) {
  std::string lowered(country);
  lower_case(lowered.data(), lowered.size());
  const auto next = static_cast<std::int32_t>(countries_.size());
  std::int32_t known = texts_.find(lowered);
  if (known == TextIndex::kNone) {
    known = next;
    texts_.add(countries_.emplace_back(std::move(lowered)), next);
  }
  const auto number = static_cast<std::uint32_t>(known);
  if (country.size() == 2 && number <= std::numeric_limits<std::uint16_t>::max()) {
    two_bytes_[two_byte_number(country.data())] = static_cast<std::uint16_t>(number);
  }
  return number;
}

bool RangeReader::read_any(CountryRange& range) {
  Pieces pieces(window_.text());
  IpRange text;
  if (!next_ip_range(pieces, text)) return false;
  if (pieces.rest().empty() && !window_.at_end()) return false;
  shape_ = RangeShape(window_.text());
  range = {text.first, text.last, countries_.number_of(text.country)};
  window_.drop(window_.text().size() - pieces.rest().size());
  return true;
}

}  // namespace vantrel
