#include "base/attributes.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

#ifdef __linux__
#include <sys/xattr.h>
#endif

#include "base/text.h"

namespace vantrel {
namespace {

// An unprivileged run cannot give files away; then only a mode that means the same for everybody
// keeps its meaning.
bool take_over_owner(const struct stat& old, const struct stat& fresh, int to) {
  if (fresh.st_uid == old.st_uid && fresh.st_gid == old.st_gid) return true;
  const mode_t others = old.st_mode & 7;
  const bool same_for_all = (old.st_mode >> 3 & 7) == others && (old.st_mode >> 6 & 7) == others;
  return ::fchown(to, old.st_uid, old.st_gid) == 0 || same_for_all;
}

#ifdef __linux__

// A list of names, or a value; empty for none. False when it cannot be read.
template <typename Call>
bool read_attribute(std::string& bytes, Call call) {
  bytes.clear();
  const ssize_t size = call(nullptr, 0);
  if (size < 0) return errno == ENOTSUP || errno == ENODATA;
  if (size == 0) return true;
  bytes.resize(static_cast<std::size_t>(size));
  return call(bytes.data(), bytes.size()) == size;
}

// The kernel makes these from the contents.
bool is_derived(std::string_view name) { return name == "security.ima" || name == "security.evm"; }

bool contains(std::string_view list, std::string_view name) {
  Pieces names(list, '\0');
  for (std::string_view one; names.next(one);) {
    if (one == name) return true;
  }
  return false;
}

bool take_over_attribute(const char* from, const std::string& name, int to) {
  std::string wanted;
  std::string present;
  const char* const key = name.c_str();
  if (!read_attribute(wanted, [&](char* b, size_t n) { return ::getxattr(from, key, b, n); }) ||
      !read_attribute(present, [&](char* b, size_t n) { return ::fgetxattr(to, key, b, n); })) {
    return false;
  }
  // Without a value it may be there or not.
  if (wanted == present && !wanted.empty()) return true;
  return ::fsetxattr(to, key, wanted.data(), wanted.size(), 0) == 0;
}

// The access list is among them: the folder may have given the new file one, the old file another.
bool take_over_extended(const char* from, int to) {
  std::string wanted;
  std::string present;
  if (!read_attribute(wanted, [&](char* b, size_t n) { return ::listxattr(from, b, n); }) ||
      !read_attribute(present, [&](char* b, size_t n) { return ::flistxattr(to, b, n); })) {
    return false;
  }
  Pieces surplus(present, '\0');
  for (std::string_view name; surplus.next(name);) {
    if (contains(wanted, name) || is_derived(name)) continue;
    if (::fremovexattr(to, std::string(name).c_str()) != 0) return false;
  }
  Pieces names(wanted, '\0');
  for (std::string_view name; names.next(name);) {
    if (!is_derived(name) && !take_over_attribute(from, std::string(name), to)) return false;
  }
  return true;
}

#else

bool take_over_extended(const char*, int) { return true; }

#endif

}  // namespace

bool take_over_attributes(const char* from, const struct stat& old, const File& to) {
  struct stat fresh {};
  return ::fstat(to.descriptor(), &fresh) == 0 && take_over_owner(old, fresh, to.descriptor()) &&
         take_over_extended(from, to.descriptor()) &&
         ::fchmod(to.descriptor(), old.st_mode & 07777) == 0;
}

}  // namespace vantrel
