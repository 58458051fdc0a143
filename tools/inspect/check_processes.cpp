#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "checks.h"

namespace vantrel::inspect {
namespace {

namespace fs = std::filesystem;

struct Process {
  std::int32_t id = 0;
  std::int32_t parent = 0;
  std::string name;
  double age = 0.0;  // seconds
};

// /proc/<id>/stat: id, (name), state, parent, ..., start in clock ticks since boot as piece 22.
Process read_process(const fs::path& folder, double uptime) {
  std::ifstream file(folder / "stat");
  std::string text;
  std::getline(file, text);
  const auto open = text.find('(');
  const auto close = text.rfind(')');
  if (open == text.npos || close == text.npos || close < open) return {};
  Process process;
  process.id = to_int(text);
  process.name = text.substr(open + 1, close - open - 1);
  std::istringstream rest(text.substr(close + 1));
  std::string state;
  rest >> state >> process.parent;
  std::string piece;
  for (int i = 5; i <= 22; ++i) rest >> piece;
  process.age = uptime - to_double(piece) / static_cast<double>(::sysconf(_SC_CLK_TCK));
  return process;
}

std::vector<Process> all_processes() {
  double uptime = 0.0;
  std::ifstream("/proc/uptime") >> uptime;
  std::vector<Process> processes;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
    if (!is_digit(entry.path().filename().string().front())) continue;
    Process process = read_process(entry.path(), uptime);
    if (process.id != 0) processes.push_back(std::move(process));
  }
  return processes;
}

bool works_here(const Process& process) {
  std::error_code ignored;
  const fs::path there = fs::read_symlink("/proc/" + std::to_string(process.id) + "/cwd", ignored);
  return !there.empty() && there == fs::current_path(ignored);
}

}  // namespace

void check_processes(Findings& findings) {
  constexpr const char* kRun = "vantrel-cron";
  constexpr double kUsual = 120.0;  // seconds
  const std::vector<Process> processes = all_processes();
  std::size_t runs = 0;
  double oldest = 0.0;
  NameList waited_for;
  for (const Process& run : processes) {
    if (run.name != kRun || !works_here(run)) continue;
    ++runs;
    oldest = std::max(oldest, run.age);
    for (const Process& child : processes) {
      if (child.parent == run.id) waited_for.add(child.name);
    }
  }
  if (runs < 2 && oldest < kUsual) return;
  findings.off("processes",
               counted(runs, "run") + " of this site at work, the oldest for " +
                   duration_text(static_cast<std::time_t>(oldest)) +
                   (waited_for.empty() ? "" : ", waiting for " + waited_for.text()),
               "a companion script, tar or the mail program does not end, or the disk is slow: "
               "look at it (ps), end it and mend it; the runs lose nothing by it");
}

}  // namespace vantrel::inspect
