#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/text.h"
#include "checks.h"
#include "daily.h"
#include "history/history.h"
#include "history/history_file.h"
#include "places.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

constexpr const char* kDirectory = "d/h";

// Days since some day long ago; nothing for a text that is no date.
std::optional<int> day_of(std::string_view date) {
  const auto noon = noon_of(date);
  if (!noon) return std::nullopt;
  return static_cast<int>(std::floor(static_cast<double>(*noon) / 86400.0));
}

// What is wrong with the last week of a file: text to the files that have it.
using Troubles = std::map<std::string, NameList>;

void look_at(HistoryReader& reader, const std::string& path, Troubles& troubles) {
  const auto week = reader.last_week(path.c_str());
  if (!week) return;
  Pieces pieces(*week);
  std::optional<int> before;
  std::string date_before;
  for (HistoryRecord record; next_record(pieces, record);) {
    if (record.date.empty() && pieces.rest().empty()) break;  // a line feed at the end
    const auto day = day_of(record.date);
    const std::string date = printable(record.date);
    if (!day) {
      troubles["a record has " + quote(record.date) + " where its date should be"].add(path);
      return;
    }
    if (before && *day == *before) troubles["the day " + date + " stands there twice"].add(path);
    if (before && *day > *before + 1) {
      troubles[counted(static_cast<std::size_t>(*day - *before - 1), "day") + " between " +
               date_before + " and " + date + " missing"]
          .add(path);
    }
    if (before && *day < *before) troubles["the days are not in order at " + date].add(path);
    before = day;
    date_before = date;
  }
  // Until 0:20 a run makes up for the day before.
  const auto yesterday = day_of(format_time("%Y%m%d", wall_clock() - 86400 - 20 * 60));
  if (before && yesterday && *before < *yesterday) {
    troubles["the last day is " + date_before + ", yesterday is missing"].add(path);
  }
  if (before && yesterday && *before > *yesterday + 1) {
    troubles["the last day is " + date_before + ", which is to come"].add(path);
  }
}

// The totals of the last run had a week of days that are not there any more.
void check_emptied(Findings& findings, const TradeStore& store) {
  NameList emptied;
  bool any_days = false;
  for (const TradeWork& work : store.works) {
    if (work.last07.values == TrafficCounters{}.values) continue;
    any_days = true;
    const auto path = trade_history_path(field_text(work.name));
    if (path && is_regular(*path) && file_size(*path) == 0) emptied.add(printable(*path));
  }
  if (!emptied.empty()) {
    findings.lost(
        kDirectory,
        "emptied since the last run: " + emptied.text() + "; the 7-day window starts anew",
        restore_command(kDirectory));
  }
  for (const char* path : {kTotalsFile, kTradeTotalsFile}) {
    if (!any_days || exists(path)) continue;
    findings.lost(
        path,
        "is not there, though trades have days: a day that is missed at 23:59 is not made "
        "up for",
        restore_command(kDirectory) + ", or let the run of 23:59 begin a new one");
  }
}

void check_days(Findings& findings, const TradeStore& store) {
  HistoryReader reader;
  Troubles troubles;
  for (const TradeRecord& trade : store.trades) {
    const auto path = trade_history_path(field_text(trade.name));
    if (path && is_regular(*path)) look_at(reader, *path, troubles);
  }
  for (const char* path : {"d/h/all.his", "d/h/trades.his"}) {
    if (is_regular(path)) look_at(reader, path, troubles);
  }
  for (const auto& [text, files] : troubles) {
    findings.lost(kDirectory,
                  "in " + counted(files.count(), "file") + " (" + files.text() + ") " + text +
                      ": the 7-day window counts the last seven records",
                  "correct the file with an editor, or " + restore_command(kDirectory) +
                      "; a missed 23:59 is made up for after midnight under the new date");
  }
}

}  // namespace

void check_marker(Findings& findings) {
  if (!may_read("d/jb")) findings.refused("d/jb", Need::read, event::marker_missing);
  findings.fine("d/jb", "is there");
}

void check_history(Findings& findings, const TradeStore& store) {
  const std::string inside = std::string(kDirectory) + "/.";
  const std::string make = "make the directory, writable for the run's user";
  if (!is_directory(kDirectory)) {
    findings.refused(inside, Need::write, finding_off(kDirectory, "no history is kept", make));
  } else if (!may_write(kDirectory) || !may_enter(kDirectory)) {
    findings.refused(inside, Need::write,
                     finding_off(kDirectory, "takes no new history files", make));
  }
  NameList unavailable;
  for (const TradeRecord& trade : store.trades) {
    const auto path = trade_history_path(field_text(trade.name));
    if (!path || (may_read(*path) && may_write(*path))) continue;
    if (cause_of(*path, may_read(*path) ? Need::write : Need::read)) {
      findings.refused(*path, may_read(*path) ? Need::write : Need::read,
                       event::trade_history_unavailable);
    } else {
      unavailable.add(printable(*path));
    }
  }
  if (!unavailable.empty()) {
    findings.as_event(unavailable.text(), event::trade_history_unavailable);
  }
  for (const Event* total : {&event::total_history_unwritable, &event::trades_history_unwritable}) {
    const std::string path(total->subject);
    if (!may_create_or_write(path)) findings.refused(path, Need::create, *total);
  }
  check_emptied(findings, store);
  check_days(findings, store);
  findings.fine(kDirectory, "every trade has its days");
}

}  // namespace vantrel::inspect
