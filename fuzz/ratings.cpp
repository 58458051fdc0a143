// A rating file, and the agent of the input's last piece rated by it.
#include "settings/ratings.h"

#include "support.h"
#include "traffic/agent_rating.h"

namespace vantrel::fuzz {

void try_input(const std::string& input) {
  put("d/geo.rating", input);
  RatingLists lists;
  require(load_rating(lists, "d/geo.rating"), "the file can be read");
  const auto pieces = getline_pieces(lowered(input));
  const std::string agent = pieces.empty() ? "" : pieces.back();
  std::size_t count[4] = {};
  bool occurs[4] = {};
  for (std::size_t i = 2; i < pieces.size(); i += 3) {
    if (pieces[i - 1] != "1" && pieces[i - 1] != "2" && pieces[i - 1] != "3") continue;
    const auto g = static_cast<std::size_t>(pieces[i - 1][0] - '0');
    const auto& texts = lists.group(g);
    require(count[g] < texts.size() && texts[count[g]] == pieces[i], "every text is there");
    require(lists.groups_of(pieces[i]).has(g), "and found");
    occurs[g] = occurs[g] || agent.find(pieces[i]) != std::string::npos;
    ++count[g];
  }
  for (std::size_t g = 1; g <= 3; ++g) require(lists.group(g).size() == count[g], "no more");
  const std::size_t expected = occurs[1] ? 0 : occurs[3] ? 2 : 1;
  AgentRating rating(lists);
  require(rating.offset_of(agent) == expected && rating.offset_of(agent) == expected,
          "an agent is rated by the fragments in it, and again when it is known");
}

}  // namespace vantrel::fuzz
