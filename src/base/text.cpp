#include "base/text.h"

namespace vantrel {

std::vector<std::string> split(std::string_view text, char separator, std::size_t at_most) {
  std::vector<std::string> pieces;
  Pieces walk(text, separator);
  for (std::string_view piece; pieces.size() < at_most && walk.next(piece);) {
    pieces.emplace_back(piece);
  }
  return pieces;
}

void lower_case(char* text, std::size_t size) {
  // Without a branch, so that the compiler turns the loop into vector instructions.
  for (std::size_t i = 0; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool upper = static_cast<unsigned char>(byte - 'A') < 26;
    text[i] = static_cast<char>(byte | (upper ? 0x20 : 0));
  }
}

}  // namespace vantrel
