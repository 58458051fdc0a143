#include "settings/ip_table.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {
namespace {

constexpr std::size_t kNotFound = ~std::size_t{0};
constexpr int kBlockBits = 18;
constexpr std::size_t kBlocks = std::size_t{1} << (32 - kBlockBits);

// Eight characters at once, if all of them are digits; the first is the lowest byte.
bool eight_digits(const char* text, std::uint64_t& value) {
  std::uint64_t word;
  std::memcpy(&word, text, sizeof word);
  const std::uint64_t high = word & 0xF0F0F0F0F0F0F0F0u;
  const std::uint64_t above_nine = (word + 0x0606060606060606u) & 0xF0F0F0F0F0F0F0F0u;
  if (high != 0x3030303030303030u || above_nine != high) return false;
  word -= high;
  word = word * 10 + (word >> 8);  // pairs, then fours, then all eight
  word = (word & 0x000000FF000000FFu) * 0x000F424000000064u +
         ((word >> 16) & 0x000000FF000000FFu) * 0x0000271000000001u;
  value = word >> 32;
  return true;
}

// Two digits and a bar.
bool two_digits_and_bar(const char* text, std::uint32_t& value) {
  std::uint32_t bytes;
  std::memcpy(&bytes, text, sizeof bytes);
  const std::uint32_t digits = (bytes & 0xFFFFFFu) - 0x7C3030u;  // '|' and twice '0'
  if (((digits | (digits + 0x0606u)) & ~0x0F0Fu) != 0) return false;
  value = (digits & 0x0Fu) * 10 + (digits >> 8);
  return true;
}

// Up to 18 digits, which fit whatever they are; where they end. 20 bytes must be readable.
[[gnu::always_inline]] inline const char* plain_number(const char* text, std::uint64_t& value) {
  const char* const last = text + 18;
  value = 0;
  if (eight_digits(text, value)) {
    text += 8;
    std::uint32_t two;
    if (two_digits_and_bar(text, two)) {  // as most addresses have it
      value = value * 100 + two;
      return text + 2;
    }
  }
  for (; text != last && is_digit(*text); ++text) {
    value = value * 10 + static_cast<std::uint64_t>(*text - '0');
  }
  return text;
}

struct PlainRange {
  std::uint32_t first;
  std::uint32_t last;
  const char* country;  // two bytes
};

// Room enough for a plain range whatever its numbers.
constexpr std::ptrdiff_t kLongestPlainRange = 64;

// The table is the largest input of a run, and nearly all of its ranges are a line feed, a bar and
// then "digits|digits|cc|". Reads one of these and goes on behind it; nothing happens when the next
// range is written in another way.
bool read_plain_range(const char*& next, PlainRange& range) {
  const char* text = next + (*next == '|' ? 0 : 1);
  std::uint64_t first;
  std::uint64_t last;
  if (*text != '|') return false;
  text = plain_number(text + 1, first);
  if (*text != '|') return false;
  text = plain_number(text + 1, last);
  if (*text != '|' || text[1] == '|' || text[2] == '|' || text[3] != '|') return false;
  range = {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(last), text + 1};
  next = text + 4;
  return true;
}

// Gives each country text a number, in the order in which they come. The texts are turned into
// lower case where they stand.
class CountryNumbers {
 public:
  CountryNumbers(std::vector<std::string_view>& countries, FileBuffer& file)
      : countries_(countries), file_(file) {
    if (two_letters_ == nullptr) throw std::bad_alloc();
  }

  std::uint32_t number_of(std::string_view country) {
    if (!country.empty()) {
      lower_case(file_.data() + (country.data() - file_.text().data()), country.size());
    }
    const auto next = static_cast<std::int32_t>(countries_.size());
    const std::int32_t number = texts_.add(country, next);
    if (number == next) countries_.push_back(country);
    return static_cast<std::uint32_t>(number);
  }

  // The same for a text of two bytes, most of which have come before.
  std::uint32_t number_of_two(const char* country) {
    std::uint32_t& above = two_letters_[static_cast<unsigned char>(country[0]) * 256u +
                                        static_cast<unsigned char>(country[1])];
    if (above == 0) above = number_of({country, 2}) + 1;
    return above - 1;
  }

