#include <algorithm>
#include <set>
#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "settings/traffic_settings.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

void check_names(Findings& findings, const TradeStore& store) {
  constexpr const char* kNames = "d/se";
  const auto text = read_file(kNames);
  if (!text) {
    if (exists(kNames)) {
      findings.refused(kNames, Need::read,
                       finding_off(kNames, "cannot be read: no name is counted apart",
                                   "give the run's user read permission on it"));
    }
    return;
  }
  std::set<std::string_view> trades;
  for (std::size_t i = 0; i < store.trades.size(); ++i) {
    if (i != reserved::kUnknown) trades.insert(field_text(store.trades[i].name));
  }
  Complaints complaints(*text, kNames);
  std::string copy = *text;
  Pieces lines = lines_of(*text);
  for (std::string_view line; lines.next(line);) {
    const std::string_view name =
        clean_name(copy.data() + (line.data() - text->data()), line.size());
    const auto is_capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (std::any_of(name.begin(), name.end(), is_capital)) {
      complaints.about(line,
                       quote(name) + " has capitals and is never met: hits are in lower case");
    } else if (std::any_of(name.begin(), name.end(), [](char c) { return c <= ' '; })) {
      complaints.about(line, quote(name) + " has white space or control characters");
    } else if (!name.empty() && trades.contains(name)) {
      complaints.about(line, quote(name) + " is the name of a trade, which gets the hits");
    }
  }
  complaints.tell(findings, "names counted apart", "correct the list in the administration");
}

bool is_address(std::string_view word) {
  return !word.empty() && std::count(word.begin(), word.end(), '.') == 3 &&
         std::all_of(word.begin(), word.end(), [](char c) { return is_digit(c) || c == '.'; });
}

void check_proxies(Findings& findings) {
  constexpr const char* kProxies = "d/proxy";
  const auto text = examined(findings, kProxies, event::proxy_missing);
  if (!text) return;
  Complaints complaints(*text, kProxies);
  Pieces lines = lines_of(*text);
  std::size_t count = 0;
  for (std::string_view line; lines.next(line);) {
    std::string_view rest = proxy_part(line);
    for (std::string_view word; next_word(rest, word); ++count) {
      if (!is_address(word)) {
        complaints.about(word, quote(word) + " is no address and is never met");
      }
    }
  }
  complaints.tell(findings, counted(count, "address"),
                  "one address w.x.y.z a line, a port behind a colon; ranges are not known");
}

}  // namespace

void check_lists(Findings& findings, const TradeStore& store) {
  check_names(findings, store);
  check_proxies(findings);
}

}  // namespace vantrel::inspect
