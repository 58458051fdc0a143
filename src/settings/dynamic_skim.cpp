#include "settings/dynamic_skim.h"

#include <optional>
#include <string_view>

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

struct SkimSwitches {
  bool enabled = false;
  bool trades = false;
  bool entry6 = false;
  bool entry3 = false;
};

struct SkimCondition {
  std::string_view metric;
  std::string_view op;
  std::int32_t threshold = 0;
};

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

std::int32_t metric_of(const SiteTotals& totals, std::string_view metric) {
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
  return 0;
}

bool matches(const SkimCondition& condition, std::int32_t value) {
  if (condition.op == "1") return value > condition.threshold;
  return condition.op == "2" && value < condition.threshold;
}

bool applies_to(const SkimSwitches& switches, const TradeWork& work) {
  return (work.id == 3 && switches.entry3) || (work.id == 6 && switches.entry6) ||
         (work.id > 10 && switches.trades);
}

}  // namespace

std::optional<SkimChange> apply_dynamic_skim(std::vector<TradeWork>& works) {
  FileBuffer file;
  if (!file.read("d/ds")) {
    report(event::skim_missing);
    report(event::skim_consequence);
    return std::nullopt;
  }
  Pieces fields(file.text());
  std::string_view field;
  std::string_view switch_texts[4];
  static_cast<void>(fields.next(field));  // what stands before the first bar
  for (std::string_view& text : switch_texts) {
    if (!fields.next(text)) return std::nullopt;
  }
  const SkimSwitches switches{switch_texts[0] == "1", switch_texts[1] == "1",
                              switch_texts[2] == "1", switch_texts[3] == "1"};
  if (!switches.enabled || !(switches.trades || switches.entry6 || switches.entry3)) {
    return std::nullopt;
  }

  const SiteTotals totals = site_totals(works);
  // Every matching block would set the same entries anew, so only the last one counts.
  std::optional<SkimChange> change;
  std::size_t number = 0;
  for (std::string_view skim, threshold; fields.next(skim); ++number) {
    SkimCondition block;
    if (!fields.next(block.metric) || !fields.next(block.op) || !fields.next(threshold)) break;
    block.threshold = to_int(threshold);
    const std::int32_t value = metric_of(totals, block.metric);
    if (!matches(block, value)) continue;
    change = SkimChange{number, to_int(skim),    std::string(block.metric),
                        value,  block.threshold, block.op == "1"};
  }
  if (!change) return std::nullopt;
  for (TradeWork& work : works) {
    if (applies_to(switches, work)) work.param_844 = change->skim;
  }
  return change;
}

}  // namespace vantrel
