// What the parts of the sample site have in common: who the trades are and how much of the traffic
// each of them has.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sample/random.h"
#include "sample_site.h"

namespace vantrel::sample {

inline constexpr std::size_t kReservedCount = 11;

// By position, which is the id too. Names that the request scripts write for visitors without a
// referrer or a cookie are entries like any other.
inline constexpr std::array<std::string_view, kReservedCount> kReservedNames{
    "direct",  "gallery", "content", "noref", "marked", "nocookie",
    "unknown", "toplist", "search",  "misc",  "spare"};

// The shares of the traffic that are no trade's, in percent; the trades have the rest.
inline constexpr std::uint32_t kNoReferrerPercent = 10;
inline constexpr std::uint32_t kUnknownPercent = 6;
inline constexpr std::uint32_t kSearchPercent = 4;
inline constexpr std::uint32_t kNoCookiePercent = 5;  // of clicks only
inline constexpr std::uint32_t kGalleryPercent = 15;  // of clicks, as their target
inline constexpr std::uint32_t kMarkedPercent = 3;
inline constexpr std::uint32_t kUniquePercent = 70;
inline constexpr std::uint32_t kProxyPercent = 5;

// Sites of d/se.
inline constexpr std::array<std::string_view, 4> kSearchSites{"findit.example", "seekwell.example",
                                                              "lookhere.example", "search.example"};

struct Model {
  explicit Model(const SampleSize& sample_size);

  SampleSize size;
  std::vector<std::string> names;      // by position, reserved entries first
  std::vector<std::uint32_t> by_rank;  // positions of the trades, the busiest first
  std::vector<std::uint32_t> rank_of;  // by position behind the reserved entries
  Zipf popularity;                     // of by_rank
};

// One part of the site draws its numbers apart from the others, so that a change in one of them
// leaves the others as they were.
[[nodiscard]] Random random_for(const SampleSize& size, std::string_view part,
                                std::uint64_t number = 0);

// Records a minute and direction in an hour of the day.
[[nodiscard]] std::uint64_t records_in_hour(const SampleSize& size, int hour);

}  // namespace vantrel::sample
