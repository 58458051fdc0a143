#include "out/expression.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "base/numbers.h"

namespace vantrel {
namespace {

bool is_name_part(char c) { return is_alpha(c) || is_digit(c); }

// Length of the longest start of text that can be part of a number: digits with one point before
// the exponent, and one exponent with its sign once there is a digit.
std::size_t number_length(std::string_view text) {
  bool digits = false;
  bool point = false;
  bool exponent = false;
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (is_digit(c)) {
      digits = true;
    } else if (c == '.' && !point && !exponent) {
      point = true;
    } else if ((c == 'e' || c == 'E') && digits && !exponent) {
      exponent = true;
      if (i + 1 < text.size() && (text[i + 1] == '+' || text[i + 1] == '-')) ++i;
    } else {
      break;
    }
  }
  return i;
}

}  // namespace

double ExpressionEvaluator::evaluate_expression(std::string_view text, ExpressionErrors* errors) {
  text_ = text;
  input_ = text;
  errors_ = errors;
  depth_ = 0;
  return parse_sum(true);
}

void ExpressionEvaluator::note(ExpressionError::Kind kind, std::size_t offset) {
  if (errors_ != nullptr) errors_->push_back({kind, offset});
}

double ExpressionEvaluator::error(ExpressionError::Kind kind, std::size_t offset) {
  note(kind, offset);
  error_count_ = wrap_add(error_count_, 1);
  return 1.0;
}

void ExpressionEvaluator::next_token() {
  while (!input_.empty() && input_.front() != '\n' && is_space(input_.front())) {
    input_.remove_prefix(1);
  }
  token_offset_ = text_.size() - input_.size();
  if (input_.empty()) {
    token_ = kEnd;
    return;
  }
  const char c = input_.front();
  if (is_digit(c) || c == '.') {
    read_number();
  } else if (is_alpha(c)) {
    std::size_t length = 1;
    while (length < input_.size() && is_name_part(input_[length])) ++length;
    name_ = input_.substr(0, length);
    input_.remove_prefix(length);
    token_ = kName;
  } else {
    input_.remove_prefix(1);
    constexpr std::string_view kOperators = "()*+-/=";
    const bool is_operator = kOperators.find(c) != std::string_view::npos;
    token_ = is_operator ? c : static_cast<char>(kStop);
    if (!is_operator && c != '\n' && c != ';') {
      error(ExpressionError::bad_character, token_offset_);
    }
  }
}

// A number that breaks off ("1e", ".") is 0.0, one that is too large the largest double; both end
// the input, as a stream does that failed to extract one.
void ExpressionEvaluator::read_number() {
  const std::string text(input_.substr(0, number_length(input_)));
  input_.remove_prefix(text.size());
  token_ = kNumber;
  char* end = nullptr;
  number_ = std::strtod(text.c_str(), &end);
  const bool broken_off = *end != '\0';
  if (!broken_off && !std::isinf(number_)) return;
  note(ExpressionError::broken_number, token_offset_);
  number_ = broken_off ? 0.0 : std::numeric_limits<double>::max();
  input_ = {};
}

double ExpressionEvaluator::parse_sum(bool read_first) {
  double left = parse_term(read_first);
  for (;;) {
    if (token_ == '+') {
      left += parse_term(true);
    } else if (token_ == '-') {
      left -= parse_term(true);
    } else {
      return left;
    }
  }
}

double ExpressionEvaluator::parse_term(bool read_first) {
  double left = parse_primary(read_first);
  for (;;) {
    if (token_ == '*') {
      left *= parse_primary(true);
    } else if (token_ == '/') {
      const std::size_t place = token_offset_;
      const double divisor = parse_primary(true);
      // The tokens behind it are the enclosing sum's.
      if (divisor == 0.0) return error(ExpressionError::division_by_zero, place);
      left /= divisor;
    } else {
      return left;
    }
  }
}

double ExpressionEvaluator::parse_primary(bool read_first) {
  if (read_first) next_token();
  if (depth_ >= kDeepestNesting) {
    return error(ExpressionError::nested_too_deep, token_offset_);
  }
  ++depth_;
  double value = 1.0;
  if (token_ == kNumber) {
    value = number_;
    next_token();
  } else if (token_ == kName) {
    // Entries of a map stay where they are while others are added.
    auto entry = variables_.find(name_);
    const bool is_new = entry == variables_.end();
    const std::size_t place = token_offset_;
    if (is_new) entry = variables_.emplace(name_, 0.0).first;
    next_token();
    if (token_ == '=') {
      entry->second = parse_sum(true);
    } else if (is_new) {
      note(ExpressionError::unknown_name, place);
    }
    value = entry->second;
  } else if (token_ == '-') {
    value = -parse_primary(true);
  } else if (token_ == '(') {
    value = parse_sum(true);
    if (token_ == ')') {
      next_token();
    } else {
      value = error(ExpressionError::parenthesis_expected, token_offset_);
    }
  } else {
    value = error(ExpressionError::value_expected, token_offset_);
  }
  --depth_;
  return value;
}

}  // namespace vantrel
