#include <algorithm>
#include <map>
#include <set>

#include "base/numbers.h"
#include "base/text.h"
#include "findings.h"
#include "history/history_file.h"
#include "site.h"
#include "store/summary.h"
#include "traffic/windows.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kStatisticsSize = kMinutesPerDay * sizeof(TrafficCounters);

// "a, b, c and 4 more"
class NameList {
 public:
  void add(std::string_view name) {
    if (count_++ < 3) text_.append(text_.empty() ? "" : ", ").append(name);
  }
  [[nodiscard]] bool empty() const { return count_ == 0; }
  [[nodiscard]] std::string text() const {
    return count_ <= 3 ? text_ : text_ + " and " + std::to_string(count_ - 3) + " more";
  }

 private:
  std::string text_;
  std::size_t count_ = 0;
};

void check_names(Findings& findings, const TradeStore& store) {
  std::set<std::string_view> names;
  std::set<std::int32_t> ids;
  NameList twice, capitals, slashes, ids_twice;
  for (const TradeRecord& trade : store.trades) {
    const std::string_view name = field_text(trade.name);
    if (!names.insert(name).second) twice.add(name);
    if (std::any_of(name.begin(), name.end(), [](char c) { return c >= 'A' && c <= 'Z'; })) {
      capitals.add(name);
    }
    if (name.find('/') != name.npos) slashes.add(name);
    if (!ids.insert(trade.id).second) ids_twice.add(std::to_string(trade.id));
  }
  const auto report = [&](const NameList& list, const std::string& text) {
    if (list.empty()) return;
    findings.off(kIndexFile, text + ": " + list.text(), "rename the trade in the administration");
  };
  report(twice, "only the first entry of a name is credited with its hits");
  report(capitals, "hits are matched in lower case and never reach a name with capitals");
  report(slashes, "a name with a slash has no history");
  report(ids_twice, "entries share an id and with it their statistics");
}

// True when a run could have to write the index: a countdown is under way.
bool has_countdown(const TradeStore& store) {
  return std::any_of(store.trades.begin(), store.trades.end(), [](const TradeRecord& trade) {
    return trade.hours_left > 0 || trade.hits_left > 0;
  });
}

void check_index(Findings& findings, TradeStore& store) {
  const auto bytes = read_file(kIndexFile);
  if (!bytes) {
    findings.as_event(kIndexFile, event::index_unavailable);
    return;
  }
  store.trades = read_trades(*bytes);
  if (store.trades.size() < kFewestTrades) {
    store.trades.clear();
    findings.as_event(kIndexFile, event::index_too_small);
    return;
  }
  fill_work_array(store);
  if (bytes->size() % sizeof(TradeRecord) != 0) {
    findings.off(kIndexFile, "its length is no multiple of 996: the last entry is cut short",
                 "restore it from the newest archive in d/backup/");
  }
  if (!may_write(kIndexFile)) {
    if (has_countdown(store)) {
      findings.as_event(kIndexFile, event::index_unavailable);
    } else {
      findings.off(kIndexFile, "cannot be written; the first quota or guarantee would end the run",
                   "give the run's user write permission on it");
    }
  }
  findings.fine(kIndexFile, counted(store.trades.size(), "entry")
                                .replace(std::to_string(store.trades.size()).size(),
                                         std::string::npos, " entries, reserved ones included"));
  check_names(findings, store);
}

// The ids of the lines, as far as they have 44 pieces; a line without them is counted as ragged.
std::vector<std::int32_t> summary_ids(std::string_view text, std::size_t& ragged) {
  std::vector<std::int32_t> ids;
  Pieces lines = lines_of(text);
  for (std::string_view line; lines.next(line);) {
    const auto bars = static_cast<std::size_t>(std::count(line.begin(), line.end(), '|'));
    if (bars != kSummaryPieces || line.front() != '|' || line.back() != '|') {
      ++ragged;
    } else {
      ids.push_back(to_int(line.substr(1)));
    }
  }
  return ids;
}

void check_summary(Findings& findings, const TradeStore& store) {
  const std::string text = examined(findings, kSummaryFile, event::summary_unavailable);
  if (!is_regular(kSummaryFile) || !may_read(kSummaryFile)) return;
  if (!may_write(kSummaryFile)) {
    findings.as_event(kSummaryFile, event::summary_unavailable);
  } else if (!may_write("d/t")) {
    findings.off("d/t", "takes no new file: d/t/sum is overwritten where a kill could tear it",
                 "give the run's user write permission on the directory");
  }
  std::size_t ragged = 0;
  std::vector<std::int32_t> found = summary_ids(text, ragged);
  if (ragged > 0) {
    findings.off(kSummaryFile,
                 counted(ragged, "line") + " without its 44 pieces: windows behind it are shifted",
                 "restore it from the newest archive in d/backup/");
    return;
  }
  std::vector<std::int32_t> wanted;
  for (const TradeRecord& trade : store.trades) wanted.push_back(trade.id);
  std::sort(found.begin(), found.end());
  std::sort(wanted.begin(), wanted.end());
  if (store.trades.empty() || found == wanted) {
    findings.fine(kSummaryFile, counted(found.size(), "line"));
  } else {
    findings.off(kSummaryFile, "does not have exactly one line a trade",
                 "nothing if trades were just added or removed: the next run writes it anew");
  }
}

void check_statistics(Findings& findings, const TradeStore& store) {
  NameList unreadable, unwritable, wrong_size;
  for (const TradeRecord& trade : store.trades) {
    const std::string path = statistics_path(trade.id);
    if (!exists(path) || !may_read(path)) {
      unreadable.add(path);
    } else if (!is_regular(path) || !may_write(path)) {
      unwritable.add(path);
    } else if (file_size(path) != kStatisticsSize) {
      wrong_size.add(path);
    }
  }
  if (!unreadable.empty()) findings.as_event(unreadable.text(), event::statistics_unreadable);
  if (!unwritable.empty()) findings.as_event(unwritable.text(), event::statistics_unwritable);
  if (!wrong_size.empty()) {
    findings.off(wrong_size.text(), "not 80,640 bytes long: minutes behind the end count as zero",
                 "make it that long with zero bytes");
  }
}

}  // namespace

void check_store(Findings& findings, TradeStore& store) {
  check_index(findings, store);
  check_summary(findings, store);
  check_statistics(findings, store);
  if (!may_read("d/jb")) findings.as_event("d/jb", event::marker_missing);
}

void check_history(Findings& findings, const TradeStore& store) {
  constexpr const char* kDirectory = "d/h";
  if (!is_directory(kDirectory) || !may_write(kDirectory)) {
    findings.off(kDirectory, "takes no new history files",
                 "make the directory, writable for the run's user");
  }
  NameList unavailable;
  for (const TradeRecord& trade : store.trades) {
    const auto path = trade_history_path(field_text(trade.name));
    if (path && !(may_read(*path) && may_write(*path))) unavailable.add(*path);
  }
  if (!unavailable.empty()) {
    findings.as_event(unavailable.text(), event::trade_history_unavailable);
  }
  for (const Event* total : {&event::total_history_unwritable, &event::trades_history_unwritable}) {
    const std::string path(total->subject);
    if (!may_create_or_write(path)) findings.as_event(path, *total);
  }
}

}  // namespace vantrel::inspect
