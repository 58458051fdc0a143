#include "run/end_check.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/replace_file.h"
#include "base/shell.h"
#include "base/text.h"
#include "run/event_log.h"
#include "store/summary.h"

namespace vantrel {
namespace {

// Texts of line 5 of d/set. kInconsistent lives in memory only.
constexpr std::string_view kRequested = "1";
constexpr std::string_view kNormal = "2";
constexpr std::string_view kCheckTotals = "3";
constexpr std::string_view kInconsistent = "666";

constexpr std::size_t kMostRuns = 30;  // in the run history

bool summary_has_negative_values() {
  FileBuffer file;
  static_cast<void>(file.read(kSummaryFile));
  Pieces pieces(file.text());
  for (std::string_view piece; pieces.next(piece);) {
    if (to_int(piece) < 0) return true;
  }
  return false;
}

// Hits in the last hour but none in the last day.
bool windows_disagree(const std::vector<TradeWork>& works) {
  return std::any_of(works.begin(), works.end(), [](const TradeWork& work) {
    return work.last60[slot::rin] > 0 && work.last24[slot::rin] == 0;
  });
}

// True when one of the minutes before this one, as far as the history reaches and at most 39 of
// them, has no run. A history of fewer than ten runs says nothing.
bool history_has_gap(const RunHistory& history) {
  constexpr std::size_t kFewestRuns = 10;
  if (history.count < kFewestRuns) return false;
  const std::time_t now = wall_clock();
  const std::vector<std::string>& stamps = history.stamps;
  for (std::size_t i = 1; i < stamps.size(); ++i) {
    const std::time_t minute = now - static_cast<std::time_t>(i) * 60;
    if (stamps[stamps.size() - 1 - i] != format_time(kRunStampFormat, minute)) return true;
  }
  return false;
}

// The newest stamps, when there are too many. A run that has lasted for minutes must not take away
// those of the runs that came and went: when the file is not as this run left it, it holds them.
std::optional<std::string> shortened(RunHistory history, std::string_view text) {
  constexpr std::size_t kRunsKept = 20;
  const std::size_t own_note = history.run_stamp.size() + 1;
  if (text.size() != history.bytes && text.size() != history.bytes + own_note) {
    take_stamps(history, text);
  }
  if (history.count <= kMostRuns) return std::nullopt;
  std::string newest;
  for (std::size_t i = history.stamps.size() - kRunsKept; i < history.stamps.size(); ++i) {
    newest.append(history.stamps[i]).append("\n");
  }
  return newest;
}

void shorten_history(const RunHistory& history) {
  const auto change = [&history](std::string_view text) { return shortened(history, text); };
  // Not in place: written over but not yet cut, or cut first, it would hold runs twice or end with
  // an old one, whose next run counts the minutes since then again.
  if (!update_file(kRunHistoryFile, change)) report(event::run_history_unwritable);
}

// Four times a day the databases are synchronised without being asked.
bool is_synchronisation_time(const StartClock& clock) {
  return clock.run_minute == 30 && (clock.run_hour == 5 || clock.run_hour == 11 ||
                                    clock.run_hour == 17 || clock.run_hour == 23);
}

bool synchronisation_due(std::string_view state, const StartClock& clock, double catch_up_minutes) {
  return state == kRequested || (state == kNormal && is_synchronisation_time(clock)) ||
         state == kInconsistent || catch_up_minutes > 1.0;
}

void start_companions(const StartClock& clock) {
  if (clock.run_minute % 3 == 0) run_command("./sh_hta.cgi run");
  if (clock.run_minute % 2 == 0) run_command("./sh_top.cgi run");
}

}  // namespace

void finish_run(const StartClock& clock, const RunHistory& history, double catch_up_minutes,
                const std::vector<TradeWork>& works, const MainSettings& settings) {
  std::string_view state = settings.sync_state;
  if (state == kCheckTotals && summary_has_negative_values()) state = kInconsistent;
  if (clock.run_minute % 10 == 0 && windows_disagree(works)) state = kInconsistent;
  if (history_has_gap(history)) {
    state = kInconsistent;
    report(event::gap_found);
  }
  if (history.count > kMostRuns) shorten_history(history);
  if (synchronisation_due(state, clock, catch_up_minutes)) {
    if (state == kRequested) report(event::synchronizing);
    run_command("./sh_sync.cgi run");
    if (state != kNormal) write_sync_state(settings);
  }
  start_companions(clock);
}

}  // namespace vantrel
