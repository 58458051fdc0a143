#include "settings/ratings.h"

#include "base/text.h"

namespace vantrel {

bool load_rating(RatingLists& lists, const char* path) {
  if (!lists.file.read(path)) return false;
  // The group is a digit and bars have no case: the whole file can be lowered before it is split.
  lower_case(lists.file.data(), lists.file.size());
  Pieces pieces(lists.file.text());
  for (std::string_view ignored, selector, text;
       pieces.next(ignored) && pieces.next(selector) && pieces.next(text);) {
    if (selector.size() != 1 || selector[0] < '1' || selector[0] > '3') continue;
    const auto number = static_cast<std::size_t>(selector[0] - '0');
    lists.index.add(text, 0) |= RatingGroups::bit(number);
    lists.texts[number - 1].push_back(text);
    lists.sizes |= RatingLists::size_bit(text);
  }
  return true;
}

}  // namespace vantrel
