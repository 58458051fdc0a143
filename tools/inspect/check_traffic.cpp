#include <array>
#include <map>
#include <set>
#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "settings/ip_table.h"
#include "settings/ratings.h"
#include "settings/traffic_settings.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kSaveAgain = "save it again in the administration";

// d/traffic.set, whose absence the run answers with an error page instead of an event.
Finding no_rules() {
  return {Severity::ends_run,
          Question::end,
          "d/traffic.set",
          "the table of traffic rules cannot be opened",
          "save the settings in the administration, or check permissions",
          "",
          0};
}

bool is_unused(std::size_t rule) { return rule == 9 || rule == 21; }

void complain_of_rule(Complaints& complaints, std::size_t number, const RulePieces& rule) {
  const std::string name = "rule " + std::to_string(number) + ": ";
  const std::int32_t operation = to_int(rule.op_code);
  if (!is_whole_int(rule.op_code)) {
    complaints.about(rule.op_code, name + "the operation " + quote(rule.op_code) + " is no number");
  } else if (operation < TrafficRule::kAdd || operation > TrafficRule::kNone) {
    complaints.about(rule.op_code, name + "there is no operation " + quote(rule.op_code));
  }
  if (!is_whole_double(rule.value)) {
    complaints.about(rule.value, name + "the value " + quote(rule.value) + " is no number");
  }
}

// Rules every hit of a direction meets: if they block, nothing of it is rated.
void check_blocking(Findings& findings,
                    const std::array<TrafficRule, TrafficSettings::kRuleCount>& rules) {
  const auto all_block = [&rules](std::initializer_list<std::size_t> group) {
    for (const std::size_t rule : group) {
      if (rules[rule].op_code != TrafficRule::kBlock) return false;
    }
    return true;
  };
  const bool in = all_block({0, 1, 2}) || all_block({3, 4, 5}) || all_block({10, 11});
  const bool out = all_block({12, 13, 14}) || all_block({15, 16, 17}) || all_block({22, 23}) ||
                   all_block({24, 25}) || all_block({26, 27});
  if (!in && !out) return;
  findings.worthless("d/traffic.set",
                     std::string("the rules block every ") +
                         (in && out ? "hit and every click"
                          : in      ? "hit"
                                    : "click") +
                         ": none has a quality, and the built-in score is 0 for all",
                     "set one of the blocking rules (operation 2) to add or subtract");
}

// A rating file: what is wrong in it, and the texts that stand in more than one group.
struct RatingFile {
  const char* path;
  const Event& missing;
  const char* empty;  // what an empty text matches
};

void check_rating(Findings& findings, const RatingFile& file) {
  const auto text = examined(findings, file.path, file.missing);
  if (!text) return;
  Complaints complaints(*text, file.path);
  std::map<std::string, std::set<std::size_t>> groups;
  std::size_t count = 0;
  Pieces pieces(*text);
  std::string_view rest = *text;
  for (RatingPieces entry; next_rating(pieces, entry); ++count, rest = pieces.rest()) {
    if (complaints.shifted(entry.ignored, "an entry")) break;
    const std::size_t group = rating_group(entry.selector);
    if (group == 0) {
      complaints.about(entry.selector, "there is no group " + quote(entry.selector) + ", so that " +
                                           quote(entry.text) + " is not rated");
    } else if (entry.text.empty()) {
      complaints.about(entry.selector, std::string("an empty text, which matches ") + file.empty);
    } else if (is_space(entry.text.front()) || is_space(entry.text.back())) {
      complaints.about(entry.text, quote(entry.text) + " has white space at an end");
    } else if (group != 2) {
      std::string lowered(entry.text);
      lower_case(lowered.data(), lowered.size());
      groups[lowered].insert(group);
      if (groups[lowered].size() == 2) {
        complaints.about(entry.text, quote(entry.text) + " stands in the groups 1 and 3");
      }
    }
  }
  if (complaints.empty() && !is_blank(rest)) {
    complaints.about(rest, "the last entry is cut short: " + quote(rest));
  }
  if (count == 0 && complaints.empty()) {
    findings.note(file.path, "holds no entry: nothing is rated by it");
    return;
  }
  complaints.tell(findings, counted(count, "rated text"), kSaveAgain);
}

