#include "daily.h"

#include <algorithm>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/text.h"
#include "history/history.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

// Places of a record: 1 date, 2-12 counters, 13-15 the qualities with six digits, 17-19 three
// reserved entries, 20 the last that is not empty.
constexpr std::size_t kPieces = 30;
constexpr std::size_t kFirstCounter = 2;
constexpr std::size_t kFirstQuality = 13;
constexpr std::size_t kReserved = 17;
constexpr std::size_t kLastValue = 20;

constexpr int kDayEnds = 23 * 60 + 59;  // minute of the day that records it

struct Record {
  std::time_t noon = 0;
  bool late = false;
  Sums sums;
  std::array<std::int32_t, 3> reserved{};
};

// Sums are written as unsigned; one below zero comes back as what it was.
void take_value(Record& record, std::size_t place, std::string_view piece) {
  if (place >= kFirstCounter && place < kFirstCounter + kCounterCount) {
    record.sums.values[place - kFirstCounter] =
        place < kFirstQuality ? to_int(piece) : truncate_to_int(to_double(piece));
  } else if (place >= kReserved && place < kReserved + record.reserved.size()) {
    record.reserved[place - kReserved] = to_int(piece);
  }
}

void mark_late(std::vector<Record>& records, std::time_t now) {
  const bool day_is_over = minute_of_day(now) >= kDayEnds;
  const std::string today = date_text(now);
  for (std::size_t i = 0; i < records.size(); ++i) {
    const bool last = i + 1 == records.size();
    records[i].late = last ? !day_is_over && date_text(records[i].noon) == today
                           : records[i + 1].noon == records[i].noon;
  }
}

std::vector<Record> read_records(const char* path, std::time_t now, std::size_t& unreadable) {
  const std::string text = read_file(path).value_or("");
  std::vector<Record> records;
  Record record;
  std::optional<std::time_t> noon;
  Pieces pieces(text);
  std::string_view piece;
  for (std::size_t place = 0; pieces.next(piece); place = (place + 1) % kPieces) {
    if (place == 1) {
      noon = noon_of(piece);
      record = {noon.value_or(0), false, {}, {}};
      if (!noon) ++unreadable;
    }
    take_value(record, place, piece);
    if (place != kLastValue || !noon) continue;
    if (records.size() == 2 * kMostDays)
      records.erase(records.begin(), records.begin() + kMostDays);
    records.push_back(record);
  }
  mark_late(records, now);
  if (records.size() > kMostDays) records.erase(records.begin(), records.end() - kMostDays);
  return records;
}

}  // namespace

std::optional<std::time_t> noon_of(std::string_view date) {
  if (date.size() != 8 || !std::all_of(date.begin(), date.end(), is_digit)) return std::nullopt;
  std::tm parts{};
  parts.tm_year = to_int(date.substr(0, 4)) - 1900;
  parts.tm_mon = to_int(date.substr(4, 2)) - 1;
  parts.tm_mday = to_int(date.substr(6, 2));
  parts.tm_hour = 12;
  parts.tm_isdst = -1;
  const std::time_t noon = std::mktime(&parts);
  return format_time("%Y%m%d", noon) == date ? std::optional(noon) : std::nullopt;
}

std::string date_text(std::time_t moment, int days_before) {
  std::tm day = local_time(moment);
  day.tm_mday -= days_before;
  day.tm_hour = 12;
  day.tm_isdst = -1;
  return format_time("%Y-%m-%d", std::mktime(&day));
}

DailyTotals read_daily_totals(std::time_t now) {
  DailyTotals totals;
  std::size_t uncounted = 0;
  const std::vector<Record> trades = read_records(kTradeTotalsFile, now, uncounted);
  for (const Record& record : read_records(kTotalsFile, now, totals.unreadable)) {
    Day day{date_text(record.noon, record.late ? 1 : 0),
            record.late,
            record.sums,
            std::nullopt,
            record.reserved[0],
            record.reserved[1],
            record.reserved[2]};
    const auto same = std::find_if(trades.begin(), trades.end(), [&](const Record& other) {
      return other.noon == record.noon && other.late == record.late;
    });
    if (same != trades.end()) day.trades = same->sums;
    totals.days.push_back(std::move(day));
  }
  return totals;
}

}  // namespace vantrel::inspect
