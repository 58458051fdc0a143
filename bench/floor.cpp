// The floor under a run: only the input and output no run of the site can avoid. Every byte it must
// read is read with large reads and its bars are counted; every statistics file is opened twice, to
// read two slots and to write one; a summary and a list of the same size as the site's are written.
// Nothing is parsed and nothing computed, so no run can be faster.
//
//   vantrel-floor MINUTES [plain] [flush]     in the site's directory
//
// MINUTES of hit logs are read. Bars are counted 64 bytes at a time, which costs next to nothing;
// with "plain", as the library's std::count does it, which is what a straightforward program pays.
// The summary is written over the old one; with "flush" it is written beside it, flushed to disk
// and renamed, which a run owes to the safety of its data.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kRecordSize = 996;  // of d/t/index: id at 0, name at 4
constexpr std::size_t kNameSize = 76;
constexpr std::size_t kSlotSize = 56;
constexpr std::size_t kListHeader = 284;  // of d/out.lst
constexpr std::size_t kListEntry = 216;   // for each trade
constexpr std::size_t kChunk = 256 * 1024;

const char* const kFiles[] = {"d/sleep",
                              "l/hdd.check",
                              "d/jb",
                              "l/sys/cron.run",
                              "d/ds",
                              "d/se",
                              "d/proxy",
                              "d/ip.psv",
                              "d/traffic.set",
                              "d/geo.rating",
                              "d/request.rating",
                              "d/tags.rating",
                              "d/set",
                              "d/agent.rating",
                              "d/out.set",
                              "d/out.mod",
                              "d/caps",
                              "d/alerts",
                              "d/nm/track"};

char chunk[kChunk];

// Counts in 64 lanes of a byte each, which the compiler keeps in vector registers.
std::uint64_t count_bars_in_lanes(const char* text, std::size_t size) {
  constexpr std::size_t kLanes = 64;
  constexpr std::size_t kMostRounds = 255;
  std::uint64_t bars = 0;
  while (size >= kLanes) {
    std::uint8_t lanes[kLanes] = {};
    std::size_t rounds = 0;
    for (; rounds < kMostRounds && size >= kLanes; ++rounds, text += kLanes, size -= kLanes) {
      for (std::size_t i = 0; i < kLanes; ++i) {
        lanes[i] = static_cast<std::uint8_t>(lanes[i] + (text[i] == '|' ? 1 : 0));
      }
    }
    for (const std::uint8_t lane : lanes) bars += lane;
  }
  for (; size > 0; --size) bars += *text++ == '|' ? 1 : 0;
  return bars;
}

std::uint64_t count_bars_plainly(const char* text, std::size_t size) {
  return static_cast<std::uint64_t>(std::count(text, text + size, '|'));
}

std::uint64_t (*count_bars)(const char*, std::size_t) = count_bars_in_lanes;

std::uint64_t count_bars_of_file(const char* path) {
  const int file = ::open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return 0;
  std::uint64_t bars = 0;
  ssize_t count = 0;
  do {
    count = ::read(file, chunk, kChunk);
    if (count > 0) bars += count_bars(chunk, static_cast<std::size_t>(count));
  } while (count == static_cast<ssize_t>(kChunk));
  ::close(file);
  return bars;
}

std::vector<char> read_whole(const char* path) {
  const int file = ::open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return {};
  std::vector<char> bytes(static_cast<std::size_t>(::lseek(file, 0, SEEK_END)));
  if (::pread(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    bytes.clear();
  }
  ::close(file);
  return bytes;
}

void write_whole(const char* path, const void* bytes, std::size_t size, bool flush) {
  const int file = ::open(path, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (file < 0 || ::write(file, bytes, size) != static_cast<ssize_t>(size)) {
    std::fprintf(stderr, "cannot write %s\n", path);
    std::exit(1);
  }
  if (flush) ::fsync(file);
  ::close(file);
}

std::uint64_t read_logs(std::time_t now, int minutes) {
  std::uint64_t bars = 0;
  for (int i = 1; i <= minutes; ++i) {
    const std::time_t minute = now - i * 60;
    const std::tm local = *std::localtime(&minute);
    char path[64];
    std::strftime(path, sizeof path, "l/in/%y-%j-%H-%M", &local);
    bars += count_bars_of_file(path);
    std::strftime(path, sizeof path, "l/out/%y-%j-%H-%M", &local);
    bars += count_bars_of_file(path);
  }
  return bars;
}

std::string statistics_path(const char* record) {
  std::int32_t id = 0;
  std::memcpy(&id, record, sizeof id);
  return "d/t/" + std::to_string(id);
}

off_t slot_offset(std::time_t minute) {
  const std::tm local = *std::localtime(&minute);
  return (local.tm_hour * 60 + local.tm_min) * static_cast<off_t>(kSlotSize);
}

void visit_statistics(const std::vector<char>& index, std::time_t oldest) {
  const off_t leaving_day = slot_offset(oldest);
  const off_t leaving_hour = slot_offset(oldest - 3600);
  char slots[2][kSlotSize] = {};
  bool complete = true;
  for (std::size_t at = 0; at < index.size(); at += kRecordSize) {
    const int file = ::open(statistics_path(&index[at]).c_str(), O_RDONLY | O_CLOEXEC);
    complete = ::pread(file, slots[0], kSlotSize, leaving_day) == kSlotSize && complete;
    complete = ::pread(file, slots[1], kSlotSize, leaving_hour) == kSlotSize && complete;
    ::close(file);
  }
  for (std::size_t at = 0; at < index.size(); at += kRecordSize) {
    const int file = ::open(statistics_path(&index[at]).c_str(), O_RDWR | O_CLOEXEC);
    complete = ::pwrite(file, slots[0], kSlotSize, leaving_day) == kSlotSize && complete;
    ::close(file);
  }
  if (!complete) std::exit(1);
}

std::uint64_t read_history(const std::vector<char>& index) {
  std::uint64_t bars = 0;
  std::string path;
  for (std::size_t at = 0; at < index.size(); at += kRecordSize) {
    const char* name = &index[at + 4];
    path.assign("d/h/").append(name, ::strnlen(name, kNameSize)).append(".his");
    bars += count_bars_of_file(path.c_str());
  }
  return bars;
}

}  // namespace

int main(int argc, char** argv) {
  const int minutes = argc > 1 ? std::atoi(argv[1]) : 1;
  bool flush = false;
  for (int i = 2; i < argc; ++i) {
    if (std::strcmp(argv[i], "plain") == 0) count_bars = count_bars_plainly;
    if (std::strcmp(argv[i], "flush") == 0) flush = true;
  }
  const std::time_t now = std::time(nullptr);

  std::vector<char> index = read_whole("d/t/index");
  index.resize(index.size() / kRecordSize * kRecordSize);
  const std::vector<char> summary = read_whole("d/t/sum");
  std::uint64_t bars = count_bars(summary.data(), summary.size());
  bars += read_history(index);
  for (const char* path : kFiles) bars += count_bars_of_file(path);
  bars += read_logs(now, minutes);

  visit_statistics(index, now - minutes * 60);
  write_whole(flush ? "d/t/sum.new" : "d/t/sum", summary.data(), summary.size(), flush);
  if (flush) std::rename("d/t/sum.new", "d/t/sum");
  const std::vector<char> list(kListHeader + kListEntry * (index.size() / kRecordSize));
  write_whole("d/out.lst", list.data(), list.size(), false);

  // A result, so that no count can be left out.
  return bars == 0 ? 1 : 0;
}
