#include "run/error_page.h"

#include <unistd.h>

#include <string>

#include "base/files.h"

namespace vantrel {
namespace {

std::string opening(bool with_header) {
  std::string page;
  if (with_header) {
    page +=
        "Content-type: text/html\r\n\r\n"
        "<html>\n<head>\n<title>Vantrel</title>\n</head>\n<body bgcolor=white>\n";
  }
  // The stray semicolon is in every page of the site; its readers match the text as it stands.
  page +=
      "<div align=center>\n<font style=\"font:normal 8pt arial;\";>"
      "<font style=\"color:red;\"><b>Error</b></font><br>\n";
  return page;
}

}  // namespace

void error_page_file(std::string_view name, std::string_view link, bool with_header) {
  std::string page = opening(with_header);
  page.append("Unable to open file <b>").append(name).append("</b><br>\n");
  page += "Please check file permissions and try again<br>\n<br><br>\n";
  if (!link.empty()) {
    page.append("<a href=\"").append(link).append("\">click here to return to ");
    page.append(link).append("</a><br>\n");
  }
  page += "</font></div></body>\n</html>";
  write_all(STDOUT_FILENO, page);
}

void error_page_directory(std::string_view name, std::string_view link, bool with_header) {
  std::string page = opening(with_header);
  page.append("Unable to open directory <b>").append(name).append("</b><br>\n");
  if (!link.empty()) {
    page.append("<a href=\"").append(link).append("\">").append(link).append("</a><br>\n");
  }
  page += "Please check file permissions and try again.<br>\n</font>\n</div>\n";
  page += "</body>\n</html>";
  write_all(STDOUT_FILENO, page);
}

}  // namespace vantrel
