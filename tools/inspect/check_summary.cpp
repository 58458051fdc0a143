#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "base/text.h"
#include "checks.h"
#include "places.h"
#include "site.h"
#include "store/summary.h"
#include "traffic/windows.h"

namespace vantrel::inspect {
namespace {

// What the statistics file of a trade holds: the sum of its slots is its window of 24 hours.
struct Slots {
  TrafficCounters sum;
  std::int32_t largest = 0;
  bool readable = false;
};

Slots read_slots(std::int32_t id) {
  Slots slots;
  const auto bytes = read_file(statistics_path(id));
  if (!bytes) return slots;
  slots.readable = true;
  for (std::size_t i = 0; i + sizeof(TrafficCounters) <= bytes->size();
       i += sizeof(TrafficCounters)) {
    TrafficCounters counters;
    std::copy_n(bytes->data() + i, sizeof counters, reinterpret_cast<char*>(&counters));
    add(slots.sum, counters);
    for (const slot::Counter counter : {slot::rin, slot::out}) {
      slots.largest = std::max(slots.largest, counters[counter]);
    }
  }
  return slots;
}

// A quarter, or some minutes' worth: a run that was killed between the two files leaves as much.
bool about_equal(std::int32_t window, std::int32_t slots, std::int32_t largest_slot) {
  const std::int64_t apart = std::abs(std::int64_t{window} - slots);
  const std::int64_t quarter = std::max<std::int64_t>(window, slots) / 4;
  return apart <= std::max({quarter, std::int64_t{largest_slot} * 5, std::int64_t{50}});
}

// Goes through the lines and says which a run would not have written so.
class Reader {
 public:
  Reader(std::string_view text, const TradeStore& store)
      : text_(text), complaints_(text, kSummaryFile) {
    for (const TradeRecord& trade : store.trades) ++expected_[trade.id];
  }

  void read() {
    Pieces lines = lines_of(text_);
    for (std::string_view line; lines.next(line);) {
      ++number_;
      if (!line.empty()) read_line(line);  // a run killed while it wrote in place leaves such
    }
  }

  void compare(const TradeStore& store) {
    for (const auto& [id, count] : found_) {
      if (!expected_.contains(id)) strangers_.add("id " + std::to_string(id));
      if (count > 1 && expected_.contains(id)) twice_.add("id " + std::to_string(id));
    }
    for (const TradeRecord& trade : store.trades) {
      if (found_.contains(trade.id)) continue;
      const TrafficCounters slots = read_slots(trade.id).sum;
      const bool is_new = slots.values == TrafficCounters{}.values;
      (is_new ? new_ : missing_).add(printable(field_text(trade.name)));
    }
  }

  // Something the run cannot make good again.
  [[nodiscard]] bool is_damaged() const {
    return !complaints_.empty() || !strangers_.empty() || !twice_.empty() || !missing_.empty();
  }

  void tell(Findings& findings) {
    if (!missing_.empty()) {
      complaints_.about_file("no line for " + counted(missing_.count(), "trade") +
                             " with traffic: " + missing_.text() + " start again at 0");
    }
    if (!twice_.empty()) {
      complaints_.about_file("two lines of one id add up: " + twice_.text());
    }
    if (!strangers_.empty()) {
      complaints_.about_file("lines of ids that no trade has go to the entry for unknown hits: " +
                             strangers_.text());
    }
    if (is_damaged()) {
      complaints_.tell(
          findings, "",
          "stop the scheduler at once, for the next run writes the damage back; then " +
              restore_command(kSummaryFile) + " and start it again",
          Question::loss);
    }
    if (!new_.empty()) {
      findings.note(kSummaryFile, "no line yet for new trades: " + new_.text());
    }
  }

 private:
  void read_line(std::string_view line) {
    const auto bars = static_cast<std::size_t>(std::count(line.begin(), line.end(), '|'));
    const std::string where = "line " + std::to_string(number_);
    if (bars != kSummaryPieces || line.front() != '|' || line.back() != '|') {
      complaints_.about_file(where + " has " + std::to_string(bars) + " bars instead of 44, " +
                             quote(line) + ": all behind is read shifted");
      return;
    }
    Pieces pieces(line);
    std::string_view piece;
    static_cast<void>(pieces.next(piece));
    for (std::size_t k = 1; pieces.next(piece); ++k) {
      if (!is_whole_int(piece)) {
        complaints_.about_file(where + ", piece " + std::to_string(k) + ": " + quote(piece) +
                               " is no number of 32 bits");
      }
      if (k == 1) ++found_[to_int(piece)];
    }
  }

  std::string_view text_;
  Complaints complaints_;
  std::size_t number_ = 0;
  std::map<std::int32_t, std::size_t> expected_;
  std::map<std::int32_t, std::size_t> found_;
  NameList strangers_, twice_, missing_, new_;
};

// The windows against the slots they are made of.
void compare_with_slots(Findings& findings, const TradeStore& store) {
  NameList apart;
  for (const TradeWork& work : store.works) {
    const Slots slots = read_slots(work.id);
    if (!slots.readable) continue;
    for (const slot::Counter counter : {slot::rin, slot::out}) {
      if (about_equal(work.last24[counter], slots.sum[counter], slots.largest)) continue;
      apart.add(printable(field_text(work.name)) + " (" + std::to_string(work.last24[counter]) +
                ", the minutes make " + std::to_string(slots.sum[counter]) + ")");
      break;
    }
  }
  if (apart.empty()) return;
  findings.lost(
      kSummaryFile,
      "the windows of 24 hours are not the sum of the minutes in d/t/<id>: " + apart.text(),
      "stop the scheduler and " + restore_command("d/t") +
          "; left alone, the windows stay wrong for ever");
}

bool check_access(Findings& findings) {
  if (is_directory(kSummaryFile)) {
    findings.as_event(kSummaryFile, event::summary_unavailable);
    findings.lost(kSummaryFile,
                  "is a folder: every run stores its minute in d/t/<id>, then ends without the "
                  "windows",
                  "put the folder away and " + restore_command(kSummaryFile));
    return false;
  }
  if (!may_read(kSummaryFile)) {
    Finding finding = finding_of(kSummaryFile, event::summary_unavailable);
    if (!exists(kSummaryFile)) finding.remedy = restore_command(kSummaryFile);
    findings.refused(kSummaryFile, Need::read, finding);
    return false;
  }
  if (!may_write(kSummaryFile)) {
    findings.refused(kSummaryFile, Need::write, event::summary_unavailable);
  } else if (!may_write("d/t")) {
    findings.refused("d/t", Need::write,
                     finding_off("d/t",
                                 "takes no new file: d/t/sum is overwritten where a kill could "
                                 "tear it",
                                 "give the run's user write permission on the directory"));
  }
  return true;
}

}  // namespace

void check_summary(Findings& findings, TradeStore& store, bool has_trades) {
  if (!check_access(findings) || store.works.empty()) return;
  const std::string text = read_file(kSummaryFile).value_or("");
  add_summary(store, text);
  // What the run would write of what it read is what a run wrote: then it is whole.
  if (encode_summary(store.works) != text && has_trades) {
    Reader reader(text, store);
    reader.read();
    reader.compare(store);
    reader.tell(findings);
  }
  if (!findings.is_off(kSummaryFile) && has_trades) {
    compare_with_slots(findings, store);
  }
  findings.fine(kSummaryFile, counted(store.works.size(), "line"));
}

}  // namespace vantrel::inspect
