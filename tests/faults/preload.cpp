// Preloaded into the program by the fault proofs: a clock that stands still, writes that arrive
// in pieces or on a disk that fills up, and memory that runs out. The programs the run starts
// are left alone.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

long setting(const char* name) {
  const char* text = std::getenv(name);
  return text != nullptr ? std::atol(text) : 0;
}

const long frozen_clock = setting("FROZEN_CLOCK");
const long short_write =
    setting("SHORT_WRITE");  // -1: half of each; n: a byte of the n-th, and none after
const long no_memory = setting("NO_MEMORY");           // the n-th allocation; -n: all from there on
const char* const count_to = std::getenv("COUNT_TO");  // a file for the number of allocations
const int alone = unsetenv("LD_PRELOAD");              // NOLINT: for its effect
bool counting = false;
long writes = 0;
long allocations = 0;

// How many of size bytes this write may take; -1 for none.
ssize_t allowance(size_t size) {
  ++writes;
  if (short_write == 0 || size == 0 || (short_write > 0 && writes < short_write)) {
    return static_cast<ssize_t>(size);
  }
  if (short_write < 0) return static_cast<ssize_t>((size + 1) / 2);
  if (writes == short_write) return 1;
  errno = ENOSPC;
  return -1;
}

bool out_of_memory() {
  if (!counting) return false;
  ++allocations;
  return no_memory > 0 ? allocations == no_memory : no_memory < 0 && allocations >= -no_memory;
}

}  // namespace

extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
ssize_t __pwrite64(int, const void*, size_t, off_t);
ssize_t __write(int, const void*, size_t);

time_t time(time_t* moment) {
  counting = true;  // the run's first act: what the loader needs is its own business
  if (moment != nullptr) *moment = frozen_clock;
  return frozen_clock;
}

void* malloc(size_t size) {
  if (!out_of_memory()) return __libc_malloc(size);
  errno = ENOMEM;
  return nullptr;
}

void* calloc(size_t count, size_t size) {
  if (!out_of_memory()) return __libc_calloc(count, size);
  errno = ENOMEM;
  return nullptr;
}

__attribute__((destructor)) void tell_count() {
  if (count_to == nullptr) return;
  std::FILE* const file = std::fopen(count_to, "w");
  std::fprintf(file, "%ld", allocations);
  std::fclose(file);
}

ssize_t write(int file, const void* bytes, size_t size) {
  const ssize_t count = allowance(size);
  return count < 0 ? -1 : __write(file, bytes, static_cast<size_t>(count));
}

ssize_t pwrite(int file, const void* bytes, size_t size, off_t offset) {
  const ssize_t count = allowance(size);
  return count < 0 ? -1 : __pwrite64(file, bytes, static_cast<size_t>(count), offset);
}
}
