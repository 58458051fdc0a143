#include "soak_site.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "base/clock.h"
#include "base/text.h"
#include "store/trade_record.h"

namespace soak {
namespace {

void write_rules() {
  std::string text;
  for (int number = 0; number < 36; ++number) {
    const Rule r = rule(number);
    text += "|0|" + std::to_string(r.operation) + "|" + std::to_string(r.value) + "|0|\n";
  }
  write_file("d/traffic.set", text);
}

// Country aa is good, bb neutral, cc bad, dd not rated; 4.0.0.0/8 is a gap.
void write_tables() {
  write_file("d/geo.rating", "|1|AA|\n|2|bb|\n|3|cc|\n");
  write_file("d/ip.psv",
             "|16777216|33554431|AA|\n|33554432|50331647|bb|\n|50331648|67108863|cc|\n"
             "|83886080|100663295|dd|\n");
  write_file("d/agent.rating", "|1|Fine|\n|2|fair|\n|3|foul|\n");
  write_file("d/request.rating", "|1|/good|\n|3|/bad|\n|1|/both|\n|3|/both|\n");
  write_file("d/tags.rating", "|1|gold|\n|3|dross|\n");
  write_file("d/proxy", "1.9.9.9:8080\n3.9.9.9 5.9.9.9\n");
  write_file("d/se", "searcher\nnoref\n");
  write_rules();
}

void write_settings() {
  write_file("d/set",
             "|1|one|\n|2|two|\n|3|three|\n|" + std::to_string(kCefLimit) + "|\n|2|\n|10|\n");
  write_file("d/ds", "|0|0|0|0|");
  write_file("d/jb", "1");
  write_file("d/out.set", "1|500|\n2|250|\n3|100|\n");
  write_file("d/out.mod", "|100|100|100|1|1|1|0|0|1|");
  write_file("d/caps", "|111|3|300|\n");
  write_file("d/nm/track", "|1|");
  write_file("d/alerts", "|/usr/sbin/sendmail|||0|0|1|0|1|0|1|0|1|0|1|");
}

void write_trades(const std::vector<std::vector<Counts>>& history, std::time_t start) {
  std::string index;
  for (std::size_t p = 0; p < kEntries; ++p) {
    vantrel::TradeRecord record;
    record.id = id_of(p);
    vantrel::put_field_text(record.name, name_of(p));
    index.append(reinterpret_cast<const char*>(&record), sizeof record);
    write_file("d/t/" + std::to_string(record.id), std::string(kMinutesPerDay * 56, '\0'));
    std::string lines;
    std::time_t day = start - static_cast<std::time_t>(history[p].size()) * 86400;
    for (const Counts& counts : history[p]) {
      lines += history_line(day, counts);
      day += 86400;
    }
    write_file("d/h/" + name_of(p) + ".his", lines);
  }
  write_file("d/t/index", index);
  write_file("d/t/sum", "");
}

// Programs the run starts: each leaves the line it was called with in the file "calls".
void write_programs() {
  for (const char* name : {"sh_sync.cgi", "sh_hta.cgi", "sh_top.cgi", "bin/tar"}) {
    const std::string archive = std::string_view(name) == "bin/tar" ? ": > \"$2\"\n" : "";
    write_file(name, "#!/bin/sh\necho \"${0##*/} $*\" >> calls\n" + archive);
    std::filesystem::permissions(name, std::filesystem::perms::owner_all);
  }
}

}  // namespace

std::string name_of(std::size_t position) {
  return (position < kReserved ? "entry" : "trade") + std::to_string(position) + ".example";
}

std::int32_t id_of(std::size_t position) {
  return static_cast<std::int32_t>(position < kReserved ? position : 100 + position);
}

Rule rule(int number) {
  switch (number) {
    case 5:   // incoming agent of group 3
    case 22:  // click through a proxy
      return {2, 0.0f};
    case 2:
    case 7:
    case 14:
    case 19:
    case 29:
    case 34:
      return {1, 1.25f};
    case 11:
      return {3, 9.0f};  // no such operation
    default:
      return {0, static_cast<float>(number % 9) * 0.25f};
  }
}

void lay_out_site(const std::vector<std::vector<Counts>>& history, std::time_t start) {
  for (const char* folder : {"d/t", "d/h", "d/nm", "d/backup", "l/in", "l/out", "l/sys", "bin"}) {
    std::filesystem::create_directories(folder);
  }
  write_tables();
  write_settings();
  write_trades(history, start);
  write_programs();
}

std::string history_line(std::time_t day, const Counts& counts) {
  std::string line = "|";
  line += vantrel::format_time("%Y%m%d", day);
  for (const std::int32_t value : counts) line.append("|").append(std::to_string(value));
  return line + "|||||||||||||||\n";
}

void write_file(const std::string& path, std::string_view text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

std::string read_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void set_file_time(const std::string& path, std::time_t moment) {
  const timespec times[2] = {{moment, 0}, {moment, 0}};
  if (::utimensat(AT_FDCWD, path.c_str(), times, 0) != 0) {
    throw std::runtime_error("cannot set the time of " + path);
  }
}

}  // namespace soak
