// What the doctor finds, and how findings of one cause become one.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "access.h"
#include "run/events.h"
#include "screen.h"

namespace vantrel::inspect {

// A note is worth knowing and right as it is; the exit status is 1 from off on, 2 from ends_run on.
enum class Severity { fine, note, off, ends_run };

// The question a finding answers with no: does the next run reach its end, is its list worth
// following, is everything kept that comes in?
enum class Question { none, end, list, loss };

struct Finding {
  Severity severity = Severity::fine;
  Question question = Question::none;
  std::string subject;
  std::string text;
  std::string remedy;
  std::string excerpt;     // a text in which one place is wrong
  std::size_t column = 0;  // that place, from 0
  bool above_all = false;  // it hides what else may be wrong, and is told first
};

class Findings {
 public:
  void fine(const std::string& subject, const std::string& text);
  void note(const std::string& subject, const std::string& text);
  // Something is off, but a run works.
  void off(const std::string& subject, const std::string& text, const std::string& remedy);
  // Its list sends visitors nowhere, or to the wrong trades.
  void worthless(const std::string& subject, const std::string& text, const std::string& remedy);
  // Counts are gone, or go unless somebody acts.
  void lost(const std::string& subject, const std::string& text, const std::string& remedy);
  void ends_run(const std::string& subject, const std::string& text, const std::string& remedy);
  // What the run itself would report; the event says whether it ends the run.
  void as_event(const std::string& subject, const Event& event);
  void add(Finding finding);

  // A file or folder cannot be used as the run needs it. Where that has a cause outside of it (a
  // folder that is missing, a file system that is read-only, files of another user) all findings of
  // the cause become one, as severe as the worst of them.
  void refused(const std::string& path, Need need, Finding finding);
  void refused(const std::string& path, Need need, const Event& event);

  // Something of that subject is off.
  [[nodiscard]] bool is_off(std::string_view subject) const;
  [[nodiscard]] bool answers_no(Question question) const;

  // After the examination: the causes take their place, the worst come first, but for what is told
  // above all.
  void settle();
  [[nodiscard]] const std::vector<Finding>& list() const { return list_; }
  // 0, 1 or 2, the exit status.
  [[nodiscard]] int status() const;

 private:
  struct Refused {
    std::vector<std::string> paths;
    Finding worst;
    bool above_all = false;
  };

  std::vector<Finding> list_;
  std::map<Cause, Refused> refused_;
};

[[nodiscard]] Finding finding_of(const std::string& subject, const Event& event);
[[nodiscard]] Finding finding_off(const std::string& subject, const std::string& text,
                                  const std::string& remedy);

// "a, b, c and 4 more"
class NameList {
 public:
  void add(std::string_view name) {
    if (count_++ < 3) text_.append(text_.empty() ? "" : ", ").append(name);
  }
  [[nodiscard]] bool empty() const { return count_ == 0; }
  [[nodiscard]] std::size_t count() const { return count_; }
  [[nodiscard]] std::string text() const {
    return count_ <= 3 ? text_ : text_ + " and " + std::to_string(count_ - 3) + " more";
  }

 private:
  std::string text_;
  std::size_t count_ = 0;
};

}  // namespace vantrel::inspect
