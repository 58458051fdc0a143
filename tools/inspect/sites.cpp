#include <algorithm>
#include <iostream>

#include "base/clock.h"
#include "glance.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kVerdicts[] = {"ok", "warning", "fatal"};
constexpr Colour kColours[] = {Colour::green, Colour::yellow, Colour::red};

std::string ago(const Json& moment) {
  if (moment.is_null()) return "never";
  return duration_text(wall_clock() - moment.get<std::time_t>()) + " ago";
}

std::string counter_cell(const Json& window, const char* counter) {
  return window.is_null() ? "-" : cell(window[counter]);
}

std::string worst_text(const Json& worst) {
  if (worst.is_null()) return "";
  return cell(worst["subject"]) + ": " + cell(worst["finding"]);
}

}  // namespace

Json sites_view(const std::vector<std::string>& directories) {
  std::vector<Json> sites = look_at_sites(directories, Detail::site);
  std::stable_sort(sites.begin(), sites.end(),
                   [](const Json& a, const Json& b) { return a["status"] > b["status"]; });
  return {{"status", sites.front()["status"]}, {"sites", sites}};
}

void print_sites(const Json& view) {
  std::vector<std::vector<std::string>> rows;
  std::size_t counts[std::size(kVerdicts)] = {};
  for (const Json& site : view["sites"]) {
    const auto status = site["status"].get<std::size_t>();
    ++counts[status];
    rows.push_back({kVerdicts[status], cell(site["directory"]), ago(site["last_run"]),
                    cell(site["trades"]), cell(site["listed"]), counter_cell(site["last60"], "rin"),
                    counter_cell(site["last60"], "out"), ago(site["backup"]),
                    worst_text(site["worst"])});
  }
  print_table({{"verdict"},
               {"site"},
               {"last run"},
               {"trades", true},
               {"listed", true},
               {"in60", true},
               {"out60", true},
               {"backup"},
               {"worst finding"}},
              rows);
  std::cout << counted(rows.size(), "site");
  for (std::size_t i = std::size(kVerdicts); i-- > 0;) {
    if (counts[i] == 0) continue;
    std::cout << ", " << coloured(kColours[i], std::to_string(counts[i]) + ' ' + kVerdicts[i]);
  }
  std::cout << '\n';
}

}  // namespace vantrel::inspect
