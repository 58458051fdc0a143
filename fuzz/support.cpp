#include "support.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "base/files.h"
#include "base/shell.h"
#include "store/summary.h"

namespace vantrel {

// In place of the functions that start programs: the linker takes these and leaves the library's.
void survive_failed_writes() {}
void run_command(const std::string& command) { fuzz::programs.push_back({command, ""}); }
bool pipe_to_command(const std::string& command, std::string_view text) {
  fuzz::programs.push_back({command, std::string(text)});
  return true;
}

}  // namespace vantrel

namespace vantrel::fuzz {
namespace {

std::string directory;

std::vector<SiteFile> lay_out_site() {
  const std::filesystem::path source = VANTREL_FUZZ_SITE;
  directory = std::filesystem::temp_directory_path() / "vantrel-fuzz-XXXXXX";
  require(mkdtemp(directory.data()) != nullptr && chdir(directory.c_str()) == 0, "a directory");
  std::atexit([] { std::filesystem::remove_all(directory); });
  require(std::freopen("/dev/null", "w", stdout) != nullptr, "no standard output");
  setenv("TZ", "UTC", 1);
  std::filesystem::copy(source, ".", std::filesystem::copy_options::recursive);
  std::vector<SiteFile> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(source)) {
    const std::string path = entry.path().lexically_relative(source);
    if (entry.is_regular_file()) files.push_back({path, get(path.c_str())});
  }
  std::sort(files.begin(), files.end(),
            [](const SiteFile& a, const SiteFile& b) { return a.path < b.path; });
  return files;
}

}  // namespace

std::vector<Program> programs;

const std::vector<SiteFile>& site() {
  static const std::vector<SiteFile> files = lay_out_site();
  return files;
}

TradeStore store_of_site() {
  TradeStore store;
  require(load_trade_index(store) && build_work_array(store) && load_summary(store), "the trades");
  return store;
}

void require(bool holds, const char* what_must_hold) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what_must_hold);
  std::abort();
}

void put(const std::string& path, std::string_view bytes) {
  require(write_scratch_file(path.c_str(), bytes), "a file can be written");
}

std::string get(const char* path) {
  FileBuffer file;
  static_cast<void>(file.read(path));
  return std::string(file.text());
}

std::vector<std::string> getline_pieces(const std::string& text, char end) {
  std::vector<std::string> pieces;
  std::istringstream stream(text);
  for (std::string piece; std::getline(stream, piece, end);) pieces.push_back(piece);
  return pieces;
}

std::string lowered(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  return text;
}

void add_plainly(std::int32_t& counter, const std::string& number) {
  counter = static_cast<std::int32_t>(static_cast<std::uint32_t>(counter) +
                                      static_cast<std::uint32_t>(plain_int(number)));
}

}  // namespace vantrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vantrel::fuzz::site();
  vantrel::fuzz::try_input({reinterpret_cast<const char*>(data), size});
  return 0;
}
