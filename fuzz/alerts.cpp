// The alert settings: who is mailed what and when, and what is stored.
#include "report/alerts.h"

#include <cstdlib>

#include "support.h"

namespace vantrel::fuzz {
namespace {

// Does the site's traffic cross the threshold in this field?
bool crossed(const std::vector<TradeWork>& works, std::size_t field, const std::string& threshold) {
  const int limit = plain_int(threshold);
  std::uint32_t day = 0;
  std::uint32_t hour = 0;
  bool one_above = false;
  for (const TradeWork& work : works) {
    day += static_cast<std::uint32_t>(work.last24[slot::rin]);
    hour += static_cast<std::uint32_t>(work.last60[slot::rin]);
    one_above = one_above || work.last24[slot::rin] > limit;
  }
  const auto sum_limit = static_cast<std::uint32_t>(limit);
  const bool by_field[] = {day<sum_limit, day> sum_limit, hour<sum_limit, hour> sum_limit,
                           one_above};
  return by_field[(field - 4) / 2];
}

bool is_address(const std::string& text) {
  return text.size() > 5 && text.find('@') != std::string::npos;
}

}  // namespace

void try_input(const std::string& input) {
  static const std::vector<TradeWork> works = store_of_site().works;
  put("d/alerts", input);
  programs.clear();
  run_alerts(works);
  const std::string stored = get("d/alerts");

  auto fields = getline_pieces(input);
  if (!fields.empty()) fields.erase(fields.begin());
  bool mailed = false;
  std::string expected = "|";
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].empty()) fields[i] = "0";
    const bool goes_up =
        i > 4 && i % 2 == 1 && i < 14 && fields[i] == "0" && crossed(works, i - 1, fields[i - 1]);
    mailed = mailed || goes_up;
    expected += (goes_up ? "1" : fields[i]) + "|";
  }
  if (fields.size() != 14 || !mailed || fields[0].size() <= 10 || !is_address(fields[1]) ||
      !is_address(fields[2])) {
    return require(programs.empty() && stored == input, "no mail, and nothing is stored");
  }
  require(programs.size() == 1 && programs[0].command == fields[0] + " -t", "the mail program");
  require(programs[0].input.starts_with("To: " + fields[2] + "\nFrom: " + fields[1]), "the mail");
  require(stored == expected, "only flags change");
  run_alerts(works);
  require(programs.size() == 1, "nothing is mailed twice");
}

}  // namespace vantrel::fuzz
