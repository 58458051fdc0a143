#include "settings/rating_tables.h"

#include "run/event_log.h"

namespace vantrel {
namespace {

bool loaded(bool success, const Event& missing) {
  if (!success) report(missing);
  return success;
}

}  // namespace

bool load_rating_tables(RatingTables& tables) {
  return loaded(load_rating(tables.geo, "d/geo.rating"), event::geo_missing) &&
         loaded(tables.ip.load("d/ip.psv"), event::ip_table_missing) &&
         loaded(load_rating(tables.agent, "d/agent.rating"), event::agents_missing) &&
         loaded(load_rating(tables.request, "d/request.rating"), event::requests_missing) &&
         loaded(load_rating(tables.tags, "d/tags.rating"), event::tags_missing);
}

}  // namespace vantrel
