// How old the windows are that a view shows.
#pragma once

#include <string>

#include "screen.h"

namespace vantrel::inspect {

// Adds "last_run", "stored" (when a run last stored windows), "age_seconds" and "stale" to a view
// of the windows: data older than three minutes are stale.
void add_data_time(Json& view);

// "2026-11-16 12:50", with a warning behind it when the data are stale.
[[nodiscard]] std::string data_time_words(const Json& view);

}  // namespace vantrel::inspect
