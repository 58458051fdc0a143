// The operator's formula: counters put in, then evaluated, for one trade after the other.
#include <sstream>

#include "out/scoring.h"
#include "support.h"

namespace vantrel::fuzz {
namespace {

std::string substituted(std::string text, const ScoreArgs& args) {
  constexpr slot::Counter kOrder[] = {slot::rin, slot::uin, slot::out, slot::clk,
                                      slot::cef, slot::ctt, slot::ctg, slot::rec,
                                      slot::rti, slot::rto, slot::rtc};
  constexpr std::string_view kStems = "rinuinoutclkcefcttctgrecrtirtortc";
  constexpr std::string_view kSuffixes = "602407";
  for (std::size_t n = 0; n < 33; ++n) {
    const auto& window = n < 11 ? args.last60 : n < 22 ? args.last24 : args.last07;
    const std::string name =
        std::string(kStems.substr(n % 11 * 3, 3)).append(kSuffixes, n / 11 * 2, 2);
    const std::string value = std::to_string(window[kOrder[n % 11]]);
    for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos; at += value.size()) {
      text.replace(at, name.size(), value);
    }
  }
  return text;
}

// A number means what stream extraction makes of it. Only what was extracted is evaluated, but for
// a number that cannot be extracted: it ends the text. The first few numbers of a text will do.
void check_numbers(const std::string& text) {
  constexpr const char* kStarts = ".0123456789";
  std::size_t begin = text.find_first_of(kStarts);
  for (int count = 0; count < 8 && begin < text.size(); ++count) {
    std::istringstream stream(text.substr(begin));
    double expected = 0.0;
    stream >> expected;
    const auto length = stream.good() ? static_cast<std::size_t>(stream.tellg()) : text.size();
    ExpressionEvaluator evaluator;
    const double value = evaluator.evaluate_expression(text.substr(begin, length));
    require(value == expected && evaluator.error_count() == 0, "the number");
    begin = length < text.size() ? text.find_first_of(kStarts, begin + length) : length;
  }
}

}  // namespace

void try_input(const std::string& input) {
  static const TradeStore store = store_of_site();
  check_numbers(input);
  const OutMod modifiers({"110", "90", "x", "1", "2", "1", "0", "0", "10", input, "", ""});
  ExpressionEvaluator evaluator;
  for (const std::size_t i : {11u, 12u}) {  // the second sees what the first one assigned
    const TradeWork& work = store.works[i];
    const ScoreArgs args{work.last60, work.last24, work.last07, 2, {}, modifiers};
    require(substitute_counters(args) == substituted(input, args), "the counters are put in");
    static_cast<void>(formula_score(args, evaluator));
  }
}

}  // namespace vantrel::fuzz
