// Lenient numbers: what the site's text files mean when they hold a number, and counter arithmetic.
//
// None of these functions reports an error. White space is that of the C locale: blank, \t\n\v\f\r.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace vantrel {

[[nodiscard]] constexpr bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
[[nodiscard]] constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }
[[nodiscard]] constexpr bool is_alpha(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// White space, one optional sign, leading digits; 0 when there are none. The value saturates at
// 64 bits and is then cut to its low 32, as the C library's atoi does on 64-bit machines.
[[nodiscard]] std::int32_t to_int_general(std::string_view text);
[[nodiscard]] inline std::int32_t to_int(std::string_view text) {
  // Nearly every number of a site is a few plain digits.
  constexpr std::size_t kFewDigits = 9;
  if (text.size() > kFewDigits) return to_int_general(text);
  std::int32_t value = 0;
  for (const char c : text) {
    if (!is_digit(c)) return to_int_general(text);
    value = value * 10 + (c - '0');
  }
  return value;
}

// The same for an address number: strtoul cut to 32 bits, so "-1" is 4294967295.
[[nodiscard]] std::uint32_t to_unsigned(std::string_view text);

// strtod: decimal or hexadecimal floating point, "inf", "nan"; 0.0 when there is none.
[[nodiscard]] double to_double(std::string_view text);

// Counters wrap in 32 bits by intention: a counter that ran over is wrong, a crash is worse.
[[nodiscard]] constexpr std::int32_t wrap_add(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
[[nodiscard]] constexpr std::int32_t wrap_sub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
// a / b truncated toward zero; b must not be 0. The smallest integer by -1 wraps to itself.
[[nodiscard]] constexpr std::int32_t wrap_div(std::int32_t a, std::int32_t b) {
  return b == -1 ? wrap_sub(0, a) : a / b;
}

// Toward zero, saturated at the limits of 32 bits, NaN gives 0.
[[nodiscard]] constexpr std::int32_t truncate_to_int(double value) {
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  if (value > kMin && value < kMax) return static_cast<std::int32_t>(value);
  return value >= kMax ? kMax : value <= kMin ? kMin : 0;
}

// a as a percentage of b in single precision, truncated; 0 when b is 0. 21 of 10 is 209.
[[nodiscard]] std::int32_t percent_of(std::int32_t a, std::int32_t b);

// Decimal text without padding, appended.
void append_number(std::string& text, std::int32_t value);
void append_number(std::string& text, std::uint32_t value);

}  // namespace vantrel
