// The settings, lists and scripts of the sample site: what the administration side and the
// webmaster put there.
#pragma once

#include <filesystem>

#include "sample/model.h"
#include "sample/store.h"

namespace vantrel::sample {

// Limits and thresholds are set so that they divide the traffic of the totals. Throws on failure.
void write_settings(const std::filesystem::path& site, const Model& model,
                    const SiteTotals& totals);

}  // namespace vantrel::sample
