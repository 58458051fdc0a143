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
    RatingGroup& group = lists.groups[static_cast<std::size_t>(selector[0] - '1')];
    group.index.add(text, static_cast<std::int32_t>(group.texts.size()));
    group.texts.push_back(text);
  }
  return true;
}

}  // namespace vantrel
