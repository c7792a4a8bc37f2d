// MediaTime: an exact rational time, a count of ticks over a tick rate.
//
// - value / timescale is the time in seconds; nothing is stored as a double.
// - A time is numeric when it is valid and neither infinite nor indefinite; only numeric times are computed with.
// - Every change of timescale rounds half away from zero and marks an inexact result as rounded.
// - The epoch is carried along and never compared.
#pragma once

#include "Export.h"

#include <bit>
#include <cstdint>
#include <string>

namespace quill::inline v0 {

enum MediaTimeFlags : std::uint32_t {
  kMediaTimeValid = 1,
  kMediaTimeHasBeenRounded = 2,
  kMediaTimePositiveInfinity = 4,
  kMediaTimeNegativeInfinity = 8,
  kMediaTimeIndefinite = 16,
};

struct QUILL_EXPORT MediaTime {
  std::int64_t value = 0;      // ticks
  std::int32_t timescale = 0;  // ticks per second
  std::uint32_t flags = 0;     // MediaTimeFlags
  std::int64_t epoch = 0;      // generation counter

  // The invalid time: every field zero.
  constexpr MediaTime() = default;
  constexpr MediaTime(std::int64_t ticks, std::int32_t ticksPerSecond)
      : value(ticks), timescale(ticksPerSecond), flags(kMediaTimeValid) {}
  constexpr MediaTime(std::int64_t ticks, std::int32_t ticksPerSecond, std::uint32_t flagBits, std::int64_t generation)
      : value(ticks), timescale(ticksPerSecond), flags(flagBits), epoch(generation) {}

  static constexpr MediaTime withEpoch(std::int64_t ticks, std::int32_t ticksPerSecond, std::int64_t generation) {
    return {ticks, ticksPerSecond, kMediaTimeValid, generation};
  }

  // seconds x timescale to the nearest tick, halves away from zero. NaN gives the indefinite time, a result beyond
  // 64 bits an infinity, a timescale of 0 or below the invalid time.
  static MediaTime withSeconds(double seconds, std::int32_t timescale);

  static constexpr MediaTime positiveInfinity() { return {0, 0, kMediaTimeValid | kMediaTimePositiveInfinity, 0}; }
  static constexpr MediaTime negativeInfinity() { return {0, 0, kMediaTimeValid | kMediaTimeNegativeInfinity, 0}; }
  static constexpr MediaTime indefinite() { return {0, 0, kMediaTimeValid | kMediaTimeIndefinite, 0}; }

  // Whether the time can be computed with. The rounded bit is ignored.
  constexpr bool isNumeric() const { return (flags & 0x1D) == kMediaTimeValid; }

  // The same time at another timescale, halves away from zero; an inexact result is marked as rounded. A result beyond
  // 64 bits is an infinity. A non-numeric time comes back unchanged; a timescale of 0 or below, wanted or present,
  // gives the invalid time, except that a negative one present is read as the ratio it says.
  // MediaTime(1, 2).convertedTo(25) is 13/25, rounded.
  constexpr MediaTime convertedTo(std::int32_t newTimescale) const;

  // value / timescale in seconds; NaN for an invalid or indefinite time, an infinity for an infinite one.
  double seconds() const;

  // "{3003/30000 = 0.100 s}", "{13/25 = 0.520 s, rounded}", "{invalid}", "{+infinity}", "{-infinity}", "{indefinite}".
  std::string description() const;

  // Field by field, flags and epoch included; see compare() for the order of times.
  friend constexpr bool operator==(const MediaTime&, const MediaTime&) = default;
};

inline constexpr MediaTime kMediaTimeZero{0, 1};
inline constexpr MediaTime kMediaTimeInvalid{};

// value x new / old: most products fit 64 bits, none more than 95. Magnitudes are divided, so that rounding half away from
// zero is one rule for both signs.
constexpr MediaTime MediaTime::convertedTo(std::int32_t newTimescale) const {
  constexpr std::uint64_t kHighest = 0xFFFFFFFFFFFFFFFF;
  if (!isNumeric()) return *this;
  if (newTimescale <= 0 || timescale == 0) return kMediaTimeInvalid;
  if (newTimescale == timescale) return *this;
  const bool negative = (value < 0) != (timescale < 0);
  const auto bits = static_cast<std::uint64_t>(value);
  const std::uint64_t magnitude = value < 0 ? 0 - bits : bits;  // [0, 2^63]
  const auto rate = static_cast<std::int64_t>(timescale);
  const auto divisor = static_cast<std::uint64_t>(rate < 0 ? -rate : rate);  // [1, 2^31]
  const auto factor = static_cast<std::uint64_t>(newTimescale);              // [1, 2^31)
  const MediaTime overflow = negative ? negativeInfinity() : positiveInfinity();

  std::uint64_t quotient = 0, remainder = 0;
  if (std::bit_width(magnitude) + std::bit_width(factor) <= 64) {
    const std::uint64_t product = magnitude * factor;
    quotient = product / divisor;
    remainder = product % divisor;
  } else {
#if !defined(QUILL_NO_INT128) && defined(__SIZEOF_INT128__)
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(magnitude) * factor;
    if (static_cast<std::uint64_t>(product >> 64) >= divisor) return overflow;  // so that the quotient fits
    quotient = static_cast<std::uint64_t>(product / divisor);
    remainder = static_cast<std::uint64_t>(product) - quotient * divisor;
#else
    // The whole units of the old timescale go ahead; what is left of them fits.
    const std::uint64_t units = magnitude / divisor, rest = magnitude % divisor * factor;  // rest: under 2^62
    if (units > kHighest / factor || rest / divisor > kHighest - units * factor) return overflow;
    quotient = units * factor + rest / divisor;
    remainder = rest % divisor;
#endif
  }
  const std::uint64_t furthest = (kHighest >> 1) + (negative ? 1 : 0);
  const bool roundsUp = remainder >= divisor - remainder;
  if (quotient > furthest - (roundsUp ? 1 : 0)) return overflow;
  if (roundsUp) ++quotient;
  return {static_cast<std::int64_t>(negative ? 0 - quotient : quotient), newTimescale,
          flags | (remainder != 0 ? kMediaTimeHasBeenRounded : 0U), epoch};
}

// -1, 0 or 1: the exact order of the two rational values, whatever their timescales. Times that are not numeric stand
// at the ends: -infinity, numbers, +infinity, indefinite, invalid.
QUILL_EXPORT int compare(const MediaTime& a, const MediaTime& b);

// The sum at the first timescale when both are equal, else at their least common multiple (exact) while that is below
// 2^31, else at the larger one, rounded half away from zero. A sum beyond 64 bits is an infinity. The epoch is a's.
// Timescales of 0 or below are added like others where they are equal; different ones give the invalid time.
QUILL_EXPORT MediaTime add(const MediaTime& a, const MediaTime& b);

}  // namespace quill::inline v0
