// The operator's formula, as the run's own evaluator took it for each trade.
#pragma once

#include <string>

#include "findings.h"
#include "foresee.h"

namespace vantrel::inspect {

// What is wrong at that place of the formula with its numbers put in, and what is taken instead.
[[nodiscard]] std::string error_words(const ExpressionError& error, const std::string& put_in);

void check_formula(Findings& findings, const Forecast& forecast);

}  // namespace vantrel::inspect
