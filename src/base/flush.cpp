#include "base/flush.h"

#include <unistd.h>

#include "base/files.h"
#include "base/rehearsal.h"

namespace vantrel {

void flush_file(const char* path) {
  if (Rehearsal::current() != nullptr) return;
  const File file = open_to_read(path);
  if (file.is_open()) static_cast<void>(::fsync(file.descriptor()));
}

void flush_file_system(const char* path) {
#ifdef __linux__
  if (Rehearsal::current() != nullptr) return;
  const File file = open_to_read(path);
  if (file.is_open()) static_cast<void>(::syncfs(file.descriptor()));
#else
  flush_file(path);
#endif
}

}  // namespace vantrel
