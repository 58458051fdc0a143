// What the administration side says about outgoing traffic: the weights of the best-ranked trades
// (d/out.set), the scoring modifiers (d/out.mod) and the caps of single trades (d/caps).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace vantrel {

// Weights in the order in which they are handed out.
using OutSet = std::vector<std::int32_t>;

// The fields of d/out.mod.
class OutMod {
 public:
  static constexpr std::size_t kFieldsUsed = 10;

  OutMod() = default;
  // The file's fields, or the first of them: one more than is used, if there is one, for it tells
  // that the last used one is not the file's last.
  explicit OutMod(std::vector<std::string> fields);

  // A field the file does not have is empty.
  [[nodiscard]] std::string_view text(std::size_t i) const;
  // A used field as a number; 0 for the file's last field and for missing ones.
  [[nodiscard]] std::int32_t number(std::size_t i) const { return numbers_[i]; }

  [[nodiscard]] bool generates_weights() const { return text(6) == "1"; }
  [[nodiscard]] bool uses_formula() const { return text(8) == "10"; }
  [[nodiscard]] std::string_view formula() const { return text(9); }

 private:
  std::vector<std::string> fields_;
  std::array<std::int32_t, kFieldsUsed> numbers_{};  // of every trade the same: read once
};

// Percentages over the last 24 hours that a trade in scoring mode 2 must keep; -1 for none.
struct TradeCap {
  std::int32_t cap_cef = -1;  // lowest cef per uin
  std::int32_t cap_ctt = -1;  // lowest ctt per out
  std::int32_t cap_out = -1;  // highest out per uin
};

// Caps by trade id.
using TradeCaps = std::map<std::int32_t, TradeCap>;

struct OutSettings {
  OutSet weights;
  OutMod modifiers;
  TradeCaps caps;
};

// A weight and a cap as their files have them; false when no whole one is left.
struct WeightPieces {
  std::string_view name;  // of all but the first it begins with a line feed
  std::string_view weight;
};
[[nodiscard]] inline bool next_weight(Pieces& pieces, WeightPieces& entry) {
  return pieces.next(entry.name) && pieces.next(entry.weight);
}
struct CapPieces {
  std::string_view ignored;
  std::string_view id;
  std::string_view kind;  // 1, 2 or 3; others have no effect
  std::string_view value;
};
[[nodiscard]] inline bool next_cap(Pieces& pieces, CapPieces& entry) {
  return pieces.next(entry.ignored) && pieces.next(entry.id) && pieces.next(entry.kind) &&
         pieces.next(entry.value);
}

[[nodiscard]] OutMod parse_out_mod(std::string_view text);

// Reads the three files in this order; the weights are generated where the modifiers say so. False,
// with an event, when the weights or the modifiers cannot be read; missing caps are only reported.
[[nodiscard]] bool load_out_settings(OutSettings& settings, std::size_t trade_count);

// Weights falling from about 2.6 to the power of their number down to 1 (2.3 when fast), more of
// them the more trades there are. Never above 2147483647.
[[nodiscard]] OutSet generate_out_set(std::size_t trade_count, bool fast);

// No caps for an id without a line.
[[nodiscard]] TradeCap caps_of(const TradeCaps& caps, std::int32_t id);

}  // namespace vantrel
