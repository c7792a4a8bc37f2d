// QKMeasuredTimecodeFormatDeputy: a musical position as text: bars, beats, divisions and ticks, "   4  3  2 120", or bars
// and beats with decimal places of the beat, "4 3.375".
//
// - It serves any value of the QKMeasuredTimecode protocol.
// - Leading zeros are spaces, so that fields stay in place; the separator is a space or a point. The decimal separator of
//   the locale stands before the fraction of a beat. An entry may part its fields with white space and any of ",.;".
// - A dropped divisions field leaves one space in its place, and the ticks count from the beat.
// - Decimal places are used as at most 18, whatever was set.
//
// Segment tags: 0 bars, 1 beats, 2 divisions, 3 ticks, 4 the fraction of a beat.
//
// Rooms: Options; Whole strings; Segments; Stepping and typing; Coding; For subclasses; Storage.
#pragma once

#include "QKFormatDeputy.h"

#include <optional>

namespace quill::inline v0 {

inline constexpr std::int64_t OrbTimecodeFormatterDefaultMSeparator = 1;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultMDisplaysDivisionsAndTicks = 1;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultMIsDivisionsFieldDropped = 0;
inline constexpr std::int64_t OrbTimecodeFormatterDefaultMBeatsDecimalPlaces = 3;

class QUILL_EXPORT QKMeasuredTimecodeFormatDeputy : public QKFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  // The defaults above.
  QKMeasuredTimecodeFormatDeputy();
  QKMeasuredTimecodeFormatDeputy(const QKMeasuredTimecodeFormatDeputy& other);
  QKMeasuredTimecodeFormatDeputy& operator=(const QKMeasuredTimecodeFormatDeputy& other);
  template <ProperlyDerivedFrom<QKMeasuredTimecodeFormatDeputy> Derived>
  QKMeasuredTimecodeFormatDeputy(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKMeasuredTimecodeFormatDeputy> Derived>
  QKMeasuredTimecodeFormatDeputy& operator=(const Derived&) = delete;
  ~QKMeasuredTimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  Ref<Object> copy() const override;

  // ---- Options ----

  // 0 is a point, anything else a space.
  std::int64_t separator() const { return separator_; }
  void setSeparator(std::int64_t separator) { separator_ = separator; }
  // Otherwise bars and beats alone.
  bool displaysDivisionsAndTicks() const { return displaysDivisionsAndTicks_; }
  void setDisplaysDivisionsAndTicks(bool flag) { displaysDivisionsAndTicks_ = flag; }
  // Matters where divisions and ticks are displayed.
  bool isDivisionsFieldDropped() const { return isDivisionsFieldDropped_; }
  void setIsDivisionsFieldDropped(bool flag) { isDivisionsFieldDropped_ = flag; }
  // Digits behind the beats where divisions and ticks are not displayed; 0 shows whole beats. A negative count is set
  // as 0.
  std::int64_t beatsDecimalPlaces() const { return beatsDecimalPlaces_; }
  void setBeatsDecimalPlaces(std::int64_t places);

  // What the fraction is shown and typed with; null without decimal places. Lives as long as the deputy and follows the
  // decimal places set.
  NumberFormatter* beatsDecimalPlacesFormatter() const;

  // ---- Whole strings ----

  // Beats are rounded to the decimal places shown, halves of a whole beat up, and carry into no bar: the last instants of
  // a bar of four beats may read "4 5.000". A negative value shows its sign from bar 1 on.
  std::string stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const override;

  // Fields fill from the left: "3" is the start of bar 3, "3 2" its second beat, and what is not typed is 1 for beats and
  // divisions, else 0. A third field behind whole beats is a fraction: with three places "3 2.5" is half a beat on, while
  // "3 2 5", without a separator, reports a light assertion and is 0.005 beats on. A sign makes the entry an amount to
  // add or subtract, "+1" being a bar and "+0 1" a beat; so the text of a negative value is read as an amount. "" changes
  // nothing. Fields are set one by one, bars first: where a bar is no whole number of beats (7/8), or a unit no whole
  // number of time units (odd tempos), the result may depend on the value that was there. Fails with
  // "Excess + or -'s", or without a description where no field stands in front.
  bool getObjectValue(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                      std::string* error) const override;

  // An em dash for each field, among more spaces than the text of a value has.
  std::string defaultNilSymbol() const override;
  const Protocol& requiredProtocol() const override;

  // ---- Segments ----

  std::int64_t segmentCountInObjectValue(Object* object) const override;
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const override;
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const override;
  // Follows the beats of the value, not those that rounding gives; 2^64 beats and more count as 20 digits. The ticks
  // count three digits also where a grid of more than 1000 ticks a beat shows four.
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const override;
  // Beats.
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const override;
  // Between points, divisions and ticks displayed, the left flag is left alone.
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const override;
  // Another tag reports a light assertion, here and in the next.
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const override;
  NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const override;

  // ---- Stepping and typing ----

  // Bars, beats, divisions and ticks step as durations; nothing is mirrored at zero. A tag that the layout lacks, divisions
  // that are dropped among them, reports a light assertion and steps nothing.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const override;
  // A beat or division of 0, or a text that begins with no number, is 1. A tag that the layout lacks but that has a
  // formatter reports a light assertion and changes nothing.
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error) const override;

  // ---- Coding ----

  explicit QKMeasuredTimecodeFormatDeputy(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // ---- For subclasses ----

  // The fields shown: 2 to 4.
  std::int64_t privateMaximumCurrentFields() const;
  // " ", or "." and, before divisions and ticks, ". ".
  std::string_view privateSeparatorString() const;

 private:
  int usedPlaces() const;  // [0, 18]

  // ---- Storage ----

  std::int64_t separator_ = OrbTimecodeFormatterDefaultMSeparator;
  bool displaysDivisionsAndTicks_ = OrbTimecodeFormatterDefaultMDisplaysDivisionsAndTicks;
  bool isDivisionsFieldDropped_ = OrbTimecodeFormatterDefaultMIsDivisionsFieldDropped;
  std::int64_t beatsDecimalPlaces_ = OrbTimecodeFormatterDefaultMBeatsDecimalPlaces;
  mutable std::optional<NumberFormatter> fractionFormatter_;  // made when asked for
};

}  // namespace quill::inline v0
