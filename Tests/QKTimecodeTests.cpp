#include "../Framework/QKTimecode.h"

#include "../Framework/AudioFrameSequence.h"
#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <functional>

namespace quill {
namespace {

class Value : public QKTimecode {
  using Base = QKTimecode;

 public:
  using Base::_bestTimeScale, Base::privateSampleRemainder, Base::privateSetSecondsWithClampedHours;
  using Base::Base, Base::setStoredTime, Base::storedTime;
};

constexpr auto k23976 = QKSMPTETimecodeMode_23976;
constexpr TimeRate kBest = QKTimecodeBestTimeRate, kSeconds = QKTimecodeUseSeconds;
constexpr std::uint64_t k2To40 = std::uint64_t{1} << 40;

Value audioAt(QKSMPTETimecodeMode mode, std::uint64_t audioFrameRate, std::uint64_t phase = 0,
              const MediaTime& time = kMediaTimeInvalid) {
  Value value(0, kBest, mode, audioFrameRate);
  value.setAudioFrameSequencePhaseFrame(phase);
  if (time != kMediaTimeInvalid) value.setStoredTime(time);
  return value;
}

// ---- Making, audio frame rate ----

// clang-format off
TEST(QKTimecodeMaking, TakesARateOrTheTimeRateAndBringsTheTimeToTheBestTimescale) {
  const ReportRecorder reports;  // of a negative timescale
  const MediaTime time(6, 600), at25(1, 25), at49(1, 49);
  const struct {
    const char* label;
    Value value;
    std::uint64_t rate;
    MediaTime time;
  } rows[] = {
      {"plain", {}, 1, kMediaTimeZero},
      {"time", {time, k25}, 600, time},
      {"frame duration", {time, at25}, 600, time},
      {"frame duration, selector", {time, at25, 1}, 600, time},
      {"number at best rate", {80080, kBest, k2997}, 2400000, {80080, 2400000}},
      {"number in seconds", {1.5, kSeconds, k25}, 1, {}},
      {"frame duration, rate", {time, at25, 0, 48000}, 48000, {480, 48000}},
      {"frame duration, rate 0", {time, at25, 0, 0}, 600, {60, 6000}},
      {"rate 0 at timescale 0", {{5, 0}, at25, 0, 0}, 1, {}},
      {"rate 0 at timescale -600", {{6, -600}, at25, 0, 0}, 600, {-60, 6000}},
      {"time at timescale 0", {{5, 0}, k25}, 0, {5, 0}},
      {"number at best rate, rate", {80, kBest, k25, 44100}, 44100, {35280, 882000}},
      {"number, rate 0", {1, 30000, k2997, 0}, 30000, {80, 2400000}},
      {"number in seconds, rate", {1.5, kSeconds, k25, 48000}, 48000, {}},
      {"number in seconds, rate 0", {1.5, kSeconds, k25, 0}, 1, {}},
      {"custom, rate", {at49, at49, 0, 48000}, 48000, {48000, 2352000}},
      {"a rate past 31 bits", {1, kBest, k25, k2To40}, k2To40, {1073742, 0x7fffffff, 3, 0}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.value.audioFrameRate(), row.rate) << row.label;
    EXPECT_EQ(row.value.timeValue(), row.time) << row.label;
  }
}

TEST(QKTimecodeAudioFrameRate, SharesATimescaleWithTheVideoFrames) {
  const struct {
    QKSMPTETimecodeMode mode;
    std::uint64_t audio;
    std::int64_t timescale;
  } rows[] = {{k2997Drop, 32000, 2400000}, {k2997Drop, 44100, 352800000}, {k2997Drop, 48000, 2400000},
              {k23976, 48000, 1920000}, {k24, 32000, 96000}, {k25, 44100, 882000}, {k11988Drop, 44100, 1411200000},
              // 31 bits hold no common one.
              {k11988Drop, 44101, 9600000}, {k25, 2147483647, 2147483647}, {k11988Drop, 20000001, 20000001}};
  for (const auto& row : rows)
    EXPECT_EQ(audioAt(row.mode, row.audio)._bestTimeScale(), row.timescale) << row.audio;
}

TEST(QKTimecodeAudioFrameRate, ChangesConvertTheTimeOnce) {
  const ReportRecorder reports;  // of no time
  const struct {
    const char* label;
    Value value;
    void (*act)(Value&);
    std::uint64_t rate;
    MediaTime time;
  } rows[] = {
      {"the rate it has", {{1, 600}, k25}, [](Value& v) { v.setAudioFrameRate(600); }, 600, {1, 600}},
      {"another rate", {{1, 600}, k25}, [](Value& v) { v.setAudioFrameRate(44100); }, 44100, {1470, 882000}},
      {"0", audioAt(k2997, 44100, 0, {1, 30000}), [](Value& v) { v.setAudioFrameRate(0); }, 30000, {80, 2400000}},
      {"0 without a time", audioAt(k25, 600, 0, MediaTime::indefinite()), [](Value& v) { v.setAudioFrameRate(0); }, 1,
       MediaTime::indefinite()},
      {"0 in seconds", {2.0, kSeconds, k25, 48000}, [](Value& v) { v.setAudioFrameRate(0); }, 1, {}},
      {"time rate", {{1, 600}, k25}, [](Value& v) { v.setTimeRate(48); }, 600, {0, 48, 3, 0}},
      {"best time rate", audioAt(k2997, 44100, 0, {1, 9}), [](Value& v) { v.setTimeRate(kBest); }, 44100,
       {39200000, 352800000}},
      // The time from before counts.
      {"custom 48", audioAt(kCustom, 44100, 0, {1, 1000}), [](Value& v) { v.setCustomVideoFrameRate(48); }, 44100,
       {176, 176400, 3, 0}},
      {"custom 29.5", audioAt(kCustom, 44100, 0, {1, 1000}), [](Value& v) { v.setCustomVideoFrameRate(29.5); }, 44100,
       {1323000, 1323000000}},
      {"no common timescale", audioAt(kCustom, 44101, 0, {1, 1000}), [](Value& v) { v.setCustomVideoFrameRate(29.5); },
       44101, {27000, 27000000}},
      {"custom, no rate yet", audioAt(k25, 44100, 0, {1, 1000}), [](Value& v) { v.setTimecodeMode(kCustom); }, 44100,
       {1, 1000}},
  };
  for (const auto& row : rows) {
    Value value = row.value;
    row.act(value);
    EXPECT_EQ(value.audioFrameRate(), row.rate) << row.label;
    EXPECT_EQ(value.timeValue(), row.time) << row.label;
  }
}

// ---- Hours, minutes, seconds ----

std::string hms(const QKTimecode& value) {
  std::int64_t h = -1, m = -1;
  double s = -1;
  value.getHMSHours(&h, &m, &s);
  value.getHMSHours(nullptr, nullptr, nullptr);
  return (value.isNegative() ? "-" : "") + std::to_string(h) + ':' + std::to_string(m) + ':' + Number(s).description();
}

TEST(QKTimecodeHMS, ReadsSetsAddsAndSubtracts) {
  const struct {
    double from;
    void (*act)(Value&);
    const char* text;
    const char* inSeconds = text;
  } rows[] = {
      {-3723.5, [](Value&) {}, "-1:2:3.5"},
      {360000, [](Value&) {}, "100:0:0"},
      {3723.5, [](Value& v) { v.setHMSHours(7); }, "7:2:3.5"},
      {-3723.5, [](Value& v) { v.setHMSMinutes(70); }, "2:10:3.5"},  // positive
      {-3723.5, [](Value& v) { v.setHMSSeconds(0.25); }, "1:2:0.25"},
      {3723.5, [](Value& v) { v.setHMSSeconds(-4000); }, "-0:4:40"},
      {3723.5, [](Value& v) { v.addHMSHours(1, 58, 56.5); }, "3:1:0"},
      {-3723.5, [](Value& v) { v.addHMSHours(2, 0, 0); }, "0:57:56.5"},
      {3723.5, [](Value& v) { v.subtractHMSHours(2, 0, 0); }, "-0:57:56.5"},
      // Nothing whole is negative: cut to -499 ticks, whose magnitude counts.
      {10, [](Value& v) { v.addHMSHours(0, 0, -0.5); }, "0:0:10.499", "0:0:10.5"},
      {10, [](Value& v) { v.privateSetSecondsWithClampedHours(3723.5); }, "1:2:3.5"},
      {10, [](Value& v) { v.privateSetSecondsWithClampedHours(363723.5); }, "99:2:3.5"},
  };
  // clang-format on
  for (const auto& row : rows) {
    for (const TimeRate rate : {kSeconds, TimeRate(1000)}) {
      const ReportRecorder reports;
      Value value(0, rate, k24);
      value.setSeconds(row.from);
      row.act(value);
      EXPECT_EQ(hms(value), rate == kSeconds ? row.inSeconds : row.text) << &row - rows;
      EXPECT_EQ(reports.isQuiet(), row.text[0] != '9') << reports;  // hours cut to 99
    }
  }
  for (const std::int64_t amount : {kInt64Highest, kInt64Highest / 2000}) {  // beyond 64 bits in ticks
    Value more(MediaTime(-7, 1000), k24), less(MediaTime(7, 1000), k24);
    more.addHMSHours(amount, amount, 0.5);
    less.subtractHMSHours(0, amount, 0);
    EXPECT_TRUE(more.timeValue().value == kInt64Highest - 7 && less.timeValue().value == 7 - kInt64Highest) << amount;
  }
}

// ---- Audio frames ----

// The sequence itself is checked sample by sample in AudioFrameSequenceTests.cpp.
using Samples = std::uint64_t;

TEST(QKTimecodeAudioFrames, FollowTheSequenceForTenMinutesFromAnyPhase) {
  EXPECT_EQ(audioAt(k2997, 48000, 0, {1001, 30000}).privateSampleRemainder(), 0u) << "ticks of another timescale";
  const std::tuple<QKSMPTETimecodeMode, Samples, std::int32_t> rows[] = {
      {k2997, 32000, 30}, {k2997Drop, 44100, 30}, {k2997Drop, 48000, 30}, {k23976, 48000, 24}};
  for (const auto& [mode, audio, video] : rows) {
    for (const std::uint64_t phase : {0u, 1u, 7u, 107892u}) {
      Value read = audioAt(mode, audio, phase), written = read;
      Samples sample = 0, differences = 0;
      for (std::uint64_t frame = 0; frame < 17982; ++frame) {
        read.setVideoFrames(phase + frame);
        differences += read.audioFrames() != sample;
        const Samples last = OBSampleFromFrame(phase + frame + 1, 0, video, audio, phase) - sample - 1;
        for (const Samples offset : {Samples{0}, Samples{1}, last}) {
          written.setAudioFrames(sample + offset);
          differences += written.videoFrames() != phase + frame || written.privateSampleRemainder() != offset ||
                         written.audioFrames() != sample + offset;
        }
        const MediaTime before = written.timeValue();
        const Samples amount = frame * 7919 % 100003;
        written.addAudioFrames(amount);
        differences += written.audioFrames() != sample + last + amount;
        written.subtractAudioFrames(amount);
        differences += written.timeValue() != before;
        sample += last + 1;
      }
      EXPECT_EQ(differences, 0u) << audio << " from " << phase;
      read.subtractAudioFrames(sample);  // more than there are
      EXPECT_TRUE(read.videoFrames() == phase && read.audioFrames() == 0) << phase;
      // In the seconds mode a position is a sample off at most.
      Value inSeconds(0.0, kSeconds, mode, audio);
      inSeconds.setAudioFrameSequencePhaseFrame(phase);
      for (sample = 0; sample < 30000000; sample += 99991) {
        inSeconds.setAudioFrames(sample);
        EXPECT_LE(inSeconds.audioFrames() + 1 - sample, 2u) << audio << ' ' << sample;
      }
    }
  }
}

TEST(QKTimecodeAudioFrames, ElsewhereAreTimeTimesRate) {
  std::string used;
  for (std::int64_t mode = 0; mode < 20; ++mode) {
    for (const std::uint64_t audio : {32000u, 44100u, 48000u, 96000u}) {
      Value value = audioAt(static_cast<QKSMPTETimecodeMode>(mode), audio, 1000);
      if (value.usingSMPTE272MConversion()) {
        used += std::to_string(mode) + '/' + std::to_string(audio) + ' ';
        continue;
      }
      for (std::uint64_t n = 1; n < 100000000; n += n / 3 + 1) {
        value.setAudioFrames(n);
        value.setIsNegative(true);
        EXPECT_TRUE(value.audioFrames() == n && value.isNegative()) << mode << ' ' << audio << ' ' << n;
        EXPECT_DOUBLE_EQ(value.seconds(), -static_cast<double>(n) / static_cast<double>(audio));
        value.addAudioFrames(3 * n);
        EXPECT_TRUE(value.audioFrames() == 2 * n && !value.isNegative()) << mode << ' ' << n;
        value.subtractAudioFrames(3 * n);
        EXPECT_TRUE(value.audioFrames() == n && value.isNegative()) << mode << ' ' << n;
      }
    }
  }
  EXPECT_EQ(used, "1/48000 5/32000 5/44100 5/48000 6/32000 6/44100 6/48000 ");
}

// ---- Comparing and text ----

TEST(QKTimecodeComparing, AsksRateAndPhaseToo) {
  const Value value = audioAt(k25, 48000, 3);
  Value otherRate = value, otherPhase = value, later = value;
  otherRate.setAudioFrameRate(2000);
  otherPhase.setAudioFrameSequencePhaseFrame(4);
  later.addAudioFrames(1);
  EXPECT_TRUE(value == *copyOf<QKTimecode>(value) && value.isEqual(value));
  for (const Value& other : {otherRate, otherPhase, later})
    EXPECT_FALSE(value.isEqual(other) || other.isEqual(value) || value == other);
  const QKVideoTimecode video(MediaTime(0, 1), k25);
  EXPECT_FALSE(value.isEqual(video));
  EXPECT_TRUE(video.isEqual(value));  // which asks for no more than it has
  EXPECT_TRUE(value.compare(otherRate) == 0 && value.hash() == otherRate.hash() &&
              std::hash<QKTimecode>()(value) == value.hash());
  EXPECT_EQ(value.description(),
            value.QKVideoTimecode::description() +
                "\naudio frame rate: 48000 audio frames per second\nSMPTE 272M sequence phase frame: 3");
}

// ---- Reports ----

using Act = std::function<std::uint64_t(Value&)>;
template <auto member, auto... arguments>
std::uint64_t call(Value& value) {
  if constexpr (std::is_void_v<decltype((value.*member)(arguments...))>) {
    (value.*member)(arguments...);
    return saturateToUInt64(value.storedTime().seconds());
  } else {
    return (value.*member)(arguments...);
  }
}

// clang-format off
TEST(QKTimecodeReports, RefusesNonNumericTimes) {
  const struct {
    const char* log;
    Act act;
  } rows[] = {
      {"set audio frame rate with non-numeric internal time. Timecode unchanged", call<&Value::setAudioFrameRate, 44100>},
      {"set video frame rate with non-numeric internal time. Timecode unchanged", call<&Value::setCustomVideoFrameRate, 24>},
      {"set HMS hours with non-numeric internal time. Timecode unchanged.", call<&Value::setHMSHours, 1>},
      {"set HMS minutes with non-numeric internal time. Timecode unchanged.", call<&Value::setHMSMinutes, 1>},
      {"set HMS seconds with non-numeric internal time. Timecode unchanged.", call<&Value::setHMSSeconds, 1>},
      // Before the amounts are looked at.
      {"add HMS with non-numeric internal time. Timecode unchanged.", call<&Value::addHMSHours, -1, 1, 1>},
      {"subtract HMS with non-numeric internal time. Timecode unchanged.", call<&Value::subtractHMSHours, 1, 1, -1>},
      {"calculate audio frames with non-numeric internal time. Returning 0.", call<&Value::audioFrames>},
      {"set audio frames with non-numeric internal time. Timecode unchanged", call<&Value::setAudioFrames, 1>},
      {"add audio frames with non-numeric internal time. Timecode unchanged", call<&Value::addAudioFrames, 1>},
      {"subtract audio frames with non-numeric internal time. Timecode unchanged", call<&Value::subtractAudioFrames, 1>},
  };
  for (const auto& row : rows) {
    for (const MediaTime& time : {kMediaTimeInvalid, MediaTime::negativeInfinity()}) {
      Value value = audioAt(kCustom, 48000);
      value.setStoredTime(time);
      ReportRecorder reports;
      EXPECT_EQ(row.act(value), 0u) << row.log;
      EXPECT_EQ(value.storedTime(), time) << row.log;
      EXPECT_EQ(reports.logs, std::vector{"ERROR: Can't " + std::string(row.log)});
      EXPECT_TRUE(reports.assertions.empty() && reports.lights.empty()) << reports;
      EXPECT_EQ(value.audioFrameRate(), &row == rows ? 44100u : 48000u);  // stored all the same
      EXPECT_EQ(hms(value), "0:0:0");
    }
  }
}

TEST(QKTimecodeReports, Assertions) {
  const char* const kDeltas = "-[QKTimecode addHMSHours:minutes:seconds:] requires nonnegative deltas.";
  const struct {
    const char* description;
    Value value;
    Act act;
    std::uint64_t answer;  // where the handler returns
  } rows[] = {
      {kDeltas, {{1, 1}, k25}, call<&Value::addHMSHours, -1, 0, 0>, 3601},
      {kDeltas, {{1, 1}, k25}, call<&Value::addHMSHours, 0, -1, 0>, 61},
      {kDeltas, {{9, 1}, k25}, call<&Value::subtractHMSHours, 0, 0, -5>, 5},
      {kDeltas, {{9, 1}, k25}, [](Value& v) { return v.addHMSHours(0, 0, kNaN), v.timeValue().value; }, 9},
      {"No SMPTE 272M audio frames conversion of negative time value", audioAt(k2997, 48000, 0, {-80080, 2400000}),
       call<&Value::audioFrames>, 1602},
      {"No SMPTE 272M audio frames conversion of negative time value", audioAt(k2997, 48000, 0, {-80080, 2400000}),
       call<&Value::subtractAudioFrames, 1603>, 0},
      {"invalid time for SMPTE 272M audio frames conversion: video frames must not be less than audio frame sequence phase frame (sequencePhaseFrame)", audioAt(k2997, 48000, 2, {80080, 2400000}),
       call<&Value::audioFrames>, 3689348814741910323u * 8008u},  // 2^64-1 frames
      {"Can't calculate best time rate with 0 sample rate", {},
       [](Value&) { return Value(0, kBest, k25, 0).audioFrameRate(); }, 2000},
  };
  // clang-format on
  for (const auto& row : rows) {
    Value value = row.value;
    {
      const ReportRecorder thrown(ReportRecorder::Thrown);
      EXPECT_THROW(row.act(value), InternalInconsistencyFailure) << row.description;
      EXPECT_EQ(value.storedTime(), row.value.storedTime());
    }
    ReportRecorder reports(ReportRecorder::Returned);
    EXPECT_EQ(row.act(value), row.answer) << row.description;
    ASSERT_EQ(reports.assertions.size(), 1u) << reports;
    const RecordedAssertion& assertion = reports.assertions[0];
    EXPECT_TRUE(assertion.description == row.description && assertion.file == "QKTimecode" &&
                assertion.method.starts_with("-[QKTimecode ") && assertion.line > 0)
        << reports;
    EXPECT_EQ(assertion.object, &row == std::end(rows) - 1 ? nullptr : &value);
    EXPECT_TRUE(reports.logs.empty() && reports.lights.empty()) << reports;
  }
  ReportRecorder reports(ReportRecorder::Thrown);
  Value value = audioAt(k25, 48000);
  value.privateSampleRemainder();
  ASSERT_EQ(reports.lights.size(), 1u);
  EXPECT_TRUE(
      reports.lights[0].starts_with("MyAssertMessage: [self usingSMPTE272MConversion],  file: QKTimecode, line: "));
  value.setTimecodeMode(kCustom);
  EXPECT_THROW(value.setTimeRate(kBest), InternalInconsistencyFailure);
}

}  // namespace
}  // namespace quill
