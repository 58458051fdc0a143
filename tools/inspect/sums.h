// Sums of counters over many entries. A site's week can be more than 32 bits hold, so they do not
// wrap.
#pragma once

#include <array>
#include <cstdint>

#include "screen.h"
#include "store/trade_record.h"

namespace vantrel::inspect {

struct Sums {
  std::array<std::int64_t, kCounterCount> values{};

  [[nodiscard]] std::int64_t operator[](slot::Counter counter) const { return values[counter]; }
  Sums& operator+=(const Sums& more);
  Sums& operator+=(const TrafficCounters& counters);
};

// The counters by name.
[[nodiscard]] Json counters_json(const Sums& sums);

// The same, then what follows from them: "out_per_in" and "proxy_in_share", per cent of the
// incoming hits; "proxy_out_share", per cent of the clicks sent out; "quality_in", "quality_out"
// and "quality_back", the points the traffic rules gave an incoming hit, a click sent out and a
// click of a trade's visitor on average (10 for an ordinary one). Null where there was nothing to
// divide by.
[[nodiscard]] Json traffic_json(const Sums& sums);

// part as per cent of whole with one decimal, null when whole is not positive.
[[nodiscard]] Json percentage(std::int64_t part, std::int64_t whole);
// Points of one of them, the same way.
[[nodiscard]] Json average(std::int64_t points, std::int64_t count);

}  // namespace vantrel::inspect
