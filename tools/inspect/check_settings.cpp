#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/numbers.h"
#include "base/text.h"
#include "findings.h"
#include "out/out_list.h"
#include "report/alerts.h"
#include "settings/ip_table.h"
#include "settings/main_settings.h"
#include "settings/traffic_settings.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

// The two files whose absence the run answers with an error page instead of an event.
bool is_there(Findings& findings, const std::string& path, const std::string& what) {
  if (may_read(path)) return true;
  findings.ends_run(path, what + " cannot be opened",
                    "save the settings in the administration, or check permissions");
  return false;
}

void check_rules(Findings& findings) {
  constexpr const char* kRules = "d/traffic.set";
  if (!is_there(findings, kRules, "the table of traffic rules")) return;
  std::array<TrafficRule, TrafficSettings::kRuleCount> rules;
  const std::size_t count = parse_traffic_rules(read_file(kRules).value_or(""), rules);
  if (count == rules.size()) return;
  findings.off(kRules, "holds " + std::to_string(count) + " of 36 rules; the others have no effect",
               "save the traffic settings in the administration");
}

void check_ip_table(Findings& findings) {
  constexpr const char* kTable = "d/ip.psv";
  if (!may_read(kTable)) {
    findings.as_event(kTable, event::ip_table_missing);
    return;
  }
  std::size_t ranges = 0;
  std::size_t first_wrong = 0;
  std::uint64_t addresses = 0;
  std::uint32_t last = 0;
  const std::string text = read_file(kTable).value_or("");
  Pieces pieces(text);
  for (IpRange range; next_ip_range(pieces, range); last = range.last) {
    ++ranges;
    const bool wrong = range.first > range.last || (ranges > 1 && range.first <= last);
    if (first_wrong == 0 && wrong) first_wrong = ranges;
    if (range.first <= range.last) addresses += std::uint64_t{range.last} - range.first + 1;
  }
  if (first_wrong > 0) {
    findings.off(kTable,
                 "range " + std::to_string(first_wrong) +
                     " is out of order, overlaps the one before it or ends before it begins",
                 "install the table again, ascending and without overlaps");
  } else if (ranges == 0) {
    findings.off(kTable, "holds no range: every country is unknown", "install the table again");
  } else {
    findings.fine(kTable,
                  counted(ranges, "range") + " cover " + std::to_string(addresses) + " addresses");
  }
}

bool gives_weights(std::string_view text) { return std::count(text.begin(), text.end(), '|') > 0; }

// A program named by the first word of a command line, as the shell finds it.
bool is_program(const std::string& command) {
  const std::string name = command.substr(0, command.find_first_of(" \t"));
  if (name.find('/') != name.npos) return may_execute(name);
  const char* path = std::getenv("PATH");
  Pieces directories(path == nullptr ? "/usr/bin:/bin" : path, ':');
  for (std::string_view directory; directories.next(directory);) {
    if (may_execute(std::string(directory) + "/" + name)) return true;
  }
  return false;
}

}  // namespace

void check_traffic_settings(Findings& findings) {
  static_cast<void>(examined(findings, "d/ds", event::skim_missing));
  static_cast<void>(examined(findings, "d/proxy", event::proxy_missing));
  check_rules(findings);
  static_cast<void>(examined(findings, "d/geo.rating", event::geo_missing));
  check_ip_table(findings);
  static_cast<void>(examined(findings, "d/agent.rating", event::agents_missing));
  static_cast<void>(examined(findings, "d/request.rating", event::requests_missing));
  static_cast<void>(examined(findings, "d/tags.rating", event::tags_missing));
}

void check_main_settings(Findings& findings) {
  const auto text = read_file(kSettingsFile);
  if (!text) {
    findings.as_event(kSettingsFile, event::settings_missing);
    return;
  }
  MainSettings settings;
  if (!parse_main_settings(settings, *text)) {
    findings.as_event(kSettingsFile, event::settings_corrupt);
    return;
  }
  const bool kept = settings.sync_state == "2";
  if (!may_write(kSettingsFile)) {
    findings.off(kSettingsFile,
                 kept ? "cannot be written when a synchronisation is requested"
                      : "cannot be written: every run synchronises the databases",
                 "give the run's user write permission on it");
  } else if (!may_write("d")) {
    findings.off("d", "takes no new file: d/set is overwritten where a kill could tear it",
                 "give the run's user write permission on the directory");
  }
}

void check_outgoing(Findings& findings) {
  const std::string weights = examined(findings, "d/out.set", event::out_set_missing);
  const std::string modifiers = examined(findings, "d/out.mod", event::out_mod_missing);
  static_cast<void>(examined(findings, "d/caps", event::caps_missing));
  constexpr std::size_t kGenerated = 7;  // field 6, behind the text before the first bar
  const auto fields = split(modifiers);
  const bool generated = fields.size() > kGenerated && fields[kGenerated] == "1";
  if (!generated && may_read("d/out.set") && !gives_weights(weights)) {
    findings.off("d/out.set", "holds no weight: no trade gets a first weight",
                 "save the outgoing settings in the administration");
  }
  is_there(findings, "d/nm/track", "the tracking setting");
  if (!may_create_or_write(kOutListFile)) {
    findings.as_event(kOutListFile, event::out_list_unwritable);
  } else if (const auto list = read_file(kOutListFile)) {
    OutListHeader header;
    std::vector<OutListEntry> entries;
    const bool whole = decode_out_list(*list, header, entries) &&
                       (list->size() - sizeof header) % sizeof(OutListEntry) == 0;
    if (!whole) findings.off(kOutListFile, "is not whole", "nothing: the next run writes it anew");
  }
}

void check_alerts(Findings& findings) {
  constexpr const char* kAlerts = "d/alerts";
  const auto text = read_file(kAlerts);
  if (!text) {
    findings.as_event(kAlerts, event::alerts_unavailable);
    return;
  }
  const AlertFields fields = parse_alerts(*text);
  if (fields.size() != kAlertFieldCount) {
    findings.as_event(kAlerts, event::alerts_corrupt);
    return;
  }
  const std::string& mailer = fields[alert_field::kMailProgram];
  if (mailer == "0") {
    findings.fine(kAlerts, "no mail program is set: no alert is sent");
  } else if (!can_be_mailed(fields)) {
    findings.off(kAlerts,
                 "no alert is sent: the path of the mail program has fewer than eleven "
                 "characters, or an address is none",
                 "correct the alert settings in the administration");
  } else if (!is_program(mailer)) {
    findings.off(kAlerts, "the mail program cannot be executed: " + mailer,
                 std::string(event::mail_not_started.remedy));
  }
  if (!may_write(kAlerts)) {
    findings.off(kAlerts, "cannot be written: an alert that fires is mailed every minute",
                 std::string(event::alerts_unavailable.remedy));
  }
}

void check_programs(Findings& findings) {
  for (const char* script : {"sh_sync.cgi", "sh_hta.cgi", "sh_top.cgi"}) {
    if (may_execute(script)) continue;
    findings.off(script, "the companion script is missing or cannot be executed",
                 "put it back and make it executable for the run's user");
  }
  constexpr const char* kBackup = "d/backup";
  if (!is_directory(kBackup) || !may_read(kBackup) || !may_write(kBackup)) {
    findings.off(kBackup, "no backup is kept: the directory cannot be listed or written",
                 "make the directory, readable and writable for the run's user");
  }
  if (!is_program("tar")) {
    findings.off("tar", "is not on the path: no backup is made", "install tar with gzip support");
  }
}

}  // namespace vantrel::inspect
