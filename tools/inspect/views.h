// The views of a site, one a file. Each collects what it shows as JSON; the text form is printed
// from that, so that both say the same. The site is the working directory.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "screen.h"

namespace vantrel::inspect {

// The outgoing list as visitors will see it.
[[nodiscard]] Json list_view();
void print_list(const Json& view);

// Why a trade stands where it does in the list that the stored windows and the present settings
// give: a tree of steps {"value", "description", "details": [steps]}, "result" and a sentence; of
// all trades, "trades" in ranking order, without a name. Throws Unavailable when there is no such
// trade or would be no list.
struct ForesightQuery;
[[nodiscard]] Json why_view(const std::optional<std::string>& name_or_id,
                            const ForesightQuery& query);
void print_why(const Json& view);

// All trades, or those at the top, sorted by a column; without one in the order of the index, or by
// the hits of 24 hours when only the top is wanted. Throws WrongUsage for a column there is not.
struct TradesQuery {
  std::string sort;
  bool reverse = false;
  std::optional<std::size_t> top;
  std::vector<std::string> columns;  // of numbers; the usual ones when empty
  bool wide = false;                 // all columns and all entries
};
[[nodiscard]] Json trades_view(const TradesQuery& query);
void print_trades(const Json& view);

// The whole site. Traffic is the 14 counters, summed over all entries of the index, and what
// follows from them (see traffic_json()); a row of hours has the counters only. In the order of
// printing:
//   entries, last_run, stored, age_seconds, stale
//   last60, last24, last07   traffic of the windows
//   today                    date, until ("12:47"), traffic of the last run's day from the slots
//   yesterday, week_before   the row of days of one and of seven days before, null without a record
//   last30                   days (how many rows), traffic of the rows of days
//   reserved                 by window: share_in, share_clk, share_out of all reserved entries, and
//                            entries: position, id, name, collects, rin, clk, out and their shares;
//                            per cent, null where there was no traffic at all
//   hours                    24 rows, oldest first: hour ("2026-11-16 12:00"), counters
//   days                     up to 30 rows, oldest first: date, late (recorded after midnight),
//                            traffic, trades (the counters of the trades alone but for rin, which
//                            is over all; null without a record), gallery_out, noref_in, listed_in
//   unreadable_days          records of the history without a date, left out
[[nodiscard]] Json site_view();
void print_site(const Json& view);
// rows: "days" or "hours"; a line of titles, then a line a row.
void print_site_csv(const Json& view, const std::string& rows);

// One trade, by its name or else its id. Throws Unavailable when there is none.
[[nodiscard]] Json trade_view(const std::string& name_or_id);
void print_trade(const Json& view);

// The event log, explained; lines that say the same are one event, in the order of their last ones.
// Throws WrongUsage for a time that is none.
struct EventsQuery {
  std::size_t count = 20;  // the last so many
  std::string since;
  std::string level;  // "0" or "1", empty for both
  std::string trade;  // name or id, empty for all
};
[[nodiscard]] Json events_view(const EventsQuery& query);
void print_events(const Json& view);

// The run history with its gaps.
[[nodiscard]] Json runs_view();
void print_runs(const Json& view);

// Many sites, worst first; "status" is that of the worst. What "sites" holds: see glance.h.
[[nodiscard]] Json sites_view(const std::vector<std::string>& directories);
void print_sites(const Json& view);

// The same for a monitoring system, the site at hand when no directory is given.
[[nodiscard]] Json metrics_view(std::vector<std::string> directories, bool trades);
void print_metrics(const Json& view);

// Was a list written in the last minutes? "status" is that of a monitoring plugin: 0 yes, 1 one
// within twice that time or dated in the future, 2 none, 3 not to be known.
[[nodiscard]] Json alive_view(int minutes);
void print_alive(const Json& view);

// Would the next run reach its end, with a list worth following, and is anything being lost?
// "status" is the exit status: 0 fine, 1 something is off, 2 the run would end early.
struct CheckQuery {
  std::string user;      // whose rights count, that of the program when empty; only root may ask
  bool verbose = false;  // what is fine one by one, not as one finding
};
[[nodiscard]] Json check_view(const CheckQuery& query = {});
void print_check(const Json& view);

}  // namespace vantrel::inspect
