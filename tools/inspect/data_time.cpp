#include "data_time.h"

#include <algorithm>

#include "base/clock.h"
#include "site.h"
#include "store/summary.h"

namespace vantrel::inspect {
namespace {

constexpr std::time_t kStaleSeconds = 3 * 60;

}  // namespace

void add_data_time(Json& view) {
  // A run can be let in and end before it stores; a file of windows can be newer than its contents
  // when the administration wrote it.
  const std::time_t now = wall_clock();
  const std::time_t let_in = last_run_or_now();
  const std::time_t stored = std::min(modified(kSummaryFile).value_or(now), let_in);
  view["last_run"] = time_text(let_in);
  view["stored"] = time_text(stored);
  view["age_seconds"] = now - stored;
  view["stale"] = now - stored > kStaleSeconds;
}

std::string data_time_words(const Json& view) {
  std::string words = cell(view["stored"]);
  if (view["stale"].get<bool>()) {
    const std::string age = duration_text(view["age_seconds"].get<std::time_t>());
    words += coloured(Colour::yellow, ": " + age + " old, no run has stored anything since");
  }
  return words;
}

}  // namespace vantrel::inspect
