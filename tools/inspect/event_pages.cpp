// Prints a manual page: the template on standard input, with the events of the run's own table in
// the place of the line @DIAGNOSTICS@.
#include <iostream>
#include <string>
#include <string_view>

#include "run/events.h"

namespace {

// Text as troff takes it literally.
std::string roff(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else {
      out += c;
    }
  }
  if (out.starts_with('.') || out.starts_with('\'')) out.insert(0, "\\&");
  return out;
}

void print_event(const vantrel::Event& event) {
  std::cout << ".TP\n.B " << roff(event.subject.empty() ? "(no text, code 3)" : event.subject)
            << '\n';
  std::cout << (event.level == "1" ? "Ends the run." : "The run goes on.") << '\n'
            << roff(event.meaning) << "\n.br\n.I Cure:\n"
            << roff(event.remedy) << '\n';
}

}  // namespace

int main() {
  for (std::string line; std::getline(std::cin, line);) {
    if (line == "@DIAGNOSTICS@") {
      for (const vantrel::Event* event : vantrel::all_events()) print_event(*event);
    } else {
      std::cout << line << '\n';
    }
  }
}
