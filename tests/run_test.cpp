// The run from start to end: guards, early ends, events, the end-of-run check.
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <set>

#include "base/files.h"
#include "base/replace_file.h"
#include "base/text.h"
#include "run/error_page.h"
#include "run/event_log.h"
#include "run/events.h"
#include "site_fixture.h"

namespace vantrel {
namespace {

constexpr const char* kHit = "|1.1.1.1|alpha|x|0|moz|0|/|||||\n";

class RunTest : public SiteFixture {
 protected:
  // A site on which a run at 13:00 (minute 780 of day 320) does something in every phase.
  static void prepare_busy_minute() {
    change_trade(kAlpha, [](TradeRecord& trade) { trade.hours_left = 3; });
    put("d/alerts", "|./bin/send-mail|from@site.example|to@site.example|0|9|0|0|1|0|1|0|1|0|1|");
    put_run_history(moment("2026-11-16 13:00"), 3);
    put(log_path("in", moment("2026-11-16 12:59")), kHit);
    sh("touch l/in/26-319-11-58 l/in/26-319-11-59 l/out/26-319-11-58 l/out/26-319-11-59");
  }

  // The marks a run leaves, in the order of its phases.
  static std::string reached() {
    const std::string runs = get("l/sys/cron.run");
    const bool logs = fs::exists("l/in/26-319-11-58") || fs::exists("l/in/26-319-11-59") ||
                      fs::exists("l/out/26-319-11-58") || fs::exists("l/out/26-319-11-59");
    const std::pair<const char*, bool> marks[] = {
        {"disk ", !fs::is_symlink("l/hdd.check") && get("l/hdd.check") == "0123456789"},
        {"guard ", runs.ends_with("59\n11161300\n") && get("l/sys/cron.last") == "11161300"},
        {"index ", trade(kAlpha).hours_left == 2},
        {"slots ", slot_of(kAlpha, 779)[slot::rin] == 1},
        {"sum ", windows(kAlpha).last60[slot::rin] == 1},
        {"list ", fs::exists("d/out.lst")},
        {"logs ", !logs},
        {"mail ", fs::exists("mailed")},
        {"end ", started() == "hta top "}};
    std::string text;
    for (const auto& [name, left] : marks) text += left ? name : "";
    return text;
  }

  // The table of events has its rows in the order in which a run meets what they tell.
  void expect_rows_in_order(const std::string& events) {
    const auto table = all_events();
    Pieces lines = lines_of(events);
    for (std::string_view line; lines.next(line);) {
      // How much of the line a row's text says, up to what the run fills in.
      const auto told = [&line](const Event* event) {
        const std::string text = std::string(event->code) + " " + std::string(event->subject) +
                                 " " + std::string(event->level);
        const std::size_t open = std::min(text.find('<'), text.size());
        const bool fits = line.starts_with(text.substr(0, open)) &&
                          line.ends_with(text.substr(text.find('>') + 1));
        return fits ? open : 0;
      };
      const auto row = std::ranges::max_element(table, {}, told);
      if (!rows_met_.insert(row - table.begin()).second) continue;
      EXPECT_EQ(*rows_met_.rbegin(), row - table.begin()) << line;
    }
  }

