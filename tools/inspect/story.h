// The story of one trade in a foreseen list, and its shortest forms: a few words, one sentence.
#pragma once

#include <map>
#include <string>
#include <vector>

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

// What a list says of each trade, by id; the first one where an id stands twice.
struct Reason {
  double score;  // before weights were handed out
  double weight;
  std::string reason;
};
using Reasons = std::map<std::int32_t, Reason>;
// Empty when the forecast has no list.
[[nodiscard]] Reasons reasons_by_id(const Forecast& forecast);

[[nodiscard]] std::string state_text(ListState state);

// Weights come from a file and may be anything; only what a reader can draw lots with counts.
[[nodiscard]] double counted_weight(double weight);
[[nodiscard]] double total_weight(const std::vector<OutListEntry>& entries);

// JSON has no infinities and no NaN: they become texts.
[[nodiscard]] Json json_number(double value);
// Such a number with at most two decimals.
[[nodiscard]] std::string score_cell(const Json& value);

}  // namespace vantrel::inspect
