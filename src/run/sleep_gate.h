// The gate that lets a webmaster delay a run within its minute.
#pragma once

#include "base/start_clock.h"

namespace vantrel {

// True when d/sleep holds a number from 1 to 49 that the second of the start has not reached: the
// site shares its machine and wants its runs late in the minute.
[[nodiscard]] bool sleep_gate_closed(const StartClock& clock);

}  // namespace vantrel