void complain_of_range(Complaints& complaints, std::string_view text, const IpRange& range,
                       std::size_t number, bool is_wrong) {
  const std::string name = "range " + std::to_string(number);
  // Only the last range can be without the piece.
  const std::string_view here =
      range.country.data() != nullptr ? range.country : text.substr(text.find_last_not_of("\r\n"));
  if (is_wrong) {
    complaints.about(here, name + " (" + std::to_string(range.first) + " to " +
                               std::to_string(range.last) +
                               ") is out of order, overlaps the one before it or ends before it "
                               "begins");
  }
  if (range.country.empty()) {
    complaints.about_file(name + " has no country: line " + std::to_string(line_of(text, here)));
  }
}

void check_addresses(Findings& findings) {
  constexpr const char* kTable = "d/ip.psv";
  constexpr std::uint64_t kNextToNothing = std::uint64_t{1} << 24;
  const auto text = examined(findings, kTable, event::ip_table_missing);
  if (!text) return;
  const std::string remedy = "install the table again, ascending and without overlaps";
  std::size_t ranges = 0;
  std::uint64_t addresses = 0;
  std::uint32_t last = 0;
  Complaints complaints(*text, kTable);
  Pieces pieces(*text);
  for (IpRange range; next_ip_range(pieces, range); last = range.last) {
    ++ranges;
    const bool wrong = range.first > range.last || (ranges > 1 && range.first <= last);
    complain_of_range(complaints, *text, range, ranges, wrong);
    if (range.first <= range.last) addresses += std::uint64_t{range.last} - range.first + 1;
  }
  const std::size_t dot = text->find('.');
  if (dot != text->npos) {
    const std::string_view line = std::string_view(*text).substr(text->rfind('\n', dot) + 1);
    findings.off(kTable,
                 "line " + std::to_string(line_of(*text, line)) + " has addresses with dots, " +
                     quote(line.substr(0, line.find('\n'))) +
                     ": the run reads the number before the first dot",
                 "convert the table: w.x.y.z is w*16777216 + x*65536 + y*256 + z");
  } else if (ranges == 0) {
    findings.off(kTable, "holds no range: every country is unknown", "install the table again");
  } else {
    const std::string covered = counted(ranges, "range") + (ranges == 1 ? " covers " : " cover ") +
                                counted(addresses, "address");
    complaints.tell(findings, covered, remedy);
    if (complaints.empty() && addresses < kNextToNothing) {
      findings.off(kTable, covered + ", next to nothing: nearly every country is unknown", remedy);
    }
  }
}

}  // namespace

void check_rules(Findings& findings) {
  constexpr const char* kRules = "d/traffic.set";
  const auto text = examined(findings, kRules, no_rules());
  if (!text) return;
  Complaints complaints(*text, kRules);
  std::array<TrafficRule, TrafficSettings::kRuleCount> rules;
  const std::size_t used = parse_traffic_rules(*text, rules);
  std::size_t number = 0;
  Pieces pieces(*text);
  for (RulePieces rule; next_rule(pieces, rule); ++number) {
    if (complaints.shifted(rule.ignored, "rule " + std::to_string(number))) break;
    if (number < rules.size() && !is_unused(number)) complain_of_rule(complaints, number, rule);
  }
  if (complaints.empty() && used < rules.size()) {
    complaints.about_file("holds " + std::to_string(used) +
                          " of 36 rules; the others have no effect");
  }
  if (complaints.empty() && number > rules.size()) {
    complaints.about_file("holds " + std::to_string(number) +
                          " rules; those behind the 36th have no effect");
  }
  complaints.tell(findings, "36 rules", kSaveAgain);
  if (complaints.empty()) check_blocking(findings, rules);
}

void check_ratings(Findings& findings) {
  check_rating(findings, {"d/geo.rating", event::geo_missing, "no country"});
  check_addresses(findings);
  check_rating(findings, {"d/agent.rating", event::agents_missing, "every user agent"});
  check_rating(findings, {"d/request.rating", event::requests_missing, "every empty request"});
  check_rating(findings, {"d/tags.rating", event::tags_missing, "every click without a tag"});
}

}  // namespace vantrel::inspect
