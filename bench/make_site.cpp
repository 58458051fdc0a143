// A site of a given size, for measuring.
//
//   vantrel-bench-site DIRECTORY PRESET [NAME=NUMBER...]
//
// Presets: small, typical, site, big, catchup. The names change single sizes of the preset: trades,
// hits (a minute and direction), minutes (of logs the run has to read), ranges, days, proxies,
// agents, seed. Prints the moment of the run that is to come, in seconds since the epoch.
#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>

#include "sample_site.h"
#include "sizes.h"

namespace {

void change(vantrel::SampleSize& size, const std::string& assignment) {
  const std::size_t sign = assignment.find('=');
  const std::string name = assignment.substr(0, sign);
  const std::map<std::string, int*> sizes = {
      {"trades", &size.trades},         {"hits", &size.hits_per_minute},
      {"minutes", &size.log_minutes},   {"ranges", &size.ip_ranges},
      {"days", &size.history_days},     {"proxies", &size.proxies},
      {"agents", &size.agent_fragments}};
  if (sign == std::string::npos) throw std::invalid_argument("not NAME=NUMBER: " + assignment);
  const int value = std::stoi(assignment.substr(sign + 1));
  if (name == "seed") {
    size.seed = static_cast<std::uint32_t>(value);
  } else {
    *sizes.at(name) = value;
  }
}

// The run before this one was as many minutes ago as there are logs to read.
void set_last_run(const std::filesystem::path& directory, int minutes) {
  const std::time_t last = bench::kNow - minutes * 60;
  char stamp[16];
  const std::tm local = *std::localtime(&last);
  const std::size_t length = std::strftime(stamp, sizeof stamp, "%m%d%H%M\n", &local);
  std::ofstream(directory / "l/sys/cron.run").write(stamp, static_cast<std::streamsize>(length));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: vantrel-bench-site DIRECTORY PRESET [NAME=NUMBER...]\n");
    return 2;
  }
  try {
    ::setenv("TZ", "UTC", 1);
    vantrel::SampleSize size = bench::preset(argv[2]);
    for (int i = 3; i < argc; ++i) change(size, argv[i]);
    vantrel::write_sample_site(argv[1], size, bench::kNow);
    if (size.log_minutes > 1) set_last_run(argv[1], size.log_minutes);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  std::printf("%lld\n", static_cast<long long>(bench::kNow));
  return 0;
}
