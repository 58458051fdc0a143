#include <algorithm>
#include <set>
#include <string>

#include "base/numbers.h"
#include "base/text.h"
#include "checks.h"
#include "out/out_list.h"
#include "out/out_settings.h"
#include "places.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kSave = "save the outgoing settings again in the administration";

// A field of d/out.mod that should be a number. The last field of the file is never one.
void check_number(Complaints& complaints, const OutMod& modifiers, std::size_t i,
                  const std::string& what) {
  const std::string_view text = modifiers.text(i);
  const std::string field = "field " + std::to_string(i) + ", " + what + ": ";
  if (!is_whole_int(text)) {
    complaints.about_file(field + quote(text) + " is no number and counts as 0");
  } else if (modifiers.number(i) != to_int(text)) {
    complaints.about_file(field + quote(text) +
                          " is the last field of the file and counts as 0; a bar is to follow it");
  } else if (modifiers.number(i) < 0) {
    complaints.about_file(field + quote(text) + " is below 0");
  }
}

void check_window_weights(Complaints& complaints, const OutMod& modifiers) {
  const char* const kWindows[] = {"the weight of 60 minutes", "the weight of 24 hours",
                                  "the weight of 7 days"};
  for (std::size_t i = 0; i < 3; ++i) check_number(complaints, modifiers, 3 + i, kWindows[i]);
  if (wrap_add(wrap_add(modifiers.number(3), modifiers.number(4)), modifiers.number(5)) == 0) {
    complaints.about_file(
        "the weights of the three windows (fields 3 to 5) sum to 0: no score is a number, and all "
        "trades rank as in the index");
  }
}

// Nothing when the file cannot be judged.
std::optional<OutMod> check_modifiers(Findings& findings) {
  constexpr const char* kModifiers = "d/out.mod";
  const auto text = examined(findings, kModifiers, event::out_mod_missing);
  if (!text) return std::nullopt;
  const OutMod modifiers = parse_out_mod(*text);
  Complaints complaints(*text, kModifiers);
  const auto fields = static_cast<std::size_t>(std::count(text->begin(), text->end(), '|'));
  if (fields < OutMod::kFieldsUsed) {
    complaints.about_file("has " + std::to_string(fields == 0 ? 0 : fields - 1) +
                          " whole fields instead of 10; those that are missing are empty");
  }
  const std::string_view generated = modifiers.text(6);
  if (generated != "0" && generated != "1" && !generated.empty()) {
    complaints.about_file("field 6: " + quote(generated) + " is not 1: no weights are generated");
  }
  const std::string_view scorer = modifiers.text(8);
  if (modifiers.uses_formula()) {
    const char* const kFactors[] = {"the factor of cef per uin", "the factor of out per uin",
                                    "the factor of ctt per out"};
    for (std::size_t i = 0; i < 3; ++i) check_number(complaints, modifiers, i, kFactors[i]);
  } else {
    check_window_weights(complaints, modifiers);
    if (!scorer.empty() && !is_whole_int(scorer)) {
      complaints.about_file("field 8: " + quote(scorer) + " is not 10: the formula is not used");
    }
  }
  complaints.tell(findings, modifiers.uses_formula() ? "the formula ranks" : "built-in score",
                  kSave, Question::list);
  return modifiers;
}

void check_weights(Findings& findings, bool generated) {
  constexpr const char* kWeights = "d/out.set";
  const auto text = examined(findings, kWeights, event::out_set_missing);
  if (!text || generated) return;
  Complaints complaints(*text, kWeights);
  Pieces pieces(*text);
  std::size_t count = 0;
  std::size_t usable = 0;
  std::string_view rest = *text;
  for (WeightPieces entry; next_weight(pieces, entry); ++count, rest = pieces.rest()) {
    const std::string which = "weight " + std::to_string(count + 1) + ": ";
    const std::int32_t weight = to_int(entry.weight);
    if (!is_whole_int(entry.weight)) {
      complaints.about(entry.weight, which + quote(entry.weight) + " is no number");
    } else if (weight <= 0) {
      complaints.about(entry.weight, which + quote(entry.weight) + " is not above 0");
    }
    if (weight > 0) ++usable;
    if (count > 0 && !entry.name.starts_with('\n') && !entry.name.starts_with('\r')) {
      complaints.about(entry.name, quote(entry.name) +
                                       " stands where a line begins: a piece was lost or added, "
                                       "and names are read as weights");
      break;
    }
  }
  if (complaints.empty() && !is_blank(rest)) {
    complaints.about(rest, "an odd number of pieces: " + quote(rest) + " has no weight");
  }
  if (usable == 0) {
    findings.worthless(kWeights, "holds no weight above 0: no trade gets a first weight", kSave);
    return;
  }
  complaints.tell(findings, counted(count, "weight"), kSave);
}

