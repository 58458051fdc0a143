// Runs a fuzz target on the kept inputs in a folder, without a fuzzer.
#include <cstdio>
#include <filesystem>

#include "support.h"

int main(int, char** arguments) {
  std::vector<std::string> inputs;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
    inputs.push_back(vantrel::fuzz::get(entry.path().c_str()));
  }
  vantrel::fuzz::site();
  for (const std::string& input : inputs) vantrel::fuzz::try_input(input);
  std::fprintf(stderr, "%zu inputs\n", inputs.size());
  return inputs.empty() ? 1 : 0;
}
