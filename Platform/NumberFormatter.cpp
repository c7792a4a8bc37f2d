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

const ClassDescriptor NumberFormatter::descriptor{
    "NumberFormatter",
    "NumberFormatter",
    0,
    &Formatter::descriptor,
    []() -> Ref<Object> { return std::make_shared<NumberFormatter>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<NumberFormatter>(coder); }};

NumberFormatter::NumberFormatter() : locale_(Locale::current()) {}

NumberFormatter::~NumberFormatter() = default;

void* NumberFormatter::asProtocol(const Protocol& protocol) {
  const bool isCoding = &protocol == &Coding::protocol && classDescriptor().archiveName;
  return isCoding || &protocol == &Copying::protocol ? this : nullptr;
}

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
  if (isZero(number)) {
    if (zeroSymbol_) return *zeroSymbol_;
    if (textForZero_) return *textForZero_;
  }

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
  if (!getNumberWithoutBounds(&found, string, error)) return false;
  // As doubles, so that the bound that the ends of 64 bits round to admits them.
  const double value = found.doubleValue();
  if (minimum_ && value < minimum_->doubleValue()) return fail(error, "Number below the minimum.");
  if (maximum_ && value > maximum_->doubleValue()) return fail(error, "Number above the maximum.");
  if (number) *number = found;
  return true;
}

bool NumberFormatter::getNumberWithoutBounds(Number* number, std::string_view string, std::string* error) const {
  if (zeroSymbol_ && string == *zeroSymbol_) {
    *number = Number();
    return true;
  }
  return readNumber(string, locale_, usesGroupingSeparator_, number) || fail(error, "Not a number.");
}

// ---- Coding ----
//
// Keyed as below; sequential the counts under "qqqq", the three others under "iii" and the objects, in the same order.

namespace {

constexpr std::string_view kCountKeys[] = {"NFMinimumIntegerDigits", "NFMaximumIntegerDigits",
                                           "NFMinimumFractionDigits", "NFMaximumFractionDigits"};
constexpr std::string_view kObjectKeys[] = {"NFMinimum",           "NFMaximum",     "NFZeroSymbol",
                                            "NFNilSymbol",         "NFTextForZero", "NFDecimalSeparator",
                                            "NFGroupingSeparator", "NFMinusSign"};
constexpr const ClassDescriptor* kNumberClass[] = {&Number::descriptor};
constexpr const ClassDescriptor* kTextClass[] = {&TextObject::descriptor};

void take(std::optional<Number>& number, const Ref<Object>& object) {
  if (const auto* archived = classCast<Number>(object.get())) number = *archived;
}

template <class Text>
void take(Text& text, const Ref<Object>& object) {
  if (const auto* archived = classCast<TextObject>(object.get())) text = archived->text();
}

}  // namespace

NumberFormatter::NumberFormatter(KeyedCoder& coder) : NumberFormatter() {
  const DecodingRegistration registration(coder, descriptor);
  const bool isKeyed = coder.allowsKeyedCoding();
  Number counts[4], others[3];
  if (isKeyed) {
    coder.decodeInteger("NumberFormatterVersion");  // every version reads alike
    for (std::size_t i = 0; i < std::size(counts); ++i) counts[i] = coder.decodeInt64(kCountKeys[i]);
    others[0] = Number::boolean(coder.decodeBool("NFUsesGroupingSeparator"));
    others[1] = coder.decodeInteger("NFNumberStyle");
    others[2] = coder.decodeInteger("NFFormatterBehavior");
  } else {
    coder.versionForClassName(descriptor.archiveName);
    coder.decodeValues("qqqq", counts);
    coder.decodeValues("iii", others);
  }
  NumberFormatter::setMinimumIntegerDigits(counts[0].int64Value());
  NumberFormatter::setMaximumIntegerDigits(counts[1].int64Value());
  NumberFormatter::setMinimumFractionDigits(counts[2].int64Value());
  NumberFormatter::setMaximumFractionDigits(counts[3].int64Value());
  usesGroupingSeparator_ = others[0].boolValue();
  numberStyle_ = static_cast<Style>(others[1].int64Value());
  formatterBehavior_ = static_cast<Behavior>(others[2].int64Value());

  std::size_t place = 0;
  const auto next = [&](ClassSet classes) {
    const std::string_view key = kObjectKeys[place++];
    return isKeyed ? coder.decodeObject(classes, key) : coder.decodeObject(classes);
  };
  take(minimum_, next(kNumberClass));
  take(maximum_, next(kNumberClass));
  take(zeroSymbol_, next(kTextClass));
  take(nilSymbol_, next(kTextClass));
  take(textForZero_, next(kTextClass));
  take(locale_.decimalSeparator, next(kTextClass));
  take(locale_.groupingSeparator, next(kTextClass));
  take(locale_.minusSign, next(kTextClass));
}

void NumberFormatter::encodeWithCoder(KeyedCoder& coder) const {
  const bool isKeyed = coder.allowsKeyedCoding();
  if (isKeyed) {
    const std::int64_t counts[] = {minimumIntegerDigits_, maximumIntegerDigits_, minimumFractionDigits_,
                                   maximumFractionDigits_};
    coder.encodeInteger(descriptor.version, "NumberFormatterVersion");
    for (std::size_t i = 0; i < std::size(counts); ++i) coder.encodeInt64(counts[i], kCountKeys[i]);
    coder.encodeBool(usesGroupingSeparator_, "NFUsesGroupingSeparator");
    coder.encodeInteger(numberStyle_, "NFNumberStyle");
    coder.encodeInteger(formatterBehavior_, "NFFormatterBehavior");
  } else {
    coder.encodeValues("qqqq",
                       {minimumIntegerDigits_, maximumIntegerDigits_, minimumFractionDigits_, maximumFractionDigits_});
    coder.encodeValues("iii",
                       {usesGroupingSeparator_ ? 1 : 0, std::int64_t{numberStyle_}, std::int64_t{formatterBehavior_}});
  }

  std::size_t place = 0;
  const auto put = [&](const Object* object) {
    const std::string_view key = kObjectKeys[place++];
    if (isKeyed) {
      coder.encodeObject(object, key);
    } else {
      coder.encodeObject(object);
    }
  };
  for (const auto* number : {&minimum_, &maximum_}) put(*number ? &**number : nullptr);
  for (const auto* text : {&zeroSymbol_, &nilSymbol_, &textForZero_}) {
    const auto object = *text ? std::optional<TextObject>(**text) : std::nullopt;
    put(object ? &*object : nullptr);
  }
  for (const auto* text : {&locale_.decimalSeparator, &locale_.groupingSeparator, &locale_.minusSign}) {
    const TextObject object(*text);
    put(&object);
  }
}

}  // namespace quill::inline v0
