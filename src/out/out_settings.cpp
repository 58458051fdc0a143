#include "out/out_settings.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

// Pairs of pieces: a name, a weight.
std::optional<OutSet> load_out_set() {
  FileBuffer file;
  if (!file.read("d/out.set")) return std::nullopt;
  OutSet weights;
  Pieces pieces(file.text());
  for (WeightPieces entry; next_weight(pieces, entry);) weights.push_back(to_int(entry.weight));
  return weights;
}

std::optional<OutMod> load_out_mod() {
  FileBuffer file;
  if (!file.read("d/out.mod")) return std::nullopt;
  return parse_out_mod(file.text());
}

void apply_cap(TradeCap& caps, std::string_view kind, std::int32_t value) {
  if (kind == "1") caps.cap_cef = value;
  if (kind == "2") caps.cap_ctt = value;
  if (kind == "3") caps.cap_out = value;
}

// Groups of four pieces: ignored, trade id, kind, value. Later ones override earlier ones.
std::optional<TradeCaps> load_caps() {
  FileBuffer file;
  if (!file.read("d/caps")) return std::nullopt;
  TradeCaps caps;
  Pieces pieces(file.text());
  for (CapPieces cap; next_cap(pieces, cap);) {
    if (cap.value != "-1") apply_cap(caps[to_int(cap.id)], cap.kind, to_int(cap.value));
  }
  return caps;
}

}  // namespace

// One record; the piece before its first bar is dropped.
OutMod parse_out_mod(std::string_view text) {
  auto fields = split(text, '|', 1 + OutMod::kFieldsUsed + 1);
  if (!fields.empty()) fields.erase(fields.begin());
  return OutMod(std::move(fields));
}

OutMod::OutMod(std::vector<std::string> fields) : fields_(std::move(fields)) {
  for (std::size_t i = 0; i < kFieldsUsed && i + 1 < fields_.size(); ++i) {
    numbers_[i] = to_int(fields_[i]);
  }
}

std::string_view OutMod::text(std::size_t i) const {
  return i < fields_.size() ? std::string_view(fields_[i]) : std::string_view();
}

bool load_out_settings(OutSettings& settings, std::size_t trade_count) {
  auto weights = load_out_set();
  if (!weights) {
    report(event::out_set_missing);
    return false;
  }
  auto modifiers = load_out_mod();
  if (!modifiers) {
    report(event::out_mod_missing);
    return false;
  }
  auto caps = load_caps();
  if (!caps) {
    report(event::caps_missing);
    report(event::caps_consequence);
    caps.emplace();
  }
  settings.modifiers = std::move(*modifiers);
  settings.caps = std::move(*caps);
  settings.weights = settings.modifiers.generates_weights()
                         ? generate_out_set(trade_count, /*fast=*/false)
                         : std::move(*weights);
  return true;
}

OutSet generate_out_set(std::size_t trade_count, bool fast) {
  constexpr std::size_t kMostFurther = 25;
  constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
  const std::size_t further =
      trade_count < 20 ? 0 : std::min((trade_count - 20) / 10 + 10, kMostFurther);
  OutSet weights{1};
  for (std::size_t i = 0; i < further; ++i) {
    const std::int64_t next = std::int64_t{weights.back()} * (fast ? 23 : 26) / 10;
    weights.push_back(static_cast<std::int32_t>(std::min(next, kLargest)));
  }
  std::reverse(weights.begin(), weights.end());
  return weights;
}

TradeCap caps_of(const TradeCaps& caps, std::int32_t id) {
  const auto found = caps.find(id);
  return found == caps.end() ? TradeCap{} : found->second;
}

}  // namespace vantrel
