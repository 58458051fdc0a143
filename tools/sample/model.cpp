#include "sample/model.h"

#include <utility>

namespace vantrel::sample {

Model::Model(const SampleSize& sample_size)
    : size(sample_size), popularity(static_cast<std::size_t>(sample_size.trades)) {
  const auto trades = static_cast<std::uint32_t>(size.trades);
  names.assign(kReservedNames.begin(), kReservedNames.end());
  for (std::uint32_t i = 0; i < trades; ++i) {
    const std::uint32_t position = kReservedCount + i;
    names.push_back("site" + std::to_string(position) + ".example");
    by_rank.push_back(position);
  }
  Random random = random_for(size, "ranks");
  for (std::uint32_t i = trades; i > 1; --i) std::swap(by_rank[i - 1], by_rank[random.below(i)]);
  rank_of.resize(trades);
  for (std::uint32_t rank = 0; rank < trades; ++rank) {
    rank_of[by_rank[rank] - kReservedCount] = rank;
  }
}

Random random_for(const SampleSize& size, std::string_view part, std::uint64_t number) {
  std::uint64_t seed = size.seed;
  for (const char c : part) seed = seed * 1099511628211u + static_cast<unsigned char>(c);
  return Random(Random(seed).next() ^ (number * 0xD1342543DE82EF95u));
}

std::uint64_t records_in_hour(const SampleSize& size, int hour) {
  // Percent of the mean; 24 of them make 2,400.
  static constexpr std::array<std::uint8_t, 24> kCurve{69,  59,  52,  47,  46,  51,  61,  74,
                                                       89,  99,  106, 110, 114, 117, 121, 126,
                                                       132, 139, 147, 154, 152, 142, 116, 77};
  const auto records = static_cast<std::uint64_t>(size.hits_per_minute);
  return size.day_curve ? records * kCurve[static_cast<std::size_t>(hour)] / 100 : records;
}

}  // namespace vantrel::sample
