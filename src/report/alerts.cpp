#include "report/alerts.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "base/files.h"
#include "base/numbers.h"
#include "base/replace_file.h"
#include "base/shell.h"
#include "base/text.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

constexpr const char* kAlertsFile = "d/alerts";

// In the order in which they are checked and mailed. The two blanks are what webmasters' filters
// have always matched.
constexpr AlertKind kAlertKinds[] = {
    {4, "* Your site dropped below ", " unique hits per day\n"},
    {6, "* Your site has grown to ", " unique hits per day\n"},
    {8, "* Your site has dropped below ", " unique hits per hour\n"},
    {10, "* Your site has grown to  ", " unique hits per hour\n"},
    {12, "* One of your trades has grown to ", " unique hits per day\n"},
};

AlertFields load_alerts() {
  FileBuffer file;
  if (!file.read(kAlertsFile)) {
    report(event::alerts_unavailable);
    return {};
  }
  return parse_alerts(file.text());
}

AlertTotals alert_totals(const std::vector<TradeWork>& works) {
  AlertTotals totals;
  totals.busiest = std::numeric_limits<std::int32_t>::min();
  for (const TradeWork& work : works) {
    totals.day += static_cast<std::uint32_t>(work.last24[slot::rin]);
    totals.hour += static_cast<std::uint32_t>(work.last60[slot::rin]);
    totals.busiest = std::max(totals.busiest, work.last24[slot::rin]);
  }
  return totals;
}

std::vector<const AlertKind*> fired_alerts(const AlertFields& fields,
                                           const std::vector<TradeWork>& works) {
  const AlertTotals totals = alert_totals(works);
  std::vector<const AlertKind*> fired;
  for (const AlertKind& kind : kAlertKinds) {
    const bool may_be_sent = fields[kind.flag()] == "0";
    if (may_be_sent && crosses(kind, to_int(fields[kind.threshold]), totals)) {
      fired.push_back(&kind);
    }
  }
  return fired;
}

std::string compose_mail(const AlertFields& fields, const std::vector<const AlertKind*>& alerts) {
  std::string mail = "To: " + fields[alert_field::kRecipient] +
                     "\nFrom: " + fields[alert_field::kSender] +
                     "\nSubject: Automatic Alert from Vantrel\n\n"
                     "Dear webmaster,\n\n"
                     "This is an email from the Vantrel Alert System to inform you about the "
                     "following.\n\n";
  for (const AlertKind* kind : alerts) {
    mail.append(kind->before).append(fields[kind->threshold]).append(kind->after);
  }
  return mail + "Thank you for your time.\n\nVantrel Alert System";
}

std::string encode_alerts(const AlertFields& fields) {
  std::string text = "|";
  for (const std::string& field : fields) text.append(field).append("|");
  return text;
}

// In place, because the administration side keeps the file open by name, when only flags change:
// whatever a kill or a power cut leaves of the two texts is then a file with each flag old or new.
// Where pieces move (a text before the first bar is dropped, an empty piece becomes 0) nothing but
// a second file and a rename leaves the old file or the new one.
bool store_alerts(const std::string& text) {
  FileBuffer old;
  const bool moves =
      old.read(kAlertsFile) && (text.size() != old.size() || !old.text().starts_with('|'));
  return moves ? replace_file(kAlertsFile, text) : overwrite_file(kAlertsFile, text);
}

}  // namespace

std::span<const AlertKind> alert_kinds() { return kAlertKinds; }

bool crosses(const AlertKind& kind, std::int32_t threshold, const AlertTotals& totals) {
  const auto limit = static_cast<std::uint32_t>(threshold);
  switch (kind.threshold) {
    case 4:
      return totals.day < limit;
    case 6:
      return totals.day > limit;
    case 8:
      return totals.hour < limit;
    case 10:
      return totals.hour > limit;
    default:
      return threshold < totals.busiest;
  }
}

AlertFields parse_alerts(std::string_view text) {
  AlertFields fields = split(text, '|', 1 + kAlertFieldCount + 1);
  if (!fields.empty()) fields.erase(fields.begin());
  for (std::string& field : fields) {
    if (field.empty()) field.assign(1, '0');
  }
  return fields;
}

bool can_be_mailed(const AlertFields& fields) {
  const auto is_address = [](const std::string& text) {
    return text.size() > 5 && text.find('@') != std::string::npos;
  };
  return fields[alert_field::kMailProgram].size() > 10 &&
         is_address(fields[alert_field::kSender]) && is_address(fields[alert_field::kRecipient]);
}

void run_alerts(const std::vector<TradeWork>& works) {
  AlertFields fields = load_alerts();
  if (fields.size() != kAlertFieldCount) {
    report(event::alerts_corrupt);
    return;
  }
  const auto alerts = fired_alerts(fields, works);
  if (alerts.empty() || !can_be_mailed(fields)) return;
  const std::string mail = compose_mail(fields, alerts);
  for (const AlertKind* kind : alerts) fields[kind->flag()].assign(1, '1');
  const std::string text = encode_alerts(fields);
  // All memory is in hand before the mail goes out: a mail sent is a flag stored.
  if (!pipe_to_command(fields[alert_field::kMailProgram] + " -t", mail)) {
    report(event::mail_not_started);
  }
  if (!store_alerts(text)) report(event::alerts_unavailable);
}

}  // namespace vantrel
