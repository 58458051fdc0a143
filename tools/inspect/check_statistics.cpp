#include <cstring>
#include <set>
#include <string>

#include "base/text.h"
#include "checks.h"
#include "site.h"
#include "traffic/windows.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kStatisticsSize = kMinutesPerDay * sizeof(TrafficCounters);

// Counts, not qualities: below 0 or beyond what a minute could bring there is no number of hits.
bool is_impossible(const TrafficCounters& slot) {
  constexpr std::int32_t kMost = 50'000'000;
  for (std::size_t k = slot::rin; k <= slot::proxy_clk; ++k) {
    if (slot.values[k] < 0 || slot.values[k] > kMost) return true;
  }
  return false;
}

bool holds_impossible(const std::string& path) {
  const std::string bytes = read_file(path).value_or("");
  for (std::size_t i = 0; i + sizeof(TrafficCounters) <= bytes.size();
       i += sizeof(TrafficCounters)) {
    TrafficCounters slot;
    std::memcpy(&slot, bytes.data() + i, sizeof slot);
    if (is_impossible(slot)) return true;
  }
  return false;
}

struct Lists {
  NameList unreadable, unwritable, no_file, wrong_size, nonsense;
};

void look_at(Findings& findings, const std::string& path, Lists& lists) {
  if (cause_of(path, Need::read)) {
    findings.refused(path, Need::read, event::statistics_unreadable);
  } else if (!exists(path) || !may_read(path)) {
    lists.unreadable.add(path);
  } else if (!is_regular(path)) {
    lists.no_file.add(path);
  } else if (cause_of(path, Need::write)) {
    findings.refused(path, Need::write, event::statistics_unwritable);
  } else if (!may_write(path)) {
    lists.unwritable.add(path);
  } else if (file_size(path) != kStatisticsSize) {
    lists.wrong_size.add(path);
  } else if (holds_impossible(path)) {
    lists.nonsense.add(path);
  }
}

}  // namespace

void check_statistics(Findings& findings, const TradeStore& store) {
  Lists lists;
  std::set<std::int32_t> ids;
  for (const TradeRecord& trade : store.trades) {
    if (ids.insert(trade.id).second) look_at(findings, statistics_path(trade.id), lists);
  }
  if (!lists.unreadable.empty()) {
    findings.as_event(lists.unreadable.text(), event::statistics_unreadable);
  }
  if (!lists.unwritable.empty()) {
    Finding finding = finding_of(lists.unwritable.text(), event::statistics_unwritable);
    finding.question = Question::loss;
    findings.add(finding);
  }
  if (!lists.no_file.empty()) {
    findings.lost(lists.no_file.text(), "is no file: no minute of the trade is stored",
                  "put it away and make a file of 80,640 zero bytes");
  }
  if (!lists.wrong_size.empty()) {
    findings.lost(lists.wrong_size.text(),
                  "not 80,640 bytes long: minutes behind the end count as zero, so that what they "
                  "held never leaves the windows",
                  restore_command("d/t") + "; or make it that long with zero bytes");
  }
  if (!lists.nonsense.empty()) {
    findings.lost(lists.nonsense.text(),
                  "holds counts that no minute can have: the windows turn wrong when they leave",
                  restore_command("d/t"));
  }
  findings.fine("d/t", counted(ids.size(), "statistics file"));
}

}  // namespace vantrel::inspect
