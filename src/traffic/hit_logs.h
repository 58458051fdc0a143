// The raw hit logs l/in/<minute stamp> and l/out/<minute stamp>, one file a minute and direction,
// appended by the request scripts while the minute lasts, read here once it is over, never changed.
//
// A file is a stream of pieces: 12 make an incoming record, 15 an outgoing one. A line feed after
// the last bar of a record falls into piece 0 of the next, which is never looked at.
#pragma once

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "store/hit_log_names.h"
#include "traffic/log_reader.h"

namespace vantrel {

// Where the minute walk stands. The cleanup and the backup go on from where it left.
struct MinuteWalk {
  std::time_t moment = 0;    // the working clock: within the oldest minute visited
  std::string minute_stamp;  // of that minute
  std::string hour_stamp;
};

// How many minutes of logs this run reads: the time between the last two stamps of the run history,
// this run's among them, at least 1 and at most 60. The stamps have no year, so a run after New
// Year reads one minute.
[[nodiscard]] double catch_up_minutes(const std::vector<std::string>& stamps);

// Steps the walk back minute by minute, newest first, and calls visit(walk) for each.
template <typename Visit>
void for_each_log_minute(MinuteWalk& walk, std::time_t start, double minutes, Visit visit) {
  walk.moment = start;
  for (double done = 0.0; done == 0.0 || minutes > done; done += 1.0) {
    walk.moment -= 60;
    walk.minute_stamp = format_time(kMinuteStampFormat, walk.moment);
    walk.hour_stamp = format_time(kHourStampFormat, walk.moment);
    visit(walk);
  }
}

// One record: its pieces in lower case, as many as the file holds of it.
template <std::size_t Length>
struct Record {
  const char* const* bars;    // in front of piece 0 and behind each piece
  std::size_t count;          // of pieces, at most Length
  std::uint32_t address = 0;  // piece 1 as a number, for whoever announces records

  [[nodiscard]] bool has(std::size_t piece) const { return piece < count; }
  [[nodiscard]] bool complete() const { return count == Length; }
  [[nodiscard]] std::string_view operator[](std::size_t piece) const {
    return {bars[piece] + 1, bars[piece + 1]};
  }
};

// Calls visit(record) for each record of a log; the last one may be incomplete. Before that, while
// the record in front of it is still to be visited, it is given to announce(record), so that what
// it will look up can be on its way from memory. A missing or unreadable file delivers nothing.
template <std::size_t Length, typename Announce, typename Visit>
void read_fields(LogReader& log, const std::string& path, Announce announce, Visit visit) {
  static_assert(Length <= LogReader::kMostKept);
  if (!log.open(path.c_str())) return;
  std::size_t visited = 0;
  for (bool more = true; more;) {
    more = log.read_on(visited);
    const std::size_t pieces = more ? log.pieces() / Length * Length : log.pieces();
    const auto record_at = [&](std::size_t piece) {
      Record<Length> record{log.bars() + piece, std::min(pieces - piece, Length)};
      announce(record);
      return record;
    };
    Record<Length> next = record_at(0);
    for (visited = 0; visited < pieces;) {
      const Record<Length> record = next;
      visited += record.count;
      next = record_at(visited);
      visit(record);
    }
  }
}

// The same for a visitor that needs no announcement.
template <std::size_t Length, typename Visit>
void read_fields(LogReader& log, const std::string& path, Visit visit) {
  read_fields<Length>(
      log, path, [](const Record<Length>&) {}, visit);
}

}  // namespace vantrel
