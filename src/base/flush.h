// Writes that must be on disk before what comes after them. All others are left to the system,
// which takes about half a minute: a flush costs a few milliseconds, on a slow disk tens of them.
#pragma once

namespace vantrel {

// The contents and the length of one file. What cannot be flushed is not worth ending a run for.
void flush_file(const char* path);

// Every file of the file system that path is on, in one call, whoever wrote them. For many files at
// once; elsewhere than on Linux it flushes the named file only.
void flush_file_system(const char* path);

}  // namespace vantrel
