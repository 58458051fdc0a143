#include "traffic/agent_rating.h"

namespace vantrel {

std::size_t AgentRating::search(std::string_view agent) const {
  if (lists_.group(1).occurs_in(agent)) return 0;
  return lists_.group(3).occurs_in(agent) ? 2 : 1;
}

std::size_t AgentRating::offset_of(std::string_view agent) {
  const std::int32_t known = known_.find(agent);
  if (known != TextIndex::kNone) return static_cast<std::size_t>(known);
  const std::size_t offset = search(agent);
  bytes_ += agent.size() + sizeof(std::string);
  if (bytes_ > kMostBytes) return offset;
  known_.add(agents_.emplace_back(agent), static_cast<std::int32_t>(offset));
  return offset;
}

}  // namespace vantrel
