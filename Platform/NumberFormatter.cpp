#include "NumberFormatter.h"

#include "IntegerMath.h"
#include "TextServices.h"
#include "detail/DecimalReader.h"

#include <algorithm>

namespace quill::inline v0 {

namespace {

// No double has a digit further from the point. Wider counts, which an archive may bring, pad no further.
constexpr std::int64_t kMostDigitsShown = 1100;

bool isZero(const Number& number) { return number.doubleValue() == 0; }

DecimalDigits digitsOfNumber(const Number& number) {
  switch (number.kind()) {
    case Number::Kind::Double: return shortestDigits(number.doubleValue());
    case Number::Kind::Signed: return digitsOf(number.int64Value());
    default: return digitsOf(number.uint64Value());
  }
}

char digitAt(const DecimalDigits& number, std::int64_t place) {
  const bool isPresent = place >= 0 && place < static_cast<std::int64_t>(number.digits.size());
  return isPresent ? number.digits[static_cast<std::size_t>(place)] : '0';
}

// The number that a whole text says; see getObjectValue for what it takes.
bool readNumber(std::string_view text, const Locale& locale, bool isGrouped, Number* number) {
  const CharacterSet& decimalDigits = CharacterSet::decimalDigits();
  const bool takesGroups = isGrouped && locale.groupingSeparator != locale.decimalSeparator;
  detail::DecimalReader reader;
  std::uint64_t magnitude = 0;  // of the whole part
  bool fits = true, isWhole = true;
  std::string_view run;

  Scanner scanner(text);
  scanner.skipNothing();
  scanner.scanCharacters(CharacterSet::whitespace(), nullptr);
  const bool isNegative = scanner.scanString("-") || scanner.scanString(locale.minusSign);
  bool hasDigits = false;
  while (scanner.scanCharacters(decimalDigits, &run)) {
    hasDigits = true;
    for (const char digit : run) {
      reader.addDigit(digit, false);
      const auto next = static_cast<std::uint64_t>(digit - '0');
      fits = fits && magnitude <= (kUInt64Highest - next) / 10;
      magnitude = magnitude * 10 + next;
    }
    if (!takesGroups || !scanner.scanString(locale.groupingSeparator)) break;
    hasDigits = false;  // some must follow
  }
  if (!hasDigits && !run.empty()) return false;
  if (scanner.scanString(locale.decimalSeparator) && scanner.scanCharacters(decimalDigits, &run)) {
    hasDigits = true;
    for (const char digit : run) {
      reader.addDigit(digit, true);
      isWhole = isWhole && digit == '0';
    }
  }
  scanner.scanCharacters(CharacterSet::whitespace(), nullptr);
  if (!hasDigits || !scanner.isAtEnd()) return false;

  const std::uint64_t limit = std::uint64_t{1} << 63;
  if (isWhole && fits && (magnitude < limit || (isNegative && magnitude == limit))) {
    const auto bits = static_cast<std::int64_t>(magnitude);
    *number = isNegative ? wrappingNegate(bits) : bits;
  } else {
    *number = isNegative ? -reader.value() : reader.value();
  }
  return true;
}

bool fail(std::string* error, const char* text) {
  if (error) *error = text;
  return false;
}

}  // namespace

const ClassDescriptor NumberFormatter::descriptor{"NumberFormatter", "NumberFormatter", 0, &Formatter::descriptor,
                                                  []() -> Ref<Object> { return std::make_shared<NumberFormatter>(); }};

NumberFormatter::NumberFormatter() : locale_(Locale::current()) {}

NumberFormatter::~NumberFormatter() = default;

void* NumberFormatter::asProtocol(const Protocol& protocol) { return &protocol == &Copying::protocol ? this : nullptr; }

Ref<Object> NumberFormatter::copy() const { return std::make_shared<NumberFormatter>(*this); }

void NumberFormatter::setMinimumIntegerDigits(std::int64_t count) {
  minimumIntegerDigits_ = std::max<std::int64_t>(count, 0);
  maximumIntegerDigits_ = std::max(maximumIntegerDigits_, minimumIntegerDigits_);
}

void NumberFormatter::setMaximumIntegerDigits(std::int64_t count) {
  maximumIntegerDigits_ = std::max<std::int64_t>(count, 0);
  minimumIntegerDigits_ = std::min(minimumIntegerDigits_, maximumIntegerDigits_);
}

void NumberFormatter::setMinimumFractionDigits(std::int64_t count) {
  minimumFractionDigits_ = std::max<std::int64_t>(count, 0);
  maximumFractionDigits_ = std::max(maximumFractionDigits_, minimumFractionDigits_);
}

void NumberFormatter::setMaximumFractionDigits(std::int64_t count) {
  maximumFractionDigits_ = std::max<std::int64_t>(count, 0);
  minimumFractionDigits_ = std::min(minimumFractionDigits_, maximumFractionDigits_);
}

void NumberFormatter::setMinimum(const std::optional<Number>& number) { minimum_ = number; }

void NumberFormatter::setMaximum(const std::optional<Number>& number) { maximum_ = number; }

void NumberFormatter::setZeroSymbol(const std::optional<std::string>& text) { zeroSymbol_ = text; }

void NumberFormatter::setNilSymbol(const std::optional<std::string>& text) { nilSymbol_ = text; }

void NumberFormatter::setNumberStyle(Style style) {
  numberStyle_ = style;
  usesGroupingSeparator_ = style == DecimalStyle;
  minimumFractionDigits_ = 0;
  maximumFractionDigits_ = style == DecimalStyle ? 3 : 0;
}

std::optional<std::string> NumberFormatter::stringForObjectValue(Object* object) const {
  if (!object) return nilSymbol_.value_or("");
  const auto* number = classCast<Number>(object);
  if (!number) return std::nullopt;
  return stringFromNumber(*number);
}

std::string NumberFormatter::stringFromNumber(const Number& number) const {
  const double asDouble = number.doubleValue();
  if (std::isnan(asDouble)) return "NaN";
  if (std::isinf(asDouble)) return asDouble < 0 ? locale_.minusSign + "∞" : "∞";
  if (zeroSymbol_ && isZero(number)) return *zeroSymbol_;

  DecimalDigits digits = digitsOfNumber(number);
  const std::int64_t mostPlaces = std::min(maximumFractionDigits_, kMostDigitsShown);
  roundToPlaces(digits, static_cast<std::int32_t>(mostPlaces));

  const std::int64_t point = digits.exponent;
  const std::int64_t shown = static_cast<std::int64_t>(digits.digits.size()) - point;
  const std::int64_t places = std::max(std::min(minimumFractionDigits_, kMostDigitsShown), shown);
  std::int64_t wholeDigits = std::max(std::min(minimumIntegerDigits_, kMostDigitsShown), point);
  if (wholeDigits <= 0 && places <= 0) wholeDigits = 1;

  std::string text;
  if (digits.negative && !digits.digits.empty()) text += locale_.minusSign;
  for (std::int64_t left = wholeDigits; left > 0; --left) {
    text += digitAt(digits, point - left);
    if (usesGroupingSeparator_ && left % 3 == 1 && left > 1) text += locale_.groupingSeparator;
  }
  if (places <= 0) return text;
  text += locale_.decimalSeparator;
  for (std::int64_t place = 0; place < places; ++place) text += digitAt(digits, point + place);
  return text;
}

bool NumberFormatter::getObjectValue(Ref<Object>* object, std::string_view string, std::string* error) {
  if (nilSymbol_ && string == *nilSymbol_) {
    if (object) *object = nullptr;
    return true;
  }
  Number number;
  if (!getNumber(&number, string, error)) return false;
  if (object) *object = std::make_shared<Number>(number);
  return true;
}

bool NumberFormatter::getNumber(Number* number, std::string_view string, std::string* error) const {
  Number found;
  if (!zeroSymbol_ || string != *zeroSymbol_) {
    if (!readNumber(string, locale_, usesGroupingSeparator_, &found)) return fail(error, "Not a number.");
  }
  // As doubles, so that the bound that the ends of 64 bits round to admits them.
  const double value = found.doubleValue();
  if (minimum_ && value < minimum_->doubleValue()) return fail(error, "Number below the minimum.");
  if (maximum_ && value > maximum_->doubleValue()) return fail(error, "Number above the maximum.");
  if (number) *number = found;
  return true;
}

}  // namespace quill::inline v0
