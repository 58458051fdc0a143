// Two runs, a minute apart, over a small site some of whose files the input has changed.
//
// The input: two bytes for the minute, then parts that begin with FE FF. The first byte of a part
// names a file, the second says what becomes of it: replaced by the rest, overwritten with the rest
// at an offset (two bytes more), cut to that offset, or gone.
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <filesystem>

#include "base/clock.h"
#include "out/out_list.h"
#include "run/driver.h"
#include "support.h"
#include "traffic/hit_logs.h"

namespace vantrel::fuzz {
namespace {

std::time_t now = 0;
bool running = false;

// The hit logs carry the minute in their names.
std::string real_path(std::string path) {
  const std::size_t minute = path.find("minute");
  if (minute == std::string::npos) return path;
  return path.replace(minute, 6, format_time(kMinuteStampFormat, now - 60));
}

void lay_out() {
  for (const char* folder : {"d/h", "l/in", "l/out"}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      std::filesystem::remove(entry.path());
    }
  }
  for (const char* left : {kOutListFile, "l/sys/sys.log"}) std::remove(left);
  for (const SiteFile& file : site()) put(real_path(file.path), file.bytes);
  // Old enough that a run after midnight makes up for a day that was not recorded.
  const timespec long_ago[2] = {{now - 7200, 0}, {now - 7200, 0}};
  utimensat(AT_FDCWD, "d/h/all.his", long_ago, 0);
}

void change_file(const std::string& part) {
  if (part.size() < 4) return;
  const auto byte = [&part](std::size_t i) -> std::size_t {
    return static_cast<unsigned char>(part[i]);
  };
  const SiteFile& file = site()[byte(0) % site().size()];
  const std::size_t what = byte(1) % 4;
  const std::size_t offset = byte(2) << 8 | byte(3);
  std::string bytes = file.bytes;
  if (what == 0) bytes = part.substr(2);
  if (what == 1) bytes.resize(std::max(bytes.size(), offset));
  if (what == 1) bytes.replace(offset, part.size() - 4, part, 4);
  if (what == 2) bytes.resize(offset);
  put(real_path(file.path), bytes);
  if (what == 3) std::remove(real_path(file.path).c_str());
}

// The only command lines that may hold a text of the site are those of its own mail program.
void check_programs() {
  constexpr const char* kHarmless = "abcdefghijklmnopqrstuvwxyz0123456789./_- ";
  for (const auto& [command, mail] : programs) {
    const bool own = command.starts_with("tar zcf d/backup/") || command.starts_with("./sh_");
    require(mail.starts_with("To: ") ||
                (own && command.find_first_not_of(kHarmless) == std::string::npos),
            "a clean command line");
  }
}

void check_files(std::size_t index_size) {
  const std::size_t grown = get("d/t/index").size() - index_size;
  require(grown == 0 || (grown + index_size) % sizeof(TradeRecord) == 0,
          "the index keeps its length, but for a cut record made whole");
  require(grown < sizeof(TradeRecord), "the index keeps its length");
  const std::size_t size = get(kOutListFile).size();
  require(size == 0 || size % sizeof(OutListEntry) == sizeof(OutListHeader) % sizeof(OutListEntry),
          "the outgoing list holds whole entries");
  for (const std::string& line : getline_pieces(get("l/sys/sys.log"), '\n')) {
    require(line.starts_with("|2006") && line.ends_with("|||") &&
                line.find_first_of("<>`'\"!\\/\r") == std::string::npos,
            "every event is one clean line");
  }
}

void check_path(std::string_view path) {
  const bool inside = path.starts_with("d/") || path.starts_with("l/");
  require(inside && path.find("/../") == std::string_view::npos,
          "only files of the site are opened");
}

}  // namespace

void try_input(const std::string& input) {
  if (input.size() < 2) return;
  const int moment =
      static_cast<unsigned char>(input[0]) << 8 | static_cast<unsigned char>(input[1]);
  // 2006-11-16, any minute of the day; the rest of the number is the second.
  now = 1163635200 + moment % 1440 * 60 + moment / 1440;
  set_wall_clock([] { return now; });
  lay_out();
  for (std::size_t begin = input.find("\xFE\xFF"); begin < input.size();) {
    const std::size_t end = std::min(input.find("\xFE\xFF", begin + 2), input.size());
    change_file(input.substr(begin + 2, end - begin - 2));
    begin = end;
  }
  const std::size_t index_size = get("d/t/index").size();
  programs.clear();
  running = true;
  maintenance_run();
  now += 60;
  maintenance_run();
  running = false;
  check_programs();
  check_files(index_size);
}

}  // namespace vantrel::fuzz

// Every file the library opens passes here.
extern "C" int __real_open(const char* path, int flags, ...);
extern "C" int __wrap_open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const auto mode = va_arg(rest, mode_t);
  va_end(rest);
  if (vantrel::fuzz::running) vantrel::fuzz::check_path(path);
  return __real_open(path, flags, mode);
}
