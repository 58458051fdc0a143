#include "screen.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "base/clock.h"
#include "base/numbers.h"

namespace vantrel::inspect {
namespace {

bool is_terminal() {
  static const bool terminal = ::isatty(STDOUT_FILENO) == 1;
  return terminal;
}

unsigned byte_at(std::string_view text, std::size_t i) {
  return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}

// Bytes of the well-formed UTF-8 character at i that is no control character, 0 without one.
std::size_t character_length(std::string_view text, std::size_t i) {
  const unsigned lead = byte_at(text, i);
  if (lead < 0x80) return lead >= 0x20 && lead < 0x7F ? 1 : 0;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte_at(text, i + k) & 0xC0) != 0x80) return 0;
  }
  return lead == 0xC2 && byte_at(text, i + 1) < 0xA0 ? 0 : length;
}

// Places a text takes: every byte but the followers of UTF-8. Colour codes are added later.
std::size_t width_of(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned>(c) & 0xC0) != 0x80; }));
}

std::string padded(const std::string& text, std::size_t width, bool right) {
  const std::size_t used = width_of(text);
  const std::string blanks(width > used ? width - used : 0, ' ');
  return right ? blanks + text : text + blanks;
}

std::vector<std::size_t> column_widths(const std::vector<Column>& columns,
                                       const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    widths.push_back(width_of(columns[c].title));
    for (const auto& row : rows) {
      if (c < row.size()) widths[c] = std::max(widths[c], width_of(row[c]));
    }
  }
  return widths;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = character_length(text, i);
    out += length > 0 ? text.substr(i, length) : "?";
    i += std::max<std::size_t>(length, 1);
  }
  return out;
}

bool has_bars() { return is_terminal(); }

std::string coloured(Colour colour, const std::string& text) {
  static const char* const no_color = std::getenv("NO_COLOR");
  if (!is_terminal() || (no_color != nullptr && *no_color != '\0')) return text;
  constexpr const char* kCodes[] = {"31", "33", "32", "2", "1"};
  return std::string("\x1b[") + kCodes[static_cast<int>(colour)] + "m" + text + "\x1b[0m";
}

std::string bar(double share, std::size_t width) {
  if (!has_bars() || !(share > 0)) return {};
  const double places = std::min(share, 1.0) * static_cast<double>(width);
  return std::string(std::max<std::size_t>(1, static_cast<std::size_t>(std::lround(places))), '#');
}

std::string shortened(const std::string& text, std::size_t width) {
  if (width_of(text) <= width) return text;
  std::string cut;
  for (std::size_t i = 0; i < text.size() && width_of(cut) + 1 < width;) {
    const std::size_t length = std::max<std::size_t>(character_length(text, i), 1);
    cut += text.substr(i, length);
    i += length;
  }
  return cut + '~';
}

std::size_t table_width(const std::vector<Column>& columns,
                        const std::vector<std::vector<std::string>>& rows) {
  std::size_t width = 0;
  for (const std::size_t column : column_widths(columns, rows)) width += column + 2;
  return width - 2;
}

void print_table(const std::vector<Column>& columns,
                 const std::vector<std::vector<std::string>>& rows) {
  const std::vector<std::size_t> widths = column_widths(columns, rows);
  std::string head;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    head += padded(columns[c].title, widths[c], columns[c].right) + "  ";
  }
  const auto trimmed = [](std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
  };
  std::cout << coloured(Colour::bold, trimmed(head)) << '\n';
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t c = 0; c < row.size(); ++c) {
      line += padded(row[c], widths[c], columns[c].right) + "  ";
    }
    std::cout << trimmed(line) << '\n';
  }
}

void print_chart(const Json& rows, const char* key) {
  std::int64_t most = 1;
  for (const Json& row : rows) most = std::max(most, row["rin"].get<std::int64_t>());
  std::vector<std::vector<std::string>> table;
  for (const Json& row : rows) {
    table.push_back({cell(row[key]), cell(row["rin"]), cell(row["uin"]), cell(row["out"]),
                     cell(row["clk"]),
                     bar(row["rin"].get<double>() / static_cast<double>(most), 40)});
  }
  print_table({{key}, {"in", true}, {"unique", true}, {"out", true}, {"clicks", true}, {""}},
              table);
}

std::string number_text(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.10g", value);
  return text;
}

std::string cell(const Json& value) {
  if (value.is_null()) return "-";
  if (value.is_string()) return printable(value.get_ref<const std::string&>());
  return value.is_number_float() ? number_text(value.get<double>()) : value.dump();
}

std::string time_text(std::time_t moment) { return format_time("%Y-%m-%d %H:%M", moment); }

std::string stamp_text(std::string_view stamp) {
  const bool digits = std::all_of(stamp.begin(), stamp.end(), is_digit);
  if (!digits || (stamp.size() != 8 && stamp.size() != 12)) return std::string(stamp);
  std::string text;
  for (std::size_t i = 0; i < stamp.size(); ++i) {
    if (i == 4 || i == 6) text += '-';
    if (i == 8) text += ' ';
    if (i == 10) text += ':';
    text += stamp[i];
  }
  return text;
}

std::string duration_text(std::time_t seconds) {
  const auto amount = static_cast<std::size_t>(std::max<std::time_t>(seconds, 0));
  if (amount < 2 * 60) return counted(amount, "second");
  if (amount < 2 * 60 * 60) return counted(amount / 60, "minute");
  if (amount < 2 * 24 * 60 * 60) return counted(amount / (60 * 60), "hour");
  return counted(amount / (24 * 60 * 60), "day");
}

std::string counted(std::size_t count, std::string_view noun) {
  const char* const plural = noun.ends_with('s') ? "es" : "s";
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : plural);
}

}  // namespace vantrel::inspect
