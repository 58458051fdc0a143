#include <string>

#include "checks.h"
#include "run/event_log.h"
#include "site.h"
#include "views.h"

namespace vantrel::inspect {
namespace {

// Events that end a run before it counts anything: the next one counts its minute.
bool loses_nothing(const std::string& subject) {
  for (const Event* event :
       {&event::double_run, &event::disk_full, &event::disk_write_test, &event::disk_read_test,
        &event::index_unavailable, &event::index_too_small}) {
    if (subject == event->subject) return true;
  }
  return false;
}

}  // namespace

void check_recent_events(Findings& findings) {
  Json view;
  try {
    EventsQuery query;
    query.count = 1000;
    query.since = "60m";
    view = events_view(query);
  } catch (const Unavailable&) {
    return;  // what cannot be read is a finding of the log itself
  }
  std::map<std::string, std::size_t> ended;
  std::string last;
  for (const Json& event : view["events"]) {
    if (event["level"] != "1" || event["source"] != "cron") continue;
    ended[event["subject"].get<std::string>()] += event["times"].get<std::size_t>();
    last = event["time"].get<std::string>();
  }
  for (const auto& [subject, count] : ended) {
    const bool kept = loses_nothing(subject);
    findings.add({Severity::off, kept ? Question::none : Question::loss, "events",
                  counted(count, "run") + " ended early in the last hour: " + printable(subject) +
                      (kept ? "" : "; what came in in their minutes is not counted") +
                      "; the last early end was at " + last,
                  "see vantrel-inspect events for what each means", "", 0});
  }
}

}  // namespace vantrel::inspect
