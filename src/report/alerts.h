// Alert mails: the webmaster is told once when the traffic of the site or of a trade crosses a
// threshold.
//
// d/alerts is a stream of pieces; the text before the first bar is dropped, then come exactly 14:
//   0 path of the mail program   1 sender   2 recipient   3 not used
//   4, 6 site minimum, maximum a day   8, 10 site minimum, maximum an hour   12 trade maximum a day
//   5, 7, 9, 11, 13 behind each threshold the flag that the alert was sent, "0" or "1"
// Written by the administration side, which also sets flags back; the run sets them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/trade_record.h"

namespace vantrel {

inline constexpr std::size_t kAlertFieldCount = 14;
using AlertFields = std::vector<std::string>;

// Positions of what a mail needs.
namespace alert_field {
inline constexpr std::size_t kMailProgram = 0;
inline constexpr std::size_t kSender = 1;
inline constexpr std::size_t kRecipient = 2;
}  // namespace alert_field

// The fields of the file's text, one more than there should be at most; an empty one is read as
// "0".
[[nodiscard]] AlertFields parse_alerts(std::string_view text);

// Whether the 14 fields name a mail program and two addresses.
[[nodiscard]] bool can_be_mailed(const AlertFields& fields);

// One kind of alert: where its threshold stands (its flag stands behind it) and what the mail says.
struct AlertKind {
  std::size_t threshold;
  std::string_view before;
  std::string_view after;

  [[nodiscard]] std::size_t flag() const { return threshold + 1; }
};
[[nodiscard]] std::span<const AlertKind> alert_kinds();

// The traffic that thresholds are compared with.
struct AlertTotals {
  std::uint32_t day = 0;     // incoming hits of all entries
  std::uint32_t hour = 0;    // the same of 60 minutes
  std::int32_t busiest = 0;  // of the entry that has most in 24 hours
};

// Totals and thresholds of the site are compared as unsigned numbers, those of a trade as signed.
[[nodiscard]] bool crosses(const AlertKind& kind, std::int32_t threshold,
                           const AlertTotals& totals);

// Compares the windows of all entries with the thresholds, mails what has not been mailed and
// stores the flags. Failures are events.
void run_alerts(const std::vector<TradeWork>& works);

}  // namespace vantrel
