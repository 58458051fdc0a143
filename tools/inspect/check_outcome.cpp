#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/text.h"
#include "check_formula.h"
#include "checks.h"
#include "foresee.h"
#include "out/out_list.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

std::time_t start_of_trial = 0;

// The run that comes next, tried out up to its list.
Forecast try_next_run() {
  start_of_trial = expected_start();
  set_wall_clock([] { return start_of_trial; });
  Assumptions now;
  now.moment = Moment::run_now;
  Forecast trial = foresee(now);
  set_wall_clock(nullptr);
  return trial;
}

// The last resort: what the run reports and nobody above has looked for.
void check_end(Findings& findings, const Forecast& trial) {
  if (trial.reaches_list ? findings.status() > 0 : findings.answers_no(Question::end)) return;
  std::optional<Finding> found;
  for (const ForeseenEvent& event : trial.events) {
    Finding finding = finding_of(event.subject, *event.event);
    if (!found || finding.severity > found->severity) found = std::move(finding);
  }
  if (found) {
    findings.add(*found);
  } else if (!trial.reaches_list) {
    findings.ends_run("run", "ends before its outgoing list: " + trial.ending,
                      "start vantrel-cron by hand in the site and look at what it prints");
  }
}

struct Shares {
  std::size_t with_weight = 0;  // entries that can be picked
  double total = 0.0;           // of the first weights
  double largest = 0.0;
  std::string best;
};

Shares shares_of(const std::vector<OutListEntry>& list) {
  Shares shares;
  for (const OutListEntry& entry : list) {
    if (entry.weight > 0 || entry.second_weight > 0) ++shares.with_weight;
    shares.total += entry.weight;
    if (entry.weight <= shares.largest) continue;
    shares.largest = entry.weight;
    shares.best = printable(field_text(entry.name));
  }
  return shares;
}

// Trades that send visitors; the mode 0 keeps a trade from weights by intention.
std::size_t count_senders(const std::vector<TradeWork>& works, bool with_mode_0) {
  return static_cast<std::size_t>(std::count_if(works.begin(), works.end(), [=](const auto& work) {
    return work.id > 10 && (with_mode_0 || work.flag_880 != 0) && work.last24[slot::rin] > 0;
  }));
}

std::size_t length_of_present_list() {
  OutListHeader header;
  std::vector<OutListEntry> entries;
  const auto bytes = read_file(kOutListFile);
  return bytes && decode_out_list(*bytes, header, entries) ? entries.size() : 0;
}

// Fewer than these are a small site, where one trade may well have everything.
constexpr std::size_t kFew = 5;

void check_list(Findings& findings, const Forecast& trial) {
  OutListHeader header;
  std::vector<OutListEntry> list;
  static_cast<void>(decode_out_list(trial.list, header, list));
  const std::size_t senders = count_senders(trial.run.store.works, false);
  const std::size_t before = length_of_present_list();
  const Shares shares = shares_of(list);
  const auto tell = [&findings](const std::string& text) {
    findings.worthless("list", text, "vantrel-inspect why and preview show what each trade lacks");
  };
  if (list.empty()) {
    if (before > 0 || count_senders(trial.run.store.works, true) > 0) {
      tell("the next list is empty: no visitor is sent to a trade");
    }
  } else if (shares.with_weight == 0) {
    tell("in the next list all weights are 0: no visitor is sent to a trade");
  } else if (list.front().weight <= 0 && list.front().second_weight <= 0) {
    tell("rank 1 of the next list, " + printable(field_text(list.front().name)) +
         ", has no weight");
  } else if (shares.total > 0 && shares.largest / shares.total > 0.9 &&
             std::max(senders, list.size()) >= kFew) {
    tell(shares.best + " has " + number_text(std::floor(shares.largest / shares.total * 100)) +
         " % of the weights of the next list");
  } else if (before >= kFew && list.size() * 2 < before) {
    tell("the next list has " + counted(list.size(), "trade") + ", the present one " +
         std::to_string(before));
  } else if (senders >= kFew && shares.with_weight * 3 < senders) {
    tell(counted(shares.with_weight, "trade") + " of " + std::to_string(senders) +
         " that send visitors would get any");
  }
}

}  // namespace

void check_outcome(Findings& findings) {
  const Forecast trial = try_next_run();
  check_end(findings, trial);
  if (!trial.reaches_list) return;
  check_formula(findings, trial);
  // A cause that was found explains a list that is not worth following.
  if (findings.answers_no(Question::list)) return;
  check_list(findings, trial);
  findings.fine("list", "the next one is worth following");
}

}  // namespace vantrel::inspect
