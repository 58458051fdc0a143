#include "preview.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <span>

#include "base/text.h"
#include "out/out_list.h"
#include "site.h"
#include "story.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kOfEveryList[] = {"d/out.mod", "d/out.set", "d/caps",
                                        "d/set",     "d/ds",      "d/t/index"};
constexpr const char* kOfHits[] = {"d/traffic.set",  "d/geo.rating",     "d/ip.psv",
                                   "d/agent.rating", "d/request.rating", "d/tags.rating",
                                   "d/se",           "d/proxy"};

bool is_one_of(const std::string& path, std::span<const char* const> paths) {
  return std::find(paths.begin(), paths.end(), path) != paths.end();
}

// One side of the comparison: a list's entries with their places and shares.
struct Place {
  std::size_t rank;
  OutListEntry entry;
  double share;  // of the weights, 0 to 1
};
using Places = std::multimap<std::int32_t, Place>;

Places places_of(const std::string& bytes) {
  OutListHeader header;
  std::vector<OutListEntry> entries;
  Places places;
  if (!decode_out_list(bytes, header, entries)) return places;
  const double total = total_weight(entries);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const double share = total > 0 ? counted_weight(entries[i].weight) / total : 0.0;
    places.emplace(entries[i].id, Place{i + 1, entries[i], share});
  }
  return places;
}

Json side_json(const Place* place) {
  if (place == nullptr) return Json();
  return {{"rank", place->rank},
          {"weight", json_number(place->entry.weight)},
          {"second_weight", json_number(place->entry.second_weight)},
          {"share_percent", std::round(place->share * 10000) / 100},
          {"state", state_text(place->entry.state)},
          {"skim", place->entry.skim == -1 ? Json() : Json(place->entry.skim)}};
}

const char* change_word(const Place* before, const Place* after) {
  if (before == nullptr) return "enters";
  if (after == nullptr) return "leaves";
  const OutListEntry& a = before->entry;
  const OutListEntry& b = after->entry;
  const bool same = before->rank == after->rank && a.weight == b.weight &&
                    a.second_weight == b.second_weight && a.state == b.state && a.skim == b.skim;
  return same ? "" : "changes";
}

Json row_of(const Place* before, const Place* after, const std::string& reason) {
  const OutListEntry& entry = (after != nullptr ? after : before)->entry;
  const double share_before = before == nullptr ? 0 : before->share;
  const double share_after = after == nullptr ? 0 : after->share;
  return {{"id", entry.id},
          {"name", field_text(entry.name)},
          {"change", change_word(before, after)},
          {"before", side_json(before)},
          {"after", side_json(after)},
          {"share_change_percent", std::round((share_after - share_before) * 10000) / 100},
          {"reason", reason}};
}

// The new list in its order, then who leaves it.
Json rows_of(const Forecast& forecast) {
  Places before = places_of(read_file(kOutListFile).value_or(""));
  Json rows = Json::array();
  const Places after = places_of(forecast.list);
  std::vector<const Place*> ordered;
  for (const auto& [id, place] : after) ordered.push_back(&place);
  std::sort(ordered.begin(), ordered.end(),
            [](const Place* a, const Place* b) { return a->rank < b->rank; });
  const Reasons reasons = reasons_by_id(forecast);
  const auto reason = [&](std::int32_t id) {
    const auto found = reasons.find(id);
    return found == reasons.end() ? std::string("no such trade any more") : found->second.reason;
  };
  for (const Place* place : ordered) {
    const auto old = before.find(place->entry.id);
    rows.push_back(
        row_of(old == before.end() ? nullptr : &old->second, place, reason(place->entry.id)));
    if (old != before.end()) before.erase(old);
  }
  for (const auto& [id, place] : before) rows.push_back(row_of(&place, nullptr, reason(id)));
  return rows;
}

void changed_first(Json& rows) {
  const auto size_of_change = [](const Json& row) {
    return std::fabs(row["share_change_percent"].get<double>());
  };
  std::stable_sort(rows.begin(), rows.end(), [&](const Json& a, const Json& b) {
    if ((a["change"] == "") != (b["change"] == "")) return b["change"] == "";
    return size_of_change(a) > size_of_change(b);
  });
}

