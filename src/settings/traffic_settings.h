// What hit processing needs beyond the trades: names that are no trades but counted apart (d/se),
// addresses of proxies (d/proxy) and the traffic rules (d/traffic.set). All three are written by
// the administration side and only read here.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/first_index.h"
#include "base/text.h"

namespace vantrel {

// One rule: by how much a kind of hit raises or lowers the hit's quality score.
struct TrafficRule {
  enum Operation : std::int32_t { kAdd = 0, kSubtract = 1, kBlock = 2, kNone = 3 };

  std::int32_t rule_a = 0;  // the administration side's
  std::int32_t op_code = 0;
  float value = 0.0f;
  std::int32_t rule_d = 0;  // the administration side's
};

struct TrafficSettings {
  // Rules hit processing knows, by their number in the file; a rule the file lacks has no effect.
  static constexpr std::size_t kRuleCount = 36;

  // d/se, one name a line, compared as it is written (hits come in lower case). The views point
  // into se_file.
  FileBuffer se_file;
  TextIndex se_list;

  // d/proxy, the words of each line up to its first colon. The views point into proxy_file.
  FileBuffer proxy_file;
  TextIndex proxy_list;

  std::array<TrafficRule, kRuleCount> rules{};
};

// One rule as the text has it; what the end of the file cut off is empty.
struct RulePieces {
  std::string_view ignored;
  std::string_view rule_a;
  std::string_view op_code;
  std::string_view value;
  std::string_view rule_d;
};

// False when not even the first number of a rule is left.
[[nodiscard]] inline bool next_rule(Pieces& pieces, RulePieces& rule) {
  if (!pieces.next(rule.ignored) || !pieces.next(rule.rule_a)) return false;
  for (std::string_view* piece : {&rule.op_code, &rule.value, &rule.rule_d}) {
    *piece = pieces.next_or_empty();
  }
  return true;
}

// A line of d/se as the list has it: without bars and carriage returns, cut at a star. The line is
// rewritten where it stands.
[[nodiscard]] std::string_view clean_name(char* line, std::size_t size);

// What of a line of d/proxy is read, and the next word of it, which is taken off its front.
[[nodiscard]] std::string_view proxy_part(std::string_view line);
[[nodiscard]] bool next_word(std::string_view& line, std::string_view& word);

// Takes the rules from the text of d/traffic.set and returns how many of the 36 it has. Groups of
// five pieces: ignored, rule_a, op_code, value, rule_d. A group cut short by the end of the file is
// a rule whose missing numbers are 0.
std::size_t parse_traffic_rules(std::string_view text,
                                std::array<TrafficRule, TrafficSettings::kRuleCount>& rules);

// A missing d/se is an empty list, a missing d/proxy one with an event. False when d/traffic.set
// cannot be read: the error page is printed instead of an event.
[[nodiscard]] bool load_traffic_settings(TrafficSettings& settings);

}  // namespace vantrel
