// A complete, small, valid site in a temporary directory, for whole runs under a frozen clock. A
// test changes one thing, runs, and looks at the files that are left.
//
// Eleven reserved entries "entry0" to "entry10" with ids 0 to 10, then four trades whose ids are
// not their positions. Everything else is neutral: no hits, every window 0, rules that add nothing,
// no alert that could fire. The companion scripts, tar and the mail program are stand-ins.
#pragma once

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "out/out_list.h"
#include "store/trade_record.h"

namespace vantrel {

namespace fs = std::filesystem;

// Ids of the trades, at the positions 11 to 14.
inline constexpr int kAlpha = 57;  // alpha
inline constexpr int kBeta = 12;
inline constexpr int kGamma = 101;
inline constexpr int kDelta = 33;

struct Windows {
  TrafficCounters last60;
  TrafficCounters last24;
  TrafficCounters last07;
};

[[nodiscard]] TrafficCounters counters(
    std::initializer_list<std::pair<slot::Counter, std::int32_t>> values);

// "2026-11-16 12:50:10" or without the seconds, in the zone that is set.
[[nodiscard]] std::time_t moment(const std::string& local);

class SiteFixture : public ::testing::Test {
 protected:
  SiteFixture();
  ~SiteFixture() override;

  // The whole site anew, in the zone UTC; done once before every test.
  void lay_out();
  static void set_zone(const char* posix_zone);

  // Paths are relative to the site, which is the working directory.
  static void sh(const std::string& command);
  static void put(const std::string& path, std::string_view text);
  [[nodiscard]] static std::string get(const std::string& path);  // "" when there is no such file
  // direction is "in" or "out".
  [[nodiscard]] static std::string log_path(const std::string& direction, std::time_t minute);

  static void change_trade(int id, const std::function<void(TradeRecord&)>& change);
  [[nodiscard]] static TradeRecord trade(int id);  // as the index has it
  static void set_windows(int id, const Windows& windows);
  [[nodiscard]] static Windows windows(int id);
  static void set_slot(int id, int minute_of_day, const TrafficCounters& counts);
  [[nodiscard]] static TrafficCounters slot_of(int id, int minute_of_day);

  // Fills the run history with that many runs, one a minute, the last one some minutes before now.
  static void put_run_history(std::time_t now, int runs, int minutes_ago = 1);

  // With the rights of an ordinary user until the site is laid out anew.
  void drop_privileges();

  // One run. The event log, what the programs left and what was printed are of this run only.
  void run_at(std::time_t now);
  void run_at(const std::string& local) { run_at(moment(local)); }

  [[nodiscard]] static std::string events();  // "code subject level", one a line
  [[nodiscard]] static std::string started() { return get("started"); }  // "sync hta top "
  [[nodiscard]] static std::vector<OutListEntry> list(OutListHeader* header = nullptr);

  std::string printed_;

 private:
  static void restore_privileges();

  fs::path directory_;
};

}  // namespace vantrel
