// What every fuzz target stands on: a small site in a directory of its own, programs that are noted
// instead of started, and plain references to compare with. Targets check results, not only that
// nothing breaks: a parser that skips a byte is as wrong as one that reads past the end.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "store/trade_index.h"

namespace vantrel::fuzz {

// The target: everything it does with one input, in the directory of the site.
void try_input(const std::string& input);

// Stops the fuzzer when something that must hold does not.
void require(bool holds, const char* what_must_hold);

struct SiteFile {
  std::string path;
  std::string bytes;
};

// The files of fuzz/site/, sorted by path. The first call lays them out in a new directory, which
// becomes the working directory and is gone when the process ends, and drops standard output.
const std::vector<SiteFile>& site();

// The site's trades with their windows: entries 0 to 10, then a.com and b.com.
[[nodiscard]] TradeStore store_of_site();

void put(const std::string& path, std::string_view bytes);
[[nodiscard]] std::string get(const char* path);

// The command lines the code under test wanted to run, with their standard input.
struct Program {
  std::string command;
  std::string input;
};
extern std::vector<Program> programs;

// References by the standard library.
[[nodiscard]] std::vector<std::string> getline_pieces(const std::string& text, char end = '|');

// strtol cut to 32 bits. What atoi makes of a larger number differs between libraries of C.
[[nodiscard]] inline std::int32_t plain_int(const std::string& text) {
  return static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
}
[[nodiscard]] std::string lowered(std::string text);
void add_plainly(std::int32_t& counter, const std::string& number);

}  // namespace vantrel::fuzz
