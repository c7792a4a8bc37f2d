// QKHMSTimecodeFormatDeputy: hours, minutes and seconds as text, "01:02:03.500", with decimal places of the second.
//
// - It serves any value of the QKHMSTimecode protocol.
// - The decimal separator of the locale stands before the fraction. An entry may part its fields with any of ",.;:":
//   with decimal places shown its last field is the fraction, whatever stands before it, so "1:00" is one second.
// - Decimal places are used as at most 18, whatever was set.
//
// Segment tags: 0 hours, 1 minutes, 2 seconds, 3 fraction. Tag and index are the same number.
//
// Rooms: Options; Whole strings; Segments; Stepping and typing; Coding; For subclasses; Storage.
#pragma once

#include "QKFormatDeputy.h"

#include <optional>

namespace quill::inline v0 {

inline constexpr std::int64_t OrbTimecodeFormatterDefaultHMSSecondsDecimalPlaces = 3;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultHMSHas24HourRollover = 0;

class QUILL_EXPORT QKHMSTimecodeFormatDeputy : public QKFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  // The defaults above.
  QKHMSTimecodeFormatDeputy();
  QKHMSTimecodeFormatDeputy(const QKHMSTimecodeFormatDeputy& other);
  QKHMSTimecodeFormatDeputy& operator=(const QKHMSTimecodeFormatDeputy& other);
  template <ProperlyDerivedFrom<QKHMSTimecodeFormatDeputy> Derived>
  QKHMSTimecodeFormatDeputy(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKHMSTimecodeFormatDeputy> Derived>
  QKHMSTimecodeFormatDeputy& operator=(const Derived&) = delete;
  ~QKHMSTimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;
  Ref<Object> copy() const override;

  // ---- Options ----

  // Digits behind the seconds; 0 shows whole seconds. A negative count is set as 0.
  std::int64_t secondsDecimalPlaces() const { return secondsDecimalPlaces_; }
  void setSecondsDecimalPlaces(std::int64_t places);
  // Hours shown modulo 24.
  bool has24HourRollover() const { return has24HourRollover_; }
  void setHas24HourRollover(bool flag) { has24HourRollover_ = flag; }

  // What the fraction is shown and typed with; null without decimal places. Lives as long as the deputy and follows the
  // decimal places set.
  NumberFormatter* secondsDecimalPlacesFormatter() const;

  // ---- Whole strings ----

  // Rounded to the decimal places shown, halves of a whole second up. Rounding carries into the minutes and hours, but
  // not over the day: 23:59:59.9996 is "24:00:00.000" with rollover too.
  std::string stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const override;

  // One or two bare digits are whole seconds; more go in pairs, up to two for the seconds, and the rest are the fraction:
  // with three places "5" is 5 s, "123" is 12.3 s, "1234567" is 12 min 34.567 s. Fields not typed stay. A sign makes the
  // entry an amount to add or subtract; "" only clears the sign. With rollover, typed hours keep the day of a value past
  // 24 hours. Fails with "Illegal characters.".
  bool getObjectValue(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                      std::string* error) const override;

  // "—:—:—.—", or "—:—:—" without decimal places.
  std::string defaultNilSymbol() const override;
  const Protocol& requiredProtocol() const override;

  // ---- Segments ----

  std::int64_t segmentCountInObjectValue(Object* object) const override;
  // The argument.
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const override;
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const override;
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const override;
  // Seconds.
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const override;
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const override;
  // Follows the hours of the value, not those that rounding carries into.
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const override;
  NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const override;

  // ---- Stepping and typing ----

  // A step through zero mirrors the value: the stepped field reads 1, the lower ones keep their digits.
  // 00:00:10.000 down a minute is -00:01:10.000.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const override;
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error) const override;

  // ---- Coding ----

  explicit QKHMSTimecodeFormatDeputy(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // ---- For subclasses ----

  // The fields shown.
  std::int64_t privateMaximumCurrentFields() const;
  // 2, or more for hours from 100 on without rollover.
  std::int64_t privateDigitsInHoursForObjectValue(Object* object) const;
  // Cuts the digits in front of a text into at most `length` fields, the highest first; how many they are. False without
  // any.
  bool privateScanHMSNumberString(std::string_view string, std::int64_t* fields, std::int64_t length,
                                  std::int64_t* indexAtEnd) const;
  // Brings the formatter of the fraction, where it has been made, to the decimal places.
  void privateConfigureSecondsDecimalPlacesFormatter() const;

 private:
  int usedPlaces() const;  // [0, 18]

  // ---- Storage ----

  std::int64_t secondsDecimalPlaces_ = OrbTimecodeFormatterDefaultHMSSecondsDecimalPlaces;
  bool has24HourRollover_ = OrbTimecodeFormatterDefaultHMSHas24HourRollover;
  mutable std::optional<QKTimecodeSegmentNumberFormatter> fractionFormatter_;  // made when asked for
};

}  // namespace quill::inline v0
