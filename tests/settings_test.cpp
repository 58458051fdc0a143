// Lenient numbers, fields of settings lines, dynamic skim and the address table.
#include <random>
#include <set>

#include "base/first_index.h"
#include "base/numbers.h"
#include "settings/dynamic_skim.h"
#include "settings/ip_table.h"
#include "settings/main_settings.h"
#include "site_fixture.h"
#include "traffic/hit_logs.h"

namespace vantrel {
namespace {

TEST(Numbers, AreReadLeniently) {
  // clang-format off
  const struct {
    const char* text;
    std::int32_t number;
    std::uint32_t address;
    double real;
  } cases[] = {
      {"", 0, 0, 0}, {" \t\n\v\f\r+12x", 12, 12, 12}, {"-7.5", -7, 4294967289, -7.5},
      {"+-1", 0, 0, 0}, {"- 1", 0, 0, 0}, {"0x10", 0, 0, 16}, {"1e2", 1, 1, 100},
      {"2147483648", -2147483647 - 1, 2147483648, 2147483648}, {"4294967301", 5, 5, 4294967301.0},
      {"9223372036854775808", -1, 0, 9223372036854775808.0},
      {"-9223372036854775809", 0, 4294967295, -9223372036854775808.0},
      {"99999999999999999999", -1, 4294967295, 1e20},
      {"-99999999999999999999", 0, 4294967295, -1e20}, {"\x80", 0, 0, 0}};
  // clang-format on
  for (const auto& c : cases) {
    EXPECT_EQ(to_int(c.text), c.number) << c.text;
    EXPECT_EQ(to_unsigned(c.text), c.address) << c.text;
    EXPECT_EQ(to_double(c.text), c.real) << c.text;
  }
  // clang-format off
  const int percentages[][3] = {
      {7, 5, 140}, {21, 10, 209}, {1, 3, 33}, {2, 3, 66}, {5, 0, 0}, {-1, 3, -33},
      {2147483647, 1, 2147483647}};
  // clang-format on
  for (const auto& [a, b, percentage] : percentages) EXPECT_EQ(percent_of(a, b), percentage) << a;
  // clang-format off
  const std::tuple<const char*, std::size_t, const char*> fields[] = {
      {"|25|", 1, "25"}, {"25", 1, "25"}, {"x|25|y|z", 1, "25"}, {"x|25|y|z", 2, "y"},
      {"x|25|y|z", 3, "z"}, {"x|25|y|z", 4, ""}, {"25", 2, ""}, {"|", 1, ""}, {"", 1, ""}};
  // clang-format on
  for (const auto& [line, n, field] : fields)
    EXPECT_EQ(settings_field(line, n), field) << line << n;
  EXPECT_EQ(ip_to_number("1.2.3.4"), 16909060u);
  EXPECT_EQ(ip_to_number("255.255.255.255x"), 4294967295u);
  EXPECT_EQ(ip_to_number("1..3"), 16777216u + 768);
  EXPECT_EQ(ip_to_number("1.2.3.4:"), 16909060u);
}

std::string country_name(std::int64_t i, char a) {
  return {static_cast<char>(a + i % 25), static_cast<char>(a + i / 25 % 25)};
}

// The search as it was always described: the reference for tables in and out of order.
std::string described_country(const std::vector<std::array<std::uint32_t, 2>>& ranges,
                              std::uint32_t n) {
  const auto m = static_cast<std::int64_t>(ranges.size());
  if (m == 0 || n < ranges.front()[0] || n > ranges.back()[1]) return "out of range";
  std::set<std::int64_t> visited;
  int direction = 0;
  long double divisor = 2;
  for (std::int64_t i = m / 2; i >= 0 && i < m && visited.size() < 100;) {
    const auto [first, last] = ranges[static_cast<std::size_t>(i)];
    if (first <= n && n <= last) return country_name(i, 'a');
    if (!visited.insert(i).second) break;
    if (n < first) direction = -1;
    divisor *= 2;
    const auto step = std::max<std::int64_t>(1, static_cast<std::int64_t>(m / divisor));
    if (n > first) direction = 1;
    i += direction * step;
  }
  return "out of range";
}

TEST_F(SiteFixture, CountryOfGivesTheAnswersOfTheBisection) {
  std::mt19937 generator(3);
  const auto random = [&](std::uint32_t n) { return static_cast<std::uint32_t>(generator() % n); };
  for (const int kind : {0, 1, 2}) {  // in order, random, one range wrong in a large table
    for (std::uint32_t size :
         {0,  1,  2,  3,   4,   5,   6,   7,   8,    9,    15,   16,   17,    31,    33,
          63, 64, 65, 127, 128, 129, 255, 257, 1023, 1025, 4095, 4096, 65535, 131071}) {
      const bool ordered = kind != 1;
      if (kind == 1) size = size % 4096 % 70;
      // Small numbers, and numbers of up to ten digits.
      const std::uint32_t width = ordered && size % 2 == 1 ? 4294967295u / (size * 8) : 1;
      std::vector<std::array<std::uint32_t, 2>> ranges;
      std::string text;
      std::uint32_t next = random(5);
      for (std::uint32_t i = 0; i < size; ++i) {
        const std::uint32_t first = ordered ? next : random(300);
        const std::uint32_t last = ordered ? first + random(5) * width : random(300);
        next = last + 1 + (random(3) == 0 ? random(3) * width : 0);
        const bool wrong = kind == 2 && i == size / 3;
        ranges.push_back({wrong ? last + 1 : first, last});
        // Most ranges are written as they should be; one in the middle is very long.
        text += i == size / 2 ? std::string(100000, ' ') : random(50) == 0 ? "\r\n" : "\n";
        text += random(50) == 0 ? "| +" : "|";
        text += std::to_string(ranges[i][0]) + "|" + std::to_string(last) + "|" +
                country_name(i, random(50) == 0 ? 'a' : 'A') + "|";
      }
      put("table", text);
      IpTable table;
      ASSERT_TRUE(table.load("table"));
      ASSERT_EQ(table.size(), size);
      const std::uint32_t end = ordered ? next + 3 : 303;
      // Every address near the ends, where the search is longest, and samples between them.
      const std::uint32_t step = 1 + end / 3000;
      for (std::uint32_t n = 0; n < end;
           n += n < 99 || n + 99 >= end ? 1 : std::min(step, end - 99 - n)) {
        ASSERT_EQ(table.country_of(n), described_country(ranges, n)) << size << " " << n;
      }
    }
  }
  const std::tuple<const char*, std::uint32_t, const char*> written[] = {
      {"|0|4294967295|X|", 4294967295u, "x"},
      {"\n|10|19|USA|\n|20|29|DE|\n|30|39|US|", 30, "us"},
      {"\n|10000000010|10000000019|AA|\n|20000000020|20000000029|BB|", 2820130840u, "bb"}};
  for (const auto& [text, address, country] : written) {
    put("table", text);
    IpTable table;
    ASSERT_TRUE(table.load("table"));
    EXPECT_EQ(table.country_of(address), country) << text;
  }
}

// Keys of one place in the index are compared one by one: a site must not be slow for its names.
TEST(FirstIndex, EveryByteOfAKeyDecidesItsPlace) {
  for (std::size_t size = 1; size <= 70; ++size) {
    std::set<std::uint64_t> places;
    for (std::size_t i = 0; i < size; ++i) {
      std::string key(size, 'a');
      key[i] = 'b';
      places.insert(hash_key(key));
    }
    EXPECT_EQ(places.size(), size);
  }
}

TEST_F(SiteFixture, SkimFollowsTheTrafficOfTheSiteButEntry5) {
  std::vector<TradeWork> works(5);
  const int ids[] = {3, 5, 6, 10, 11};
  for (std::size_t i = 0; i < 5; ++i) works[i].id = ids[i];
  using enum slot::Counter;
  works[0].last60 = counters({{uin, 50}, {cef, 3}, {ctt, 7}, {out, 100}});
  works[4].last60 = counters({{uin, 30}, {cef, 4}});
  works[1].last60 = works[1].last24 =
      counters({{uin, 1000}, {cef, 1000}, {ctt, 1000}, {out, 1000}});
  works[2].last24 = counters({{uin, 60}, {cef, 30}, {ctt, 9}, {out, 40}});
  // Which skims the entries 3, 5, 6, 10 and 11 have afterwards.
  // clang-format off
  const std::pair<std::string, const char*> cases[] = {
      {"|1|1|0|0|70|4|2|150", "-1 -1 -1 -1 70 "}, {"|1|1|0|0|70|4|1|150", "-1 -1 -1 -1 -1 "},
      {"x|1|1|1|1|60|4|1|124|80|4|2|126|", "80 -1 80 -1 80 "},
      {"|1|0|0|1|60|1|1|79|", "60 -1 -1 -1 -1 "}, {"|1|0|1|0|61|1|1|80|", "-1 -1 -1 -1 -1 "},
      {"|1|0|1|0|62|2|2|8|", "-1 -1 62 -1 -1 "},
      {"|1|0|1|0|63|3|1|6|64|3|1|7|65|3|2|8", "-1 -1 65 -1 -1 "},
      {"|1|0|1|0|66|5|1|7|67|5|1|8", "-1 -1 66 -1 -1 "},
      {"|1|0|1|0|68|6|1|59|69|6|1|60", "-1 -1 68 -1 -1 "},
      {"|1|0|1|0|70|7|1|29|71|7|1|30", "-1 -1 70 -1 -1 "},
      {"|1|0|1|0|72|8|1|8|73|8|1|9", "-1 -1 72 -1 -1 "},
      {"|1|0|1|0|74|9|1|65|75|9|1|66", "-1 -1 74 -1 -1 "},
      {"|1|0|1|0|76|10|1|49|77|10|1|50", "-1 -1 76 -1 -1 "},
      {"|1|0|1|0|78|11|1|-1|79|0|1|0", "-1 -1 78 -1 -1 "},
      {"|1|0|1|0|60|1|3|0|61|1|1|0\n|62|1|1", "-1 -1 61 -1 -1 "},
      {"|1\n|1|1|1|60|1|1|0|", "-1 -1 -1 -1 -1 "}, {"|0|1|1|1|60|1|1|0|", "-1 -1 -1 -1 -1 "},
      {"", "-1 -1 -1 -1 -1 "}};
  // clang-format on
  for (const auto& [text, skims] : cases) {
    for (TradeWork& work : works) work.param_844 = -1;
    put("d/ds", text);
    apply_dynamic_skim(works);
    std::string found;
    for (const TradeWork& work : works) found += std::to_string(work.param_844) + " ";
    EXPECT_EQ(found, skims) << text;
  }
}

}  // namespace
}  // namespace vantrel
