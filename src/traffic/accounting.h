// The end of accounting: what hit processing changed goes to disk.
#pragma once

#include <ctime>

#include "store/trade_index.h"

namespace vantrel {

// The trade index, the minute slots, the summary, in this order. oldest lies in the oldest minute
// of hit logs read. False, with an event, when the run must end: files behind the failure are then
// as the previous run left them.
[[nodiscard]] bool finish_accounting(TradeStore& store, std::time_t oldest, int run_minute);

}  // namespace vantrel
