// What the run would do, computed by the run's own phases without writing a byte: from what is
// stored, or as a run started now would, hit logs and all.
#pragma once

#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "out/planning.h"
#include "run/driver.h"
#include "run/events.h"
#include "screen.h"

namespace vantrel::inspect {

// Which run is meant.
enum class Moment {
  between_runs,  // the list that the stored windows give in the hour of now: what stands in
                 // d/out.lst
  next_run,      // the same in the hour of the next run
  run_now,       // a run started now: guards, histories and the hit logs it would read
};

struct Assumptions {
  Moment moment = Moment::between_runs;
  // Files of the site and the files that stand for them; both must exist, the latter as absolute
  // paths.
  std::map<std::string, std::string> with;
  std::optional<int> hour;  // for quotas; otherwise that of the run
};

// An event the run would write.
struct ForeseenEvent {
  const Event* event;
  std::string subject;
};

struct Forecast {
  bool reaches_list = false;
  std::string ending;  // otherwise: the event the run would end with, or why it ends silently
  std::vector<ForeseenEvent> events;
  Run run;                          // as it stands when the list is written, or where it ended
  std::vector<TradeWork> unranked;  // the work array before planning
  std::vector<TradeScore> scores;   // by position in it
  std::vector<std::size_t> ranked;  // positions in it, best first
  std::vector<std::size_t> admitted_above;  // by rank: entries above that may get a weight
  std::string list;                         // the bytes of d/out.lst
  // Errors of the formula, each with the position of the trade it was found in.
  struct FormulaError {
    std::size_t position;
    ExpressionError error;
  };
  std::vector<FormulaError> formula_errors;

  // The entry as planning left it, with its weights.
  [[nodiscard]] const TradeWork& planned(std::size_t rank) const { return run.store.works[rank]; }
};

// The start of the next run: now, or the next minute if this one had its run.
[[nodiscard]] std::time_t next_start();

[[nodiscard]] Forecast foresee(const Assumptions& assumptions = {});

// Throws Unavailable with the ending when there would be no list.
[[nodiscard]] Forecast foresee_list(const Assumptions& assumptions = {});

}  // namespace vantrel::inspect
