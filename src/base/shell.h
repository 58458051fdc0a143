// Starting other programs through the system's shell.
#pragma once

#include <string>
#include <string_view>

namespace vantrel {

// Lets a write to a pipe nobody reads, or past a size limit, fail instead of ending the run, and
// makes sure that children can be waited for. The programs the run starts get the defaults: a
// handler, unlike an ignored signal, does not outlive their start.
void survive_failed_writes();

// Runs a command line and waits for its end; whatever becomes of it is its own business.
void run_command(const std::string& command);

// Runs a command line with text as its standard input and waits for its end. False when it could
// not be started; what it reads, prints or returns does not matter.
[[nodiscard]] bool pipe_to_command(const std::string& command, std::string_view text);

}  // namespace vantrel
