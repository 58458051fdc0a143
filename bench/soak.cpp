// Simulated days without a gap: random traffic every minute, a run every minute, and after each run
// the files it left against a brute-force count of the same records.
//
//   vantrel-soak [DAYS [SEED]]     DAYS days after the first one, which fills the windows
//
// Ends with status 1 at the first difference; the site is then left for a look.
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/shell.h"
#include "run/driver.h"
#include "soak_site.h"
#include "soak_traffic.h"

namespace {

using soak::Counts;
using soak::EntryCounts;
using soak::kEntries;
using soak::kMinutesPerDay;

constexpr std::time_t kStart = 1830211200;  // 2027-12-31 00:00 UTC: New Year behind the first day
constexpr std::time_t kDay = 86400;

std::time_t simulated_now = kStart;

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error(what); }

void expect(bool holds, const std::string& what) {
  if (!holds) fail(what);
}

// What the soak itself knows; nothing of it is read from the site.
struct Truth {
  std::vector<EntryCounts> minutes = std::vector<EntryCounts>(kMinutesPerDay);  // a ring
  std::size_t newest = 0;
  std::vector<std::vector<Counts>> history = std::vector<std::vector<Counts>>(kEntries);
  std::vector<std::pair<std::time_t, std::string>> backups;  // made when, file name
  std::set<std::string> logs;
};

void add(Counts& sum, const Counts& counts) {
  for (std::size_t k = 0; k < sum.size(); ++k) sum[k] += counts[k];
}

Counts sum_of_minutes(const Truth& truth, std::size_t entry, std::size_t minutes) {
  Counts sum{};
  for (std::size_t back = 0; back < minutes; ++back) {
    const std::size_t at = (truth.newest + kMinutesPerDay - back) % kMinutesPerDay;
    add(sum, truth.minutes[at][entry]);
  }
  return sum;
}

Counts sum_of_week(const std::vector<Counts>& history) {
  Counts sum{};
  for (std::size_t i = history.size() > 7 ? history.size() - 7 : 0; i < history.size(); ++i) {
    add(sum, history[i]);
  }
  return sum;
}

std::string summary_line(const Truth& truth, std::size_t entry) {
  std::string line = "|";
  line += std::to_string(soak::id_of(entry));
  for (const Counts& window :
       {sum_of_minutes(truth, entry, 60), sum_of_minutes(truth, entry, kMinutesPerDay),
        sum_of_week(truth.history[entry])}) {
    for (const std::int32_t value : window) line.append("|").append(std::to_string(value));
  }
  return line + "|\n";
}

void check_summary(const Truth& truth) {
  std::string expected;
  for (std::size_t entry = 0; entry < kEntries; ++entry) expected += summary_line(truth, entry);
  const std::string found = soak::read_file("d/t/sum");
  if (found == expected) return;
  const auto differs = std::mismatch(expected.begin(), expected.end(), found.begin(), found.end());
  const auto line = std::count(expected.begin(), differs.first, '\n');
  const auto field =
      std::count(std::find(std::make_reverse_iterator(differs.first), expected.rend(), '\n').base(),
                 differs.first, '|') -
      2;
  fail("d/t/sum: line " + std::to_string(line + 1) + ", counter " + std::to_string(field) +
       " of 0-41 differs\nexpected:\n" + expected + "found:\n" + found);
}

void check_logs(const Truth& truth) {
  for (const char* folder : {"l/in", "l/out"}) {
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      found.insert(entry.path().filename().string());
    }
    if (found == truth.logs) continue;
    std::vector<std::string> odd;
    std::set_symmetric_difference(found.begin(), found.end(), truth.logs.begin(), truth.logs.end(),
                                  std::back_inserter(odd));
    fail(std::string(folder) + ": should " + (found.contains(odd[0]) ? "not " : "") + "hold " +
         odd[0]);
  }
}

// The programs this minute's run has to start, in their order.
std::string expected_calls(const std::tm& now, const std::string& hour_stamp) {
  std::string calls;
  if ((now.tm_hour == 11 || now.tm_hour == 23) && now.tm_min == 59) {
    calls += "tar zcf d/backup/" + hour_stamp + ".tar.gz d/t d/gr d/h d/tpl d/css\n";
  }
  if (now.tm_hour % 6 == 5 && now.tm_min == 30) calls += "sh_sync.cgi run\n";
  if (now.tm_min % 3 == 0) calls += "sh_hta.cgi run\n";
  if (now.tm_min % 2 == 0) calls += "sh_top.cgi run\n";
  return calls;
}

void check_calls(const std::string& expected) {
  const std::string found = soak::read_file("calls");
  expect(found == expected, "programs started:\n" + found + "expected:\n" + expected);
  soak::write_file("calls", "");
}

