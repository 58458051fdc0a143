// Who may do what with a file: owner, group, mode, access list, security label.
#pragma once

#include <sys/stat.h>

#include "base/files.h"

namespace vantrel {

// Gives the file that takes another one's place all of these, and the user's own attributes. from,
// old: the path of the other one and its status. False when somebody would lose or gain access.
[[nodiscard]] bool take_over_attributes(const char* from, const struct stat& old, const File& to);

}  // namespace vantrel
