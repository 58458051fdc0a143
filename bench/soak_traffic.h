// Random traffic of one minute, and what it must count.
#pragma once

#include <random>
#include <string>

#include "soak_site.h"

namespace soak {

struct Minute {
  std::string in_log;
  std::string out_log;
  EntryCounts counts{};  // kept while the records are made, not by reading them
};

[[nodiscard]] Minute make_minute(std::mt19937& random);

}  // namespace soak
