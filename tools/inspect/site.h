// Looking at a site without leaving a trace: nothing here opens a file for writing, and where the
// system allows it even the time of last access stays as it is.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "store/trade_index.h"

namespace vantrel::inspect {

// What the view needs is not there. The text is for the user.
struct Unavailable {
  std::string reason;
};

// What was asked for does not exist, whatever the site is like.
struct WrongUsage {
  std::string reason;
};

// The bytes of a file, seen as the run sees it: nothing when it cannot be opened, no bytes for
// anything but a regular file. Throws Unavailable when the file is too large to be held.
[[nodiscard]] std::optional<std::string> read_file(const std::string& path);

// The same, but only the end of a file that is longer than that.
[[nodiscard]] std::optional<std::string> read_tail(const std::string& path, std::size_t length);

// The same, but only the beginning.
[[nodiscard]] std::optional<std::string> read_head(const std::string& path, std::size_t length);

[[nodiscard]] bool exists(const std::string& path);
[[nodiscard]] bool is_regular(const std::string& path);
[[nodiscard]] bool is_directory(const std::string& path);
[[nodiscard]] std::optional<std::time_t> modified(const std::string& path);
[[nodiscard]] std::size_t file_size(const std::string& path);

// What the user who runs the inspector may do; on a read-only file system nothing can be written.
[[nodiscard]] bool may_read(const std::string& path);
[[nodiscard]] bool may_write(const std::string& path);
[[nodiscard]] bool may_enter(const std::string& directory);
[[nodiscard]] bool may_execute(const std::string& path);
// A file that can be written, or made where it is missing.
[[nodiscard]] bool may_create_or_write(const std::string& path);

// The trades with the windows of the last run. Throws Unavailable when one of the two files cannot
// be read or the index is too small.
[[nodiscard]] TradeStore load_store();

// The position of a trade, by its name or else its id. Throws Unavailable when there is none.
[[nodiscard]] std::size_t find_trade(const TradeStore& store, const std::string& name_or_id);

// When the last run was let in, as far as the site knows; now when it does not.
[[nodiscard]] std::time_t last_run_or_now();

// What a reserved entry of the index collects; empty for trades.
[[nodiscard]] std::string_view collects(const TradeRecord& entry, std::size_t position);

}  // namespace vantrel::inspect
