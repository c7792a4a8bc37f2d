// Integer arithmetic whose rounding and overflow are in the name. Defined for every input.
#pragma once

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

namespace quill::inline v0 {

static_assert(FLT_EVAL_METHOD == 0, "results must not depend on excess precision (use -msse2 -mfpmath=sse on x86)");

inline constexpr std::int64_t kInt64Lowest = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t kInt64Highest = std::numeric_limits<std::int64_t>::max();
inline constexpr std::uint64_t kUInt64Highest = std::numeric_limits<std::uint64_t>::max();
inline constexpr double kTwoTo63 = 9223372036854775808.0;
inline constexpr double kTwoTo64 = 18446744073709551616.0;

// A double cut toward zero to an integer: NaN is 0, values out of range give the nearer end of the range.
constexpr std::int64_t saturateToInt64(double x) {
  if (x != x) return 0;
  if (x >= kTwoTo63) return kInt64Highest;
  if (x < -kTwoTo63) return kInt64Lowest;
  return static_cast<std::int64_t>(x);
}

// As saturateToInt64 for [0, 2^64): negative values give 0.
constexpr std::uint64_t saturateToUInt64(double x) {
  if (!(x > 0)) return 0;
  if (x >= kTwoTo64) return kUInt64Highest;
  return static_cast<std::uint64_t>(x);
}

// Cut toward zero; a negative value as the two's complement of its saturated integer, 2^64-1 from 2^64 up.
constexpr std::uint64_t wrapToUInt64(double x) {
  return x < 0 ? static_cast<std::uint64_t>(saturateToInt64(x)) : saturateToUInt64(x);
}

// As saturateToInt64 for signed 32 bits.
constexpr std::int32_t saturateToInt32(double x) {
  if (x != x) return 0;
  if (x >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
  if (x <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(x);
}

constexpr std::int32_t saturateToInt32(std::int64_t x) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (x > Limits::max()) return Limits::max();
  return x < Limits::min() ? Limits::min() : static_cast<std::int32_t>(x);
}

// Two's complement arithmetic modulo 2^64.
constexpr std::int64_t wrappingAdd(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}
constexpr std::int64_t wrappingSubtract(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

// The lowest integer negates to itself.
constexpr std::int64_t wrappingNegate(std::int64_t a) { return wrappingSubtract(0, a); }

// |a| as an unsigned number: exact for every input.
constexpr std::uint64_t magnitudeOf(std::int64_t a) {
  return a < 0 ? 0 - static_cast<std::uint64_t>(a) : static_cast<std::uint64_t>(a);
}

// Results beyond 64 bits stop at the nearer end of the range.
constexpr std::int64_t saturatingAdd(std::int64_t a, std::int64_t b) {
  const std::int64_t sum = wrappingAdd(a, b);
  const bool overflow = (a >= 0) == (b >= 0) && (sum >= 0) != (a >= 0);
  return overflow ? (a < 0 ? kInt64Lowest : kInt64Highest) : sum;
}
constexpr std::int64_t saturatingSubtract(std::int64_t a, std::int64_t b) {
  return b == kInt64Lowest ? saturatingAdd(saturatingAdd(a, kInt64Highest), 1) : saturatingAdd(a, -b);
}
constexpr std::int64_t saturatingMultiply(std::int64_t a, std::int64_t b) {
  if (a == static_cast<std::int32_t>(a) && b == static_cast<std::int32_t>(b)) return a * b;
  if (a == 0 || b == 0) return 0;
  const std::uint64_t limit = static_cast<std::uint64_t>(kInt64Highest);
  const bool negative = (a < 0) != (b < 0);
  if (magnitudeOf(a) > limit / magnitudeOf(b)) return negative ? kInt64Lowest : kInt64Highest;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}
constexpr std::int64_t saturatingFromUInt64(std::uint64_t a) {
  return a > static_cast<std::uint64_t>(kInt64Highest) ? kInt64Highest : static_cast<std::int64_t>(a);
}

// n/d cut toward zero, 0 when d is 0. Wraps for lowest / -1.
constexpr std::int64_t truncatingDivide(std::int64_t n, std::int64_t d) {
  if (d == 0) return 0;
  return d == -1 ? wrappingNegate(n) : n / d;
}

// The nearest whole number, halves away from zero.
inline double roundHalfAway(double x) { return std::round(x); }

}  // namespace quill::inline v0