 private:
  std::set<std::ptrdiff_t> rows_met_;
};

TEST_F(RunTest, AnEarlyEndLeavesWhatItsPhasesWroteAndOneEvent) {
  const std::string guard = "disk guard ";
  const std::string sum = guard + "index slots sum ";
  const std::string all = sum + "list logs mail end ";
  const std::string hdd = "10 unable to perform hdd check ";
  const struct {
    const char* damage;
    std::string event;
    std::string reached;
    std::string page;
  } cases[] = {
      {"true", "", all, ""},
      {"echo '  30 ' >d/sleep", "", "", ""},
      {"echo 10 >d/sleep", "", all, ""},
      {"mkdir l/hdd.check", hdd + "(write test) 1\n", "", ""},
      {"touch l/hdd.check; chmod 222 l/hdd.check", hdd + "(read test) 1\n", "", ""},
      {"ln -s /dev/full l/hdd.check", hdd + "(disk full?) 1\n", "", ""},
      {"touch -d '2026-11-16 13:00:59' l/sys/cron.last", "", "disk ", ""},
      {"touch -d '2026-11-16 12:59:59' l/sys/cron.last", "", all, ""},
      {"rm d/t/index; rm d/h/*", "1 d/t/index 1\n", "disk ", ""},
      {": >d/t/index", "10 database was not fully loaded 1\n", "disk ", ""},
      {"truncate -s 8964 d/t/index", "10 database was not fully loaded 1\n", "disk ", ""},
      {"echo 11161300 >l/sys/cron.run; seq 60 >>l/sys/cron.run",
       "10 cron has already run this minute (double cron detected) 1\n", "disk ", ""},
      {"rm d/t/sum", "1 d/t/sum 1\n", guard, ""},
      {"rm d/traffic.set d/geo.rating", "", guard, "Unable to open file <b>d/traffic.set</b>"},
      {"rm d/geo.rating d/ip.psv", "1 d/geo.rating 1\n", guard, ""},
      {"rm d/ip.psv d/agent.rating", "1 ip.psv 1\n", guard, ""},
      {"rm d/agent.rating d/request.rating", "1 d/agent.rating 1\n", guard, ""},
      {"rm d/request.rating d/tags.rating", "1 d/request.rating 1\n", guard, ""},
      {"rm d/tags.rating d/set", "1 d/tags.rating 1\n", guard, ""},
      {"rm d/set", "1 d/set 1\n", guard, ""},
      {"printf '1\n2\n3\n4\n5\n' >d/set", "10 file d/set is corrupt 1\n", guard, ""},
      {"printf '1\n2\n3\n4\n5\n6\n\n' >d/set", "10 file d/set is corrupt 1\n", guard, ""},
      {"chmod 444 d/t/index", "1 d/t/index 1\n", guard, ""},
      {"rm d/t/3", "1 d/t/3 1\n", guard + "index ", ""},
      {"chmod 444 d/t/sum", "1 d/t/sum 1\n", guard + "index slots ", ""},
      {"rm d/out.set d/out.mod", "1 d/out.set 1\n", sum, ""},
      {"rm d/out.mod d/nm/track", "1 d/out.mod 1\n", sum, ""},
      {"rm d/nm/track", "", sum, "Unable to open file <b>d/nm/track</b>"},
      {"chmod 444 l/sys/cron.run", "", "disk " + all.substr(guard.size()), ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.damage);
    lay_out();
    prepare_busy_minute();
    sh(c.damage);
    if (std::string(c.damage).find("chmod") != std::string::npos) drop_privileges();
    run_at("2026-11-16 13:00:10");
    EXPECT_EQ(events(), c.event);
    expect_rows_in_order(c.event);
    EXPECT_EQ(fs::exists("d/t/index") ? reached() : "disk ", c.reached);
    EXPECT_NE(printed_.find(c.page), std::string::npos);
    EXPECT_EQ(printed_.empty(), c.page.empty());
  }
}

// Everything that is only reported, all at once: the order of the phases is the order of the lines.
TEST_F(RunTest, ReportedFaultsStandInTheLogInTheOrderOfThePhases) {
  put_run_history(moment("2026-11-16 23:59"), 31, 2);
  sh("rm d/jb d/ds d/proxy d/caps d/alerts d/se d/h/beta.his d/h/all.his d/h/trades.his d/t/33");
  sh("mkdir d/out.lst d/t/33; chmod 444 l/sys/cron.run; chmod 555 d/h");
  change_trade(kGamma, [](TradeRecord& trade) { trade.name[2] = '/'; });
  drop_privileges();
  run_at("2026-11-16 23:59:10");
  EXPECT_EQ(events(),
            "1 d/t/jb 0\n10 stats of the last X days may not be accurate 0\n1 d/h/beta.his 0\n"
            "1 d/h/ga/ma.his 0\n1 d/ds 0\n10 dynamic skim settings can not be loaded 0\n"
            "1 d/proxy 0\n1 d/t/33 0\n1 d/caps 0\n10 unable to load the trade caps 0\n"
            "1 d/out.lst 0\n1 d/h/beta.his 0\n1 d/h/ga/ma.his 0\n1 d/h/all.his 0\n"
            "1 d/h/trades.his 0\n1 d/alerts 0\n10 alerts settings file is corrupt 0\n3  0\n"
            "1 l/sys/cron.run 0\n");
  expect_rows_in_order(events());
  EXPECT_TRUE(get("l/sys/sys.log").starts_with("|202611162359|cron|1|d&#47;t&#47;jb|0||||\n"));
  EXPECT_EQ(started(), "tar zcf d/backup/26-320-23.tar.gz d/t d/gr d/h d/tpl d/css sync ");
}

TEST_F(RunTest, EventsAndPagesHaveTheMarkupOfTheSite) {
  fs::remove("d/backup");
  run_at("2026-11-16 23:20:10");
  const std::string opening =
      "<div align=center>\n<font style=\"font:normal 8pt arial;\";>"
      "<font style=\"color:red;\"><b>Error</b></font><br>\n";
  const std::string check = "Please check file permissions and try again";
  EXPECT_EQ(printed_, opening + "Unable to open directory <b>d/backup/</b><br>\n" + check +
                          ".<br>\n</font>\n</div>\n</body>\n</html>");
  EXPECT_EQ(started(), "top ");  // the run went on
  testing::internal::CaptureStdout();
  error_page_file("d/x", "a.cgi", true);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Content-type: text/html\r\n\r\n<html>\n<head>\n<title>Vantrel</title>\n</head>\n"
            "<body bgcolor=white>\n" +
                opening + "Unable to open file <b>d/x</b><br>\n" + check +
                "<br>\n<br><br>\n<a href=\"a.cgi\">click here to return to a.cgi</a><br>\n"
                "</font></div></body>\n</html>");
  log_event("c;r\n", "1/2", "a;b<c>\r\n`'\"!\\/", "1", "x");
  EXPECT_EQ(get("l/sys/sys.log"),
            "|202611162320|c&#59;r|1/2|a&#59;b&#60;c&#62;&#96;&#39;&#34;&#33;&#92;&#47;|1|x|||\n");
}

TEST_F(RunTest, SecondsFrom53CountAsTheNextMinuteButForTheStampAndTheLogs) {
  const struct {
    const char* start;
    const char* sleep;
    std::string started;  // hta at minutes divisible by 3, top at even ones
  } cases[] = {
      {"12:04:52", "", "top "},   {"12:05:53", "", "hta top "},   {"12:05:59", "1", "hta top "},
      {"12:05:59", "2", ""},      {"12:06:30", "30", "hta top "}, {"12:06:29", "+30x", ""},
      {"12:06:00", "49", ""},     {"12:06:00", "50", "hta top "}, {"12:06:00", "1", ""},
      {"12:09:00", "-3", "hta "}, {"12:59:55", "", "hta top "}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.start);
    lay_out();
    const std::time_t start = moment(std::string("2026-11-16 ") + c.start);
    put("d/sleep", c.sleep);
    put(log_path("in", start - 60), kHit);
    run_at(start);
    EXPECT_EQ(started(), c.started);
    const std::string minute = {c.start[0], c.start[1], c.start[3], c.start[4]};
    EXPECT_EQ(get("l/sys/cron.last"), c.started.empty() ? "" : "1116" + minute);
    EXPECT_EQ(windows(kAlpha).last60[slot::rin], c.started.empty() ? 0 : 1);
  }
}

