#include "sample_site.h"

#include <stdexcept>

#include "base/clock.h"
#include "sample/files.h"
#include "sample/logs.h"
#include "sample/settings.h"
#include "sample/store.h"
#include "store/housekeeping.h"
#include "traffic/hit_logs.h"

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

void write_sample_backup(const std::filesystem::path& directory, std::time_t now) {
  std::tm due = local_time(now);
  const int minute = due.tm_hour * 60 + due.tm_min;
  due.tm_hour = minute >= 12 * 60 - 1 && minute < 24 * 60 - 1 ? 11 : 23;
  if (minute < 12 * 60 - 1) --due.tm_mday;
  due.tm_min = 59;
  due.tm_sec = 0;
  due.tm_isdst = -1;
  const std::time_t moment = std::mktime(&due);
  const std::string stamp = format_time(kHourStampFormat, moment);
  const std::filesystem::path here = std::filesystem::current_path();
  std::filesystem::current_path(directory);
  make_backup(stamp);
  const std::filesystem::path archive = kBackupDirectory + stamp + ".tar.gz";
  if (std::filesystem::exists(archive)) sample::set_modified(archive, moment);
  std::filesystem::current_path(here);
}

void write_sample_minute(const std::filesystem::path& directory, const SampleSize& size,
                         std::time_t minute) {
  check_size(size);
  const sample::Model model(size);
  sample::LogWriter(model).write_minute(directory, minute);
}

}  // namespace vantrel
