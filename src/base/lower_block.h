// Sixty-four bytes at once, in vector registers: the two things every byte of a hit log goes
// through, for the price of loading it once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON) && defined(__aarch64__)
#include <arm_neon.h>
#endif

namespace vantrel {

inline constexpr std::size_t kBlockBytes = 64;

// Turns the letters A-Z of the block into lower case, in place; bit i of the result is set where
// byte i is a bar. This form is for machines without the other, and for the tests of it.
inline std::uint64_t lower_block_bytewise(char* block) {
  std::uint64_t bars = 0;
  for (std::size_t i = 0; i < kBlockBytes; ++i) {
    if (block[i] >= 'A' && block[i] <= 'Z') block[i] = static_cast<char>(block[i] | 0x20);
    bars |= static_cast<std::uint64_t>(block[i] == '|') << i;
  }
  return bars;
}

#if defined(__SSE2__) || (defined(__ARM_NEON) && defined(__aarch64__))

using Bytes16 [[gnu::vector_size(16)]] = unsigned char;
using Signed16 [[gnu::vector_size(16)]] = signed char;

// Bit 16 * i + j for byte j of vector i. The bytes are 0 or 255.
inline std::uint64_t bits_of(const Bytes16 (&vectors)[4]) {
#if defined(__SSE2__)
  std::uint64_t bits = 0;
  for (int i = 3; i >= 0; --i) {
    const auto vector = reinterpret_cast<__m128i>(vectors[i]);
    bits = bits << 16 | static_cast<std::uint64_t>(_mm_movemask_epi8(vector));
  }
  return bits;
#else
  // Each byte keeps the bit of its place among eight; neighbours are added until eight are one.
  constexpr Bytes16 kPlaces = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
  const uint8x16_t low = vpaddq_u8(vectors[0] & kPlaces, vectors[1] & kPlaces);
  const uint8x16_t high = vpaddq_u8(vectors[2] & kPlaces, vectors[3] & kPlaces);
  const uint8x16_t fours = vpaddq_u8(low, high);
  return vgetq_lane_u64(vreinterpretq_u64_u8(vpaddq_u8(fours, fours)), 0);
#endif
}

inline std::uint64_t lower_block(char* block) {
  Bytes16 bars[4];
  for (std::size_t i = 0; i < 4; ++i) {
    Bytes16 bytes;
    std::memcpy(&bytes, block + i * sizeof bytes, sizeof bytes);
    // Moved to where the capitals are the largest signed bytes, they are told by one comparison.
    const auto moved = reinterpret_cast<Signed16>(bytes + (127 - 'Z'));
    bytes |= reinterpret_cast<Bytes16>(moved > 127 - 26) & 0x20;
    std::memcpy(block + i * sizeof bytes, &bytes, sizeof bytes);
    bars[i] = reinterpret_cast<Bytes16>(bytes == '|');
  }
  return bits_of(bars);
}

#else

inline std::uint64_t lower_block(char* block) { return lower_block_bytewise(block); }

#endif

}  // namespace vantrel
