// Hits, windows, minute slots, catching up, and the nights on which the clock jumps.
#include <map>
#include <random>
#include <set>

#include "site_fixture.h"
#include "traffic/hit_logs.h"

namespace vantrel {
namespace {

using enum slot::Counter;

class TrafficTest : public SiteFixture {
 protected:
  // The counts that one run at 12:50 makes of the records of 12:49 for a trade.
  TrafficCounters counted(const char* direction, const std::string& records, int id) {
    fs::remove("l/sys/cron.run");
    fs::remove("l/sys/cron.last");
    sh("rm -f l/in/* l/out/*");
    put(log_path(direction, moment("2026-11-16 12:49")), records);
    run_at("2026-11-16 12:50:10");
    return slot_of(id, 769);
  }
};

// Every rule adds a power of two of its own, so that a score tells which rules were met.
TEST_F(TrafficTest, EveryRuleIsAppliedWhereItBelongs) {
  std::string text;
  for (int rule = 0; rule < 36; ++rule) {
    text += "\n|7|0|" + std::to_string(1 << (rule < 12 ? rule : rule - 12)) + "|7|";
  }
  put("d/traffic.set", text.substr(1));
  // The start value 10 is made of the powers of two of no rule: told apart by subtraction.
  const auto rules_of = [](int score, int first) {
    std::set<int> rules;
    for (int bit = 0; bit < 24; ++bit) {
      if (((score - 10) >> bit & 1) != 0) rules.insert(first + bit);
    }
    return rules;
  };
  const struct {
    const char* direction;
    const char* record;  // from the address on
    std::set<int> rules;
  } cases[] = {
      {"in", "1.2.3.4|alpha|x|1|a GOOD bad one|0|/good|||||", {0, 3, 6, 11}},
      {"in", "4.0.0.1|ALPHA|x|0|neutral|1|/bad|||||", {1, 4, 7, 8, 10}},
      {"in", "2.0.0.1|alpha|x|00|bad|2|/both|||||", {2, 5, 6, 7, 11}},
      {"in", "3.0.0.1|alpha|x||moz|0|/neutral|||||", {1, 4, 11}},
      {"in", "5.0.0.1|alpha|x||moz|0|/|||||", {4, 11}},
      {"in", "5.0.0.1|alpha|x||gooood|0|/|||||", {4, 11}},  // every pair of "good"
      {"in", "9.9.9.9|alpha|x||moz|0|/|||||", {1, 4, 10}},
      {"out", "1.0.0.1|alpha|57|good|0|gold|5|10|1|/good|x||||", {12, 15, 18, 23, 24, 26, 28, 32}},
      {"out", "4.0.0.1|alpha|57|moz|1||6|11|0|/bad|||||", {13, 16, 19, 20, 22, 24, 27, 32, 33, 34}},
      {"out",
       "2.0.0.1|alpha|57|bad|0|*Alloy|-1||1|/both|||||",
       {14, 17, 18, 19, 23, 24, 26, 28, 29, 30, 32}},
      {"out", "5.0.0.1|alpha|57|moz|x|*|5|x|1|/|||||", {16, 23, 24, 26, 30, 32}},
      {"out", "5.0.0.1|alpha|57|moz|x|lead|5|9|1|/|x||||", {16, 23, 24, 26, 29, 32}},
      {"out", "9.9.9.9|noref|57|moz|x|tin|5||1|/|x||||", {13, 16, 22, 24, 26, 32, 35}},
      {"out", "5.0.0.1|noref|57|moz|0||5||1|/|||||", {16, 23, 24, 27, 32}},
      {"out", "5.0.0.1|NoCookie|57|moz|0||5||1|/|x||||", {16, 23, 25, 27, 32}},
  };
  for (const auto& c : cases) {
    const bool in = std::string(c.direction) == "in";
    const TrafficCounters counts = counted(c.direction, std::string("|") + c.record + "\n", kAlpha);
    EXPECT_EQ(rules_of(counts[in ? rti : rto], in ? 0 : 12), c.rules) << c.record;
  }
  // A click on the entry with id 1, which no trade's target rule meets.
  const TrafficCounters gallery = counted("out", "|5.0.0.1|x|1|moz|0||5||1|/|||||\n", 1);
  EXPECT_EQ(rules_of(gallery[rto], 12), (std::set<int>{16, 23, 24, 27, 31}));
}

TEST_F(TrafficTest, RulesSubtractAndBlockAndTheSumIsTruncatedNotTheScore) {
  const std::string hit = "|5.0.0.1|alpha|x|0|moz|0|/|||||\n";
  const std::string proxy = "|5.0.0.1|alpha|x|1|moz|1|/|||||\n";
  // clang-format off
  const struct {
    std::string rule8, rule10, records;
    int quality;
  } cases[] = {
      {"|0|5|", "|3|9|", hit, 15}, {"|1|7.5|", "|0|1|", hit + hit, 4},
      {"|1|7.5|", "|2|0|", hit + proxy + hit, 4}, {"|1|13.5|", "|0|0|", hit, -3},
      {"|1|13.5|", "|0|0|", proxy + hit, 6}, {"|-1|5|", "|0|0|", hit, 10},
      {"|2|0|", "|0|0|", hit + "|5.0.0.1|alpha|x|1|moz|0|/|||", 0},
      {"|0|0.1x|", "|0|0|", hit + hit, 20}};
  // clang-format on
  for (const auto& c : cases) {
    std::string text;
    for (int i = 0; i < 11; ++i) {
      text += "|0" + (i == 8 ? c.rule8 : i == 10 ? c.rule10 : "|3|1|") + "0|\n";
    }
    put("d/traffic.set", text);  // rules past the end of the file have no effect
    EXPECT_EQ(counted("in", c.records, kAlpha)[rti], c.quality) << c.rule8 << c.rule10;
  }
}

// Cut behind its n-th field a record counts what was reached, and has no score.
TEST_F(TrafficTest, ARecordCutShortCountsAsFarAsItGoesWhereverItStands) {
  const std::string fields[] = {"",   "5.0.0.1", "AlphA", "57", "moz", "1", "", "5",
                                "57", "0",       "/",     "",   "",    "",  ""};
  const std::pair<slot::Counter, int> due[] = {{clk, 2},       {out, 3},       {ctt, 3},
                                               {proxy_out, 5}, {proxy_clk, 5}, {cef, 7},
                                               {rec, 8},       {rto, 14},      {rtc, 14}};
  // A log is read in parts: the first piece may be longer than one, and a part ends anywhere.
  constexpr std::size_t kPart = LogReader::kChunk;
  for (const std::size_t first : {std::size_t{0}, kPart - 21, kPart - 13, 3 * kPart}) {
    std::string record(first, 'x');
    for (int n = 0; n < 15; ++n) {
      record += fields[n] + "|";
      // Only an empty piece needs a bar at the end of a log.
      for (std::size_t end = record.size() - (fields[n].empty() ? 0 : 1); end <= record.size();
           ++end) {
        const TrafficCounters counts = counted("out", record.substr(0, end), kAlpha);
        for (const auto& [counter, field] : due) {
          EXPECT_EQ(counts[counter], n < field ? 0 : field == 14 ? 10 : 1) << n << " " << counter;
        }
      }
    }
  }
}

TEST_F(TrafficTest, ALogOfManyPartsIsCountedWhole) {
  std::string records;
  while (records.size() < 70 * LogReader::kChunk) records += "|5.0.0.1|alpha|x|0|moz|0|/|||||\n";
  const TrafficCounters counts = counted("in", records, kAlpha);
  EXPECT_EQ(counts[rin], static_cast<int>(std::ranges::count(records, '\n')));
}

using Minute = std::map<int, TrafficCounters>;  // by id

TrafficCounters sum_of(const std::vector<Minute>& minutes, std::size_t last, int id) {
  TrafficCounters sum;
  for (std::size_t i = minutes.size() - last; i < minutes.size(); ++i) {
    const auto found = minutes[i].find(id);
    if (found == minutes[i].end()) continue;
    for (std::size_t k = 0; k < 14; ++k) sum.values[k] += found->second.values[k];
  }
  return sum;
}

// A day of made-up slots, then two and a half hours of random hits around midnight.
TEST_F(TrafficTest, WindowsAreTheSumsOfTheirMinutes) {
  const std::pair<const char*, int> names[] = {
      {"alpha", kAlpha}, {"Beta", kBeta}, {"entry2", 2},   {"entry6", 8},    {"listed.example", 8},
      {"nobody", 6},     {"", 6},         {"nocookie", 6}, {"gamma", kGamma}};
  const std::pair<const char*, int> ids[] = {
      {"57", kAlpha}, {"12x", kBeta}, {"  33", kDelta}, {"1", 1}, {"777", 6}, {"", 0}, {"10", 10}};
  put("d/se", "x\nlis|ted.example*note\r\nentry6");
  std::mt19937 random(7);
  const auto pick = [&random](std::size_t n) { return random() % n; };
  std::vector<Minute> minutes(1440);
  std::time_t now = moment("2026-11-16 22:30:10");
  for (int m = 0; m < 1440; m += 2) {
    const int minute_of_day = (22 * 60 + 28 - m + 1440) % 1440;
    Minute& minute = minutes[static_cast<std::size_t>(1439 - m)];
    for (const int id : {kAlpha, 6}) {
      for (std::int32_t& value : minute[id].values) value = static_cast<int>(pick(9));
      set_slot(id, minute_of_day, minute[id]);
    }
  }
  for (const int id : {kAlpha, 6}) {
    set_windows(id, {sum_of(minutes, 60, id), sum_of(minutes, 1440, id), {}});
  }
  Minute week;
  for (int run = 0; run < 150; ++run, now += 60) {
    Minute& minute = minutes.emplace_back();
    std::string in;
    std::string clicks;
    for (std::size_t hits = pick(6); hits > 0; --hits) {
      const auto [name, credited] = names[pick(std::size(names))];
      const bool unique = pick(2) == 0, proxy = pick(2) == 0, marked = pick(2) == 0;
      in += "|1.1.1.1|" + std::string(name) + "|x|" + (unique ? "0" : "1") + "|moz|" +
            (proxy ? "1" : "0") + "|/|" + (marked ? "m" : "") + "||||\n";
      TrafficCounters& trade = minute[credited];
      trade[rin] += 1;
      trade[uin] += unique;
      trade[proxy_in] += proxy;
      trade[rti] += 10;
      minute[4][rin] += marked;
    }
    for (std::size_t hits = pick(6); hits > 0; --hits) {
      const auto [name, from] = names[pick(std::size(names))];
      const auto [target, to] = ids[pick(std::size(ids))];
      const auto [recorded, credited] = ids[pick(std::size(ids))];
      const bool within = pick(2) == 0, proxy = pick(2) == 0;
      clicks += "|1.1.1.1|" + std::string(name) + "|" + target + "|moz|" + (proxy ? "1" : "0") +
                "|tag|" + (within ? "5" : "6") + "|" + recorded + "|1|/|||||\n";
      minute[from][clk] += 1;
      minute[from][ctg] += to == 1;
      minute[from][ctt] += to > 10;  // no other id above 10 stands before position 11
      minute[from][cef] += within;
      minute[from][proxy_clk] += proxy;
      minute[from][rtc] += 10;
      minute[to][out] += 1;
      minute[to][proxy_out] += proxy;
      minute[to][rto] += 10;
      if (*recorded != '\0') minute[credited][rec] += 1;
    }
    put(log_path("in", now - 60), in);
    put(log_path("out", now - 60), clicks);
    run_at(now);
    ASSERT_EQ(events(), "");
    for (const int id : {0, 1, 2, 4, 6, 8, 10, kAlpha, kBeta, kGamma, kDelta}) {
      const Windows found = windows(id);
      ASSERT_EQ(found.last60.values, sum_of(minutes, 60, id).values) << run << " " << id;
      ASSERT_EQ(found.last24.values, sum_of(minutes, 1440, id).values) << run << " " << id;
      ASSERT_EQ(found.last07.values, week[id].values) << run << " " << id;
      if (run == 89) week[id] = found.last24;  // the run of 23:59 wrote the day's record
    }
  }
}

// Which logs a run reads, where it stores them and which slots leave the windows.
TEST_F(TrafficTest, TheMinuteWalkFollowsTheRunHistoryAndElapsedTime) {
  const struct {
    const char* zone;
    const char* previous;  // stamp of the run before
    std::time_t now;       // 0 for local
    const char* local;
    int minutes;  // walked back
    int slot;     // of the oldest minute
    int hour_ago;
  } cases[] = {
      {"UTC0", "11161259", 0, "2026-11-16 13:00:10", 1, 779, 719},
      {"UTC0", "11161258", 0, "2026-11-16 13:00:10", 2, 778, 718},
      {"UTC0", "11161000", 0, "2026-11-16 13:00:10", 60, 720, 660},
      {"UTC0", "11161201", 0, "2026-11-16 13:00:10", 59, 721, 661},
      {"UTC0", "1116125", 0, "2026-11-16 13:00:10", 1, 779, 719},
      {"UTC0", "11161301", 0, "2026-11-16 13:00:10", 1, 779, 719},
      {"UTC0", "11152359", 0, "2026-11-16 00:00:10", 1, 1439, 1379},
      {"UTC0", "12312358", 0, "2027-01-01 00:00:10", 1, 1439, 1379},  // stamps have no year
      {"UTC0", "02282359", 0, "2028-02-29 00:00:10", 1, 1439, 1379},
      {"UTC0", "02282358", 0, "2028-03-01 00:00:10", 2, 1438, 1378},  // 29 February is no minute
      // Clocks go forward at 01:00 UTC, from 02:00 to 03:00: the stamps lie an hour apart.
      {"CET-1CEST,M3.5.0,M10.5.0/3", "03290159", 1774746010, "", 60, 60, 0},
      // And back at 01:00 UTC, from 03:00 to 02:00: the hour before 02:00 was 02 too.
      {"CET-1CEST,M3.5.0,M10.5.0/3", "10250259", 1792890010, "", 1, 179, 119},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "10250200", 1792890070, "", 1, 120, 120},
  };
  const std::string hit = "|1.1.1.1|alpha|x|0|moz|0|/|||||\n";
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.previous) + c.zone);
    lay_out();
    set_zone(c.zone);
    const std::time_t now = c.now != 0 ? c.now : moment(c.local);
    const bool same = c.slot == c.hour_ago;
    set_slot(kAlpha, c.slot, counters({{rin, same ? 30 : 100}, {clk, 5}}));
    if (!same) set_slot(kAlpha, c.hour_ago, counters({{rin, 30}}));
    set_windows(kAlpha, {counters({{rin, 40}}), counters({{rin, 400}}), {}});
    put("l/sys/cron.run", c.previous + std::string("\n"));
    put(log_path("in", now), hit);  // not over yet
    for (const int back : {1, c.minutes, c.minutes + 1}) put(log_path("in", now - back * 60), hit);
    run_at(now);
    const int hits = c.minutes == 1 ? 1 : 2;
    EXPECT_EQ(slot_of(kAlpha, c.slot).values,
              counters({{rin, hits}, {uin, hits}, {rti, 10 * hits}}).values);
    EXPECT_EQ(windows(kAlpha).last60[rin], 40 - 30 + hits);
    EXPECT_EQ(windows(kAlpha).last24[rin], 400 - (same ? 30 : 100) + hits);
    EXPECT_EQ(started().find("sync") != std::string::npos, c.minutes > 1);
  }
}

