#include "site_fixture.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "base/clock.h"
#include "base/shell.h"
#include "base/text.h"
#include "run/driver.h"

namespace vantrel {
namespace {

std::time_t frozen_clock = 0;

std::vector<TradeRecord> load_trades() {
  std::vector<TradeRecord> trades(fs::file_size("d/t/index") / sizeof(TradeRecord));
  std::ifstream("d/t/index")
      .read(reinterpret_cast<char*>(trades.data()),
            static_cast<std::streamsize>(trades.size() * 996));
  return trades;
}

void store_trades(const std::vector<TradeRecord>& trades) {
  std::ofstream("d/t/index")
      .write(reinterpret_cast<const char*>(trades.data()),
             static_cast<std::streamsize>(trades.size() * 996));
}

std::string summary_line(int id, const Windows& windows) {
  std::string line = "|" + std::to_string(id) + "|";
  for (const auto* window : {&windows.last60, &windows.last24, &windows.last07}) {
    for (const std::int32_t value : window->values) line += std::to_string(value) + "|";
  }
  return line + "\n";
}

// The texts of a neutral site, beside the trades' own files.
constexpr std::pair<const char*, const char*> kFiles[] = {
    {"d/jb", ""},
    {"d/ds", "|0|0|0|0|"},
    {"d/se", "listed.example\n"},
    {"d/proxy", "9.9.9.9:80\n"},
    {"d/geo.rating", "|1|US|\n|2|fr|\n|3|de|\n"},
    // 1.x.x.x is us, 2 de, 3 a gap, 4 fr, 5 nl, which is in no group.
    {"d/ip.psv",
     "|16777216|33554431|US|\n|33554432|50331647|de|\n|67108864|83886079|fr|\n"
     "|83886080|100663295|nl|\n"},
    {"d/agent.rating", "|1|Good|\n|2|neutral|\n|3|bad|\n|12|moz|\n|9|moz|\n"},
    {"d/request.rating", "|1|/good|\n|3|/bad|\n|1|/both|\n|3|/both|\n|2|/neutral|\n"},
    {"d/tags.rating", "|1|gold|\n|3|lead|\n|1|alloy|\n|3|alloy|\n|2|tin|\n"},
    {"d/set", "|41|one|\n|42|two|\n|43|three|\n|5|\n|2|\n|10|\n"},
    {"d/out.set", "a|500|\nb|200|\n"},
    {"d/out.mod", "|100|100|100|1|1|1|0|0|0||"},
    {"d/caps", ""},
    {"d/nm/track", "x|7|"},
    {"d/alerts", "|./bin/send-mail|from@site.example|to@site.example||0|0|0|1|0|0|0|1|0|1|"},
    {"d/h/all.his", ""},
    {"d/h/trades.his", ""},
    {"bin/tar", "#!/bin/sh\nprintf 'tar %s ' \"$*\" >>started\n"},
    {"bin/send-mail", "#!/bin/sh\n{ echo \"$@\"; cat; } >mailed\n"},
    {"sh_top.cgi", "#!/bin/sh\nname=${0#./sh_}; printf '%s ' ${name%.cgi} $2 >>started\n"}};

}  // namespace

TrafficCounters counters(std::initializer_list<std::pair<slot::Counter, std::int32_t>> values) {
  TrafficCounters result;
  for (const auto& [counter, value] : values) result[counter] = value;
  return result;
}

std::time_t moment(const std::string& local) {
  std::tm parts{};
  const char* rest = strptime(local.c_str(), "%Y-%m-%d %H:%M", &parts);
  if (rest != nullptr && *rest == ':') parts.tm_sec = std::atoi(rest + 1);
  parts.tm_isdst = -1;
  return std::mktime(&parts);
}

SiteFixture::SiteFixture() {
  std::string name = (fs::temp_directory_path() / "vantrel-site-XXXXXX").string();
  directory_ = mkdtemp(name.data());
  static const std::string path = std::getenv("PATH") != nullptr ? std::getenv("PATH") : "/bin";
  setenv("PATH", (directory_ / "bin").string().append(":").append(path).c_str(), 1);
  survive_failed_writes();
  lay_out();
}

SiteFixture::~SiteFixture() {
  set_wall_clock(nullptr);
  fs::current_path(directory_);
  restore_privileges();
  fs::current_path("/");
  fs::remove_all(directory_);
}

void SiteFixture::lay_out() {
  fs::current_path(directory_);
  restore_privileges();
  for (const auto& entry : fs::directory_iterator(".")) fs::remove_all(entry.path());
  set_zone("UTC0");
  sh("mkdir -p d/t d/h d/gr d/tpl d/css d/nm d/backup l/in l/out l/sys bin");
  constexpr std::pair<const char*, int> kTrades[] = {
      {"alpha", kAlpha}, {"beta", kBeta}, {"gamma", kGamma}, {"delta", kDelta}};
  std::vector<TradeRecord> trades(15);
  std::string summary;
  for (std::size_t i = 0; i < trades.size(); ++i) {
    const std::string name = i < 11 ? "entry" + std::to_string(i) : kTrades[i - 11].first;
    std::memcpy(trades[i].name, name.data(), name.size());
    trades[i].id = i < 11 ? static_cast<int>(i) : kTrades[i - 11].second;
    summary += summary_line(trades[i].id, {});
    put("d/h/" + name + ".his", "");
    put("d/t/" + std::to_string(trades[i].id), "");
    fs::resize_file("d/t/" + std::to_string(trades[i].id), 80640);
  }
  store_trades(trades);
  put("d/t/sum", summary);
  for (const auto& [path, text] : kFiles) put(path, text);
  for (int i = 0; i < 36; ++i) put("d/traffic.set", get("d/traffic.set") + "|0|0|0|0|\n");
  sh("chmod +x bin/* sh_top.cgi; cp sh_top.cgi sh_hta.cgi; cp sh_top.cgi sh_sync.cgi");
}

void SiteFixture::set_zone(const char* posix_zone) {
  setenv("TZ", posix_zone, 1);
  tzset();
}

void SiteFixture::sh(const std::string& command) {
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

void SiteFixture::put(const std::string& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

std::string SiteFixture::get(const std::string& path) {
  if (!fs::is_regular_file(path)) return "";
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string SiteFixture::log_path(const std::string& direction, std::time_t minute) {
  return "l/" + direction + "/" + format_time("%y-%j-%H-%M", minute);
}

void SiteFixture::change_trade(int id, const std::function<void(TradeRecord&)>& change) {
  std::vector<TradeRecord> trades = load_trades();
  for (TradeRecord& trade : trades) {
    if (trade.id == id) change(trade);
  }
  store_trades(trades);
}

TradeRecord SiteFixture::trade(int id) {
  for (const TradeRecord& trade : load_trades()) {
    if (trade.id == id) return trade;
  }
  return {};
}

void SiteFixture::set_windows(int id, const Windows& windows) {
  std::string summary;
  for (const std::string& line : split(get("d/t/sum"), '\n')) {
    const bool found = line.starts_with("|" + std::to_string(id) + "|");
    summary += found ? summary_line(id, windows) : line + "\n";
  }
  put("d/t/sum", summary);
}

Windows SiteFixture::windows(int id) {
  Windows result;
  TrafficCounters* const order[] = {&result.last60, &result.last24, &result.last07};
  for (const std::string& line : split(get("d/t/sum"), '\n')) {
    const std::vector<std::string> pieces = split(line);
    if (pieces.size() != 44 || pieces[1] != std::to_string(id)) continue;
    for (std::size_t i = 0; i < 42; ++i) order[i / 14]->values[i % 14] = std::stoi(pieces[i + 2]);
  }
  return result;
}

void SiteFixture::set_slot(int id, int minute_of_day, const TrafficCounters& counts) {
  std::fstream file("d/t/" + std::to_string(id), std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(minute_of_day * 56).write(reinterpret_cast<const char*>(&counts), 56);
}

TrafficCounters SiteFixture::slot_of(int id, int minute_of_day) {
  TrafficCounters counts;
  std::ifstream file("d/t/" + std::to_string(id), std::ios::binary);
  file.seekg(minute_of_day * 56).read(reinterpret_cast<char*>(&counts), 56);
  return counts;
}

void SiteFixture::put_run_history(std::time_t now, int runs, int minutes_ago) {
  std::string stamps;
  for (int i = runs - 1; i >= 0; --i) {
    stamps += format_time("%m%d%H%M", now - (minutes_ago + i) * 60) + "\n";
  }
  put("l/sys/cron.run", stamps);
}

void SiteFixture::drop_privileges() {
  if (getuid() != 0) return;
  sh("chown -hR 65534:65534 .");
  ASSERT_EQ(seteuid(65534), 0);
}

// A change of user forbids the leak check to look at the process; allow it again.
void SiteFixture::restore_privileges() {
  if (getuid() == 0 && geteuid() != 0 && seteuid(0) == 0) prctl(PR_SET_DUMPABLE, 1);
  sh("chmod -R u+rwX .");  // or a folder a test closed could not be emptied
}

void SiteFixture::run_at(std::time_t now) {
  for (const char* path : {"l/sys/sys.log", "started", "mailed"}) fs::remove(path);
  frozen_clock = now;
  set_wall_clock([] { return frozen_clock; });
  testing::internal::CaptureStdout();
  maintenance_run();
  printed_ = testing::internal::GetCapturedStdout();
  const fs::path last = "l/sys/cron.last";  // written at the frozen moment, as it were
  if (get(last) == format_time("%m%d%H%M", now))
    sh("touch -d @" + std::to_string(now) + " " + last.string());
}

std::string SiteFixture::events() {
  std::string result;
  for (const std::string& line : split(get("l/sys/sys.log"), '\n')) {
    const std::vector<std::string> fields = split(line);
    result += fields.at(3) + " " + fields.at(4) + " " + fields.at(5) + "\n";
  }
  for (std::size_t at; (at = result.find("&#47;")) != std::string::npos;)
    result.replace(at, 5, "/");
  return result;
}

std::vector<OutListEntry> SiteFixture::list(OutListHeader* header) {
  OutListHeader ignored;
  std::vector<OutListEntry> entries;
  EXPECT_TRUE(decode_out_list(get("d/out.lst"), header != nullptr ? *header : ignored, entries));
  return entries;
}

}  // namespace vantrel
