// The rating files: texts sorted by the site owner into group 1 (good), 2 (neutral) and 3 (bad).
// Written by the administration side, required, only read here.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/first_index.h"

namespace vantrel {

// The texts of one group, in lower case.
struct RatingGroup {
  std::vector<std::string_view> texts;  // in file order
  TextIndex index;                      // for exact matches

  [[nodiscard]] bool contains(std::string_view text) const { return index.contains(text); }
};

// One rating file, read whole: the views of the groups point into it.
//
// A stream of pieces in groups of three: ignored, group ("1", "2" or "3", anything else drops the
// entry), text.
struct RatingLists {
  FileBuffer file;
  std::array<RatingGroup, 3> groups;

  [[nodiscard]] const RatingGroup& group(std::size_t number) const { return groups[number - 1]; }
};

// False when the file cannot be read; the caller reports it.
[[nodiscard]] bool load_rating(RatingLists& lists, const char* path);

}  // namespace vantrel
