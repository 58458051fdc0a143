// Runs a program once and prints what it took: microseconds of CPU (its own and its children's,
// user and system), microseconds of wall time, peak memory in KiB, page faults.
//
//   vantrel-measure CLOCK LIBRARY DIRECTORY PROGRAM [ARGUMENT...]
//
// The program runs in DIRECTORY with the clock standing at CLOCK through the preloaded LIBRARY. A
// small starter of its own, because a process inherits the peak memory of the one it is made from.
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

namespace {

long microseconds(const timeval& time) { return time.tv_sec * 1000000L + time.tv_usec; }

[[noreturn]] void become(char** argv) {
  ::setenv("FROZEN_CLOCK", argv[1], 1);
  ::setenv("LD_PRELOAD", argv[2], 1);
  ::setenv("TZ", "UTC", 1);
  if (::chdir(argv[3]) == 0) ::execv(argv[4], argv + 4);
  std::perror(argv[4]);
  ::_exit(127);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) return 2;
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child == 0) become(argv);
  int status = 0;
  rusage usage{};
  if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) return 1;
  const auto wall = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
  std::printf("%ld %ld %ld %ld\n", microseconds(usage.ru_utime) + microseconds(usage.ru_stime),
              static_cast<long>(wall.count()), usage.ru_maxrss, usage.ru_minflt + usage.ru_majflt);
  return 0;
}
