#include "traffic/agent_rating.h"

#include <algorithm>
#include <cstring>

namespace vantrel {

namespace {

constexpr std::size_t pair_hash(char first, char second) {
  return static_cast<unsigned char>(first) * 37u ^ static_cast<unsigned char>(second) * 8u;
}

// In time linear in both texts, whatever they are: a visitor chooses the agent.
bool occurs_in(std::string_view fragment, std::string_view agent) {
  return fragment.empty() ||
         (!agent.empty() &&
          ::memmem(agent.data(), agent.size(), fragment.data(), fragment.size()) != nullptr);
}

bool any_occurs(const std::vector<std::string_view>& fragments, std::string_view agent,
                const BytePairs& pairs) {
  return std::any_of(fragments.begin(), fragments.end(), [&](std::string_view fragment) {
    return pairs.may_contain(fragment) && occurs_in(fragment, agent);
  });
}

std::size_t search(const RatingLists& lists, std::string_view agent) {
  const BytePairs pairs(agent);
  if (any_occurs(lists.group(1), agent, pairs)) return 0;
  return any_occurs(lists.group(3), agent, pairs) ? 2 : 1;
}

}  // namespace

BytePairs::BytePairs(std::string_view text) {
  for (std::size_t i = 1; i < text.size(); ++i) {
    pairs_.set(pair_hash(text[i - 1], text[i]) % kBits);
  }
}

bool BytePairs::may_contain(std::string_view fragment) const {
  for (std::size_t i = 1; i < fragment.size(); ++i) {
    if (!pairs_.test(pair_hash(fragment[i - 1], fragment[i]) % kBits)) return false;
  }
  return true;
}

std::size_t AgentRating::offset_of(std::string_view agent) {
  const std::int32_t known = known_.find(agent);
  if (known != TextIndex::kNone) return static_cast<std::size_t>(known);
  const std::size_t offset = search(lists_, agent);
  bytes_ += agent.size() + sizeof(std::string);
  if (bytes_ > kMostBytes) return offset;
  known_.add(agents_.emplace_back(agent), static_cast<std::int32_t>(offset));
  return offset;
}

}  // namespace vantrel
