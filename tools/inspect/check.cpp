#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdint>
#include <iostream>
#include <utility>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/text.h"
#include "findings.h"
#include "run/run_guard.h"
#include "site.h"
#include "store/summary.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kSeverityNames[] = {"ok", "warning", "fatal"};
constexpr const char* kVerdicts[] = {
    "The next run would reach its end.",
    "The next run would reach its end, but something is off.",
    "The next run would end early.",
};
constexpr std::size_t kLargeLog = std::size_t{64} << 20;

void check_last_run(Findings& findings) {
  constexpr const char* kLastRun = "l/sys/cron.last";
  const auto last = modified(kLastRun);
  if (!last) {
    findings.off("scheduler", "no run has been let in yet",
                 "start vantrel-cron once a minute with this directory as working directory");
    return;
  }
  const std::time_t age = wall_clock() - *last;
  const std::string when = "the last run was let in at " + time_text(*last);
  if (age > 2 * 60) {
    findings.off("scheduler", when + ", " + duration_text(age) + " ago",
                 "see that the scheduler runs and starts vantrel-cron every minute");
  } else if (age < -60) {
    findings.off("scheduler", when + ", which is in the future", "set the machine's clock");
  } else {
    findings.fine("scheduler", when);
  }
}

void check_sleep(Findings& findings) {
  const std::string text = read_file("d/sleep").value_or("");
  const std::int32_t second = to_int(text);
  if (second >= 2 && second <= 49) {
    findings.off(
        "d/sleep",
        "a run started before second " + std::to_string(second) + " of its minute ends silently",
        "put 0 into d/sleep, or have the scheduler start the run later in the minute");
  }
}

}  // namespace

void Findings::add(Severity severity, const std::string& subject, const std::string& text,
                   const std::string& remedy) {
  const int level = static_cast<int>(severity);
  status_ = std::max(status_, level);
  list_.push_back({{"severity", kSeverityNames[level]},
                   {"subject", subject},
                   {"finding", text},
                   {"remedy", remedy}});
}

void Findings::fine(const std::string& subject, const std::string& text) {
  add(Severity::fine, subject, text, "");
}

void Findings::off(const std::string& subject, const std::string& text, const std::string& remedy) {
  add(Severity::off, subject, text, remedy);
}

void Findings::ends_run(const std::string& subject, const std::string& text,
                        const std::string& remedy) {
  add(Severity::ends_run, subject, text, remedy);
}

void Findings::as_event(const std::string& subject, const Event& event) {
  add(event.level == "1" ? Severity::ends_run : Severity::off, subject, std::string(event.meaning),
      std::string(event.remedy));
}

std::string examined(Findings& findings, const std::string& path, const Event& event) {
  auto text = read_file(path);
  if (!text) {
    findings.as_event(path, event);
  } else if (!is_regular(path)) {
    findings.off(path, "is no file; the run takes it for an empty one", "put the file back");
  }
  return text.value_or("");
}

void check_scheduler(Findings& findings) {
  check_last_run(findings);
  check_sleep(findings);
  constexpr const char* kRemedy = "give the run's user write permission on it and on l/sys/";
  if (!may_create_or_write(kRunHistoryFile)) {
    findings.off(kRunHistoryFile,
                 "cannot be written: every run counts again what came in since its last line",
                 kRemedy);
  }
  if (!may_create_or_write("l/sys/cron.last")) {
    findings.off("l/sys/cron.last", "cannot be written: a second run in a minute is let in",
                 kRemedy);
  }
}

void check_disk_and_logs(Findings& findings) {
  constexpr const char* kScratch = "l/hdd.check";
  if (!may_create_or_write(kScratch)) {
    findings.as_event(kScratch, event::disk_write_test);
  } else if (exists(kScratch) && !may_read(kScratch)) {
    findings.as_event(kScratch, event::disk_read_test);
  } else if (exists(kScratch) && !is_regular(kScratch)) {
    findings.as_event(kScratch, event::disk_full);
  }
  for (const auto& [directory, needed] :
       {std::pair("l", std::uint64_t{1}), {"d/t", std::uint64_t{file_size(kSummaryFile)}}}) {
    struct statvfs disk {};
    if (::statvfs(directory, &disk) != 0) continue;
    const auto free = ::geteuid() == 0 ? disk.f_bfree : disk.f_bavail;
    if (free * disk.f_frsize < needed) findings.as_event("disk", event::disk_full);
  }
  for (const char* directory : {"l/in", "l/out"}) {
    if (!is_directory(directory) || !may_read(directory)) {
      findings.off(directory, "the hit logs cannot be read; nothing is counted",
                   "make the directory, readable and writable for the run's user");
    } else if (!may_write(directory)) {
      findings.off(directory, "old hit logs cannot be removed; the disk will fill up",
                   "give the run's user write permission on the directory");
    }
  }
  constexpr const char* kLog = "l/sys/sys.log";
  if (!may_create_or_write(kLog)) {
    findings.off(kLog, "cannot be written: no event of the run is kept",
                 "give the run's user write permission on it and on l/sys/");
  } else if (file_size(kLog) > kLargeLog) {
    findings.off(kLog, std::to_string(file_size(kLog) >> 20) + " MiB long",
                 "have it rotated; an example comes with the program");
  }
}

Json check_view() {
  Findings findings;
  TradeStore store;
  check_scheduler(findings);
  check_disk_and_logs(findings);
  check_store(findings, store);
  check_history(findings, store);
  check_traffic_settings(findings);
  check_main_settings(findings);
  check_outgoing(findings);
  check_alerts(findings);
  check_programs(findings);
  return {{"status", findings.status()},
          {"verdict", kVerdicts[findings.status()]},
          {"checked_as_root", ::geteuid() == 0},
          {"findings", findings.list()}};
}

void print_check(const Json& view) {
  for (const Json& finding : view["findings"]) {
    const std::string& severity = finding["severity"].get_ref<const std::string&>();
    const Colour colour = severity == kSeverityNames[0]   ? Colour::green
                          : severity == kSeverityNames[1] ? Colour::yellow
                                                          : Colour::red;
    std::cout << coloured(colour, severity) << ": " << cell(finding["subject"]) << ": "
              << cell(finding["finding"]);
    if (finding["remedy"] != "") std::cout << " -> " << cell(finding["remedy"]);
    std::cout << '\n';
  }
  if (view["checked_as_root"] == true) {
    std::cout << "Permissions were looked at as root; run this as the user of the run.\n";
  }
  std::cout << coloured(Colour::bold, cell(view["verdict"])) << '\n';
}

}  // namespace vantrel::inspect
