// NumberFormatter: numbers as decimal text for people, and back.
//
// - Rendering rounds half to even on the shortest decimal form of a double; zero never carries a minus sign.
// - Minimum and maximum bound what a text may say; rendering shows any number.
// - Digit counts shape rendering (a number with more integer digits than the maximum is shown whole) and typing; parsing
//   takes any number of digits. Rendering fills up to 1100 digits on either side of the separator, whatever the minimum.
// - The separators are those of the current locale when the formatter is made, until set.
#pragma once

#include "Formatter.h"
#include "KeyedCoder.h"
#include "LocaleInfo.h"
#include "Number.h"

namespace quill::inline v0 {

class QUILL_EXPORT NumberFormatter : public Formatter {
 public:
  static const ClassDescriptor descriptor;

  enum Style : std::int64_t { NoStyle = 0, DecimalStyle = 1 };
  enum Behavior : std::int64_t { DefaultBehavior = 0, Behavior10_4 = 1040 };

  // What a count that is not set stands at.
  static constexpr std::int64_t kDefaultMaximumIntegerDigits = 2000000000;

  // Style none: at least one integer digit, no fraction, no grouping, no bounds, no symbols.
  NumberFormatter();
  NumberFormatter(const NumberFormatter&) = default;
  NumberFormatter& operator=(const NumberFormatter&) = default;
  template <ProperlyDerivedFrom<NumberFormatter> Derived>
  NumberFormatter(const Derived&) = delete;
  template <ProperlyDerivedFrom<NumberFormatter> Derived>
  NumberFormatter& operator=(const Derived&) = delete;
  ~NumberFormatter() override;

  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;
  Ref<Object> copy() const override;

  // Digit counts are never negative (a negative argument counts as 0). Raising a minimum above its maximum raises the
  // maximum with it, lowering a maximum below its minimum lowers the minimum.
  std::int64_t minimumIntegerDigits() const { return minimumIntegerDigits_; }
  virtual void setMinimumIntegerDigits(std::int64_t count);
  std::int64_t maximumIntegerDigits() const { return maximumIntegerDigits_; }
  virtual void setMaximumIntegerDigits(std::int64_t count);
  std::int64_t minimumFractionDigits() const { return minimumFractionDigits_; }
  virtual void setMinimumFractionDigits(std::int64_t count);
  std::int64_t maximumFractionDigits() const { return maximumFractionDigits_; }
  virtual void setMaximumFractionDigits(std::int64_t count);

  // The bounds of what a text may say, or none.
  const std::optional<Number>& minimum() const { return minimum_; }
  virtual void setMinimum(const std::optional<Number>& number);
  const std::optional<Number>& maximum() const { return maximum_; }
  virtual void setMaximum(const std::optional<Number>& number);

  // The text for 0 and the text for no value, or none. An empty nil symbol makes the empty text say no value.
  const std::optional<std::string>& zeroSymbol() const { return zeroSymbol_; }
  virtual void setZeroSymbol(const std::optional<std::string>& text);
  const std::optional<std::string>& nilSymbol() const { return nilSymbol_; }
  virtual void setNilSymbol(const std::optional<std::string>& text);
  // How 0 is shown without a symbol for it, or none: as any number. It is no symbol: parsing does not know it.
  const std::optional<std::string>& textForZero() const { return textForZero_; }
  void setTextForZero(const std::optional<std::string>& text) { textForZero_ = text; }

  const std::string& decimalSeparator() const { return locale_.decimalSeparator; }
  virtual void setDecimalSeparator(const std::string& text) { locale_.decimalSeparator = text; }
  const std::string& groupingSeparator() const { return locale_.groupingSeparator; }
  void setGroupingSeparator(const std::string& text) { locale_.groupingSeparator = text; }
  const std::string& minusSign() const { return locale_.minusSign; }
  const Locale& locale() const { return locale_; }
  virtual void setLocale(const Locale& locale) { locale_ = locale; }

  // Thousands in groups of three integer digits.
  bool usesGroupingSeparator() const { return usesGroupingSeparator_; }
  void setUsesGroupingSeparator(bool flag) { usesGroupingSeparator_ = flag; }

  // Setting a style sets what it stands for: the decimal one groups thousands and shows up to three fraction digits,
  // none does neither.
  Style numberStyle() const { return numberStyle_; }
  virtual void setNumberStyle(Style style);

  // Kept for archives and callers; every behaviour formats alike.
  Behavior formatterBehavior() const { return formatterBehavior_; }
  void setFormatterBehavior(Behavior behavior) { formatterBehavior_ = behavior; }

  // Nothing for an object that is no Number; the nil symbol, or "" without one, for no object. NaN and infinities are
  // "NaN", "∞" and "-∞".
  std::optional<std::string> stringForObjectValue(Object* object) const override;
  std::string stringFromNumber(const Number& number) const;

  // A Number: a signed integer where the text is whole and fits 64 bits, else a double. White space around the number
  // is passed over; inside it, or any other character, fails: "Not a number.". A number outside the bounds fails with
  // "Number below the minimum." or "Number above the maximum.". Accepts "-" as well as the locale's minus sign, and
  // grouping separators when thousands are grouped.
  bool getObjectValue(Ref<Object>* object, std::string_view string, std::string* error) override;
  // As getObjectValue without symbols for no value, and without the heap.
  bool getNumber(Number* number, std::string_view string, std::string* error) const;

  explicit NumberFormatter(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // As getNumber, whatever the bounds.
  bool getNumberWithoutBounds(Number* number, std::string_view string, std::string* error) const;

 private:
  std::int64_t minimumIntegerDigits_ = 1;
  std::int64_t maximumIntegerDigits_ = kDefaultMaximumIntegerDigits;
  std::int64_t minimumFractionDigits_ = 0;
  std::int64_t maximumFractionDigits_ = 0;
  std::optional<Number> minimum_;
  std::optional<Number> maximum_;
  std::optional<std::string> zeroSymbol_;
  std::optional<std::string> nilSymbol_;
  std::optional<std::string> textForZero_;
  Locale locale_;
  bool usesGroupingSeparator_ = false;
  Style numberStyle_ = NoStyle;
  Behavior formatterBehavior_ = DefaultBehavior;
};

}  // namespace quill::inline v0
