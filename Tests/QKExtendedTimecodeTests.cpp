#include "../Framework/QKExtendedTimecode.h"

#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <array>

namespace quill {
namespace {

using Integer = std::int64_t;
using Fields = std::array<Integer, 4>;
constexpr TimeRate kBest = QKTimecodeBestTimeRate, kSeconds = QKTimecodeUseSeconds;
constexpr auto k4Perf = QKFilmType_35mm_4perf, k3Perf = QKFilmType_35mm_3perf, k70mm = QKFilmType_70mm_5perf;
constexpr auto kNoFilm = static_cast<QKFilmType>(12);

struct Value : QKExtendedTimecode {
  using Base = QKExtendedTimecode;
  using Base::Base, Base::privateBarDuration, Base::privateBeatDuration, Base::privateDivisionDuration;
  using Base::privateDivisionsPerBeat, Base::privateFramesPerFoot;
  using Base::privateGetZeroBaseBars, Base::privateTimeForBars, Base::setStoredTime, Base::storedTime;
  using Base::privateSetDefaultFilmInfo, Base::privateSetDefaultMeasureInfo, Base::privateTickDuration;
};

// In the seconds mode where the timescale is 0.
Value at(const MediaTime& time, double tempo = 120, Integer numerator = 4, Integer denominator = 4,
         QKFilmType film = k4Perf) {
  const bool usesSeconds = time.isNumeric() && time.timescale == 0;
  Value value(0, usesSeconds ? kSeconds : kBest, k25, 48000, tempo, numerator, denominator, film);
  if (!usesSeconds) value.setStoredTime(time);
  return value;
}

Fields fieldsOf(QKExtendedTimecode& value) {
  Fields f{-1, -1, -1, -1};
  value.getBars(&f[0], &f[1], &f[2], &f[3]);
  return f;
}
// So many musical ticks from zero; and back.
Fields fieldsAt(Integer count, Integer ticksOfBar) {
  const Integer rest = count % ticksOfBar;
  return {count / ticksOfBar, rest / 960 + 1, rest % 960 / 240 + 1, rest % 240};
}
Integer countOf(const Fields& f, Integer ticksOfBar) {
  return f[0] * ticksOfBar + (f[1] - 1) * 960 + (f[2] - 1) * 240 + f[3];
}

// ---- Making, comparing ----

// clang-format off
TEST(QKExtendedTimecodeMaking, TakesTheBasesTimeAndItsOwnFields) {
  const MediaTime time(6, 600), frame(1, 25);
  const std::string film = "\nfilm type: QKFilmType_35mm_4perf", music = "\ntempo: 120.000000 beats per minute\n4/4 time", defaults = film + music;
  const std::tuple<QKExtendedTimecode, QKTimecode, std::string> rows[] = {
      {{}, {}, defaults},
      {{time, k25}, {time, k25}, defaults},
      {{time, frame}, {time, frame}, defaults},
      {{time, frame, 1}, {time, frame, 1}, defaults},
      {{time, frame, 1, 44100}, {time, frame, 1, 44100}, defaults},
      {{time, frame, 0, 0, k70mm}, {time, frame, 0, 0}, "\nfilm type: QKFilmType_70mm_5perf" + music},
      {{time, frame, 0, 48000, k3Perf, -1.5, 0, -8}, {time, frame, 0, 48000}, "\nfilm type: QKFilmType_35mm_3perf\ntempo: -1.500000 beats per minute\n0/-8 time"},
      {{7, kBest, k25}, {7, kBest, k25}, defaults},
      {{1.5, kSeconds, k25, 48000}, {1.5, kSeconds, k25, 48000}, defaults},
      {{7, kBest, k25, 44100, 0.0, -3, 0x100000005, kNoFilm}, {7, kBest, k25, 44100}, "\nfilm type: (null)\ntempo: 0.000000 beats per minute\n-3/5 time"},
      {QKExtendedTimecode::initWithTempo(132.7, 7, 8), {}, film + "\ntempo: 132.700000 beats per minute\n7/8 time"},
      {QKExtendedTimecode::initWithFilmType(kNoFilm), {}, "\nfilm type: (null)" + music},
  };
  for (const auto& [made, base, text] : rows) {
    EXPECT_EQ(made.description(), made.QKTimecode::description() + text);
    EXPECT_TRUE(base.isEqual(made) && !made.isEqual(base) && made.isEqual(*copyOf(made))) << text;
    EXPECT_TRUE(made.timeValue() == base.timeValue() && made.audioFrameRate() == base.audioFrameRate()) << text;
  }
  Value value = at({7, 48}, 90.5, 6, 8, k3Perf), later = at({8, 48}, 90.5, 6, 8, k3Perf), base = value;
  base.setAudioFrameRate(2000);
  for (const Value& v : {at({7, 48}, 90, 6, 8, k3Perf), at({7, 48}, 90.5, 7, 8, k3Perf), at({7, 48}, 90.5, 6, 4, k3Perf), at({7, 48}, 90.5, 6, 8), later, base})
    EXPECT_FALSE(value.isEqual(v) || v.isEqual(value) || value == v) << v;
  value.privateSetDefaultFilmInfo(), value.privateSetDefaultMeasureInfo();
  EXPECT_TRUE(value.privateFramesPerFoot() == 16 && std::hash<QKExtendedTimecode>()(value) == value.hash());
  EXPECT_TRUE(value.isEqual(at({7, 48})) && value == *copyOf<QKExtendedTimecode>(value));
  EXPECT_TRUE(protocolCast<QKMeasuredTimecode>(&value) && protocolCast<QKFeetFramesTimecode>(&value) && protocolCast<QKHMSTimecode>(&value));
}

// ---- Bars and beats ----

TEST(QKExtendedTimecodeMusic, FieldsAreReadSetAddedToAndSubtractedFrom) {
  const struct { Fields fields; void (*act)(Value&); } rows[] = {  // from 2 bars, 1 beat, 3 divisions, 17 ticks in 3/4
      {{7, 2, 4, 17}, [](Value& v) { v.setBars(7); }},
      {{3, 3, 4, 17}, [](Value& v) { v.setIntegerBeats(6); }},
      {{2, 3, 2, 120}, [](Value& v) { v.setDoubleBeats(3.375); }},
      {{2, 3, 2, 17}, [](Value& v) { v.setDivisions(6); }},
      {{2, 3, 1, 1}, [](Value& v) { v.setTicks(241); }},
      {{4, 1, 1, 0}, [](Value& v) { v.addBars(1, 1, 0, 223); }},
      {{0, 1, 1, 0}, [](Value& v) { v.subtractBars(2, 1, 3, 17); }},
      {{3, 1, 2, 17}, [](Value& v) { v.addBars(0, 1.5); }},
      {{1, 1, 1, 137}, [](Value& v) { v.subtractBars(1, 1.625); }},
      {{2, 3, 2, 17}, [](Value& v) { v.addBars(0, -0.5); }},  // its magnitude
      {{2, 2, 4, 17}, [](Value& v) { v.setTempo(60); }},
      {{4, 1, 4, 17}, [](Value& v) { v.setTimeSignatureNumerator(7); v.setTimeSignatureDenominator(16); }},
  };
  for (const auto& row : rows) {
    for (const std::int32_t rate : {0, 48000}) {
      const ReportRecorder reports;
      Value value = at({0, rate}, 120, 3);
      value.addBars(2, 1, 3, 17);
      if (rate == 0) value.addSeconds(1e-9);
      row.act(value);
      EXPECT_EQ(fieldsOf(value), row.fields) << rate;
      double beats = -1;
      value.getBars(nullptr, &beats);
      EXPECT_NEAR(beats * 960, static_cast<double>(countOf(row.fields, 0) + 960), 0.05);
      EXPECT_TRUE(reports.isQuiet()) << reports;
    }
  }
  Value six = at({192000, 48000}, 120, 6, 8);  // a bar of 3 beats
  EXPECT_TRUE(six.privateBarDuration() == 72000 && six.divisionsPerBar() == 24 && six.ticksPerBar() == 5760);
  EXPECT_TRUE(six.privateBeatDuration() == 24000 && six.privateDivisionDuration() == 6000 && six.privateTickDuration() == 25);
  // What is left below the ticks is kept where they were rounded up, and beats are whole before divisions are read.
  Value low = at({10, 48000}), high = at({20, 48000}), odd = at({21715, 48000}, 132.7);
  low.setTicks(0), high.setDivisions(2);
  EXPECT_TRUE(low.timeValue().value == 0 && high.timeValue().value == 6020 && fieldsOf(odd) == (Fields{0, 2, 1, 1}));
  Fields f{};
  Number rest;
  high.privateGetZeroBaseBars(&f[0], &f[1], &f[2], &f[3], &rest);
  EXPECT_TRUE(f == (Fields{0, 0, 1, 1}) && rest.int64Value() == -5 && high.privateTimeForBars(0, 0, 1, 1, &rest) == 6020);
  struct Triplets : Value {
    using Value::Value;
    Integer privateDivisionsPerWholeNote() const override { return 12; }
    Integer privateTicksPerWholeNote() const override { return 1440; }
  } triplets(MediaTime(31000, 48000), k25);
  EXPECT_EQ(fieldsOf(triplets), (Fields{0, 2, 1, 105}));  // 7000 units of 66 2/3
  EXPECT_EQ(triplets.privateDivisionsPerBeat(), 3);
  EXPECT_EQ((Fields{triplets.divisionsPerBar(), triplets.ticksPerBar(), triplets.ticksPerBeat(), triplets.ticksPerDivision()}), (Fields{12, 1440, 360, 120}));
}
// clang-format on

TEST(QKExtendedTimecodeMusic, PositionsAreStableAtEveryTempoAndSignature) {
  for (const auto& [numerator, denominator] : {std::pair{4, 4}, {3, 4}, {6, 8}, {7, 8}, {5, 16}})
    for (const std::int32_t rate : {2400, 48000, 90000, 2400000})
      for (const double tempo : {29.5, 59.94, 60.0, 120.0, 132.7, 250.0}) {
        const Integer ticksOfBar = 3840 * numerator / denominator;
        Value value = at({0, rate}, tempo, numerator, denominator);
        const double tick = value.privateTickDuration(), bar = value.privateBarDuration();
        const bool isWhole = std::trunc(tick) == tick && std::trunc(bar) == bar;
        for (Integer count = 0; count < 200000; count += count < 4000 ? 37 : 997) {
          const Fields fields = fieldsAt(count, ticksOfBar);
          value.clearTimecode(), value.addBars(fields[0], fields[1] - 1, fields[2] - 1, fields[3]);
          const Integer distance = countOf(fieldsOf(value), ticksOfBar) - count;
          bool isRight = std::abs(distance) <= (rate < 48000 ? 2 : 0) && (!isWhole || fieldsOf(value) == fields);
          const double before = value.seconds() * rate;
          value.setTempo(100.1);
          isRight = isRight && std::abs(value.seconds() * rate - before * tempo / 100.1) <= 2;
          value.setTempo(tempo), value.clearTimecode(), value.setBars(fields[0]), value.setIntegerBeats(fields[1]);
          value.setDivisions(fields[2]), value.setTicks(fields[3]);
          isRight = isRight && (!isWhole || fieldsOf(value) == fields);
          ASSERT_TRUE(isRight) << rate << ' ' << tempo << ' ' << numerator << '/' << denominator << ' ' << count;
        }
      }
}

TEST(QKExtendedTimecodeMusic, WhatIsLeftBelowATickIsKeptWhereItIsNotRoundedAway) {
  for (const auto& [units, rest, kept] : {std::tuple{30010, 0, 30000}, {30015, -10, 30015}}) {
    Value value = at({units, 48000});
    Fields f;
    Number left;
    value.privateGetZeroBaseBars(&f[0], &f[1], &f[2], &f[3], &left);
    EXPECT_TRUE(left.kind() == Number::Kind::Unsigned && left.int64Value() == rest) << left.description();
    EXPECT_EQ(value.privateTimeForBars(f[0], f[1], f[2], f[3], &left), kept);
    value.setDivisions(2);
    EXPECT_EQ(value.timeValue().value, kept);
  }
  Value inSeconds(0.6252, kSeconds, k25);
  inSeconds.setDivisions(3), inSeconds.setTicks(1);
  EXPECT_NEAR(inSeconds.seconds(), 0.7502 + 1.0 / 1920, 1e-12);
}

TEST(QKExtendedTimecodeMusic, NegativePositionsCountBackFromZeroWhereTheirCountsArePositive) {
  for (const Integer beats : {4, 3}) {  // of a bar
    for (Integer back = 0; back < 3 * 960 * beats; ++back) {
      const Fields f = fieldsAt(5 * 960 * beats - back, 960 * beats);
      const auto m = mirroredPosition(MusicalPosition{f[0], f[1] - 1, f[2] - 1, f[3]}, beats, WholeNote());
      Fields expected = fieldsAt(back, 960 * beats);
      expected[0] = 5 - expected[0];
      ASSERT_EQ((Fields{m.bars, m.beats + 1, m.divisions + 1, m.ticks}), expected) << back;
    }
  }
  // A bar of 6/8 lasts 3 beats and is mirrored as one of 6.
  EXPECT_EQ(mirroredPosition(MusicalPosition{0, 1}, 6, WholeNote()).beats, 5);
  // A negative tick count is read as unsigned: where 2^64 is a whole number of bars, the fields below bars are right.
  for (Integer n = 1; n < 200; ++n) {
    Value ahead = at({n * 2048, 32768}), back = at({-n * 2048, 32768});
    Fields expected = fieldsOf(ahead);
    expected[0] = (Integer{1} << 48) - expected[0];
    double beats = 0, backBeats = 1;
    ahead.getBars(nullptr, &beats), back.getBars(nullptr, &backBeats);
    EXPECT_TRUE(fieldsOf(back) == expected && beats == backBeats) << n;
  }
  Value inSeconds(-0.5, kSeconds, k25);  // not mirrored
  EXPECT_EQ(fieldsOf(inSeconds), (Fields{0, 0, 1, 0}));
}

// ---- Reports ----

// clang-format off
TEST(QKExtendedTimecodeReports, NameTheMethodAndLeaveTheTime) {
  const std::string kInit = "initWithBeats:tempo:timeSignatureNumerator:denominator: requires positive tempo and time signature factors";
  const struct { std::string assertion, log; void (*act)(Value&); Integer ticks; } rows[] = {  // from 30000 at 48000; where the handler returns
      {"", "get bars-beats-divisions-ticks", [](Value& v) { EXPECT_EQ(fieldsOf(v), v.isNumeric() ? (Fields{0, 2, 2, 0}) : Fields()); }, 30000},
      {"", "get bars-beats", [](Value& v) { Integer n = 1; double x = 1; v.getBars(&n, &x); EXPECT_TRUE(n == 0 && x == (v.isNumeric() ? 2.25 : 0)); }, 30000},
      {"", "get feet-frames-quarterframes", [](Value& v) { Integer f = 1, g = 1, q = 1; v.getFFFeet(&f, &g, &q); EXPECT_TRUE(f + g + q == (v.isNumeric() ? 17 : 0)); }, 30000},
      {kInit, "", [](Value&) { QKExtendedTimecode::initWithTempo(kNaN, 4, 4); }, 30000},
      {kInit, "", [](Value&) { EXPECT_EQ(QKExtendedTimecode::initWithTempo(60, 0, 4).timeSignatureNumerator(), 0); }, 30000},
      {kInit, "", [](Value&) { QKExtendedTimecode::initWithTempo(60, 4, 0); }, 30000},
      {"setTempo:] can't set tempo to 0", "", [](Value& v) { v.setTempo(kNaN); EXPECT_NE(v.tempo(), v.tempo()); }, 0},
      {"setTimeSignatureNumerator:] can't set timeSignatureNumerator to 0", "", [](Value& v) { v.setTimeSignatureNumerator(0); EXPECT_EQ(v.timeSignatureNumerator(), 0); }, 30000},
      {"setTimeSignatureDenominator:] can't set timeSignatureDenominator to 0", "", [](Value& v) { v.setTimeSignatureDenominator(0); EXPECT_EQ(v.timeSignatureDenominator(), 0); }, 30000},
      {"setBars:] bars must be >= 0", "set bars", [](Value& v) { v.setBars(-1); }, 0},
      {"setIntegerBeats:] beats must be > 0", "set beats", [](Value& v) { v.setIntegerBeats(0); }, 0},
      {"setDoubleBeats:] beats must be >= 1", "set beats", [](Value& v) { v.setDoubleBeats(kNaN); }, 0},
      {"setDivisions:] divisions must be > 0", "set divisions", [](Value& v) { v.setDivisions(0); }, 18000},
      {"setTicks:] ticks must be >= 0", "set ticks", [](Value& v) { v.setTicks(-1); }, 29975},
      {"addBars:beats:divisions:ticks:] expects nonnegative deltas", "add bars-beats-divisions-ticks", [](Value& v) { v.addBars(1, 0, 0, -1); }, 126000},
      {"subtractBars:beats:divisions:ticks:] expects nonnegative deltas", "subtract bars-beats-divisions-ticks", [](Value& v) { v.subtractBars(-1, 0, 0, 0); }, 30000},
      {"addBars:beats:] expects nonnegative deltas", "add bars-beats", [](Value& v) { v.addBars(-1, 0.0); }, 126000},
      {"subtractBars:beats:] expects nonnegative deltas", "subtract bars-beats", [](Value& v) { v.subtractBars(1, kNaN); }, 30000},
      {"setFFFeet:] feet must be >= 0", "set feet", [](Value& v) { v.setFFFeet(-1); }, 0},
      {"setFFFrames:] frames must be >= 0", "set feet-frames", [](Value& v) { v.setFFFrames(-1); }, 0},
      {"setFFQuarterFrames:] quarterFrames must be >= 0", "set feet-quarterframes", [](Value& v) { v.setFFQuarterFrames(-1); }, 28321},
      {"addFeet:frames:quarterFrames:] expects nonnegative deltas", "add feet-frames-quarterframes", [](Value& v) { v.addFeet(-1, 0, 0); }, 30000},
      {"subtractFeet:frames:quarterFrames:] expects nonnegative deltas", "subtract feet-frames-quarterframes", [](Value& v) { v.subtractFeet(0, 1, -1); }, 28559},
  };
  for (const auto& [text, refused, act, ticks] : rows) {
    const std::string assertion = "-[QKExtendedTimecode " + text, end = refused.starts_with("get") ? "Setting all to zero." : "Timecode unchanged.";
    for (const MediaTime& time : {MediaTime(30000, 48000), MediaTime::indefinite()}) {
      Value value = at(time);
      ReportRecorder reports(ReportRecorder::Returned);
      act(value);
      EXPECT_EQ(value.storedTime(), time.isNumeric() ? MediaTime(ticks, 48000) : time) << text;
      const bool isLogged = !time.isNumeric() && !refused.empty();
      EXPECT_EQ(reports.logs, isLogged ? std::vector{"ERROR: Can't " + refused + " with non-numeric internal time. " + end} : std::vector<std::string>());
      ASSERT_EQ(reports.assertions.size(), text.empty() ? 0u : 1u) << reports;
      for (const RecordedAssertion& a : reports.assertions) {
        EXPECT_EQ(a.description, assertion);
        const std::string method = text == kInit ? "-[QKExtendedTimecode initWithTempo:timeSignatureNumerator:denominator:]" : assertion.substr(0, assertion.find(']') + 1);
        EXPECT_TRUE(a.method == method && a.file == "QKExtendedTimecode" && a.object == (text == kInit ? nullptr : &value)) << reports;
      }
    }
    if (text.empty()) continue;
    Value value = at(MediaTime());
    const ReportRecorder thrown;
    EXPECT_THROW(act(value), InternalInconsistencyFailure);
    EXPECT_TRUE(thrown.logs.empty()) << thrown;  // the argument is checked first
  }
}
// clang-format on

TEST(QKExtendedTimecodeReports, NothingIsUndefinedAtAnyTempoSignatureOrTime) {
  const ReportRecorder reports(ReportRecorder::Returned);
  for (const MediaTime& time : {MediaTime(), MediaTime(-30000, 48000)}) {
    Value value = at(time);
    value.getBars(nullptr, nullptr, nullptr, nullptr), value.getBars(nullptr, nullptr);
    value.getFFFeet(nullptr, nullptr, nullptr);
  }
  const Integer ends[] = {kInt64Lowest, -1, 0, 3, kInt64Highest};
  const double tempos[] = {kNaN, kInfinity, -120, 0, 1e-300, 1e300};
  for (int i = 0; i < 3000; ++i) {
    const Integer n = ends[i % 5], m = ends[i / 5 % 5], ticks = ends[i / 25 % 5];
    const double tempo = tempos[i / 500];
    Value value = at({ticks, 48000 * (i / 125 % 2)}, tempo, n, m, i / 250 % 2 == 0 ? k3Perf : k70mm);
    value.setBars(m), value.setIntegerBeats(n), value.setDivisions(n), value.setTicks(m), value.setTempo(3);
    value.addBars(n, m, n, m), value.subtractBars(m, tempo), value.setDoubleBeats(tempo);
    value.setFFFeet(n), value.setFFFrames(m), value.setFFQuarterFrames(n), value.addFeet(n, m, n);
    value.subtractFeet(m, n, m), value.setTempo(tempo), fieldsOf(value), value.clearTimecode();
    EXPECT_EQ(fieldsOf(value), (Fields{0, 1, 1, 0})) << tempo << ' ' << n << '/' << m;
  }
}

}  // namespace
}  // namespace quill
