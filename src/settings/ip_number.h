// A visitor's address as a number, from the text a request script logged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vantrel {

// The text between the dots of w.x.y.z, each part as a lenient number: w·2^24 + x·2^16 + y·2^8 + z,
// wrapping. A missing part is 0; the fourth reaches to the end of the text.
[[nodiscard]] std::uint32_t odd_ip_to_number(std::string_view text);

// The same, quicker for four parts of one to three digits each, as nearly all are. Every hit asks.
[[nodiscard]] inline std::uint32_t ip_to_number(std::string_view text) {
  // In a copy with zeros behind it no step needs to ask where the text ends.
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

}  // namespace vantrel
