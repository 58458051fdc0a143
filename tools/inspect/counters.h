// The 14 counters of a window in the words of the webmaster, in the order they have in every file.
#pragma once

#include "store/trade_record.h"

namespace vantrel::inspect {

struct CounterWords {
  const char* name;  // as in formulas and in JSON
  const char* counts;
};

inline constexpr CounterWords kCounters[kCounterCount] = {
    {"rin", "incoming hits"},
    {"uin", "unique incoming hits"},
    {"out", "clicks sent to it"},
    {"clk", "clicks of the visitors it sent"},
    {"ctt", "of these, clicks to trades"},
    {"ctg", "of these, clicks to the entry with id 1"},
    {"cef", "of these, clicks within the limit of line 4 of d/set"},
    {"rec", "clicks recorded for it"},
    {"proxy_in", "incoming hits through proxies"},
    {"proxy_out", "clicks sent to it through proxies"},
    {"proxy_clk", "clicks of its visitors through proxies"},
    {"rti", "quality of its incoming hits"},
    {"rto", "quality of the clicks sent to it"},
    {"rtc", "quality of its visitors' clicks"}};

}  // namespace vantrel::inspect
