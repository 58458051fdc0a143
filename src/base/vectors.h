// Sixteen bytes at once. Where the compiler finds no single instruction of the machine by itself,
// it is named beside the portable form, which says the same.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vantrel {

using Bytes = std::uint8_t __attribute__((vector_size(16)));
using Pairs = std::uint16_t __attribute__((vector_size(16)));
using Fours = std::uint32_t __attribute__((vector_size(16)));
using Halves = std::uint64_t __attribute__((vector_size(16)));

// Neighbours multiplied by their weights and added. Both below 32,768.
[[nodiscard]] inline Fours sums_of_products(Pairs values, Pairs weights) {
#if defined(__SSE2__)
  return reinterpret_cast<Fours>(
      _mm_madd_epi16(reinterpret_cast<__m128i>(values), reinterpret_cast<__m128i>(weights)));
#else
  const auto low = [](Pairs pairs) { return reinterpret_cast<Fours>(pairs) & 0xFFFF; };
  const auto high = [](Pairs pairs) { return reinterpret_cast<Fours>(pairs) >> 16; };
  return low(values) * low(weights) + high(values) * high(weights);
#endif
}

// The lanes of both, one behind the other. All below 32,768.
[[nodiscard]] inline Pairs lower_halves(Fours first, Fours second) {
#if defined(__SSE2__)
  return reinterpret_cast<Pairs>(
      _mm_packs_epi32(reinterpret_cast<__m128i>(first), reinterpret_cast<__m128i>(second)));
#else
  return __builtin_shufflevector(reinterpret_cast<Pairs>(first), reinterpret_cast<Pairs>(second), 0,
                                 2, 4, 6, 8, 10, 12, 14);
#endif
}

[[nodiscard]] inline bool all_set(Bytes bytes) {
#if defined(__SSE2__)
  return _mm_movemask_epi8(reinterpret_cast<__m128i>(bytes)) == 0xFFFF;
#else
  const auto halves = reinterpret_cast<Halves>(bytes);
  return (halves[0] & halves[1]) == ~std::uint64_t{0};
#endif
}

}  // namespace vantrel
