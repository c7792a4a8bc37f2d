// Time rates and the integer helpers that every timecode class shares.
#pragma once

#include "../Platform/Export.h"

#include <concepts>
#include <cstdint>

namespace quill::inline v0 {

// Choose the best rate for me: the tick rate in which the timecode's frames are whole.
inline constexpr std::int64_t QKTimecodeBestTimeRate = -1;
// Hold the time as a double of seconds.
inline constexpr std::int64_t QKTimecodeUseSeconds = 0;
// The 27 MHz system clock: the tick rate where no mode gives one.
inline constexpr std::int64_t QKTimecodeSCRTimeRate = 27000000;

// A tick rate in ticks a second, or one of the constants above. Made implicitly from any integer.
struct TimeRate {
  std::uint64_t value;

  template <std::integral T>
  constexpr TimeRate(T rate) : value(static_cast<std::uint64_t>(rate)) {}

  friend constexpr bool operator==(TimeRate, TimeRate) = default;
};

// The least common multiple; 0 when either is 0 or the multiple passes 64 bits. (1920000, 2400000) gives 9600000.
QUILL_EXPORT std::uint64_t _QKTimecodeUtilityLCM(std::uint64_t a, std::uint64_t b);

// Whether none of the integers behind the count is negative; their number is the count. A count below 1 gives true.
// (3, 1, 0, -1) gives false.
template <std::integral... Values>
constexpr bool allNonnegative(std::int64_t count, Values... values) {
  std::int64_t place = 0;
  return (... && (place++ >= count || !(values < 0)));
}

// hours, minutes and seconds in seconds.
QUILL_EXPORT double privateSecondsFromHMS(std::int64_t hours, std::int64_t minutes, double seconds);

}  // namespace quill::inline v0
