// What a day brings beside the minutes: history, backups, pruning, alert mails.
#include "base/text.h"
#include "history/history_file.h"
#include "sample_site.h"
#include "site_fixture.h"

namespace vantrel {
namespace {

using enum slot::Counter;

class DayTest : public SiteFixture {};

// Counters 100, 101, ... in the order of their slots.
TrafficCounters row_of(int start) {
  TrafficCounters counts;
  for (std::size_t k = 0; k < 14; ++k) counts.values[k] = start + static_cast<int>(k);
  return counts;
}

TEST_F(DayTest, HistoryIsWrittenAtTheEndOfTheDayOrMadeUpForAfterMidnight) {
  // clang-format off
  const struct {
    const char* time;
    int age;  // of the totals, in minutes of the clock; 0 for no file
    const char* date;
  } cases[] = {
      {"16 23:59:10", 5, "20261116"}, {"16 23:58:55", 5, "20261116"}, {"16 23:58:10", 1440, ""},
      {"17 00:05:10", 1440, "20261117"}, {"17 00:02:10", 61, "20261117"},
      {"17 00:19:10", 2999, "20261117"}, {"17 00:05:10", 60, ""}, {"17 00:05:10", 3000, ""},
      {"17 00:01:10", 1440, ""}, {"17 00:20:10", 1440, ""}, {"17 01:05:10", 1440, ""},
      {"17 00:05:10", 0, ""}};
  // clang-format on
  for (const auto& c : cases) {
    SCOPED_TRACE(c.time);
    lay_out();
    const std::time_t now = moment(std::string("2026-11-") + c.time);
    set_windows(kAlpha, {{}, row_of(1000000), {}});
    set_windows(kBeta, {{}, row_of(200), {}});
    set_windows(1, {{}, row_of(300), {}});
    set_windows(3, {{}, row_of(400), {}});
    set_windows(8, {{}, row_of(500), {}});
    // The last second of that minute of age: minutes are truncated before they are compared.
    const std::string time = std::to_string((now / 60 - c.age) * 60 + 59);
    sh(c.age == 0 ? "rm d/h/all.his" : "touch -d @" + time + " d/h/all.his");
    run_at(now);
    const auto record = [&c](const std::string& values, std::size_t bars) {
      return *c.date == '\0' ? "" : "|" + (c.date + values) + std::string(bars, '|');
    };
    const std::string beta = "|200|201|202|203|204|205|206|207|208|209|210|211|212|213";
    EXPECT_EQ(get("d/h/beta.his"), record(beta, 15) + (*c.date == '\0' ? "" : "\n"));
    // Alpha, beta, 1, 3 and 8: 1,001,400 and 5 more a slot. Alpha and beta: 1,000,200 and 2 more.
    std::string all = "|1001400";
    std::string trades = all;
    for (int k = 1; k < 11; ++k) all += "|" + std::to_string(1001400 + 5 * k);
    for (int k = 1; k < 11; ++k) trades += "|" + std::to_string(1000200 + 2 * k);
    all += "|1.00146e+06|1.00146e+06|1.00146e+06|1000204|302|400|500|5";
    trades += "|1.00022e+06|1.00022e+06|1.00023e+06|1000204|302|400|0|5";
    EXPECT_EQ(get("d/h/all.his"), record(all, 10));
    EXPECT_EQ(get("d/h/trades.his"), record(trades, 10));
  }
}

TEST_F(DayTest, TheWeekIsReadAnewInEveryMinuteButTheFirstOfHours1To23) {
  const std::pair<const char*, int> cases[] = {{"00:01:10", 7},  {"01:01:10", 40}, {"13:01:52", 40},
                                               {"13:00:53", 40}, {"13:01:53", 7},  {"23:59:10", 7}};
  for (const auto& [time, week] : cases) {
    lay_out();
    put("d/h/alpha.his", "x|20261115|3" + std::string(28, '|') + "\n|20261115|4|");
    set_windows(kAlpha, {{}, {}, counters({{rin, 40}})});
    run_at(std::string("2026-11-16 ") + time);
    EXPECT_EQ(windows(kAlpha).last07[rin], week) << time;
  }
}

// Reads the whole file and keeps every record.
TrafficCounters naive_week(const std::string& bytes) {
  std::vector<TrafficCounters> records;
  const std::vector<std::string> pieces = split(bytes);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i % 30 == 2) records.emplace_back();
    if (i % 30 >= 2 && i % 30 < 16)
      records.back().values[i % 30 - 2] = std::atoi(pieces[i].c_str());
  }
  TrafficCounters sum;
  for (std::size_t r = records.size() > 7 ? records.size() - 7 : 0; r < records.size(); ++r) {
    for (std::size_t k = 0; k < 14; ++k) sum.values[k] += records[r].values[k];
  }
  return sum;
}

