#include "settings/ip_table.h"

#include <algorithm>
#include <cstring>

#include "base/number_pieces.h"

namespace vantrel {
namespace {

constexpr std::size_t kNotFound = ~std::size_t{0};

// The piece in front of a range is a line feed or nothing at all.
bool skip_filler(Pieces& pieces) {
  const std::string_view text = pieces.rest();
  if (text.size() > 2 && (text[0] == '|' || text[1] == '|')) {
    pieces.skip(text[0] == '|' ? 1 : 2);
    return true;
  }
  std::string_view filler;
  return pieces.next(filler) && !pieces.rest().empty();
}

// Gives each country text a number, in the order in which they come. The texts are turned into
// lower case where they stand.
class CountryNumbers {
 public:
  CountryNumbers(std::vector<std::string_view>& countries, FileBuffer& file)
      : countries_(countries), file_(file), two_letters_(1 << 16, kUnknown) {}

  std::uint32_t next_country(Pieces& pieces) {
    const std::string_view text = pieces.rest();
    if (text.size() < 3 || text[2] != '|' || text[0] == '|' || text[1] == '|') {
      return number_of(pieces.next_or_empty());
    }
    // A country code: seen before most of the time.
    std::uint32_t& number = two_letters_[static_cast<unsigned char>(text[0]) * 256u +
                                         static_cast<unsigned char>(text[1])];
    if (number == kUnknown) number = number_of(text.substr(0, 2));
    pieces.skip(3);
    return number;
  }

 private:
  static constexpr std::uint32_t kUnknown = ~std::uint32_t{0};

  std::uint32_t number_of(std::string_view country) {
    if (!country.empty()) {
      lower_case(file_.data() + (country.data() - file_.text().data()), country.size());
    }
    const auto next = static_cast<std::int32_t>(countries_.size());
    const std::int32_t number = texts_.add(country, next);
    if (number == next) countries_.push_back(country);
    return static_cast<std::uint32_t>(number);
  }

  std::vector<std::string_view>& countries_;
  FileBuffer& file_;
  std::vector<std::uint32_t> two_letters_;  // numbers of country codes, by their two bytes as read
  TextIndex texts_;
};

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
  std::uint32_t number = 0;
  std::uint32_t part = 0;
  int dots = 0;
  std::size_t digits = 0;
  // Four parts of a few digits, as nearly every address has them.
  for (const char c : text) {
    if (is_digit(c) && digits < 9) {
      part = part * 10 + static_cast<std::uint32_t>(c - '0');
      ++digits;
    } else if (c == '.' && dots < 3) {
      number = (number << 8) + part;
      part = 0;
      digits = 0;
      ++dots;
    } else {
      return odd_ip_to_number(text);
    }
  }
  return ((number << 8) + part) << (8 * (3 - dots));
}

bool IpTable::load(const char* path) {
  if (!file_.read(path)) return false;
  parse();
  return true;
}

void IpTable::parse() {
  // Room for ranges of a usual length; more are taken as they come.
  constexpr std::size_t kUsualBytes = 16;
  first_.reserve(file_.size() / kUsualBytes);
  ends_.reserve(file_.size() / kUsualBytes);
  CountryNumbers countries(countries_, file_);
  Pieces pieces(file_.text());
  while (skip_filler(pieces)) {
    const std::uint32_t first = next_unsigned(pieces);
    const std::uint32_t last = next_unsigned(pieces);
    well_formed_ = well_formed_ && first <= last && (ends_.empty() || ends_.back().last < first);
    first_.push_back(first);
    ends_.push_back({last, countries.next_country(pieces)});
  }
  countries_.push_back(kOutOfRange);
}

std::uint32_t IpTable::country_number(std::uint32_t address) const {
  const auto out_of_range = static_cast<std::uint32_t>(countries_.size() - 1);
  if (first_.empty() || address < first_.front() || address > ends_.back().last)
    return out_of_range;
  const std::size_t i = well_formed_ ? find_ordered(address) : find_by_bisection(address);
  return i == kNotFound ? out_of_range : ends_[i].country;
}

// In a table in order at most one range holds the address: the last one that begins at or below it.
std::size_t IpTable::find_ordered(std::uint32_t address) const {
  const auto above = std::upper_bound(first_.begin(), first_.end(), address);
  const auto i = static_cast<std::size_t>(above - first_.begin()) - 1;
  return address <= ends_[i].last ? i : kNotFound;
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
    if (first_[i] <= address && address <= ends_[i].last) return i;
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
