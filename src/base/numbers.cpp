#include "base/numbers.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>

namespace vantrel {
namespace {

// The sign and the digits of a leading number; digits saturate at 64 bits.
struct LeadingNumber {
  bool negative = false;
  bool ran_over = false;
  std::uint64_t magnitude = 0;
};

std::uint64_t digit_of(char c) { return static_cast<std::uint64_t>(c - '0'); }

LeadingNumber leading_number(std::string_view text) {
  LeadingNumber number;
  std::size_t i = 0;
  while (i < text.size() && is_space(text[i])) ++i;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) number.negative = text[i++] == '-';
  // Nineteen digits fit whatever they are; only behind them must overflow be looked at.
  constexpr std::size_t kSafeDigits = 19;
  const std::size_t safe = std::min(text.size(), i + kSafeDigits);
  for (; i < safe && is_digit(text[i]); ++i) {
    number.magnitude = number.magnitude * 10 + digit_of(text[i]);
  }
  if (i < safe) return number;
  constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
  for (; i < text.size() && is_digit(text[i]); ++i) {
    const std::uint64_t digit = digit_of(text[i]);
    if (number.magnitude > (kMax - digit) / 10) {
      number.magnitude = kMax;
      number.ran_over = true;
      break;
    }
    number.magnitude = number.magnitude * 10 + digit;
  }
  return number;
}

template <typename Integer>
void append_decimal(std::string& text, Integer value) {
  char digits[16];
  const auto result = std::to_chars(digits, digits + sizeof digits, value);
  text.append(digits, result.ptr);
}

}  // namespace

std::int32_t to_int_general(std::string_view text) {
  const LeadingNumber number = leading_number(text);
  constexpr std::uint64_t kMax = std::numeric_limits<std::int64_t>::max();
  std::uint64_t value = number.magnitude;
  if (number.negative) {
    value = 0 - (value > kMax ? kMax + 1 : value);
  } else if (value > kMax) {
    value = kMax;
  }
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

std::uint32_t to_unsigned(std::string_view text) {
  const LeadingNumber number = leading_number(text);
  // strtoul does not negate a value that ran over.
  const bool negate = number.negative && !number.ran_over;
  return static_cast<std::uint32_t>(negate ? 0 - number.magnitude : number.magnitude);
}

double to_double(std::string_view text) { return std::strtod(std::string(text).c_str(), nullptr); }

std::int32_t percent_of(std::int32_t a, std::int32_t b) {
  if (b == 0) return 0;
  return truncate_to_int(static_cast<float>(a) / static_cast<float>(b) * 100.0f);
}

void append_number(std::string& text, std::int32_t value) { append_decimal(text, value); }
void append_number(std::string& text, std::uint32_t value) { append_decimal(text, value); }

}  // namespace vantrel
