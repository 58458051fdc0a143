#include "traffic/hit_processing.h"

#include "base/numbers.h"

namespace vantrel {
namespace {

// Numbers of the traffic rules, where two directions have a group of the same shape its first.
namespace rule {
constexpr std::size_t kInCountry = 0;  // group 1; +1 group 2 or unknown; +2 group 3
constexpr std::size_t kInAgent = 3;    // group 1; +1 neither; +2 group 3
constexpr std::size_t kInRequest = 6;  // group 1; +1 group 3
constexpr std::size_t kInUnique = 8;
constexpr std::size_t kInProxy = 10;
constexpr std::size_t kInNoProxy = 11;
constexpr std::size_t kOutCountry = 12;
constexpr std::size_t kOutAgent = 15;
constexpr std::size_t kOutRequest = 18;
constexpr std::size_t kOutFlag = 20;
constexpr std::size_t kOutProxy = 22;
constexpr std::size_t kOutNoProxy = 23;
constexpr std::size_t kOutCookie = 24;
constexpr std::size_t kOutNoCookie = 25;
constexpr std::size_t kOutTag = 26;
constexpr std::size_t kOutNoTag = 27;
constexpr std::size_t kOutTagGroup1 = 28;
constexpr std::size_t kOutTagGroup3 = 29;
constexpr std::size_t kOutTagStar = 30;
constexpr std::size_t kOutToGallery = 31;
constexpr std::size_t kOutToTrade = 32;
constexpr std::size_t kOutRecorded = 33;
constexpr std::size_t kOutOverLimit = 34;
constexpr std::size_t kOutNoReferrer = 35;
}  // namespace rule

void count(std::int32_t& counter) { counter = wrap_add(counter, 1); }

// The first of equal names counts.
TextIndex index_names(const TradeStore& store) {
  TextIndex names(store.works.size());
  for (std::size_t i = 0; i < store.works.size(); ++i) {
    names.add(field_text(store.works[i].name), static_cast<std::int32_t>(i));
  }
  return names;
}

std::vector<std::uint8_t> group_countries(const RatingTables& ratings) {
  std::vector<std::uint8_t> groups;
  for (const std::string_view country : ratings.ip.countries()) {
    std::uint8_t group = 0;
    const RatingGroups rated = ratings.geo.groups_of(country);
    if (rated.has(1)) {
      group = 1;
    } else if (rated.has(3)) {
      group = 3;
    } else if (rated.has(2) || country == IpTable::kOutOfRange) {
      group = 2;
    }
    groups.push_back(group);
  }
  return groups;
}

}  // namespace

HitProcessor::HitProcessor(TradeStore& store, const TrafficSettings& traffic,
                           const RatingTables& ratings, std::int32_t cef_limit)
    : store_(store),
      traffic_(traffic),
      ratings_(ratings),
      cef_limit_(cef_limit),
      rule_effects_(effects_of(traffic)),
      names_(index_names(store)),
      country_group_(group_countries(ratings)),
      agents_(ratings.agent) {}

// What is done for every hit is inlined into the loop over a log: the guards of a stack frame are
// then set up and looked at once a log.
template <std::size_t Length>
[[gnu::always_inline]] inline void HitProcessor::announce(Record<Length>& record) const {
  if (!record.has(1)) return;
  record.address = ip_to_number(record[1]);
  ratings_.ip.prefetch(record.address);
}

// A record is credited field by field, as far as the file has it: what was reached of a record cut
// short counts, only its score is lost.
[[gnu::always_inline]] inline void HitProcessor::credit_in(const Record<kInFields>& record) {
  HitScore score(rule_effects_);
  if (record.has(1)) rate_country(score, record.address, rule::kInCountry);
  if (!record.has(2)) return;
  TrafficCounters& trade = run_of(find_by_name(record[2]));
  count(trade[slot::rin]);
  if (record.has(4) && record[4] == "0") {
    count(trade[slot::uin]);
    score.apply_rule(rule::kInUnique);
  }
  if (record.has(5)) rate_agent(score, record[5], rule::kInAgent);
  if (record.has(6)) {
    const bool proxy = is_proxy(record[6], record[1]);
    if (proxy) count(trade[slot::proxy_in]);
    score.apply_rule(proxy ? rule::kInProxy : rule::kInNoProxy);
  }
  if (record.has(7)) rate_request(score, record[7], rule::kInRequest);
  if (record.has(8) && !record[8].empty()) count(run_of(reserved::kMarked)[slot::rin]);
  if (record.complete()) score.add_to(trade[slot::rti]);
}

[[gnu::always_inline]] inline void HitProcessor::credit_out(const Record<kOutFields>& record) {
  HitScore score(rule_effects_);
  if (record.has(1)) rate_country(score, record.address, rule::kOutCountry);
  if (!record.has(2)) return;
  TrafficCounters& source = run_of(find_by_name(record[2]));
  count(source[slot::clk]);
  score.apply_rule(record[2] != "nocookie" ? rule::kOutCookie : rule::kOutNoCookie);
  if (!record.has(3)) return;
  if (record[3] == "1") {
    count(source[slot::ctg]);
    score.apply_rule(rule::kOutToGallery);
  }
  const std::int32_t found = store_.ids.find(to_int(record[3]));
  if (found != IdIndex::kNone) use_up_guarantee(static_cast<std::size_t>(found));
  const std::size_t to =
      found == IdIndex::kNone ? reserved::kUnknown : static_cast<std::size_t>(found);
  TrafficCounters& target = run_of(to);
  if (to > reserved::kLastEntry) {
    count(source[slot::ctt]);
    score.apply_rule(rule::kOutToTrade);
  }
  count(target[slot::out]);
  if (record.has(4)) rate_agent(score, record[4], rule::kOutAgent);
  if (record.has(5)) {
    const bool proxy = is_proxy(record[5], record[1]);
    if (proxy) {
      count(target[slot::proxy_out]);
      count(source[slot::proxy_clk]);
    }
    score.apply_rule(proxy ? rule::kOutProxy : rule::kOutNoProxy);
  }
  if (record.has(6)) rate_tag(score, record[6]);
  if (record.has(7)) {
    if (to_int(record[7]) > cef_limit_) {
      score.apply_rule(rule::kOutOverLimit);
    } else {
      count(source[slot::cef]);
    }
  }
  if (record.has(8) && !record[8].empty()) {
    const std::int32_t id = to_int(record[8]);
    const std::int32_t recorded = store_.ids.find(id);
    count(run_of(recorded == IdIndex::kNone ? reserved::kUnknown
                                            : static_cast<std::size_t>(recorded))[slot::rec]);
    if (id > 10) score.apply_rule(rule::kOutRecorded);
  }
  if (record.has(9) && record[9] == "0") score.apply_rule(rule::kOutFlag);
  if (record.has(10)) rate_request(score, record[10], rule::kOutRequest);
  if (record.has(11) && record[2] == "noref" && !record[11].empty()) {
    score.apply_rule(rule::kOutNoReferrer);
  }
  if (!record.complete()) return;
  score.add_to(target[slot::rto]);
  score.add_to(source[slot::rtc]);
}

void HitProcessor::process_in_file(const std::string& path) {
  read_fields<kInFields>(
      log_, path, [this](auto& record) { announce(record); },
      [this](const auto& record) { credit_in(record); });
}

void HitProcessor::process_out_file(const std::string& path) {
  read_fields<kOutFields>(
      log_, path, [this](auto& record) { announce(record); },
      [this](const auto& record) { credit_out(record); });
}

void HitProcessor::rate_country(HitScore& score, std::uint32_t address,
                                std::size_t first_rule) const {
  const std::uint8_t group = country_group_[ratings_.ip.country_number(address)];
  if (group != 0) score.apply_rule(first_rule + group - 1);
}

void HitProcessor::rate_agent(HitScore& score, std::string_view agent, std::size_t first_rule) {
  if (!score.blocked()) score.apply_rule(first_rule + agents_.offset_of(agent));
}

void HitProcessor::rate_request(HitScore& score, std::string_view request,
                                std::size_t first_rule) const {
  const RatingGroups groups = ratings_.request.groups_of(request);
  if (groups.has(1)) score.apply_rule(first_rule);
  if (groups.has(3)) score.apply_rule(first_rule + 1);
}

void HitProcessor::rate_tag(HitScore& score, std::string_view tag) const {
  score.apply_rule(tag.empty() ? rule::kOutNoTag : rule::kOutTag);
  if (tag.starts_with('*')) {
    score.apply_rule(rule::kOutTagStar);
    tag.remove_prefix(1);
  }
  const RatingGroups groups = ratings_.tags.groups_of(tag);
  if (groups.has(1)) score.apply_rule(rule::kOutTagGroup1);
  if (groups.has(3)) score.apply_rule(rule::kOutTagGroup3);
}

// The entry for the unknown is never found by its own name.
std::size_t HitProcessor::find_by_name(std::string_view name) const {
  const std::int32_t found = names_.find(name);
  const auto position = static_cast<std::size_t>(found);
  if (found != TextIndex::kNone && position != reserved::kUnknown) return position;
  return traffic_.se_list.contains(name) ? reserved::kListed : reserved::kUnknown;
}

bool HitProcessor::is_proxy(std::string_view flag, std::string_view address) const {
  return flag == "1" || traffic_.proxy_list.contains(address);
}

// A trade with a guarantee has one click less to get, in the record that is kept as well.
void HitProcessor::use_up_guarantee(std::size_t position) {
  if (store_.works[position].hits_left <= 0) return;
  --store_.works[position].hits_left;
  --store_.trades[position].hits_left;
  store_.index_dirty = true;
}

}  // namespace vantrel
