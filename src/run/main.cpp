// vantrel-cron: the maintenance run a scheduler starts once a minute in a site's directory. No
// arguments, no environment of its own, exit status 0 whatever happens: what went wrong is a line
// in l/sys/sys.log. Only a person asks for --help or --version; every other start is a run.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <new>
#include <string>
#include <string_view>

#include "base/files.h"
#include "base/shell.h"
#include "base/version.h"
#include "run/driver.h"
#include "run/event_log.h"

// Takes the place of the one in the C++ library, which names the exception nobody caught: with the
// tables and functions it needs for that it is a tenth of the program, which every start would pay
// for.
void __gnu_cxx::__verbose_terminate_handler() { _exit(0); }

namespace {

// A scheduler may start the run with standard streams closed. A file opened later would take their
// numbers, and an error page would be printed into it.
void open_standard_streams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    if (open("/dev/null", O_RDWR) < 0) return;
  }
}

constexpr std::string_view kHelp = R"(Usage: vantrel-cron
The maintenance run of the site in the working directory, started once a minute
by a scheduler. It changes the site at once. Whatever happens the exit status is
0; what went wrong is a line in l/sys/sys.log.

  --help     alone: print this and do nothing else
  --version  alone: print the version and do nothing else

Started in any other way it is a run. The manual page is vantrel-cron(8);
vantrel-inspect(1) looks at a site without changing it.
)";

// True when a person asked something, and has been answered, instead of starting a run.
bool answered(int argc, char** argv) {
  const std::string_view only = argc == 2 ? argv[1] : "";
  if (only == "--help") {
    vantrel::write_all(STDOUT_FILENO, kHelp);
  } else if (only == "--version") {
    vantrel::write_all(STDOUT_FILENO, std::string("vantrel-cron ") + vantrel::kVersion + '\n');
  } else {
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  // Without memory for an exception the run ends here, as quietly as it can.
  std::set_terminate([] { _exit(0); });
  open_standard_streams();
  vantrel::survive_failed_writes();
  try {
    if (!answered(argc, argv)) vantrel::maintenance_run();
  } catch (const std::exception&) {
    // Only memory can run out. Whatever was being held is free again, so there is room for a line.
    try {
      vantrel::report(vantrel::event::out_of_memory);
    } catch (const std::bad_alloc&) {
    }
  }
  return 0;
}
