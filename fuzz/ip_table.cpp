// The address table behind an address on the input's first line. Both ways of searching must give
// what one bisection with halving steps gives, step by step, whatever the table's order. Some
// inputs stand behind so many plain ranges that they lie across the border of the pieces the file
// is read in. That is slow, so it takes 0xFF as the first byte and a rare length.
#include "settings/ip_table.h"

#include <algorithm>
#include <cstdlib>

#include "support.h"

namespace vantrel::fuzz {
namespace {

struct Range {
  std::uint32_t first = 0;
  std::uint32_t last = 0;
  std::string country;
};

std::vector<Range> ranges_of(const std::string& text) {
  std::vector<Range> ranges;
  const auto pieces = getline_pieces(text);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const auto number = static_cast<std::uint32_t>(std::strtoul(pieces[i].c_str(), nullptr, 10));
    if (i % 4 == 1) ranges.push_back({number, 0, ""});
    if (i % 4 == 2) ranges.back().last = number;
    if (i % 4 == 3) ranges.back().country = lowered(pieces[i]);
  }
  return ranges;
}

// Halving steps to and fro until the address is found or a place is visited again. A table out of
// order can lead out of the table or on and on in single steps.
std::string bisected(const std::vector<Range>& ranges, std::uint32_t address) {
  const auto size = static_cast<std::int64_t>(ranges.size());
  const bool outside = size == 0 || address < ranges[0].first || address > ranges.back().last;
  std::vector<bool> visited(ranges.size());
  std::int64_t divisor = 2;
  std::int64_t i = size / 2;
  int direction = 0;
  for (int pass = 0; !outside && pass < 100 && i >= 0 && i < size; ++pass) {
    const auto at = static_cast<std::size_t>(i);
    const Range& range = ranges[at];
    if (range.first <= address && address <= range.last) return range.country;
    if (visited[at]) break;
    visited[at] = true;
    if (address < range.first) direction = -1;
    if (address > range.first) direction = 1;
    divisor = std::min<std::int64_t>(divisor * 2, 1 << 30);
    i += direction * std::max<std::int64_t>(1, size / divisor);
  }
  return std::string(IpTable::kOutOfRange);
}

// Ranges in order, so that so many bytes behind them still fit into the first 64 KiB.
std::string filler(std::size_t behind) {
  std::string text;
  for (int i = 10000; text.size() + behind < 64 * 1024 - 16; ++i) {
    text += (i % 9 == 0 ? "|" : "\n|") + std::to_string(i) + "|" + std::to_string(i) + "|Aa|";
  }
  return text;
}

}  // namespace

void try_input(const std::string& input) {
  const std::string dotted = input.substr(0, input.find('\n'));
  auto parts = getline_pieces(dotted, '.');
  parts.resize(4);
  std::uint32_t address = 0;
  for (const std::string& part : parts) {
    address = address * 256 + static_cast<std::uint32_t>(plain_int(part));
  }
  require(ip_to_number(dotted) == address, "the address's number");

  std::string text = input.substr(std::min(dotted.size() + 1, input.size()));
  if (input.starts_with('\xFF') && input.size() % 64 == 63) text.insert(0, filler(text.size() / 2));
  put("d/ip.psv", text);
  IpTable table;
  const auto ranges = ranges_of(text);
  require(table.load("d/ip.psv") && table.size() == ranges.size(), "every range is there");
  std::vector<std::uint32_t> addresses = {address};
  for (std::size_t i = 0; i < ranges.size(); i += ranges.size() / 4 + 1) {
    const auto& [first, last, country] = ranges[i];
    addresses.insert(addresses.end(), {first, first - 1, last, last + 1});
  }
  for (const std::uint32_t wanted : addresses) {
    require(table.country_of(wanted) == bisected(ranges, wanted), "the country is right");
  }
}

}  // namespace vantrel::fuzz
