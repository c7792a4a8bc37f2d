// 128-bit products and quotients, with the compiler's own type where it has one.
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

struct WideQuotient {
  std::uint64_t quotient = 0;
  std::uint64_t remainder = 0;
};

// n / d. Requires n.high < d, so that the quotient fits.
constexpr WideQuotient divideWide(UInt128 n, std::uint64_t d) {
#if QUILL_HAS_INT128
  const NativeUInt128 whole = (static_cast<NativeUInt128>(n.high) << 64) | n.low;
  return {static_cast<std::uint64_t>(whole / d), static_cast<std::uint64_t>(whole % d)};
#else
  std::uint64_t quotient = 0, remainder = n.high;
  for (int bit = 63; bit >= 0; --bit) {
    const bool carry = (remainder >> 63) != 0;
    remainder = (remainder << 1) | ((n.low >> bit) & 1);
    if (carry || remainder >= d) {
      remainder -= d;  // modulo 2^64, right with the carry
      quotient |= std::uint64_t{1} << bit;
    }
  }
  return {quotient, remainder};
#endif
}

}  // namespace quill::inline v0::detail
