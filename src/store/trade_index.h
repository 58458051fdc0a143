// The trade index d/t/index and the two arrays the run keeps of it.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/first_index.h"
#include "store/trade_record.h"

namespace vantrel {

inline constexpr const char* kIndexFile = "d/t/index";
inline constexpr std::size_t kFewestTrades = 10;

// A trade is referred to by its position, the same in both arrays until planning ranks the work
// array. The first eleven positions are reserved entries.
struct TradeStore {
  std::vector<TradeRecord> trades;  // as read from the index; what is written back
  std::vector<TradeWork> works;     // one a trade, what the phases work on
  FileBuffer summary;               // d/t/sum as its windows were added to the work array
  IdIndex ids;                      // id to the first position that has it, before the ranking
  bool index_dirty = false;         // a countdown of a trade record moved
  FileVersion index_read;           // of d/t/index, when it was loaded
  bool hours_stepped = false;       // in this run
  std::vector<std::int32_t> hits_left_before;  // of each trade, before the hit logs
};

// The records of the index's bytes, 996 each; a shorter last record keeps default values where the
// bytes end.
[[nodiscard]] std::vector<TradeRecord> read_trades(std::string_view bytes);

// Reads d/t/index. False, with an event, when it cannot be read or holds fewer than ten records.
[[nodiscard]] bool load_trade_index(TradeStore& store);

// At minute 0: one hour less for every trade whose quota is counted in hours.
void hourly_step(TradeStore& store);

// Fills the work array and the id index from the trade array. Throws when memory runs out.
void fill_work_array(TradeStore& store);
// The same; false, with an event, when not every trade got its entry.
[[nodiscard]] bool build_work_array(TradeStore& store);

// Overwrites the index in place when it is dirty. Where somebody else has written to it since it
// was loaded, only the countdowns move, by what this run counted. False, with an event, when that
// fails.
[[nodiscard]] bool write_trade_index(TradeStore& store);

}  // namespace vantrel
