#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <vector>

namespace quill {
namespace {

using Value = OpenVideoTimecode;

// Apart from the rounded bit and the epoch.
bool sameTicks(const MediaTime& a, const MediaTime& b) {
  return a.isNumeric() == b.isNumeric() && (!a.isNumeric() || (a.value == b.value && a.timescale == b.timescale));
}

TEST(QKVideoTimecodeTimeAndMode, SettingAModeOrATimeRateRounds) {
  const std::tuple<MediaTime, QKSMPTETimecodeMode, MediaTime> modeRows[] = {
      {{1, 1}, k2997, {2400000, 2400000}}, {{-1, 3840}, k24, {-1, 1920}},
      {{3, 2}, kInvalid, {2, 1}},          {{7, 90000}, kCustom, {7, 90000}},
      {{-3, -10}, k25, {600, 2000}},       {{kInt64Highest, 1}, k24, MediaTime::positiveInfinity()},
      {{3, 0}, k24, kMediaTimeInvalid}};
  for (const auto& [time, mode, result] : modeRows) {
    QKVideoTimecode value(time, k30);
    value.setTimecodeMode(mode);
    EXPECT_TRUE(value.timecodeMode() == mode && sameTicks(value.timeValue(), result)) << time.description();
  }
  const std::tuple<MediaTime, TimeRate, MediaTime> rateRows[] = {
      {{1, 24}, 48000, {2000, 48000}},
      {{-1, 2}, 1, {-1, 1}},
      {{1, 30}, QKTimecodeBestTimeRate, {80, 2400}},
      {{1, 1}, (std::int64_t{1} << 32) + 10, {10, 10}},  // cut to 32 bits
      {{1, 1}, (std::int64_t{1} << 32) - 1, kMediaTimeInvalid},
      {{1, 1}, std::int64_t{1} << 32, kMediaTimeInvalid}};
  for (const auto& [time, rate, result] : rateRows) {
    QKVideoTimecode value(time, k30);
    value.setTimeRate(rate);
    EXPECT_TRUE(!value.useSeconds() && sameTicks(value.timeValue(), result)) << rate.value;
  }
  Value custom = customAt(48, {1, 1}), seconds = secondsIn(k30, 1.25);
  custom.setTimecodeMode(k24);
  custom.setTimecodeMode(kCustom);
  EXPECT_EQ(custom.timeValue(), MediaTime(48, 48));
  seconds.setTimecodeMode(k24);
  EXPECT_EQ(seconds.seconds(), 1.25);
  QKVideoTimecode unset({1, 2}, kCustom);
  unset.setTimeRate(QKTimecodeBestTimeRate);
  EXPECT_TRUE(unset.useSeconds()) << "no best timescale: 0";
}

TEST(QKVideoTimecodeTimeAndMode, LeavingTheSecondsModeCutsToWholeTicksAndEnteringComputesNothing) {
  const std::tuple<double, std::int64_t> rows[] = {
      {1.5, 36}, {2.99, 71}, {-2.99, -71}, {-0.02, 0}, {kNaN, 0}, {-kInfinity, kInt64Lowest}, {1e300, kInt64Lowest}};
  ReportRecorder reports;
  for (const auto& [seconds, ticks] : rows) {
    Value value = secondsIn(k30, seconds);
    value.setTimeRate(24);
    EXPECT_TRUE(!value.useSeconds() && sameTicks(value.timeValue(), {ticks, 24})) << seconds;
    value.setTimeValue({5, 1});
    value.setTimeRate(QKTimecodeUseSeconds);
    EXPECT_TRUE(value.seconds() == seconds || std::isnan(seconds)) << seconds;
    EXPECT_TRUE(value.timeRate() == 1 && value.storedTime() == kMediaTimeInvalid) << seconds;
  }
  EXPECT_EQ(reports.lights.size(), 2u) << "the two counts beyond 64 bits";
  EXPECT_TRUE(reports.logs.empty() && reports.assertions.empty()) << reports;
}

TEST(QKVideoTimecodeTimeAndMode, CustomFrameRatesAndTheirTickRates) {
  const double justAbove48 = std::nextafter(48.0, 49.0);
  const std::tuple<double, double, std::int32_t> rows[] = {{29.5, 29.5, 27000000},
                                                           {justAbove48, justAbove48, 27000000},
                                                           {1, 1, 1},
                                                           {std::nextafter(1.0, 0.0), 30, 1},
                                                           {kNaN, 30, 27000000},
                                                           {kInfinity, 30, 27000000},
                                                           {-kInfinity, 30, 1},
                                                           {2147483647, 2147483647, 2147483647},
                                                           {2147483648, 2147483648, 27000000}};
  for (const auto& [asked, rate, tickRate] : rows) {
    ReportRecorder reports;
    const Value value = customAt(asked, {1, 1});
    EXPECT_TRUE(value.videoFrameRate() == rate && value.customVideoModeInfo().preferredTimeScale == tickRate) << asked;
    EXPECT_EQ(value.timeValue(), MediaTime(tickRate, tickRate)) << asked;
    EXPECT_EQ(reports.logs.size(), asked == rate ? 0u : 1u) << asked;
  }
  Value seconds = secondsIn(kCustom, 1.25);
  seconds.setCustomVideoFrameRate(48);
  EXPECT_TRUE(seconds.seconds() == 1.25 && seconds.videoFrameRate() == 48);
}

TEST(QKVideoTimecodeTimeAndMode, ATickRateForSeveralModes) {
  const std::tuple<std::vector<QKSMPTETimecodeMode>, std::vector<std::uint64_t>, std::uint64_t> rows[] = {
      {{}, {}, 27000000},           {{}, {44100}, 44100},
      {{k24, k25, k30}, {}, 48000}, {{k2997Drop}, {44100}, 352800000},
      {{kInvalid}, {48000}, 48000}, {{k24, k25}, {kUInt64Highest, 48000}, 0}};
  for (const auto& [modes, rates, rate] : rows) {
    EXPECT_EQ(QKVideoTimecode::timeRateForTimecodeModes(modes, rates), rate);
  }
}

TEST(QKVideoTimecodeTimeAndMode, ConvertingToAndFromOthers) {
  const std::tuple<QKSMPTETimecodeMode, std::int64_t, QKSMPTETimecodeMode, const char*> rows[] = {
      {k2997Drop, -1800 * 80080, k25, "-0:01:00:02.00"},
      {k30, 1800 * 80, k2997Drop, "0:01:00:02.00"},
      {k30, 1799 * 80, k24, "0:01:00:05.00"},
      {k30, 1799 * 80 + 33, k2997, "0:00:59:29.33"},
      {k24, 24 * 3600 * 30 * 80 + 79, k2997Duration, "30:00:00:00.79"}};
  for (const auto& [from, ticks, to, label] : rows) {
    Value value = ticksIn(from, ticks);
    const Ref<QKVideoTimecode> other = value.timecodePreservingSMPTEWithMode(to);
    EXPECT_TRUE(other->timecodeMode() == to && labelOf(*other) == label) << label;
    EXPECT_EQ(value.timeValue(), ticksIn(from, ticks).timeValue()) << label;
  }
  QKVideoTimecode ticks({0, 24}, k30);
  ticks.takeConvertedValueFromTimecode(QKVideoTimecode({-1, 48}, k25));
  EXPECT_TRUE(sameTicks(ticks.timeValue(), {-1, 24})) << "half away";
  ticks.takeConvertedValueFromTimecode(secondsIn(k25, 1.52));
  EXPECT_TRUE(sameTicks(ticks.timeValue(), {36, 24}) && ticks.timecodeMode() == k30);
  Value seconds = secondsIn(k30, 0);
  seconds.takeConvertedValueFromTimecode(QKVideoTimecode({-1, 8}, k25));
  EXPECT_EQ(seconds.seconds(), -0.125);
  seconds.takeConvertedValueFromTimecode(secondsIn(k25, 3.25));
  EXPECT_EQ(seconds.seconds(), 3.25);
}

TEST(QKVideoTimecodeTimeAndMode, ANumberIsAMagnitudeInTicksAndSignedInSeconds) {
  // What values of 5 and -5 ticks become, and how many logs and light assertions that makes.
  const std::tuple<Number, std::int64_t, std::int64_t, std::size_t, std::size_t> rows[] = {
      {7.9, 7, -7, 0, 0},
      {-0.0, 0, 0, 0, 0},
      {kInt64Highest, kInt64Highest, -kInt64Highest, 0, 0},
      {k2To63, 1, -1, 0, 1},
      {kUInt64Highest, kInt64Lowest, kInt64Lowest, 1, 1},
      {-0.5, kInt64Lowest, kInt64Lowest, 1, 1},
      {kNaN, kInt64Lowest, kInt64Lowest, 1, 1}};
  for (const auto& [number, positive, negative, logs, lights] : rows) {
    for (const std::int64_t ticks : {5, -5}) {
      ReportRecorder reports;
      QKVideoTimecode value({ticks, 10}, k25);
      value.setTimecodeNumberValue(number);
      EXPECT_EQ(value.timecodeNumberValue(), Number(ticks < 0 ? negative : positive));
      EXPECT_EQ(value.timeValue().epoch, static_cast<std::int64_t>(lights));
      EXPECT_TRUE(reports.logs.size() == logs && reports.lights.size() == lights) << number.description();
    }
  }
  Value seconds = secondsIn(k25, 5);
  seconds.setTimecodeNumberValue(-1.5);
  EXPECT_EQ(seconds.timecodeNumberValue(), Number(-1.5));
  EXPECT_EQ(seconds.timecodeNumberValue().kind(), Number::Kind::Double);
  EXPECT_EQ(QKVideoTimecode().timecodeNumberValue().kind(), Number::Kind::Signed);
}

TEST(QKVideoTimecodeTimeAndMode, TheSignIsTheSignOfTheTime) {
  const std::tuple<Value, bool, Number> rows[] = {
      {{MediaTime(-5, 10), k25}, true, 5},
      {{MediaTime(5, 10), k25}, false, -5},
      {{MediaTime(0, 10), k25}, false, 0},
      {{MediaTime(kInt64Lowest, 10), k25}, true, kInt64Lowest},  // negates to itself
      {secondsIn(k25, -1.5), true, 1.5},
      {secondsIn(k25, -0.0), false, 0}};
  for (const auto& [before, isNegative, negated] : rows) {
    Value value = before;
    EXPECT_EQ(value.isNegative(), isNegative);
    value.setIsNegative(isNegative);
    EXPECT_EQ(value.timecodeNumberValue(), before.timecodeNumberValue());
    value.setIsNegative(!isNegative);
    EXPECT_EQ(value.timecodeNumberValue(), negated);
  }
  EXPECT_FALSE(secondsIn(k25, kNaN).isNegative());
  // A negative timescale is made positive when it is asked for, where that is possible.
  ReportRecorder reports;
  QKVideoTimecode value({5, -10}, k25), lowest({5, -2147483647 - 1}, k25);
  EXPECT_TRUE(value.timeRate() == 10 && value.timeValue() == MediaTime(-5, 10));
  EXPECT_TRUE(lowest.timeRate() == 1 && lowest.timeValue() == kMediaTimeInvalid);
  EXPECT_EQ(reports.lights.size(), 2u);
}

TEST(QKVideoTimecodeTimeAndMode, DegenerateSecondsBecomeZero) {
  ReportRecorder reports;  // of the one line that a process logs
  for (const double seconds : {0.000001, std::nextafter(0.000001, 0.0), 5e-324, -0.000001, -0.0000009}) {
    const double kept = std::abs(seconds) < 0.000001 ? 0 : seconds;
    Value value = secondsIn(k25, 1), other = value;
    value.setTimecodeNumberValue(seconds);
    other.setSeconds(seconds);
    EXPECT_TRUE(value.seconds() == kept && other.seconds() == kept && secondsIn(k25, seconds).seconds() == kept);
  }
  EXPECT_LE(reports.logs.size(), 1u);
}

}  // namespace
}  // namespace quill
