#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace quill {
namespace {

using Value = OpenVideoTimecode;

TEST(QKVideoTimecodeFramesAndSeconds, FramesAreWholeOrInDurationModesTheNearest) {
  const std::tuple<QKSMPTETimecodeMode, std::int64_t, std::int64_t> rows[] = {
      {k2997, 80079, 0},          {k2997, 80080, 1},          {k2997Drop, 1800 * 80080, 1800},
      {k2997Duration, 40039, 0},  {k2997Duration, 40040, 1},  {k25, kInt64Highest, kInt64Highest / 80},
      {k2997Duration, 120119, 1}, {k2997Duration, 120120, 2}, {k2997Duration, kInt64Highest, 115176973487198}};
  for (const auto& [mode, ticks, frames] : rows) {
    Value value = ticksIn(mode, ticks), mirror = ticksIn(mode, -ticks);
    EXPECT_EQ(value.videoFrames(), static_cast<std::uint64_t>(frames)) << ticks;
    EXPECT_EQ(mirror.videoFrames(), value.videoFrames()) << ticks;
    EXPECT_TRUE(value.signedVideoFrames() == frames && mirror.signedVideoFrames() == -frames) << ticks;
  }
  EXPECT_EQ(ticksIn(k25, kInt64Lowest).videoFrames(), k2To63 / 80);
}

TEST(QKVideoTimecodeFramesAndSeconds, SettingFramesKeepsTheSignInTicksOnly) {
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    Value ticks = ticksIn(row.mode, -7), seconds = secondsIn(row.mode, -1);
    ticks.setVideoFrames(100);
    EXPECT_EQ(ticks.timecodeNumberValue(), Number(-100 * row.ticksPerFrame())) << row.shortName;
    seconds.setVideoFrames(90);
    EXPECT_EQ(seconds.seconds(), 90 * (1 / row.videoFrameRate())) << row.shortName;
    seconds.setSignedVideoFrames(-90);
    EXPECT_EQ(seconds.signedVideoFrames(), -90) << row.shortName;
  }
  ReportRecorder reports;
  Value value = ticksIn(k25, 5);
  value.setSignedVideoFrames(kInt64Lowest);
  EXPECT_EQ(value.timecodeNumberValue(), Number(kInt64Lowest));
  EXPECT_TRUE(reports.isQuiet()) << reports;
  value.setVideoFrames(kUInt64Highest);
  EXPECT_EQ(value.timeValue(), MediaTime::withEpoch(kInt64Lowest, 2000, 1));
  EXPECT_EQ(reports.logs, std::vector<std::string>{"ticks maxed out"});
}

// 27000000 / 29.5 to 1/1000 tick is 915254.237: a frame starts between two ticks.
TEST(QKVideoTimecodeFramesAndSeconds, AFractionalCustomRateCountsInDoubles) {
  Value value = customAt(29.5, {0, 1});
  EXPECT_EQ(value._doubleFrameTime(), 915254.237);
  value.setVideoFrames(2);
  EXPECT_EQ(value.timecodeNumberValue(), Number(1830508));
  EXPECT_EQ(value.videoFrames(), 1u) << "half a tick before the second frame";
  value.setSignedVideoFrames(3);
  EXPECT_EQ(value.timecodeNumberValue(), Number(2745762)) << "of 2745762.711";
  value.setStoredTime({1830509, 27000000});
  EXPECT_EQ(value.privateWholeVideoFrames(), 2);
  EXPECT_NEAR(value.privateVideoFramesFractionalPart(), 0.526 / 915254.237, 1e-12);
  EXPECT_EQ(Value({1, 48000}, k2997)._doubleFrameTime(), 1601.6);
  // The fraction is past the whole frame.
  EXPECT_EQ(ticksIn(k2997, -3 * 80080 - 20020).privateVideoFramesFractionalPart(), 0.25);
  EXPECT_EQ(ticksIn(k2997Duration, 60060).privateVideoFramesFractionalPart(), 0.75);
  EXPECT_EQ(ticksIn(k2997Duration, 60060).privateWholeVideoFrames(), 0);
  EXPECT_NEAR(secondsIn(k25, -7.71).privateVideoFramesFractionalPart(), 0.75, 1e-12);
  EXPECT_EQ(storing({}, k25).privateVideoFramesFractionalPart(), 0);
}

// Around the last double below each half frame: a signed count rounds, a magnitude has a half added.
TEST(QKVideoTimecodeFramesAndSeconds, InTheSecondsModeFramesAreCountedInDoubles) {
  for (const auto mode : {k25, k2997, k2997Duration}) {
    Value value = secondsIn(mode, 0);
    const double frame = 1 / value.videoFrameRate(), half = value.isDuration() ? 0.5 : 0;
    for (const double frames : {0.5, 1.0, 29.5, 1e6 + 0.5, 4503599627370497.0}) {
      double seconds = frames * frame;
      for (int i = 0; i < 3; ++i) seconds = std::nextafter(seconds, 0.0);
      for (int i = 0; i < 14; ++i) {
        value.setSeconds(i % 2 ? -seconds : seconds);
        const double x = value.seconds() / frame, nearest = value.isDuration() ? std::round(x) : std::trunc(x);
        ASSERT_EQ(static_cast<double>(value.videoFrames()), std::trunc(std::abs(x) + half)) << x;
        ASSERT_EQ(static_cast<double>(value.signedVideoFrames()), nearest) << x;
        if (i % 2) seconds = std::nextafter(seconds, 1e300);
      }
    }
  }
  EXPECT_EQ(secondsIn(k25, -kInfinity).videoFrames(), kUInt64Highest);
  EXPECT_EQ(secondsIn(k25, kNaN).signedVideoFrames(), 0);
}

