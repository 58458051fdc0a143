// The command line that the programs around the sample site have in common.
#pragma once

#include <ctime>
#include <optional>
#include <string>

#include "sample_site.h"

namespace vantrel {

struct SampleOptions {
  std::string directory;
  SampleSize size;
  std::time_t at = 0;  // the moment of the first run to come; the current time unless given
};

// The text for --help and for wrong usage.
[[nodiscard]] std::string sample_usage(const char* program);

// Whether --help or --version was asked for; the answer has been printed then.
[[nodiscard]] bool answer_about(const char* program, int argc, char** argv);

// Nothing when the command line is wrong.
[[nodiscard]] std::optional<SampleOptions> parse_sample_options(int argc, char** argv);

}  // namespace vantrel
