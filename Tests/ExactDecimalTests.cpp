#include "../Platform/detail/ExactDecimal.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

namespace quill {
namespace {

using namespace detail;

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();
constexpr double kLeastNormal = std::numeric_limits<double>::min();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// "-12@3" for -0.12 x 10^3.
std::string textOf(const DecimalDigits& number) {
  return (number.negative ? "-" : "") + number.digits + "@" + std::to_string(number.exponent);
}

TEST(ExactDecimalDigits, AreTheFewestThatReadBackOrHalfToEven) {
  std::string shortest;
  for (const double value :
       {0.0, -0.0, 0.1, 0.49999999999999994, kLeast, 2 * kLeast, 20 * kLeast, kLeastNormal, kLargest, 0x1p-44, 1e23})
    shortest += textOf(exactShortestDigits(value)) + " ";
  EXPECT_EQ(shortest,
            "@0 -@0 1@0 49999999999999994@0 5@-323 1@-322 1@-321 22250738585072014@-307 17976931348623157@309 "
            "5684341886080802@-13 1@24 ");
  const std::tuple<double, int, const char*> toPlaces[] = {
      {2.5, 0, "2@1"},    {0.5, 0, "@0"},   {0.5000000000000001, 0, "1@1"},
      {0.125, 2, "12@0"}, {0.15, 1, "1@0"}, {-9.999, 2, "-1@2"},
      {0.09, 0, "@0"},    {1e-200, 5, "@0"}};
  for (const auto& [value, places, digits] : toPlaces) EXPECT_EQ(textOf(exactDigitsToPlaces(value, places)), digits);
  EXPECT_EQ(textOf(exactDigitsToCount(kLeast, 5)), "49407@-323");
  EXPECT_EQ(textOf(exactDigitsToCount(9007199254740992.0, 15)), "900719925474099@16");
  EXPECT_EQ(textOf(exactDigitsToCount(99.5, 2)), "1@3");
}

TEST(ExactDecimalNearest, TurnsAtTiesAndEndsAtTheRange) {
  EXPECT_EQ(exactNearestDouble("", 5), 0);
  EXPECT_EQ(exactNearestDouble("9007199254740993", 16), 9007199254740992.0) << "a tie to the even below";
  EXPECT_EQ(exactNearestDouble("9007199254740995", 16), 9007199254740996.0) << "a tie to the even above";
  EXPECT_EQ(exactNearestDouble("90071992547409930" + std::string(700, '0') + "1", 16), 9007199254740994.0);
  EXPECT_EQ(exactNearestDouble("17976931348623158", 309), kLargest);   // less than half a step above it
  EXPECT_EQ(exactNearestDouble("17976931348623159", 309), kInfinity);  // half a step
  EXPECT_EQ(exactNearestDouble("1", 9000000000000000000), kInfinity);
  EXPECT_EQ(exactNearestDouble("24703282292062327", -323), 0);  // less than half the least
  EXPECT_EQ(exactNearestDouble("24703282292062328", -323), kLeast);
  EXPECT_EQ(exactNearestDouble("9", -9000000000000000000), 0);
}

// Doubles of every exponent, more of them where the code has edges.
std::vector<double> sampleOfDoubles(int count) {
  std::vector<double> values = {kLeast, kLeastNormal, kLargest, 9007199254740993.0};
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    for (const double value : {power, std::nextafter(power, 0.0), std::nextafter(power, kLargest)})
      if (value != 0) values.push_back(value);
    if (exponent < 64) values.push_back(power + std::floor(power) + 0.5);
  }
  std::mt19937_64 random(20240229);
  while (values.size() < static_cast<std::size_t>(count)) {
    const auto value = std::bit_cast<double>(random());
    if (std::isfinite(value) && value != 0) values.push_back(value);
  }
  return values;
}

// The digits of number text between its leading and trailing zeros.
std::string digitsIn(std::string_view text) {
  std::string digits;
  for (const char c : text.substr(0, text.find('e'))) {
    if (c >= '0' && c <= '9' && !(c == '0' && digits.empty())) digits += c;
  }
  return digits.erase(digits.find_last_not_of('0') + 1);
}

// The public functions use charconv where the standard library has it for doubles.
TEST(ExactDecimalDigits, AreThoseOfCharconv) {
  std::size_t index = 0;
  for (const double value : sampleOfDoubles(300000)) {
    const DecimalDigits shortest = exactShortestDigits(value);
    ASSERT_EQ(textOf(shortest), textOf(shortestDigits(value)));
    ASSERT_EQ(exactNearestDouble(shortest.digits, shortest.exponent), std::abs(value));
    if (++index % 16 != 0) continue;
    const int places = index % 256 == 0 ? 340 : static_cast<int>(index / 16 % 30);
    std::string fixed, scientific;
    appendFixed(fixed, value, places);
    appendScientific(scientific, value, places);
    ASSERT_EQ(exactDigitsToPlaces(value, places).digits, digitsIn(fixed)) << fixed;
    const DecimalDigits counted = exactDigitsToCount(value, places + 1);
    ASSERT_EQ(counted.digits, digitsIn(scientific)) << scientific;
    std::string power = counted.exponent > 0 ? "e+" : "e-";
    appendPadded(power, std::abs(counted.exponent - 1), 2);
    ASSERT_TRUE(scientific.ends_with(power)) << scientific;
  }
}

}  // namespace
}  // namespace quill
