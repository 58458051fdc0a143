#include "store/summary.h"

#include <string>

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

constexpr std::size_t kIdPiece = 1;  // piece 0 is empty, or the line feed of the line before
constexpr std::size_t kFirstValue = 2;
constexpr std::size_t kPiecesPerLine = kFirstValue + 3 * kCounterCount;

TrafficCounters& window_of(TradeWork& work, std::size_t value) {
  if (value < kCounterCount) return work.last60;
  return value < 2 * kCounterCount ? work.last24 : work.last07;
}

void append_window(std::string& text, const TrafficCounters& window) {
  for (const std::int32_t value : window.values) {
    append_number(text, value);
    text += '|';
  }
}

}  // namespace

bool load_summary(TradeStore& store) {
  FileBuffer file;
  if (!file.read(kSummaryFile)) {
    report(event::summary_unavailable);
    return false;
  }
  Pieces pieces(file.text());
  std::string_view piece;
  // Pieces are counted, not lines: a piece too few or too many shifts everything behind it.
  for (std::size_t k = 0, position = 0; pieces.next(piece); k = (k + 1) % kPiecesPerLine) {
    if (k == kIdPiece) {
      const std::int32_t found = store.ids.find(to_int(piece));
      position = found == IdIndex::kNone ? reserved::kUnknown : static_cast<std::size_t>(found);
    } else if (k >= kFirstValue) {
      const std::size_t value = k - kFirstValue;
      std::int32_t& counter = window_of(store.works[position], value).values[value % kCounterCount];
      counter = wrap_add(counter, to_int(piece));
    }
  }
  return true;
}

bool write_summary(const TradeStore& store) {
  std::string text;
  text.reserve(store.works.size() * kPiecesPerLine * 4);
  for (const TradeWork& work : store.works) {
    text += '|';
    append_number(text, work.id);
    text += '|';
    append_window(text, work.last60);
    append_window(text, work.last24);
    append_window(text, work.last07);
    text += '\n';
  }
  if (replace_file(kSummaryFile, text)) return true;
  report(event::summary_unavailable);
  return false;
}

void check_marker() {
  if (can_be_opened("d/jb")) return;
  report(event::marker_missing);
  report(event::marker_consequence);
}

}  // namespace vantrel
