#include <sys/statvfs.h>

#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kPrints =
    "; what the shell says of it goes to the standard error of the run, which schedulers mail";

// The first line of a script, as the system takes it; empty for other files.
std::string interpreter_line(const std::string& script) {
  const std::string text = read_head(script, 256).value_or("");
  if (!text.starts_with("#!")) return {};
  return text.substr(2, text.find('\n') - 2);
}

// What keeps the script's interpreter from starting; empty for nothing.
std::string interpreter_trouble(const std::string& script) {
  const std::string line = interpreter_line(script);
  Pieces words(line, ' ');
  std::string_view program;
  while (program.empty() && words.next(program)) continue;
  if (program.empty()) return {};
  if (line.ends_with('\r')) {
    return "its first line ends with a carriage return, as files from Windows do: there is no "
           "interpreter " +
           quote(line);
  }
  if (!may_execute(std::string(program))) {
    return "its interpreter " + quote(program) + " is missing or cannot be executed";
  }
  std::string_view named;
  if (program.ends_with("/env") && words.next(named) && !named.starts_with('-') &&
      !program_of(std::string(named))) {
    return "its interpreter " + quote(named) + " is not on the path";
  }
  return {};
}

bool forbids_programs(const char* path) {
  struct statvfs disk {};
  return ::statvfs(path, &disk) == 0 && (disk.f_flag & ST_NOEXEC) != 0;
}

void check_script(Findings& findings, const std::string& script) {
  const std::string put_back = "put it back and make it executable for the run's user";
  if (!exists(script)) {
    findings.off(script, std::string("the companion script is missing") + kPrints, put_back);
  } else if (!is_regular(script)) {
    findings.off(script, std::string("is no file") + kPrints, put_back);
  } else if (!may_execute(script)) {
    findings.refused(
        script, Need::read,
        finding_off(script, std::string("the companion script cannot be executed") + kPrints,
                    forbids_programs(".") ? "the file system of the site is mounted noexec: mount "
                                            "it otherwise"
                                          : put_back));
  } else if (file_size(script) == 0) {
    findings.off(script, "the companion script is empty: it does nothing", put_back);
  } else if (const std::string trouble = interpreter_trouble(script); !trouble.empty()) {
    findings.off(script, trouble + kPrints, "install it, or correct the first line of the script");
  }
  findings.fine(script, "can be started");
}

}  // namespace

void check_programs(Findings& findings) {
  for (const char* script : {"sh_sync.cgi", "sh_hta.cgi", "sh_top.cgi"}) {
    check_script(findings, script);
  }
  for (const char* program : {"tar", "gzip"}) {
    if (program_of(program)) continue;
    findings.lost(program, std::string("is not on the path: no backup is made") + kPrints,
                  "install tar with gzip support");
  }
}

}  // namespace vantrel::inspect
