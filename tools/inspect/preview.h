// The list the next run would write, beside the present one.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foresee.h"
#include "screen.h"

namespace vantrel::inspect {

// Under which assumptions a list is foreseen.
struct ForesightQuery {
  // Files of the site and what stands for them, as absolute paths.
  std::vector<std::pair<std::string, std::string>> with;
  std::optional<int> hour;
  bool hits = false;  // as a run started now, hit logs and all
};
// otherwise: what is meant without hits. Throws WrongUsage for a file that cannot be replaced.
[[nodiscard]] Assumptions assumptions_of(const ForesightQuery& query, Moment otherwise);

struct PreviewQuery {
  ForesightQuery foresight;
  bool changed = false;   // the largest changes first
  std::string list_file;  // gets the bytes of the list; empty for none
};

// "status" is 2, with the "ending", when there would be no list. Throws WrongUsage for a file that
// cannot be replaced, Unavailable when the list cannot be written to its file.
[[nodiscard]] Json preview_view(const PreviewQuery& query);
void print_preview(const Json& view);

}  // namespace vantrel::inspect