// What makes the end of the run synchronise, and when it stores that it did.
TEST_F(RunTest, SynchronisationFollowsStateClockWindowsAndRunHistory) {
  enum Sign { kNone, kNegative, kHourOnly, kHourAndDay };
  const std::string asked = "10 synchronizing databases 0\n";
  const struct {
    const char* time;
    const char* state;
    Sign sign;
    int runs;         // in the run history before this one
    int minutes_ago;  // the last of them
    std::string started;
    std::string events;
    bool stored;
  } cases[] = {
      {"05:30", "|2|", kNone, 5, 1, "sync hta top ", "", false},
      {"11:30", "|2|", kNone, 5, 1, "sync hta top ", "", false},
      {"17:30", "|2|", kNone, 5, 1, "sync hta top ", "", false},
      {"23:30", "|2|", kNone, 5, 1, "sync hta top ", "", false},
      {"06:30", "|2|", kNone, 5, 1, "hta top ", "", false},
      {"05:31", "|2|", kNone, 5, 1, "", "", false},
      {"05:30", "|4|", kNone, 5, 1, "hta top ", "", false},
      {"05:31", "|1|", kNone, 5, 1, "sync ", asked, true},
      {"05:31", "1", kNone, 5, 1, "sync ", asked, true},
      {"05:31", "|1 |", kNone, 5, 1, "", "", false},
      {"05:31", "|666|x", kNone, 5, 1, "sync ", "", true},
      {"05:31", "|3|", kNone, 5, 1, "", "", false},
      {"05:31", "|3|x|", kNegative, 5, 1, "sync ", "", true},
      {"05:35", "|3|", kNegative, 5, 1, "", "", false},  // clamped before it is looked at
      {"05:31", "|2|", kNegative, 5, 1, "", "", false},
      {"05:20", "|2|", kHourOnly, 5, 1, "sync top ", "", true},
      {"05:25", "|2|", kHourOnly, 5, 1, "", "", false},
      {"05:20", "|1|", kHourOnly, 5, 1, "sync top ", "", true},  // hides the request
      {"05:20", "|2|", kHourAndDay, 5, 1, "top ", "", false},
      {"05:23", "|2|", kNone, 1, 2, "sync ", "", false},
      {"05:23", "|4|", kNone, 1, 2, "sync ", "", true},
      {"05:23", "|2|", kNone, 8, 2, "sync ", "", false},  // too few runs to speak of a gap
      {"05:23", "|2|", kNone, 9, 2, "sync ", "3  0\n", true},
      {"05:23", "|4|", kNone, 50, 1, "", "", false},
      {"05:27", "|2|", kNone, 0, 1, "hta ", "", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.time) + " " + c.state);
    lay_out();
    const std::time_t now = moment(std::string("2026-11-16 ") + c.time);
    const std::string lines = "|41|\r\n2|two|\n\n5\n";
    put("d/set", lines + c.state + "\n|10|");
    put_run_history(now, c.runs, c.minutes_ago);
    const TrafficCounters five = counters({{slot::rin, 5}});
    if (c.sign == kNegative) set_windows(kAlpha, {{}, counters({{slot::rtc, -1}}), {}});
    if (c.sign == kHourOnly) set_windows(kAlpha, {five, {}, {}});
    if (c.sign == kHourAndDay) set_windows(kAlpha, {five, five, {}});
    run_at(now);
    EXPECT_EQ(started(), c.started);
    EXPECT_EQ(events(), c.events);
    EXPECT_EQ(get("d/set"), lines + (c.stored ? "|2|\n|10|\n" : std::string(c.state) + "\n|10|"));
  }
}

