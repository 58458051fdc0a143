// The sites that are measured, and when.
#pragma once

#include <ctime>
#include <stdexcept>
#include <string>

#include "sample_site.h"

namespace bench {

// 2026-11-16 12:07:10 UTC. In minute 7 nothing is due that is not due every minute, and history is
// read.
inline constexpr std::time_t kNow = 1794830830;

// small, typical, site, big or catchup; throws for other names.
inline vantrel::SampleSize preset(const std::string& name) {
  vantrel::SampleSize size;
  size.log_minutes = 1;
  if (name == "small") {
    size.trades = 50;
    size.hits_per_minute = 200;
    size.ip_ranges = 5000;
    size.history_days = 30;
    return size;
  }
  size.ip_ranges = 200000;  // the addresses of the world, the same for every site
  size.history_days = 365;
  if (name == "typical") {
    size.trades = 50;
    size.hits_per_minute = 200;
    size.proxies = 200;
    size.agent_fragments = 60;
    return size;
  }
  size.trades = 500;
  size.hits_per_minute = 10000;
  size.proxies = 5000;
  size.agent_fragments = 300;
  if (name == "site") return size;
  if (name == "big") {
    size.trades = 5000;
    size.hits_per_minute = 100000;
    return size;
  }
  if (name == "catchup") {
    size.log_minutes = 60;
    return size;
  }
  throw std::invalid_argument("no preset " + name);
}

}  // namespace bench
