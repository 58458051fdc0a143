// The hit logs of one direction; built once for each. VANTREL_FUZZ_OUT is 1 for clicks.
#include <cstdlib>

#include "base/lower_block.h"
#include "support.h"
#include "traffic/hit_processing.h"

namespace vantrel::fuzz {
namespace {

constexpr bool kOut = VANTREL_FUZZ_OUT != 0;
constexpr std::size_t kLength = kOut ? kOutFields : kInFields;
constexpr std::int32_t kCefLimit = 3;

struct Tables {
  std::vector<TradeRecord> trades = store_of_site().trades;
  TrafficSettings traffic;
  RatingTables ratings;
  bool loaded = load_traffic_settings(traffic) && load_rating_tables(ratings);
};

// Where a hit of that name is counted, by searching from the front.
std::size_t position_of(const TradeStore& store, const std::string& name) {
  for (std::size_t i = 0; i < store.works.size(); ++i) {
    if (i != 6 && name == store.works[i].name) return i;
  }
  return name == "google.com" || name == "e6" ? 8 : 6;
}

// The vector registers and the plain loop agree on every byte.
void check_blocks(std::string text) {
  text.resize((text.size() / kBlockBytes + 1) * kBlockBytes);
  const std::string lower = lowered(text);
  std::string again = text;
  for (std::size_t i = 0; i < text.size(); i += kBlockBytes) {
    require(lower_block(&text[i]) == lower_block_bytewise(&again[i]), "the bars of a block");
  }
  require(text == lower && again == lower, "lower case");
}

}  // namespace

void try_input(const std::string& input) {
  static const Tables tables;
  check_blocks(input);
  // The first piece is never looked at. A long one has the reader's first part end within the
  // input.
  const bool in_parts = input.size() % 2 == 1 && input.size() < LogReader::kChunk;
  put("l/in/log", std::string(in_parts ? LogReader::kChunk - input.size() / 2 : 0, 'x') + input);
  TradeStore store;
  store.trades = tables.trades;
  require(build_work_array(store), "the trades");
  HitProcessor processor(store, tables.traffic, tables.ratings, kCefLimit);
  if (kOut) processor.process_out_file("l/in/log");
  if (!kOut) processor.process_in_file("l/in/log");

  const auto pieces = getline_pieces(lowered(input));
  std::int32_t hits[13] = {};
  TrafficCounters sums;  // what the counts of all entries must add up to
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const std::size_t field = i % kLength;
    const std::string& piece = pieces[i];
    if (field == 2) ++hits[position_of(store, piece)];
    if (field == 3) ++sums[slot::out];
    if (field == 3 && piece == "1") ++sums[slot::ctg];
    if (field == 4 && piece == "0") ++sums[slot::uin];
    if (field == 7 && plain_int(piece) <= kCefLimit) ++sums[slot::cef];
    if (field == 8 && !piece.empty()) ++sums[slot::rec];
    if (field == 8 && !piece.empty() && !kOut) ++hits[reserved::kMarked];
  }
  for (std::size_t i = 0; i < store.works.size(); ++i) {
    const TradeWork& work = store.works[i];
    require(work.run[kOut ? slot::clk : slot::rin] == hits[i], "a hit counts where its name says");
    require(work.hits_left >= 0 && work.hits_left == store.trades[i].hits_left, "guarantees");
    subtract(sums, work.run);
  }
  require(kOut || sums[slot::uin] == 0, "unique hits");
  require(!kOut || (sums[slot::out] == 0 && sums[slot::ctg] == 0), "clicks");
  require(!kOut || (sums[slot::cef] == 0 && sums[slot::rec] == 0), "kinds of clicks");
}

}  // namespace vantrel::fuzz
