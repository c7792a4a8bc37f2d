// 128-bit products, with the compiler's own type where it has one.
#pragma once

#include <cstdint>

#if !defined(QUILL_NO_INT128) && defined(__SIZEOF_INT128__)
#define QUILL_HAS_INT128 1
#else
#define QUILL_HAS_INT128 0
#endif

namespace quill::inline v0::detail {

#if QUILL_HAS_INT128
__extension__ using NativeUInt128 = unsigned __int128;
#endif

struct UInt128 {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  friend constexpr bool operator==(const UInt128&, const UInt128&) = default;
  friend constexpr auto operator<=>(const UInt128&, const UInt128&) = default;
};

// The whole product.
constexpr UInt128 multiplyWide(std::uint64_t a, std::uint64_t b) {
#if QUILL_HAS_INT128
  const NativeUInt128 product = static_cast<NativeUInt128>(a) * b;
  return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
#else
  constexpr std::uint64_t kLowHalf = 0xFFFFFFFF;
  const std::uint64_t aLow = a & kLowHalf, aHigh = a >> 32;
  const std::uint64_t bLow = b & kLowHalf, bHigh = b >> 32;
  const std::uint64_t lowLow = aLow * bLow;
  const std::uint64_t highLow = aHigh * bLow + (lowLow >> 32);  // cannot wrap
  const std::uint64_t lowHigh = aLow * bHigh + (highLow & kLowHalf);
  return {aHigh * bHigh + (highLow >> 32) + (lowHigh >> 32), (lowHigh << 32) | (lowLow & kLowHalf)};
#endif
}

}  // namespace quill::inline v0::detail
