#include "settings/dynamic_skim.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

// The site's traffic over all entries but the one with id 5.
struct SiteTotals {
  TrafficCounters last60;
  TrafficCounters last24;
};

SiteTotals site_totals(const std::vector<TradeWork>& works) {
  SiteTotals totals;
  for (const TradeWork& work : works) {
    if (work.id == 5) continue;
    add(totals.last60, work.last60);
    add(totals.last24, work.last24);
  }
  return totals;
}

// One of the ten codes and what it measures; nothing for any other text.
std::optional<std::int32_t> metric_of(const SiteTotals& totals, std::string_view metric) {
  const TrafficCounters& hour = totals.last60;
  const TrafficCounters& day = totals.last24;
  if (metric == "1") return hour[slot::uin];
  if (metric == "2") return hour[slot::cef];
  if (metric == "3") return hour[slot::ctt];
  if (metric == "4") return percent_of(hour[slot::out], hour[slot::uin]);
  if (metric == "5") return percent_of(hour[slot::cef], hour[slot::uin]);
  if (metric == "6") return day[slot::uin];
  if (metric == "7") return day[slot::cef];
  if (metric == "8") return day[slot::ctt];
  if (metric == "9") return percent_of(day[slot::out], day[slot::uin]);
  if (metric == "10") return percent_of(day[slot::cef], day[slot::uin]);
  return std::nullopt;
}

bool matches(const SkimBlock& block, std::int32_t value, std::int32_t threshold) {
  if (block.op == "1") return value > threshold;
  return block.op == "2" && value < threshold;
}

bool applies_to(const SkimSwitches& switches, const TradeWork& work) {
  return (work.id == 3 && switches.is_on(3)) || (work.id == 6 && switches.is_on(2)) ||
         (work.id > 10 && switches.is_on(1));
}

}  // namespace

bool read_skim_switches(Pieces& pieces, SkimSwitches& switches) {
  static_cast<void>(pieces.next_or_empty());  // what stands before the first bar
  return std::all_of(switches.texts.begin(), switches.texts.end(),
                     [&pieces](std::string_view& text) { return pieces.next(text); });
}

bool next_skim_block(Pieces& pieces, SkimBlock& block) {
  return pieces.next(block.value) && pieces.next(block.metric) && pieces.next(block.op) &&
         pieces.next(block.threshold);
}

bool is_skim_metric(std::string_view metric) { return metric_of({}, metric).has_value(); }
bool is_skim_operator(std::string_view op) { return op == "1" || op == "2"; }

std::optional<SkimChange> apply_dynamic_skim(std::vector<TradeWork>& works) {
  FileBuffer file;
  if (!file.read("d/ds")) {
    report(event::skim_missing);
    report(event::skim_consequence);
    return std::nullopt;
  }
  Pieces pieces(file.text());
  SkimSwitches switches;
  if (!read_skim_switches(pieces, switches) || !switches.in_use()) return std::nullopt;
  const SiteTotals totals = site_totals(works);
  // Every matching block would set the same entries anew, so only the last one counts.
  std::optional<SkimChange> change;
  std::size_t number = 0;
  for (SkimBlock block; next_skim_block(pieces, block); ++number) {
    const std::int32_t value = metric_of(totals, block.metric).value_or(0);
    const std::int32_t threshold = to_int(block.threshold);
    if (!matches(block, value, threshold)) continue;
    change = SkimChange{number, to_int(block.value), std::string(block.metric),
                        value,  threshold,           block.op == "1"};
  }
  if (!change) return std::nullopt;
  for (TradeWork& work : works) {
    if (applies_to(switches, work)) work.param_844 = change->skim;
  }
  return change;
}

}  // namespace vantrel