void check_backups(Truth& truth, const std::tm& now, const std::string& hour_stamp) {
  if (now.tm_hour == 23 && now.tm_min == 20) {
    std::sort(truth.backups.rbegin(), truth.backups.rend());
    truth.backups.resize(std::min(truth.backups.size(), soak::kBackupsKept));
  }
  if (now.tm_hour % 12 == 11 && now.tm_min == 59) {
    truth.backups.emplace_back(simulated_now, hour_stamp + ".tar.gz");
    soak::set_file_time("d/backup/" + hour_stamp + ".tar.gz", simulated_now);
  }
  std::set<std::string> expected;
  for (const auto& backup : truth.backups) expected.insert(backup.second);
  std::set<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator("d/backup")) {
    found.insert(entry.path().filename().string());
  }
  expect(found == expected, "d/backup holds " + std::to_string(found.size()) + " files, not the " +
                                std::to_string(expected.size()) + " that should be there");
}

void check_history(Truth& truth, const std::tm& now) {
  if (now.tm_hour != 23 || now.tm_min != 59) return;
  for (std::size_t entry = 0; entry < kEntries; ++entry) {
    truth.history[entry].push_back(sum_of_minutes(truth, entry, kMinutesPerDay));
    const std::string line = soak::history_line(simulated_now, truth.history[entry].back());
    const std::string path = "d/h/" + soak::name_of(entry) + ".his";
    expect(soak::read_file(path).ends_with(line), path + ": the last line is not\n" + line);
  }
  soak::set_file_time("d/h/all.his", simulated_now);
}

// The logs of the minute before now, as the request scripts would have left them.
void add_traffic(Truth& truth, std::mt19937& random, std::time_t minute) {
  const soak::Minute traffic = soak::make_minute(random);
  const std::string stamp = vantrel::format_time("%y-%j-%H-%M", minute);
  soak::write_file("l/in/" + stamp, traffic.in_log);
  soak::write_file("l/out/" + stamp, traffic.out_log);
  truth.logs.insert(stamp);
  truth.newest = (truth.newest + 1) % kMinutesPerDay;
  truth.minutes[truth.newest] = traffic.counts;
}

void one_minute(Truth& truth, std::mt19937& random, std::time_t minute) {
  add_traffic(truth, random, minute - 60);
  simulated_now = minute + static_cast<std::time_t>(random() % 53);
  vantrel::maintenance_run();

  const std::tm now = vantrel::local_time(minute);
  const std::string hour_stamp = vantrel::format_time("%y-%j-%H", minute - 60);
  truth.logs.erase(vantrel::format_time("%y-%j-%H-%M", minute - 60 - 25 * 3600));
  check_summary(truth);
  check_logs(truth);
  check_calls(expected_calls(now, hour_stamp));
  check_backups(truth, now, hour_stamp);
  check_history(truth, now);
  const std::string events = soak::read_file("l/sys/sys.log");
  expect(events.empty(), "events:\n" + events);
  soak::set_file_time("l/sys/cron.last", simulated_now);
}

void begin(Truth& truth, std::mt19937& random) {
  for (auto& days : truth.history) {
    days.resize(random() % 12);
    for (Counts& day : days) {
      for (std::int32_t& value : day) value = static_cast<std::int32_t>(random() % 100000);
    }
  }
  soak::lay_out_site(truth.history, kStart);
  for (int i = 1; i <= 89; ++i) {
    const std::string name = "older-" + std::to_string(i) + ".tar.gz";
    truth.backups.emplace_back(kStart - i * kDay / 2, name);
    soak::write_file("d/backup/" + name, "");
    soak::set_file_time("d/backup/" + name, kStart - i * kDay / 2);
  }
}

void soak_days(int days, unsigned seed) {
  std::mt19937 random(seed);
  Truth truth;
  begin(truth, random);
  vantrel::set_wall_clock([] { return simulated_now; });
  for (std::time_t minute = kStart; minute < kStart + (days + 1) * kDay; minute += 60) {
    try {
      one_minute(truth, random, minute);
    } catch (const std::exception& difference) {
      fail("run of " + vantrel::format_time("%Y-%m-%d %H:%M:%S", simulated_now) + ", seed " +
           std::to_string(seed) + ": " + difference.what());
    }
    if ((minute + 60) % kDay == 0) {
      std::printf("%s: 1440 runs as counted\n", vantrel::format_time("%Y-%m-%d", minute).c_str());
      std::fflush(stdout);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int days = argc > 1 ? std::atoi(argv[1]) : 1;
  const unsigned seed = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1;
  if (days < 1) {
    std::fprintf(stderr, "usage: vantrel-soak [DAYS [SEED]]\n");
    return 2;
  }
  std::string site = (std::filesystem::temp_directory_path() / "vantrel-soak-XXXXXX").string();
  try {
    if (::mkdtemp(site.data()) == nullptr) fail("cannot make " + site);
    std::filesystem::current_path(site);
    const char* path = std::getenv("PATH");
    ::setenv("PATH", (site + "/bin:" + (path != nullptr ? path : "/usr/bin:/bin")).c_str(), 1);
    ::setenv("TZ", "UTC", 1);
    vantrel::survive_failed_writes();
    soak_days(days, seed);
  } catch (const std::exception& difference) {
    std::fprintf(stderr, "%s\nThe site is in %s\n", difference.what(), site.c_str());
    return 1;
  }
  std::filesystem::current_path("/");
  std::filesystem::remove_all(site);
  return 0;
}
