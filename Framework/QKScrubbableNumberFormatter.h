// QKScrubbableNumberFormatter: a number whose text is edited by scrubbing, that is by dragging over one of its segments.
//
// - With single-digit scrubbing every decimal digit is a segment of its own, and a step changes it at its place value.
// - With whole-number scrubbing the number is one segment, and a step adds to it.
// - Segments and steps work on the value that the text shows, not on hidden digits behind it; of a number outside the
//   bounds, whose text shows it all the same, on the bound.
// - Digits are those of sign and magnitude: a step through zero keeps the digits below its own, 3.25 less ten is -3.25.
// - Without a minimum or maximum of its own a formatter stops one short of the ends of 64 bits.
// - A change of type, digits or bounds posts QKScrubbableFormatterFormatChangedNotification, while it is made too.
//
// Segment tags are powers of ten: 0 the units, 1 the tens, -1 the tenths. The segment of a whole number has the tag 0.
//
// Rooms: Making; Options; Whole strings; Segments; Stepping and typing; Coding; For subclasses; Storage.
#pragma once

#include "../Platform/NotificationCenter.h"
#include "../Platform/NumberFormatter.h"
#include "../Platform/TextServices.h"

namespace quill::inline v0 {

enum QKScrubbingType : std::int64_t {
  kSingleDigitScrubbing = 0,
  kWholeNumberScrubbing = 1,
};

// Posted through NotificationCenter::defaultCenter(), the formatter as sender.
inline constexpr std::string_view QKScrubbableFormatterFormatChangedNotification =
    "OrbisScrubbableFormatterFormatChangedNotification";

class QUILL_EXPORT QKScrubbableNumberFormatter : public NumberFormatter {
 public:
  static const ClassDescriptor descriptor;

  // ---- Making ----

  // Single digits, six of them behind the separator.
  QKScrubbableNumberFormatter();
  // A whole number without a fraction.
  static QKScrubbableNumberFormatter initWholeNumberType();
  QKScrubbableNumberFormatter(const QKScrubbableNumberFormatter&) = default;
  QKScrubbableNumberFormatter& operator=(const QKScrubbableNumberFormatter&) = default;
  template <ProperlyDerivedFrom<QKScrubbableNumberFormatter> Derived>
  QKScrubbableNumberFormatter(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKScrubbableNumberFormatter> Derived>
  QKScrubbableNumberFormatter& operator=(const Derived&) = delete;
  // Takes the registrations of its observers with it.
  ~QKScrubbableNumberFormatter() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  Ref<Object> copy() const override;

  // ---- Options ----

  QKScrubbingType scrubbingType() const { return scrubbingType_; }
  // A change sets the digits that belong to the type.
  void setScrubbingType(QKScrubbingType type);

  // The digits that a change to a type sets: as many behind the separator, at least as many before it.
  std::int64_t fractionDigitsForSingleDigitScrubbingType() const { return fractionDigitsForSingleDigitScrubbingType_; }
  void setFractionDigitsForSingleDigitScrubbingType(std::int64_t count);
  std::int64_t integerDigitsForSingleDigitScrubbingType() const { return integerDigitsForSingleDigitScrubbingType_; }
  void setIntegerDigitsForSingleDigitScrubbingType(std::int64_t count);
  std::int64_t fractionDigitsForWholeNumberScrubbingType() const { return fractionDigitsForWholeNumberScrubbingType_; }
  void setFractionDigitsForWholeNumberScrubbingType(std::int64_t count);
  std::int64_t integerDigitsForWholeNumberScrubbingType() const { return integerDigitsForWholeNumberScrubbingType_; }
  void setIntegerDigitsForWholeNumberScrubbingType(std::int64_t count);

  // As the base's, and post the notification where the value changes.
  void setMinimumFractionDigits(std::int64_t count) override;
  void setMaximumFractionDigits(std::int64_t count) override;
  void setMinimumIntegerDigits(std::int64_t count) override;
  void setMaximumIntegerDigits(std::int64_t count) override;
  void setNumberStyle(Style style) override;
  void setMinimum(const std::optional<Number>& number) override;
  void setMaximum(const std::optional<Number>& number) override;
  // A symbol other than the plain text for zero makes zero a value of one segment.
  void setZeroSymbol(const std::optional<std::string>& text) override;
  void setDecimalSeparator(const std::string& text) override;
  void setLocale(const Locale& locale) override;

  // The bounds, or 9223372036854775806 and -9223372036854775807 where there are none.
  Number deFactoMaximum() const;
  Number deFactoMinimum() const;

  // The value for none: 0.0.
  Ref<Object> defaultObjectPrototype() const;
  // What can stand in a text: digits, "-" and the decimal separator that the locale had when it was first asked for;
  // nothing, that is no restriction, for a whole number without a fraction.
  std::optional<CharacterSet> legalCharacterSet() const;

  // ---- Whole strings ----

  // A number beyond the ends of 64 bits is shown as the last one before them, where there is no bound of its own.
  std::optional<std::string> stringForObjectValue(Object* object) const override;
  // A number outside the bounds becomes the bound. Without a nil symbol the empty text is 0.
  bool getObjectValue(Ref<Object>* object, std::string_view string, std::string* error) override;
  // Whether a text is, or can become by typing on, a number; white space may not stand in front.
  bool isPartialStringValid(std::string_view partial, std::optional<std::string>* newString,
                            std::string* error) const override;

  // ---- Segments ----
  //
  // Null stands for no value, which is one segment where a nil symbol shows it; so is a zero that a symbol shows.

  std::int64_t segmentCountInObjectValue(Object* object) const;
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const;
  // Negative for a tag left of the number.
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const;
  // In characters; the minus sign belongs to the leading segment, the decimal separator to none.
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const;
  bool segmentFieldContainsDecimalSeparatorForTag(std::int64_t tag, Object* object) const;
  // Never.
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const;
  // The tag 0x7fffffff stands for no segment; empty too where the text has no digit ("NaN").
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const;
  // The units.
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const;
  // This formatter for a whole number, null for single digits.
  Formatter* formatterForSegmentTag(std::int64_t tag, Object* object);
  // False, on purpose: a host that lets people type into digits asks the operation below all the same.
  bool allowsSegmentEditing() const;

  // ---- Stepping and typing ----

  // The number after so many steps of a segment, held to the bounds: a whole number stops at the bound, a digit at the
  // last step within it (9 with a maximum of 10 stays 9 when its tens go up). A step that would leave 64 bits changes
  // nothing.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const;
  // For a whole number with a fraction: the sum, held to the bounds. Elsewhere a light assertion, and the value.
  void getObjectValueFloatIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, double increment,
                                                     Object* object) const;
  // A digit typed is added in units, whatever its place, on purpose: 5 typed into the tens of 123 gives 108. False where
  // the result lies outside the bounds, with no description; otherwise "segment with tag %d doesn't exist" and "Too many
  // digits in string".
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error);

