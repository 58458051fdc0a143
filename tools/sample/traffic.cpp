#include "sample/traffic.h"

namespace vantrel::sample {
namespace {

std::int32_t portion(Random& random, std::int32_t of, std::uint32_t percent) {
  const auto scaled = static_cast<std::uint64_t>(of) * percent + random.below(100);
  return static_cast<std::int32_t>(scaled / 100);
}

}  // namespace

// Yesterday had nine tenths of the traffic of the logs: the site grows.
TrafficMaker::TrafficMaker(const Model& model) : model_(model) {
  for (std::size_t hour = 0; hour < kHoursPerDay; ++hour) {
    records_[hour] = records_in_hour(model.size, static_cast<int>(hour)) * 9 / 10;
  }
}

void TrafficMaker::fill_day(std::size_t position, DayOfSlots& slots) const {
  const Shares shares = shares_of(position);
  Random random = random_for(model_.size, "slots", position);
  // A share of the records, more or less, its fraction by chance.
  const auto count = [&random](std::uint64_t records, std::uint64_t share) {
    if (share == 0) return 0;
    const std::uint64_t expected = records * share * (192 + random.below(129)) / 256;
    return static_cast<std::int32_t>((expected + random.below(kWhole)) / kWhole);
  };
  for (std::size_t minute = 0; minute < slots.size(); ++minute) {
    TrafficCounters& counters = slots[minute];
    const std::uint64_t records = records_[minute / 60];
    counters = {};
    if (const std::int32_t hits = count(records, shares.incoming); hits > 0) {
      counters[slot::rin] = hits;
      if (position == reserved::kMarked) continue;
      counters[slot::uin] = portion(random, hits, kUniquePercent);
      counters[slot::proxy_in] = portion(random, hits, kProxyPercent);
      counters[slot::rti] = portion(random, hits, 1250);
    }
    if (const std::int32_t clicks = count(records, shares.source); clicks > 0) {
      counters[slot::clk] = clicks;
      counters[slot::ctg] = portion(random, clicks, kGalleryPercent);
      counters[slot::ctt] = clicks - counters[slot::ctg];
      counters[slot::cef] = portion(random, clicks, 80);
      counters[slot::proxy_clk] = portion(random, clicks, kProxyPercent);
      counters[slot::rtc] = portion(random, clicks, 1400);
    }
    if (const std::int32_t sent = count(records, shares.target); sent > 0) {
      counters[slot::out] = sent;
      counters[slot::rec] = portion(random, sent, 20);
      counters[slot::proxy_out] = portion(random, sent, kProxyPercent);
      counters[slot::rto] = portion(random, sent, 1400);
    }
  }
}

TrafficMaker::Shares TrafficMaker::shares_of(std::size_t position) const {
  const auto percent = [](std::uint64_t part) { return kWhole * part / 100; };
  const auto as_source = [](std::uint64_t incoming) {
    return incoming * (100 - kNoCookiePercent) / 100;
  };
  Shares shares;
  if (position >= kReservedCount) {
    const std::size_t rank = model_.rank_of[position - kReservedCount];
    const std::uint64_t trades = 100 - kNoReferrerPercent - kUnknownPercent - kSearchPercent;
    shares.incoming = model_.popularity.share(rank, percent(trades));
    shares.source = as_source(shares.incoming);
    shares.target = model_.popularity.share(rank, percent(100 - kGalleryPercent));
    return shares;
  }
  switch (position) {
    case 1:
      shares.target = percent(kGalleryPercent);
      break;
    case 3:
      shares.incoming = percent(kNoReferrerPercent);
      break;
    case reserved::kMarked:
      shares.incoming = percent(kMarkedPercent);
      return shares;
    case 5:
      shares.source = percent(kNoCookiePercent);
      break;
    case reserved::kUnknown:
      shares.incoming = percent(kUnknownPercent);
      break;
    case reserved::kListed:
      shares.incoming = percent(kSearchPercent);
      break;
    default:
      break;
  }
  if (shares.incoming > 0) shares.source = as_source(shares.incoming);
  return shares;
}

}  // namespace vantrel::sample
