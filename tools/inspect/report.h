// The page: one HTML file with all views of a site, for a browser.
#pragma once

#include <string>

namespace vantrel::inspect {

// Was the page built into the program? It is not where the chart library was missing.
[[nodiscard]] bool has_report();

// What the page shows: the data of the other views, packed as pack.h says. A view that is not
// available stands there as an object of its reason, "unavailable".
[[nodiscard]] std::string report_data();

// The page with that data. Throws Unavailable when the page was not built in.
[[nodiscard]] std::string report_page(const std::string& data);

// Prints the page, or with a path replaces that file. Throws Unavailable when it cannot be written.
void write_report(const std::string& page, const std::string& path);

}  // namespace vantrel::inspect
