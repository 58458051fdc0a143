// Files that must be whole at every instant and after every kill: the new text is written to a file
// beside the old one, flushed to disk and renamed over it.
//
// No run waits for another one or for whoever has the file open. Each writes to a file of its own,
// <name>.new.<process>.<minute>, so that runs which overlap can neither rename nor mix each other's
// unfinished text. What a killed run leaves is removed by the next accepted run; should its owner
// only have been slow or stopped, it finds its file gone, looks at what the others stored
// meanwhile, and begins anew.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/files.h"

namespace vantrel {

enum class Flush {
  yes,  // a power cut leaves the old file or the new one
  no,   // for what is made anew every minute: a power cut can leave it empty where the file system
        // writes the name before the contents
};

// Owner, group, mode, access list and other attributes are kept, and a link to the file stays one.
// The file is overwritten in place where no other file can take its place: the folder takes no new
// file or no rename (a file mounted by itself), an attribute cannot be carried over and somebody
// would lose or gain access, or the disk has no room for both files but for the new text. A kill or
// a power cut can then leave the text half written. A file that may not be written fails.
[[nodiscard]] bool replace_file(const char* path, std::string_view text, Flush flush = Flush::yes);
// The same, flushed, for a text that was made from what stood in the file when it was read.
[[nodiscard]] Replaced replace_file(const char* path, const Replacement& by);

// Reads the file, stores what `changed` makes of its text, and begins anew when somebody else has
// stored something in between. True, with nothing stored, when `changed` gives no text.
using Change = std::function<std::optional<std::string>(std::string_view)>;
[[nodiscard]] bool update_file(const char* path, const Change& changed);

// Replaces the file by a copy of itself, which has one name only and which nobody else has open.
[[nodiscard]] bool replace_by_copy(const char* path);

// Can a text a little longer than the file's be stored, in place if need be? The room is taken, so
// that nobody else can have it. True where it cannot be known.
[[nodiscard]] bool room_to_store(const char* path);

// Removes what killed runs left of their attempts to replace these files.
void remove_leftovers(std::span<const char* const> paths);

}  // namespace vantrel
