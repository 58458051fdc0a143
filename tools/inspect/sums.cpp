#include "sums.h"

#include <cmath>

#include "counters.h"

namespace vantrel::inspect {
namespace {

// With one decimal.
Json quotient(std::int64_t a, std::int64_t b, double factor) {
  if (b <= 0) return {};
  return std::round(static_cast<double>(a) / static_cast<double>(b) * factor * 10) / 10;
}

}  // namespace

Sums& Sums::operator+=(const Sums& more) {
  for (std::size_t i = 0; i < kCounterCount; ++i) values[i] += more.values[i];
  return *this;
}

Sums& Sums::operator+=(const TrafficCounters& counters) {
  for (std::size_t i = 0; i < kCounterCount; ++i) values[i] += counters.values[i];
  return *this;
}

Json counters_json(const Sums& sums) {
  Json json;
  for (std::size_t i = 0; i < kCounterCount; ++i) json[kCounters[i].name] = sums.values[i];
  return json;
}

Json percentage(std::int64_t part, std::int64_t whole) { return quotient(part, whole, 100); }
Json average(std::int64_t points, std::int64_t count) { return quotient(points, count, 1); }

Json traffic_json(const Sums& sums) {
  Json json = counters_json(sums);
  json["out_per_in"] = percentage(sums[slot::out], sums[slot::rin]);
  json["proxy_in_share"] = percentage(sums[slot::proxy_in], sums[slot::rin]);
  json["proxy_out_share"] = percentage(sums[slot::proxy_out], sums[slot::out]);
  json["quality_in"] = average(sums[slot::rti], sums[slot::rin]);
  json["quality_out"] = average(sums[slot::rto], sums[slot::out]);
  json["quality_back"] = average(sums[slot::rtc], sums[slot::clk]);
  return json;
}

}  // namespace vantrel::inspect
