#include "../Framework/FilmFootage.h"

#include "../Framework/QKExtendedTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <random>

namespace quill {
namespace {

using Footage = FeetFramesQuarterFrames;
using Integer = std::int64_t;
constexpr auto k16mm = QKFilmType_16mm, k3Perf = QKFilmType_35mm_3perf, k70mm = QKFilmType_70mm_5perf;
constexpr auto k24 = QKSMPTETimecodeMode_24, k2997 = QKSMPTETimecodeMode_2997;

Footage read(QKExtendedTimecode& value) {
  Footage f{-1, -1, -1};
  value.getFFFeet(&f.feet, &f.frames, &f.quarterFrames);
  return f;
}
std::string textOf(const Footage& f) {
  return std::to_string(f.feet) + '+' + std::to_string(f.frames) + '+' + std::to_string(f.quarterFrames);
}
QKExtendedTimecode film(QKFilmType type, QKSMPTETimecodeMode mode) {
  return {0, QKTimecodeBestTimeRate, mode, 1, 120, 4, 4, type};
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
    QKExtendedTimecode value = film(row.type, k24);
    for (Integer n = 0; n < 100000; ++n) {
      differences += footageOfFrame(row.type, static_cast<std::uint64_t>(n)) != walker;
      // 70 mm film has feet that start within a frame, which reads as of the foot before. Written at once, all but the
      // first of five feet come back a frame early; written field by field, a foot early.
      const Integer isLate = row.type == k70mm && walker.feet % 5 != 0;
      differences += frameOfFootage(row.type, walker.feet, walker.frames) != n - isLate;
      value.setVideoFrames(static_cast<std::uint64_t>(n));
      differences += read(value) != walker;
      value.clearTimecode(), value.setFFFeet(walker.feet), value.setFFFrames(walker.frames);
      differences += value.signedVideoFrames() != frameOfFootage(row.type, walker.feet - isLate, walker.frames);
      if (++walker.frames == framesOfFoot(row.type, walker.feet)) walker = {walker.feet + 1};
    }
    EXPECT_EQ(differences, 0) << row.name;
  }
}

// clang-format off
TEST(FilmFootage, ValuesAreReadSetAddedToAndSubtractedFrom) {
  const struct { QKFilmType type; Integer frame; void (*act)(QKExtendedTimecode&); const char* text; } rows[] = {
      {k16mm, 100, [](auto&) {}, "2+20+0"},
      {static_cast<QKFilmType>(10), -100, [](auto&) {}, "-6+4+0"},
      {static_cast<QKFilmType>(-1), 100, [](auto&) {}, "6+4+0"},
      {k16mm, 100, [](auto& v) { v.setFFFeet(7); }, "7+20+0"},
      {k16mm, -100, [](auto& v) { v.setFFFrames(90); }, "~4+10+0"},
      {k16mm, 100, [](auto& v) { v.setFFQuarterFrames(3); v.setFFFeet(1); v.setFFFrames(2); }, "1+2+3"},
      {k16mm, -100, [](auto& v) { v.setFFQuarterFrames(6); }, "~2+21+2"},
      {k16mm, -100, [](auto& v) { v.addFeet(2, 25, 1); }, "0+5+1"},
      {k16mm, 100, [](auto& v) { v.subtractFeet(2, 25, 1); }, "-0+5+1"},
      {k70mm, 64, [](auto& v) { v.addFeet(1, 1, 0); }, "6+0+0"},
      {k3Perf, 23, [](auto& v) { v.addFeet(1, 19, 3); v.addFeet(0, 0, 1); }, "3+1+0"},
      {k3Perf, 21, [](auto& v) { v.subtractFeet(1, 0, 1); }, "-0+0+1"},
      {k3Perf, -21, [](auto& v) { v.addFeet(3, 22, 0); }, "3+0+0"},
  };
  // clang-format on
  for (const auto& [type, frame, act, text] : rows) {
    for (const bool usesSeconds : {false, true}) {
      const ReportRecorder reports;
      QKExtendedTimecode value = film(type, k24);
      value.setTimeRate(usesSeconds ? QKTimecodeUseSeconds : QKTimecodeBestTimeRate);
      value.setSeconds((static_cast<double>(frame) + (frame < 0 ? -1e-4 : 1e-4)) / 24);
      act(value);
      std::string expected = text;
      if (expected[0] == '~') expected.replace(0, 1, usesSeconds ? "" : "-");  // a setter loses the sign
      EXPECT_EQ((value.isNegative() ? "-" : "") + textOf(read(value)), expected);
      EXPECT_TRUE(reports.isQuiet()) << reports;
    }
  }
  // Sums are sums of frames, but at 3 perforations, and a thousandth of a frame more where a tick is shorter than that.
  for (const auto& row : kFilmTypeTable) {
    for (const auto& [mode, frameTicks, more] : {std::tuple{k24, 80, 0}, {k2997, 80080, 80}}) {
      QKExtendedTimecode value = film(row.type, mode);
      for (Integer n = 1, ticks = 0; n < 500 && row.type != k3Perf; ++n) {
        const Integer delta = (frameOfFootage(row.type, n, n % 7) * 4 + n % 5) * frameTicks / 4 + more;
        n % 3 == 0 ? value.addFeet(n, n % 7, n % 5) : value.subtractFeet(n, n % 7, n % 5);
        ticks += n % 3 == 0 ? delta : -delta;
        ASSERT_EQ(value.timeValue().value, ticks) << row.name << ' ' << n;
      }
    }
  }
  QKExtendedTimecode coarse(MediaTime(1, 25), k24);  // at a timescale without whole frames
  coarse.addFeet(0, 1, 0);
  EXPECT_EQ(coarse.timeValue(), MediaTime(2, 25));
}

// Foot by foot, as people count. Below foot 0 the lengths do not matter: the difference is then taken the other way round.
Footage slowSum(const Footage& a, const Footage& b) {
  Footage sum{a.feet, a.frames + b.frames, a.quarterFrames + b.quarterFrames};
  for (; sum.quarterFrames >= 4; sum.quarterFrames -= 4) ++sum.frames;
  while (sum.frames >= framesOfFoot(k3Perf, sum.feet)) sum.frames -= framesOfFoot(k3Perf, sum.feet++);
  return {sum.feet + b.feet, sum.frames, sum.quarterFrames};
}
Footage slowDifference(const Footage& a, const Footage& b) {
  Footage rest{a.feet, a.frames - b.frames, a.quarterFrames - b.quarterFrames};
  for (; rest.quarterFrames < 0; rest.quarterFrames += 4) --rest.frames;
  while (rest.frames < 0) rest.frames += framesOfFoot(k3Perf, --rest.feet + 300);
  return {rest.feet - b.feet, rest.frames, rest.quarterFrames};
}
Integer quarters(const Footage& f) { return (f.feet / 3 * 64 + f.feet % 3 * 21 + f.frames) * 4 + f.quarterFrames; }

// Frame arithmetic says the same, except where the feet that are added last, or taken away, hold another number of long
// ones where they come to stand: the sum is then a frame more, the difference a frame less.
TEST(FilmFootage, ThreePerforationSumsAndDifferencesAreThoseOfAWalk) {
  std::mt19937 random(7);
  const auto below = [&random](Integer end) { return static_cast<Integer>(random()) % end; };
  Integer sumsApart = 0, differencesApart = 0;
  for (int i = 0; i < 20000; ++i) {
    const bool overlong = i % 2 == 0;
    Footage a{below(9), 0, below(overlong ? 20 : 4)}, b{below(9), 0, below(overlong ? 20 : 4)};
    for (Footage* f : {&a, &b}) f->frames = below(overlong ? 200 : framesOfFoot(k3Perf, f->feet));
    SCOPED_TRACE(textOf(a) + " and " + textOf(b));
    const Footage sum = private35mm3perfAddFFQ(a, b), forward = slowDifference(a, b), backward = slowDifference(b, a);
    ASSERT_EQ(textOf(sum), textOf(slowSum(a, b)));
    const bool isMore = (sum.feet - b.feet) % 3 + b.feet % 3 >= 3;
    ASSERT_EQ(quarters(sum), quarters(a) + quarters(b) + (isMore ? 4 : 0));
    if (forward.feet < 0 && (backward.feet < 0 || backward == Footage{})) continue;  // overlong ones
    const auto [rest, isNegative] = signAndMagnitudeOf(private35mm3perfSubtractFFQ(a, b));
    ASSERT_EQ(textOf(rest), textOf(isNegative ? backward : forward));
    ASSERT_EQ(isNegative, forward.feet < 0);
    const bool isLess = rest.feet % 3 + (isNegative ? a : b).feet % 3 >= 3;
    ASSERT_EQ(quarters(rest), (quarters(a) - quarters(b)) * (isNegative ? -1 : 1) - (isLess ? 4 : 0));
    sumsApart += isMore, differencesApart += isLess;
    if (overlong) continue;
    QKExtendedTimecode value = film(k3Perf, k2997);  // where zero has a sign, for it is 80 ticks
    const bool startsNegative = i % 4 > 1, adds = i % 8 > 3;
    value.setFFFeet(a.feet), value.setFFFrames(a.frames), value.setFFQuarterFrames(a.quarterFrames);
    value.setIsNegative(startsNegative);
    adds ? value.addFeet(b.feet, b.frames, b.quarterFrames) : value.subtractFeet(b.feet, b.frames, b.quarterFrames);
    const Footage& result = startsNegative != adds ? sum : rest;
    ASSERT_EQ(value.signedVideoFrames() * (value.isNegative() ? -4 : 4) + read(value).quarterFrames, quarters(result));
    ASSERT_EQ(value.isNegative(), startsNegative != (startsNegative == adds && isNegative));
  }
  EXPECT_TRUE(sumsApart > 3000 && differencesApart > 3000) << sumsApart << ' ' << differencesApart;
}

TEST(FilmFootage, ThreePerforationSumsOfAnySizeAreFoundAtOnceAndOddOnesReported) {
  constexpr Integer kHigh = kInt64Highest, kMany = Integer{1} << 57;
  const Footage sum = private35mm3perfAddFFQ({2, kMany, 3}, {3, 5, 1}), most{kHigh, kHigh, kHigh};
  const Footage rest = private35mm3perfSubtractFFQ({kMany, 0, 0}, {3, kMany, 9});
  EXPECT_TRUE(quarters(sum) == (42 + kMany + 6 + 64) * 4 && sum.frames < 22) << textOf(sum);
  EXPECT_TRUE(quarters(rest) == quarters({kMany}) - (64 + kMany) * 4 - 9 && rest.frames < 22) << textOf(rest);
  EXPECT_EQ(private35mm3perfAddFFQ(most, most).feet, kHigh);
  EXPECT_EQ(private35mm3perfSubtractFFQ(most, {kHigh, kHigh, 0}), (Footage{0, 0, kHigh}));
  const std::tuple<std::string, Footage, Footage> rows[] = {{"new.feet == 0", {1, -2, 3}, {1, 2, 3}},
                                                            {"new.frames == 0 && new.feet == 0", {0, 1, -2}, {0, 1, 2}},
                                                            {"new.frames == 0 && new.feet == 0", {1, 0, -2}, {1, 0, 2}},
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
