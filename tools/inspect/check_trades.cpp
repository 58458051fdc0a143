#include <algorithm>
#include <functional>
#include <string>

#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "store/trade_index.h"

namespace vantrel::inspect {
namespace {

// A setting of a trade, what it should be and what becomes of it otherwise.
struct Setting {
  const char* what;
  std::function<bool(const TradeRecord&)> is_right;
  std::function<std::int32_t(const TradeRecord&)> value;
};

bool within(std::int32_t value, std::int32_t low, std::int32_t high) {
  return low <= value && value <= high;
}

const Setting kSettings[] = {
    {"scoring mode is none of 0, 1 and 2: no ratio is checked",
     [](const TradeRecord& t) { return within(t.flag_880, 0, 2); },
     [](const TradeRecord& t) { return t.flag_880; }},
    {"forced listing is none of 0, 1 and 2",
     [](const TradeRecord& t) { return within(t.param_892, 0, 2); },
     [](const TradeRecord& t) { return t.param_892; }},
    {"skim is not from -1 to 100",
     [](const TradeRecord& t) { return within(t.param_844, -1, 100); },
     [](const TradeRecord& t) { return t.param_844; }},
    {"the guarantee is below 0", [](const TradeRecord& t) { return t.hits_left >= 0; },
     [](const TradeRecord& t) { return t.hits_left; }},
    {"the hours of the quota are below -1 and switch it off",
     [](const TradeRecord& t) { return t.hours_left >= -1; },
     [](const TradeRecord& t) { return t.hours_left; }},
    {"a quota of an hour is below 0",
     [](const TradeRecord& t) {
       return std::all_of(std::begin(t.hourly), std::end(t.hourly),
                          [](std::int32_t clicks) { return clicks >= 0; });
     },
     [](const TradeRecord& t) {
       return *std::min_element(std::begin(t.hourly), std::end(t.hourly));
     }},
    {"whether a quota overrides the minimum is neither 0 nor 1",
     [](const TradeRecord& t) { return within(t.param_888, 0, 1); },
     [](const TradeRecord& t) { return t.param_888; }},
    {"the measure of the boost is none of 1 to 5",
     [](const TradeRecord& t) { return within(t.param_828, 1, 5); },
     [](const TradeRecord& t) { return t.param_828; }},
    {"the threshold of the boost is below -1",
     [](const TradeRecord& t) { return t.param_832 >= -1; },
     [](const TradeRecord& t) { return t.param_832; }},
    {"a percentage of the boost is not from -1 to 10,000",
     [](const TradeRecord& t) {
       return within(t.param_836, -1, 10000) && within(t.param_840, -1, 10000);
     },
     [](const TradeRecord& t) {
       return within(t.param_836, -1, 10000) ? t.param_840 : t.param_836;
     }},
    {"a boost needs its threshold and both percentages above 0 to work",
     [](const TradeRecord& t) {
       const bool set = t.param_832 > 0;
       return (t.param_836 > 0) == set && (t.param_840 > 0) == set;
     },
     [](const TradeRecord& t) { return t.param_832; }},
};

// The request script sends visitors to the text as it stands.
void check_addresses(Findings& findings, const TradeStore& store) {
  NameList wrong;
  for (std::size_t i = reserved::kLastEntry + 1; i < store.trades.size(); ++i) {
    const std::string_view address = field_text(store.trades[i].text_80);
    if (address.find("://") != std::string_view::npos) continue;
    wrong.add(printable(field_text(store.trades[i].name)) + " (" + quote(address) + ")");
  }
  if (wrong.empty()) return;
  findings.off("trades", "the address visitors are sent to has no \"://\": " + wrong.text(),
               "correct the trade in the administration");
}

}  // namespace

void check_trades(Findings& findings, const TradeStore& store) {
  for (const Setting& setting : kSettings) {
    NameList wrong;
    for (std::size_t i = reserved::kLastEntry + 1; i < store.trades.size(); ++i) {
      const TradeRecord& trade = store.trades[i];
      if (setting.is_right(trade)) continue;
      wrong.add(printable(field_text(trade.name)) + " (" + std::to_string(setting.value(trade)) +
                ")");
    }
    if (wrong.empty()) continue;
    findings.off("trades", std::string(setting.what) + ": " + wrong.text(),
                 "correct the trade in the administration");
  }
  check_addresses(findings, store);
}

}  // namespace vantrel::inspect
