#include "store/summary.h"

#include <charconv>
#include <string>

#include "base/files.h"
#include "base/number_pieces.h"
#include "base/replace_file.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

// Sign and digits of a counter, and a bar.
constexpr std::size_t kLongestPiece = 12;

// Appends a number and its bar; room for the longest must be left.
char* put_piece(char* to, std::int32_t value) {
  to = std::to_chars(to, to + kLongestPiece, value).ptr;
  *to++ = '|';
  return to;
}

void negate_windows(std::vector<TradeWork>& works) {
  for (TradeWork& work : works) {
    for (TrafficCounters* window : {&work.last60, &work.last24, &work.last07}) {
      TrafficCounters negative;
      subtract(negative, *window);
      *window = negative;
    }
  }
}

// The totals another run has stored, and on top of them what this one changed.
bool add_to_stored(TradeStore& store) {
  FileBuffer stored;
  if (!stored.read(kSummaryFile)) return false;
  negate_windows(store.works);
  add_summary(store, store.summary.text());
  negate_windows(store.works);  // what this run changed
  add_summary(store, stored.text());
  store.summary = std::move(stored);
  return true;
}

bool store_summary(TradeStore& store) {
  constexpr int kMostTurns = 5;
  for (int turn = 0; turn < kMostTurns; ++turn) {
    const std::string text = encode_summary(store.works);
    // Line feeds behind the last bar count for nothing; the rest of an old line would be added.
    const Replaced outcome = replace_file(kSummaryFile, {text, &store.summary.version(), '\n'});
    if (outcome != Replaced::overtaken) return outcome == Replaced::done;
    if (!add_to_stored(store)) return replace_file(kSummaryFile, text);  // it was removed
  }
  return false;
}

}  // namespace

std::string encode_summary(const std::vector<TradeWork>& works) {
  std::string text;
  text.reserve(works.size() * kSummaryPieces * 4);
  for (const TradeWork& work : works) {
    char line[2 + kSummaryPieces * kLongestPiece];
    char* end = line;
    *end++ = '|';
    end = put_piece(end, work.id);
    for (const TrafficCounters* window : {&work.last60, &work.last24, &work.last07}) {
      for (const std::int32_t value : window->values) end = put_piece(end, value);
    }
    *end++ = '\n';
    text.append(line, end);
  }
  return text;
}

void add_summary(TradeStore& store, std::string_view text) {
  Pieces pieces(text);
  std::string_view piece;
  // Pieces are counted, not lines: a piece too few or too many shifts everything behind it.
  while (pieces.next(piece)) {  // piece 0
    const std::int32_t found = store.ids.find(next_int(pieces));
    TradeWork& work =
        store.works[found == IdIndex::kNone ? reserved::kUnknown : static_cast<std::size_t>(found)];
    for (TrafficCounters* window : {&work.last60, &work.last24, &work.last07}) {
      for (std::int32_t& value : window->values) value = wrap_add(value, next_int(pieces));
    }
  }
}

bool load_summary(TradeStore& store) {
  if (!store.summary.read(kSummaryFile)) {
    report(event::summary_unavailable);
    return false;
  }
  add_summary(store, store.summary.text());
  return true;
}

bool write_summary(TradeStore& store) {
  if (store_summary(store)) return true;
  report(event::summary_unavailable);
  return false;
}

void check_marker() {
  if (can_be_opened("d/jb")) return;
  report(event::marker_missing);
  report(event::marker_consequence);
}

}  // namespace vantrel