void complain_of_cap(Complaints& complaints, const CapPieces& cap,
                     const std::set<std::int32_t>& ids) {
  if (!is_whole_int(cap.id) || !ids.contains(to_int(cap.id))) {
    complaints.about(cap.id, "there is no trade with the id " + quote(cap.id));
  }
  if (cap.kind != "1" && cap.kind != "2" && cap.kind != "3") {
    complaints.about(cap.kind, "there is no kind of cap " + quote(cap.kind));
  }
  if (!is_whole_int(cap.value)) {
    complaints.about(cap.value, "the cap " + quote(cap.value) + " is no number");
  } else if (to_int(cap.value) < -1) {
    complaints.about(cap.value, "the cap " + quote(cap.value) + " is below -1");
  }
}

void check_caps(Findings& findings, const TradeStore& store, bool has_trades) {
  constexpr const char* kCaps = "d/caps";
  const auto text = examined(findings, kCaps, event::caps_missing);
  if (!text || !has_trades) return;
  std::set<std::int32_t> ids;
  for (const TradeRecord& trade : store.trades) ids.insert(trade.id);
  Complaints complaints(*text, kCaps);
  Pieces pieces(*text);
  std::size_t count = 0;
  std::string_view rest = pieces.rest();
  for (CapPieces cap; next_cap(pieces, cap); ++count, rest = pieces.rest()) {
    if (complaints.shifted(cap.ignored, "a cap")) break;
    complain_of_cap(complaints, cap, ids);
  }
  if (complaints.empty() && !is_blank(rest)) {
    complaints.about(rest, "the last cap is cut short: " + quote(rest));
  }
  complaints.tell(findings, counted(count, "cap"), "save the caps again in the administration");
}

void check_track(Findings& findings) {
  constexpr const char* kTrack = "d/nm/track";
  const auto text = examined(
      findings, kTrack,
      Finding{Severity::ends_run, Question::end, kTrack, "the tracking setting cannot be opened",
              "save the settings in the administration, or check permissions", "", 0});
  if (!text) return;
  Pieces pieces(*text);
  std::string_view piece;
  if (!pieces.next(piece) || !pieces.next(piece)) {
    findings.off(kTrack, "holds no number between two bars: 1 is used, the text is " + quote(*text),
                 "write |1| or the number of the tracking setting into it");
  } else if (!is_whole_int(piece)) {
    findings.off(kTrack,
                 quote(piece) + " is no number and counts as " + std::to_string(to_int(piece)),
                 "write |1| or the number of the tracking setting into it");
  }
  findings.fine(kTrack, "a number");
}

// Entries of the present list that no trade of the index has.
void check_entries(Findings& findings, const std::vector<OutListEntry>& entries,
                   const TradeStore& store) {
  std::set<std::int32_t> ids;
  for (const TradeRecord& trade : store.trades) ids.insert(trade.id);
  NameList strangers;
  for (const OutListEntry& entry : entries) {
    if (!ids.contains(entry.id)) strangers.add(quote(field_text(entry.name)));
  }
  if (strangers.empty()) return;
  findings.off(kOutListFile,
               "lists what is no trade of d/t/index: " + strangers.text() +
                   "; visitors are sent there until the next run",
               "let a run write it anew; if it comes back, look at what wrote to it");
}

void check_list_file(Findings& findings, const TradeStore& store, bool has_trades) {
  if (!may_create_or_write(kOutListFile)) {
    Finding finding = finding_of(kOutListFile, event::out_list_unwritable);
    finding.question = Question::list;
    findings.refused(kOutListFile, Need::create, finding);
    return;
  }
  const auto list = read_file(kOutListFile);
  if (!exists(kOutListFile)) {
    findings.note(kOutListFile, "is not there yet: the next run writes it");
  } else if (list && is_regular(kOutListFile)) {
    OutListHeader header;
    std::vector<OutListEntry> entries;
    const bool whole = decode_out_list(*list, header, entries) &&
                       (list->size() - sizeof header) % sizeof(OutListEntry) == 0;
    if (!whole) {
      findings.off(kOutListFile, "is not whole: visitors are sent by what is left of it",
                   "let a run write it anew, the next one does; then look at what wrote to it");
    } else if (has_trades) {
      check_entries(findings, entries, store);
    }
  } else if (!is_regular(kOutListFile)) {
    findings.worthless(kOutListFile, "is no file: there is no list to follow",
                       "remove it: the next run makes a file");
  }
}

}  // namespace

void check_outgoing(Findings& findings, const TradeStore& store, bool has_trades) {
  const auto modifiers = check_modifiers(findings);
  check_weights(findings, modifiers && modifiers->generates_weights());
  check_caps(findings, store, has_trades);
  check_track(findings);
  check_list_file(findings, store, has_trades);
}

}  // namespace vantrel::inspect
