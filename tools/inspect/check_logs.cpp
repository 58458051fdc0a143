#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/numbers.h"
#include "checks.h"
#include "site.h"
#include "traffic/hit_logs.h"

namespace vantrel::inspect {
namespace {

constexpr std::time_t kMinute = 60;
constexpr std::time_t kHour = 60 * kMinute;

// The logs of one direction. Names of minutes sort like the minutes.
struct Logs {
  std::vector<std::string> names;  // sorted
  std::size_t others = 0;          // names that are no minutes
};

bool is_minute(std::string_view name) {
  constexpr std::string_view kShape = "00-000-00-00";
  return std::equal(name.begin(), name.end(), kShape.begin(), kShape.end(),
                    [](char c, char s) { return s == '0' ? is_digit(c) : c == s; });
}

Logs list_logs(const char* directory) {
  Logs logs;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(directory), ::closedir);
  while (const dirent* entry = folder ? ::readdir(folder.get()) : nullptr) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    if (is_minute(name)) {
      logs.names.emplace_back(name);
    } else {
      ++logs.others;
    }
  }
  std::sort(logs.names.begin(), logs.names.end());
  return logs;
}

std::string name_of(std::time_t moment) { return format_time(kMinuteStampFormat, moment); }

// Days of a year are counted, so that a minute in seconds is as far from another as it should be,
// but for changes of the clock.
std::time_t minute_of(std::string_view name) {
  std::tm parts{};
  parts.tm_year = 100 + to_int(name.substr(0, 2));
  parts.tm_mday = to_int(name.substr(3, 3));  // of a January without end
  parts.tm_hour = to_int(name.substr(7, 2));
  parts.tm_min = to_int(name.substr(10, 2));
  parts.tm_isdst = -1;
  return std::mktime(&parts);
}

// The request scripts name a log by the minute in which they write it. Half an hour between the
// name and the last writing is another time zone.
void check_zone(Findings& findings, const std::string& directory, const Logs& logs) {
  const std::time_t now = wall_clock();
  const std::string& newest = logs.names.back();
  const std::string remedy =
      "give the web server and the scheduler's job the same time zone (TZ, /etc/localtime)";
  if (newest > name_of(now + 2 * kMinute)) {
    findings.lost(directory,
                  "the newest log is named " + newest + ", a minute to come (now it is " +
                      name_of(now) +
                      "): the request scripts have another time zone or clock, nothing is counted "
                      "in its minute",
                  remedy);
    return;
  }
  // Copied logs have the time of the copy: one whose name fits its time is proof enough.
  std::string wrong;
  for (std::size_t i = logs.names.size(); i > 0 && i + 200 > logs.names.size(); --i) {
    const std::string& name = logs.names[i - 1];
    const std::time_t written = modified(directory + "/" + name).value_or(0);
    if (written > now || written < now - 3 * kHour) continue;
    if (std::abs(minute_of(name) - written) < 25 * kMinute) return;
    if (wrong.empty()) wrong = name + " was written at " + time_text(written);
  }
  if (wrong.empty()) return;
  findings.lost(directory,
                "the log " + wrong +
                    ": the request scripts have another time zone than the run, nothing is counted",
                remedy);
}

void check_age(Findings& findings, const std::string& directory, const Logs& logs,
               const TradeStore& store) {
  constexpr std::time_t kLong = 3 * kHour;
  const std::time_t now = wall_clock();
  if (!logs.names.empty() && logs.names.back() >= name_of(now - kLong)) return;
  // A site without traffic has no logs either.
  const slot::Counter counter = directory == "l/in" ? slot::rin : slot::clk;
  const bool has_traffic =
      std::any_of(store.works.begin(), store.works.end(),
                  [counter](const TradeWork& work) { return work.last24[counter] > 0; });
  if (!has_traffic && logs.names.empty()) return;
  findings.lost(directory,
                logs.names.empty()
                    ? "holds no log, though there was traffic within the last 24 hours"
                    : "the newest log is " + logs.names.back() + ", " +
                          duration_text(now - minute_of(logs.names.back())) + " old",
                "see that the request scripts run and may write " + directory);
}

void check_leftovers(Findings& findings, const std::string& directory, const Logs& logs) {
  constexpr std::size_t kMany = 1000;
  const std::string oldest_due = name_of(wall_clock() - 26 * kHour);
  const auto old = static_cast<std::size_t>(
      std::lower_bound(logs.names.begin(), logs.names.end(), oldest_due) - logs.names.begin());
  if (old < kMany) return;
  findings.off(directory,
               counted(old, "log") +
                   " older than 25 hours: runs were missing when they were to be removed, and no "
                   "later one looks for them",
               "find " + directory + " -type f -mmin +1600 -delete");
}

// What a run now would read and what it could not.
void check_readable(Findings& findings, const std::string& directory, const Logs& logs) {
  const std::string oldest = name_of(wall_clock() - kHour);
  NameList unreadable;
  NameList no_files;
  for (auto name = std::lower_bound(logs.names.begin(), logs.names.end(), oldest);
       name != logs.names.end(); ++name) {
    const std::string path = directory + "/" + *name;
    if (!may_read(path)) unreadable.add(path);
    if (exists(path) && !is_regular(path)) no_files.add(path);
  }
  if (!unreadable.empty()) {
    findings.lost(directory, "logs that the run may not read are not counted: " + unreadable.text(),
                  "let the request scripts write them readable for the run's user (umask, group)");
  }
  if (!no_files.empty()) {
    findings.lost(directory, "logs that are no files are not counted: " + no_files.text(),
                  "remove them");
  }
}

// True when the logs in it can be read.
bool check_folder(Findings& findings, const std::string& directory) {
  const auto uncounted = [&](const std::string& text, const std::string& remedy) {
    Finding finding = finding_off(directory, text, remedy);
    finding.question = Question::loss;
    findings.refused(directory + "/.", Need::read, finding);
    return false;
  };
  const std::string make = "make the directory, readable and writable for the run's user";
  if (!exists(directory)) return uncounted("nothing is counted", make);
  if (!is_directory(directory)) return uncounted("nothing is counted", make);
  if (!may_enter(directory) || !may_read(directory)) {
    return uncounted("the hit logs cannot be read: nothing is counted",
                     "give the run's user read and search permission on the directory");
  }
  if (!may_write(directory)) {
    findings.refused(directory, Need::write,
                     finding_off(directory, "old hit logs cannot be removed; the disk will fill up",
                                 "give the run's user write permission on the directory"));
  }
  return true;
}

}  // namespace

void check_hit_logs(Findings& findings, const TradeStore& store) {
  for (const char* directory : {"l/in", "l/out"}) {
    if (!check_folder(findings, directory)) continue;
    const Logs logs = list_logs(directory);
    if (!logs.names.empty()) check_zone(findings, directory, logs);
    if (!findings.is_off(directory)) check_age(findings, directory, logs, store);
    check_leftovers(findings, directory, logs);
    check_readable(findings, directory, logs);
    if (logs.others > 0) {
      findings.off(directory,
                   counted(logs.others, "file") + " not named by a minute: no run reads them",
                   "let the request scripts name logs as 26-320-13-07");
    }
    findings.fine(directory, counted(logs.names.size(), "log"));
  }
}

}  // namespace vantrel::inspect
