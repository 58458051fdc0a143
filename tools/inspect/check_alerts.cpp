#include <algorithm>
#include <limits>
#include <string>

#include "base/numbers.h"
#include "checks.h"
#include "places.h"
#include "report/alerts.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kAlerts = "d/alerts";
constexpr const char* kCorrect = "correct the alert settings in the administration";

// "Your site dropped below 100 unique hits per day", as the mail would say.
std::string name_of(const AlertKind& kind, const std::string& threshold) {
  std::string text(kind.before.substr(2));
  text.append(threshold).append(kind.after.substr(0, kind.after.find('\n')));
  return quote(text);
}

bool can_fire(const AlertKind& kind, std::int32_t threshold) {
  constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max();
  constexpr AlertTotals kNone{0, 0, 0};
  constexpr AlertTotals kAll{kMost, kMost, std::numeric_limits<std::int32_t>::max()};
  return crosses(kind, threshold, kNone) || crosses(kind, threshold, kAll);
}

void check_mailer(Findings& findings, const AlertFields& fields) {
  const std::string& mailer = fields[alert_field::kMailProgram];
  if (!can_be_mailed(fields)) {
    findings.off(kAlerts,
                 "no alert is sent: the path of the mail program (" + quote(mailer) +
                     ") has fewer than eleven characters, or an address is none",
                 kCorrect);
  } else if (!program_of(mailer)) {
    findings.off(kAlerts,
                 "the mail program cannot be executed: " + printable(mailer) +
                     "; an alert counts as sent all the same and is lost without a line",
                 "check the path of the mail program in the alert settings");
  } else if (const auto odd = mailer.find_first_of("|&;<>()$`\\\"'*?[]#~{}\n");
             odd != std::string_view::npos) {
    findings.off(kAlerts,
                 "the shell that starts the mail program gives " + quote(mailer.substr(odd)) +
                     " a meaning of its own",
                 "leave the path of the program only; options may follow it");
  }
}

void check_thresholds(Findings& findings, const AlertFields& fields) {
  NameList never;
  NameList odd;
  std::size_t left = 0;
  std::size_t sent = 0;
  for (const AlertKind& kind : alert_kinds()) {
    const std::string& text = fields[kind.threshold];
    const std::string& flag = fields[kind.flag()];
    const std::int32_t threshold = to_int(text);
    const bool fires = can_fire(kind, threshold);
    if (!is_whole_int(text)) odd.add(quote(text) + " is no number");
    if (flag != "0" && flag != "1") odd.add("the flag " + quote(flag) + " counts as sent");
    if (threshold < 0) odd.add("the threshold " + quote(text) + " is below 0");
    // A least of 0 is one that is not wanted.
    if (!fires && threshold != 0) never.add(name_of(kind, text));
    if (flag != "0") ++sent;
    if (flag == "0" && fires) ++left;
  }
  if (!odd.empty()) findings.off(kAlerts, odd.text(), kCorrect);
  if (odd.empty() && !never.empty()) {
    findings.off(kAlerts, "never fires: " + never.text(), kCorrect);
  }
  if (left == 0) {
    findings.off(kAlerts,
                 sent == 0 ? "none of the five alerts can fire"
                           : "no alert is left that could be sent: " + std::to_string(sent) +
                                 " of five were",
                 "set the flags of the sent ones back in the administration, or the thresholds");
  }
}

}  // namespace

void check_alerts(Findings& findings) {
  const auto text = examined(findings, kAlerts, event::alerts_unavailable);
  if (!text) return;
  const AlertFields fields = parse_alerts(*text);
  if (fields.size() != kAlertFieldCount) {
    Finding finding = finding_of(kAlerts, event::alerts_corrupt);
    finding.text =
        "There are " + std::to_string(fields.size()) + " pieces instead of 14" +
        (fields.size() > kAlertFieldCount ? " (a line feed behind the last bar is one)" : "") +
        ". " + finding.text;
    findings.add(finding);
    return;
  }
  if (fields[alert_field::kMailProgram] == "0") {
    findings.note(kAlerts, "no mail program is set: no alert is sent");
  } else {
    check_mailer(findings, fields);
    if (!findings.is_off(kAlerts)) check_thresholds(findings, fields);
  }
  if (!may_write(kAlerts)) {
    findings.refused(
        kAlerts, Need::write,
        finding_off(kAlerts, "cannot be written: an alert that fires is mailed every minute",
                    std::string(event::alerts_unavailable.remedy)));
  }
  findings.fine(kAlerts, "alerts can be sent");
}

}  // namespace vantrel::inspect
