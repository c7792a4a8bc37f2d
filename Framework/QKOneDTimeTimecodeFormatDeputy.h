// QKOneDTimeTimecodeFormatDeputy: a value as one number of seconds, "1.500000", with a fixed count of decimal places.
//
// - It serves any value of the QKOneDimensionalTimeTimecode protocol.
// - Whole seconds are cut into segments of three digits from the decimal separator leftward, the fraction rightward.
// - Decimal places are used as at most 18, whatever was set. Seconds of 2^64 or more count as 20 digits.
//
// Segment tags: 0 the lowest three whole digits, 1 the thousands, and so on to 6; -1 the first three decimal places, -2
// the next, and so on; the last one may be shorter. The index runs the other way.
//
// Rooms: Options; Whole strings; Segments; Stepping and typing; Coding; Storage.
#pragma once

#include "QKFormatDeputy.h"

namespace quill::inline v0 {

inline constexpr std::uint64_t OrbTimecodeFormatterDefaultODTSecondsDecimalPlaces = 6;

class QUILL_EXPORT QKOneDTimeTimecodeFormatDeputy : public QKFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  // The default above.
  QKOneDTimeTimecodeFormatDeputy();
  QKOneDTimeTimecodeFormatDeputy(const QKOneDTimeTimecodeFormatDeputy&) = default;
  QKOneDTimeTimecodeFormatDeputy& operator=(const QKOneDTimeTimecodeFormatDeputy&) = default;
  template <ProperlyDerivedFrom<QKOneDTimeTimecodeFormatDeputy> Derived>
  QKOneDTimeTimecodeFormatDeputy(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKOneDTimeTimecodeFormatDeputy> Derived>
  QKOneDTimeTimecodeFormatDeputy& operator=(const Derived&) = delete;
  ~QKOneDTimeTimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;
  Ref<Object> copy() const override;

  // ---- Options ----

  std::uint64_t secondsDecimalPlaces() const { return secondsDecimalPlaces_; }
  void setSecondsDecimalPlaces(std::uint64_t places) { secondsDecimalPlaces_ = places; }

  // ---- Whole strings ----

  // Rounded to the places shown; without any, halves up.
  std::string stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const override;

  // "1.5" sets seconds, "+1.5" adds them, "-1.5" subtracts them; "" and a mere sign change nothing. The decimal separator
  // is the locale's alone. What follows the number is passed over. Fails with "Illegal characters." or
  // "Excess + or -'s".
  bool getObjectValue(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                      std::string* error) const override;

  // The decimal separator of the locale and the digits.
  CharacterSet legalCharacterSet() const override;
  // "—.—", or an em dash without decimal places.
  std::string defaultNilSymbol() const override;
  const Protocol& requiredProtocol() const override;

  // ---- Segments ----

  std::int64_t segmentCountInObjectValue(Object* object) const override;
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const override;
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const override;
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const override;
  // The lowest three whole digits.
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const override;
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const override;
  // Follows the digits of the value, not those that rounding gives: 99.9 s without decimal places.
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const override;
  NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const override;

  // ---- Stepping and typing ----

  // A step through zero mirrors the value: the stepped segment reads 1, the lower ones keep their digits. 0.5 s down a
  // second is -1.5 s. The last segment steps by its own unit, 0.0001 s with four places, and is never mirrored.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const override;
  // Of a negative value the digits that stay count as negative and the typed ones as positive, on purpose: 250 typed
  // behind the separator of -1.5 s gives -0.75 s.
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error) const override;

  // ---- Coding ----

  explicit QKOneDTimeTimecodeFormatDeputy(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 private:
  int usedPlaces() const;          // [0, 18]
  std::int64_t lowestTag() const;  // [-6, 0]
  // Seconds in one unit of a segment.
  double scaleOfTag(std::int64_t tag) const;

  // ---- Storage ----

  std::uint64_t secondsDecimalPlaces_ = OrbTimecodeFormatterDefaultODTSecondsDecimalPlaces;
};

}  // namespace quill::inline v0