TEST(QKVideoTimecodeFramesAndSeconds, AddingFramesOrSeconds) {
  const std::tuple<Value, std::uint64_t, Number, Number> frameRows[] = {
      {ticksIn(k2997, -7), 1, 80073, -80087},
      {ticksIn(k2997Duration, 40040), 2, 200200, -120120},
      {secondsIn(k25, 1), 50, 1 + 50 * 0.04, 1 - 50 * 0.04},
      {{MediaTime(1, 1), k25}, 1, 2080, 1920},
      {ticksIn(k25, 7), kUInt64Highest, 8, 6}};  // 2^64-1 ticks, read as signed: one
  for (const auto& [value, frames, added, subtracted] : frameRows) {
    Value sum = value, difference = value;
    sum.addVideoFrames(frames);
    difference.subtractVideoFrames(frames);
    EXPECT_TRUE(sum.timecodeNumberValue() == added && difference.timecodeNumberValue() == subtracted) << frames;
  }
  Value last = ticksIn(k25, kInt64Highest);
  last.addVideoFrames(1);
  EXPECT_EQ(last.timeValue(), MediaTime::positiveInfinity());
  const std::tuple<const char*, Value, double, Number, Number> rows[] = {
      {"to the nearest", ticksIn(k30, 0), 0.3 / 2400, 0, 0},
      {"a half up", ticksIn(k30, 0), 0.5 / 2400, 1, -1},
      {"at the rate it has", {MediaTime(1, 7), k30}, 1, 8, -6},
      {"negative zero", ticksIn(k30, 7), -0.0, 7, 7},
      {"2^64-1 ticks, read as signed: one", ticksIn(k30, 7), kInfinity, 8, 6},
      {"seconds without limit", secondsIn(k30, 0), kInfinity, kInfinity, -kInfinity}};
  for (const auto& [label, value, seconds, added, subtracted] : rows) {
    Value sum = value, difference = value;
    sum.addSeconds(seconds);
    difference.subtractSeconds(seconds);
    EXPECT_TRUE(sum.timecodeNumberValue() == added && difference.timecodeNumberValue() == subtracted) << label;
  }
}

TEST(QKVideoTimecodeFramesAndSeconds, SettingSecondsRoundsToTheNearestTick) {
  const std::tuple<MediaTime, double, MediaTime, std::size_t> rows[] = {
      {{5, 2}, -0.25, {-1, 2}, 0},
      {{0, 7}, 1, {7, 7}, 0},
      {{5, 30, 0, 0}, 2, {60, 30}, 0},  // not numeric, with a timescale
      {{0, 0, 0, 0}, 2.5, {3, 1}, 1},
      {{5, -30}, 2, {2, 1}, 1},
      {{5, 30}, kNaN, MediaTime::indefinite(), 1},
      {{5, 30}, -1e300, MediaTime::negativeInfinity(), 1}};
  for (const auto& [time, seconds, result, logs] : rows) {
    ReportRecorder reports;
    Value value = storing(time, k30);
    value.setSeconds(seconds);
    const MediaTime set = value.timeValue();
    EXPECT_TRUE(set.value == result.value && set.timescale == result.timescale) << time.description();
    EXPECT_TRUE(set.isNumeric() == result.isNumeric() && reports.logs.size() == logs) << time.description();
  }
}

TEST(QKVideoTimecodeFramesAndSeconds, AddingANumberTakesItsMagnitude) {
  constexpr MediaTime kRounded{7, 10, kMediaTimeValid | kMediaTimeHasBeenRounded, 4};
  for (const Number& number : {Number(-5), Number(5.9), Number(-5.9), Number(5u)}) {
    Value sum(kRounded, k30), difference = sum;
    sum.addTimecodeNumberValue(number, false);
    difference.addTimecodeNumberValue(number, true);
    EXPECT_EQ(sum.timeValue(), MediaTime(12, 10, kRounded.flags, 4)) << number.description();
    EXPECT_EQ(difference.timeValue(), MediaTime(2, 10, kRounded.flags, 4)) << number.description();
  }
  Value seconds = secondsIn(k30, 7), value(kRounded, k30);
  seconds.addTimecodeNumberValue(-0.5, false);
  EXPECT_EQ(seconds.seconds(), 7.5);
  ReportRecorder reports;
  value.addTimecodeNumberValue(kInt64Lowest, false);
  EXPECT_EQ(value.timecodeNumberValue(), Number(8)) << "2^63 loses 2^63-1";
  EXPECT_EQ(reports.lights.size(), 1u);
  EXPECT_EQ(value.privateTimeForSeconds(1).kind(), Number::Kind::Unsigned);
  EXPECT_EQ(value.privateTimeForVideoFrames(1).kind(), Number::Kind::Unsigned);
}

}  // namespace
}  // namespace quill
