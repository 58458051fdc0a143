#include "check_formula.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "places.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kModifiers = "d/out.mod";

// One place of the formula and one kind of error: for how many trades, and the first of them.
struct Trouble {
  NameList trades;
  std::size_t first = 0;  // position
  std::size_t last = 0;   // the same, for a trade can have one several times
  ExpressionError error;
};
using Troubles = std::map<std::pair<std::size_t, int>, Trouble>;

Troubles troubles_of(const Forecast& forecast) {
  const TradeScorer scorer(forecast.run.out);
  Troubles troubles;
  for (const auto& [position, error] : forecast.formula_errors) {
    const TradeWork& trade = forecast.unranked[position];
    std::vector<std::size_t> origins;
    static_cast<void>(substitute_counters(scorer.args_of(trade), &origins));
    const std::size_t place = error.offset < origins.size()
                                  ? origins[error.offset]
                                  : forecast.run.out.modifiers.formula().size();
    Trouble& trouble = troubles[{place, error.kind}];
    if (trouble.trades.empty()) {
      trouble.first = position;
      trouble.error = error;
    } else if (trouble.last == position) {
      continue;
    }
    trouble.last = position;
    trouble.trades.add(printable(field_text(trade.name)));
  }
  return troubles;
}

}  // namespace

std::string error_words(const ExpressionError& error, const std::string& put_in) {
  const std::string here = quote(std::string_view(put_in).substr(error.offset, 12));
  switch (error.kind) {
    case ExpressionError::bad_character:
      return here +
             " begins with a character no formula is made of; what stands behind is not read";
    case ExpressionError::value_expected:
      return error.offset < put_in.size()
                 ? "a number, a name or \"(\" is expected where " + here + " stands; 1 is taken"
                 : "the formula breaks off where a number, a name or \"(\" is expected; 1 is taken";
    case ExpressionError::parenthesis_expected:
      return "a \")\" is missing: all since its \"(\" counts as 1";
    case ExpressionError::division_by_zero:
      return "division by zero: the whole product counts as 1";
    case ExpressionError::nested_too_deep:
      return "nested too deep: 1 is taken";
    case ExpressionError::broken_number:
      return here + " is no number; what stands behind is not read";
    case ExpressionError::unknown_name:
      return here + " is none of the 33 counters and was never set: 0 is taken";
  }
  return {};
}

void check_formula(Findings& findings, const Forecast& forecast) {
  const OutMod& modifiers = forecast.run.out.modifiers;
  if (!modifiers.uses_formula()) return;
  const std::string formula = printable(modifiers.formula());
  if (is_blank(modifiers.formula())) {
    findings.worthless(kModifiers, "field 9: the formula is switched on, but empty: all score 1",
                       "write a formula, or another text than 10 into field 8");
    return;
  }
  constexpr std::size_t kTold = 3;
  std::size_t told = 0;
  for (const auto& [place, trouble] : troubles_of(forecast)) {
    if (told++ == kTold) break;
    const std::string& put_in = forecast.scores[trouble.first].formula.text;
    const bool all = trouble.trades.count() >= forecast.unranked.size() / 2;
    findings.add({Severity::off, Question::list, kModifiers,
                  "field 9, character " + std::to_string(place.first + 1) + ": " +
                      error_words(trouble.error, put_in) + ", for " +
                      (all ? counted(trouble.trades.count(), "trade") : trouble.trades.text()) +
                      (trouble.error.kind == ExpressionError::division_by_zero
                           ? "; with its numbers " + quote(put_in)
                           : ""),
                  "correct the formula; vantrel-inspect preview --with shows what it gives",
                  formula, place.first});
  }
}

}  // namespace vantrel::inspect
