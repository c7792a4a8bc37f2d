#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <tuple>

namespace quill {
namespace {

using Value = OpenVideoTimecode;
using SetField = void (QKVideoTimecode::*)(std::int64_t);
constexpr SetField kSetters[] = {&QKVideoTimecode::setSMPTEHours,     &QKVideoTimecode::setSMPTEMinutes,
                                 &QKVideoTimecode::setSMPTESeconds,   &QKVideoTimecode::setSMPTEFrames,
                                 &QKVideoTimecode::setSMPTESubframes, &QKVideoTimecode::setSMPTEQuarterFrames};
enum Field { kHours, kMinutes, kSeconds, kFrames, kSubframes, kQuarterFrames };

// The label of the opposite sign, or the label itself.
std::string mirrored(const std::string& label, bool isMirrored = true) {
  if (!isMirrored || label == "0:00:00:00.00") return label;
  return label[0] == '-' ? label.substr(1) : '-' + label;
}

// The value that "-1:02:03:04.05" says, of fields in their usual range.
Value at(QKSMPTETimecodeMode mode, const std::string& label) {
  const bool isNegative = label[0] == '-';
  long long h = 0, m = 0, s = 0, f = 0, sub = 0;
  EXPECT_EQ(std::sscanf(label.c_str() + isNegative, "%lld:%lld:%lld:%lld.%lld", &h, &m, &s, &f, &sub), 5) << label;
  Value value = ticksIn(mode, 0);
  value.privateSetSMPTEHours(h, m, s, f, static_cast<double>(sub) / 80);
  value.setIsNegative(isNegative);
  return value;
}

// Adds field by field, or subtracts.
void move(QKVideoTimecode& value, bool forward, const SMPTEFieldSet& d, std::int64_t quarterFrames = 0) {
  const auto step = forward ? &QKVideoTimecode::addSMPTEHours : &QKVideoTimecode::subtractSMPTEHours;
  (value.*step)(d.hours, d.minutes, d.seconds, d.frames, d.subframes, quarterFrames);
}

TEST(QKVideoTimecodeSMPTEFields, AreReadFromTheMagnitude) {
  constexpr std::int64_t f = 80080;
  const std::tuple<QKSMPTETimecodeMode, std::int64_t, const char*, std::int64_t> rows[] = {
      {k2997Drop, 1800 * f, "0:01:00:02.00", 0},
      {k2997Drop, 107892 * 100 * f + 80000, "100:00:00:00.79", 3},
      {k24, 80 * (24 * 3661 + 23) + 79, "1:01:01:23.79", 3},
      {k2997, f - 1, "0:00:00:00.79", 3},  // 1/1000 of a frame is added
      {k2997, f / 4 - 80, "0:00:00:00.20", 1},
      {k2997Duration, 2399999, "0:00:00:29.77", 3},
      {k2997Duration, 30 * f, "0:00:01:00.02", 0}};
  for (const auto& [mode, ticks, label, quarterFrames] : rows) {
    for (const bool isNegative : {false, true}) {
      Value value = ticksIn(mode, isNegative ? -ticks : ticks);
      EXPECT_EQ(labelOf(value), mirrored(label, isNegative));
      EXPECT_EQ(value.SMPTEQuarterFrames(), quarterFrames) << label;
      EXPECT_EQ((SMPTEFieldSet{value.SMPTEHours(), value.SMPTEMinutes(), value.SMPTESeconds(), value.SMPTEFrames(),
                               value.SMPTESubframes()}),
                fieldsOf(value));
      std::int64_t only = -1;
      value.getSMPTEHours(nullptr, nullptr, nullptr, nullptr, nullptr, &only);
      EXPECT_EQ(only, quarterFrames) << label;
    }
  }
}

TEST(QKVideoTimecodeSMPTEFields, ASetterKeepsTheOthersAndTheSign) {
  const std::tuple<QKSMPTETimecodeMode, const char*, Field, std::int64_t, const char*> rows[] = {
      {k25, "1:02:03:04.05", kHours, 100, "100:02:03:04.05"},
      {k25, "1:02:03:04.05", kMinutes, 75, "2:15:03:04.05"},
      {k25, "0:59:03:04.05", kSeconds, 60, "1:00:00:04.05"},
      {k2997Drop, "0:00:05:00.00", kSeconds, 130, "0:02:10:02.00"},  // 1 minute and 70 seconds
      // rolled over as frames; the fraction is gone with it
      {k25, "1:02:03:04.05", kFrames, 25 * 60, "1:03:03:00.00"},
      {k2997Drop, "0:00:59:00.00", kFrames, 35, "0:01:00:07.00"},
      {k2997Duration, "0:00:01:00.00", kFrames, 30, "0:00:02:00.04"},  // 29.97 is nearest to 30
      {k2997Drop, "0:00:59:29.00", kSubframes, 165, "0:01:00:03.05"},
      {k25, "1:02:03:24.05", kQuarterFrames, 6, "1:02:04:00.40"},
      {k2997Drop, "0:01:00:05.00", kFrames, 0, "0:01:00:02.00"},
      {k2997Drop, "0:00:00:00.07", kMinutes, 1, "0:01:00:02.07"},
      {k2997Drop, "0:01:01:01.00", kSeconds, 0, "0:01:00:02.00"},
      {k11988Drop, "0:01:00:09.00", kFrames, 7, "0:01:00:08.00"}};
  for (const auto& [mode, before, field, argument, after] : rows) {
    for (const bool isNegative : {false, true}) {
      Value value = at(mode, mirrored(before, isNegative));
      (value.*kSetters[field])(argument);
      EXPECT_EQ(labelOf(value), mirrored(after, isNegative)) << before;
    }
  }
  // A zero on the way has no sign: frame 0, then the 25 frames. Nor has a single field in the seconds mode.
  Value value = at(k25, "-0:00:00:04.00"), seconds = secondsIn(k25, -3.04);
  value.setSMPTEFrames(25);
  EXPECT_EQ(labelOf(value), "0:00:01:00.00");
  seconds.setSMPTESeconds(5);
  EXPECT_DOUBLE_EQ(seconds.seconds(), 5.04);
}

TEST(QKVideoTimecodeSMPTEFields, AddingAndSubtracting) {
  const std::tuple<QKSMPTETimecodeMode, const char*, SMPTEFieldSet, std::int64_t, const char*, const char*> rows[] = {
      {k25, "1:00:00:00.00", {0, 0, 0, 0, 20}, 6, "1:00:00:00.20", "0:59:59:24.60"},
      {k25, "0:00:01:00.00", {0, 0, 2, 0, 0}, 0, "0:00:03:00.00", "-0:00:01:00.00"},
      {k2997Duration, "0:00:01:00.00", {0, 0, 0, 30, 0}, 0, "0:00:02:00.02", "-0:00:00:00.02"},
      {k2997Drop, "0:00:00:02.00", {0, 1, 0, 0, 0}, 0, "0:01:00:02.00", "-0:00:59:28.00"},
      {k2997Drop, "0:00:00:00.00", {0, 1, 0, 0, 0}, 0, "0:01:00:02.00", "-0:01:00:02.00"},
      {k2997Drop, "0:00:59:29.00", {0, 0, 0, 1, 0}, 0, "0:01:00:02.00", "0:00:59:28.00"},
      {k2997Drop, "0:09:59:29.00", {0, 0, 0, 1, 0}, 0, "0:10:00:00.00", "0:09:59:28.00"},
      {k2997Drop, "0:05:01:10.40", {0, 0, 0, 0, 0}, 3, "0:05:01:11.20", "0:05:01:09.60"},
      {k2997Drop, "0:05:01:10.40", {0, 5, 1, 10, 40}, 0, "0:10:02:21.00", "0:00:00:00.00"},
      {k5994Drop, "0:00:59:59.00", {0, 0, 0, 1, 0}, 0, "0:01:00:04.00", "0:00:59:58.00"},
      {k11988Drop, "0:00:59:119.00", {0, 0, 0, 1, 0}, 0, "0:01:00:08.00", "0:00:59:118.00"}};
  for (const auto& [mode, label, delta, quarterFrames, added, subtracted] : rows) {
    for (const bool isNegative : {false, true}) {
      Value sum = at(mode, mirrored(label, isNegative)), difference = sum;
      move(sum, !isNegative, delta, quarterFrames);
      move(difference, isNegative, delta, quarterFrames);
      EXPECT_EQ(labelOf(sum), mirrored(added, isNegative)) << label;
      EXPECT_EQ(labelOf(difference), mirrored(subtracted, isNegative)) << label;
    }
  }
}

// The promise is for 29.97 drop-frame and for steps that do not pass zero.
TEST(QKVideoTimecodeSMPTEFields, WholeHoursMinutesAndSecondsTakenBackReturnToTheLabel) {
  constexpr SMPTEFieldSet kDeltas[] = {{0, 0, 1, 0, 0},  {0, 0, 29, 0, 0}, {0, 0, 60, 0, 0},
                                       {0, 1, 0, 0, 0},  {0, 9, 59, 0, 0}, {0, 10, 0, 0, 0},
                                       {0, 47, 2, 0, 0}, {1, 0, 0, 0, 0},  {1, 59, 133, 0, 0}};
#ifdef QUILL_FULL_SWEEPS
  constexpr std::int64_t kStride = 1;
#else
  constexpr std::int64_t kStride = 13;
#endif
  for (std::int64_t n = 0; n < 2 * 17982; n += kStride) {
    for (const std::int64_t ticks : {n * 80080, -n * 80080, (n + 3 * 107892) * 80080}) {
      const Value start = ticksIn(k2997Drop, ticks);
      for (const SMPTEFieldSet& delta : kDeltas) {
        Value value = start;
        move(value, ticks >= 0, delta);
        move(value, ticks < 0, delta);
        ASSERT_EQ(value.timeValue(), start.timeValue()) << ticks << ", " << textOf(delta) << ": " << labelOf(value);
      }
    }
  }
}

TEST(QKVideoTimecodeSMPTEFields, MinuteByMinuteToTheTenthRestoresTheFramesField) {
  Value value = at(k2997Drop, "0:00:00:01.00");
  for (int minute = 1; minute < 10; ++minute) move(value, true, {0, 1, 0, 0, 0});
  EXPECT_EQ(labelOf(value), "0:09:00:02.00");
  move(value, true, {0, 1, 0, 0, 0});
  EXPECT_EQ(labelOf(value), "0:10:00:01.00");
  // Remembered until frames are added, whatever else is set, and compared with 2 at every rate: stale on purpose.
  value = at(k5994Drop, "0:00:00:05.00");
  for (const char* label : {"0:00:01:02.00", "0:00:02:05.00"}) {
    move(value, true, {0, 0, 1, 0, 0});
    if (label[6] == '1') value.setSMPTEFrames(2);
    EXPECT_EQ(labelOf(value), label);
  }
  move(value, true, {0, 0, 0, 1, 0});
  value.setSMPTEFrames(2);
  move(value, false, {0, 0, 1, 0, 0});
  EXPECT_EQ(labelOf(value), "0:00:01:02.00");
  // In the seconds mode too the sum keeps its sign; subframes are as exact as doubles are.
  Value seconds = secondsIn(k2997Drop, -17983.5 * 1001 / 30000);
  move(seconds, false, {0, 1, 0, 0, 0});
  move(seconds, false, {0, 9, 0, 0, 0});
  EXPECT_EQ(labelOf(seconds).substr(0, 11), "-0:20:00:01");
}

// At any timescale, with a frame that is whole to a thousandth of a tick.
TEST(QKVideoTimecodeSMPTEFields, IntegersAgreeWithTheArithmeticInDoublesBelow2To53) {
  constexpr double k2To53 = 9007199254740992.0;
  constexpr std::int64_t kUsual[] = {600, 24000, 44100, 48000, 90000, 240000, 27000000};
  std::mt19937_64 random(20);
  ReportRecorder reports;
  for (int i = 0; i < 40000; ++i) {
    const std::int64_t timescale = i % 2 ? 1 + static_cast<std::int64_t>((random() >> 33) >> (random() % 31))
                                         : kUsual[random() % std::size(kUsual)];
    const TimecodeModeRow& row = kTimecodeModeTable[random() % std::size(kTimecodeModeTable)];
    const bool isCustom = row.kind == TimecodeModeKind::Duration;
    Value value = isCustom ? customAt(i % 3 ? 29.5 : 48) : ticksIn(row.mode, 0);
    const auto counting = SMPTECounting::atRate(value.nominalFrameRate(), value.isDropFrame());
    const auto x = static_cast<std::int64_t>(random() >> (11 + random() % 50));
    const double real = static_cast<double>(x);
    const double frame = std::round(static_cast<double>(timescale) * 1000 / value.videoFrameRate()) / 1000;
    const double frames = std::trunc(real / frame), part = static_cast<double>(random() % 80) / 80;
    if (frames >= k2To53) continue;
    const std::string where = std::to_string(x) + '/' + std::to_string(timescale) + ' ' + std::string(row.shortName);
    value.bestTimeScale = timescale;
    value.setStoredTime({random() % 2 ? x : -x, static_cast<std::int32_t>(timescale)});
    SMPTEFieldSet f = fieldsOf(value), label = labelFromFrame(counting, static_cast<std::int64_t>(frames));
    label.subframes = f.subframes;
    ASSERT_EQ(f, label) << where;
    ASSERT_EQ(value.privateVideoFramesFractionalPart(), std::abs(real - frames * frame) / frame) << where;
    ASSERT_EQ(static_cast<double>(value.videoFrames()), frames) << where;
    value.privateSetSMPTEHours(f.hours, f.minutes, f.seconds, f.frames, part);
    const double whole =
        counting.whole != 0
            ? frames
            : value.videoFrameRate() * static_cast<double>(f.hours * 3600 + f.minutes * 60 + f.seconds) +
                  static_cast<double>(f.frames);
    const double back = frame == std::trunc(frame) ? whole * frame + std::trunc(frame * part + 0.5)
                                                   : std::trunc((whole + part) * frame);
    ASSERT_TRUE(back >= k2To53 || std::abs(static_cast<double>(value.timeValue().value)) == back) << where;
  }
  EXPECT_TRUE(reports.logs.empty() && reports.assertions.empty()) << reports;
}

// In the duration modes too, where doubles would miss some: unless the label reaches the next second.
TEST(QKVideoTimecodeSMPTEFields, ALabelThatWasWrittenReadsBackAsItself) {
  std::mt19937_64 random(9);
  const auto below = [&random](std::int64_t n) {
    return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(n));
  };
  for (int i = 0; i < 50000; ++i) {
    const TimecodeModeRow& row = kTimecodeModeTable[random() % std::size(kTimecodeModeTable)];
    const bool isDuration = row.kind == TimecodeModeKind::Duration;
    const SMPTEFieldSet label{below(1000), below(60), below(60), below(row.countingRate), below(80)};
    const double part = static_cast<double>(label.subframes) / 80;
    const double frames = static_cast<double>(label.frames) + part;
    if (isDroppedLabel(row.mode, label.minutes, label.seconds, label.frames) ||
        (isDuration && frames > row.nominalFrameRate() - 0.001)) {
      continue;
    }
    Value value = ticksIn(row.mode, random() % 2 ? 1 : -1);
    if (isDuration) value.bestTimeScale = 1000 * row.countingRate * (1 + below(100));
    value.privateSetSMPTEHours(label.hours, label.minutes, label.seconds, label.frames, part);
    ASSERT_EQ(textOf(fieldsOf(value)), textOf(label)) << row.shortName << value.bestTimeScale;
  }
}

TEST(QKVideoTimecodeSMPTEFields, AllFieldsAtOnceAreTheSettersOneAfterAnother) {
  std::mt19937_64 random(6);
  const auto below = [&random](std::uint64_t n) { return static_cast<std::int64_t>(random() % n); };
  ReportRecorder reports;  // of Custom values, which have no best timescale
  int taken = 0;
  for (int i = 0; i < 40000; ++i) {
    const auto mode = static_cast<QKSMPTETimecodeMode>(below(20));
    const MediaTime time(below(1 << 30) - (1 << 29), i % 5 ? 30000 : 48000);
    Value once = i % 50 == 0 ? secondsIn(mode, 5) : Value(time, mode);
    fieldsOf(once);
    Value single = once;
    const SMPTEFieldSet fields{below(3), below(61), below(3) * 30, below(130), below(80)};
    if (once.setSMPTEFieldsAtOnce(fields, static_cast<double>(fields.subframes) / 80)) {
      ++taken;
      const std::int64_t arguments[] = {fields.hours, fields.minutes, fields.seconds, fields.frames, fields.subframes};
      for (int k = 0; k < 5; ++k) (single.*kSetters[k])(arguments[k]);
      single.setIsNegative(once.isNegative());  // a zero on the way has lost it
    }
    ASSERT_EQ(once.timecodeNumberValue(), single.timecodeNumberValue()) << mode << textOf(fields);
  }
  EXPECT_GT(taken, 5000);
}

TEST(QKVideoTimecodeSMPTEFields, NegativeValuesMirror) {
  std::mt19937_64 random(3);
  const auto amount = [&random] { return static_cast<std::int64_t>(random() >> (57 + random() % 7)); };
  for (int i = 0; i < 40000; ++i) {
    const TimecodeModeRow& row = kTimecodeModeTable[random() % std::size(kTimecodeModeTable)];
    // From a second up: a zero on the way would lose the sign.
    const auto ticks = row.tickRate + static_cast<std::int64_t>(random() >> (25 + random() % 20));
    Value value = ticksIn(row.mode, ticks), mirror = ticksIn(row.mode, -ticks);
    const SMPTEFieldSet delta{amount(), amount(), amount(), amount(), amount()};
    const int operation = i % 8;
    for (Value* t : {&value, &mirror}) {
      if (operation < 6) {
        (t->*kSetters[operation])(delta.frames);
      } else {
        move(*t, (operation == 6) != (t == &mirror), delta, delta.hours);
      }
    }
    ASSERT_EQ(value.timeValue().value, -mirror.timeValue().value) << row.shortName << operation;
    ASSERT_EQ(fieldsOf(value), fieldsOf(mirror)) << row.shortName << operation;
    ASSERT_EQ(value.signedVideoFrames(), -mirror.signedVideoFrames()) << row.shortName;
  }
}

}  // namespace
}  // namespace quill
