#include <algorithm>
#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "checks.h"
#include "out/out_list.h"
#include "places.h"
#include "settings/main_settings.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kSave = "save the main settings again in the administration";

// Fields 1 of the six lines, and the texts of the first three.
void check_lines(Findings& findings, const MainSettings& settings) {
  constexpr std::size_t kHeaderText = sizeof OutListHeader::texts[0] - 1;
  Complaints complaints("", kSettingsFile);
  for (std::size_t i = 0; i < settings.lines.size(); ++i) {
    const std::string_view field = settings_field(settings.lines[i], 1);
    const std::string line = "line " + std::to_string(i + 1) + ": ";
    if (!is_whole_int(field)) {
      complaints.about_file(line + quote(field) + " is no number and counts as " +
                            std::to_string(to_int(field)));
    }
    if (i < 3 && settings_field(settings.lines[i], 2).size() > kHeaderText) {
      complaints.about_file(line + "the text is longer than " + std::to_string(kHeaderText) +
                            " characters and is cut in d/out.lst");
    }
  }
  if (is_whole_int(settings.sync_state) && settings.sync_state != "1" &&
      settings.sync_state != "2" && settings.sync_state != "3") {
    complaints.about_file("line 5: there is no state of synchronisation " +
                          quote(settings.sync_state));
  }
  if (complaints.empty() && settings.cef_limit < 1) {
    complaints.about_file("line 4: no click counts in cef with the limit " +
                          std::to_string(settings.cef_limit));
  }
  complaints.tell(findings, "six lines", kSave);
}

// Line 6: a trade with fewer unique hits gets no visitors, but by a quota that overrides it.
void check_minimum(Findings& findings, const MainSettings& settings, const TradeStore& store) {
  std::int32_t most = 0;
  std::string best;
  bool overridden = false;
  for (std::size_t i = reserved::kLastEntry + 1; i < store.works.size(); ++i) {
    const TradeWork& work = store.works[i];
    overridden |= work.param_888 == 1;
    if (work.last24[slot::uin] <= most) continue;
    most = work.last24[slot::uin];
    best = printable(field_text(work.name));
  }
  if (best.empty() || settings.uin24_limit <= most || findings.is_off(kSettingsFile)) return;
  findings.worthless(kSettingsFile,
                     "line 6: a trade needs " + std::to_string(settings.uin24_limit) +
                         " unique hits a day, and none has them; the best, " + best + ", has " +
                         std::to_string(most) +
                         (overridden ? ": visitors go by quotas and guarantees alone"
                                     : ": no trade gets visitors"),
                     "lower the minimum in the main settings");
}

}  // namespace

void check_main_settings(Findings& findings, const TradeStore& store) {
  const auto text = examined(findings, kSettingsFile, event::settings_missing);
  if (!text) return;
  MainSettings settings;
  if (!parse_main_settings(settings, *text)) {
    findings.as_event(kSettingsFile, event::settings_corrupt);
    return;
  }
  if (!may_write(kSettingsFile)) {
    const bool kept = settings.sync_state == "2";
    findings.refused(kSettingsFile, Need::write,
                     finding_off(kSettingsFile,
                                 kept ? "cannot be written when a synchronisation is requested"
                                      : "cannot be written: every run synchronises the databases",
                                 "give the run's user write permission on it"));
  } else if (!may_write("d")) {
    findings.refused("d", Need::write,
                     finding_off("d",
                                 "takes no new file: d/set is overwritten where a kill could tear "
                                 "it",
                                 "give the run's user write permission on the directory"));
  }
  check_lines(findings, settings);
  check_minimum(findings, settings, store);
}

}  // namespace vantrel::inspect
