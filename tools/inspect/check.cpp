#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "access.h"
#include "base/rehearsal.h"
#include "checks.h"
#include "site.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kSeverityNames[] = {"ok", "note", "warning", "fatal"};
constexpr Colour kColours[] = {Colour::green, Colour::faint, Colour::yellow, Colour::red};
constexpr const char* kQuestionNames[] = {"", "end", "list", "loss"};

// A directory that has neither of the two folders is some other place.
bool is_site(Findings& findings) {
  if (exists("d") || exists("l")) return true;
  const bool inside = exists("../d/t") || exists("../l/sys");
  findings.ends_run(".", "this is no site: it has no folder d and no folder l",
                    inside ? "the site is the folder above: use --site .."
                           : "name the directory of the site with --site");
  return false;
}

void examine(Findings& findings) {
  {
    // The run's own loaders read here; nothing of the site changes by it.
    const Rehearsal rehearsal;
    TradeStore store;
    check_event_log(findings);
    check_scheduler(findings);
    check_run_history(findings);
    check_processes(findings);
    check_recent_events(findings);
    check_disk(findings);
    const bool has_trades = check_index(findings, store);
    check_summary(findings, store, has_trades);
    check_hit_logs(findings, store);
    check_statistics(findings, store);
    if (has_trades) check_trades(findings, store);
    if (has_trades) check_history(findings, store);
    check_marker(findings);
    check_skim(findings);
    check_lists(findings, store);
    check_rules(findings);
    check_ratings(findings);
    check_main_settings(findings, store);
    check_outgoing(findings, store, has_trades);
    check_alerts(findings);
    check_programs(findings);
    check_backups(findings);
  }
  findings.settle();
  check_outcome(findings);
  findings.settle();
}

Json finding_json(const Finding& finding) {
  Json json = {{"severity", kSeverityNames[static_cast<std::size_t>(finding.severity)]},
               {"question", kQuestionNames[static_cast<std::size_t>(finding.question)]},
               {"subject", finding.subject},
               {"finding", finding.text},
               {"remedy", finding.remedy}};
  if (!finding.excerpt.empty()) {
    json["excerpt"] = finding.excerpt;
    json["column"] = finding.column;
  }
  return json;
}

std::string verdict_of(const Findings& findings) {
  std::string text = findings.status() == 2 ? "The next run would end early."
                     : findings.status() == 1
                         ? "The next run would reach its end, but something is off."
                         : "The next run would reach its end.";
  if (findings.answers_no(Question::list)) text += " Its list is not worth following.";
  if (findings.answers_no(Question::loss)) text += " Something is being lost.";
  return findings.status() == 0 ? text + " Its list is worth following, nothing is being lost."
                                : text;
}

void print_finding(const Json& finding) {
  const std::string& name = finding["severity"].get_ref<const std::string&>();
  const auto* found = std::find(std::begin(kSeverityNames), std::end(kSeverityNames), name);
  const auto severity = static_cast<std::size_t>(found - kSeverityNames);
  std::cout << coloured(kColours[severity], kSeverityNames[severity]) << ": "
            << cell(finding["subject"]) << ": " << cell(finding["finding"]);
  const std::string remedy = cell(finding["remedy"]);
  if (!remedy.empty()) std::cout << " -> " << remedy;
  std::cout << '\n';
  if (!finding.contains("excerpt")) return;
  std::cout << "    " << cell(finding["excerpt"]) << "\n    "
            << std::string(finding["column"].get<std::size_t>(), ' ') << "^\n";
}

}  // namespace

Json check_view(const CheckQuery& query) {
  if (!query.user.empty()) become_user(query.user);
  Findings findings;
  if (is_site(findings)) examine(findings);
  Json list = Json::array();
  std::string fine;
  std::size_t count = 0;
  for (const Finding& finding : findings.list()) {
    if (finding.severity > Severity::fine || query.verbose) {
      list.push_back(finding_json(finding));
    } else {
      fine += (count++ == 0 ? "" : ", ") + finding.subject;
    }
  }
  if (count > 0) {
    list.push_back(finding_json(
        {Severity::fine, Question::none, counted(count, "thing") + " looked at", fine, "", "", 0}));
  }
  return {{"status", findings.status()},
          {"verdict", verdict_of(findings)},
          {"reaches_end", findings.status() < 2},
          {"list_worth_following", findings.status() < 2 && !findings.answers_no(Question::list)},
          {"nothing_lost", !findings.answers_no(Question::loss)},
          {"user", current_user()},
          {"checked_as_root", ::geteuid() == 0},
          {"findings", list}};
}

void print_check(const Json& view) {
  for (const Json& finding : view["findings"]) print_finding(finding);
  if (view["checked_as_root"] == true) {
    std::cout << "Permissions were looked at as root; --user NAME looks as the user of the run.\n";
  }
  std::cout << coloured(Colour::bold, cell(view["verdict"])) << '\n';
}

}  // namespace vantrel::inspect
