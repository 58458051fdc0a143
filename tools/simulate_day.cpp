// vantrel-day: carries a sample site through a day of simulated minutes, 1,440 runs one behind the
// other, each with the hit logs of the minute before it, and tells what happens.
#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/clock.h"
#include "base/shell.h"
#include "run/driver.h"
#include "sample/files.h"
#include "sample_options.h"
#include "store/summary.h"

namespace {

namespace fs = std::filesystem;
using namespace vantrel;

std::time_t simulated_now = 0;

std::time_t simulated_clock() { return simulated_now; }

std::set<std::string> names_in(const char* folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
  return names;
}

std::uintmax_t size_of(const char* path) { return fs::exists(path) ? fs::file_size(path) : 0; }

std::string clock_text() { return format_time("%a %H:%M", simulated_now); }

// The files whose age the run looks at get the time of the simulated day.
void date_files(const std::set<std::string>& new_backups) {
  if (fs::exists("l/sys/cron.last")) sample::set_modified("l/sys/cron.last", simulated_now);
  if (minute_of_day(simulated_now) == 23 * 60 + 59) {
    sample::set_modified("d/h/all.his", simulated_now);
  }
  for (const std::string& name : new_backups) {
    sample::set_modified("d/backup/" + name, simulated_now);
  }
}

// Tells what a run did beside its work of every minute.
class Witness {
 public:
  void look() {
    const std::set<std::string> backups = names_in("d/backup");
    std::set<std::string> made;
    std::set_difference(backups.begin(), backups.end(), backups_.begin(), backups_.end(),
                        std::inserter(made, made.end()));
    for (const std::string& name : made) tell("backup d/backup/" + name);
    backups_ = backups;
    date_files(made);
    if (grown("d/h/all.his", history_)) tell("the day's record appended to every history file");
    if (grown("mail/outbox", mail_)) tell("alert mail to the webmaster");
    const std::uintmax_t events_before = events_;
    if (grown("l/sys/sys.log", events_)) {
      std::ifstream log("l/sys/sys.log");
      log.seekg(static_cast<std::streamoff>(events_before));
      for (std::string line; std::getline(log, line);) tell("event " + line);
    }
  }

 private:
  static void tell(const std::string& what) {
    std::cout << clock_text() << "  " << what << std::endl;
  }

  static bool grown(const char* path, std::uintmax_t& size) {
    const std::uintmax_t before = std::exchange(size, size_of(path));
    return size > before;
  }

  std::set<std::string> backups_ = names_in("d/backup");
  std::uintmax_t history_ = size_of("d/h/all.his");
  std::uintmax_t mail_ = size_of("mail/outbox");
  std::uintmax_t events_ = size_of("l/sys/sys.log");
};

void print_heading() {
  std::cout << "           incoming hits of the site   clicks of the site          hit logs\n"
               "           60 min    24 h    7 days    60 min    24 h    7 days   on disk\n";
}

void print_windows() {
  TradeStore store;
  if (!load_trade_index(store) || !build_work_array(store) || !load_summary(store)) {
    throw std::runtime_error("the site can no longer be loaded");
  }
  std::cout << clock_text() << ' ';
  for (const slot::Counter counter : {slot::rin, slot::clk}) {
    for (const auto window : {&TradeWork::last60, &TradeWork::last24, &TradeWork::last07}) {
      std::int64_t sum = 0;
      for (const TradeWork& work : store.works) sum += (work.*window)[counter];
      std::cout << std::setw(window == &TradeWork::last07 ? 10 : 8) << sum;
    }
    std::cout << "  ";
  }
  std::cout << std::setw(6) << names_in("l/in").size() + names_in("l/out").size() << std::endl;
}

// A run that the guards turned away leaves the stamp of an earlier one.
bool was_let_in() {
  std::string stamp;
  std::ifstream("l/sys/cron.last") >> stamp;
  return stamp == format_time("%m%d%H%M", simulated_now);
}

void simulate(const SampleOptions& options) {
  constexpr int kRuns = 1440;
  fs::current_path(options.directory);
  survive_failed_writes();
  simulated_now = options.at - options.at % 60 + 2;
  set_wall_clock(simulated_clock);
  Witness witness;
  print_heading();
  print_windows();
  int let_in = 0;
  for (int run = 1; run <= kRuns; ++run, simulated_now += 60) {
    write_sample_minute(".", options.size, simulated_now - 60);
    maintenance_run();
    if (was_let_in()) ++let_in;
    witness.look();
    if (run % 60 == 0) print_windows();
  }
  std::cout << kRuns << " runs, " << let_in << " let in by the guards" << std::endl;
  if (let_in == 0) throw std::runtime_error("no run was let in: was the site laid out for --at?");
}

}  // namespace

int main(int argc, char** argv) {
  if (vantrel::answer_about("vantrel-day", argc, argv)) return 0;
  const auto options = vantrel::parse_sample_options(argc, argv);
  if (!options) {
    std::cerr << vantrel::sample_usage("vantrel-day")
              << "The directory holds a sample site, laid out with the same options.\n";
    return 2;
  }
  try {
    simulate(*options);
  } catch (const std::exception& failure) {
    std::cerr << "vantrel-day: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
