// QKVideoTimecode: one exact point or duration in video, read as SMPTE fields, video frames or seconds.
//
// - It holds a MediaTime in ticks, or, in the seconds mode, a double of seconds; the other one is ignored.
// - Every view is computed from that time when asked; nothing derived is kept.
// - The value is negative when its time is: views are magnitudes, isNegative tells the sign.
// - A read of fields or frames first brings the time to the best timescale of its mode, rounding half away from zero;
//   such reads are not const, and two threads may not read one value at once.
// - A non-numeric time is never computed with: reads give 0 (seconds NaN or an infinity), adding and setting fields leave
//   it alone, and a log line says so. Setting the time, the seconds, the number value or zero makes it numeric again.
// - Value operations take no heap.
//
// Rooms: Making; Time and mode; SMPTE fields; Frames and seconds; Comparing and text; Coding; For the deputies; For subclasses;
// Storage.
#pragma once

#include "../Platform/MediaTime.h"
#include "../Platform/Number.h"
#include "QKCustomVideoModeInfo.h"
#include "QKTimecodeProtocols.h"
#include "QKTimecodeUtilities.h"
#include "SMPTEArithmetic.h"
#include "TimecodeModeTable.h"

#include <compare>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <span>
#include <string_view>

namespace quill::inline v0 {

class QUILL_EXPORT QKVideoTimecode : public Object,
                                     public QKBasicTimecode,
                                     public QKSMPTETimecode,
                                     public QKOneDimensionalVideoTimecode,
                                     public QKOneDimensionalTimeTimecode {
 public:
  static const ClassDescriptor descriptor;

  // ---- Making ----

  // Zero at timescale 1, 29.97 drop-frame.
  QKVideoTimecode();

  // The time as given, without a change of timescale. A non-numeric time logs "ERROR: %@ initialized with non-numeric
  // rhoTime. Using kMediaTimeZero instead." and gives zero.
  QKVideoTimecode(const MediaTime& time, QKSMPTETimecodeMode timecodeMode);

  // The mode whose frame lasts `frameDuration`, compared as rational values; where rates have several modes, dropFrame
  // 1 picks the drop-frame one, 2 the duration one, any other value the counting one. A duration that is zero or not
  // numeric gives fallbackTimecodeMode(); any other one the Custom mode at 1 / frameDuration frames per second.
  // (time, {1001, 30000}, 1) is 29.97 drop-frame.
  QKVideoTimecode(const MediaTime& time, const MediaTime& frameDuration);
  QKVideoTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame);

