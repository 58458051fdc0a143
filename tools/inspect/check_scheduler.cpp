#include <algorithm>
#include <set>
#include <string>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/start_clock.h"
#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "run/run_guard.h"
#include "run/sleep_gate.h"
#include "site.h"
#include "traffic/hit_logs.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kScheduler = "scheduler";
constexpr double kMostCaughtUp = 60.0;  // minutes; a longer pause is not made up for
constexpr const char* kWritable = "give the run's user write permission on it and on l/sys/";

bool is_stamp(std::string_view text) {
  return text.size() == 8 && std::all_of(text.begin(), text.end(), is_digit);
}

// A run that was let in, or refused, in this minute and the coming ones: how many are refused, and
// when the last of them is.
void check_coming_minutes(Findings& findings, std::string_view text) {
  constexpr int kLookedAt = 24 * 60;
  const std::time_t first = expected_start();
  int refused = 0;
  bool next_is_refused = false;
  std::time_t last = first;
  for (int minute = 0; minute < kLookedAt; ++minute) {
    const std::time_t moment = first + minute * 60;
    RunHistory history;
    history.run_stamp = format_time(kRunStampFormat, moment);
    if (!take_stamps(history, text)) continue;
    ++refused;
    next_is_refused |= minute == 0;
    last = moment;
  }
  if (refused == 0) return;
  const std::string what = "holds " + counted(static_cast<std::size_t>(refused), "stamp") +
                           " of minutes to come, up to " + time_text(last) +
                           ": a run in one of them is refused as a double one";
  const std::string remedy = "the clock was set back, or lines were added: take the lines from " +
                             time_text(first) + " on out of l/sys/cron.run";
  if (next_is_refused) {
    findings.ends_run(kRunHistoryFile, what, remedy);
  } else {
    findings.off(kRunHistoryFile, what, remedy);
  }
}

// Lines that are none, and minutes without a run between the others.
void check_stamps(Findings& findings, std::string_view text) {
  RunHistory history;
  static_cast<void>(take_stamps(history, text));
  NameList garbage, gaps, again;
  bool lost = false;
  std::string before;
  std::set<std::string> seen;
  for (const std::string& stamp : history.stamps) {
    if (!is_stamp(stamp)) {
      garbage.add(quote(stamp));
      continue;
    }
    const bool new_year = before.starts_with("12") && stamp.starts_with("01");
    if (!seen.insert(stamp).second || (stamp < before && !new_year)) again.add(stamp);
    const double minutes = before.empty() ? 1.0 : catch_up_minutes({before, stamp});
    if (minutes > 1.0) gaps.add("before " + stamp);
    lost |= minutes >= kMostCaughtUp;
    before = stamp;
  }
  if (!garbage.empty()) {
    findings.off(kRunHistoryFile,
                 counted(garbage.count(), "line") + " no run wrote: " + garbage.text() +
                     "; the run behind one reads a single minute of logs",
                 "take the lines out; a power cut or another program left them");
  }
  if (!again.empty() && !findings.is_off(kRunHistoryFile)) {  // no stamps to come either
    findings.off(kRunHistoryFile,
                 counted(again.count(), "stamp") + " twice or behind a later one: " + again.text() +
                     "; as long as they are among the last 40, every run finds a gap there and "
                     "synchronises",
                 "the clock was set back, or a run was killed while it shortened the file in "
                 "place: take the older lines out");
  }
  if (!text.empty() && !text.ends_with('\n')) {
    findings.off(kRunHistoryFile,
                 "its last line has no end: the next run's note becomes a part of it",
                 "add a line feed at the end of the file");
  }
  if (gaps.empty()) return;
  findings.add({Severity::off, lost ? Question::loss : Question::none, kRunHistoryFile,
                counted(gaps.count(), "gap") + " in the last " +
                    counted(history.stamps.size(), "run") + ", " + gaps.text() +
                    (lost ? "; of an hour or more only 60 minutes were counted afterwards"
                          : "; the run behind it counted what had come in"),
                "see vantrel-inspect runs; a reboot explains one, a busy machine many", "", 0});
}

