#include "settings/ratings.h"

#include "base/text.h"

namespace vantrel {

bool load_rating(RatingLists& lists, const char* path) {
  if (!lists.file.read(path)) return false;
  // The group is a digit and bars have no case: the whole file can be lowered before it is split.
  lower_case(lists.file.data(), lists.file.size());
  Pieces pieces(lists.file.text());
  for (RatingPieces entry; next_rating(pieces, entry);) {
    const std::size_t number = rating_group(entry.selector);
    if (number == 0) continue;
    lists.index.add(entry.text, 0) |= RatingGroups::bit(number);
    lists.texts[number - 1].push_back(entry.text);
    lists.sizes |= RatingLists::size_bit(entry.text);
  }
  return true;
}

}  // namespace vantrel
