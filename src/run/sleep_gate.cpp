#include "run/sleep_gate.h"

#include <algorithm>
#include <string_view>

#include "base/files.h"
#include "base/numbers.h"

namespace vantrel {

bool sleep_gate_closed(const StartClock& clock) {
  FileBuffer file;
  if (!file.read("d/sleep")) return false;
  const std::string_view text = file.text();
  const auto begin = std::find_if_not(text.begin(), text.end(), is_space);
  const auto end = std::find_if(begin, text.end(), is_space);
  const std::int32_t second = to_int({begin, end});
  return second >= 1 && second <= 49 && second > clock.local.tm_sec;
}

}  // namespace vantrel
