// Where in a text something stands, and whether a text is what it is read as.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "findings.h"

namespace vantrel::inspect {

// The text of a file the run reads, when there is something to judge in it. Nothing when the file
// cannot be opened, is none or holds NUL bytes: that is then a finding.
[[nodiscard]] std::optional<std::string> examined(Findings& findings, const std::string& path,
                                                  const Event& event);
// The same for a file whose absence the run answers in another way.
[[nodiscard]] std::optional<std::string> examined(Findings& findings, const std::string& path,
                                                  Finding missing);

// The number of the line, from 1, that a view into the text begins in. A line feed that a piece
// begins with ends the line before it.
[[nodiscard]] std::size_t line_of(std::string_view text, std::string_view piece);
// "line 3, piece 14": pieces are counted through the whole text, from 1.
[[nodiscard]] std::string place_of(std::string_view text, std::string_view piece);

// The text in quotation marks, cut where it is long, for one line of a terminal.
[[nodiscard]] std::string quote(std::string_view text);

// What the run takes for a number is all of the text, but for white space around it.
[[nodiscard]] bool is_whole_int(std::string_view text);
[[nodiscard]] bool is_whole_double(std::string_view text);

// Nothing but white space: what may stand where a piece is ignored.
[[nodiscard]] bool is_blank(std::string_view text);

// Collects what is wrong in one file, which becomes one finding: the first few places by name.
class Complaints {
 public:
  Complaints(std::string_view text, std::string path) : text_(text), path_(std::move(path)) {}

  // piece is a view into the text.
  void about(std::string_view piece, const std::string& what);
  void about_file(const std::string& what);
  // A piece that should be ignored holds something: pieces were lost or added before it, and what
  // stands behind is read as something else. False when it is fine.
  bool shifted(std::string_view ignored, const std::string& unit);

  [[nodiscard]] bool empty() const { return count_ == 0; }
  // Adds the finding, or says that the file is fine.
  void tell(Findings& findings, const std::string& fine, const std::string& remedy,
            Question question = Question::none) const;

 private:
  void add(const std::string& text);

  std::string_view text_;
  std::string path_;
  std::string told_;
  std::size_t count_ = 0;
};

}  // namespace vantrel::inspect
