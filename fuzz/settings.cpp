// The settings of the administration side. The first byte of the input chooses the file.
#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "settings/dynamic_skim.h"
#include "settings/main_settings.h"
#include "settings/traffic_settings.h"
#include "support.h"

namespace vantrel::fuzz {
namespace {

void try_main_settings(const std::string& text) {
  put("d/set", text);
  MainSettings read;
  MainSettings again;
  auto lines = getline_pieces(text, '\n');
  require(load_main_settings(read) == (lines.size() == 6), "six lines are needed");
  if (lines.size() != 6) return;
  write_sync_state(read);
  lines[4] = "|2|";
  require(load_main_settings(again) && again.lines == lines, "only line 5 changes");
}

void try_skim(const std::string& text) {
  put("d/ds", text);
  static const std::vector<TradeWork> before = store_of_site().works;
  auto works = before;
  apply_dynamic_skim(works);
  for (std::size_t i = 0; i < works.size(); ++i) {
    const bool may_change = works[i].id == 3 || works[i].id == 6 || works[i].id > 10;
    require(may_change || works[i].param_844 == before[i].param_844, "reserved entries stay");
  }
}

// The same bytes for three files: each parser sees them.
void try_traffic_settings(const std::string& text) {
  for (const char* path : {"d/se", "d/proxy", "d/traffic.set"}) put(path, text);
  TrafficSettings settings;
  require(load_traffic_settings(settings), "traffic settings can be read");
  auto pieces = getline_pieces(text);
  for (std::size_t first = 1; first < pieces.size() && first < 180; first += 5) {
    pieces.resize(std::max(pieces.size(), first + 4));
    const auto value = static_cast<float>(std::atof(pieces[first + 2].c_str()));
    const TrafficRule& rule = settings.rules[first / 5];
    require(rule.op_code == plain_int(pieces[first + 1]), "a rule's operation");
    require(rule.value == value || value != value, "a rule's value");
  }
  for (const std::string& line : getline_pieces(text, '\n')) {
    std::string name = line.substr(0, line.find('*'));
    std::erase_if(name, [](char c) { return c == '|' || c == '\r'; });
    require(settings.se_list.contains(name), "every listed name is known");
    std::istringstream words(line.substr(0, line.find(':')));
    for (std::string word; words >> word;) require(settings.proxy_list.contains(word), "a proxy");
  }
}

}  // namespace

void try_input(const std::string& input) {
  if (input.empty()) return;
  if (input[0] % 3 == 0) try_main_settings(input.substr(1));
  if (input[0] % 3 == 1) try_skim(input.substr(1));
  if (input[0] % 3 == 2) try_traffic_settings(input.substr(1));
}

}  // namespace vantrel::fuzz
