#include "sample_site.h"

#include <stdexcept>

#include "sample/logs.h"
#include "sample/settings.h"
#include "sample/store.h"

namespace vantrel {
namespace {

void check_size(const SampleSize& size) {
  if (size.trades < 1 || size.hits_per_minute < 0 || size.log_minutes < 0 || size.ip_ranges < 0 ||
      size.history_days < 0 || size.proxies < 0 || size.agent_fragments < 0) {
    throw std::invalid_argument("a site has at least one trade, and no size is negative");
  }
}

void make_folders(const std::filesystem::path& directory) {
  for (const char* folder : {"d/t", "d/h", "d/gr", "d/tpl", "d/css", "d/nm", "d/backup", "l/in",
                             "l/out", "l/sys", "mail"}) {
    std::filesystem::create_directories(directory / folder);
  }
}

}  // namespace

void write_sample_site(const std::filesystem::path& directory, const SampleSize& size,
                       std::time_t now) {
  check_size(size);
  make_folders(directory);
  const sample::Model model(size);
  const sample::SiteTotals totals = sample::write_store(directory, model, now);
  sample::write_settings(directory, model, totals);
  sample::write_run_history(directory, now);
  sample::LogWriter logs(model);
  for (int minute = 1; minute <= size.log_minutes; ++minute) {
    logs.write_minute(directory, now - minute * 60);
  }
}

void write_sample_minute(const std::filesystem::path& directory, const SampleSize& size,
                         std::time_t minute) {
  check_size(size);
  const sample::Model model(size);
  sample::LogWriter(model).write_minute(directory, minute);
}

}  // namespace vantrel
