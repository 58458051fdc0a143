#include <algorithm>
#include <set>
#include <string>

#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "site.h"
#include "store/trade_index.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kReserved = reserved::kLastEntry + 1;

void report(Findings& findings, const NameList& list, const std::string& text,
            const std::string& remedy = "correct the trade in the administration") {
  if (!list.empty()) findings.off(kIndexFile, text + ": " + list.text(), remedy);
}

// True when a run could have to write the index: a countdown is under way.
bool has_countdown(const TradeStore& store) {
  return std::any_of(store.trades.begin(), store.trades.end(), [](const TradeRecord& trade) {
    return trade.hours_left > 0 || trade.hits_left > 0;
  });
}

// The whole file is of no use; which way is found here. False when it is not.
bool is_wrecked(Findings& findings, const std::string& bytes, const TradeStore& store) {
  const std::string remedy =
      restore_command(kIndexFile) + ", before a run: what comes in meanwhile is counted as unknown";
  if (bytes.find_first_not_of('\0') == bytes.npos) {
    findings.lost(kIndexFile, "holds nothing but zero bytes: every trade is gone", remedy);
    return true;
  }
  if (store.trades.size() <= kReserved) {
    const bool exactly = store.trades.size() == kReserved;
    findings.lost(kIndexFile,
                  exactly ? "holds the reserved entries only: there is no trade"
                          : "holds " + std::to_string(store.trades.size()) +
                                " entries: not even the reserved ones are all there",
                  remedy);
    return true;
  }
  return false;
}

void check_reserved(Findings& findings, const TradeStore& store) {
  NameList moved;
  for (std::size_t i = 0; i < kReserved; ++i) {
    const std::int32_t id = store.trades[i].id;
    if (id != static_cast<std::int32_t>(i)) {
      moved.add("position " + std::to_string(i) + " holds id " + std::to_string(id));
    }
  }
  if (moved.empty()) return;
  findings.lost(kIndexFile,
                "the reserved entries are not in their places: " + moved.text() +
                    "; what is collected for one goes to another",
                restore_command(kIndexFile));
}

void check_ids(Findings& findings, const TradeStore& store) {
  std::set<std::int32_t> ids;
  NameList twice, reserved;
  for (std::size_t i = 0; i < store.trades.size(); ++i) {
    const std::int32_t id = store.trades[i].id;
    if (!ids.insert(id).second) twice.add(std::to_string(id));
    if (i >= kReserved && id <= static_cast<std::int32_t>(reserved::kLastEntry)) {
      reserved.add("position " + std::to_string(i) + " with id " + std::to_string(id));
    }
  }
  report(findings, twice, "entries share an id and with it their statistics");
  report(findings, reserved, "a trade with an id that is not above 10 is no trade to the run");
}

void check_names(Findings& findings, const TradeStore& store) {
  std::set<std::string_view> names;
  NameList twice, capitals, slashes, odd, none;
  for (const TradeRecord& trade : store.trades) {
    const std::string_view name = field_text(trade.name);
    const std::string shown = printable(name);
    if (name.empty()) {
      none.add("id " + std::to_string(trade.id));
      continue;
    }
    if (!names.insert(name).second) twice.add(shown);
    const auto has = [name](auto fits) { return std::any_of(name.begin(), name.end(), fits); };
    if (has([](char c) { return c >= 'A' && c <= 'Z'; })) capitals.add(shown);
    if (has([](char c) { return c == '/'; })) slashes.add(shown);
    if (has([](char c) { return c == '|' || c <= ' ' || c == 127; })) odd.add(shown);
  }
  report(findings, none, "entries without a name get every hit whose name is empty");
  report(findings, twice, "only the first entry of a name is credited with its hits");
  report(findings, capitals, "hits are matched in lower case and never reach a name with capitals");
  report(findings, slashes, "a name with a slash has no history");
  report(findings, odd, "no hit can have a name with bars, blanks or control characters");
}

// Texts that do not fit their field in d/out.lst are cut there.
void check_texts(Findings& findings, const TradeStore& store) {
  constexpr std::size_t kListedName = 49;
  constexpr std::size_t kListedUrl = 101;
  NameList urls, names, no_url;
  for (std::size_t i = kReserved; i < store.trades.size(); ++i) {
    const TradeRecord& trade = store.trades[i];
    const std::string name = printable(field_text(trade.name));
    if (field_text(trade.text_80).size() > kListedUrl) urls.add(name);
    if (field_text(trade.name).size() > kListedName) names.add(name);
    if (field_text(trade.text_80).empty()) no_url.add(name);
  }
  report(findings, urls, "addresses longer than 101 characters are cut in d/out.lst");
  report(findings, names, "names longer than 49 characters are cut in d/out.lst");
  report(findings, no_url, "visitors are sent to an empty address");
}

}  // namespace

bool check_index(Findings& findings, TradeStore& store) {
  const auto bytes = read_file(kIndexFile);
  if (!bytes) {
    findings.refused(kIndexFile, Need::read, event::index_unavailable);
    return false;
  }
  store.trades = read_trades(*bytes);
  if (store.trades.size() < kFewestTrades) {
    store.trades.clear();
    findings.as_event(kIndexFile, event::index_too_small);
    return false;
  }
  bool wrecked = is_wrecked(findings, *bytes, store);
  fill_work_array(store);
  if (!wrecked && bytes->size() % sizeof(TradeRecord) != 0) {
    findings.lost(kIndexFile, "its length is no multiple of 996: the last entry is cut short",
                  restore_command(kIndexFile));
    wrecked = true;
  }
  if (!may_write(kIndexFile)) {
    findings.refused(
        kIndexFile, Need::write,
        has_countdown(store)
            ? finding_of(kIndexFile, event::index_unavailable)
            : finding_off(kIndexFile,
                          "cannot be written; the first quota or guarantee would end the run",
                          "give the run's user write permission on it"));
  }
  if (wrecked) return false;
  check_reserved(findings, store);
  check_ids(findings, store);
  check_names(findings, store);
  check_texts(findings, store);
  findings.fine(kIndexFile,
                std::to_string(store.trades.size()) + " entries, reserved ones included");
  return true;
}

}  // namespace vantrel::inspect
