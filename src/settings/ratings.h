// The rating files: texts sorted by the site owner into group 1 (good), 2 (neutral) and 3 (bad).
// Written by the administration side, required, only read here.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/first_index.h"
#include "base/text.h"

namespace vantrel {

// The groups that hold one text: none, one or several.
class RatingGroups {
 public:
  explicit RatingGroups(std::int32_t bits = 0) : bits_(bits) {}
  // number: 1 to 3.
  [[nodiscard]] bool has(std::size_t number) const { return (bits_ & bit(number)) != 0; }
  [[nodiscard]] static std::int32_t bit(std::size_t number) { return 1 << number; }

 private:
  std::int32_t bits_;
};

// One rating file, read whole: the views point into it. All texts are in lower case.
//
// A stream of pieces in groups of three: ignored, group ("1", "2" or "3", anything else drops the
// entry), text.
struct RatingLists {
  FileBuffer file;
  std::array<std::vector<std::string_view>, 3> texts;  // by group, in file order
  TextIndex index;                                     // the bits of every text's groups
  std::uint64_t sizes = 0;                             // the bits of every text's size

  [[nodiscard]] static std::uint64_t size_bit(std::string_view text) {
    return std::uint64_t{1} << text.size() % 64;
  }
  // number: 1 to 3.
  [[nodiscard]] const std::vector<std::string_view>& group(std::size_t number) const {
    return texts[number - 1];
  }
  // The groups with exactly this text.
  [[nodiscard]] RatingGroups groups_of(std::string_view text) const {
    // Most texts of hits are in no list, and most of these have the size of none that is.
    if ((sizes & size_bit(text)) == 0) return RatingGroups();
    const std::int32_t bits = index.find(text);
    return RatingGroups(bits == TextIndex::kNone ? 0 : bits);
  }
};

// One entry as the text has it.
struct RatingPieces {
  std::string_view ignored;
  std::string_view selector;
  std::string_view text;
};

// False when no whole entry is left.
[[nodiscard]] inline bool next_rating(Pieces& pieces, RatingPieces& entry) {
  return pieces.next(entry.ignored) && pieces.next(entry.selector) && pieces.next(entry.text);
}

// The group a selector names, 1 to 3; 0 for any other text.
[[nodiscard]] inline std::size_t rating_group(std::string_view selector) {
  const bool known = selector.size() == 1 && selector[0] >= '1' && selector[0] <= '3';
  return known ? static_cast<std::size_t>(selector[0] - '0') : 0;
}

// False when the file cannot be read; the caller reports it.
[[nodiscard]] bool load_rating(RatingLists& lists, const char* path);

}  // namespace vantrel
