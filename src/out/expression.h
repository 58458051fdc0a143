// A small calculator for the operator's score formula: + - * / ( ) unary minus, names and
// assignment over doubles. It never fails: an error takes the value 1.0 in its place, is counted,
// and evaluation goes on.
//
//   sum:     term, then + term or - term, from left to right
//   term:    primary, then * primary or / primary; dividing by zero makes the whole term 1.0
//   primary: number | name | name = sum | ( sum ) | - primary
//
// ";" and a line feed end the text like its end; what follows a complete sum is ignored. Names are
// letters and digits, beginning with a letter.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// A place where a formula was not what it should be. The first ones are errors, which take the
// value 1.0; the last two are accepted without a word.
struct ExpressionError {
  enum Kind {
    bad_character,   // nothing a formula is made of: the text ends there
    value_expected,  // something else stands where a number, a name or "(" should
    parenthesis_expected,
    division_by_zero,
    nested_too_deep,
    broken_number,  // "1e", ".", or too large: the text ends there
    unknown_name,   // read before it was ever set: 0
  };
  Kind kind = value_expected;
  std::size_t offset = 0;  // into the text
};
using ExpressionErrors = std::vector<ExpressionError>;

class ExpressionEvaluator {
 public:
  // Primaries inside one another (parentheses, minus signs, assignments). One nested deeper is an
  // error like any other, so that a formula cannot overflow the stack.
  static constexpr int kDeepestNesting = 2000;

  // errors: gets the places of errors appended, for whoever wants to see them.
  [[nodiscard]] double evaluate_expression(std::string_view text,
                                           ExpressionErrors* errors = nullptr);

  // Errors of all evaluations so far.
  [[nodiscard]] std::int32_t error_count() const { return error_count_; }

 private:
  // One of the single characters ( ) * + - / = or one of these.
  enum Token : char { kEnd = 'e', kStop = ';', kNumber = '0', kName = 'n' };

  void next_token();
  void read_number();
  double parse_sum(bool read_first);
  double parse_term(bool read_first);
  double parse_primary(bool read_first);
  double error(ExpressionError::Kind kind, std::size_t offset);
  void note(ExpressionError::Kind kind, std::size_t offset);

  std::string_view text_;
  std::string_view input_;        // what is left of it to read
  std::size_t token_offset_ = 0;  // where the token began
  ExpressionErrors* errors_ = nullptr;
  char token_ = kEnd;
  double number_ = 0.0;
  std::string_view name_;
  int depth_ = 0;
  // Variables stay for the whole run: what one trade's evaluation sets, the next one sees.
  std::map<std::string, double, std::less<>> variables_;
  std::int32_t error_count_ = 0;
};

}  // namespace vantrel
