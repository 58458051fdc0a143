// A history file against a reader that keeps all of it. Some inputs lie across the border of the
// pieces the file is read in, behind a filler without bars. That is slow, so it takes 0xFF as the
// first byte and a rare length: most changes to such an input lead back to the quick ones.
#include "history/history_file.h"
#include "support.h"

namespace vantrel::fuzz {

void try_input(const std::string& input) {
  constexpr std::size_t kReadAtOnce = 128 * 1024;
  const bool behind_filler = input.starts_with('\xFF') && input.size() % 64 == 63;
  const std::size_t filler = behind_filler ? kReadAtOnce - input.size() / 2 : 0;
  put("d/h/a.com.his", std::string(filler, ' ') + input);
  static HistoryReader reader;
  const auto sum = reader.sum_of_last_week("d/h/a.com.his");

  TrafficCounters plain;
  const auto pieces = getline_pieces(input);
  const std::size_t records = (pieces.size() + 27) / 30;
  for (std::size_t i = records > 7 ? (records - 7) * 30 : 0; i < pieces.size(); ++i) {
    if (i % 30 >= 2 && i % 30 <= 15) add_plainly(plain.values[i % 30 - 2], pieces[i]);
  }
  require(sum && sum->values == plain.values, "the sum of the last seven records");
}

}  // namespace vantrel::fuzz
