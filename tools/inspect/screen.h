// What the views print with: tables, bars and colours for people, one JSON form for programs.
#pragma once

#include <ctime>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel::inspect {

// Keys keep the order in which they are documented.
using Json = nlohmann::ordered_json;

// Any bytes as one line for a terminal: what is neither ASCII nor valid UTF-8, and every control
// character, becomes a question mark.
[[nodiscard]] std::string printable(std::string_view text);

// Colours and bars are for terminals only; NO_COLOR in the environment turns colours off.
[[nodiscard]] bool has_bars();
enum class Colour { red, yellow, green, faint, bold };
[[nodiscard]] std::string coloured(Colour colour, const std::string& text);

// At most so many places wide; "~" stands for what is cut off.
[[nodiscard]] std::string shortened(const std::string& text, std::size_t width);

// A bar for a share from 0 to 1, empty where there are no bars.
[[nodiscard]] std::string bar(double share, std::size_t width = 24);

// A right-aligned column holds numbers.
struct Column {
  std::string title;
  bool right = false;
};
// Places the columns take, the blanks between them included.
[[nodiscard]] std::size_t table_width(const std::vector<Column>& columns,
                                      const std::vector<std::vector<std::string>>& rows);
// Rows may end before the last column; the last column is not filled up.
void print_table(const std::vector<Column>& columns,
                 const std::vector<std::vector<std::string>>& rows);

// Times or days, by the name of their member, as rows of the four counters a webmaster looks at,
// with a bar for the incoming hits.
void print_chart(const Json& rows, const char* key);

[[nodiscard]] std::string number_text(double value);
// A JSON value as a cell: texts printable, numbers short, null as a dash.
[[nodiscard]] std::string cell(const Json& value);

// "2026-11-16 12:50"
[[nodiscard]] std::string time_text(std::time_t moment);
// A date or moment as the site's files have it, "20261116" or "202611161250", in the same form;
// anything else as it is.
[[nodiscard]] std::string stamp_text(std::string_view stamp);
// "3 minutes", "2 hours", "5 days"
[[nodiscard]] std::string duration_text(std::time_t seconds);
// "1 trade", "2 trades"
[[nodiscard]] std::string counted(std::size_t count, std::string_view noun);

}  // namespace vantrel::inspect
