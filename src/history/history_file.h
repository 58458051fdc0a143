// One trade's history file, read without keeping it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/files.h"
#include "base/text.h"
#include "store/trade_record.h"

namespace vantrel {

// The path of a trade's history. A name that would lead out of d/h/ has none.
[[nodiscard]] std::optional<std::string> trade_history_path(std::string_view name);

// The 14 counters that a record of any history file begins with, and its day.
struct HistoryRecord {
  std::string_view date;  // %Y%m%d
  TrafficCounters counters;
};
// The next record of a text that begins with one; what the end cut off is empty and 0. False at the
// end.
[[nodiscard]] bool next_record(Pieces& pieces, HistoryRecord& record);

// Reads the last records of history files. Holds the buffers the files are read through.
class HistoryReader {
 public:
  HistoryReader();

  // The text of the file's last seven records, good until the next call; nothing when the file
  // cannot be read.
  [[nodiscard]] std::optional<std::string_view> last_week(const char* path);

  // The sum of the counters of the file's last seven records; nothing when it cannot be read. A
  // record cut short by the end of the file counts, its missing counters as 0.
  [[nodiscard]] std::optional<TrafficCounters> sum_of_last_week(const char* path);

 private:
  std::unique_ptr<char[]> buffer_;
  std::string tail_;  // where the records reach further back than the buffer
};

}  // namespace vantrel
