// A run that is only tried out: while a Rehearsal lives, the functions of base/files.h leave the
// disk as it is. Reads see the files of the site, or others put in their place; what would have
// been written is kept here for whoever asks. The run itself never has one.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "base/files.h"

namespace vantrel {

// Opens a file for reading without changing its time of last access, where the system allows that.
// Anything but a regular file is not touched: it is seen as an empty one.
[[nodiscard]] File open_untouched(const char* path);

class Rehearsal {
 public:
  // One at a time.
  Rehearsal();
  ~Rehearsal();
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;

  // The one that is going on, or nullptr.
  [[nodiscard]] static Rehearsal* current();

  // From now on reads of path deliver the file at other.
  void put_in_place(const std::string& path, const std::string& other);

  // What was written to a file, even if it must not be: its new contents, or what was appended to
  // it; nullptr for nothing.
  [[nodiscard]] const std::string* written(std::string_view path) const;
  // What would stand on the standard output.
  [[nodiscard]] const std::string& printed() const { return printed_; }

  // In the place of the calls that go to the disk. They fail where those would, as far as that can
  // be told from the rights: a full disk is not noticed.
  [[nodiscard]] File open(const char* path, bool to_update) const;
  [[nodiscard]] bool write(const char* path, std::string_view text);
  [[nodiscard]] bool append(const char* path, std::string_view text);
  void print(std::string_view text) { printed_ += text; }

 private:
  std::map<std::string, std::string, std::less<>> in_place_;  // path to the file that stands for it
  std::map<std::string, std::string, std::less<>> written_;
  std::string printed_;
};

}  // namespace vantrel
