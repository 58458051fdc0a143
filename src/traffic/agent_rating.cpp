#include "traffic/agent_rating.h"

#include <algorithm>
#include <cstring>

namespace vantrel {
namespace {

constexpr std::size_t pair_number(char first, char second) {
  const std::size_t hash =
      static_cast<unsigned char>(first) * 37u ^ static_cast<unsigned char>(second) * 8u;
  return hash % BytePairs::kAlways;
}

// In time linear in both texts, whatever they are: a visitor chooses the agent.
bool occurs_in(std::string_view fragment, std::string_view agent) {
  return fragment.empty() ||
         (!agent.empty() &&
          ::memmem(agent.data(), agent.size(), fragment.data(), fragment.size()) != nullptr);
}

std::vector<AgentFragment> fragments_of(const std::vector<std::string_view>& texts) {
  std::vector<AgentFragment> fragments;
  fragments.reserve(texts.size());
  for (const std::string_view text : texts) {
    fragments.push_back(
        {text, text.size() < 2 ? BytePairs::kAlways : pair_number(text[0], text[1])});
  }
  return fragments;
}

bool any_occurs(const std::vector<AgentFragment>& fragments, std::string_view agent,
                const BytePairs& pairs) {
  return std::any_of(fragments.begin(), fragments.end(), [&](const AgentFragment& fragment) {
    return pairs.has(fragment.first_pair) && pairs.may_contain(fragment.text) &&
           occurs_in(fragment.text, agent);
  });
}

}  // namespace

BytePairs::BytePairs(std::string_view text) {
  pairs_.set(kAlways);
  for (std::size_t i = 1; i < text.size(); ++i) pairs_.set(pair_number(text[i - 1], text[i]));
}

bool BytePairs::may_contain(std::string_view fragment) const {
  for (std::size_t i = 1; i < fragment.size(); ++i) {
    if (!has(pair_number(fragment[i - 1], fragment[i]))) return false;
  }
  return true;
}

AgentRating::AgentRating(const RatingLists& lists)
    : good_(fragments_of(lists.group(1))), bad_(fragments_of(lists.group(3))) {}

std::size_t AgentRating::search(std::string_view agent) const {
  const BytePairs pairs(agent);
  if (any_occurs(good_, agent, pairs)) return 0;
  return any_occurs(bad_, agent, pairs) ? 2 : 1;
}

std::size_t AgentRating::search_and_remember(std::string_view agent) {
  const std::size_t offset = search(agent);
  bytes_ += agent.size() + sizeof(std::string);
  if (bytes_ > kMostBytes) return offset;
  known_.add(agents_.emplace_back(agent), static_cast<std::int32_t>(offset));
  return offset;
}

}  // namespace vantrel
