// The outgoing list d/out.lst: where visitors go in the next minute. The run rewrites it whole, the
// outgoing request script reads it for each click and picks an entry by its weights.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "settings/main_settings.h"
#include "store/trade_record.h"

namespace vantrel {

inline constexpr const char* kOutListFile = "d/out.lst";

// 284 bytes at offset 0. Little-endian; texts are NUL-terminated, zeros behind the terminator.
struct OutListHeader {
  std::int32_t skim_3 = -1;              // 0: skim of the entry at position 3 of the index
  std::int32_t skim_6 = -1;              // 4: skim of the entry at position 6
  std::int32_t numbers[3] = {-1, 0, 0};  // 8: field 1 of lines 1 to 3 of d/set
  std::int32_t always_2 = 2;             // 20
  std::int32_t track = 0;                // 24: from d/nm/track
  char reserved[12] = {};                // 28
  char texts[3][81] = {};                // 40, 121, 202: field 2 of lines 1 to 3 of d/set
  char padding = 0;                      // 283
};
static_assert(sizeof(OutListHeader) == 284);
static_assert(offsetof(OutListHeader, texts) == 40);

enum class ListState : std::int32_t {
  none = 0,
  quota = 1,     // a quota or a guarantee is active
  forced_1 = 2,  // param_892 is 1
  forced_2 = 3,  // param_892 is 2
};

// 216 bytes a listed trade, in ranking order.
struct OutListEntry {
  std::int32_t id = 0;                // 0
  std::int32_t value_288 = 0;         // 4
  char name[50] = {};                 // 8
  char text_80[102] = {};             // 58
  double weight = 0.0;                // 160
  double second_weight = 0.0;         // 168: for trades past the list of weights
  ListState state = ListState::none;  // 176
  std::int32_t skim = 0;              // 180: -1 for none
  char text_848[32] = {};             // 184
};
static_assert(sizeof(OutListEntry) == 216);
static_assert(offsetof(OutListEntry, weight) == 160 && offsetof(OutListEntry, text_848) == 184);

// True while the trade's hourly quota counts: some hours are left, or it holds for ever.
[[nodiscard]] bool quota_in_force(const TradeWork& trade);

// The trade's quota of clicks for a local hour (0-23), 0 when it is not in force.
[[nodiscard]] std::int32_t active_quota(const TradeWork& trade, int hour);

[[nodiscard]] ListState list_state(const TradeWork& trade, int hour);

// Whether an entry with its final weights stands in the list: it must be a trade that plays a part
// in one way or another, and have traffic or be owed some.
struct Listing {
  bool is_trade = false;       // id above 9
  bool has_skim = false;       // lists it without a weight, even in mode 0
  bool scores = false;         // mode other than 0
  bool has_weight = false;     // of the first or the second kind
  bool sends = false;          // rin in 24 hours
  bool has_quota = false;      // in force for this hour
  bool has_guarantee = false;  // clicks left
  bool listed = false;
};
[[nodiscard]] Listing listing_of(const TradeWork& trade, int hour);

// The parts of the header that must be taken before the work array is ranked.
[[nodiscard]] OutListHeader out_list_header(const std::vector<TradeWork>& unranked,
                                            const MainSettings& settings);

// The file's bytes for a ranked work array.
[[nodiscard]] std::string encode_out_list(const OutListHeader& header,
                                          const std::vector<TradeWork>& ranked, int hour);

// What a reader finds in the file's bytes; an incomplete last entry is left out. False when the
// header is incomplete.
[[nodiscard]] bool decode_out_list(std::string_view bytes, OutListHeader& header,
                                   std::vector<OutListEntry>& entries);

}  // namespace vantrel
