// The formula calculator, the scores, the ranking and the outgoing list.
#include <limits>

#include "base/numbers.h"
#include "out/expression.h"
#include "out/planning.h"
#include "out/scoring.h"
#include "site_fixture.h"

namespace vantrel {
namespace {

using enum slot::Counter;

TEST(Expression, ValuesAndErrors) {
  constexpr double kMost = std::numeric_limits<double>::max();
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  // clang-format off
  const struct {
    std::string text;
    double value;
    int errors;
  } cases[] = {
      {"2+3*4", 14, 0}, {"(2+3)*4", 20, 0}, {"2-3-4", -5, 0}, {"8/4/2", 1, 0}, {" 1 +\t2 ", 3, 0},
      {"1+2\n+3", 3, 0}, {"1+2;+3", 3, 0}, {"", 1, 1}, {"(2+3", 1, 1}, {"5+3/0+2", 8, 1},
      {"5/-0*7+1", 1, 1}, {"+5", 6, 1}, {"2#3", 2, 1}, {"1e308*10", kInfinite, 0}, {"3)", 3, 0},
      {"4 5", 4, 0}, {"1e2", 100, 0}, {".5*4", 2, 0}, {"1.2.3", 1.2, 0}, {"2.5E-2*4", 0.1, 0},
      {"-2*3", -6, 0}, {"--4", 4, 0}, {"2*-3", -6, 0}, {"5.+1", 6, 0}, {"0x10", 0, 0},
      {"1e", 0, 0}, {".", 0, 0}, {"1e+7x", 1e7, 0}, {"1e999", kMost, 0},
      {"2*1e999+1", kInfinite, 0}, {"3+.*4", 3, 0}, {"1e2e3", 100, 0}, {"x", 0, 0}, {"x=4", 4, 0},
      {"x*2", 8, 0}, {"a=b=2", 2, 0}, {"a+b", 4, 0}, {"c=1+d=3", 4, 0}, {"c", 4, 0},
      {"2*x=3+1", 8, 0}, {"x_1", 4, 1}, {"a1b=7", 7, 0}, {"()", 1, 1}, {"*", 1, 2}, {"=2", 1, 1},
      {"\xe9", 1, 2}, {std::string(1500, '(') + "7" + std::string(1500, ')'), 7, 0},
      {std::string(1000, '-') + "7", 7, 0}};
  // clang-format on
  ExpressionEvaluator evaluator;
  for (const auto& c : cases) {
    const int before = evaluator.error_count();
    EXPECT_EQ(evaluator.evaluate_expression(c.text), c.value) << c.text;
    EXPECT_EQ(evaluator.error_count() - before, c.errors) << c.text;
  }
  for (const char* endless : {"(", "-", "x="}) {  // must not overflow the stack
    std::string text;
    for (int i = 0; i < 300000; ++i) text += endless;
    const int before = evaluator.error_count();
    static_cast<void>(evaluator.evaluate_expression(text));
    EXPECT_GT(evaluator.error_count(), before);
  }
}

struct Scored {
  int mode;
  TrafficCounters last60;
  TrafficCounters last24;
  TradeCap caps;
  double score;
};

TEST(Scoring, BuiltIn) {
  const TrafficCounters none;
  const auto day = [](int in, int unique, int sent) {
    return counters({{rin, in}, {uin, unique}, {out, sent}, {rti, 1}, {rto, 1}});
  };
  // Quality 100 in, 50 out, 75 back: p = 150, q = 0.75, (300 + 150 * 1.375) / 3 = 168.75.
  const auto rich = [](int unique, int sent) {
    return counters({{rin, 100}, {uin, unique}, {out, sent}, {rti, 100}, {rto, 50}, {rtc, 75}});
  };
  const auto caps_day = [](int unique, int cef_count, int ctt_count, int sent) {
    return counters({{uin, unique}, {cef, cef_count}, {ctt, ctt_count}, {out, sent}, {rto, 1}});
  };
  // The windows weigh 1, 2, 1: twice the day's quality over four.
  // clang-format off
  const Scored cases[] = {
      {5, none, rich(200, 3), {}, (168.75 + 0.2) * 2 / 4},
      {5, rich(0, 2), rich(200, 120), {}, (168.75 * 3 + 0.4) / 4 * 1.25},
      {5, rich(0, 3), rich(200, 120), {}, (168.75 * 3 + 0.4) / 4},
      {5, none, counters({{rti, 7}, {rto, 7}, {uin, 500}}), {}, 0},
      {0, rich(0, 3), rich(200, 3), {}, 0}, {1, none, day(100, 50, 190), {}, -1},
      {1, none, day(100, 100, 190), {}, 0}, {1, none, day(100, 99, 180), {}, 0},
      {1, none, day(100, 199, 201), {}, -1}, {1, none, day(100, 399, 221), {}, -1},
      {1, none, day(100, 400, 240), {}, 0}, {1, none, day(100, 599, 241), {}, -1},
      {1, none, day(100, 799, 261), {}, -1}, {1, none, day(100, 999, 281), {}, -1},
      {1, none, day(100, 1000, 999), {}, 0}, {1, none, day(100, 200, 219), {}, 0},
      {1, none, day(100, 600, 259), {}, 0}, {1, none, day(100, 800, 279), {}, 0},
      {1, none, day(0, 50, 5), {}, -1}, {1, none, day(0, 0, 5), {}, 0},
      {1, none, day(0, 50, 0), {}, 0}, {2, none, caps_day(0, 0, 0, 0), {}, -6},
      {2, none, caps_day(0, 0, 0, 5), {}, -3},
      {2, none, caps_day(100, 9, 5, 50), {10, -1, 10}, -5},
      {2, none, caps_day(100, 10, 5, 50), {10, -1, 49}, -4},
      {2, none, caps_day(100, 10, 5, 50), {10, 10, 50}, 0},
      {2, none, caps_day(100, 10, 4, 50), {10, 10, 49}, -7},
      {2, none, caps_day(100, 0, -5, 50), {-1, -1, -1}, 0},
      {0, none, counters({{rtc, 3}}), {}, 300}, {0, counters({{rtc, 3}}), none, {}, 300},
      {0, none, counters({{rti, 3}, {uin, 20}}), {}, 200.2},
      {0, counters({{rti, 5}, {uin, 250}}), counters({{rtc, 1}}), {}, 202.5},
      {0, none, counters({{uin, 11}, {out, 2}}), {}, 150},
      {0, none, counters({{uin, 12}, {out, 2}}), {}, 0},
      {0, none, counters({{uin, 1}, {out, 3}}), {}, 0}};
  // clang-format on
  const OutMod modifiers({"100", "100", "100", "1", "2", "1", "0", "", "0", ""});
  for (const Scored& c : cases) {
    const ScoreArgs args{c.last60, c.last24, none, c.mode, c.caps, modifiers};
    EXPECT_DOUBLE_EQ(builtin_score(args).score, c.score) << &c - cases;
  }

  // Two trades of one score stay in the order of the index, on any machine: with multiplications
  // fused into additions the second would get ahead by the last bits.
  const auto paid = [](int sent, int got, int clicked) {
    return counters({{rti, sent}, {rto, got}, {rtc, clicked}});
  };
  const TrafficCounters equal[][3] = {{paid(1, 2, 4), paid(4, 9, 4), paid(9, 9, 9)},
                                      {paid(3, 9, 9), paid(1, 6, 7), paid(2, 5, 8)}};
  const OutMod weights({"100", "100", "100", "3", "2", "1", "0", "", "0", ""});
  for (const auto& [hour, of_day, week] : equal) {
    EXPECT_EQ(builtin_score({hour, of_day, week, 5, {}, weights}).score, 0x1.9671c71c71c73p+7);
  }
}

TEST(Scoring, Formula) {
  // X = 9 / 4 = 2 out a unique hit, Y = 13 / 4 = 3 cef, A = 20 / 9 = 2 ctt a click.
  const TrafficCounters day = counters({{uin, 4}, {out, 9}, {cef, 13}, {ctt, 20}});
  const TrafficCounters hour = counters({{rin, 12}, {ctt, 0}, {rtc, -5}});
  // clang-format off
  const struct {
    const char* text;
    int mode;
    TradeCap caps;
    double score;
  } cases[] = {
      {"rin60*2+uin24", 1, {}, 28 + 0.6 - 0.4 + 2}, {"rin600", 5, {}, 120 + 2.2},
      {"(out24-1)/ctt60", 1, {}, 1 + 2.2}, {"8-rtc60+rtc07", 1, {}, 13 + 77 + 2.2},
      {"uin24 2", 0, {}, 0}, {"xrin60=3", 1, {}, 3 + 2.2}, {"7", 2, {}, 9.2},
      {"7", 2, {326, -1, -1}, -9}, {"7", 2, {325, 222, 225}, 9.2}, {"7", 2, {-1, 223, -1}, -9},
      {"7", 2, {-1, -1, 224}, -9}};
  // clang-format on
  ExpressionEvaluator evaluator;
  for (const auto& c : cases) {
    const OutMod modifiers({"120", "120", "200", "1", "2", "1", "0", "", "10", c.text});
    const TrafficCounters week = counters({{rtc, 77}});
    const ScoreArgs args{hour, day, week, c.mode, c.caps, modifiers};
    EXPECT_DOUBLE_EQ(formula_score(args, evaluator).score, c.score) << c.text;
  }
}

TEST(Planning, BoostRankingAndGeneratedWeights) {
  OutSettings settings{{}, OutMod({"100", "100", "100", "0", "0", "0", "0", "", "10", "50"}), {}};
  std::vector<TradeWork> works(1);
  TradeWork& work = works[0];
  work.last24 = counters({{rin, 20}, {out, 30}, {cef, 10}});
  // Metrics: 20 hits, 30 clicks, 10 cef, 150 and 50 percent; each a threshold reached and missed.
  const std::pair<int, int> metrics[] = {{1, 20}, {2, 30}, {3, 10}, {4, 150}, {5, 50}, {9, 20}};
  for (const auto& [selector, metric] : metrics) {
    for (const int threshold : {metric, metric + 1}) {
      work.param_828 = selector, work.param_832 = threshold;
      work.param_836 = 1, work.param_840 = 250;
      score_trades(works, settings);
      EXPECT_DOUBLE_EQ(work.score, threshold == metric ? 125 : 0.5) << selector;
      work.param_840 = 0;
      score_trades(works, settings);
      EXPECT_DOUBLE_EQ(work.score, 50);
    }
  }
  works.resize(6);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double scores[] = {nan, 1, -7, nan, 3, 1};
  for (std::size_t i = 0; i < 6; ++i) works[i].id = static_cast<int>(i), works[i].score = scores[i];
  rank_trades(works);
  const int ranked[] = {4, 1, 5, 2, 0, 3};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(works[i].id, ranked[i]);

  EXPECT_EQ(generate_out_set(19, false), OutSet{1});
  EXPECT_EQ(generate_out_set(29, false),
            (OutSet{10085, 3879, 1492, 574, 221, 85, 33, 13, 5, 2, 1}));
  EXPECT_EQ(generate_out_set(29, true), (OutSet{2930, 1274, 554, 241, 105, 46, 20, 9, 4, 2, 1}));
  const std::pair<std::size_t, std::size_t> sizes[] = {{30, 12},  {45, 13},  {150, 24},
                                                       {160, 25}, {170, 26}, {5000, 26}};
  for (const auto& [trades, size] : sizes) EXPECT_EQ(generate_out_set(trades, false).size(), size);
  EXPECT_EQ(generate_out_set(170, false)[0], 2147483647);
}

// Of the last group nothing counts until it is whole; -1 and unknown kinds never do.
TEST_F(SiteFixture, CapsAreReadInGroupsOfFour) {
  const std::string groups = "x|57|1|5|\n|12|2|7|\n|57|3|-1|\n|57|4|8|\n|57|1|6|\n|57|2";
  for (const auto& [end, ctt] : {std::pair{"", -1}, {"|", -1}, {"|9", 9}, {"|9|", 9}}) {
    put("d/caps", groups + end);
    OutSettings settings;
    ASSERT_TRUE(load_out_settings(settings, 15));
    const TradeCap alpha = caps_of(settings.caps, kAlpha);
    const TradeCap beta = caps_of(settings.caps, kBeta);
    EXPECT_EQ(std::tuple(alpha.cap_cef, alpha.cap_ctt, alpha.cap_out), std::tuple(6, ctt, -1));
    EXPECT_EQ(std::tuple(beta.cap_cef, beta.cap_ctt, beta.cap_out), std::tuple(-1, 7, -1));
  }
}

TEST_F(SiteFixture, WeightsAreThoseOfTheFileUnlessTheyAreToBeGenerated) {
  for (const auto& [field, first] : {std::pair{"0", 500}, {"1", 10085}, {"01", 500}}) {
    put("d/out.mod", std::string("|100|100|100|1|1|1|") + field + "|0|0||");
    OutSettings settings;
    ASSERT_TRUE(load_out_settings(settings, 29));
    EXPECT_EQ(settings.weights[0], first) << field;
  }
}

// Entry 10 ranks first with score 900 and takes the first weight; entry 9 takes the other one but
// is never listed, so gamma, at position 2 of 15, has the second weight (15 - 2)² = 169. Delta
// sends too little. Alpha, with score 100, stands at position 4: admitted it has (15 - 4)² = 121.
TEST_F(SiteFixture, TheOutgoingListShowsQuotasGuaranteesForcedListingAndSkim) {
  const struct {
    int flag, hits_left, override_minimum, forced, hours_left, quota, skim;
    int unique, raw, sent;  // the last day's hits, the last hour's clicks
    const char* entry;      // weight, second weight, state, skim
  } cases[] = {
      {1, 0, 0, 0, 0, 0, -1, 10, 5, 0, "0 121 0 -1"},  // just enough hits
      {1, 0, 0, 0, 0, 0, -1, 10, 0, 0, ""},            // nothing that would list it
      {1, 0, 0, 0, 0, 0, -1, 9, 5, 0, ""},             // too few
      {1, 0, 0, 0, 0, 0, 25, 9, 5, 0, "0 0 0 25"},     // but a skim
      {1, 0, 0, 0, 0, 0, 25, 9, 0, 0, ""},
      {1, 0, 1, 0, -1, 50, -1, 9, 0, 49, "0 121 1 -1"},  // quota not yet filled
      {1, 0, 1, 0, -1, 50, -1, 9, 0, 50, ""},            // filled
      {1, 0, 0, 0, -1, 50, 25, 9, 0, 0, ""},             // its hours are cancelled
      {1, 0, 2, 0, -1, 50, -1, 9, 0, 0, ""},             // only 1 overrides the minimum
      {1, 0, 1, 0, 3, 50, -1, 9, 0, 49, "0 121 1 -1"},
      {1, 0, 1, 0, -2, 50, -1, 9, 0, 0, ""},
      {1, 0, 0, 0, 5, 50, -1, 10, 0, 50, ""},  // admitted, its hours cancelled
      {1, 0, 0, 0, 5, 50, -1, 10, 1, 50, "0 121 0 -1"},
      {1, 3, 1, 0, 0, 0, -1, 9, 0, 2, "0 121 1 -1"},  // guarantee
      {1, 3, 1, 0, 0, 0, 25, 9, 0, 3, "0 0 1 25"},
      {1, 0, 1, 1, 2, 0, -1, 9, 5, 0, "0 121 2 -1"},  // forced listing
      {1, 0, 0, 2, -1, 0, -1, 20, 5, 0, "0 121 3 -1"},
      {1, 0, 0, 1, 0, 0, -1, 20, 5, 0, "0 121 0 -1"},  // its hours are over
      {1, 0, 0, 3, 1, 0, -1, 20, 5, 0, "0 121 0 -1"},
      {0, 0, 0, 0, 0, 0, -1, 20, 5, 0, ""},
      {0, 9, 0, 0, 0, 0, 30, 20, 5, 0, "0 0 1 30"},
  };
  put("d/out.mod", "|100|100|100|0|0|0|0||10|clk24|");
  int number = 0;
  for (const auto& c : cases) {
    change_trade(kAlpha, [&c](TradeRecord& trade) {
      trade.flag_880 = c.flag, trade.hits_left = c.hits_left, trade.param_888 = c.override_minimum;
      trade.param_892 = c.forced, trade.hours_left = c.hours_left, trade.param_844 = c.skim;
      trade.hourly[12] = c.quota, trade.value_288 = -5;
      std::fill_n(trade.text_80, 120, 'u'), std::fill_n(trade.text_848, 5, 't');
    });
    change_trade(3, [](TradeRecord& trade) { trade.param_844 = 33; });
    change_trade(6, [](TradeRecord& trade) { trade.param_844 = 66; });
    set_windows(kAlpha, {counters({{out, c.sent}, {rin, 60}, {uin, 60}, {clk, 60}, {rto, 60}}),
                         counters({{uin, c.unique}, {rin, c.raw}, {clk, 100}}),
                         {}});
    set_windows(10, {{}, counters({{uin, 50}, {rin, 50}, {clk, 900}}), {}});
    set_windows(9, {{}, counters({{uin, 50}, {rin, 50}, {clk, 850}}), {}});
    set_windows(kGamma, {{}, counters({{uin, 50}, {rin, 50}, {clk, 800}}), {}});
    set_windows(kDelta, {{}, counters({{rin, 50}, {clk, 700}}), {}});
    run_at(moment("2026-11-16 12:31:10") + number * 60);
    OutListHeader header;
    std::vector<OutListEntry> entries = list(&header);
    std::string found;
    ASSERT_EQ(entries.size(), *c.entry == '\0' ? 2u : 3u) << number;
    EXPECT_EQ(entries[0].id * 1000 + entries[0].weight, 10 * 1000 + 500);
    EXPECT_EQ(entries[1].id * 1000 + entries[1].second_weight, kGamma * 1000 + 169);
    if (entries.size() == 3) {
      const OutListEntry& e = entries[2];
      found = std::to_string(truncate_to_int(e.weight)) + " " +
              std::to_string(truncate_to_int(e.second_weight)) + " " +
              std::to_string(static_cast<int>(e.state)) + " " + std::to_string(e.skim);
      EXPECT_EQ(e.name + (":" + std::string(e.text_80)) + e.text_848,
                "alpha:" + std::string(101, 'u') + "ttttt");
      EXPECT_EQ(e.id + e.value_288, kAlpha - 5);
    }
    EXPECT_EQ(found, c.entry) << number;
    EXPECT_EQ(trade(kAlpha).hours_left, c.hours_left);  // cancelled for this run only
    EXPECT_EQ(std::to_string(header.skim_3) + header.texts[0] + std::to_string(header.skim_6) +
                  header.texts[1] + std::to_string(header.track) + header.texts[2],
              "33one66two7three");
    EXPECT_EQ(header.numbers[0] * 10000 + header.numbers[1] * 100 + header.numbers[2], 414243);
    ++number;
  }
}

}  // namespace
}  // namespace vantrel
