#include <algorithm>
#include <iostream>
#include <optional>
#include <vector>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/text.h"
#include "run/run_guard.h"
#include "site.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

// A stamp has no year: the moment is the last one before the given one that it can mean.
std::optional<std::time_t> moment_of(std::string_view stamp, std::time_t not_after) {
  if (stamp.size() != 8 || !std::all_of(stamp.begin(), stamp.end(), is_digit)) return std::nullopt;
  std::tm parts{};
  parts.tm_year = local_time(not_after).tm_year;
  parts.tm_mon = to_int(stamp.substr(0, 2)) - 1;
  parts.tm_mday = to_int(stamp.substr(2, 2));
  parts.tm_hour = to_int(stamp.substr(4, 2));
  parts.tm_min = to_int(stamp.substr(6, 2));
  parts.tm_isdst = -1;
  std::tm year_before = parts;
  --year_before.tm_year;
  const std::time_t moment = std::mktime(&parts);
  return moment <= not_after ? moment : std::mktime(&year_before);
}

// Stretches of runs that follow one another by the minute, oldest first.
struct Stretch {
  std::time_t first;
  std::time_t last;
  std::size_t runs;
};

std::vector<Stretch> stretches_of(const std::vector<std::string>& stamps, std::time_t newest,
                                  std::size_t& unreadable) {
  std::vector<Stretch> stretches;
  for (auto stamp = stamps.rbegin(); stamp != stamps.rend(); ++stamp) {
    // An hour of tolerance: a clock that was set back must not cost a year.
    const auto moment = moment_of(*stamp, newest + 60 * 60);
    if (!moment) {
      ++unreadable;
      continue;
    }
    newest = std::min(newest, *moment);
    if (!stretches.empty() && stretches.back().first - *moment == 60) {
      stretches.back().first = *moment;
      ++stretches.back().runs;
    } else {
      stretches.push_back({*moment, *moment, 1});
    }
  }
  std::reverse(stretches.begin(), stretches.end());
  return stretches;
}

}  // namespace

Json runs_view() {
  const auto text = read_file(kRunHistoryFile);
  if (!text && exists(kRunHistoryFile)) {
    throw Unavailable{std::string(kRunHistoryFile) + " cannot be opened"};
  }
  std::size_t unreadable = 0;
  const auto stretches = stretches_of(split(text.value_or(""), '\n'), wall_clock(), unreadable);
  Json runs = Json::array();
  for (std::size_t i = 0; i < stretches.size(); ++i) {
    const Stretch& stretch = stretches[i];
    const std::time_t step = i == 0 ? 60 : stretch.first - stretches[i - 1].last;
    runs.push_back({{"first", time_text(stretch.first)},
                    {"last", time_text(stretch.last)},
                    {"runs", stretch.runs},
                    {"minutes_missed_before", step <= 0 ? Json() : Json(step / 60 - 1)}});
  }
  return {{"unreadable_lines", unreadable}, {"stretches", runs}};
}

void print_runs(const Json& view) {
  if (view["stretches"].empty()) std::cout << "No run has been recorded.\n";
  for (const Json& stretch : view["stretches"]) {
    const Json& missed = stretch["minutes_missed_before"];
    if (missed.is_null()) {
      std::cout << coloured(Colour::yellow, "  the clock went back") << '\n';
    } else if (missed != 0) {
      std::cout << coloured(
                       Colour::yellow,
                       "  gap: " + counted(missed.get<std::size_t>(), "minute") + " without a run")
                << '\n';
    }
    std::cout << cell(stretch["first"]) << " to " << cell(stretch["last"]) << "  "
              << counted(stretch["runs"].get<std::size_t>(), "run") << '\n';
  }
  if (view["unreadable_lines"] != 0) {
    std::cout << coloured(Colour::yellow,
                          counted(view["unreadable_lines"].get<std::size_t>(), "line") +
                              " of the run history without a run stamp")
              << '\n';
  }
}

}  // namespace vantrel::inspect
