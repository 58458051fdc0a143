#include "store/hit_log_names.h"

namespace vantrel {

std::string in_log_path(std::string_view minute_stamp) {
  return "l/in/" + std::string(minute_stamp);
}

std::string out_log_path(std::string_view minute_stamp) {
  return "l/out/" + std::string(minute_stamp);
}

}  // namespace vantrel