TEST_F(RunTest, TheRunHistoryIsComparedUpToFortyEntriesAndCutToTwentyAboveThirty) {
  for (const int runs : {5, 29, 30, 38, 39}) {
    lay_out();
    const std::time_t now = moment("2026-11-16 14:31:10");
    put_run_history(now, runs);
    if (runs != 29 && runs != 30) {  // an older hole, seen while it is among the 40
      put("l/sys/cron.run", "11160000\n11160001\n11160002\n11160003\n" + get("l/sys/cron.run"));
    }
    const std::string whole = get("l/sys/cron.run") + "11161431\n";
    run_at(now);
    EXPECT_EQ(events(), runs == 5 || runs == 38 ? "3  0\n" : "") << runs;
    EXPECT_EQ(get("l/sys/cron.run"), runs < 30 ? whole : whole.substr(whole.size() - 20 * 9));
  }
}

// Where only a part of a text finds room the rest goes as well, but for a file others append to.
TEST_F(RunTest, AFailedAppendIsCutOffAndAPipeIsNeverReplaced) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  for (const auto& [torn, size] : {std::pair{Torn::cut, 100u}, {Torn::keep, 110u}}) {
    put("his", std::string(100, 'x'));
    const rlimit narrow{110, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &narrow), 0);
    EXPECT_FALSE(append_to_file("his", std::string(20, 'y'), torn));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(get("his").size(), size);
  }
  sh("mkfifo pipe");
  EXPECT_FALSE(replace_file("pipe", "text"));
  EXPECT_TRUE(fs::is_fifo("pipe"));
}

// A program started while broken pipes are ignored would not stop when its reader does.
TEST_F(RunTest, CompanionsAreStartedWithTheirSignalsAndMayFail) {
  put("sh_hta.cgi", "#!/bin/sh\nsh -c 'kill -PIPE $$; echo survived >started'; exit 3");
  put("sh_top.cgi", "#!/bin/sh\nexit 7");
  run_at("2026-11-16 12:06:10");
  EXPECT_EQ(started(), "");
  EXPECT_EQ(get("l/sys/cron.last"), "11161206");
}

}  // namespace
}  // namespace vantrel
