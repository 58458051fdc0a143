// Writing the files of the sample site: whole, as one buffer.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

namespace vantrel::sample {

// Replaces the file; the folder must exist. Throws on failure.
void write_file(const std::filesystem::path& path, std::string_view bytes);
void write_script(const std::filesystem::path& path, std::string_view text);
// Throws on failure.
void set_modified(const std::filesystem::path& path, std::time_t moment);

// One piece of a stream of pieces.
inline void put(std::string& text, std::string_view piece) {
  text += piece;
  text += '|';
}
void put(std::string& text, std::int64_t number);

}  // namespace vantrel::sample
