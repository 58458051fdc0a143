// What the doctor finds, and the parts of the examination. A part looks at some files and adds its
// findings; none of them changes anything.
#pragma once

#include <string>

#include "run/events.h"
#include "screen.h"
#include "store/trade_index.h"

namespace vantrel::inspect {

// The exit status a finding leads to.
enum class Severity { fine = 0, off = 1, ends_run = 2 };

class Findings {
 public:
  void fine(const std::string& subject, const std::string& text);
  // Something is off, but a run works.
  void off(const std::string& subject, const std::string& text, const std::string& remedy);
  // The run would end early.
  void ends_run(const std::string& subject, const std::string& text, const std::string& remedy);
  // What the run itself would report; the event says whether it ends the run.
  void as_event(const std::string& subject, const Event& event);

  [[nodiscard]] const Json& list() const { return list_; }
  [[nodiscard]] int status() const { return status_; }

 private:
  void add(Severity severity, const std::string& subject, const std::string& text,
           const std::string& remedy);

  Json list_ = Json::array();
  int status_ = 0;
};

// The text of a file the run needs; a file that cannot be opened is the event's finding and an
// empty text, and so is anything but a regular file, which the run takes for an empty one.
[[nodiscard]] std::string examined(Findings& findings, const std::string& path, const Event& event);

void check_scheduler(Findings& findings);  // last run, d/sleep, run history
void check_disk_and_logs(Findings& findings);
// The store is empty when there is no usable index.
void check_store(Findings& findings, TradeStore& store);
void check_history(Findings& findings, const TradeStore& store);
void check_traffic_settings(Findings& findings);
void check_main_settings(Findings& findings);
void check_outgoing(Findings& findings);
void check_alerts(Findings& findings);
void check_programs(Findings& findings);  // companion scripts, backup

}  // namespace vantrel::inspect