TEST_F(TrafficTest, CountdownsReachTheIndexAndNegativeWindowsAreClampedEveryFiveMinutes) {
  for (const int minute : {0, 4, 5}) {
    lay_out();
    change_trade(kAlpha, [](TradeRecord& trade) { trade.hits_left = 1, trade.hours_left = -1; });
    change_trade(kBeta, [](TradeRecord& trade) { trade.hours_left = 2; });
    sh("tail -c 500 d/t/index >tail; cat tail >>d/t/index");  // a last record cut short
    const std::time_t now = moment("2026-11-16 13:00:10") + minute * 60;
    const std::string click = "|1.1.1.1|nobody|57|moz|0||0||1|/|||||\n";
    if (minute == 4) put(log_path("out", now - 60), click + click);
    const TrafficCounters minus = counters({{rin, -2}});
    set_windows(kAlpha, {minus, minus, {}});
    sh("touch -d @1 d/t/index d/t/-1; truncate -s 20 d/t/-1");
    run_at(now);
    EXPECT_EQ(trade(kAlpha).hits_left, minute == 4 ? 0 : 1);
    EXPECT_EQ(trade(kAlpha).hours_left, -1);
    EXPECT_EQ(trade(kBeta).hours_left, minute == 0 ? 1 : 2);
    EXPECT_EQ(trade(kGamma).hours_left, 0);
    EXPECT_EQ(windows(kAlpha).last24[rin], minute == 4 ? -2 : 0);
    EXPECT_EQ(windows(kAlpha).last60[rin], minute == 4 ? -2 : 0);
    EXPECT_EQ(fs::file_size("d/t/index"), minute == 5 ? 15 * 996 + 500 : 16 * 996);
  }
}

// Lines of one id add up, those of unknown ids go to position 6; pieces count, not lines.
TEST_F(TrafficTest, TheSummaryIsAStreamOfPieces) {
  std::string line;
  for (int i = 1; i <= 42; ++i) line += std::to_string(i) + "|";
  put("d/t/sum", "|57|" + line + "\n|12|" + line + "\n|57|" + line + "junk|999|" + line + "|33|7");
  put("d/h/alpha.his", "|x|1|");
  run_at("2026-11-16 13:01:10");
  for (const auto& [id, factor] : {std::pair(kAlpha, 2), {kBeta, 1}, {6, 1}, {0, 0}}) {
    EXPECT_EQ(windows(id).last60[rtc], 14 * factor) << id;
    EXPECT_EQ(windows(id).last24[rin], 15 * factor) << id;
    EXPECT_EQ(windows(id).last07[rtc], 42 * factor) << id;  // not rebuilt in minute 1
  }
  EXPECT_EQ(windows(kDelta).last60[rin], 7);
  EXPECT_TRUE(get("d/t/sum").starts_with("|0|0|0|"));
}

}  // namespace
}  // namespace vantrel
