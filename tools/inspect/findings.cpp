#include "findings.h"

#include <algorithm>
#include <cctype>

namespace vantrel::inspect {
namespace {

constexpr const char* kOwn = "give the run's user permission on it";

Finding make(Severity severity, Question question, const std::string& subject,
             const std::string& text, const std::string& remedy) {
  return {severity, question, subject, text, remedy, "", 0};
}

// What a cause is called that stands for more than one path.
void describe(Finding& finding, const Cause& cause, const NameList& paths) {
  const std::string needed =
      paths.empty() ? "" : " (" + counted(paths.count(), "path") + ": " + paths.text() + ")";
  finding.subject = cause.where;
  std::string reason;
  switch (cause.kind) {
    case Cause::missing:
      reason = "the folder is not there" + needed;
      finding.remedy = "make the folder, or get it back: " + restore_command(cause.where);
      break;
    case Cause::no_folder:
      reason = "is no folder" + needed;
      finding.remedy = "put it away; make the folder, or " + restore_command(cause.where);
      break;
    case Cause::no_entry:
      reason = "the folder may not be entered by " + current_user() + needed;
      finding.remedy = "give the run's user search permission on it (chmod u+x)";
      break;
    case Cause::read_only:
      reason = "the site lies on a file system mounted read-only" + needed;
      finding.remedy =
          "mount it writable; a disk that fails is made read-only by the system: see its log";
      break;
    case Cause::owner:
      finding.subject = "ownership";
      reason = counted(paths.count(), "path") + " of " + cause.where + " cannot be used by " +
               current_user() + ": " + paths.text();
      finding.remedy =
          "chown -R " + current_user() + " the site, or start the run as " + cause.where;
      break;
  }
  if (!finding.text.empty()) {
    finding.text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(finding.text[0])));
  }
  finding.text = reason + ". " + finding.text;
}

}  // namespace

Finding finding_of(const std::string& subject, const Event& event) {
  const bool ends = event.level == "1";
  return make(ends ? Severity::ends_run : Severity::off, ends ? Question::end : Question::none,
              subject, std::string(event.meaning), std::string(event.remedy));
}

Finding finding_off(const std::string& subject, const std::string& text,
                    const std::string& remedy) {
  return make(Severity::off, Question::none, subject, text, remedy);
}

void Findings::add(Finding finding) { list_.push_back(std::move(finding)); }

void Findings::fine(const std::string& subject, const std::string& text) {
  add(make(Severity::fine, Question::none, subject, text, ""));
}

void Findings::note(const std::string& subject, const std::string& text) {
  add(make(Severity::note, Question::none, subject, text, ""));
}

void Findings::off(const std::string& subject, const std::string& text, const std::string& remedy) {
  add(finding_off(subject, text, remedy));
}

void Findings::worthless(const std::string& subject, const std::string& text,
                         const std::string& remedy) {
  add(make(Severity::off, Question::list, subject, text, remedy));
}

void Findings::lost(const std::string& subject, const std::string& text,
                    const std::string& remedy) {
  add(make(Severity::off, Question::loss, subject, text, remedy));
}

void Findings::ends_run(const std::string& subject, const std::string& text,
                        const std::string& remedy) {
  add(make(Severity::ends_run, Question::end, subject, text, remedy));
}

void Findings::as_event(const std::string& subject, const Event& event) {
  add(finding_of(subject, event));
}

void Findings::refused(const std::string& path, Need need, const Event& event) {
  refused(path, need, finding_of(path, event));
}

void Findings::refused(const std::string& path, Need need, Finding finding) {
  const auto cause = cause_of(path, need);
  if (!cause) {
    add(std::move(finding));
    return;
  }
  Refused& refused = refused_[*cause];
  refused.above_all |= finding.above_all;
  if (refused.paths.empty() || refused.worst.severity < finding.severity) {
    refused.worst = std::move(finding);
  }
  refused.paths.push_back(path);
}

bool Findings::is_off(std::string_view subject) const {
  return std::any_of(list_.begin(), list_.end(), [subject](const Finding& finding) {
    return finding.severity >= Severity::off && finding.subject == subject;
  });
}

bool Findings::answers_no(Question question) const {
  return std::any_of(list_.begin(), list_.end(),
                     [question](const Finding& finding) { return finding.question == question; });
}

void Findings::settle() {
  for (auto& [cause, refused] : refused_) {
    std::sort(refused.paths.begin(), refused.paths.end());
    refused.paths.erase(std::unique(refused.paths.begin(), refused.paths.end()),
                        refused.paths.end());
    NameList paths;
    for (const std::string& path : refused.paths) {
      if (!path.ends_with("/.")) paths.add(path);  // the folder itself
    }
    // A single file of another user is told from the many by its own name.
    const bool own = refused.paths.size() == 1 && cause.kind == Cause::owner;
    if (own) {
      refused.worst.text += " It belongs to " + cause.where + ".";
    } else {
      describe(refused.worst, cause, paths);
    }
    if (refused.worst.remedy.empty()) refused.worst.remedy = kOwn;
    refused.worst.above_all = refused.above_all;
    add(std::move(refused.worst));
  }
  refused_.clear();
  std::erase_if(list_, [this](const Finding& finding) {
    return finding.severity == Severity::fine && is_off(finding.subject);
  });
  std::stable_sort(list_.begin(), list_.end(), [](const Finding& a, const Finding& b) {
    return std::pair(a.above_all, a.severity) > std::pair(b.above_all, b.severity);
  });
}

int Findings::status() const {
  Severity worst = Severity::fine;
  for (const Finding& finding : list_) worst = std::max(worst, finding.severity);
  return worst == Severity::ends_run ? 2 : worst == Severity::off ? 1 : 0;
}

}  // namespace vantrel::inspect
