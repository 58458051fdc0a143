#include "settings/main_settings.h"

#include <optional>

#include "base/files.h"
#include "base/numbers.h"
#include "base/replace_file.h"
#include "base/text.h"
#include "run/event_log.h"

namespace vantrel {
namespace {

constexpr std::size_t kLineCount = 6;
constexpr std::size_t kCefLimitLine = 3;
constexpr std::size_t kSyncStateLine = 4;
constexpr std::size_t kUinLimitLine = 5;

}  // namespace

std::string_view settings_field(std::string_view line, std::size_t n) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t bar = line.find('|', begin);
    if (bar == std::string_view::npos) return n == 1 ? line : std::string_view();
    begin = bar + 1;
  }
  return line.substr(begin, line.find('|', begin) - begin);
}

bool parse_main_settings(MainSettings& settings, std::string_view text) {
  settings.lines = split(text, '\n', kLineCount + 1);
  if (settings.lines.size() != kLineCount) return false;
  settings.cef_limit = to_int(settings_field(settings.lines[kCefLimitLine], 1));
  settings.sync_state = settings_field(settings.lines[kSyncStateLine], 1);
  settings.uin24_limit = to_int(settings_field(settings.lines[kUinLimitLine], 1));
  return true;
}

bool load_main_settings(MainSettings& settings) {
  FileBuffer file;
  if (!file.read(kSettingsFile)) {
    report(event::settings_missing);
    return false;
  }
  if (parse_main_settings(settings, file.text())) return true;
  report(event::settings_corrupt);
  return false;
}

void write_sync_state(const MainSettings& settings) {
  const auto synchronised = [&settings](std::string_view text) -> std::optional<std::string> {
    MainSettings now;
    const bool asked_again = !parse_main_settings(now, text) ||
                             now.lines[kSyncStateLine] != settings.lines[kSyncStateLine];
    if (asked_again) return std::nullopt;
    now.lines[kSyncStateLine] = "|2|";
    std::string stored;
    for (const std::string& line : now.lines) stored.append(line).append("\n");
    return stored;
  };
  static_cast<void>(update_file(kSettingsFile, synchronised));
}

}  // namespace vantrel
