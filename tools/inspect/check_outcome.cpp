#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/rehearsal.h"
#include "base/text.h"
#include "checks.h"
#include "out/out_list.h"
#include "run/driver.h"
#include "run/event_log.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

std::time_t start_of_trial = 0;

// The run that comes next, tried out up to its list.
struct Trial {
  Run run;
  bool reached_list = false;
  std::string log;  // lines of the events
  std::vector<OutListEntry> list;
};

Trial try_next_run() {
  Trial trial;
  Rehearsal rehearsal;
  start_of_trial = next_start();
  set_wall_clock([] { return start_of_trial; });
  trial.reached_list = open_run(trial.run) && load_store(trial.run) && account_traffic(trial.run) &&
                       plan_traffic(trial.run);
  set_wall_clock(nullptr);
  if (const std::string* log = rehearsal.written("l/sys/sys.log")) trial.log = *log;
  if (const std::string* list = rehearsal.written(kOutListFile)) {
    OutListHeader header;
    static_cast<void>(decode_out_list(*list, header, trial.list));
  }
  return trial;
}

// The event a line of the log is of, with its subject.
std::optional<Finding> finding_of_line(std::string_view line) {
  Pieces pieces(line);
  std::string_view piece;
  for (int i = 0; i < 4; ++i) static_cast<void>(pieces.next(piece));  // code
  const std::string_view code = piece;
  const std::string subject(pieces.next_or_empty());
  for (const Event* event : all_events()) {
    if (event->code == code && sanitised(event->subject) == subject) {
      return finding_of(std::string(event->subject), *event);
    }
  }
  return std::nullopt;
}

// The last resort: what the run reports and nobody above has looked for.
void check_end(Findings& findings, const Trial& trial) {
  if (trial.reached_list ? findings.status() > 0 : findings.answers_no(Question::end)) return;
  std::optional<Finding> found;
  Pieces lines = lines_of(trial.log);
  for (std::string_view line; lines.next(line);) {
    const auto finding = finding_of_line(line);
    if (finding && (!found || finding->severity > found->severity)) found = finding;
  }
  if (found) {
    findings.add(*found);
  } else if (!trial.reached_list) {
    findings.ends_run("run", "ends before its outgoing list, without an event",
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

void check_list(Findings& findings, const Trial& trial) {
  const std::size_t senders = count_senders(trial.run.store.works, false);
  const std::size_t before = length_of_present_list();
  const Shares shares = shares_of(trial.list);
  const auto tell = [&findings](const std::string& text) {
    findings.worthless("list", text, "vantrel-inspect why and preview show what each trade lacks");
  };
  if (trial.list.empty()) {
    if (before > 0 || count_senders(trial.run.store.works, true) > 0) {
      tell("the next list is empty: no visitor is sent to a trade");
    }
  } else if (shares.with_weight == 0) {
    tell("in the next list all weights are 0: no visitor is sent to a trade");
  } else if (trial.list.front().weight <= 0 && trial.list.front().second_weight <= 0) {
    tell("rank 1 of the next list, " + printable(field_text(trial.list.front().name)) +
         ", has no weight");
  } else if (shares.total > 0 && shares.largest / shares.total > 0.9 &&
             std::max(senders, trial.list.size()) >= kFew) {
    tell(shares.best + " has " + number_text(std::floor(shares.largest / shares.total * 100)) +
         " % of the weights of the next list");
  } else if (before >= kFew && trial.list.size() * 2 < before) {
    tell("the next list has " + counted(trial.list.size(), "trade") + ", the present one " +
         std::to_string(before));
  } else if (senders >= kFew && shares.with_weight * 3 < senders) {
    tell(counted(shares.with_weight, "trade") + " of " + std::to_string(senders) +
         " that send visitors would get any");
  }
}

}  // namespace

void check_outcome(Findings& findings) {
  const Trial trial = try_next_run();
  check_end(findings, trial);
  // A cause that was found explains a list that is not worth following.
  if (trial.reached_list && !findings.answers_no(Question::list)) check_list(findings, trial);
  findings.fine("list", counted(trial.list.size(), "trade") + " in the next one");
}

}  // namespace vantrel::inspect
