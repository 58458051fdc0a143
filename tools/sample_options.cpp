#include "sample_options.h"

#include <array>
#include <charconv>
#include <iostream>
#include <string_view>

#include "base/version.h"

namespace vantrel {
namespace {

struct SizeOption {
  const char* name;
  int SampleSize::*field;
  const char* meaning;
};

constexpr std::array<SizeOption, 7> kSizeOptions{{
    {"--trades", &SampleSize::trades, "trades beside the reserved entries"},
    {"--hits", &SampleSize::hits_per_minute, "records a minute and direction"},
    {"--minutes", &SampleSize::log_minutes, "minutes of hit logs"},
    {"--ranges", &SampleSize::ip_ranges, "address ranges"},
    {"--days", &SampleSize::history_days, "days of history"},
    {"--proxies", &SampleSize::proxies, "proxies"},
    {"--agents", &SampleSize::agent_fragments, "rated fragments of user agents"},
}};

template <typename Number>
bool read_number(std::string_view text, Number& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end && number >= 0;
}

bool read_option(std::string_view name, std::string_view value, SampleOptions& options) {
  if (name == "--seed") return read_number(value, options.size.seed);
  if (name == "--at") return read_number(value, options.at);
  for (const SizeOption& option : kSizeOptions) {
    if (name == option.name) return read_number(value, options.size.*option.field);
  }
  return false;
}

}  // namespace

std::string sample_usage(const char* program) {
  const SampleSize defaults;
  std::string text = "usage: " + std::string(program) + " DIRECTORY [OPTION N]...\n";
  for (const SizeOption& option : kSizeOptions) {
    std::string line = "  " + std::string(option.name) + " N";
    line.resize(16, ' ');
    text += line + option.meaning + " (" + std::to_string(defaults.*option.field) + ")\n";
  }
  return text +
         "  --seed N      the same number gives the same site (1)\n"
         "  --at N        seconds since the epoch of the first run (now)\n"
         "  --curve       traffic follows the hour of the day\n"
         "  --version     show the version\n";
}

bool answer_about(const char* program, int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument != "--help" && argument != "--version") continue;
    std::cout << (argument == "--help" ? sample_usage(program)
                                       : std::string(program) + " " + kVersion + "\n");
    return true;
  }
  return false;
}

std::optional<SampleOptions> parse_sample_options(int argc, char** argv) {
  SampleOptions options;
  options.at = std::time(nullptr);
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--curve") {
      options.size.day_curve = true;
    } else if (argument.starts_with("--")) {
      if (++i == argc || !read_option(argument, argv[i], options)) return std::nullopt;
    } else if (options.directory.empty()) {
      options.directory = argument;
    } else {
      return std::nullopt;
    }
  }
  if (options.directory.empty() || options.size.trades < 1) return std::nullopt;
  return options;
}

}  // namespace vantrel
