#include "settings/traffic_settings.h"

#include <algorithm>
#include <string_view>

#include "base/numbers.h"
#include "base/text.h"
#include "run/error_page.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

void load_se_list(TrafficSettings& settings) {
  FileBuffer& file = settings.se_file;
  static_cast<void>(file.read("d/se"));
  Pieces lines = lines_of(file.text());
  for (std::string_view line; lines.next(line);) {
    char* const begin = file.data() + (line.data() - file.text().data());
    settings.se_list.add(clean_name(begin, line.size()), 0);
  }
}

void load_proxy_list(TrafficSettings& settings) {
  if (!settings.proxy_file.read("d/proxy")) {
    report(event::proxy_missing);
    return;
  }
  constexpr std::size_t kUsualBytes = 14;
  settings.proxy_list = TextIndex(settings.proxy_file.size() / kUsualBytes);
  Pieces lines = lines_of(settings.proxy_file.text());
  for (std::string_view line; lines.next(line);) {
    line = proxy_part(line);
    for (std::string_view word; next_word(line, word);) settings.proxy_list.add(word, 0);
  }
}

}  // namespace

std::string_view clean_name(char* line, std::size_t size) {
  char* const star = std::find(line, line + size, '*');
  char* const end = std::remove_if(line, star, [](char c) { return c == '|' || c == '\r'; });
  return {line, static_cast<std::size_t>(end - line)};
}

std::string_view proxy_part(std::string_view line) { return line.substr(0, line.find(':')); }

bool next_word(std::string_view& line, std::string_view& word) {
  const auto begin = std::find_if_not(line.begin(), line.end(), is_space);
  const auto stop = std::find_if(begin, line.end(), is_space);
  word = {begin, stop};
  line = {stop, line.end()};
  return !word.empty();
}

std::size_t parse_traffic_rules(std::string_view text,
                                std::array<TrafficRule, TrafficSettings::kRuleCount>& rules) {
  rules.fill({0, TrafficRule::kNone, 0.0f, 0});
  Pieces pieces(text);
  std::size_t count = 0;
  for (RulePieces texts; count < rules.size() && next_rule(pieces, texts); ++count) {
    TrafficRule& rule = rules[count];
    rule.rule_a = to_int(texts.rule_a);
    rule.op_code = to_int(texts.op_code);
    rule.value = static_cast<float>(to_double(texts.value));
    rule.rule_d = to_int(texts.rule_d);
  }
  return count;
}

bool load_traffic_settings(TrafficSettings& settings) {
  load_se_list(settings);
  load_proxy_list(settings);
  FileBuffer file;
  if (!file.read("d/traffic.set")) {
    error_page_file("d/traffic.set", "", false);
    return false;
  }
  parse_traffic_rules(file.text(), settings.rules);
  return true;
}

}  // namespace vantrel
