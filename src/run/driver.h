// One maintenance run from start to end.
#pragma once

namespace vantrel {

// Does the work of one minute in the working directory, a site. Every failure is in the event log
// when it returns; nothing is thrown but what the machine's memory refuses.
void maintenance_run();

}  // namespace vantrel
