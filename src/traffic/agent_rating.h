// User agents are rated by the fragments that occur in them. A site sees few different agents and
// has hundreds of fragments, so every distinct agent is searched once and remembered.
#pragma once

#include <bitset>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "base/first_index.h"
#include "settings/ratings.h"

namespace vantrel {

// The pairs of neighbouring bytes of a text, hashed: a fragment that has a pair the text lacks
// cannot occur in it.
class BytePairs {
 public:
  explicit BytePairs(std::string_view text);

  // True for fragments of fewer than two bytes.
  [[nodiscard]] bool may_contain(std::string_view fragment) const;

 private:
  static constexpr std::size_t kBits = 4096;

  std::bitset<kBits> pairs_;
};

class AgentRating {
 public:
  // The lists must outlive the rating.
  explicit AgentRating(const RatingLists& lists) : lists_(lists) {}

  // 0 when a fragment of group 1 occurs in the agent, 2 when none does but one of group 3, else 1.
  [[nodiscard]] std::size_t offset_of(std::string_view agent);

 private:
  // What is remembered is bounded, so that the memory of a run does not grow with its hits.
  static constexpr std::size_t kMostBytes = 1 << 20;

  const RatingLists& lists_;
  std::deque<std::string> agents_;  // owns the keys of known_
  TextIndex known_;
  std::size_t bytes_ = 0;
};

}  // namespace vantrel
