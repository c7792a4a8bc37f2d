#include "../Platform/MediaTime.h"

#include "../Platform/IntegerMath.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <tuple>
#include <vector>

namespace quill {
namespace {

constexpr std::uint32_t kRounded = kMediaTimeValid | kMediaTimeHasBeenRounded;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");
constexpr MediaTime kUp = MediaTime::positiveInfinity(), kDown = MediaTime::negativeInfinity();
constexpr MediaTime kNone = MediaTime::indefinite();

static_assert(MediaTime{} == kMediaTimeInvalid && !kMediaTimeInvalid.isNumeric());
static_assert(kMediaTimeZero == MediaTime{0, 1, 1, 0} && kMediaTimeZero.isNumeric());
static_assert(MediaTime::withEpoch(3, 30, 7) == MediaTime{3, 30, kMediaTimeValid, 7});

// A time in text: "13/25", "13/25r" where it is rounded, and "up", "down", "none" and "bad". An epoch follows a comma.
MediaTime timeOf(const std::string& text) {
  if (text.find('/') == std::string::npos)
    return text == "up" ? kUp : text == "down" ? kDown : text == "none" ? kNone : kMediaTimeInvalid;
  const std::size_t comma = text.find(',');
  return {std::stoll(text), std::stoi(text.substr(text.find('/') + 1)),
          text.find('r') != std::string::npos ? kRounded : kMediaTimeValid,
          comma == std::string::npos ? 0 : std::stoll(text.substr(comma + 1))};
}
std::string textOf(const MediaTime& time) {
  if (!time.isNumeric())
    return time == kUp                 ? "up"
           : time == kDown             ? "down"
           : time == kNone             ? "none"
           : time == kMediaTimeInvalid ? "bad"
                                       : "odd";
  const char* rounded = time.flags == kRounded ? "r" : time.flags == kMediaTimeValid ? "" : "?";
  return std::to_string(time.value) + "/" + std::to_string(time.timescale) + rounded +
         (time.epoch ? "," + std::to_string(time.epoch) : "");
}

TEST(MediaTimeMaking, RoundsSecondsToTheNearestTick) {
  std::string all;
  for (const double seconds : {1.5, 0.5, -0.5, -9223372036854775808.0, 9223372036854774784.0, 1e19, -kInfinity, kNaN})
    all += textOf(MediaTime::withSeconds(seconds, 1)) + " ";
  EXPECT_EQ(all, "2/1r 1/1r -1/1r -9223372036854775808/1 9223372036854774784/1 up down none ");
  EXPECT_EQ(textOf(MediaTime::withSeconds(1.5, 30)) + textOf(MediaTime::withSeconds(1, 0)), "45/30bad");
  for (std::uint32_t flags = 0; flags < 64; ++flags)
    EXPECT_EQ((MediaTime{1, 1, flags, 0}.isNumeric()), (flags & 1) != 0 && (flags & 28) == 0) << flags;
}

TEST(MediaTimeReading, SaysTheRatioAndTheSeconds) {
  const std::tuple<MediaTime, const char*, double> rows[] = {
      {{3003, 30000}, "{3003/30000 = 0.100 s}", 0.1001},
      {{13, 25, kRounded, 9}, "{13/25 = 0.520 s, rounded}", 0.52},
      {kUp, "{+infinity}", kInfinity},
      {kDown, "{-infinity}", -kInfinity},
      {kNone, "{indefinite}", kNaN},
      {kMediaTimeInvalid, "{invalid}", kNaN},
      {{5, 5, kMediaTimePositiveInfinity, 0}, "{invalid}", kNaN}};
  for (const auto& [time, text, seconds] : rows) {
    EXPECT_EQ(time.description(), text);
    EXPECT_TRUE(time.seconds() == seconds || (std::isnan(time.seconds()) && std::isnan(seconds))) << text;
  }
}

TEST(MediaTimeConversion, RoundsHalfAwayFromZeroAndMarksIt) {
  std::istringstream rows(
      "1001/30000 60000 2002/60000  -1/2 25 -13/25r  -2/3 1 -1/1r  5/25r,3 50 10/50r,3  1/-2 4 -2/4 "
      "1/2 0 bad  1/0 4 bad  9223372036854775807/1000 999 9214148664817921031/999r  none 0 none "
      "-4611686018427387904/1 2 -9223372036854775808/2  4611686018427387904/1 2 up "
      "-9223372036854775808/1 2147483647 down  -9223372036854775808/-3 3 up");
  for (std::string time, timescale, converted; rows >> time >> timescale >> converted;)
    EXPECT_EQ(textOf(timeOf(time).convertedTo(std::stoi(timescale))), converted) << time << " to " << timescale;
}

TEST(MediaTimeConversion, IsThatOfLongDivision) {
  std::mt19937_64 random(2997);
  for (int i = 0; i < 100000; ++i) {
    const auto value = static_cast<std::int64_t>(random()) >> (random() % 63);
    const auto from = static_cast<std::int32_t>((random() & 0x7FFFFFFF) >> (random() % 31) | 1);
    const auto to = static_cast<std::int32_t>((random() & 0x7FFFFFFF) >> (random() % 31) | 1);
    // In base two, every partial remainder below 2^32.
    const auto divisor = static_cast<std::uint64_t>(from), factor = static_cast<std::uint64_t>(to);
    std::uint64_t quotient = 0, remainder = 0;
    for (int bit = 63; bit >= 0; --bit) {
      remainder = remainder * 2 + (((magnitudeOf(value) >> bit) & 1) != 0 ? factor : 0);
      quotient = quotient * 2 + remainder / divisor;
      remainder %= divisor;
    }
    quotient += remainder * 2 >= divisor ? 1 : 0;
    const MediaTime converted = MediaTime{value, from}.convertedTo(to);
    const double size = static_cast<double>(magnitudeOf(value)) / from * to;
    if (size > 9.2e18) {
      ASSERT_TRUE(size < 9.3e18 || !converted.isNumeric()) << value << '/' << from << " to " << to;
    } else {
      ASSERT_TRUE(converted.isNumeric() && magnitudeOf(converted.value) == quotient)
          << value << '/' << from << " to " << to;
      ASSERT_TRUE(converted.value == 0 || (converted.value < 0) == (value < 0)) << value;
    }
  }
}

TEST(MediaTimeOrder, IsExactAcrossTimescales) {
  std::istringstream times(
      "down -9223372036854775808/1 -9223372036854775807/1 9223372036854775807/-1 -1/3 -2/6 1/-3 "
      "-715827882/2147483646 0/1 0/-5 0/1r,8 1001/30000 -1001/-30000 "
      "9223372036854775806/2147483647 9223372036854775807/2147483647 "
      "9223372036854775807/2147483646 9223372036854775807/1 up none bad bad");
  std::vector<MediaTime> ascending;
  for (std::string time; times >> time;) ascending.push_back(timeOf(time));
  ascending.back() = {7, 7, 0, 7};
  const int ranks[] = {0, 1, 2, 2, 3, 3, 3, 3, 4, 4, 4, 5, 5, 6, 7, 8, 9, 10, 11, 12, 12};
  ASSERT_EQ(ascending.size(), std::size(ranks));
  for (std::size_t i = 0; i < std::size(ranks); ++i) {
    for (std::size_t j = 0; j < std::size(ranks); ++j) {
      const int expected = (ranks[i] > ranks[j]) - (ranks[i] < ranks[j]);
      EXPECT_EQ(compare(ascending[i], ascending[j]), expected)
          << textOf(ascending[i]) << " and " << textOf(ascending[j]);
    }
  }
}

TEST(MediaTimeSum, IsExactWhereATimescaleServesBoth) {
  std::istringstream rows(
      "1001/30000r,4 -1/30000 1000/30000r,4  1/4 1/6r 5/12r  1/2147483647 1/1 2147483648/2147483647 "
      "1/65536 1/65537 2/65537r  9223372036854775807/1 1/1 up  -9223372036854775808/1 -1/1 down "
      "9223372036854775807/1 1/2 up  1/0 1/2 bad  1/2 down down  down up none  none up none "
      "bad none bad");
  for (std::string a, b, sum; rows >> a >> b >> sum;) {
    EXPECT_EQ(textOf(add(timeOf(a), timeOf(b))), sum) << a << " and " << b;
    MediaTime turned = add(timeOf(b), timeOf(a));
    turned.epoch = timeOf(sum).epoch;
    EXPECT_EQ(textOf(turned), sum) << b << " and " << a;
  }
}

}  // namespace
}  // namespace quill
