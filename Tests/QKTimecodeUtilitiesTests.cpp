#include "../Framework/QKTimecodeUtilities.h"

#include "../Framework/TimecodeModeTable.h"
#include "../Platform/IntegerMath.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace quill {
namespace {

static_assert(QKTimecodeBestTimeRate == -1 && QKTimecodeUseSeconds == 0 && QKTimecodeSCRTimeRate == 27000000 &&
              TimeRate(-1) == TimeRate(kUInt64Highest));
// Any integer is a rate; a fraction, or a mode given for one, is not.
static_assert(std::is_convertible_v<int, TimeRate> && !std::is_convertible_v<double, TimeRate> &&
              !std::is_convertible_v<QKSMPTETimecodeMode, TimeRate>);

TEST(QKTimecodeUtilities, LeastCommonMultipleIsZeroForNoneOrBeyond64Bits) {
  constexpr std::uint64_t k2To63 = std::uint64_t{1} << 63, k2To32 = std::uint64_t{1} << 32;
  constexpr std::uint64_t kRows[][3] = {{0, 5, 0},           {1920000, 2400000, 9600000},
                                        {k2To63, 2, k2To63}, {k2To32 - 1, k2To32 + 1, kUInt64Highest},
                                        {k2To63, 3, 0},      {k2To32, k2To32 + 1, 0}};
  for (const auto& [a, b, multiple] : kRows) {
    EXPECT_EQ(_QKTimecodeUtilityLCM(a, b), multiple) << a << ", " << b;
    EXPECT_EQ(_QKTimecodeUtilityLCM(b, a), multiple) << b << ", " << a;
  }
  for (std::uint64_t n = 0; n < 3600; ++n) {
    const std::uint64_t a = n / 60 + 1, b = n % 60 + 1;
    std::uint64_t multiple = a;
    while (multiple % b != 0) multiple += a;
    ASSERT_EQ(_QKTimecodeUtilityLCM(a, b), multiple) << a << ", " << b;
  }
}

TEST(QKTimecodeUtilities, AllNonnegativeLooksAtAsManyAsItIsTold) {
  EXPECT_TRUE(allNonnegative(0, -1) && allNonnegative(3, 1, 0, kInt64Highest) && allNonnegative(2, 1, 0, -1));
  EXPECT_FALSE(allNonnegative(3, 1, 0, -1) || allNonnegative(1, kInt64Lowest));
  EXPECT_EQ(privateSecondsFromHMS(1, 2, 3.5), 3723.5);
  EXPECT_EQ(privateSecondsFromHMS(kInt64Lowest, -1, 0), -kTwoTo63 * 3600 - 60);
}

}  // namespace
}  // namespace quill
