// The views of a site, one a file. Each collects what it shows as JSON; the text form is printed
// from that, so that both say the same. The site is the working directory.
#pragma once

#include <cstddef>
#include <string>

#include "screen.h"

namespace vantrel::inspect {

// The outgoing list as visitors will see it.
[[nodiscard]] Json list_view();
void print_list(const Json& view);

// All trades, sorted by one of the column names; an empty one keeps the order of the index. Throws
// WrongUsage for a column there is not.
[[nodiscard]] Json trades_view(const std::string& column, bool reverse);
void print_trades(const Json& view);

// One trade, by its name or else its id. Throws Unavailable when there is none.
[[nodiscard]] Json trade_view(const std::string& name_or_id);
void print_trade(const Json& view);

// The last lines of the event log, explained.
[[nodiscard]] Json events_view(std::size_t count);
void print_events(const Json& view);

// The run history with its gaps.
[[nodiscard]] Json runs_view();
void print_runs(const Json& view);

// Would the next run reach its end? "status" is the exit status: 0 fine, 1 something is off, 2 the
// run would end early.
[[nodiscard]] Json check_view();
void print_check(const Json& view);

}  // namespace vantrel::inspect
