// QKTimecode: a video timecode with an audio frame rate, read as hours, minutes and seconds and as audio frames too.
//
// - It adds two fields to its base: the audio frame rate and the phase frame of the SMPTE 272M sequence.
// - Its best timescale holds whole video frames and whole audio frames where 31 bits allow it.
// - At 29.97 with 32000, 44100 or 48000 and at 23.976 with 48000 audio frames per second, the duration modes excepted,
//   audio frames follow the sequence of SMPTE 272M, so that counts stay exact over any span; elsewhere they are plain
//   time x rate.
// - Audio frames and hours-minutes-seconds are magnitudes, as all views.
//
// Rooms: Making; Audio frame rate; Hours, minutes, seconds; Audio frames; Comparing and text; Coding; For subclasses;
// Storage.
#pragma once

#include "QKVideoTimecode.h"

namespace quill::inline v0 {

class QUILL_EXPORT QKTimecode : public QKVideoTimecode, public QKHMSTimecode, public QKOneDimensionalAudioTimecode {
 public:
  static const ClassDescriptor descriptor;

  // ---- Making ----

  // As the base; the forms without an audio frame rate take the time rate for it.
  QKTimecode();
  QKTimecode(const MediaTime& time, QKSMPTETimecodeMode timecodeMode);
  QKTimecode(const MediaTime& time, const MediaTime& frameDuration);
  QKTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame);
  QKTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode);

  // With an audio frame rate, for which the time is brought to the best timescale. 0 stands for timeRate(), at least 1;
  // together with QKTimecodeBestTimeRate it fails an assertion.
  QKTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame,
             std::uint64_t audioFrameRate);
  QKTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode,
             std::uint64_t audioFrameRate);

  QKTimecode(const QKTimecode&) = default;
  QKTimecode& operator=(const QKTimecode&) = default;
  template <ProperlyDerivedFrom<QKTimecode> Derived>
  QKTimecode(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKTimecode> Derived>
  QKTimecode& operator=(const Derived&) = delete;
  ~QKTimecode() override;

  Ref<Object> copy() const override;
  static std::int64_t version() { return descriptor.version; }

  bool isNegative() const override;
  void setIsNegative(bool isNegative) override;
  void clearTimecode() override;

  // ---- Audio frame rate ----

  // Audio frames (samples) per second; 0 only where it was made as a time rate of 0, or out of an archive.
  std::uint64_t audioFrameRate() const { return audioFrameRate_; }
  // Brings the time to the best timescale. 0 stands for timeRate(), at least 1. A non-numeric time logs a line and stays;
  // the rate is stored all the same.
  void setAudioFrameRate(std::uint64_t audioFrameRate);

  // The video frame at which the SMPTE 272M sequence starts: audio frame 0 lies at its start.
  std::uint64_t audioFrameSequencePhaseFrame() const { return sequencePhaseFrame_; }
  void setAudioFrameSequencePhaseFrame(std::uint64_t frame) { sequencePhaseFrame_ = frame; }

  // Whether audio frames follow the SMPTE 272M sequence.
  bool usingSMPTE272MConversion() const;

  // QKTimecodeBestTimeRate is a rate in which video frames and audio frames are whole; it fails an assertion in the
  // Custom mode.
  void setTimeRate(TimeRate timeRate) override;
  // As the base, at a timescale in which audio frames are whole too.
  void setCustomVideoFrameRate(double framesPerSecond) override;

  // ---- Hours, minutes, seconds ----
  //
  // Of real time, whatever the mode. A non-numeric time logs a line, reads as 0 and stays unchanged.

  // Any pointer may be null. Seconds in [0, 60).
  void getHMSHours(std::int64_t* hours, std::int64_t* minutes, double* seconds) const override;
  // Each keeps the other two and makes a negative value positive, on purpose.
  void setHMSHours(std::int64_t hours) override;
  void setHMSMinutes(std::int64_t minutes) override;
  void setHMSSeconds(double seconds) override;
  // To the nearest tick; an amount stops at 2^63-1 ticks. A negative amount (seconds of -1 or below, or NaN) fails an
  // assertion.
  void addHMSHours(std::int64_t hours, std::int64_t minutes, double seconds) override;
  void subtractHMSHours(std::int64_t hours, std::int64_t minutes, double seconds) override;

  // ---- Audio frames ----
  //
  // A non-numeric time logs a line, counts as 0 and stays unchanged. With the SMPTE 272M sequence a negative value, or
  // one before the phase frame, fails an assertion when it is read. In the seconds mode setting audio frames loses the
  // sign.

  std::uint64_t audioFrames() override;
  // The start of that audio frame. The sign stays.
  void setAudioFrames(std::uint64_t frames) override;
  void addAudioFrames(std::uint64_t frames) override;
  // With the sequence it stops at audio frame 0.
  void subtractAudioFrames(std::uint64_t frames) override;

  // ---- Comparing and text ----

  std::string description() const override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;

  // ---- Coding ----

  explicit QKTimecode(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // ---- For subclasses ----

  // The least common multiple of the base's and the audio frame rate; the larger of both where 31 bits do not hold it.
  std::int64_t _bestTimeScale() const override;
  bool isEqualApartFromTime(const Object& other) const override;

  // Ticks of one audio frame to 1/1000 tick, or its seconds.
  double privateAudioFrameTime() const;
  using QKVideoTimecode::privateTimeForHours;
  // What an amount of time is in ticks (unsigned) or seconds (double).
  Number privateTimeForHours(std::int64_t hours, std::int64_t minutes, double seconds);
  // Audio frames past the start of the current video frame.
  std::uint64_t privateSampleRemainder();
  void privateAddAudioFrames(std::uint64_t frames, bool isNegativeDelta);
  void privateSMPTE272MAddAudioFrames(std::uint64_t frames, bool isNegativeDelta);
  void privateAddHMSHours(std::int64_t hours, std::int64_t minutes, double seconds, bool isNegativeDelta);
  // setSeconds, and hours brought into 0 to 99.
  void privateSetSecondsWithClampedHours(double seconds);
  // A time as a number value: ticks, unsigned, cut and at least 0, or seconds.
  Number boxedTime(double time) const;

 private:
  static TimeRate checkedTimeRate(TimeRate timeRate, std::uint64_t audioFrameRate);
  void setFirstAudioFrameRate(std::uint64_t audioFrameRate);
  std::uint64_t timeRateInsteadOfZero();
  static double secondsOfHMS(std::int64_t hours, std::int64_t minutes, double seconds);
  void changeAudioFrames(std::uint64_t frames, bool isNegativeDelta);
  // The nominal frame rate, as the sequences know it.
  std::int32_t sequenceFrameRate() const { return saturateToInt32(nominalFrameRate()); }

  // ---- Storage ----

  std::uint64_t audioFrameRate_ = 0;      // audio frames per second
  std::uint64_t sequencePhaseFrame_ = 0;  // a video frame number
};

}  // namespace quill::inline v0

// As hash(), without log lines.
template <>
struct QUILL_EXPORT std::hash<quill::QKTimecode> {
  std::size_t operator()(const quill::QKTimecode& timecode) const;
};
