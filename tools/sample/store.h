// The trades of the sample site with their statistics and history, as earlier runs left them.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>

#include "sample/model.h"

namespace vantrel::sample {

// Of the last 24 hours.
struct SiteTotals {
  std::uint64_t incoming = 0;          // all entries
  std::uint64_t busiest_incoming = 0;  // the busiest entry
  std::uint64_t usual_unique = 0;      // a trade in the lower half
};

// Index, summary, statistics files and history. Throws on failure.
SiteTotals write_store(const std::filesystem::path& site, const Model& model, std::time_t now);

// The stamps of the last runs, a minute apart, the last of them a minute before now. Throws on
// failure.
void write_run_history(const std::filesystem::path& site, std::time_t now);

}  // namespace vantrel::sample
