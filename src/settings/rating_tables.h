// The five tables that classify a hit: country, agent, request and tag ratings and the address
// ranges behind the country. All of them are required.
#pragma once

#include "settings/ip_table.h"
#include "settings/ratings.h"

namespace vantrel {

struct RatingTables {
  RatingLists geo;      // country codes
  IpTable ip;           // address to country code
  RatingLists agent;    // fragments of user agents; group 2 is of no effect
  RatingLists request;  // request texts; group 2 is of no effect
  RatingLists tags;     // tag texts; group 2 is of no effect
};

// Reads them in this order. False, with an event, at the first that cannot be read.
[[nodiscard]] bool load_rating_tables(RatingTables& tables);

}  // namespace vantrel
