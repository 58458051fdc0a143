// The story of one trade in a foreseen list, and its shortest forms: a few words, one sentence.
#pragma once

#include <string>

#include "foresee.h"
#include "out/out_list.h"

namespace vantrel::inspect {

struct Story {
  const Forecast& forecast;
  std::size_t position;     // in the index
  std::size_t rank;         // among all entries, from 0
  const TradeWork& before;  // as it was judged
  const TradeWork& after;   // with its weights
  const TradeScore& steps;
  Admission admission;
  Listing listing;
};

// rank: from 0.
[[nodiscard]] Story story_of(const Forecast& forecast, std::size_t rank);
// The rank of the entry at a position of the index.
[[nodiscard]] std::size_t rank_of(const Forecast& forecast, std::size_t position);

[[nodiscard]] const RatioCheck& check_of(const TradeScore& steps);
[[nodiscard]] bool failed(const RatioCheck& check);

// What decided: "mode 1: 214% > 200%", "below minimum", "owed visitors".
[[nodiscard]] std::string reason_of(const Story& story);
// One sentence a webmaster can act on.
[[nodiscard]] std::string sentence_of(const Story& story);

// A percentage or a score with at most two decimals.
[[nodiscard]] std::string short_number(double value);

// All of it, as why_view() has it.
[[nodiscard]] Json why_json(const Story& story);

[[nodiscard]] std::string state_text(ListState state);

}  // namespace vantrel::inspect
