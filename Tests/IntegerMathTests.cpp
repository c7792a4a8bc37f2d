#include "../Platform/IntegerMath.h"

#include "../Platform/detail/WideMath.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace quill {
namespace {

using detail::divideWide, detail::multiplyWide, detail::UInt128;

constexpr std::uint64_t k2To63 = std::uint64_t{1} << 63;

TEST(IntegerMath, TakesDoublesTowardZeroAndSaturates) {
  constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min(), kHigh = 2147483647;
  const std::tuple<double, std::int64_t, std::uint64_t, std::int32_t> rows[] = {
      {-0.9, 0, 0, 0},
      {1.9, 1, 1, 1},
      {std::nan(""), 0, 0, 0},
      {2147483647.9, kHigh, kHigh, kHigh},
      {-2147483648.9, kLow, 0, kLow},
      {9223372036854774784.0, 9223372036854774784, 9223372036854774784, kHigh},
      {kTwoTo63, kInt64Highest, k2To63, kHigh},
      {kTwoTo64, kInt64Highest, kUInt64Highest, kHigh},
      {-std::numeric_limits<double>::infinity(), kInt64Lowest, 0, kLow}};
  for (const auto& [value, int64, uint64, int32] : rows) {
    EXPECT_EQ(std::tuple(saturateToInt64(value), saturateToUInt64(value), saturateToInt32(value)),
              std::tuple(int64, uint64, int32))
        << value;
  }
}

TEST(IntegerMath, WrapsOrSaturatesAsNamed) {
  using Row = std::tuple<std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t>;
  for (const auto& [a, b, wrapped, saturated, product] : {
           Row{kInt64Highest, 1, kInt64Lowest, kInt64Highest, kInt64Highest},
           Row{kInt64Lowest, -1, kInt64Highest, kInt64Lowest, kInt64Highest},
           Row{kInt64Lowest, 1, kInt64Lowest + 1, kInt64Lowest + 1, kInt64Lowest},
           Row{kInt64Lowest, kInt64Lowest, 0, kInt64Lowest, kInt64Highest},
           Row{3037000500, 3037000500, 6074001000, 6074001000, kInt64Highest},
           Row{3037000499, -3037000499, 0, 0, -9223372030926249001},
       }) {
    EXPECT_TRUE(wrappingAdd(a, b) == wrapped && wrappingAdd(b, a) == wrapped) << a << ' ' << b;
    EXPECT_TRUE(saturatingAdd(a, b) == saturated && saturatingAdd(b, a) == saturated) << a << ' ' << b;
    EXPECT_TRUE(saturatingMultiply(a, b) == product && saturatingMultiply(b, a) == product) << a << ' ' << b;
    EXPECT_EQ(wrappingSubtract(wrapped, b), a) << b;
    EXPECT_TRUE(saturatingSubtract(0, b) == (b == kInt64Lowest ? kInt64Highest : -b)) << b;
    EXPECT_TRUE(b == kInt64Lowest || saturatingSubtract(a, -b) == saturated) << a << ' ' << b;
  }
  EXPECT_TRUE(saturatingSubtract(kInt64Lowest, kInt64Lowest) == 0 &&
              saturatingSubtract(-1, kInt64Lowest) == kInt64Highest);
  EXPECT_TRUE(wrappingNegate(kInt64Lowest) == kInt64Lowest && magnitudeOf(kInt64Lowest) == k2To63);
  EXPECT_TRUE(saturatingFromUInt64(k2To63) == kInt64Highest && saturatingFromUInt64(k2To63 - 2) == kInt64Highest - 1);
  EXPECT_TRUE(truncatingDivide(-7, 2) == -3 && truncatingDivide(-7, 0) == 0);
  EXPECT_EQ(truncatingDivide(kInt64Lowest, -1), kInt64Lowest);
  EXPECT_EQ(roundHalfAway(-2.5), -3.0);
}

// The product by doubling and adding.
UInt128 multiplySlowly(std::uint64_t a, std::uint64_t b) {
  UInt128 product;
  for (int bit = 63; bit >= 0; --bit) {
    product = {product.high << 1 | product.low >> 63, product.low << 1};
    if (((b >> bit) & 1) == 0) continue;
    product.low += a;
    if (product.low < a) ++product.high;
  }
  return product;
}

TEST(WideMath, MultipliesAndDividesBack) {
  std::vector<std::uint64_t> factors = {0, 1, 0xFFFFFFFF, 0x100000000, k2To63, k2To63 - 1, kUInt64Highest};
  std::mt19937_64 random(128);
  for (int i = 0; i < 200; ++i) factors.push_back(random() >> (random() % 64));
  for (const std::uint64_t a : factors) {
    for (const std::uint64_t b : factors) {
      const UInt128 product = multiplyWide(a, b);
      ASSERT_EQ(product, multiplySlowly(a, b)) << a << " x " << b;
      if (a == 0 || product.high >= a) continue;
      const std::uint64_t rest = random() % a;
      const UInt128 sum{product.high + (product.low + rest < rest ? 1 : 0), product.low + rest};
      const auto [quotient, remainder] = divideWide(sum, a);
      ASSERT_TRUE(quotient == b && remainder == rest) << a << " x " << b << " + " << rest;
    }
  }
  EXPECT_LT((UInt128{1, kUInt64Highest}), (UInt128{2, 0}));
}

}  // namespace
}  // namespace quill