  // Ticks at a rate: QKTimecodeBestTimeRate is the mode's own (27000000 for Custom and Invalid), QKTimecodeUseSeconds
  // holds the number as seconds. Ticks are read as unsigned.
  QKVideoTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode);

  QKVideoTimecode(const QKVideoTimecode&) = default;
  QKVideoTimecode& operator=(const QKVideoTimecode&) = default;
  // A derived value is copied by copy() or copyOf(), never into a base.
  template <ProperlyDerivedFrom<QKVideoTimecode> Derived>
  QKVideoTimecode(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKVideoTimecode> Derived>
  QKVideoTimecode& operator=(const Derived&) = delete;
  ~QKVideoTimecode() override;

  // A value of the same class.
  Ref<Object> copy() const override;

  // Zero at the same timescale; kMediaTimeZero where the time was not numeric.
  void clearTimecode() override;

  // The version of the archive layout.
  static std::int64_t version() { return descriptor.version; }
  static bool supportsSecureCoding() { return true; }

  // ---- Time and mode ----

  // Ticks per second in which a mode's frames and subframes are whole; 1 for Invalid. Custom and unknown modes fail an
  // assertion and give 0.
  static std::uint64_t minimumTickRateForMode(QKSMPTETimecodeMode mode);

  // The mode for a frame duration that says none; process-wide, at first 24. Custom and Invalid store 24.
  static void setFallbackTimecodeMode(QKSMPTETimecodeMode mode);
  static QKSMPTETimecodeMode fallbackTimecodeMode();

  // A tick rate in which the frames of all modes and all the other rates are whole: their least common multiple,
  // 27000000 for none, 0 when 64 bits do not hold it. A rate of 0 fails an assertion.
  // ({25}, {48000}) gives 48000.
  static std::uint64_t timeRateForTimecodeModes(std::span<const QKSMPTETimecodeMode> modes,
                                                std::span<const std::uint64_t> otherTimeRates);
  static std::uint64_t timeRateForTimecodeModes(std::initializer_list<QKSMPTETimecodeMode> modes,
                                                std::initializer_list<std::uint64_t> otherTimeRates);

  // The time; the invalid time in the seconds mode.
  MediaTime timeValue() const;
  // Leaves the seconds mode. A non-numeric time logs "ERROR: %@ setTimeValue: sent non-numeric rhoTime. Using
  // kMediaTimeZero instead." and stores zero.
  void setTimeValue(const MediaTime& time);

  // Whether the value can be computed with: in the seconds mode always.
  bool isNumeric() const { return flags_.useSeconds || time_.isNumeric(); }

  QKSMPTETimecodeMode timecodeMode() const { return mode_; }
  // Converts the time to the new mode's best timescale, rounding half away from zero; a Custom mode without a rate keeps
  // it as it is. An unknown mode fails an assertion, and the time becomes invalid.
  void setTimecodeMode(QKSMPTETimecodeMode mode);

  // Whether the time is held as a double of seconds.
  bool useSeconds() const { return flags_.useSeconds; }

  // Ticks per second; 1 in the seconds mode and for a time that is not numeric. A negative timescale reports a light
  // assertion and is made positive.
  std::uint64_t timeRate();
  // Converts the time, rounding half away from zero. QKTimecodeBestTimeRate is the best timescale. Leaving the seconds
  // mode cuts the seconds to whole ticks; entering it (rate 0) does not compute them: seconds() then answers what it
  // last held. Only the low 32 bits of a rate count: a timescale of 0 or below is invalid. A Custom mode without a rate has
  // the best timescale 0, which is the seconds mode. A non-numeric time logs "ERROR: Can't set time rate with non-numeric internal time. Timecode unchanged".
  virtual void setTimeRate(TimeRate timeRate);

  // Frames per second of the Custom mode. A rate that is not finite or below 1 logs a warning and counts as 30; the tick
  // rate follows the rate asked for: itself, at least 1, when it is whole, 27000000 when not. In another mode nothing
  // changes and a light assertion is reported.
  virtual void setCustomVideoFrameRate(double framesPerSecond);

  // A copy in another mode with the same hours, minutes, seconds, frames and subframes.
  Ref<QKVideoTimecode> timecodePreservingSMPTEWithMode(QKSMPTETimecodeMode mode);

  // Takes the other's time, converted to this value's timescale or seconds.
  void takeConvertedValueFromTimecode(const QKVideoTimecode& other);

  // The ticks as a signed number, or the seconds as a double.
  Number timecodeNumberValue() const;
  // Takes ticks as a magnitude: the value keeps its sign; the seconds mode takes seconds with theirs. A negative number, one from 2^64 up and 2^64-1 itself log
  // "ticks maxed out" and count as 2^64-1, which the sign bit then folds to the lowest tick count.
  void setTimecodeNumberValue(const Number& number);

  bool isNegative() const override;
  void setIsNegative(bool isNegative) override;

  // Frame labels a second: the whole rate in the counting and drop-frame modes, else videoFrameRate().
  double nominalFrameRate() const;
  // Exact frames per second. In the Custom mode without a rate the timescale, or 1 in the seconds mode. Invalid and
  // unknown modes fail an assertion and give 30.
  double videoFrameRate() const;
  // Whether the mode shows elapsed time at its fractional rate. The Invalid mode fails an assertion.
  bool isDuration() const;
  // Whether the mode skips labels (SMPTE ST 12-1). The Invalid mode fails an assertion.
  bool isDropFrame() const override;

  // ---- SMPTE fields ----
  //
  // Hours (unbounded), minutes, seconds, frames, and a fraction of a frame read as subframes (80 a frame) or as quarter
  // frames (4 a frame). All are magnitudes; the sign is kept by the setters, except by a single one in the seconds mode.
  // A non-numeric time logs a line, reads as 0 and stays unchanged. The Invalid mode fails an assertion.
  //
  // At a fractional custom rate and in the seconds mode labels are counted in doubles: a frame may read as the one before,
  // and fields that are set one after another may read back differently.

  // Any pointer may be null.
  void getSMPTEHours(std::int64_t* hours, std::int64_t* minutes, std::int64_t* seconds, std::int64_t* frames,
                     std::int64_t* subframes, std::int64_t* quarterFrames) override;
  std::int64_t SMPTEHours();
  std::int64_t SMPTEMinutes();
  std::int64_t SMPTESeconds();
  std::int64_t SMPTEFrames();
  std::int64_t SMPTESubframes();
  std::int64_t SMPTEQuarterFrames();

  // Each keeps the other fields. Minutes and seconds above 59 carry once (130 seconds store 70); frames above the last
  // label roll over as that many frames; subframes and quarter frames carry whole frames. A label that drop-frame skips
  // becomes the first one that exists. A sum beyond 64 bits of ticks stops there. A negative argument fails an assertion;
  // where the handler returns it is written as it is.
  void setSMPTEHours(std::int64_t hours) override;
  void setSMPTEMinutes(std::int64_t minutes) override;
  void setSMPTESeconds(std::int64_t seconds) override;
  void setSMPTEFrames(std::int64_t frames) override;
  void setSMPTESubframes(std::int64_t subframes) override;
  void setSMPTEQuarterFrames(std::int64_t quarterFrames) override;

  // Adds or subtracts field by field, through zero where it must. In the drop-frame modes the label moves by the fields
  // (a minute from 00:00:00;02 is 00:01:00;02), a change of up to 99 frames moves by as many frames as it says, and
  // whole hours, minutes and seconds taken back return to the label they started from at 29.97. A negative amount fails
  // an assertion; where the handler returns it is used as it is.
  void addSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                     std::int64_t subframes, std::int64_t quarterFrames) override;
  void subtractSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                          std::int64_t subframes, std::int64_t quarterFrames) override;

  // ---- Frames and seconds ----
  //
  // A non-numeric time logs a line, counts as 0 frames and is not added to. The Invalid mode fails an assertion where
  // frames are asked for. In the seconds mode setting frames loses the sign.

  // Signed seconds; NaN or an infinity, with a log line, for a time that is not numeric.
  double seconds() const override;
  // To the nearest tick of the current timescale, halves away from zero; a timescale of 0 or below becomes 1, with a log
  // line. NaN gives the indefinite time, what 64 bits do not hold an infinity.
  void setSeconds(double seconds) override;
  // To the nearest tick. A negative amount, or NaN, fails an assertion; where the handler returns its magnitude counts.
  void addSeconds(double seconds) override;
  void subtractSeconds(double seconds) override;

  // Whole frames as a magnitude; in the duration modes the nearest number of frames. -80080 ticks at 29.97 give 1.
  std::uint64_t videoFrames() override;
  // The start of that frame; the sign stays.
  void setVideoFrames(std::uint64_t frames) override;
  // With the sign: toward zero; in the duration modes the nearest, halves away from zero.
  std::int64_t signedVideoFrames();
  void setSignedVideoFrames(std::int64_t frames);
  void addVideoFrames(std::uint64_t frames) override;
  void subtractVideoFrames(std::uint64_t frames) override;

  // ---- Comparing and text ----

  // -1, 0 or 1 by position alone: the mode does not count. A value in ticks and one in seconds are the same when less
  // than 0.0005 s lies between them. Another kind of object, or a non-numeric time, logs a line and gives 0.
  int compare(const Object& other) const override;

  // Same mode, same kind of storage, same frame rate and compare() 0.
  bool isEqual(const Object& other) const override;
  // Of the position to 1/10000 s; in the seconds mode to 1 s.
  std::uint64_t hash() const override;
  std::string description() const override;
  std::string descriptionForReport() const override;

  // == is isEqual, <=> is compare; both answer without log lines. Two values may be equivalent by <=> and not equal by
  // == (modes differ); values in ticks and in seconds do not order transitively, so <=> is no key across them. Non-numeric
  // times are unordered, and equal where everything else is.
  friend bool operator==(const QKVideoTimecode& a, const QKVideoTimecode& b) {
    return &a == &b || (a.isEqualApartFromTime(b) && a.compareQuietly(b) == 0);
  }
  friend QUILL_EXPORT std::partial_ordering operator<=>(const QKVideoTimecode& a, const QKVideoTimecode& b);

  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;

  // ---- Coding ----

  // Reads every older layout; a time that is not numeric is kept as read.
  explicit QKVideoTimecode(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

  // ---- For the deputies ----

  // The fields with the fraction of a frame in [0, 1), beyond 1 only past 2^63 frames. Any pointer may be null.
  SMPTEPosition privatePosition();
  void privateGetSMPTEHours(std::int64_t* hours, std::int64_t* minutes, std::int64_t* seconds, std::int64_t* frames,
                            double* fractionalFrames);
  // Whether setSMPTEFieldsAtOnce may take fields, and the fields as they are: in a fixed counting or drop-frame mode
  // outside the seconds mode, for a time that the best timescale holds, to which it is brought. False, without a report
  // and nothing changed, elsewhere.
  bool canSetSMPTEFieldsAtOnce(SMPTEPosition* now);
  // Then writes all fields in one go, with the sign that the value has, which gives the same as the five setters one
  // after another, hours first. False, and nothing changed, for a field outside its usual range or a million hours.
  bool setSMPTEFieldsAtOnce(const SMPTEFieldSet& fields, double fractionalFrames);
  // A copy at another label, positive, of a time that stands on a frame of its first day, at its best timescale in a fixed
  // counting or drop-frame mode. Null elsewhere, and for a field outside its usual range.
  Ref<Object> copyAtUsualLabel(const SMPTEFieldSet& label) const;
  // Whether the time is that of a frame, at its best timescale in a fixed counting or drop-frame mode.
  bool standsOnFrame() const;
  // The time as it is held, without meaning in the seconds mode.
  const MediaTime& storedTime() const { return time_; }

 protected:
  // ---- For subclasses ----

  // The tick rate in which everything that the class reads is whole; 0 for a Custom mode without a rate. An override
  // keeps it a multiple of this one where it fits 31 bits.
  virtual std::int64_t _bestTimeScale() const;
  // The low 32 bits of a rate.
  static std::int32_t _timeScaleForTimeRate(TimeRate timeRate);
  // Brings the time to the best timescale before fields or frames are read or written. Where that cannot hold it, the
  // time stays and a warning is logged.
  void _normalizeTimeScaleForFrameRateIfNecessary();
  // In the seconds mode: what lies within a millionth of zero becomes zero; the first time in the process logs a line.
  void privateNormalizeSecondsValue();
  // A tick count at a rate. A count from 2^63 up reports the light assertion "NO", loses 2^63-1 and gets epoch 1.
  static MediaTime _rhoTimeFromOldTimeValue(std::uint64_t value, TimeRate rate, bool isNegative);
  // Positions in seconds, of one value in ticks and one in the seconds mode: 0 within 0.0005 s.
  int _compareDouble(const QKVideoTimecode& other) const;
  // What isEqual asks of the other value besides its time.
  virtual bool isEqualApartFromTime(const Object& other) const;

  std::int64_t privateFramesPerHour() const;
  std::int64_t privateFramesPerTenMinutes() const;
  // Of a minute that drops labels.
  std::int64_t privateFramesPerMinute() const;

  void privateSetSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                            double fractionalFrames);
  void privateSetSMPTEHours(std::int64_t hours);
  void privateSetSMPTEMinutes(std::int64_t minutes);
  void privateSetSMPTESeconds(std::int64_t seconds);
  void privateSetSMPTEFrames(std::int64_t frames);
  void privateSetSMPTESubframes(std::int64_t subframes);
  void privateSetSMPTEQuarterFrames(std::int64_t quarterFrames);
  // The ticks (or seconds) that these fields stand for at the best timescale; quarter frames count where subframes are 0.
  Number privateTimeForHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                             std::int64_t subframes, std::int64_t quarterFrames) const;
  // The fields carried as the plain counting mode of the same rate carries them: 0:0:0:45 at 30 is 0:0:1:15.
  SMPTEFieldSet privateNormalizeHMSFs(const SMPTEFieldSet& fields) const;
  // Field by field, with the drop-frame correction. The value ends with the sign that the sum has.
  void privateAddHMSFs(const SMPTEFieldSet& delta, bool isNegativeDelta);
  std::int64_t privateDropFrameAdjustmentForHMFSsBeforeChange(const SMPTEFieldSet& before,
                                                              const SMPTEFieldSet& afterChange,
                                                              const SMPTEFieldSet& change) const;
  void privateAddSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                            std::int64_t subframes, std::int64_t quarterFrames, bool isNegativeDelta);
  // Brings a value into [minimum, maximum].
  void privateClampIntegerValue(std::int64_t* value, std::int64_t minimum, std::int64_t maximum, bool warn) const;

  // What an amount of seconds or frames is in ticks (unsigned) or seconds (double).
  Number privateTimeForSeconds(double seconds);
  Number privateTimeForVideoFrames(std::uint64_t frames);
  // Adds the magnitude of a number of ticks or seconds.
  void addTimecodeNumberValue(const Number& number, bool isNegativeDelta);
  // Ticks per frame to 1/1000 tick, or seconds per frame.
  double _doubleFrameTime() const;
  // Whole frames as a magnitude, cut, in every mode.
  std::int64_t privateWholeVideoFrames() const;
  // The fraction of a frame past them, in [0, 1); what lies past 2^63 frames counts as fractions, too.
  double privateVideoFramesFractionalPart() const;

  // Logs the line and answers true for a time that cannot be computed with.
  bool refusesNonNumeric(std::string_view logText) const;

  const _QKCustomVideoModeInfo& customVideoModeInfo() const { return customVideoModeInfo_; }
  // A subclass that replaces the time keeps it numeric.
  void setStoredTime(const MediaTime& time) { time_ = time; }

 private:
  friend struct std::hash<QKVideoTimecode>;
  struct FrameScale;

  void raise(std::string_view method, int line, std::string_view description) const;
  // The scale at the stored timescale or another one; an unusual one is made in `storage`.
  const FrameScale& frameScale(FrameScale& storage) const;
  const FrameScale& bestFrameScale(FrameScale& storage) const;
  const FrameScale& frameScaleAt(std::int64_t timescale, FrameScale& storage) const;
  // The row of the mode where the time stands at its tick rate and that is the best one: the usual case, in which
  // integers are enough. Else null.
  const TimecodeModeRow* rowAtBest() const {
    const auto* row = timecodeModeRow(mode_);
    const bool isUsual = row && !flags_.useSeconds && time_.timescale == row->tickRate && time_.isNumeric();
    return isUsual && _bestTimeScale() == row->tickRate ? row : nullptr;
  }
  SMPTEPosition unusualPosition();
  void writeUsualFields(const TimecodeModeRow& row, const SMPTEFieldSet& fields, double fraction);
  bool addFramesWithinMinute(std::int64_t frames, bool isNegativeDelta);
  bool addFramesAtBest(std::uint64_t frames, bool isNegativeDelta);
  std::uint64_t frameCountSum(std::uint64_t a, std::uint64_t b) const;
  SMPTECounting counting() const;
  SMPTEFieldSet privateFields();
  void decodeKeyed(KeyedCoder& coder);
  void decodeSequential(KeyedCoder& coder);
  void privateSetFrameParts(std::int64_t parts, std::int64_t partsPerFrame);
  void requireVideoFrames(std::string_view method, int line) const;
  std::uint64_t frameMagnitude(double (*nearest)(double)) const;
  int compareQuietly(const QKVideoTimecode& other) const;
  std::uint64_t hashQuietly() const;

  // ---- Storage ----

  MediaTime time_;      // ticks; ignored in the seconds mode
  double seconds_ = 0;  // ignored outside the seconds mode
  QKSMPTETimecodeMode mode_ = QKSMPTETimecodeMode_2997Drop;
  _QKCustomVideoModeInfo customVideoModeInfo_;
  struct Flags {
    bool useSeconds : 1 = false;
    bool maintainedFramesValid : 1 = false;
  } flags_;
  // The frames field that whole hours, minutes and seconds were first added to in a drop-frame mode; stale on purpose
  // until frames are added.
  std::int64_t maintainedFrames_ = 0;
};

QUILL_EXPORT std::ostream& operator<<(std::ostream& stream, const QKVideoTimecode& timecode);

}  // namespace quill::inline v0

// As hash(), without log lines.
template <>
struct QUILL_EXPORT std::hash<quill::QKVideoTimecode> {
  std::size_t operator()(const quill::QKVideoTimecode& timecode) const;
};
