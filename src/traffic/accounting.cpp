#include "traffic/accounting.h"

#include "store/summary.h"
#include "traffic/windows.h"

namespace vantrel {

bool finish_accounting(TradeStore& store, std::time_t oldest, int run_minute) {
  return write_trade_index(store) && update_windows(store.works, oldest, run_minute) &&
         write_summary(store);
}

}  // namespace vantrel
