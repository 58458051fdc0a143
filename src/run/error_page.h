// The HTML pages for files and directories that the site cannot work without. They go to standard
// output in the markup of the site's own error pages, at once and unbuffered.
#pragma once

#include <string_view>

namespace vantrel {

// "Unable to open file". A link of no characters is left out; with_header adds the HTTP header and
// the page's head, which a page printed inside another one must not have.
void error_page_file(std::string_view name, std::string_view link, bool with_header);

// "Unable to open directory".
void error_page_directory(std::string_view name, std::string_view link, bool with_header);

}  // namespace vantrel
