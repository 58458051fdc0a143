#include "sample/files.h"

#include <charconv>
#include <chrono>
#include <fstream>
#include <stdexcept>

namespace vantrel::sample {

void write_file(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

void write_script(const std::filesystem::path& path, std::string_view text) {
  using std::filesystem::perms;
  write_file(path, text);
  std::filesystem::permissions(path, perms::owner_exec | perms::group_exec | perms::others_exec,
                               std::filesystem::perm_options::add);
}

void set_modified(const std::filesystem::path& path, std::time_t moment) {
  using std::chrono::file_clock;
  const auto modified = file_clock::from_sys(std::chrono::system_clock::from_time_t(moment));
  std::filesystem::last_write_time(
      path, std::chrono::time_point_cast<std::filesystem::file_time_type::duration>(modified));
}

void put(std::string& text, std::int64_t number) {
  char digits[24];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
  static_cast<void>(error);  // the room is enough for any number
  put(text, std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

}  // namespace vantrel::sample