  // ---- Coding ----

  static std::int64_t version() { return descriptor.version; }
  explicit QKScrubbableNumberFormatter(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // ---- For subclasses ----

  // Sets the defaults and the type, with its digits.
  void _prepareScrubbableNumberFormatterOfType(QKScrubbingType type);
  // What the text of an object reads as, held to the bounds; 0 where it reads as nothing.
  double privateSanitizedValueForObject(Object* object) const;
  // How 0 is shown without a symbol: "0.000000".
  std::string privateDefaultStringForZero() const;
  void privatePrepareAttributedStringForZero();
  // The value, or the bound that it lies beyond.
  double privateClampToMinMax(double value) const;
  // A value after so many steps of 10^powerOfTen.
  double privateIncrementValue(double value, std::int64_t steps, std::int64_t powerOfTen) const;
  // Whether a text can be typed into a segment; what follows its digit is ignored. Fails with "Too many digits in
  // string", or without a description.
  bool privateIsValidString(std::string_view string, std::int64_t tag, Object* object, std::string* error) const;

 private:
  explicit QKScrubbableNumberFormatter(QKScrubbingType type);
  bool isWholeNumber() const { return scrubbingType_ == kWholeNumberScrubbing; }
  bool showsFraction() const { return minimumFractionDigits() > 0; }
  bool takesFraction() const { return !isWholeNumber() || showsFraction(); }
  // Whether the object is a zero that a symbol of its own shows.
  bool isZeroSymbolShown(Object* object) const;
  std::int64_t leadingTag(double value) const;
  // The sign, or the first digit, and where the last digit ends, in bytes of a text.
  struct Extent;
  Extent extentOfNumber(std::string_view text) const;
  // The number of a text, held to the bounds, or nothing for the text of no value.
  bool readNumber(std::optional<Number>* number, std::string_view string, std::string* error) const;
  double stepInside(double value, std::int64_t direction, double bound, std::int64_t powerOfTen) const;
  void digitsChanged(bool changed);
  void postFormatChanged() const;

  // ---- Storage ----

  QKScrubbingType scrubbingType_ = kSingleDigitScrubbing;
  std::int64_t fractionDigitsForSingleDigitScrubbingType_ = 0;
  std::int64_t integerDigitsForSingleDigitScrubbingType_ = 0;
  std::int64_t fractionDigitsForWholeNumberScrubbingType_ = 0;
  std::int64_t integerDigitsForWholeNumberScrubbingType_ = 0;
};

}  // namespace quill::inline v0
