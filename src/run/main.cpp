// vantrel-cron: the maintenance run a scheduler starts once a minute in a site's directory. No
// arguments, no environment of its own, exit status 0 whatever happens: what went wrong is a line
// in l/sys/sys.log.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <new>

#include "base/shell.h"
#include "run/driver.h"
#include "run/event_log.h"

namespace {

// A scheduler may start the run with standard streams closed. A file opened later would take their
// numbers, and an error page would be printed into it.
void open_standard_streams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    if (open("/dev/null", descriptor == STDIN_FILENO ? O_RDONLY : O_WRONLY) < 0) return;
  }
}

}  // namespace

int main() {
  // Without memory for an exception the run ends here, as quietly as it can.
  std::set_terminate([] { _exit(0); });
  open_standard_streams();
  vantrel::survive_failed_writes();
  try {
    vantrel::maintenance_run();
  } catch (const std::exception&) {
    // Only memory can run out. Whatever was being held is free again, so there is room for a line.
    try {
      vantrel::report(vantrel::event::out_of_memory);
    } catch (const std::bad_alloc&) {
    }
  }
  return 0;
}
