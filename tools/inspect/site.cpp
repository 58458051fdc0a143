#include "site.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "base/clock.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/rehearsal.h"
#include "base/text.h"
#include "screen.h"
#include "store/summary.h"

namespace vantrel::inspect {
namespace {

constexpr std::size_t kLargestFile = std::size_t{1} << 30;

std::optional<struct stat> status_of(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

bool may(const std::string& path, int how) {
  return ::faccessat(AT_FDCWD, path.c_str(), how, AT_EACCESS) == 0;
}

std::string required(const char* path) {
  std::optional<std::string> bytes = read_file(path);
  if (!bytes) throw Unavailable{std::string(path) + " cannot be opened"};
  return std::move(*bytes);
}

}  // namespace

std::optional<std::string> read_file(const std::string& path) {
  if (file_size(path) > kLargestFile) throw Unavailable{path + " is too large to be shown"};
  return read_tail(path, kLargestFile);
}

std::optional<std::string> read_tail(const std::string& path, std::size_t length) {
  const auto status = status_of(path);
  if (!status) return std::nullopt;
  // A pipe would wake up its writer, a device might do anything: they are not even opened.
  if (!S_ISREG(status->st_mode)) {
    return may_read(path) ? std::optional<std::string>("") : std::nullopt;
  }
  const File file = open_untouched(path.c_str());
  if (!file.is_open()) return std::nullopt;
  const auto size = static_cast<std::size_t>(status->st_size);
  std::string bytes(std::min(size, length), '\0');
  const std::ptrdiff_t count = read_at(file, bytes.data(), bytes.size(), size - bytes.size());
  if (count < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(count));
  return bytes;
}

std::optional<std::string> read_head(const std::string& path, std::size_t length) {
  if (!is_regular(path)) return std::nullopt;
  const File file = open_untouched(path.c_str());
  if (!file.is_open()) return std::nullopt;
  std::string bytes(length, '\0');
  const std::ptrdiff_t count = read_at(file, bytes.data(), bytes.size(), 0);
  if (count < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(count));
  return bytes;
}

bool exists(const std::string& path) { return status_of(path).has_value(); }

bool is_regular(const std::string& path) {
  const auto status = status_of(path);
  return status && S_ISREG(status->st_mode);
}

bool is_directory(const std::string& path) {
  const auto status = status_of(path);
  return status && S_ISDIR(status->st_mode);
}

std::optional<std::time_t> modified(const std::string& path) {
  const auto status = status_of(path);
  return status ? std::optional<std::time_t>(status->st_mtime) : std::nullopt;
}

std::size_t file_size(const std::string& path) {
  const auto status = status_of(path);
  return status && S_ISREG(status->st_mode) ? static_cast<std::size_t>(status->st_size) : 0;
}

bool may_read(const std::string& path) { return may(path, R_OK); }
bool may_write(const std::string& path) { return may(path, W_OK); }
bool may_enter(const std::string& directory) { return may(directory, X_OK); }
bool may_execute(const std::string& path) { return is_regular(path) && may(path, X_OK); }

bool may_create_or_write(const std::string& path) {
  if (exists(path)) return !is_directory(path) && may_write(path);
  return may(path.substr(0, path.rfind('/')), W_OK | X_OK);
}

TradeStore load_store() {
  TradeStore store;
  store.trades = read_trades(required(kIndexFile));
  if (store.trades.size() < kFewestTrades) {
    throw Unavailable{std::string(kIndexFile) + " holds fewer than ten entries"};
  }
  fill_work_array(store);
  add_summary(store, required(kSummaryFile));
  return store;
}

std::size_t find_trade(const TradeStore& store, const std::string& name_or_id) {
  const auto named = std::find_if(store.trades.begin(), store.trades.end(), [&](const auto& work) {
    return field_text(work.name) == name_or_id;
  });
  if (named != store.trades.end()) return static_cast<std::size_t>(named - store.trades.begin());
  const std::int32_t id = to_int(name_or_id);
  const std::int32_t position =
      name_or_id == std::to_string(id) ? store.ids.find(id) : IdIndex::kNone;
  if (position == IdIndex::kNone) throw Unavailable{"there is no trade " + printable(name_or_id)};
  return static_cast<std::size_t>(position);
}

std::time_t last_run_or_now() {
  const std::time_t now = wall_clock();
  return std::min(modified("l/sys/cron.last").value_or(now), now);
}

std::string_view collects(const TradeRecord& entry, std::size_t position) {
  if (position > reserved::kLastEntry) return "";
  if (position == reserved::kMarked) return "hits with a marker";
  if (position == reserved::kUnknown) return "unknown names and ids";
  if (position == reserved::kListed) return "names listed in d/se";
  // The others are found by id or name like any trade.
  if (entry.id == 1) return "clicks to the gallery";
  if (field_text(entry.name) == "noref") return "visitors without a referrer";
  if (field_text(entry.name) == "nocookie") return "visitors without a cookie";
  return "reserved";
}

}  // namespace vantrel::inspect
