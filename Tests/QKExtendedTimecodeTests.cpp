#include "../Framework/QKExtendedTimecode.h"

#include "TimecodeRows.h"

#include <cmath>

namespace quill {
namespace {

using Integer = std::int64_t;
using Fields = std::array<Integer, 4>;
constexpr TimeRate kBest = QKTimecodeBestTimeRate, kSeconds = QKTimecodeUseSeconds;
constexpr auto k4Perf = QKFilmType_35mm_4perf, k3Perf = QKFilmType_35mm_3perf, k70mm = QKFilmType_70mm_5perf;
constexpr auto kNoFilm = static_cast<QKFilmType>(12);

struct V : QKExtendedTimecode {
  using Base = QKExtendedTimecode;
  using Base::Base, Base::privateBarDuration, Base::privateBeatDuration, Base::privateDivisionDuration;
  using Base::privateDivisionsPerBeat, Base::privateFramesPerFoot;
  using Base::privateGetZeroBaseBars, Base::privateTimeForBars, Base::setStoredTime, Base::storedTime;
  using Base::privateSetDefaultFilmInfo, Base::privateSetDefaultMeasureInfo, Base::privateTickDuration;
};

// In the seconds mode where the timescale is 0.
V at(const MediaTime& time, double tempo = 120, Integer numerator = 4, Integer denominator = 4,
     QKFilmType film = k4Perf) {
  const bool usesSeconds = time.isNumeric() && time.timescale == 0;
  V value(0, usesSeconds ? kSeconds : kBest, k25, 48000, tempo, numerator, denominator, film);
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

// ---- Rows of Data/timecode.txt ----

void addBeats(V& v, Integer bars, double beats) { v.addBars(bars, beats); }
void subtractBeats(V& v, Integer bars, double beats) { v.subtractBars(bars, beats); }
std::string bars(V& v) {
  const Fields f = fieldsOf(v);
  return std::to_string(f[0]) + '+' + std::to_string(f[1]) + '+' + std::to_string(f[2]) + '+' + std::to_string(f[3]);
}
std::string barsAndBeats(V& v) {
  Integer bars = -1;
  double beats = -1;
  v.getBars(&bars, &beats);
  return std::to_string(bars) + '+' + Number(beats).description();
}
// What is left below the ticks, and the ticks again with it.
std::string leftBelow(V& v) {
  Fields f{};
  Number left;
  v.privateGetZeroBaseBars(&f[0], &f[1], &f[2], &f[3], &left);
  return left.description() + ' ' + Number(v.privateTimeForBars(f[0], f[1], f[2], f[3], &left)).description();
}
std::string feet(V& v) {
  Integer feet = -1, frames = -1, quarters = -1;
  v.getFFFeet(&feet, &frames, &quarters);
  return std::to_string(feet) + '+' + std::to_string(frames) + '+' + std::to_string(quarters);
}
void make(V&, double tempo, Integer numerator, Integer denominator) {
  const QKExtendedTimecode made = QKExtendedTimecode::initWithTempo(tempo, numerator, denominator);
  EXPECT_EQ(made.timeSignatureNumerator(), numerator);
}

constexpr auto kOperations =
    all(OP(bars(v)), OP(barsAndBeats(v)), OP(feet(v)), OP(leftBelow(v)), OP(make(v, x(0), n(1), n(2))),
        OP(v.setBars(n())), OP(v.setIntegerBeats(n())), OP(v.setDoubleBeats(x())), OP(v.setDivisions(n())),
        OP(v.setTicks(n())), OP(v.addBars(n(0), n(1), n(2), n(3))), OP(v.subtractBars(n(0), n(1), n(2), n(3))),
        OP(addBeats(v, n(), x(1))), OP(subtractBeats(v, n(), x(1))), OP(v.tempo()), OP(v.timeSignatureNumerator()),
        OP(v.timeSignatureDenominator()), OP(v.setTempo(x())), OP(v.setTimeSignatureNumerator(n())),
        OP(v.setTimeSignatureDenominator(n())), OP(v.setFFFeet(n())), OP(v.setFFFrames(n())),
        OP(v.setFFQuarterFrames(n())), OP(v.addFeet(n(0), n(1), n(2))), OP(v.subtractFeet(n(0), n(1), n(2))));

TEST(QKExtendedTimecode, Rows) {
  eachRowIn("timecode.txt", "bars and feet",
            [](const Cells& row) { expectRow(kOperations, at(timeOf(row.at(0))), row); });
}

TEST(QKExtendedTimecode, RowsOfFilm) {
  eachRowIn("timecode.txt", "film", [](const Cells& row) {
    for (const bool usesSeconds : {false, true}) {
      const ReportRecorder reports;
      V value(0, kBest, k24, 1, 120, 4, 4, static_cast<QKFilmType>(std::stoi(row.at(0))));
      if (usesSeconds) value.setTimeRate(kSeconds);
      const double frame = doubleOf(row.at(1));
      value.setSeconds((frame + std::copysign(1e-4, frame)) / 24);
      answerOf(kOperations, value, row.at(2));
      EXPECT_EQ((value.isNegative() ? "-" : "") + feet(value), usesSeconds ? row.back() : row.at(3));
      EXPECT_TRUE(reports.isQuiet()) << reports;
    }
  });
  // Where a tick is short, sums are longer by a thousandth of a frame; where a frame is no number of ticks, they are cut.
  V fine(0, kBest, k2997, 1), coarse(MediaTime(1, 25), k24);
  fine.addFeet(0, 1, 0), coarse.addFeet(0, 1, 0);
  EXPECT_TRUE(fine.timeValue() == MediaTime(80160, 2400000) && coarse.timeValue() == MediaTime(2, 25));
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
  V value = at({7, 48}, 90.5, 6, 8, k3Perf), later = at({8, 48}, 90.5, 6, 8, k3Perf), base = value;
  base.setAudioFrameRate(2000);
  for (const V& v : {at({7, 48}, 90, 6, 8, k3Perf), at({7, 48}, 90.5, 7, 8, k3Perf), at({7, 48}, 90.5, 6, 4, k3Perf), at({7, 48}, 90.5, 6, 8), later, base})
    EXPECT_FALSE(value.isEqual(v) || v.isEqual(value) || value == v) << v;
  value.privateSetDefaultFilmInfo(), value.privateSetDefaultMeasureInfo();
  EXPECT_TRUE(value.privateFramesPerFoot() == 16 && std::hash<QKExtendedTimecode>()(value) == value.hash());
  EXPECT_TRUE(value.isEqual(at({7, 48})) && value == *copyOf<QKExtendedTimecode>(value));
  EXPECT_TRUE(protocolCast<QKMeasuredTimecode>(&value) && protocolCast<QKFeetFramesTimecode>(&value) && protocolCast<QKHMSTimecode>(&value));
}

// ---- Bars and beats ----

TEST(QKExtendedTimecodeMusic, FieldsAreReadSetAddedToAndSubtractedFrom) {
  eachRowIn("timecode.txt", "music", [](const Cells& row) {
    for (const std::int32_t rate : {0, 48000}) {
      const ReportRecorder reports;
      V value = at({0, rate}, 120, 3);
      value.addBars(2, 1, 3, 17);
      if (rate == 0) value.addSeconds(1e-9);
      answerOf(kOperations, value, row.at(0));
      EXPECT_EQ(bars(value), row.at(1)) << rate;
      double beats = -1;
      value.getBars(nullptr, &beats);
      EXPECT_NEAR(beats * 960, static_cast<double>(countOf(fieldsOf(value), 0) + 960), 0.05);
      EXPECT_TRUE(reports.isQuiet()) << reports;
    }
  });
  V six = at({192000, 48000}, 120, 6, 8);  // a bar of 3 beats
  EXPECT_TRUE(six.privateBarDuration() == 72000 && six.divisionsPerBar() == 24 && six.ticksPerBar() == 5760);
  EXPECT_TRUE(six.privateBeatDuration() == 24000 && six.privateDivisionDuration() == 6000 && six.privateTickDuration() == 25);
  V odd = at({21715, 48000}, 132.7);  // beats are whole before divisions are read
  EXPECT_EQ(fieldsOf(odd), (Fields{0, 2, 1, 1}));
  V inSeconds(0.6252, kSeconds, k25);
  inSeconds.setDivisions(3), inSeconds.setTicks(1);
  EXPECT_NEAR(inSeconds.seconds(), 0.7502 + 1.0 / 1920, 1e-12);
  struct Triplets : V {
    using V::V;
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
        V value = at({0, rate}, tempo, numerator, denominator);
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
    V ahead = at({n * 2048, 32768}), back = at({-n * 2048, 32768});
    Fields expected = fieldsOf(ahead);
    expected[0] = (Integer{1} << 48) - expected[0];
    double beats = 0, backBeats = 1;
    ahead.getBars(nullptr, &beats), back.getBars(nullptr, &backBeats);
    EXPECT_TRUE(fieldsOf(back) == expected && beats == backBeats) << n;
  }
  V inSeconds(-0.5, kSeconds, k25);  // not mirrored
  EXPECT_EQ(fieldsOf(inSeconds), (Fields{0, 0, 1, 0}));
}

// ---- Reports ----

TEST(QKExtendedTimecodeReports, NothingIsUndefinedAtAnyTempoSignatureOrTime) {
  const ReportRecorder reports(ReportRecorder::Returned);
  for (const MediaTime& time : {MediaTime(), MediaTime(-30000, 48000)}) {
    V value = at(time);
    value.getBars(nullptr, nullptr, nullptr, nullptr), value.getBars(nullptr, nullptr);
    value.getFFFeet(nullptr, nullptr, nullptr);
  }
  const Integer ends[] = {kInt64Lowest, -1, 0, 3, kInt64Highest};
  const double tempos[] = {kNaN, kInfinity, -120, 0, 1e-300, 1e300};
  for (int i = 0; i < 3000; ++i) {
    const Integer n = ends[i % 5], m = ends[i / 5 % 5], ticks = ends[i / 25 % 5];
    const double tempo = tempos[i / 500];
    V value = at({ticks, 48000 * (i / 125 % 2)}, tempo, n, m, i / 250 % 2 == 0 ? k3Perf : k70mm);
    value.setBars(m), value.setIntegerBeats(n), value.setDivisions(n), value.setTicks(m), value.setTempo(3);
    value.addBars(n, m, n, m), value.subtractBars(m, tempo), value.setDoubleBeats(tempo);
    value.setFFFeet(n), value.setFFFrames(m), value.setFFQuarterFrames(n), value.addFeet(n, m, n);
    value.subtractFeet(m, n, m), value.setTempo(tempo), fieldsOf(value), value.clearTimecode();
    EXPECT_EQ(fieldsOf(value), (Fields{0, 1, 1, 0})) << tempo << ' ' << n << '/' << m;
  }
}

}  // namespace
}  // namespace quill
