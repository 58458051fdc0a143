#include "settings/ip_number.h"

#include <algorithm>

#include "base/numbers.h"

namespace vantrel {

std::uint32_t odd_ip_to_number(std::string_view text) {
  std::uint32_t number = 0;
  for (int part = 0; part < 4; ++part) {
    std::size_t length = text.size();
    if (part < 3) length = std::min(length, text.find('.'));
    number = (number << 8) + static_cast<std::uint32_t>(to_int(text.substr(0, length)));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return number;
}

}  // namespace vantrel
