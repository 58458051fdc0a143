// One trade's history file, read without keeping it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/files.h"
#include "store/trade_record.h"

namespace vantrel {

// The path of a trade's history. A name that would lead out of d/h/ has none.
[[nodiscard]] std::optional<std::string> trade_history_path(std::string_view name);

// Sums the last records of history files. Holds the buffer the files are read through.
class HistoryReader {
 public:
  HistoryReader();

  // The sum of the counters of the file's last seven records; nothing when it cannot be read. A
  // record cut short by the end of the file counts, its missing counters as 0.
  [[nodiscard]] std::optional<TrafficCounters> sum_of_last_week(const char* path);

 private:
  std::unique_ptr<char[]> buffer_;
};

}  // namespace vantrel
