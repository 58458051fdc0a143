#include "history/history_file.h"

#include <algorithm>

#include "base/number_pieces.h"

namespace vantrel {
namespace {

constexpr std::uint64_t kPiecesPerRecord = 30;
constexpr std::uint64_t kFirstCounter = 2;  // pieces 0 and 1 are filler and date
constexpr std::uint64_t kRecordsPerWeek = 7;
constexpr std::size_t kChunk = 64 * 1024;

// In blocks whose count fits in a byte: the compiler then counts sixteen bytes at a time.
constexpr std::size_t kCountedAtOnce = 240;
std::uint64_t count_bars(std::string_view text) {
  std::uint64_t bars = 0;
  const char* next = text.data();
  const char* const end = next + text.size();
  for (; static_cast<std::size_t>(end - next) >= kCountedAtOnce; next += kCountedAtOnce) {
    std::uint8_t in_block = 0;
    for (std::size_t i = 0; i < kCountedAtOnce; ++i) {
      in_block = static_cast<std::uint8_t>(in_block + (next[i] == '|' ? 1 : 0));
    }
    bars += in_block;
  }
  return bars + static_cast<std::uint64_t>(std::count(next, end, '|'));
}

// The end of the text from its n-th last bar on; all of it when it holds fewer bars.
std::string_view from_last_bars(std::string_view text, std::uint64_t n) {
  std::size_t begin = text.size();
  for (const std::size_t block : {kCountedAtOnce, std::size_t{32}}) {
    while (begin >= block) {
      const std::uint64_t bars = count_bars(text.substr(begin - block, block));
      if (bars >= n) break;
      n -= bars;
      begin -= block;
    }
  }
  while (n > 0 && begin > 0) {
    if (text[--begin] == '|') --n;
  }
  return text.substr(begin);
}

// Adds up the counters of a text that begins with the first piece of a record.
TrafficCounters sum_records(std::string_view text) {
  TrafficCounters sum;
  Pieces pieces(text);
  for (HistoryRecord record; next_record(pieces, record);) add(sum, record.counters);
  return sum;
}

// How many bars at the end of a file of that many bars belong to its last seven records. A record
// exists once its first counter does; what stands before its first bar is filler.
std::uint64_t bars_of_last_week(std::uint64_t bars, bool ends_with_bar) {
  const std::uint64_t pieces = bars + (ends_with_bar ? 0 : 1);
  const std::uint64_t records = (pieces + kPiecesPerRecord - kFirstCounter - 1) / kPiecesPerRecord;
  return records > kRecordsPerWeek ? bars - (records - kRecordsPerWeek) * kPiecesPerRecord : bars;
}

}  // namespace

bool next_record(Pieces& pieces, HistoryRecord& record) {
  constexpr std::string_view kEmptyPieces = "||||||||||||||";
  if (pieces.rest().empty()) return false;
  static_cast<void>(pieces.next_or_empty());
  record.date = pieces.next_or_empty();
  for (std::int32_t& counter : record.counters.values) counter = next_int(pieces);
  if (pieces.rest().starts_with(kEmptyPieces)) {
    pieces.skip(kEmptyPieces.size());  // all at once: nobody fills them
    return true;
  }
  for (std::uint64_t k = kFirstCounter + kCounterCount; k < kPiecesPerRecord; ++k) {
    static_cast<void>(pieces.next_or_empty());
  }
  return true;
}

std::optional<std::string> trade_history_path(std::string_view name) {
  if (name.find('/') != std::string_view::npos) return std::nullopt;
  return "d/h/" + std::string(name) + ".his";
}

// Only as much of it is ever touched as the longest file needs.
HistoryReader::HistoryReader() : buffer_(std::make_unique_for_overwrite<char[]>(kChunk)) {}

// The file grows for ever, and nothing tells where a record begins but the number of bars before
// it. So the bars are counted to the end chunk by chunk; the records wanted are most often in the
// last chunk still at hand.
std::optional<std::string_view> HistoryReader::last_week(const char* path) {
  const File file = open_to_read(path);
  if (!file.is_open()) return std::nullopt;
  std::string_view chunk;
  std::uint64_t size = 0;
  std::uint64_t bars = 0;
  std::uint64_t bars_in_chunk = 0;
  do {
    const std::ptrdiff_t count = read_at(file, buffer_.get(), kChunk, size);
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    chunk = std::string_view(buffer_.get(), static_cast<std::size_t>(count));
    size += chunk.size();
    bars_in_chunk = count_bars(chunk);
    bars += bars_in_chunk;
  } while (chunk.size() == kChunk);

  const bool ends_with_bar = chunk.empty() || chunk.back() == '|';
  const std::uint64_t wanted = bars_of_last_week(bars, ends_with_bar);
  for (std::size_t length = 2 * kChunk; bars_in_chunk < wanted && chunk.size() < size;
       length *= 2) {
    tail_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(length, size)));
    const std::ptrdiff_t count = read_at(file, tail_.data(), tail_.size(), size - tail_.size());
    if (count < 0) return std::nullopt;
    chunk = tail_;
    bars_in_chunk = count_bars(chunk);
  }
  return from_last_bars(chunk, wanted);
}

std::optional<TrafficCounters> HistoryReader::sum_of_last_week(const char* path) {
  const auto text = last_week(path);
  return text ? std::optional(sum_records(*text)) : std::nullopt;
}

}  // namespace vantrel
