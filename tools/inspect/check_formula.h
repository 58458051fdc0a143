// The operator's formula, tried on every trade by the run's own scorer.
#pragma once

#include "findings.h"
#include "out/out_settings.h"
#include "store/trade_index.h"

namespace vantrel::inspect {

void check_formula(Findings& findings, const OutMod& modifiers, const TradeStore& store);

}  // namespace vantrel::inspect
