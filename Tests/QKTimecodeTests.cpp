#include "../Framework/QKTimecode.h"

#include "../Framework/AudioFrameSequence.h"
#include "TimecodeRows.h"

namespace quill {
namespace {

class V : public QKTimecode {
  using Base = QKTimecode;

 public:
  using Base::_bestTimeScale, Base::privateSampleRemainder, Base::privateSetSecondsWithClampedHours;
  using Base::Base, Base::setStoredTime, Base::storedTime;
};

constexpr TimeRate kSeconds = QKTimecodeUseSeconds;

V audioAt(QKSMPTETimecodeMode mode, std::uint64_t audioFrameRate, std::uint64_t phase = 0) {
  V value(0, QKTimecodeBestTimeRate, mode, audioFrameRate);
  value.setAudioFrameSequencePhaseFrame(phase);
  return value;
}

// ---- Rows of Data/timecode.txt ----

V valueOf(const std::string& text) {
  if (text == "new") return {};
  const Cells parts = partsOf(text, " "), rates = partsOf(parts[0], "+");
  const QKSMPTETimecodeMode mode = modeNamed(rates[0]);
  const std::string& time = parts.at(1);
  if (time.back() == 's') return V(doubleOf(time.substr(0, time.size() - 1)), kSeconds, mode, std::stoull(rates.at(1)));
  if (rates.size() == 1) return V(timeOf(time), mode);
  V value = audioAt(mode, std::stoull(rates[1]), rates.size() > 2 ? std::stoull(rates[2]) : 0);
  value.setStoredTime(timeOf(time));
  return value;
}

void make(V& v, const Number& number, TimeRate rate, const std::string& mode) {
  v = words.size() == 3 ? V(number, rate, modeNamed(mode)) : V(number, rate, modeNamed(mode), u(3));
}
void makeForDuration(V& v, const MediaTime& time, const MediaTime& duration) {
  if (words.size() == 2) {
    v = V(time, duration);
  } else {
    v = words.size() == 3 ? V(time, duration, n(2)) : V(time, duration, n(2), u(3));
  }
}
std::string rateAndTime(const V& v) { return std::to_string(v.audioFrameRate()) + ' ' + textOf(v.timeValue()); }
std::string hms(const V& v) {
  std::int64_t h = -1, m = -1;
  double s = -1;
  v.getHMSHours(&h, &m, &s);
  v.getHMSHours(nullptr, nullptr, nullptr);
  return std::to_string(h) + ':' + std::to_string(m) + ':' + Number(s).description();
}

constexpr auto kOperations =
    all(OP(make(v, number(), n(1), words.at(2))), OP(makeForDuration(v, timeOf(words.at(0)), timeOf(words.at(1)))),
        OP(rateAndTime(v)), OP(v._bestTimeScale()), OP(v.audioFrameRate()), OP(v.setAudioFrameRate(u())),
        OP(v.setTimeRate(n())), OP(v.setCustomVideoFrameRate(x())), OP(v.setTimecodeMode(modeNamed(words.at(0)))),
        OP(hms(v)), OP(v.setHMSHours(n())), OP(v.setHMSMinutes(n())), OP(v.setHMSSeconds(x())),
        OP(v.addHMSHours(n(0), n(1), x(2))), OP(v.subtractHMSHours(n(0), n(1), x(2))),
        OP(v.privateSetSecondsWithClampedHours(x())), OP(v.audioFrames()), OP(v.setAudioFrames(u())),
        OP(v.addAudioFrames(u())), OP(v.subtractAudioFrames(u())), OP(v.privateSampleRemainder()));

TEST(QKTimecode, Rows) {
  for (const char* section : {"making", "audio frame rate", "reports"})
    eachRowIn("timecode.txt", section, [](const Cells& row) { expectRow(kOperations, valueOf(row.at(0)), row); });
  eachRowIn("timecode.txt", "not numeric", [](const Cells& row) {
    for (const char* text : {"custom+48000 bad", "custom+48000 down"}) expectLeftAlone(kOperations, valueOf(text), row);
  });
}

TEST(QKTimecode, RowsOfHoursMinutesAndSeconds) {
  eachRowIn("timecode.txt", "hours, minutes, seconds", [](const Cells& row) {
    for (const TimeRate rate : {kSeconds, TimeRate(1000)}) {
      const ReportRecorder reports;
      V value(0, rate, k24);
      value.setSeconds(doubleOf(row.at(0)));
      answerOf(kOperations, value, row.at(1));
      EXPECT_EQ((value.isNegative() ? "-" : "") + hms(value), rate == kSeconds ? row.back() : row.at(2));
      EXPECT_EQ(reports.isQuiet(), row[2][0] != '9') << reports;  // hours cut to 99
    }
  });
}

// ---- Audio frames ----

// The sequence itself is checked sample by sample in AudioFrameSequenceTests.cpp.
using Samples = std::uint64_t;

TEST(QKTimecodeAudioFrames, FollowTheSequenceForTenMinutesFromAnyPhase) {
  const std::tuple<QKSMPTETimecodeMode, Samples, std::int32_t> rows[] = {
      {k2997, 32000, 30}, {k2997Drop, 44100, 30}, {k2997Drop, 48000, 30}, {QKSMPTETimecodeMode_23976, 48000, 24}};
  for (const auto& [mode, audio, video] : rows) {
    for (const std::uint64_t phase : {0u, 1u, 7u, 107892u}) {
      V read = audioAt(mode, audio, phase), written = read;
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
      V inSeconds(0.0, kSeconds, mode, audio);
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
      V value = audioAt(static_cast<QKSMPTETimecodeMode>(mode), audio, 1000);
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
  const V value = audioAt(k25, 48000, 3);
  V otherRate = value, otherPhase = value, later = value;
  otherRate.setAudioFrameRate(2000);
  otherPhase.setAudioFrameSequencePhaseFrame(4);
  later.addAudioFrames(1);
  EXPECT_TRUE(value == *copyOf<QKTimecode>(value) && value.isEqual(value));
  for (const V& other : {otherRate, otherPhase, later})
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

}  // namespace
}  // namespace quill