void check_last_run(Findings& findings) {
  const auto last = modified(kLastRunFile);
  if (!last) {
    findings.off(kScheduler, "no run has been let in yet",
                 "start vantrel-cron once a minute with this directory as working directory");
    return;
  }
  const std::time_t age = wall_clock() - *last;
  const std::string when = "the last run was let in at " + time_text(*last);
  const std::string remedy = "see that the scheduler runs and starts vantrel-cron every minute";
  if (age > 60 * 60) {
    findings.lost(kScheduler,
                  when + ", " + duration_text(age) +
                      " ago; the next one counts the last 60 minutes, what came in before is lost",
                  remedy);
  } else if (age > 2 * 60) {
    findings.off(kScheduler, when + ", " + duration_text(age) + " ago", remedy);
  } else if (age < -60) {
    findings.off(kScheduler, when + ", which is in the future", "set the machine's clock");
  } else {
    findings.fine(kScheduler, when);
  }
}

void check_sleep(Findings& findings) {
  constexpr const char* kSleep = "d/sleep";
  const std::string second = std::to_string(to_int(read_file(kSleep).value_or("")));
  const std::string what = "a run started before second " + second + " of its minute ends silently";
  const std::string remedy =
      "put 0 into d/sleep, or have the scheduler start the run later in the minute";
  if (!sleep_gate_closed(StartClock{})) return;  // open for second 0 it is always open
  if (!exists(kLastRunFile)) {
    findings.off(kSleep, what, remedy);
  } else if (const StartClock next = start_clock_of(expected_start()); sleep_gate_closed(next)) {
    findings.ends_run(kSleep,
                      what + ", and the last one was let in at second " +
                          std::to_string(local_time(expected_start()).tm_sec),
                      remedy);
  } else {
    findings.note(kSleep, what + "; the last one came later");
  }
}

}  // namespace

std::time_t expected_start() {
  const std::time_t now = wall_clock();
  const int second_now = local_time(now).tm_sec;
  const auto last = modified(kLastRunFile);
  bool had_one = ran_this_minute();
  if (!may_create_or_write(kLastRunFile) || (last && *last > now)) {
    // Then only the history tells whether this minute had its run.
    RunHistory history;
    history.run_stamp = format_time(kRunStampFormat, now);
    had_one |= take_stamps(history, read_file(kRunHistoryFile).value_or(""));
  }
  return now - second_now + (had_one ? 60 : 0) + (last ? local_time(*last).tm_sec : second_now);
}

void check_scheduler(Findings& findings) {
  check_last_run(findings);
  check_sleep(findings);
  if (!may_create_or_write(kLastRunFile)) {
    findings.refused(
        kLastRunFile, Need::create,
        finding_off(kLastRunFile, "cannot be written: a second run in a minute is let in",
                    kWritable));
  }
}

void check_run_history(Findings& findings) {
  if (!may_create_or_write(kRunHistoryFile)) {
    Finding finding = finding_off(
        kRunHistoryFile,
        "cannot be written: every run counts again what came in since its last line", kWritable);
    finding.question = Question::loss;
    findings.refused(kRunHistoryFile, Need::create, finding);
    return;
  }
  if (!exists(kRunHistoryFile)) {
    findings.note(kRunHistoryFile, "is not there yet: the next run counts one minute");
    return;
  }
  const auto text = read_file(kRunHistoryFile);
  if (!text) {
    findings.refused(kRunHistoryFile, Need::read,
                     finding_off(kRunHistoryFile,
                                 "cannot be read: after a pause one minute is counted instead of "
                                 "all",
                                 "give the run's user read permission on it"));
    return;
  }
  check_coming_minutes(findings, *text);
  check_stamps(findings, *text);
  findings.fine(kRunHistoryFile, "no gap, no double run");
}

}  // namespace vantrel::inspect
