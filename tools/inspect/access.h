// Who may do what with the files of a site, and why not.
#pragma once

#include <compare>
#include <optional>
#include <string>

namespace vantrel::inspect {

// What the run wants of a path. To create means to write a file or make it where it is missing.
enum class Need { read, write, create };

// Why a path cannot be used, when the reason does not lie in the path alone.
struct Cause {
  enum Kind { missing, no_folder, no_entry, read_only, owner } kind;
  std::string where;  // the folder; the owner's name

  auto operator<=>(const Cause&) const = default;
};
[[nodiscard]] std::optional<Cause> cause_of(const std::string& path, Need need);

[[nodiscard]] std::string current_user();

// Goes on as that user, as far as rights are concerned, for the rest of the program. Throws
// WrongUsage for a user there is not, or when only root could.
void become_user(const std::string& name);

// A command that gets a path back from the newest archive of the site; what to do without one.
[[nodiscard]] std::string restore_command(const std::string& path);

// The path of the newest file in d/backup, if there is one.
[[nodiscard]] std::optional<std::string> newest_backup();

// A program named by the first word of a command line, as the shell finds it; nothing when it
// cannot be executed.
[[nodiscard]] std::optional<std::string> program_of(const std::string& command);

}  // namespace vantrel::inspect
