// The small site the soak runs on, and what its settings mean for a hit.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace soak {

inline constexpr std::size_t kReserved = 11;  // positions 0 to 10 of the trade index
inline constexpr std::size_t kEntries = kReserved + 8;
inline constexpr std::size_t kUnknown = 6;  // where names and ids go that no trade has
inline constexpr std::size_t kListed = 8;   // where names of d/se go
inline constexpr int kCefLimit = 5;
inline constexpr std::size_t kMinutesPerDay = 1440;
inline constexpr std::size_t kBackupsKept = 90;

using Counts = std::array<std::int32_t, 14>;
using EntryCounts = std::array<Counts, kEntries>;  // by position

[[nodiscard]] std::string name_of(std::size_t position);
[[nodiscard]] std::int32_t id_of(std::size_t position);

// A traffic rule: 0 adds, 1 subtracts, 2 blocks. The values are multiples of a quarter, so that
// sums of them are exact in any order, and small enough that no score is negative.
struct Rule {
  int operation = 0;
  float value = 0.0f;
};
[[nodiscard]] Rule rule(int number);

// Fills the working directory; history[position] are the daily records to begin with, oldest first.
void lay_out_site(const std::vector<std::vector<Counts>>& history, std::time_t start);

// One line of a trade's history file.
[[nodiscard]] std::string history_line(std::time_t day, const Counts& counts);

// Files in the working directory; both throw when it cannot be done. A missing file reads as empty.
void write_file(const std::string& path, std::string_view text);
[[nodiscard]] std::string read_file(const std::string& path);
void set_file_time(const std::string& path, std::time_t moment);

}  // namespace soak
