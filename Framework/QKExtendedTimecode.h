// QKExtendedTimecode: a timecode read as bars, beats, divisions and ticks, and as feet, frames and quarter frames too.
//
// - It adds four fields to its base: tempo, the two numbers of the time signature, and the film type.
// - They move no tick rate: a musical position is read at the timescale that the value has, so at a coarse one it comes
//   back to the nearest time unit.
// - Bars and ticks count from 0, beats and divisions from 1; a beat is a quarter note whatever the signature.
// - A negative value reads as a magnitude in feet and frames. Bars and beats are meant for values from 0 up: outside the
//   seconds mode those of a negative one say nothing.
// - Where a unit is no whole number of time units or frames (odd tempos, 70 mm film), fields that are set one after
//   another may read back differently.
//
// Rooms: Making; Tempo and signature; Bars and beats; Feet and frames; Comparing and text; Coding; For subclasses; Storage.
#pragma once

#include "FilmFootage.h"
#include "MusicalGrid.h"
#include "QKTimecode.h"

namespace quill::inline v0 {

class QUILL_EXPORT QKExtendedTimecode : public QKTimecode, public QKMeasuredTimecode, public QKFeetFramesTimecode {
 public:
  static const ClassDescriptor descriptor;

  // ---- Making ----

  // As the base, at 120 beats per minute in 4/4 and with 35 mm film of 4 perforations a frame.
  QKExtendedTimecode();
  QKExtendedTimecode(const MediaTime& time, QKSMPTETimecodeMode timecodeMode);
  QKExtendedTimecode(const MediaTime& time, const MediaTime& frameDuration);
  QKExtendedTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame);
  QKExtendedTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame,
                     std::uint64_t audioFrameRate);
  QKExtendedTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode);
  QKExtendedTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode,
                     std::uint64_t audioFrameRate);

  // With fields that are stored as they are given, unchecked.
  QKExtendedTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame,
                     std::uint64_t audioFrameRate, QKFilmType filmType);
  QKExtendedTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame,
                     std::uint64_t audioFrameRate, QKFilmType filmType, double tempo,
                     std::int64_t timeSignatureNumerator, std::int64_t denominator);
  QKExtendedTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode,
                     std::uint64_t audioFrameRate, double tempo, std::int64_t timeSignatureNumerator,
                     std::int64_t denominator, QKFilmType filmType);

  // Zero, as the constructor without parameters. A tempo that is not above 0, or a signature number below 1, fails an
  // assertion; where the handler returns it is stored.
  static QKExtendedTimecode initWithTempo(double tempo, std::int64_t timeSignatureNumerator, std::int64_t denominator);
  static QKExtendedTimecode initWithFilmType(QKFilmType filmType);

  QKExtendedTimecode(const QKExtendedTimecode&) = default;
  QKExtendedTimecode& operator=(const QKExtendedTimecode&) = default;
  template <ProperlyDerivedFrom<QKExtendedTimecode> Derived>
  QKExtendedTimecode(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKExtendedTimecode> Derived>
  QKExtendedTimecode& operator=(const Derived&) = delete;
  ~QKExtendedTimecode() override;

  Ref<Object> copy() const override;
  static std::int64_t version() { return descriptor.version; }

  bool isNegative() const override;
  void setIsNegative(bool isNegative) override;

  // ---- Tempo and signature ----

  // Quarter notes per minute.
  double tempo() const { return tempo_; }
  // Keeps the position in bars and beats and moves the time. A tempo that is not above 0 fails an assertion; a time that
  // is not numeric stays.
  void setTempo(double tempo);

  // The signature moves no time: the position in bars and beats reads differently. A number below 1 fails an assertion;
  // where the handler returns it is stored.
  std::int64_t timeSignatureNumerator() const { return timeSignatureNumerator_; }
  void setTimeSignatureNumerator(std::int64_t numerator);
  std::int64_t timeSignatureDenominator() const { return timeSignatureDenominator_; }
  void setTimeSignatureDenominator(std::int64_t denominator);

  // 4 and 960 times the numerator, whatever the denominator, on purpose: 24 and 5760 in 6/8, whose bar lasts 3 beats.
  std::int64_t divisionsPerBar() const;
  std::int64_t ticksPerBar() const;
  std::int64_t ticksPerDivision() const override;  // 240
  std::int64_t ticksPerBeat() const override;      // 960

  // ---- Bars and beats ----
  //
  // A non-numeric time logs a line, reads as 0 in every field and stays unchanged. An argument that is out of range fails
  // an assertion first.

  // Any pointer may be null. Ticks are read to the nearest, in the seconds mode cut, as all else. 30000 ticks at 48000,
  // 120 and 4/4 give 0, 2, 2, 0.
  void getBars(std::int64_t* bars, std::int64_t* beats, std::int64_t* divisions, std::int64_t* ticks) override;
  void getBars(std::int64_t* bars, double* beats) override;
  // Each keeps the other fields: bars the beats with their fraction, the beats as a double the bars alone. The sign stays
  // outside the seconds mode.
  void setBars(std::int64_t bars) override;
  void setIntegerBeats(std::int64_t beats) override;
  void setDoubleBeats(double beats) override;
  void setDivisions(std::int64_t divisions) override;
  void setTicks(std::int64_t ticks) override;
  // Amounts are durations: 1 beat is a beat's time. Negative ones fail an assertion, beats that are cut to 0 count by
  // their magnitude.
  void addBars(std::int64_t bars, std::int64_t beats, std::int64_t divisions, std::int64_t ticks) override;
  void addBars(std::int64_t bars, double beats) override;
  void subtractBars(std::int64_t bars, std::int64_t beats, std::int64_t divisions, std::int64_t ticks) override;
  void subtractBars(std::int64_t bars, double beats) override;

  // ---- Feet and frames ----
  //
  // Of video frames: a film frame is one. A non-numeric time logs a line, reads as 0 in every field and stays unchanged. A
  // negative argument fails an assertion first.

  QKFilmType filmType() const { return filmType_; }
  // Moves no time. A type outside the enumeration counts 16 frames a foot.
  void setFilmType(QKFilmType filmType) { filmType_ = filmType; }

  // Any pointer may be null. Magnitudes. Frame 100 of 16 mm film gives 2, 20, 0. In the duration modes the frame is the
  // nearest one and the quarter frames are those past the frame cut: half a frame gives 0, 1, 2.
  void getFFFeet(std::int64_t* feet, std::int64_t* frames, std::int64_t* quarterFrames) override;
  // Each keeps the other fields, feet and frames the exact part of a frame too. Frames and quarter frames beyond their
  // unit run into the next. The sign stays outside the seconds mode.
  void setFFFeet(std::int64_t feet) override;
  void setFFFrames(std::int64_t frames) override;
  // 1/1000 of a frame past the quarter, on purpose: what is cut when it is read stays inside.
  void setFFQuarterFrames(std::int64_t quarterFrames) override;
  // As an amount of time, 1/1000 of a frame past the quarter, in ticks of the timescale that the value has: a read of
  // feet or frames before brings it to one where frames are whole. At 3 perforations a frame field by field, in feet of
  // 21, 21 and 22 frames.
  void addFeet(std::int64_t feet, std::int64_t frames, std::int64_t quarterFrames) override;
  void subtractFeet(std::int64_t feet, std::int64_t frames, std::int64_t quarterFrames) override;

  // ---- Comparing and text ----

  std::string description() const override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;

  // ---- Coding ----

  explicit QKExtendedTimecode(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // ---- For subclasses ----

  bool isEqualApartFromTime(const Object& other) const override;

  // The grid. An override answers the same at any time.
  virtual std::int64_t privateBeatsPerWholeNote() const;      // 4
  virtual std::int64_t privateDivisionsPerWholeNote() const;  // 16
  virtual std::int64_t privateTicksPerWholeNote() const;      // 3840
  double privateDivisionsPerBeat() const;

  // 120 and 4/4; 35 mm, 4 perforations.
  void privateSetDefaultMeasureInfo();
  void privateSetDefaultFilmInfo();

  // In seconds in the seconds mode, else in time units.
  double privateBeatDuration();
  double privateBarDuration();
  double privateDivisionDuration();
  double privateTickDuration();

  // The position with every field counted from 0; a remaining time is a number of time units (unsigned, of a negative
  // one the two's complement) or seconds. Any pointer may be null.
  void privateGetZeroBaseBars(std::int64_t* bars, double* beats);
  void privateGetZeroBaseBars(std::int64_t* bars, std::int64_t* beats, std::int64_t* divisions, std::int64_t* ticks,
                              Number* remainingTime);
  // What such a position, or an amount, is in time units (unsigned, at least 0) or seconds.
  Number privateTimeForBars(std::int64_t bars, double beats);
  Number privateTimeForBars(std::int64_t bars, std::int64_t beats, std::int64_t divisions, std::int64_t ticks,
                            const Number* remainingTime);
  void privateAddBars(std::int64_t bars, double beats, bool isNegativeDelta);
  void privateAddBars(std::int64_t bars, std::int64_t beats, std::int64_t divisions, std::int64_t ticks,
                      bool isNegativeDelta);

  double privateFramesPerFoot() const;
  // What such a position, or an amount, is in ticks of the current timescale (unsigned, at least 0) or seconds.
  Number privateTimeForFeet(std::int64_t feet, std::int64_t frames, double fractionalFrames) const;
  void private35mm3perfAddFeet(std::int64_t feet, std::int64_t frames, std::int64_t quarterFrames,
                               bool isNegativeDelta);

 private:
  void raise(int line, std::string_view description) const;
  WholeNote wholeNote() const;
  MusicalGrid grid();
  double unsignedTime() const;
  MusicalPosition musicalPosition(const MusicalGrid& units) const;
  void setMusicalPosition(const MusicalGrid& units, const MusicalPosition& position);
  void privateAddFeet(std::int64_t feet, std::int64_t frames, std::int64_t quarterFrames, bool isNegativeDelta);

  // ---- Storage ----

  double tempo_ = 120;  // quarter notes per minute
  std::int64_t timeSignatureNumerator_ = 4;
  std::int64_t timeSignatureDenominator_ = 4;
  QKFilmType filmType_ = QKFilmType_35mm_4perf;
};

}  // namespace quill::inline v0

// As hash(), without log lines.
template <>
struct QUILL_EXPORT std::hash<quill::QKExtendedTimecode> {
  std::size_t operator()(const quill::QKExtendedTimecode& timecode) const;
};
