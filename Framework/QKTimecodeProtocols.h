// The protocols through which formatters and deputies reach a timecode value.
//
// They are flat: none derives from another or from Object. A class of a host's own joins in by deriving from Object and
// from the protocols that it serves, and by answering them in asProtocol. Reads are not const where a value may bring
// its time to another tick rate to answer them.
#pragma once

#include "../Platform/Object.h"

#include <cstdint>

namespace quill::inline v0 {

// Every timecode value, whatever else it serves: without it a value is not seen as negative, nor compared.
class QUILL_EXPORT QKBasicTimecode {
 public:
  // A descriptor named "OrbisBasicTimecode" counts as this protocol.
  static const Protocol protocol;
  static const Protocol legacyProtocol;

  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;
  // Zero, in the same representation.
  virtual void clearTimecode() = 0;
  // -1, 0 or 1.
  virtual int compare(const Object& other) const = 0;

 protected:
  QKBasicTimecode() = default;
  QKBasicTimecode(const QKBasicTimecode&) = default;
  QKBasicTimecode& operator=(const QKBasicTimecode&) = default;
  virtual ~QKBasicTimecode();
};

// A value read as SMPTE hours, minutes, seconds, frames and a fraction of a frame: 80 subframes or 4 quarter frames.
// Fields are magnitudes; out-pointers may be null; amounts to add or subtract are not negative.
class QUILL_EXPORT QKSMPTETimecode {
 public:
  static const Protocol protocol;

  virtual void getSMPTEHours(std::int64_t* hours, std::int64_t* minutes, std::int64_t* seconds, std::int64_t* frames,
                             std::int64_t* subframes, std::int64_t* quarterFrames) = 0;
  virtual void setSMPTEHours(std::int64_t hours) = 0;
  virtual void setSMPTEMinutes(std::int64_t minutes) = 0;
  virtual void setSMPTESeconds(std::int64_t seconds) = 0;
  virtual void setSMPTEFrames(std::int64_t frames) = 0;
  virtual void setSMPTESubframes(std::int64_t subframes) = 0;
  virtual void setSMPTEQuarterFrames(std::int64_t quarterFrames) = 0;
  virtual void addSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                             std::int64_t subframes, std::int64_t quarterFrames) = 0;
  virtual void subtractSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                                  std::int64_t subframes, std::int64_t quarterFrames) = 0;
  virtual bool isDropFrame() const = 0;
  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;

 protected:
  QKSMPTETimecode() = default;
  QKSMPTETimecode(const QKSMPTETimecode&) = default;
  QKSMPTETimecode& operator=(const QKSMPTETimecode&) = default;
  virtual ~QKSMPTETimecode();
};

// A value read as a count of video frames, a magnitude.
class QUILL_EXPORT QKOneDimensionalVideoTimecode {
 public:
  static const Protocol protocol;

  virtual std::uint64_t videoFrames() = 0;
  virtual void setVideoFrames(std::uint64_t frames) = 0;
  virtual void addVideoFrames(std::uint64_t frames) = 0;
  virtual void subtractVideoFrames(std::uint64_t frames) = 0;
  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;

 protected:
  QKOneDimensionalVideoTimecode() = default;
  QKOneDimensionalVideoTimecode(const QKOneDimensionalVideoTimecode&) = default;
  QKOneDimensionalVideoTimecode& operator=(const QKOneDimensionalVideoTimecode&) = default;
  virtual ~QKOneDimensionalVideoTimecode();
};

// A value read as signed seconds.
class QUILL_EXPORT QKOneDimensionalTimeTimecode {
 public:
  static const Protocol protocol;

  virtual double seconds() const = 0;
  virtual void setSeconds(double seconds) = 0;
  virtual void addSeconds(double seconds) = 0;
  virtual void subtractSeconds(double seconds) = 0;
  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;

 protected:
  QKOneDimensionalTimeTimecode() = default;
  QKOneDimensionalTimeTimecode(const QKOneDimensionalTimeTimecode&) = default;
  QKOneDimensionalTimeTimecode& operator=(const QKOneDimensionalTimeTimecode&) = default;
  virtual ~QKOneDimensionalTimeTimecode();
};

// A value read as hours, minutes and seconds of time. Fields are magnitudes; out-pointers may be null; amounts to add or
// subtract are not negative.
class QUILL_EXPORT QKHMSTimecode {
 public:
  static const Protocol protocol;

