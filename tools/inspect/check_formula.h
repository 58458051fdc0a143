// The operator's formula, as the run's own evaluator took it for each trade.
#pragma once

#include "findings.h"
#include "foresee.h"

namespace vantrel::inspect {

void check_formula(Findings& findings, const Forecast& forecast);

}  // namespace vantrel::inspect
