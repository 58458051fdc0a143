#include "places.h"

#include <algorithm>
#include <cstdlib>

#include "base/numbers.h"
#include "site.h"

namespace vantrel::inspect {
namespace {

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_space(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::optional<std::string> examined(Findings& findings, const std::string& path,
                                    const Event& event) {
  return examined(findings, path, finding_of(path, event));
}

std::optional<std::string> examined(Findings& findings, const std::string& path, Finding missing) {
  auto text = read_file(path);
  if (!text) {
    findings.refused(path, Need::read, std::move(missing));
    return std::nullopt;
  }
  if (!is_regular(path)) {
    findings.off(path, "is no file; the run takes it for an empty one", "put the file back");
    return std::nullopt;
  }
  const auto nul = text->find('\0');
  if (nul == text->npos) return text;
  findings.off(path,
               std::to_string(std::count(text->begin(), text->end(), '\0')) +
                   " NUL bytes, the first is byte " + std::to_string(nul + 1) +
                   ": not as it was written",
               "save it anew in the administration, or put a copy back; a power cut does this");
  return std::nullopt;
}

std::size_t line_of(std::string_view text, std::string_view piece) {
  const auto begin = static_cast<std::size_t>(piece.data() - text.data());
  const auto before = static_cast<std::ptrdiff_t>(std::min(begin, text.size()));
  return 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + before, '\n'));
}

std::string place_of(std::string_view text, std::string_view piece) {
  const auto begin = static_cast<std::size_t>(piece.data() - text.data());
  const auto before = static_cast<std::ptrdiff_t>(std::min(begin, text.size()));
  const auto bars = std::count(text.begin(), text.begin() + before, '|');
  return "line " + std::to_string(line_of(text, piece)) + ", piece " + std::to_string(bars + 1);
}

std::string quote(std::string_view text) {
  constexpr std::size_t kLongest = 70;
  std::string shown = "\"";
  shown += printable(text.substr(0, kLongest));
  return shown.append(text.size() > kLongest ? "...\"" : "\"");
}

bool is_whole_int(std::string_view text) {
  text = trimmed(text);
  const std::int32_t value = to_int(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || !std::all_of(text.begin(), text.end(), is_digit)) return false;
  while (text.size() > 1 && text.front() == '0') text.remove_prefix(1);
  std::string said = negative && text != "0" ? "-" : "";
  said += text;
  return said == std::to_string(value);
}

bool is_whole_double(std::string_view text) {
  const std::string said(trimmed(text));
  char* end = nullptr;
  const double value = std::strtod(said.c_str(), &end);
  return !said.empty() && end == said.c_str() + said.size() && value >= -1e9 && value <= 1e9;
}

bool is_blank(std::string_view text) { return std::all_of(text.begin(), text.end(), is_space); }

void Complaints::add(const std::string& text) {
  constexpr std::size_t kTold = 3;
  if (count_++ < kTold) told_ += (told_.empty() ? "" : "; ") + text;
}

void Complaints::about(std::string_view piece, const std::string& what) {
  add(place_of(text_, piece) + ": " + what);
}

void Complaints::about_file(const std::string& what) { add(what); }

bool Complaints::shifted(std::string_view ignored, const std::string& unit) {
  if (is_blank(ignored)) return false;
  about(ignored,
        quote(ignored) + " stands where " + unit +
            " begins: a piece was lost or added just before it, and all behind is shifted");
  return true;
}

void Complaints::tell(Findings& findings, const std::string& fine, const std::string& remedy,
                      Question question) const {
  if (empty()) {
    findings.fine(path_, fine);
    return;
  }
  const std::string more =
      count_ > 3 ? "; and " + std::to_string(count_ - 3) + " more" : std::string();
  findings.add({Severity::off, question, path_, told_ + more, remedy, "", 0});
}

}  // namespace vantrel::inspect