TEST_F(DayTest, OnlyTheLastSevenRecordsOfAHistoryCountWhereverItIsCut) {
  const auto record = [](int start, std::size_t padding) {
    std::string text = "|20261116";
    for (const std::int32_t value : row_of(start).values) {
      text += "|" + std::string(padding, '0') + std::to_string(value);
    }
    text += '|';
    for (int i = 0; i < 14; ++i) text += start % 200 == 0 ? "|" : "x|";  // nobody reads them
    return text + "\n";
  };
  HistoryReader reader;
  const auto expect_as_naive = [&reader](const std::string& bytes) {
    put("his", bytes);
    const auto sum = reader.sum_of_last_week("his");
    ASSERT_TRUE(sum.has_value());
    ASSERT_EQ(sum->values, naive_week(bytes).values) << bytes.size();
  };
  std::string bytes;
  for (int i = 0; i < 9; ++i) bytes += record(i * 100 - 300, 0);
  for (std::size_t size = 0; size <= bytes.size(); ++size) expect_as_naive(bytes.substr(0, size));
  // Records of about 5,600, 21,000 and 70,000 bytes over the borders of chunks of 128 KiB.
  for (const std::size_t padding : {400, 1500, 5000}) {
    std::string large;
    for (int i = 0; large.size() < 900000; ++i) large += record(i, padding);
    for (std::size_t chunks = 1; chunks < 7; ++chunks) {
      for (std::size_t size = chunks * 131072 - 2; size <= chunks * 131072 + 2; ++size) {
        expect_as_naive(large.substr(0, size));
      }
    }
    expect_as_naive(large);
  }
  EXPECT_FALSE(reader.sum_of_last_week("missing").has_value());
  EXPECT_FALSE(trade_history_path("../x").has_value());
}

TEST_F(DayTest, BackupsAreNamedAfterTheHourWalkedToAndTheNewestNinetyAreKept) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"11:59:10", "11161158", "tar zcf d/backup/26-320-11.tar.gz d/t d/gr d/h d/tpl d/css "},
      {"23:59:10", "11162358", "tar zcf d/backup/26-320-23.tar.gz d/t d/gr d/h d/tpl d/css "},
      {"23:59:10", "11162200", "tar zcf d/backup/26-320-22.tar.gz d/t d/gr d/h d/tpl d/css sync "},
      {"12:01:10", "11161200", ""},
      {"23:19:10", "11162318", ""}};
  for (const auto& [time, previous, command] : cases) {
    fs::remove("l/sys/cron.last");
    put("l/sys/cron.run", previous + std::string("\n"));
    run_at(std::string("2026-11-16 ") + time);
    EXPECT_EQ(started(), command) << time;
  }
  const std::time_t now = moment("2026-11-16 23:20:10");
  for (int age = 1; age <= 95; ++age) {
    const std::string name = std::to_string(age * 37 % 101);  // in no order of age
    sh("touch -d @" + std::to_string(now - age * 1000) + " d/backup/" + name);
  }
  run_at(now);
  for (int age = 1; age <= 95; ++age) {
    EXPECT_EQ(fs::exists("d/backup/" + std::to_string(age * 37 % 101)), age <= 90) << age;
  }
  // All of one age, as in a site that was copied without its times; one that has none goes last.
  sh("cd d/backup; rm *; ln -s nowhere 0; touch -d @" + std::to_string(now + 24 * 60 * 60) +
     " $(seq 26105 26194) $(seq 26100 26104)");
  run_at(now + 24 * 60 * 60);
  EXPECT_TRUE(fs::is_symlink("d/backup/0"));
  for (int name = 26100; name < 26195; ++name) {
    EXPECT_EQ(fs::exists("d/backup/" + std::to_string(name)), name >= 26106) << name;
  }
}

