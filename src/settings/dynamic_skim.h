// Dynamic skim: d/ds lets the site replace the skim of its trades for this run when the site's
// traffic meets a condition. Written by the administration side.
//
// A stream of pieces; the text before the first bar is dropped. Fields 0 to 3 are switches: on at
// all, for trades, for the entry with id 6, for the entry with id 3. From field 4 on stand blocks
// of four: skim value, metric "1" to "10", operator "1" greater or "2" less, threshold.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "store/trade_record.h"

namespace vantrel {

// What dynamic skim did: the block that had the last word, and what it found.
struct SkimChange {
  std::size_t block = 0;  // from 0
  std::int32_t skim = 0;
  std::string metric;          // its code, "1" to "10"
  std::int32_t value = 0;      // of the metric
  std::int32_t threshold = 0;  // that the value is above, or below
  bool above = false;
};

// The four switches, on when they are exactly "1".
struct SkimSwitches {
  std::array<std::string_view, 4> texts;  // on at all, for trades, for entry 6, for entry 3

  [[nodiscard]] bool is_on(std::size_t i) const { return texts[i] == "1"; }
  // On, and for somebody.
  [[nodiscard]] bool in_use() const { return is_on(0) && (is_on(1) || is_on(2) || is_on(3)); }
};
// Walks over the text before the first bar and the switches. False when the file ends before.
[[nodiscard]] bool read_skim_switches(Pieces& pieces, SkimSwitches& switches);

// A block as the text has it.
struct SkimBlock {
  std::string_view value;
  std::string_view metric;
  std::string_view op;
  std::string_view threshold;
};
// False when no whole block is left.
[[nodiscard]] bool next_skim_block(Pieces& pieces, SkimBlock& block);

// One of the ten measures, and one of the two comparisons.
[[nodiscard]] bool is_skim_metric(std::string_view metric);
[[nodiscard]] bool is_skim_operator(std::string_view op);

// Judges the windows as the previous run left them and writes param_844 of the work entries, never
// of the trade records. Nothing when no block matched. Two events when the file cannot be read.
std::optional<SkimChange> apply_dynamic_skim(std::vector<TradeWork>& works);

}  // namespace vantrel
