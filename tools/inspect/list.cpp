#include <cmath>
#include <iostream>
#include <vector>

#include "base/text.h"
#include "out/out_list.h"
#include "site.h"
#include "story.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

Json header_json(const OutListHeader& header) {
  Json texts = Json::array();
  for (const auto& text : header.texts) texts.push_back(field_text(text));
  return {{"skim_3", header.skim_3},
          {"skim_6", header.skim_6},
          {"numbers", header.numbers},
          {"track", header.track},
          {"texts", texts}};
}

Json entry_json(const OutListEntry& entry, std::size_t rank, double total) {
  const double share = total > 0 ? counted_weight(entry.weight) / total : 0;
  return {{"rank", rank},
          {"id", entry.id},
          {"name", field_text(entry.name)},
          {"weight", entry.weight},
          {"second_weight", entry.second_weight},
          {"share_percent", std::isfinite(share) ? std::round(share * 10000) / 100 : 0},
          {"state", state_text(entry.state)},
          {"skim", entry.skim == -1 ? Json() : Json(entry.skim)}};
}

// Score and reason by the stored windows and the present settings. Where these give another weight
// than the list has, something was changed since it was written.
void add_reason(Json& row, const OutListEntry& entry, const Reasons& reasons) {
  const auto found = reasons.find(entry.id);
  row["score"] = found == reasons.end() ? Json() : json_number(found->second.score);
  if (found == reasons.end()) {
    row["reason"] = "no longer a trade";
  } else if (found->second.weight != entry.weight) {
    row["reason"] = "changed since: " + found->second.reason;
  } else {
    row["reason"] = found->second.reason;
  }
}

}  // namespace

Json list_view() {
  const auto bytes = read_file(kOutListFile);
  OutListHeader header;
  std::vector<OutListEntry> entries;
  if (!bytes || !decode_out_list(*bytes, header, entries)) {
    throw Unavailable{std::string(kOutListFile) + (bytes ? " is damaged" : " cannot be opened")};
  }
  const Forecast forecast = foresee();
  const Reasons reasons = reasons_by_id(forecast);
  const double total = total_weight(entries);
  Json list = Json::array();
  for (const OutListEntry& entry : entries) {
    list.push_back(entry_json(entry, list.size() + 1, total));
    if (forecast.reaches_list) add_reason(list.back(), entry, reasons);
  }
  const std::size_t ragged = (bytes->size() - sizeof header) % sizeof(OutListEntry);
  return {{"written", time_text(modified(kOutListFile).value_or(0))},
          {"stray_bytes", ragged},
          {"header", header_json(header)},
          {"entries", list}};
}

void print_list(const Json& view) {
  std::vector<std::vector<std::string>> rows;
  for (const Json& entry : view["entries"]) {
    const bool explained = entry.contains("reason");
    rows.push_back({cell(entry["rank"]), cell(entry["id"]), cell(entry["name"]),
                    cell(entry["weight"]), cell(entry["second_weight"]), cell(entry["state"]),
                    cell(entry["skim"]), cell(entry["share_percent"]) + "%",
                    explained ? score_cell(entry["score"]) : "-",
                    explained ? cell(entry["reason"]) : "-",
                    bar(entry["share_percent"].get<double>() / 100, 12)});
  }
  std::cout << "Outgoing list of " << cell(view["written"]) << ", " << counted(rows.size(), "trade")
            << '\n';
  print_table({{"rank", true},
               {"id", true},
               {"name"},
               {"weight", true},
               {"second", true},
               {"state"},
               {"skim", true},
               {"share", true},
               {"score", true},
               {"reason"},
               {""}},
              rows);
  if (view["stray_bytes"] != 0) {
    std::cout << coloured(Colour::yellow, "The file ends inside an entry.") << '\n';
  }
}

}  // namespace vantrel::inspect
