// The alert settings: who is mailed what, and what is stored.
#include "report/alerts.h"

#include "support.h"

namespace vantrel::fuzz {

void try_input(const std::string& input) {
  static const std::vector<TradeWork> works = store_of_site().works;
  put("d/alerts", input);
  programs.clear();
  run_alerts(works);
  const std::string stored = get("d/alerts");
  if (programs.empty()) return require(stored == input, "without a mail nothing is stored");

  const auto fields = getline_pieces(input.substr(input.find('|') + 1));
  require(fields.size() == 14 && programs[0].command == fields[0] + " -t", "the mail program");
  require(programs[0].input.starts_with("To: " + fields[2] + "\nFrom: " + fields[1]), "the mail");
  std::string expected = "|";
  for (std::size_t i = 0; i < 14; ++i) {
    const std::string field = fields[i].empty() ? "0" : fields[i];
    const bool is_flag = i > 4 && i % 2 == 1;
    const bool went_up = is_flag && field == "0" && stored.substr(expected.size(), 2) == "1|";
    expected += (went_up ? "1" : field) + "|";
  }
  require(stored == expected, "only flags change");
  run_alerts(works);
  require(programs.size() == 1, "nothing is mailed twice");
}

}  // namespace vantrel::fuzz
