#include "../Framework/FilmFootage.h"

#include "../Framework/QKExtendedTimecode.h"
#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace quill {
namespace {

using Footage = FeetFramesQuarterFrames;
using Integer = std::int64_t;
constexpr auto k3Perf = QKFilmType_35mm_3perf, k70mm = QKFilmType_70mm_5perf;

Footage read(QKExtendedTimecode& value) {
  Footage f{-1, -1, -1};
  value.getFFFeet(&f.feet, &f.frames, &f.quarterFrames);
  return f;
}
std::string textOf(const Footage& f) {
  return std::to_string(f.feet) + '+' + std::to_string(f.frames) + '+' + std::to_string(f.quarterFrames);
}
Integer framesOfFoot(QKFilmType type, Integer foot) {
  if (type == k3Perf) return foot % 3 == 2 ? 22 : 21;
  if (type == k70mm) return foot % 5 == 4 ? 12 : 13;  // as they are read
  return filmTypeRow(type)->perforationsPerFoot / filmTypeRow(type)->perforationsPerFrame;
}

TEST(FilmFootage, NumbersAHundredThousandFramesOfEveryGaugeAsAWalkOverItsFeetDoes) {
  for (const auto& row : kFilmTypeTable) {
    Integer differences = 0;
    Footage walker;
    QKExtendedTimecode value(0, QKTimecodeBestTimeRate, k24, 1, 120, 4, 4, row.type);
    for (Integer n = 0; n < 100000; ++n) {
      value.setVideoFrames(static_cast<std::uint64_t>(n));
      differences += read(value) != walker;
      // 70 mm film has feet that start within a frame, which reads as of the foot before. Written at once, all but the
      // first of five feet come back a frame early; written field by field, a foot early.
      const Integer isLate = row.type == k70mm && walker.feet % 5 != 0;
      const Integer frame = frameOfFootage(row.type, walker.feet, walker.frames);
      differences += frame != n - isLate;
      value.clearTimecode(), value.setFFFeet(walker.feet), value.setFFFrames(walker.frames);
      differences += value.signedVideoFrames() != frameOfFootage(row.type, walker.feet - isLate, walker.frames);
      value.clearTimecode(), value.subtractFeet(walker.feet, walker.frames, n % 5);
      differences += value.timeValue().value != -frame * 80 - n % 5 * 20;
      value.addFeet(walker.feet, walker.frames, n % 5);
      differences += value.timeValue().value != 0;
      if (++walker.frames == framesOfFoot(row.type, walker.feet)) walker = {walker.feet + 1};
    }
    EXPECT_EQ(differences, 0) << row.name;
  }
}

Integer quarters(const Footage& f) { return (f.feet / 3 * 64 + f.feet % 3 * 21 + f.frames) * 4 + f.quarterFrames; }
Footage afterQuarters(Integer n) {
  Footage f = footageOfFrame(k3Perf, static_cast<std::uint64_t>(n / 4));
  f.quarterFrames = n % 4;
  return f;
}

// Frames are carried over, or borrowed from, the feet of the first operand, then the feet of the other come or go. Frame
// arithmetic says the same, except where that gives or takes a long foot: the result is then a frame more, or less.
TEST(FilmFootage, ThreePerforationSumsAndDifferencesAreThoseOfFramesButForALongFoot) {
  Integer sumsApart = 0, differencesApart = 0;
  for (Integer x = 0; x < 700; ++x) {
    for (Integer y = 0; y < 700; ++y) {
      const Footage a = afterQuarters(x), b = afterQuarters(y), &smaller = x < y ? a : b;
      const Footage sum = private35mm3perfAddFFQ(a, b), carried = afterQuarters(x + y - quarters({b.feet}));
      ASSERT_EQ(sum, (Footage{carried.feet + b.feet, carried.frames, carried.quarterFrames})) << x << ' ' << y;
      ASSERT_EQ(quarters(sum), x + y + (carried.feet % 3 + b.feet % 3 >= 3 ? 4 : 0)) << x << ' ' << y;
      const auto [rest, isNegative] = signAndMagnitudeOf(private35mm3perfSubtractFFQ(a, b));
      const Footage borrowed = afterQuarters(std::abs(x - y) + quarters({smaller.feet}));
      ASSERT_EQ(rest, (Footage{borrowed.feet - smaller.feet, borrowed.frames, borrowed.quarterFrames}))
          << x << ' ' << y;
      ASSERT_EQ(isNegative, x < y) << x << ' ' << y;
      ASSERT_EQ(quarters(rest), std::abs(x - y) - (rest.feet % 3 + smaller.feet % 3 >= 3 ? 4 : 0)) << x << ' ' << y;
      sumsApart += quarters(sum) != x + y, differencesApart += quarters(rest) != std::abs(x - y);
    }
  }
  EXPECT_TRUE(sumsApart > 99999 && differencesApart > 99999) << sumsApart << ' ' << differencesApart;
}

TEST(FilmFootage, ThreePerforationSumsOfAnySizeAreFoundAtOnceAndOddOnesReported) {
  constexpr Integer kHigh = kInt64Highest, kMany = Integer{1} << 55;
  const Footage sum = private35mm3perfAddFFQ({2, kMany, 3}, {3, 5, 1}), most{kHigh, kHigh, kHigh};
  const Footage rest = private35mm3perfSubtractFFQ({kMany, 0, 0}, {3, kMany, 9});
  EXPECT_TRUE(quarters(sum) == (42 + kMany + 6 + 64) * 4 && sum.frames < 22) << textOf(sum);
  EXPECT_TRUE(quarters(rest) == quarters({kMany}) - (64 + kMany) * 4 - 9 && rest.frames < 22) << textOf(rest);
  EXPECT_EQ(private35mm3perfAddFFQ(most, most).feet, kHigh);
  EXPECT_EQ(private35mm3perfSubtractFFQ(most, {kHigh, kHigh, 0}), (Footage{0, 0, kHigh}));
  EXPECT_EQ(private35mm3perfSubtractFFQ({0, 0, 0}, {kHigh, kMany, 0}), (Footage{-kHigh, kMany, 0}));
  EXPECT_EQ(private35mm3perfSubtractFFQ({0, 0, 3}, {0, kHigh, kHigh}), (Footage{0, -kHigh, kHigh - 3}));
  EXPECT_EQ(footageOfFrame(k3Perf, k2To63 - 1), (Footage{12 * kMany, 0, 0}));  // 2^63 as a double
  EXPECT_EQ(textOf(footageOfFrame(QKFilmType_65mm_5perf, 9045277510000000000)), "376886562916666688+0+0");
  const std::string noFeet = "new.feet == 0", neither = "new.frames == 0 && new.feet == 0";
  const std::tuple<std::string, Footage, Footage> rows[] = {{noFeet, {1, -2, 3}, {1, 2, 3}},
                                                            {neither, {0, 1, -2}, {0, 1, 2}},
                                                            {neither, {1, 0, -2}, {1, 0, 2}},
                                                            {"NO", {}, {}}};
  for (const auto& [light, difference, magnitude] : rows) {
    ReportRecorder reports;
    const bool isNo = light == "NO";
    const auto result = signAndMagnitudeOf(isNo ? private35mm3perfSubtractFFQ({0, 21, 0}, {1, 0, 0}) : difference);
    EXPECT_TRUE(result.magnitude == magnitude && result.isNegative != isNo) << light;
    ASSERT_EQ(reports.lights.size(), 1u) << reports;
    EXPECT_TRUE(reports.lights[0].starts_with("MyAssertMessage: " + light + ",  file: QKExtendedTimecode, line: "));
  }
}

}  // namespace
}  // namespace quill
