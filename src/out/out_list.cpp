#include "out/out_list.h"

#include <cstring>

#include "base/numbers.h"
#include "base/text.h"

namespace vantrel {
namespace {

constexpr std::int32_t kLastUnlistedId = 9;

OutListEntry make_entry(const TradeWork& trade, int hour) {
  OutListEntry entry;
  entry.id = trade.id;
  entry.value_288 = trade.value_288;
  put_field_text(entry.name, field_text(trade.name));
  put_field_text(entry.text_80, field_text(trade.text_80));
  entry.weight = trade.score;
  entry.second_weight = trade.plan_value;
  entry.state = list_state(trade, hour);
  entry.skim = trade.param_844;
  put_field_text(entry.text_848, field_text(trade.text_848));
  return entry;
}

template <typename Block>
void append_block(std::string& bytes, const Block& block) {
  bytes.append(reinterpret_cast<const char*>(&block), sizeof block);
}

}  // namespace

bool quota_in_force(const TradeWork& trade) {
  return trade.hours_left > 0 || trade.hours_left == -1;
}

std::int32_t active_quota(const TradeWork& trade, int hour) {
  return quota_in_force(trade) ? trade.hourly[hour] : 0;
}

ListState list_state(const TradeWork& trade, int hour) {
  switch (trade.param_892) {
    case 0: {
      const bool owed = active_quota(trade, hour) > trade.last60[slot::out] || trade.hits_left > 0;
      return owed ? ListState::quota : ListState::none;
    }
    case 1:
      return ListState::forced_1;
    case 2:
      return ListState::forced_2;
    default:
      return ListState::none;
  }
}

Listing listing_of(const TradeWork& trade, int hour) {
  Listing listing;
  listing.is_trade = trade.id > kLastUnlistedId;
  listing.has_skim = trade.param_844 != -1;
  listing.scores = trade.flag_880 != 0;
  listing.has_weight = trade.score != 0.0 || trade.plan_value != 0.0;
  listing.sends = trade.last24[slot::rin] > 0;
  listing.has_quota = active_quota(trade, hour) > 0;
  listing.has_guarantee = trade.hits_left > 0;
  listing.listed = listing.is_trade &&
                   (listing.has_skim || (listing.scores && listing.has_weight)) &&
                   (listing.sends || listing.has_quota || listing.has_guarantee);
  return listing;
}

OutListHeader out_list_header(const std::vector<TradeWork>& unranked,
                              const MainSettings& settings) {
  OutListHeader header;
  header.skim_3 = unranked[3].param_844;
  header.skim_6 = unranked[6].param_844;
  for (std::size_t i = 0; i < 3; ++i) {
    header.numbers[i] = to_int(settings_field(settings.lines[i], 1));
    put_field_text(header.texts[i], settings_field(settings.lines[i], 2));
  }
  return header;
}

std::string encode_out_list(const OutListHeader& header, const std::vector<TradeWork>& ranked,
                            int hour) {
  std::string bytes;
  bytes.reserve(sizeof header + ranked.size() * sizeof(OutListEntry));
  append_block(bytes, header);
  for (const TradeWork& trade : ranked) {
    if (listing_of(trade, hour).listed) append_block(bytes, make_entry(trade, hour));
  }
  return bytes;
}

bool decode_out_list(std::string_view bytes, OutListHeader& header,
                     std::vector<OutListEntry>& entries) {
  if (bytes.size() < sizeof header) return false;
  std::memcpy(&header, bytes.data(), sizeof header);
  bytes.remove_prefix(sizeof header);
  entries.resize(bytes.size() / sizeof(OutListEntry));
  if (!entries.empty()) {
    std::memcpy(entries.data(), bytes.data(), entries.size() * sizeof(OutListEntry));
  }
  return true;
}

}  // namespace vantrel
