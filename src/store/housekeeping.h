// Housekeeping: archives of the databases, removal of hit logs nobody reads again. None of it can
// end the run.
#pragma once

#include <array>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

namespace vantrel {

inline constexpr const char* kBackupDirectory = "d/backup/";
// What an archive holds.
inline constexpr const char* kBackupFolders[] = {"d/t", "d/gr", "d/h", "d/tpl", "d/css"};

// Archives the databases to d/backup/<hour stamp>.tar.gz with the system's tar, whatever becomes of
// it. The stamp is of the hour the minute walk visited last.
void make_backup(const std::string& hour_stamp);

// The hit logs of the minute 25 hours before the one the minute walk left, and of the minute before
// that, so that a single missed run leaves nothing behind.
[[nodiscard]] std::array<std::string, 4> old_logs(std::time_t walked);
void remove_old_logs(std::time_t walked);

// For a full disk: what the run would remove at its end, had it room to get there.
void make_room(bool pruning_time);

// All but the 90 newest files of d/backup/, whatever their names; nullopt when it cannot be listed.
[[nodiscard]] std::optional<std::vector<std::string>> old_backups();
// Removes them. Prints an error page when the directory cannot be listed.
void prune_backups();

}  // namespace vantrel
