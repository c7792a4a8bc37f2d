#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <tuple>
#include <unordered_set>

namespace quill {
namespace {

using Value = OpenVideoTimecode;

TEST(QKVideoTimecodeComparing, OrderIsByPositionAloneAndEqualityAsksForModeStorageAndRateToo) {
  const std::tuple<const char*, Value, Value, int, bool> rows[] = {
      {"timescales", {MediaTime(1, 3), k24}, {MediaTime(333333333, 1000000000), k24}, 1, false},
      {"equal", {MediaTime(1, 24), k24}, {MediaTime(80, 1920), k24}, 0, true},
      {"modes", {MediaTime(1, 3), k24}, {MediaTime(20, 60), k25}, 0, false},
      {"signs", {MediaTime(-1, 24), k24}, {MediaTime(1, 1000000), k24}, -1, false},
      {"the rounded bit", {MediaTime(1, 3, 3, 0), k24}, {MediaTime(1, 3), k24}, 0, true},
      {"seconds", secondsIn(k24, 1), secondsIn(k24, 1), 0, true},
      {"seconds, exactly", secondsIn(k24, 1), secondsIn(k24, std::nextafter(1.0, 2.0)), -1, false},
      {"seconds and ticks", {MediaTime(1, 1), k24}, secondsIn(k24, 1.0003), 0, false},
      {"just inside", {MediaTime(0, 1), k24}, secondsIn(k24, std::nextafter(0.0005, 0.0)), 0, false},
      {"just outside", {MediaTime(0, 1), k24}, secondsIn(k24, 0.0005), -1, false},
      {"an infinity", {MediaTime(1, 1), k24}, secondsIn(k24, kInfinity), -1, false},
      {"Invalid modes are not asked", {MediaTime(2, 1), kInvalid}, {MediaTime(1, 1), kInvalid}, 1, false},
      {"Custom", customAt(48, {1, 1}), customAt(48, {1, 1}), 0, true},
      {"Custom rates", customAt(48, {1, 1}), customAt(50, {1, 1}), 0, false},
      {"Custom rates of timescales", {MediaTime(1, 1), kCustom}, {MediaTime(2, 2), kCustom}, 0, false},
  };
  ReportRecorder reports;
  for (const auto& [label, first, second, order, isEqual] : rows) {
    const QKVideoTimecode &a = first, &b = second;
    EXPECT_TRUE(a.compare(b) == order && b.compare(a) == -order) << label;
    EXPECT_TRUE((a <=> b) == (order <=> 0) && (b <=> a) == (0 <=> order)) << label;
    EXPECT_TRUE(a.isEqual(b) == isEqual && b.isEqual(a) == isEqual && (a == b) == isEqual && a.isEqual(a)) << label;
    if (a.useSeconds() == b.useSeconds()) continue;
    EXPECT_EQ(first._compareDouble(second), order) << label;
  }
  const Value none = storing({}, k24), nan = secondsIn(k24, kNaN), one = secondsIn(k24, 1), other = none;
  const QKVideoTimecode& number = one;
  for (const Value* value : {&none, &nan}) {
    const QKVideoTimecode& unordered = *value;
    EXPECT_EQ(number <=> unordered, std::partial_ordering::unordered);
    EXPECT_EQ(unordered <=> unordered, std::partial_ordering::unordered);
  }
  EXPECT_TRUE(nan.compare(number) == 0 && none.isEqual(none) && !none.isEqual(Number(1)));
  EXPECT_TRUE(static_cast<const QKVideoTimecode&>(none) == other);
  EXPECT_TRUE(reports.isQuiet()) << reports;
  EXPECT_TRUE(none.isEqual(other)) << "compare says the same, and logs";
  EXPECT_EQ(reports.logs.size(), 1u);
}

TEST(QKVideoTimecodeComparing, HashIsOfTheTenthOfAMillisecond) {
  const std::tuple<Value, std::uint64_t> rows[] = {
      {{MediaTime(2, 3), k24}, 6667},
      {{MediaTime(-1, 1), k24}, kUInt64Highest - 9998},  // -9999.5, toward zero
      {secondsIn(k24, -5.9), kUInt64Highest - 4},
      {secondsIn(k24, kNaN), 0},
      {secondsIn(k24, kInfinity), kUInt64Highest},
      {secondsIn(k24, -kInfinity), k2To63}};
  ReportRecorder reports;
  for (const auto& [value, hash] : rows) EXPECT_EQ(value.hash(), hash);
  EXPECT_EQ(std::hash<QKVideoTimecode>()(storing({}, k24)), 0u);
  const std::unordered_set<QKVideoTimecode> set{QKVideoTimecode({1, 24}, k24)};
  EXPECT_TRUE(set.contains(QKVideoTimecode({2, 48}, k24)) && !set.contains(QKVideoTimecode({2, 48}, k25)));
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKVideoTimecodeText, DescriptionSaysTimeModeAndRate) {
  const std::tuple<Value, std::string, std::string, std::string> rows[] = {
      {{MediaTime(3003, 30000), k2997Drop}, "{3003/30000 = 0.100 s}", "QKSMPTETimecodeMode_2997Drop", "29.970030"},
      {secondsIn(k24, -1.5), "-1.500000 seconds", "QKSMPTETimecodeMode_24", "24.000000"},
      {secondsIn(kCustom, kInfinity), "inf seconds", "QKSMPTETimecodeModeCustom", "1.000000"},
      {storing({}, k25), "{invalid}", "QKSMPTETimecodeMode_25", "25.000000"},
      {{kMediaTimeZero, kInvalid}, "{0/1 = 0.000 s}", "QKSMPTETimecodeModeInvalid", "30.000000"},
      {{kMediaTimeZero, kUnknown}, "{0/1 = 0.000 s}", "(null)", "30.000000"}};
  ReportRecorder reports(ReportRecorder::Returned);
  for (const auto& [value, time, mode, rate] : rows) {
    const std::string name = value.classNameAndAddress();
    const std::string text =
        name + "\ntime: " + time + "\ntimecode mode: " + mode + "\nframe rate: " + rate + " frames per second";
    std::ostringstream stream;
    stream << value;
    EXPECT_EQ(stream.str(), text);
    EXPECT_TRUE(name.starts_with("<QKVideoTimecode: 0x")) << name;
    reports.clear();
    EXPECT_EQ(value.descriptionForReport(), value.timecodeMode() < kInvalid ? text : name);
    EXPECT_TRUE(reports.isQuiet()) << reports;
  }
}

}  // namespace
}  // namespace quill
