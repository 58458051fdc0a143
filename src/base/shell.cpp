#include "base/shell.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "base/files.h"

namespace vantrel {
namespace {

void do_nothing(int /*signal*/) {}

}  // namespace

void survive_failed_writes() {
  struct sigaction action {};
  action.sa_handler = do_nothing;
  action.sa_flags = SA_RESTART;
  sigaction(SIGPIPE, &action, nullptr);
  sigaction(SIGXFSZ, &action, nullptr);
  action.sa_handler = SIG_DFL;
  sigaction(SIGCHLD, &action, nullptr);
}

void run_command(const std::string& command) {
  if (std::system(command.c_str()) != 0) {
    // A companion that is missing or fails changes nothing of the run's own work.
  }
}

bool pipe_to_command(const std::string& command, std::string_view text) {
  std::FILE* pipe = popen(command.c_str(), "we");
  if (pipe == nullptr) return false;
  write_all(fileno(pipe), text);
  pclose(pipe);
  return true;
}

}  // namespace vantrel
