// The shortest look at a site, for schedulers and monitoring plugins: one call of the system tells
// when the list was written.
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "base/clock.h"
#include "out/out_list.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

enum Status { kOk = 0, kWarning = 1, kCritical = 2, kUnknown = 3 };
constexpr const char* kStatusNames[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
constexpr std::time_t kClockTolerance = 60;  // seconds

Json verdict(Status status, const std::string& text) {
  return {{"status", static_cast<int>(status)}, {"verdict", text}};
}

Json judged(std::time_t age, std::time_t limit) {
  const std::string seconds = std::to_string(age) + " seconds ago";
  Json view = age < -kClockTolerance ? verdict(kWarning, "the list was written in the future")
              : age <= limit         ? verdict(kOk, "the list was written " + seconds)
              : age <= 2 * limit     ? verdict(kWarning, "the last list was written " + seconds)
                                     : verdict(kCritical, "the last list was written " + seconds);
  view["age_seconds"] = age;
  return view;
}

}  // namespace

Json alive_view(int minutes) {
  const std::time_t limit = std::time_t{minutes} * 60;
  struct stat list {};
  Json view;
  if (::stat(kOutListFile, &list) == 0) {
    view = S_ISREG(list.st_mode) ? judged(wall_clock() - list.st_mtime, limit)
                                 : verdict(kCritical, std::string(kOutListFile) + " is no file");
  } else if (errno == ENOENT || errno == ENOTDIR) {
    view = verdict(kCritical, "no list has been written here");
  } else {
    view = verdict(kUnknown, std::string(kOutListFile) + ": " + std::strerror(errno));
  }
  view["limit_seconds"] = limit;
  return view;
}

void print_alive(const Json& view) {
  std::cout << "VANTREL " << kStatusNames[view["status"].get<std::size_t>()] << ": "
            << cell(view["verdict"]);
  if (view.contains("age_seconds")) {
    const auto limit = view["limit_seconds"].get<std::time_t>();
    std::cout << " | age=" << view["age_seconds"] << "s;" << limit << ';' << 2 * limit;
  }
  std::cout << '\n';
}

}  // namespace vantrel::inspect
