#include "check_formula.h"

#include "places.h"

namespace vantrel::inspect {

void check_formula(Findings& findings, const OutMod& modifiers, const TradeStore&) {
  constexpr const char* kModifiers = "d/out.mod";
  if (is_blank(modifiers.formula())) {
    findings.worthless(kModifiers,
                       "field 9: the formula is switched on, but empty: all trades score 1",
                       "write a formula, or put another text than 10 into field 8");
  }
}

}  // namespace vantrel::inspect
