// User agents are rated by the fragments that occur in them. A site sees few different agents and
// has hundreds of fragments, so every distinct agent is searched once and remembered.
#pragma once

#include <bitset>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "base/first_index.h"
#include "settings/ratings.h"

namespace vantrel {

// The pairs of neighbouring bytes of a text, hashed: a fragment that has a pair the text lacks
// cannot occur in it.
class BytePairs {
 public:
  static constexpr std::size_t kAlways = 4096;  // number of a pair every text has

  explicit BytePairs(std::string_view text);

  // pair: kAlways, or the hash of a pair below it.
  [[nodiscard]] bool has(std::size_t pair) const { return pairs_[pair]; }
  // True for fragments of fewer than two bytes.
  [[nodiscard]] bool may_contain(std::string_view fragment) const;

 private:
  std::bitset<kAlways + 1> pairs_;
};

struct AgentFragment {
  std::string_view text;
  std::size_t first_pair;  // most fragments are out of question by this alone
};

class AgentRating {
 public:
  // The lists must outlive the rating.
  explicit AgentRating(const RatingLists& lists);

  // 0 when a fragment of group 1 occurs in the agent, 2 when none does but one of group 3, else 1.
  [[nodiscard]] std::size_t offset_of(std::string_view agent) {
    const std::int32_t known = known_.find(agent);
    return known != TextIndex::kNone ? static_cast<std::size_t>(known) : search_and_remember(agent);
  }

 private:
  // What is remembered is bounded, so that the memory of a run does not grow with its hits.
  static constexpr std::size_t kMostBytes = 1 << 20;

  [[nodiscard]] std::size_t search(std::string_view agent) const;
  [[nodiscard]] std::size_t search_and_remember(std::string_view agent);

  std::vector<AgentFragment> good_;
  std::vector<AgentFragment> bad_;
  std::deque<std::string> agents_;  // owns the keys of known_
  TextIndex known_;
  std::size_t bytes_ = 0;
};

}  // namespace vantrel
