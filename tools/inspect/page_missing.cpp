#include "page.h"

namespace vantrel::inspect {

const std::string_view kPageStart;
const std::string_view kPageEnd;

}  // namespace vantrel::inspect
