// Turns the records of the hit logs into counts and quality scores of trades.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/first_index.h"
#include "settings/rating_tables.h"
#include "settings/traffic_settings.h"
#include "store/trade_index.h"
#include "traffic/agent_rating.h"
#include "traffic/hit_logs.h"
#include "traffic/hit_score.h"

namespace vantrel {

inline constexpr std::size_t kInFields = 12;
inline constexpr std::size_t kOutFields = 15;

// Credits hits to the run counters of the store's work array. A hit whose trade is not known is
// never dropped: it goes to the reserved entry for names of d/se or to the one for the unknown.
class HitProcessor {
 public:
  // All three must outlive the processor. cef_limit is the highest number in field 7 of a click
  // that still counts in cef.
  HitProcessor(TradeStore& store, const TrafficSettings& traffic, const RatingTables& ratings,
               std::int32_t cef_limit);

  // The logs of one minute, incoming before outgoing.
  void process_in_file(const std::string& path);
  void process_out_file(const std::string& path);

 private:
  // Turns the record's address into a number and has its country fetched.
  template <std::size_t Length>
  void announce(Record<Length>& record) const;
  void credit_in(const Record<kInFields>& record);
  void credit_out(const Record<kOutFields>& record);

  // A group of rules that stand one behind the other for the two directions.
  void rate_country(HitScore& score, std::uint32_t address, std::size_t first_rule) const;
  void rate_agent(HitScore& score, std::string_view agent, std::size_t first_rule);
  void rate_request(HitScore& score, std::string_view request, std::size_t first_rule) const;
  void rate_tag(HitScore& score, std::string_view tag) const;

  [[nodiscard]] std::size_t find_by_name(std::string_view name) const;
  [[nodiscard]] bool is_proxy(std::string_view flag, std::string_view address) const;
  void use_up_guarantee(std::size_t position);
  TrafficCounters& run_of(std::size_t position) { return store_.works[position].run; }

  TradeStore& store_;
  const TrafficSettings& traffic_;
  const RatingTables& ratings_;
  std::int32_t cef_limit_;
  RuleEffects rule_effects_;
  TextIndex names_;                          // names of trades to positions
  std::vector<std::uint8_t> country_group_;  // by number in the address table, 0 for none
  AgentRating agents_;
  LogReader log_;
};

}  // namespace vantrel