 private:
  std::vector<std::string_view>& countries_;
  FileBuffer& file_;
  // One above the number, by the two bytes as they were read; 0 for those that have not come. Few
  // do, and calloc() takes no memory for the others.
  struct Free {
    void operator()(std::uint32_t* memory) const { std::free(memory); }
  };
  std::unique_ptr<std::uint32_t[], Free> two_letters_{
      static_cast<std::uint32_t*>(std::calloc(1 << 16, sizeof(std::uint32_t)))};
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
  constexpr std::size_t kLongestUsual = 15;
  if (text.size() > kLongestUsual) return odd_ip_to_number(text);
  // Nothing but digits and three dots, so short that no part can run over.
  std::uint64_t number = 0;
  std::uint32_t part = 0;
  int dots = 0;
  for (const char c : text) {
    const unsigned digit = static_cast<unsigned char>(c) - unsigned{'0'};
    if (digit <= 9) {
      part = part * 10 + digit;
    } else if (c == '.') {
      number = (number << 8) + part;
      part = 0;
      ++dots;
    } else {
      return odd_ip_to_number(text);
    }
  }
  return dots == 3 ? static_cast<std::uint32_t>((number << 8) + part) : odd_ip_to_number(text);
}

bool IpTable::load(const char* path) {
  if (!file_.read(path)) return false;
  parse();
  if (well_formed_) index_blocks();
  return true;
}

void IpTable::parse() {
  // A range has at least four bars. Memory that is never written costs nothing.
  constexpr std::size_t kShortestRange = 4;
  const std::size_t most = file_.size() / kShortestRange + 1;
  ranges_ = std::make_unique_for_overwrite<Range[]>(most);
  CountryNumbers countries(countries_, file_);
  // Local, so that the loop keeps them in registers.
  Range* const ranges = ranges_.get();
  std::size_t size = 0;
  std::uint64_t next_free = 0;  // behind the range before
  bool well_formed = true;
  const auto add = [&](std::uint32_t first, std::uint32_t last, std::uint32_t country) {
    well_formed &= first <= last && first >= next_free;
    next_free = std::uint64_t{last} + 1;
    ranges[size++] = {first, last, country};
  };
  const char* next = file_.text().data();
  const char* const end = next + file_.size();
  for (;;) {
    PlainRange plain;
    while (end - next >= kLongestPlainRange && read_plain_range(next, plain)) {
      add(plain.first, plain.last, countries.number_of_two(plain.country));
    }
    Pieces pieces(std::string_view(next, static_cast<std::size_t>(end - next)));
    IpRange range;
    if (!next_ip_range(pieces, range)) break;
    add(range.first, range.last, countries.number_of(range.country));
    next = pieces.rest().data();
  }
  countries_.push_back(kOutOfRange);
  size_ = size;
  well_formed_ = well_formed;
}

std::uint32_t IpTable::country_number(std::uint32_t address) const {
  const auto out_of_range = static_cast<std::uint32_t>(countries_.size() - 1);
  if (size_ == 0 || address < ranges_[0].first || address > ranges_[size_ - 1].last)
    return out_of_range;
  const std::size_t i = well_formed_ ? find_ordered(address) : find_by_bisection(address);
  return i == kNotFound ? out_of_range : ranges_[i].country;
}

// In a table in order at most one range holds the address: the last one that begins at or below it.
// The address is not below the first range. Halving without a branch: where the address lies is
// nothing a processor could guess.
std::size_t IpTable::find_ordered(std::uint32_t address) const {
  const std::size_t block = address >> kBlockBits;
  std::size_t i = std::max<std::size_t>(below_block_[block], 1) - 1;
  std::size_t candidates = below_block_[block + 1] - i;
  while (candidates > 1) {
    const std::size_t half = candidates / 2;
    i += ranges_[i + half].first <= address ? half : 0;
    candidates -= half;
  }
  return address <= ranges_[i].last ? i : kNotFound;
}

void IpTable::prefetch(std::uint32_t address) const {
  if (below_block_.empty()) return;
  __builtin_prefetch(&ranges_[below_block_[address >> kBlockBits]]);
}

void IpTable::index_blocks() {
  below_block_.resize(kBlocks + 1);
  std::size_t block = 0;
  for (std::size_t i = 0; i < size_; ++i) {
    for (const std::size_t last = ranges_[i].first >> kBlockBits; block <= last; ++block) {
      below_block_[block] = static_cast<std::uint32_t>(i);
    }
  }
  for (; block <= kBlocks; ++block) below_block_[block] = static_cast<std::uint32_t>(size_);
}

// In a table out of order the answer depends on the way of searching, and sites have lived with the
// answers of this one: a bisection with halving steps that ends where it has been before.
std::size_t IpTable::find_by_bisection(std::uint32_t address) const {
  // A search that walks on in single steps is lost; in a table in order seventy passes are plenty.
  constexpr std::size_t kMostPasses = 100;
  enum class Direction { none, up, down } direction = Direction::none;
  std::size_t visited[kMostPasses];
  std::size_t i = size_ / 2;
  std::uint64_t divisor = 2;
  for (std::size_t pass = 0; pass < kMostPasses; ++pass) {
    if (ranges_[i].first <= address && address <= ranges_[i].last) return i;
    if (std::find(visited, visited + pass, i) != visited + pass) return kNotFound;
    visited[pass] = i;
    if (address < ranges_[i].first) direction = Direction::down;
    if (divisor <= size_) divisor *= 2;  // past the size the step stays 1
    const std::size_t step = std::max<std::size_t>(1, static_cast<std::size_t>(size_ / divisor));
    if (address > ranges_[i].first) direction = Direction::up;
    if (direction == Direction::down) {
      if (i < step) return kNotFound;
      i -= step;
    } else if (direction == Direction::up) {
      i += step;
      if (i >= size_) return kNotFound;
    }
  }
  return kNotFound;
}

}  // namespace vantrel
