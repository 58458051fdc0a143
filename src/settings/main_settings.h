// The main settings d/set: six lines written by the administration side, read once a run. The run
// rewrites the file only to store that a synchronisation was done.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

inline constexpr const char* kSettingsFile = "d/set";

struct MainSettings {
  std::vector<std::string> lines;  // the six lines as read, without their line feeds
  std::int32_t cef_limit = 0;      // line 4: highest number of a click that still counts in cef
  std::string sync_state;          // line 5: "1" and "3" ask for something, "2" is the normal state
  std::int32_t uin24_limit = 0;    // line 6: unique hits a day below which a trade gets no visitors
};

// The text between the n-th bar of a line (from 1) and the next bar or the end. A line without any
// bar is its own field 1; a field that is not there is empty.
[[nodiscard]] std::string_view settings_field(std::string_view line, std::size_t n);

// Takes the settings from the file's text. False when it does not have exactly six lines.
[[nodiscard]] bool parse_main_settings(MainSettings& settings, std::string_view text);

// False, with an event, when the file cannot be read or does not have exactly six lines.
[[nodiscard]] bool load_main_settings(MainSettings& settings);

// Stores "|2|" as line 5 of the file as it stands now: the administration may have saved it while
// the run was at work. Where it has changed line 5 meanwhile, it has asked anew and that stays. A
// file that cannot be written keeps its state and is served again by the next run.
void write_sync_state(const MainSettings& settings);

}  // namespace vantrel