Json events_json(const Forecast& forecast) {
  Json events = Json::array();
  for (const ForeseenEvent& foreseen : forecast.events) {
    events.push_back({{"subject", foreseen.subject},
                      {"level", foreseen.event->level},
                      {"meaning", foreseen.event->meaning},
                      {"remedy", foreseen.event->remedy}});
  }
  return events;
}

void write_list(const std::string& path, const std::string& bytes) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  bool done = descriptor >= 0;
  for (std::size_t at = 0; done && at < bytes.size();) {
    const ssize_t count = ::write(descriptor, bytes.data() + at, bytes.size() - at);
    done = count > 0;
    if (done) at += static_cast<std::size_t>(count);
  }
  if (descriptor >= 0) done = ::close(descriptor) == 0 && done;
  if (!done) throw Unavailable{printable(path) + " cannot be written"};
}

std::string weight_cell(const Json& side) {
  if (side.is_null()) return "-";
  const bool second = side["weight"] == 0 && side["second_weight"] != 0;
  if (!second) return cell(side["weight"]);
  return std::string("(").append(cell(side["second_weight"])).append(")");
}

std::string share_cell(const Json& side) {
  return side.is_null() ? "-" : cell(side["share_percent"]) + "%";
}

}  // namespace

Assumptions assumptions_of(const ForesightQuery& query, Moment otherwise) {
  Assumptions assumptions;
  assumptions.moment = query.hits ? Moment::run_now : otherwise;
  assumptions.hour = query.hour;
  for (const auto& [path, other] : query.with) {
    const bool of_hits = is_one_of(path, kOfHits);
    if (!of_hits && !is_one_of(path, kOfEveryList)) {
      throw WrongUsage{"--with cannot stand for " + printable(path)};
    }
    if (of_hits && !query.hits) {
      throw WrongUsage{printable(path) + " has a say in hits only: use --hits with it"};
    }
    if (!is_regular(other)) throw WrongUsage{"there is no file " + printable(other)};
    if (!may_read(other)) throw WrongUsage{printable(other) + " cannot be read"};
    assumptions.with.insert_or_assign(path, other);
  }
  return assumptions;
}

Json preview_view(const PreviewQuery& query) {
  const Forecast forecast = foresee(assumptions_of(query.foresight, Moment::next_run));
  Json view = {{"hour", forecast.run.clock.run_hour}, {"hits", query.foresight.hits}};
  if (query.foresight.hits) view["minutes"] = forecast.run.catch_up_minutes;
  view["events"] = events_json(forecast);
  if (!forecast.reaches_list) {
    view["status"] = 2;
    view["ending"] = forecast.ending;
    return view;
  }
  if (!query.list_file.empty()) write_list(query.list_file, forecast.list);
  view["entries"] = rows_of(forecast);
  if (query.changed) changed_first(view["entries"]);
  return view;
}

void print_preview(const Json& view) {
  for (const Json& event : view["events"]) {
    std::cout << coloured(Colour::yellow, cell(event["subject"])) << "  " << cell(event["meaning"])
              << '\n';
  }
  if (view.contains("ending")) {
    std::cout << "The run would end before its list: " << cell(view["ending"]) << '\n';
    return;
  }
  std::vector<std::vector<std::string>> rows;
  std::size_t changes = 0;
  for (const Json& row : view["entries"]) {
    const Json& before = row["before"];
    const Json& after = row["after"];
    changes += row["change"] == "" ? 0 : 1;
    rows.push_back(
        {cell(row["id"]), cell(row["name"]), before.is_null() ? "-" : cell(before["rank"]),
         after.is_null() ? "-" : cell(after["rank"]), weight_cell(before), weight_cell(after),
         share_cell(before), share_cell(after), cell(row["change"]), cell(row["reason"])});
  }
  std::cout << "The next outgoing list, for hour " << cell(view["hour"]) << ": "
            << counted(changes, "change") << '\n';
  print_table({{"id", true},
               {"name"},
               {"rank", true},
               {"new", true},
               {"weight", true},
               {"new", true},
               {"share", true},
               {"new", true},
               {"change"},
               {"reason"}},
              rows);
}

}  // namespace vantrel::inspect
