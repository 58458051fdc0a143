#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "settings/dynamic_skim.h"

namespace vantrel::inspect {
namespace {

void complain_of_switches(Complaints& complaints, const SkimSwitches& switches) {
  for (const std::string_view text : switches.texts) {
    if (text != "0" && text != "1" && !text.empty()) {
      complaints.about(text, "the switch " + quote(text) + " is off: only \"1\" is on");
    }
  }
}

void complain_of_block(Complaints& complaints, std::size_t number, const SkimBlock& block) {
  const std::string name = "block " + std::to_string(number) + ": ";
  const std::int32_t skim = to_int(block.value);
  if (!is_whole_int(block.value)) {
    complaints.about(block.value, name + "the skim " + quote(block.value) + " is no number");
  } else if (skim < -1 || skim > 100) {
    complaints.about(block.value, name + "the skim " + quote(block.value) + " is not -1 to 100");
  }
  if (!is_skim_metric(block.metric)) {
    complaints.about(block.metric, name + "there is no measure " + quote(block.metric));
  }
  if (!is_skim_operator(block.op)) {
    complaints.about(block.op, name + "there is no comparison " + quote(block.op));
  }
  if (!is_whole_int(block.threshold)) {
    complaints.about(block.threshold,
                     name + "the threshold " + quote(block.threshold) + " is no number");
  }
}

}  // namespace

void check_skim(Findings& findings) {
  constexpr const char* kSkim = "d/ds";
  const auto text = examined(findings, kSkim, event::skim_missing);
  if (!text) return;
  Complaints complaints(*text, kSkim);
  Pieces pieces(*text);
  SkimSwitches switches;
  std::size_t blocks = 0;
  if (!read_skim_switches(pieces, switches)) {
    complaints.about_file("fewer than four switches: dynamic skim is off");
  } else {
    complain_of_switches(complaints, switches);
    std::string_view rest = pieces.rest();
    for (SkimBlock block; next_skim_block(pieces, block); rest = pieces.rest()) {
      complain_of_block(complaints, ++blocks, block);
    }
    if (!is_blank(rest)) {
      complaints.about(rest, "block " + std::to_string(blocks + 1) +
                                 " is cut short: " + quote(rest) + " has no effect");
    }
    if (complaints.empty() && switches.is_on(0) && !switches.in_use()) {
      complaints.about_file("dynamic skim is on, but for nobody");
    }
    if (complaints.empty() && switches.in_use() && blocks == 0) {
      complaints.about_file("dynamic skim is on, but has no condition");
    }
  }
  complaints.tell(findings, switches.in_use() ? counted(blocks, "condition") : "off",
                  "save the skim settings again in the administration");
}

}  // namespace vantrel::inspect