TEST_F(DayTest, EveryAlertIsMailedOnceAndItsFlagKept) {
  const std::string day_low = "* Your site dropped below 900 unique hits per day\n";
  const std::string hour_low = "* Your site has dropped below 90x unique hits per hour\n";
  const std::string trade_high = "* One of your trades has grown to -1 unique hits per day\n";
  const std::string who = "./bin/send-mail|from@site.example|to@site.example|";
  // The site has 899 hits a day (500 of them alpha's) and 89 an hour.
  const struct {
    std::string head, fields, after, body;
  } cases[] = {
      {who, "|900|0|0|1|0|0|0|1|0|1", "0|900|1|0|1|0|0|0|1|0|1", day_low},
      {who, "x|899|0|898|1|89|0|89|0|500|0", "", ""},
      {who, "x|900|1|899|0|90x|0|-1|0|-1|0", "x|900|1|899|0|90x|1|-1|0|-1|1",
       hour_low + trade_high},
      {who, "x|900|0|88|00|0|0|88|0|499|0", "x|900|1|88|00|0|0|88|1|499|1",
       day_low + "* Your site has grown to  88 unique hits per hour\n"
                 "* One of your trades has grown to 499 unique hits per day\n"},
      {who, "||0|898|0||0|0|1|-1|1", "0|0|0|898|1|0|0|0|1|-1|1",
       "* Your site has grown to 898 unique hits per day\n"},
      {"./bin/mail|from@site.example|to@site.example|", "0|900|0|0|1|0|0|0|1|0|1", "", ""},
      {"./bin/mail1|from@site.example|to@site.example|", "0|900|0|0|1|0|0|0|1|0|1",
       "0|900|1|0|1|0|0|0|1|0|1", day_low},
      {"./bin/send-mail|f@x.y|to@site.example|", "0|900|0|0|1|0|0|0|1|0|1", "", ""},
      {"./bin/send-mail|from@site.example|to.site.example|", "0|900|0|0|1|0|0|0|1|0|1", "", ""},
      {"/bin/no-such-mailer|from@site.example|to@site.example|", "0|900|0|0|1|0|0|0|1|0|1",
       "0|900|1|0|1|0|0|0|1|0|1", ""},
  };
  int number = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(number);
    lay_out();
    set_windows(kAlpha, {{}, counters({{rin, 500}, {uin, 9000}}), {}});
    set_windows(2, {counters({{rin, 89}}), counters({{rin, 399}}), {}});
    sh("cp bin/send-mail bin/mail; cp bin/send-mail bin/mail1");
    put("d/alerts", "label|" + c.head + c.fields);
    run_at("2026-11-16 12:01:10");
    const std::string opening =
        "-t\nTo: to@site.example\nFrom: from@site.example\nSubject: Automatic Alert from "
        "Vantrel\n\n"
        "Dear webmaster,\n\nThis is an email from the Vantrel Alert System to inform you about the "
        "following.\n\n";
    const std::string closing = "Thank you for your time.\n\nVantrel Alert System";
    EXPECT_EQ(get("mailed"), c.body.empty() ? "" : opening + c.body + closing);
    EXPECT_EQ(get("d/alerts"),
              c.after.empty() ? "label|" + c.head + c.fields : "|" + c.head + c.after + "|");
    EXPECT_EQ(events(), "");
    ++number;
    run_at("2026-11-16 12:02:10");
    EXPECT_FALSE(fs::exists("mailed"));
  }
}

// More than a pipe holds, to a program that reads nothing of it.
TEST_F(DayTest, AMailProgramThatDoesNotReadEndsNothing) {
  put("bin/send-mail", "#!/bin/sh\nprintf started >mailed; echo noise; exit 5\n");
  const std::string recipient = "to@" + std::string(200000, 'x');
  put("d/alerts", "|./bin/send-mail|from@site.example|" + recipient + "|0|9|0|0|1|0|1|0|1|0|1|\n");
  run_at("2026-11-16 12:01:10");
  EXPECT_EQ(events(), "10 alerts settings file is corrupt 0\n");  // a fifteenth piece
  put("d/alerts", "|./bin/send-mail|from@site.example|" + recipient + "|0|9|0|0|1|0|1|0|1|0|1|");
  run_at("2026-11-16 12:02:10");
  EXPECT_EQ(get("mailed"), "started");
  EXPECT_TRUE(get("d/alerts").ends_with("|0|9|1|0|1|0|1|0|1|0|1|"));
  EXPECT_EQ(started(), "top ");
  put("d/alerts", "|./bin/send-mail|from@site.example|to@site.example|0|9|0|0|1|0|1|0|1|0|1|");
  drop_privileges();
  sh("chmod 444 d/alerts");
  run_at("2026-11-16 12:03:10");
  EXPECT_EQ(events(), "1 d/alerts 0\n");
}

// Nothing in two hours of a site of ordinary size ends a run early.
TEST_F(DayTest, ASampleSiteRunsForTwoHours) {
  const SampleSize size;
  std::time_t now = moment("2026-11-16 22:50:10");
  write_sample_site("sample", size, now);
  fs::current_path("sample");
  for (int run = 0; run < 120; ++run, now += 60) {
    write_sample_minute(".", size, now - 60);
    run_at(now);
    ASSERT_EQ(events().find(" 1\n"), std::string::npos) << events();
    ASSERT_EQ((fs::file_size("d/out.lst") - 284) % 216, 0u);
    const std::vector<OutListEntry> entries = list();
    ASSERT_GT(entries.size(), 5u);
    double last = 1e9;  // weights fall in the order of the ranking; some entries have none
    for (const OutListEntry& entry : entries) {
      ASSERT_LE(entry.weight, last) << run;
      if (entry.weight > 0) last = entry.weight;
    }
  }
  EXPECT_GT(fs::file_size("d/h/all.his"), 100u);
}

}  // namespace
}  // namespace vantrel
