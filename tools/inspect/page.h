// The page without its data, made by the build from page/ and the chart library: what stands before
// the data, and what behind them. Both are empty where the library was missing.
#pragma once

#include <string_view>

namespace vantrel::inspect {

extern const std::string_view kPageStart;
extern const std::string_view kPageEnd;

}  // namespace vantrel::inspect
