// A complete site in a directory, for the demo, the tests and the benchmarks: every file a run
// reads, with made-up trades and traffic. The same sizes and seed give the same bytes.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>

namespace vantrel {

struct SampleSize {
  int trades = 25;           // beside the 11 reserved entries
  int hits_per_minute = 60;  // records a minute and direction
  int log_minutes = 60;      // minutes of hit logs before now
  int ip_ranges = 4000;      // address ranges, some with gaps between them
  int history_days = 30;     // daily records of every trade
  int proxies = 40;
  int agent_fragments = 24;
  std::uint32_t seed = 1;
  bool day_curve = false;  // fewer records at night, more in the evening; the same a day
};

// Lays the site out under directory, which is made; files that are there are replaced. now: the
// moment of the run that is to come; the last run was a minute before it. Throws on failure.
void write_sample_site(const std::filesystem::path& directory, const SampleSize& size,
                       std::time_t now);

// The archive that the last run of 11:59 or 23:59 before now would have left, of the site as it is;
// none where the system has no tar.
void write_sample_backup(const std::filesystem::path& directory, std::time_t now);

// Only the hit logs of one minute, both directions, for runs one behind the other.
void write_sample_minute(const std::filesystem::path& directory, const SampleSize& size,
                         std::time_t minute);

}  // namespace vantrel
