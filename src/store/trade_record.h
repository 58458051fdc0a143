// One trade: its record on disk, its counters, and the entry the run works on.
//
// d/t/index is an array of TradeRecord without a header, written by the administration side. The
// run rewrites it only when a countdown of a record moved. All integers are little-endian; a text
// field is a NUL-terminated string in an area of fixed width, cut at the width without a NUL.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/machine.h"

namespace vantrel {

inline constexpr std::size_t kHoursPerDay = 24;

// 996 bytes. Fields the run only carries, or whose meaning is the administration side's, are named
// by their byte offset.
struct TradeRecord {
  std::int32_t id = -1;                    // 0: names d/t/<id> and the line in d/t/sum
  char name[76] = {};                      // 4: hit logs name the trade by this text
  char text_80[120] = {};                  // 80: goes into d/out.lst
  char text_200[15] = {};                  // 200
  char text_215[50] = {};                  // 215
  char text_265[23] = {};                  // 265
  std::int32_t value_288 = 0;              // 288: goes into d/out.lst
  char text_292[15] = {};                  // 292
  char text_307[513] = {};                 // 307
  std::int32_t param_820 = 0;              // 820
  std::int32_t param_824 = 0;              // 824
  std::int32_t param_828 = 1;              // 828: boost metric, 1 to 5
  std::int32_t param_832 = -1;             // 832: boost threshold on that metric
  std::int32_t param_836 = -1;             // 836: percentage of the score below the threshold
  std::int32_t param_840 = -1;             // 840: percentage of the score from the threshold on
  std::int32_t param_844 = -1;             // 844: skim, -1 for none
  char text_848[32] = {};                  // 848: goes into d/out.lst
  std::int32_t flag_880 = 1;               // 880: scoring mode; 0 also keeps the trade from weights
  std::int32_t hits_left = 0;              // 884: guaranteed clicks still to deliver
  std::int32_t param_888 = 0;              // 888: 1 lets a quota override the incoming minimum
  std::int32_t param_892 = 0;              // 892: forced listing, 0 none, 1 and 2 listed states
  std::int32_t hours_left = 0;             // 896: hours the quota is still in force, -1 for ever
  std::int32_t hourly[kHoursPerDay] = {};  // 900: quota of clicks by local hour
};
static_assert(sizeof(TradeRecord) == 996);
static_assert(offsetof(TradeRecord, text_200) == 200 && offsetof(TradeRecord, text_265) == 265);
static_assert(offsetof(TradeRecord, value_288) == 288 && offsetof(TradeRecord, text_307) == 307);
static_assert(offsetof(TradeRecord, param_820) == 820 && offsetof(TradeRecord, text_848) == 848);
static_assert(offsetof(TradeRecord, flag_880) == 880 && offsetof(TradeRecord, hourly) == 900);

inline constexpr std::size_t kCounterCount = 14;

// The counters of a window, in the order they have in every file.
namespace slot {
enum Counter : std::size_t {
  rin,        // raw incoming hits
  uin,        // unique incoming hits
  out,        // clicks sent to the trade
  clk,        // clicks of visitors the trade sent
  ctt,        // of these, clicks that went to trades
  ctg,        // of these, clicks that went to the gallery entry (id 1)
  cef,        // of these, clicks within cef_limit
  rec,        // clicks recorded for the trade
  proxy_in,   // incoming hits through proxies
  proxy_out,  // clicks sent through proxies
  proxy_clk,  // clicks through proxies
  rti,        // quality of the incoming hits
  rto,        // quality of the clicks sent to the trade
  rtc,        // quality of the clicks of its visitors
};
}  // namespace slot

// 56 bytes; also one minute slot of a statistics file d/t/<id>.
struct TrafficCounters {
  std::array<std::int32_t, kCounterCount> values{};

  [[nodiscard]] std::int32_t& operator[](slot::Counter counter) { return values[counter]; }
  [[nodiscard]] std::int32_t operator[](slot::Counter counter) const { return values[counter]; }
};
static_assert(sizeof(TrafficCounters) == 56);

// Counter by counter, wrapping.
void add(TrafficCounters& to, const TrafficCounters& counters);
void subtract(TrafficCounters& from, const TrafficCounters& counters);

// A trade during the run. Of a record only the fields of the base are ever written back, and those
// from the trade array, not from here.
struct TradeWork : TradeRecord {
  double score = 0.0;          // rank; after planning the weight in d/out.lst
  double plan_value = 0.0;     // second weight, for trades past the list of weights
  std::int32_t plan_flag = 1;  // sort key: by score
  TrafficCounters run;         // counted in this run
  TrafficCounters last60;      // the last 60 minutes
  TrafficCounters last24;      // the last 24 hours
  TrafficCounters last07;      // the last 7 days
};

void make_default_trade(TradeRecord& trade);
void make_default_work(TradeWork& work);
// A default entry with the fields of the record; texts are copied up to their terminator.
void make_work(TradeWork& work, const TradeRecord& trade);

// Positions of the first entries of the index, which collect what no named trade is credited with.
namespace reserved {
inline constexpr std::size_t kMarked = 4;      // incoming hits with a marker
inline constexpr std::size_t kUnknown = 6;     // names and ids that match no trade
inline constexpr std::size_t kListed = 8;      // names listed in d/se
inline constexpr std::size_t kLastEntry = 10;  // trades stand behind it
}  // namespace reserved

}  // namespace vantrel
