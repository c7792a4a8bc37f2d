// Every report of QKVideoTimecode, in one table a kind, and random walks in which nothing else may be reported.

#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

namespace quill {
namespace {

using Value = OpenVideoTimecode;
using Strings = std::vector<std::string>;
using Act = std::int64_t (*)(Value&);

std::int64_t ticksOf(const Value& v) { return v.storedTime().value; }

// Answers what the member answers, cut to an integer, or the ticks that it leaves.
template <auto member, auto... arguments>
std::int64_t call(Value& v) {
  if constexpr (std::is_void_v<decltype((v.*member)(arguments...))>) {
    (v.*member)(arguments...);
    return ticksOf(v);
  } else {
    return static_cast<std::int64_t>((v.*member)(arguments...));
  }
}

std::int64_t highestField(Value& v) {
  std::int64_t f[6] = {7, 7, 7, 7, 7, 7};
  v.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
  return *std::max_element(std::begin(f), std::end(f));
}

const std::string kNoAdding = "ERROR: Can't add time with non-numeric time. Timecode unchanged";
const std::string kNoSign =
    "ERROR: -[QKVideoTimecode isNegative] can't get numeric info from non-numeric time, returning NO";
const std::string kNoOrder =
    "ERROR: compare: called with non-numeric time on at least one operand, returning OrderedSame";

// Each answers 0 and leaves the value alone.
// clang-format off
const std::pair<std::string, Act> kNonNumericRows[] = {
    {"ERROR: Can't set time rate with non-numeric internal time. Timecode unchanged", call<&Value::setTimeRate, TimeRate(48)>},
    {kNoSign, call<&Value::isNegative>},
    {"ERROR: -[QKVideoTimecode setIsNegative:] ignored for non-numeric time", call<&Value::setIsNegative, true>},
    {kNoOrder, [](Value& v) { return std::int64_t{v.compare(Value({1, 1}, k24))}; }},
    {kNoOrder, [](Value& v) { return std::int64_t{Value({1, 1}, k24).compare(v)}; }},
    {"ERROR: Can't hash non-numeric time. Returning 0", call<&Value::hash>},
    {"ERROR: Can't get SMPTE HH:MM:FF:SS with non-numeric time. Returning 0", highestField},
    {"ERROR: Can't get SMPTE hours with non-numeric time. Returning 0", call<&Value::SMPTEHours>},
    {"ERROR: Can't get SMPTE minutes with non-numeric time. Returning 0", call<&Value::SMPTEMinutes>},
    {"ERROR: Can't get SMPTE seconds with non-numeric time. Returning 0", call<&Value::SMPTESeconds>},
    {"ERROR: Can't get SMPTE frames with non-numeric time. Returning 0", call<&Value::SMPTEFrames>},
    {"ERROR: Can't get SMPTE subframes with non-numeric time. Returning 0", call<&Value::SMPTESubframes>},
    {"ERROR: Can't get SMPTE quarterFrames with non-numeric time. Returning 0", call<&Value::SMPTEQuarterFrames>},
    {"ERROR: Can't set SMPTE hours with non-numeric time. Returning 0", call<&Value::setSMPTEHours, 1>},
    {"ERROR: Can't set SMPTE minutes with non-numeric time. Returning 0", call<&Value::setSMPTEMinutes, 1>},
    {"ERROR: Can't set SMPTE seconds with non-numeric time. Returning 0", call<&Value::setSMPTESeconds, 1>},
    {"ERROR: Can't set SMPTE frames with non-numeric time. Returning 0", call<&Value::setSMPTEFrames, 1>},
    {"ERROR: Can't set SMPTE subframes with non-numeric time. Returning 0", call<&Value::setSMPTESubframes, 1>},
    {"ERROR: Can't set SMPTE quarterFrames with non-numeric time. Returning 0", call<&Value::setSMPTEQuarterFrames, 1>},
    {"ERROR: Can't add SMPTE info with non-numeric time. Timecode unchanged", call<&Value::addSMPTEHours, 1, 0, 0, 0, 0, 0>},
    {"ERROR: Can't subtract SMPTE info with non-numeric time. Timecode unchanged", call<&Value::subtractSMPTEHours, 1, 0, 0, 0, 0, 0>},
    {"ERROR: Non-numeric internal time will return NaN or \u00B1inf for seconds", [](Value& v) { return std::int64_t{std::isfinite(v.seconds())}; }},
    {kNoAdding, call<&Value::addSeconds, 1>},
    {kNoAdding, call<&Value::subtractSeconds, 1>},
    {"ERROR: Can't calculate video frames with non-numeric time. Returning 0", call<&Value::videoFrames>},
    {"ERROR: Can't calculate video frames with non-numeric time. Returning 0", call<&Value::signedVideoFrames>},
    {"ERROR: Can't set video frames with non-numeric time. Timecode unchanged", call<&Value::setVideoFrames, 1>},
    {"ERROR: Can't set video frames with non-numeric time. Timecode unchanged", call<&Value::setSignedVideoFrames, 1>},
};
// clang-format on

TEST(QKVideoTimecodeReports, NonNumericTimesLogAndAreLeftAlone) {
  for (const auto& [log, act] : kNonNumericRows) {
    for (const MediaTime& time : {kMediaTimeInvalid, MediaTime::positiveInfinity(), MediaTime::indefinite(),
                                  MediaTime(0, 24, kMediaTimeHasBeenRounded, 0)}) {
      for (const auto mode : {k24, k2997Drop, k2997Duration, kCustom}) {
        ReportRecorder reports;
        Value value = storing(time, mode);
        EXPECT_TRUE(act(value) == 0 && value.storedTime() == time) << log;
        EXPECT_EQ(reports.logs, Strings{log});
        EXPECT_TRUE(reports.assertions.empty() && reports.lights.empty()) << reports;
        EXPECT_TRUE(value.timeRate() == 1 && !value.isNumeric());
      }
    }
  }
}

const std::string kNoConversion = "WARNING: %@ can't convert timescale to get integer number of ticks per frame.";
const std::string kNoRate = "WARNING: -[QKVideoTimecode setCustomVideoFrameRate:] passed invalid frames per second: ";

// With the value's description, as it is before, for %@.
// clang-format off
const struct { Strings logs; Value value; Act act; std::int64_t answer; } kLogRows[] = {
    {{"ERROR: %@ setTimeValue: sent non-numeric rhoTime. Using kMediaTimeZero instead."}, storing({}, k25),
     [](Value& v) { return v.setTimeValue({}), std::int64_t{v.timeValue() == kMediaTimeZero}; }, 1},
    {{kNoRate + "0.500000. Using 30 fps."}, {kMediaTimeZero, kCustom},
     [](Value& v) { return v.setCustomVideoFrameRate(0.5), call<&Value::videoFrameRate>(v); }, 30},
    {{kNoRate + "nan. Using 30 fps."}, {kMediaTimeZero, kCustom},
     [](Value& v) { return v.setCustomVideoFrameRate(kNaN), call<&Value::videoFrameRate>(v); }, 30},
    {{kNoConversion}, {MediaTime(7, 90000), kCustom}, call<&Value::SMPTEFrames>, 7},
    {{kNoConversion, kNoAdding}, storing({}, k25), call<&Value::addVideoFrames, 1>, 0},
    {{kNoConversion, kNoAdding}, storing({0, 2000, 0, 0}, k25), call<&Value::subtractVideoFrames, 1>, 0},
    {{"ERROR: can't compare timecode %@ to 17. Returning OrderedSame."}, {kMediaTimeZero, kInvalid},
     [](Value& v) { return std::int64_t{v.compare(Number(17))}; }, 0},
    {{"ticks maxed out"}, {kMediaTimeZero, k25},
     [](Value& v) { return v.setTimecodeNumberValue(-1), ticksOf(v); }, kInt64Lowest},
    {{}, storing({}, k25), [](Value& v) { return v.setTimecodeNumberValue(0), v.isNumeric() + ticksOf(v); }, 1},
    {{kNoSign}, storing({}, k25), [](Value& v) { return v.setTimecodeNumberValue(5), ticksOf(v); }, 5},
    {{"WARNING: QKTimecode time scale changed in -setSeconds:. May cause problems down the line."},
     storing({}, k25), call<&Value::setSeconds, 3>, 3},
    {{"-[QKVideoTimecode privateClampIntegerValue:min:max:warn:] clamping a value to [-3,4]"}, {},
     [](Value& v) { std::int64_t n = 5; return v.privateClampIntegerValue(&n, -3, 4, true), n; }, 4},
    {{}, {}, [](Value& v) { std::int64_t n = 4; return v.privateClampIntegerValue(&n, -3, 4, true), n; }, 4},
    {{}, {}, [](Value& v) { std::int64_t n = -9; return v.privateClampIntegerValue(&n, -3, 4, false), n; }, -3},
};
// clang-format on

TEST(QKVideoTimecodeReports, Logs) {
  for (const auto& row : kLogRows) {
    ReportRecorder reports;
    Value value = row.value;
    Strings logs = row.logs;
    for (std::string& log : logs) {
      const auto place = log.find("%@");
      if (place != std::string::npos) log.replace(place, 2, value.descriptionForReport());
    }
    EXPECT_EQ(row.act(value), row.answer) << testing::PrintToString(row.logs);
    EXPECT_EQ(reports.logs, logs);
    EXPECT_TRUE(reports.assertions.empty()) << reports;
  }
  // An object that is being made has its class, its address and the time that it was given.
  ReportRecorder reports;
  const QKVideoTimecode made(MediaTime::indefinite(), k25);
  EXPECT_EQ(made.timeValue(), kMediaTimeZero);
  ASSERT_EQ(reports.logs.size(), 1u);
  EXPECT_TRUE(reports.logs[0].starts_with("ERROR: " + made.classNameAndAddress() + "\ntime: {in"));
  EXPECT_TRUE(reports.logs[0].ends_with(" initialized with non-numeric rhoTime. Using kMediaTimeZero instead."));
}

// Of 2 s at timescale 1. When the handler returns, it counts 30 frames a second, of 0.033 ticks.
const Value kInvalidMode(MediaTime(2, 1), kInvalid);
const Value kAt25 = ticksIn(k25, 10000);  // 0:00:05:00

constexpr const char* kNoFields = "QKVideoTimecode: Can't provide SMPTE information in mode QKSMPTETimecodeModeInvalid";
constexpr const char* kNoFrames = "QKVideoTimecode: No video frame information in mode QKSMPTETimecodeModeInvalid";
constexpr const char* kNegative = "-[QKVideoTimecode addSMPTEHours::::::] expects nonnegative deltas";
constexpr const char* kAddFields =
    "privateAddSMPTEHours:minutes:seconds:frames:subframes:quarterFrames:isNegativeDelta:";

// %@: the method. The answer is what comes when the handler returns.
// clang-format off
const struct { int line; const char *selector, *description; Value value; Act act; std::int64_t answer; } kAssertionRows[] = {
    {491, "minimumTickRateForMode:", "Can't find minimum tick rate for Custom mode", {},
     [](Value&) { return static_cast<std::int64_t>(Value::minimumTickRateForMode(kCustom)); }, 0},
    {493, "minimumTickRateForMode:", "Can't find minimum tick rate for unkown mode: 21", {},
     [](Value&) { return static_cast<std::int64_t>(Value::minimumTickRateForMode(kUnknown)); }, 0},
    {524, "timeRateForTimecodeModes:otherTimeRates:", "Can't calculate time rate from zero.", {},
     [](Value&) { return static_cast<std::int64_t>(Value::timeRateForTimecodeModes({k25}, {0})); }, 0},
    {1816, "videoFrameRate", "QKVideoTimecode: no video frame rate for QKSMPTETimecodeModeInvalid", kInvalidMode, call<&Value::videoFrameRate>, 30},
    {1819, "videoFrameRate", "%@ unknown timecode mode", {kMediaTimeZero, kUnknown}, call<&Value::nominalFrameRate>, 30},
    {1826, "isDuration", kNoFields, kInvalidMode, call<&Value::isDuration>, 0},
    {1841, "isDropFrame", kNoFields, kInvalidMode, call<&Value::isDropFrame>, 0},
    {1374, "privateGetSMPTEHours:minutes:seconds:frames:fractionalFrames:", "QKVideoTimecode: Can't use SMPTE information in mode QKSMPTETimecodeModeInvalid",
     kInvalidMode, call<&Value::SMPTESeconds>, 2},
    {1254, "privateSetSMPTEHours:", "%@ - Invalid argument", kAt25, call<&Value::setSMPTEHours, -1>, 10000 - 3600 * 2000},
    {1265, "privateSetSMPTEMinutes:", "%@ - Invalid argument", kAt25, call<&Value::setSMPTEMinutes, -1>, 10000 - 60 * 2000},
    {1282, "privateSetSMPTESeconds:", "%@ - Invalid argument", kAt25, call<&Value::setSMPTESeconds, -1>, -2000},
    {1302, "privateSetSMPTEFrames:", "%@ - Invalid argument", kAt25, call<&Value::setSMPTEFrames, -1>, 10000 - 80},
    {1324, "privateSetSMPTESubframes:", "%@ - Invalid argument", kAt25, call<&Value::setSMPTESubframes, -100>, 10000 - 99},
    {1349, "privateSetSMPTEQuarterFrames:", "%@ - Invalid argument", kAt25, call<&Value::setSMPTEQuarterFrames, -5>, 10000 - 99},
    {1722, kAddFields, kNoFields, kInvalidMode, call<&Value::addSMPTEHours, 0, 0, 1, 1, 0, 0>, 3},
    {1724, kAddFields, kNegative, kAt25, call<&Value::addSMPTEHours, 0, 0, -1, 0, 0, 0>, 10000 + 2000},
    {1724, kAddFields, kNegative, kAt25, call<&Value::subtractSMPTEHours, 0, 0, 0, 0, 0, -1>, 10000 - 19},
    {1189, "privateClampIntegerValue:min:max:warn:", "%@ nonsense min/max", {},
     [](Value& v) { std::int64_t n = 9; return v.privateClampIntegerValue(&n, 10, 0, false), n; }, 10},
    {2085, "addSeconds:", "%@ requires nonnegative delta.", kAt25, call<&Value::addSeconds, -1>, 10000 + 1999},  // |trunc(-1999.5)|
    {2085, "addSeconds:", "%@ requires nonnegative delta.", kAt25, [](Value& v) { return v.addSeconds(kNaN), ticksOf(v); }, 10000},
    {2092, "subtractSeconds:", "%@ requires nonnegative delta.", kAt25, call<&Value::subtractSeconds, -1>, 10000 - 1999},
    {2174, "videoFrames", kNoFrames, kInvalidMode, call<&Value::videoFrames>, 60},
    {2136, "signedVideoFrames", kNoFrames, kInvalidMode, call<&Value::signedVideoFrames>, 60},
    {2160, "setVideoFrames:", kNoFrames, kInvalidMode, call<&Value::setVideoFrames, 60>, 1},
    {2112, "setSignedVideoFrames:", kNoFrames, kInvalidMode, call<&Value::setSignedVideoFrames, -60>, -1},
    {2190, "addVideoFrames:", kNoFrames, kInvalidMode, call<&Value::addVideoFrames, 60>, 3},
    {2198, "subtractVideoFrames:", kNoFrames, kInvalidMode, call<&Value::subtractVideoFrames, 60>, 1},
};
// clang-format on

TEST(QKVideoTimecodeReports, Assertions) {
  for (const auto& [line, selector, text, before, act, answer] : kAssertionRows) {
    const bool ofTheClass = line < 600;
    const std::string method = std::string(ofTheClass ? "+" : "-") + "[QKVideoTimecode " + selector + ']';
    std::string description = text;
    if (description.starts_with("%@")) description.replace(0, 2, method);
    ReportRecorder reports(ReportRecorder::Returned);
    Value value = before;
    EXPECT_EQ(act(value), answer) << method;
    ASSERT_FALSE(reports.assertions.empty()) << method;
    const RecordedAssertion& first = reports.assertions[0];
    EXPECT_TRUE(first.line == line && first.file == "QKVideoTimecode" && first.method == method) << reports;
    EXPECT_EQ(first.description, description);
    EXPECT_EQ(first.object, ofTheClass ? nullptr : &value) << method;
    EXPECT_TRUE(reports.logs.empty() && reports.lights.empty()) << reports;
    // Where the handler throws, the operation ends before anything has changed.
    value = before;
    ReportRecorder throwing(ReportRecorder::Thrown);
    EXPECT_THROW(act(value), InternalInconsistencyFailure) << method;
    EXPECT_EQ(value.storedTime(), before.storedTime()) << method;
  }
  ReportRecorder reports(ReportRecorder::Returned);
  Value value = kAt25;
  value.setTimecodeMode(kUnknown);
  EXPECT_EQ(reports.assertions.size(), 1u) << reports;
  EXPECT_EQ(value.timecodeMode(), kUnknown);
  EXPECT_EQ(value.timeValue(), kMediaTimeInvalid) << "its tick rate is 0";
}

TEST(QKVideoTimecodeReports, LightAssertions) {
  // clang-format off
  const std::tuple<int, std::string, Value, Act, std::int64_t> rows[] = {
      {435, "pt_flags.useSeconds", kAt25, call<&Value::privateNormalizeSecondsValue>, 10000},
      {577, "NO", {}, [](Value&) { return ticksOf(Value(k2To63, 30, k25)); }, 1},
      {894, "[self timecodeMode] == QKSMPTETimecodeModeCustom", kAt25, call<&Value::setCustomVideoFrameRate, 48>, 10000},
      {994, "TIME_CAST(pt_time).timescale >= 0", {MediaTime(1, -30), k25}, call<&Value::timeRate>, 30},
      {1036, "pt_flags.useSeconds != otherTimecode->pt_flags.useSeconds", kAt25, [](Value& v) { return std::int64_t{v._compareDouble(Value({6, 1}, k25))}; }, -1},
      // 59 x 0.04 / 0.04 is below 59
      {1225, "ABS(leftOverTime) < frameTime", secondsIn(k25, 59 * 0.04), call<&Value::SMPTESubframes>, 79}};
  // clang-format on
  for (const auto& [line, condition, before, act, answer] : rows) {
    ReportRecorder reports;
    Value value = before;
    EXPECT_EQ(act(value), answer) << condition;
    EXPECT_EQ(value.customVideoModeInfo().frameRate, 0);
    EXPECT_EQ(reports.lights, Strings{"MyAssertMessage: " + condition +
                                      ",  file: QKVideoTimecode, line: " + std::to_string(line) + ", value: 0\n"});
    EXPECT_TRUE(reports.logs.empty() && reports.assertions.empty()) << reports;
  }
}

// ---- Random walks ----

// One of every kind of value there is, sane or not.
Value anyValue(std::mt19937_64& random) {
  const std::uint64_t bits = random();
  const auto ticks = static_cast<std::int64_t>(bits);
  const auto mode = static_cast<QKSMPTETimecodeMode>(bits % 19);
  constexpr double kRates[] = {48, 29.5, kNaN, 1e15, 1e300};
  switch (random() % 14) {
    case 0: return secondsIn(mode, static_cast<double>(bits % 100000) / 7);
    case 1: return secondsIn(mode, kNaN);
    case 2: return secondsIn(kCustom, -1e17);
    case 3: return {MediaTime(7, static_cast<std::int32_t>(bits)), kCustom};
    case 4: return kInvalidMode;
    case 5: return {MediaTime(2, 1), kUnknown};
    case 6: return storing(MediaTime::negativeInfinity(), mode);
    case 7: return {MediaTime(ticks, -24), mode};
    case 8: return {MediaTime(kInt64Lowest, 1), mode};
    case 9: return customAt(kRates[bits % 5]);
    default: return ticksIn(mode, ticks);
  }
}

struct Arguments {
  std::int64_t n[6];
  double real;
  Value other;
};

void operate(std::uint64_t operation, Value& v, const Arguments& a) {
  constexpr void (QKVideoTimecode::*kIntegers[])(std::int64_t) = {
      &Value::setSMPTEHours,     &Value::setSMPTEMinutes,       &Value::setSMPTESeconds,     &Value::setSMPTEFrames,
      &Value::setSMPTESubframes, &Value::setSMPTEQuarterFrames, &Value::setSignedVideoFrames};
  constexpr void (QKVideoTimecode::*kFrames[])(std::uint64_t) = {&Value::setVideoFrames, &Value::addVideoFrames,
                                                                 &Value::subtractVideoFrames};
  constexpr void (QKVideoTimecode::*kReals[])(double) = {&Value::setSeconds, &Value::addSeconds,
                                                         &Value::subtractSeconds, &Value::setCustomVideoFrameRate};
  const auto& [n0, n1, n2, n3, n4, n5] = a.n;
  const std::uint64_t i = operation % 28;
  if (i < 7) return (v.*kIntegers[i])(n0);
  if (i < 10) return (v.*kFrames[i - 7])(static_cast<std::uint64_t>(n0));
  if (i < 14) return (v.*kReals[i - 10])(a.real);
  switch (i) {
    case 14: return v.addSMPTEHours(n0, n1, n2, n3, n4, n5);
    case 15: return v.subtractSMPTEHours(n0, n1, n2, n3, n4, n5);
    case 16: return v.setTimecodeNumberValue(n0);
    case 17: return v.setTimecodeNumberValue(a.real);
    case 18: return v.addTimecodeNumberValue(a.real, n0 % 2 == 0);
    case 19: return v.setIsNegative(n0 % 2 == 0);
    case 20: return v.setTimeRate(n0);
    case 21: return v.setTimeRate(QKTimecodeBestTimeRate);
    case 22: return v.setTimecodeMode(a.other.timecodeMode());
    case 23: return v.takeConvertedValueFromTimecode(a.other);
    case 24: v.timecodePreservingSMPTEWithMode(a.other.timecodeMode()); return;
    case 25: v.privateNormalizeHMSFs({n0, n1, n2, n3, n4}); return;
    case 26: return v.privateSetSMPTEHours(n0, n1, n2, n3, a.real);
    default: v.compare(a.other), v.isEqual(a.other), v.hash(), v.timeRate();
  }
}

bool isDocumented(const ReportRecorder& reports, bool mayAssert) {
  const auto isKnown = [](const RecordedAssertion& a) {
    return std::ranges::any_of(kAssertionRows, [&a](const auto& row) { return row.line == a.line; });
  };
  const auto isLog = [](const std::string& log) {
    return log.starts_with("ERROR: ") || log.starts_with("WARNING: ") || log == "ticks maxed out" ||
           log.starts_with("QKVideoTimecode WARNING: Degenerate value for seconds (");
  };
  return (mayAssert || reports.assertions.empty()) && std::ranges::all_of(reports.assertions, isKnown) &&
         std::ranges::all_of(reports.logs, isLog);
}

// Sane values and arguments report no assertion, and leave labels that exist.
TEST(QKVideoTimecodeReports, OnAnyWalkNothingButTheDocumentedReportsHappen) {
  std::mt19937_64 random(2);
  const auto integer = [&random](bool nonnegative) {
    const std::uint64_t choice = random();
    auto n = static_cast<std::int64_t>(random() >> (choice % 64));
    if (choice % 5 == 0) n = kInt64Highest - static_cast<std::int64_t>(choice % 3);
    if (choice % 7 == 0) n = kInt64Lowest + static_cast<std::int64_t>(choice % 3);
    return nonnegative && n < 0 ? -(n + 1) : n;
  };
  const double reals[] = {0, -0.0, 0.04, 0.5, 29.97, 48, 3600, 1e9, 1e15, 9.3e18, 1e300, 5e-324, kInfinity, 1.5};
  const auto isInsane = [](const Value& v) { return v.timecodeMode() > kCustom || v.storedTime().timescale < 0; };
  for (int walk = 0; walk < 4000; ++walk) {
    ReportRecorder reports(walk % 2 ? ReportRecorder::Thrown : ReportRecorder::Returned);
    Value value = anyValue(random);
    for (int step = 0; step < 12; ++step) {
      const bool nonnegative = random() % 4 != 0;
      Arguments arguments{{}, reals[random() % std::size(reals)], anyValue(random)};
      for (std::int64_t& n : arguments.n) n = integer(nonnegative);
      if (!nonnegative) arguments.real = random() % 8 ? -arguments.real : kNaN;
      const bool mayAssert = !nonnegative || isInsane(value) || isInsane(arguments.other);
      const std::uint64_t operation = random();
      reports.clear();
      try {
        operate(operation, value, arguments);
      } catch (const InternalInconsistencyFailure&) {
        ASSERT_FALSE(reports.assertions.empty());
      }
      ASSERT_TRUE(isDocumented(reports, mayAssert)) << operation % 28 << '\n' << reports;
      if (isInsane(value)) continue;
      reports.clear();
      const SMPTEFieldSet f = fieldsOf(value);
      ASSERT_TRUE(isDocumented(reports, false)) << operation % 28 << '\n' << reports;
      if (value.timecodeMode() == kCustom) continue;
      const auto frames = static_cast<double>(f.frames);
      ASSERT_TRUE(std::min({f.hours, f.minutes, f.seconds, f.frames, f.subframes}) >= 0 && f.minutes < 60 &&
                  f.seconds < 60 && frames < value.nominalFrameRate() && f.subframes < 80 &&
                  !isDroppedLabel(value.timecodeMode(), f.minutes, f.seconds, f.frames))
          << operation % 28 << ' ' << value.description() << ' ' << textOf(f);
    }
  }
}

}  // namespace
}  // namespace quill
