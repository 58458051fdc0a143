// The summary file: read, compared with a plain reading, written, read again.
#include "store/summary.h"

#include <cstdlib>

#include "support.h"

namespace vantrel::fuzz {
namespace {

constexpr std::size_t kValues = 3 * kCounterCount;

// The values of all trades one behind the other, as the file read into empty windows gives them.
std::vector<std::int32_t> loaded_values(TradeStore& store) {
  for (auto& work : store.works) work.last60 = work.last24 = work.last07 = {};
  require(load_summary(store), "the summary can be read");
  std::vector<std::int32_t> values;
  for (const TradeWork& work : store.works) {
    for (const auto* window : {&work.last60, &work.last24, &work.last07}) {
      values.insert(values.end(), window->values.begin(), window->values.end());
    }
  }
  return values;
}

}  // namespace

void try_input(const std::string& input) {
  put(kSummaryFile, input);
  std::vector<std::int32_t> plain(13 * kValues);
  std::size_t trade = 0;
  const auto pieces = getline_pieces(input);
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    const std::size_t k = i % (kValues + 2);
    const int id = plain_int(pieces[i]);
    if (k == 1) trade = id >= 0 && id < 13 ? static_cast<std::size_t>(id) : reserved::kUnknown;
    if (k > 1) add_plainly(plain[trade * kValues + k - 2], pieces[i]);
  }
  static TradeStore store = store_of_site();
  require(loaded_values(store) == plain, "every counter is added where its line says");
  require(write_summary(store), "the summary can be written");
  require(loaded_values(store) == plain, "what is written is what was read");
}

}  // namespace vantrel::fuzz
