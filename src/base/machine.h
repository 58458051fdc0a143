// What a machine and its compiler must be like so that a site is the same bytes on all of them: the
// folder may be carried from one to another between two runs. On others nothing is compiled.
#pragma once

#include <sys/types.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <cstddef>
#include <ctime>
#include <limits>
#include <type_traits>

namespace vantrel {

// Records are read and written as they lie in memory, digits are taken eight and sixteen at once.
static_assert(std::endian::native == std::endian::little, "the lowest byte comes first");
static_assert(CHAR_BIT == 8 && 'A' == 65 && 'z' == 122 && '|' == 124, "texts are ASCII");

// Counters have 32 bits and may be computed with as they are; a short type would be widened first.
static_assert(sizeof(int) == 4, "int has the 32 bits of a counter");
static_assert(sizeof(std::size_t) == 8 && sizeof(off_t) == 8, "any file has a size in 64 bits");
static_assert(std::is_integral_v<std::time_t> && std::is_signed_v<std::time_t> &&
                  sizeof(std::time_t) == 8,
              "seconds are counted beyond 2038, and minutes by division");

// Scores decide which of two trades is listed first, weights are written as their bits. Each
// operation must be rounded by itself: the build takes care that none are fused
// (-ffp-contract=off).
static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == 4 && FLT_MANT_DIG == 24);
static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == 8 && DBL_MANT_DIG == 53);
static_assert(FLT_EVAL_METHOD == 0, "nothing is computed with more digits than its type has");
#ifdef __FAST_MATH__
#error "-ffast-math and -Ofast give other scores on every machine, and take NaN for a number"
#endif

}  // namespace vantrel