  virtual void getHMSHours(std::int64_t* hours, std::int64_t* minutes, double* seconds) const = 0;
  virtual void setHMSHours(std::int64_t hours) = 0;
  virtual void setHMSMinutes(std::int64_t minutes) = 0;
  virtual void setHMSSeconds(double seconds) = 0;
  virtual void addHMSHours(std::int64_t hours, std::int64_t minutes, double seconds) = 0;
  virtual void subtractHMSHours(std::int64_t hours, std::int64_t minutes, double seconds) = 0;
  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;

 protected:
  QKHMSTimecode() = default;
  QKHMSTimecode(const QKHMSTimecode&) = default;
  QKHMSTimecode& operator=(const QKHMSTimecode&) = default;
  virtual ~QKHMSTimecode();
};

// A value read as a count of audio frames (samples), a magnitude.
class QUILL_EXPORT QKOneDimensionalAudioTimecode {
 public:
  static const Protocol protocol;

  virtual std::uint64_t audioFrames() = 0;
  virtual void setAudioFrames(std::uint64_t frames) = 0;
  virtual void addAudioFrames(std::uint64_t frames) = 0;
  virtual void subtractAudioFrames(std::uint64_t frames) = 0;
  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;

 protected:
  QKOneDimensionalAudioTimecode() = default;
  QKOneDimensionalAudioTimecode(const QKOneDimensionalAudioTimecode&) = default;
  QKOneDimensionalAudioTimecode& operator=(const QKOneDimensionalAudioTimecode&) = default;
  virtual ~QKOneDimensionalAudioTimecode();
};

// A value read as a musical position. Bars and ticks count from 0, beats and divisions from 1; a beat is a quarter note.
// Fields are magnitudes; out-pointers may be null; amounts to add or subtract are durations, not negative.
class QUILL_EXPORT QKMeasuredTimecode {
 public:
  static const Protocol protocol;

  virtual void getBars(std::int64_t* bars, std::int64_t* beats, std::int64_t* divisions, std::int64_t* ticks) = 0;
  virtual void getBars(std::int64_t* bars, double* beats) = 0;
  virtual void setBars(std::int64_t bars) = 0;
  virtual void setIntegerBeats(std::int64_t beats) = 0;
  virtual void setDoubleBeats(double beats) = 0;
  virtual void setDivisions(std::int64_t divisions) = 0;
  virtual void setTicks(std::int64_t ticks) = 0;
  virtual void addBars(std::int64_t bars, std::int64_t beats, std::int64_t divisions, std::int64_t ticks) = 0;
  virtual void addBars(std::int64_t bars, double beats) = 0;
  virtual void subtractBars(std::int64_t bars, std::int64_t beats, std::int64_t divisions, std::int64_t ticks) = 0;
  virtual void subtractBars(std::int64_t bars, double beats) = 0;
  virtual std::int64_t ticksPerDivision() const = 0;
  virtual std::int64_t ticksPerBeat() const = 0;
  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;

 protected:
  QKMeasuredTimecode() = default;
  QKMeasuredTimecode(const QKMeasuredTimecode&) = default;
  QKMeasuredTimecode& operator=(const QKMeasuredTimecode&) = default;
  virtual ~QKMeasuredTimecode();
};

// A value read as feet, frames and quarter frames of film. Fields are magnitudes; out-pointers may be null; amounts to
// add or subtract are not negative.
class QUILL_EXPORT QKFeetFramesTimecode {
 public:
  static const Protocol protocol;

  virtual void getFFFeet(std::int64_t* feet, std::int64_t* frames, std::int64_t* quarterFrames) = 0;
  virtual void setFFFeet(std::int64_t feet) = 0;
  virtual void setFFFrames(std::int64_t frames) = 0;
  virtual void setFFQuarterFrames(std::int64_t quarterFrames) = 0;
  virtual void addFeet(std::int64_t feet, std::int64_t frames, std::int64_t quarterFrames) = 0;
  virtual void subtractFeet(std::int64_t feet, std::int64_t frames, std::int64_t quarterFrames) = 0;
  virtual bool isNegative() const = 0;
  virtual void setIsNegative(bool isNegative) = 0;

 protected:
  QKFeetFramesTimecode() = default;
  QKFeetFramesTimecode(const QKFeetFramesTimecode&) = default;
  QKFeetFramesTimecode& operator=(const QKFeetFramesTimecode&) = default;
  virtual ~QKFeetFramesTimecode();
};

}  // namespace quill::inline v0
