#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <tuple>
#include <type_traits>

namespace quill {
namespace {

using Value = OpenVideoTimecode;

// A derived value is never cut down to its base, neither by a copy nor by an assignment.
static_assert(!std::is_constructible_v<QKVideoTimecode, Value&> &&
              !std::is_constructible_v<QKVideoTimecode, const Value&> &&
              !std::is_assignable_v<QKVideoTimecode&, Value> && !std::is_assignable_v<QKVideoTimecode&, const Value&>);
// A mode is never made of a bare number, a tick count never of a boolean, a value never of one argument.
static_assert(!std::is_constructible_v<QKVideoTimecode, MediaTime, int> &&
              !std::is_constructible_v<QKVideoTimecode, bool, int, QKSMPTETimecodeMode> &&
              !std::is_convertible_v<MediaTime, QKVideoTimecode> && !std::is_convertible_v<Number, QKVideoTimecode>);

TEST(QKVideoTimecodeMaking, OfAFrameDurationFindsTheMode) {
  constexpr MediaTime kTime{-3003, 30000, kMediaTimeValid | kMediaTimeHasBeenRounded, 5};
  const std::tuple<MediaTime, std::int64_t, std::int64_t, std::int64_t> rows[] = {
      // counting, drop, elapsed
      {{2002, 60000}, 5, 6, 4},  {{100, 2997}, 5, 6, 4},      {{1001, 24000}, 1, 1, 0},
      {{100, 2400}, 2, 2, 2},    {{-1, -25}, 3, 3, 3},        {{100, 3000}, 7, 7, 7},
      {{100, 5000}, 8, 8, 8},    {{1001, 60000}, 10, 11, 9},  {{100, 6000}, 12, 12, 12},
      {{100, 9000}, 13, 13, 13}, {{100, 10000}, 14, 14, 14},  {{100, 12000}, 18, 18, 18},
      {{100, 2398}, 19, 19, 19}, {{1001, 30001}, 19, 19, 19}, {{1001, 120000}, 16, 17, 15},
      {{0, 30}, 2, 2, 2},        {kMediaTimeInvalid, 2, 2, 2}};  // the fallback
  for (const auto& [duration, counting, drop, elapsed] : rows) {
    const std::int64_t modes[] = {counting, drop, elapsed, counting};
    for (std::int64_t i = 0; i < 4; ++i) {
      EXPECT_EQ(QKVideoTimecode(kTime, duration, i).timecodeMode(), modes[i]) << duration.description() << i;
    }
    EXPECT_EQ(QKVideoTimecode(kTime, duration).timecodeMode(), counting) << duration.description();
  }
  EXPECT_EQ(QKVideoTimecode(kTime, MediaTime(1001, 30000), 1).timeValue(), kTime);
  for (const auto mode : {kCustom, kInvalid}) {
    QKVideoTimecode::setFallbackTimecodeMode(k30);
    EXPECT_EQ(QKVideoTimecode(kTime, kMediaTimeZero).timecodeMode(), k30);
    QKVideoTimecode::setFallbackTimecodeMode(mode);  // never stored
    EXPECT_EQ(QKVideoTimecode::fallbackTimecodeMode(), k24);
  }
  const std::tuple<MediaTime, double, std::int32_t> others[] = {{{1, 48}, 48, 48},
                                                                {{2, 59}, 29.5, 27000000},
                                                                {{100, 2398}, 23.98, 27000000},
                                                                {{-1, 48}, 30, 1}};  // logs and counts as 30
  ReportRecorder reports;
  for (const auto& [duration, rate, tickRate] : others) {
    const QKVideoTimecode value({1, 1}, duration);
    EXPECT_EQ(value.videoFrameRate(), rate);
    EXPECT_EQ(value.timeValue(), MediaTime(tickRate, tickRate));
  }
  EXPECT_EQ(reports.logs.size(), 1u) << reports;
}

// A count from 2^63 up loses 2^63-1, and its epoch says so.
TEST(QKVideoTimecodeMaking, OfANumberTakesUnsignedTicksOrSeconds) {
  const std::tuple<const char*, Number, TimeRate, QKSMPTETimecodeMode, MediaTime> rows[] = {
      {"best", 4800, QKTimecodeBestTimeRate, k24, {4800, 1920}},
      {"best of Custom", 1, QKTimecodeBestTimeRate, kCustom, {1, 27000000}},
      {"cut to 32 bits", 7, (std::int64_t{1} << 32) + 5, k25, {7, 5}},
      {"cut to a negative", 7, std::int64_t{1} << 31, k25, {7, -2147483647 - 1}},
      {"fraction", 7.9, 10, k25, {7, 10}},
      {"NaN", kNaN, 10, k25, {0, 10}},
      {"2^63", k2To63, 10, k25, MediaTime::withEpoch(1, 10, 1)},
      {"2^64-1", kUInt64Highest, 10, k25, MediaTime::withEpoch(kInt64Lowest, 10, 1)},
      {"-1.9", -1.9, 10, k25, MediaTime::withEpoch(kInt64Lowest, 10, 1)}};
  for (const auto& [label, number, rate, mode, time] : rows) {
    ReportRecorder reports;
    const QKVideoTimecode value(number, rate, mode);
    EXPECT_TRUE(value.timeValue() == time && !value.useSeconds()) << label;
    EXPECT_EQ(reports.lights.size(), static_cast<std::size_t>(time.epoch)) << label;
  }
  for (const double seconds : {0.0, -1.5, 0.000001, kInfinity}) {
    const QKVideoTimecode value(seconds, QKTimecodeUseSeconds, k25);
    EXPECT_TRUE(value.useSeconds() && value.seconds() == seconds && value.timeValue() == kMediaTimeInvalid) << seconds;
  }
}

TEST(QKVideoTimecodeMaking, ACopyHasEverythingAndSharesNothing) {
  // A minute from 00:00:00;00 remembers the frames field 0 for the tenth minute.
  QKVideoTimecode original;
  EXPECT_TRUE(original.timeValue() == kMediaTimeZero && original.timecodeMode() == k2997Drop);
  original.addSMPTEHours(0, 1, 0, 0, 0, 0);
  const Ref<QKVideoTimecode> copied = copyOf(original);
  QKVideoTimecode constructed(original), assigned;
  assigned = original;
  for (QKVideoTimecode* copy : {copied.get(), &constructed, &assigned}) {
    copy->addSMPTEHours(0, 9, 0, 0, 0, 0);
    EXPECT_EQ(labelOf(*copy), "0:10:00:00.00");
  }
  EXPECT_EQ(labelOf(original), "0:01:00:02.00");
  Value custom = customAt(48, {1, 2});
  const Value before = custom;
  custom.setCustomVideoFrameRate(50);
  EXPECT_TRUE(before.videoFrameRate() == 48 && before.customVideoModeInfo().preferredTimeScale == 48);
}

TEST(QKVideoTimecodeMaking, ServesItsProtocolsAndNamesItsClass) {
  QKVideoTimecode value({-3003, 30000}, k25), cleared = value;
  cleared.clearTimecode();
  EXPECT_EQ(cleared.timeValue(), MediaTime(0, 30000));
  Object* object = &value;
  ASSERT_TRUE(protocolCast<QKBasicTimecode>(object) && protocolCast<QKSMPTETimecode>(object) &&
              protocolCast<QKOneDimensionalVideoTimecode>(object) &&
              protocolCast<QKOneDimensionalTimeTimecode>(object));
  EXPECT_TRUE(protocolCast<QKBasicTimecode>(object)->isNegative());
  EXPECT_FALSE(protocolCast<QKSMPTETimecode>(object)->isDropFrame());
  EXPECT_EQ(protocolCast<QKOneDimensionalVideoTimecode>(object)->videoFrames(), 2u);
  EXPECT_EQ(protocolCast<QKOneDimensionalTimeTimecode>(object)->seconds(), -0.1);
  EXPECT_TRUE(conformsTo(object, Copying::protocol) && !conformsTo(object, Protocol{"QKHMSTimecode"}));
  EXPECT_STREQ(value.classDescriptor().name, "QKVideoTimecode");
  EXPECT_STREQ(value.classDescriptor().archiveName, "OrbisVideoTimecode");
  EXPECT_EQ(QKVideoTimecode::version(), 2);
  EXPECT_TRUE(QKVideoTimecode().isEqual(*value.classDescriptor().make()));

  _QKCustomVideoModeInfo info;
  EXPECT_TRUE(info.frameRate == 0 && info.preferredTimeScale == 0);
  info.frameRate = 29.5;
  info.preferredTimeScale = 7;
  const Ref<_QKCustomVideoModeInfo> copy = copyOf(info);
  info = {};
  EXPECT_TRUE(copy->frameRate == 29.5 && copy->preferredTimeScale == 7);
  EXPECT_STREQ(copy->classDescriptor().archiveName, "_OrbisCustomVideoModeInfo");
}

}  // namespace
}  // namespace quill
