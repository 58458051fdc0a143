// What an administrator of many sites wants to know of each of them.
#pragma once

#include <string>
#include <vector>

#include "screen.h"

namespace vantrel::inspect {

// With the windows of every trade as well, or without.
enum class Detail { site, trades };

// Makes the directory the working directory and tells:
//   directory      as given        path   without links and relative parts
//   status         0 to 2, as check has it; 2 where there is nothing to look at
//   worst          severity, subject, finding, remedy of the worst finding, null when all is well
//   last_run, list_written, backup   seconds since the epoch, null for never
//   entries        of the index    trades   of them no reserved entries    listed   in the list
//   last60, last24, last07           the 14 counters over all entries, null without a store
//   events         of the last hour: code, level, count
//   gaps, missed_minutes             in the run history
//   trade_windows  with Detail::trades: id, name, last60, last24, last07
// What cannot be read is null.
[[nodiscard]] Json look_at_site(const std::string& directory, Detail detail);
// The same for a directory that was not looked at, for that reason.
[[nodiscard]] Json nothing_known(const std::string& directory, const std::string& why);

// Looks at every directory, several processes side by side, and returns in their order. A site
// whose examination does not end well harms no other.
[[nodiscard]] std::vector<Json> look_at_sites(const std::vector<std::string>& directories,
                                              Detail detail);

}  // namespace vantrel::inspect
