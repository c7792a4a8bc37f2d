#include "QKScrubbableNumberFormatter.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/Reports.h"
#include "QKFormatDeputyUtilities.h"
#include "detail/ParseText.h"

#include <algorithm>
#include <cmath>

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKScrubbableNumberFormatter";
constexpr std::string_view kDigits = "0123456789";
constexpr std::int64_t kNoSegmentTag = 0x7fffffff;
// No text is filled up with more zeros, whatever an archive says.
constexpr std::int64_t kMostZeros = 1100;

constexpr std::string_view kVersionKey = "OSCNFVersion";
constexpr std::string_view kFieldKeys[] = {"OSCNFScrubbingType", "OSCNFFractionDigitsForSingleDigitScrubbingType",
                                           "OSCNFFractionDigitsForWholeNumberScrubbingType",
                                           "OSCNFIntegerDigitsForSingleDigitScrubbingType",
                                           "OSCNFIntegerDigitsForWholeNumberScrubbingType"};

std::string zeros(std::int64_t count) {
  return std::string(static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, kMostZeros)), '0');
}

std::int64_t lengthOf(const std::optional<std::string>& text) {
  return static_cast<std::int64_t>(characterCount(text.value_or("")));
}

// The number itself; null stands for 0.
double doubleOf(const Object* object) {
  const auto* number = classCast<Number>(object);
  return number ? number->doubleValue() : 0;
}

Ref<Object> boxed(double value) { return std::make_shared<Number>(value); }

std::int64_t digitCount(std::string_view text) {
  return std::count_if(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::uint64_t charactersBefore(std::string_view text, std::size_t byte) { return characterCount(text.substr(0, byte)); }

}  // namespace

const ClassDescriptor QKScrubbableNumberFormatter::descriptor{
    "QKScrubbableNumberFormatter",
    "OrbisScrubbableNumberFormatter",
    0,
    &NumberFormatter::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKScrubbableNumberFormatter>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKScrubbableNumberFormatter>(coder); }};

// ---- Making ----

QKScrubbableNumberFormatter::QKScrubbableNumberFormatter() : QKScrubbableNumberFormatter(kSingleDigitScrubbing) {}

QKScrubbableNumberFormatter::QKScrubbableNumberFormatter(QKScrubbingType type) {
  _prepareScrubbableNumberFormatterOfType(type);
}

QKScrubbableNumberFormatter QKScrubbableNumberFormatter::initWholeNumberType() {
  return QKScrubbableNumberFormatter(kWholeNumberScrubbing);
}

QKScrubbableNumberFormatter::~QKScrubbableNumberFormatter() {
  NotificationCenter::defaultCenter().removeObserversOf(this);
}

Ref<Object> QKScrubbableNumberFormatter::copy() const { return std::make_shared<QKScrubbableNumberFormatter>(*this); }

void QKScrubbableNumberFormatter::_prepareScrubbableNumberFormatterOfType(QKScrubbingType type) {
  setFormatterBehavior(Behavior10_4);
  fractionDigitsForSingleDigitScrubbingType_ = 6;
  integerDigitsForSingleDigitScrubbingType_ = 1;
  scrubbingType_ = static_cast<QKScrubbingType>(-1);
  QKScrubbableNumberFormatter::setScrubbingType(type);
}

// ---- Options ----

void QKScrubbableNumberFormatter::setScrubbingType(QKScrubbingType type) {
  if (type == scrubbingType_) return;
  scrubbingType_ = type;
  const std::int64_t fractionDigits =
      isWholeNumber() ? fractionDigitsForWholeNumberScrubbingType_ : fractionDigitsForSingleDigitScrubbingType_;
  QKScrubbableNumberFormatter::setMinimumFractionDigits(fractionDigits);
  QKScrubbableNumberFormatter::setMaximumFractionDigits(fractionDigits);
  QKScrubbableNumberFormatter::setMinimumIntegerDigits(isWholeNumber() ? integerDigitsForWholeNumberScrubbingType_
                                                                       : integerDigitsForSingleDigitScrubbingType_);
  postFormatChanged();
}

void QKScrubbableNumberFormatter::setFractionDigitsForSingleDigitScrubbingType(std::int64_t count) {
  fractionDigitsForSingleDigitScrubbingType_ = count;
}

void QKScrubbableNumberFormatter::setIntegerDigitsForSingleDigitScrubbingType(std::int64_t count) {
  integerDigitsForSingleDigitScrubbingType_ = count;
}

void QKScrubbableNumberFormatter::setFractionDigitsForWholeNumberScrubbingType(std::int64_t count) {
  fractionDigitsForWholeNumberScrubbingType_ = count;
}

void QKScrubbableNumberFormatter::setIntegerDigitsForWholeNumberScrubbingType(std::int64_t count) {
  integerDigitsForWholeNumberScrubbingType_ = count;
}

void QKScrubbableNumberFormatter::setMinimumFractionDigits(std::int64_t count) {
  const std::int64_t before = minimumFractionDigits();
  NumberFormatter::setMinimumFractionDigits(count);
  digitsChanged(minimumFractionDigits() != before);
}

void QKScrubbableNumberFormatter::setMaximumFractionDigits(std::int64_t count) {
  const std::int64_t before = minimumFractionDigits();  // which may go down with it
  NumberFormatter::setMaximumFractionDigits(count);
  digitsChanged(minimumFractionDigits() != before);
}

void QKScrubbableNumberFormatter::setMinimumIntegerDigits(std::int64_t count) {
  const std::int64_t before = minimumIntegerDigits();
  NumberFormatter::setMinimumIntegerDigits(count);
  digitsChanged(minimumIntegerDigits() != before);
}

void QKScrubbableNumberFormatter::setMaximumIntegerDigits(std::int64_t count) {
  const std::int64_t before = minimumIntegerDigits();
  NumberFormatter::setMaximumIntegerDigits(count);
  digitsChanged(minimumIntegerDigits() != before);
}

void QKScrubbableNumberFormatter::setNumberStyle(Style style) {
  const std::int64_t before = minimumFractionDigits();
  NumberFormatter::setNumberStyle(style);
  digitsChanged(minimumFractionDigits() != before);
}

void QKScrubbableNumberFormatter::digitsChanged(bool changed) {
  privatePrepareAttributedStringForZero();
  if (changed) postFormatChanged();
}

void QKScrubbableNumberFormatter::setMinimum(const std::optional<Number>& number) {
  const bool changed = number != minimum();
  NumberFormatter::setMinimum(number);
  if (changed) postFormatChanged();
}

void QKScrubbableNumberFormatter::setMaximum(const std::optional<Number>& number) {
  const bool changed = number != maximum();
  NumberFormatter::setMaximum(number);
  if (changed) postFormatChanged();
}

void QKScrubbableNumberFormatter::setZeroSymbol(const std::optional<std::string>& text) {
  NumberFormatter::setZeroSymbol(text);
  if (!text) privatePrepareAttributedStringForZero();
}

void QKScrubbableNumberFormatter::setDecimalSeparator(const std::string& text) {
  NumberFormatter::setDecimalSeparator(text);
  privatePrepareAttributedStringForZero();
}

void QKScrubbableNumberFormatter::setLocale(const Locale& locale) {
  NumberFormatter::setLocale(locale);
  privatePrepareAttributedStringForZero();
}

Number QKScrubbableNumberFormatter::deFactoMaximum() const { return maximum().value_or(kInt64Highest - 1); }

Number QKScrubbableNumberFormatter::deFactoMinimum() const { return minimum().value_or(-kInt64Highest); }

Ref<Object> QKScrubbableNumberFormatter::defaultObjectPrototype() const { return boxed(0.0); }

std::optional<CharacterSet> QKScrubbableNumberFormatter::legalCharacterSet() const {
  static const CharacterSet& set = *new CharacterSet(formatDeputyDecimalSeparator() + "-" + std::string(kDigits));
  return takesFraction() ? std::optional(set) : std::nullopt;
}

void QKScrubbableNumberFormatter::postFormatChanged() const {
  NotificationCenter::defaultCenter().post(QKScrubbableFormatterFormatChangedNotification, this, nullptr);
}

// ---- Whole strings ----

std::optional<std::string> QKScrubbableNumberFormatter::stringForObjectValue(Object* object) const {
  const auto* number = classCast<Number>(object);
  if (number && !maximum() && *number > deFactoMaximum()) return stringFromNumber(deFactoMaximum());
  if (number && !minimum() && *number < deFactoMinimum()) return stringFromNumber(deFactoMinimum());
  return NumberFormatter::stringForObjectValue(object);
}

bool QKScrubbableNumberFormatter::readNumber(std::optional<Number>* number, std::string_view string,
                                             std::string* error) const {
  if (nilSymbol() ? string == *nilSymbol() : string.empty()) {
    *number = nilSymbol() ? std::nullopt : std::optional<Number>(std::uint64_t{0});
    return true;
  }
  Number found;
  if (!getNumberWithoutBounds(&found, string, error)) return false;
  if (maximum() && found > *maximum()) found = *maximum();
  if (minimum() && found < *minimum()) found = *minimum();
  *number = found;
  return true;
}

bool QKScrubbableNumberFormatter::getObjectValue(Ref<Object>* object, std::string_view string, std::string* error) {
  std::optional<Number> number;
  if (!readNumber(&number, string, error)) return false;
  if (object) *object = number ? std::make_shared<Number>(*number) : nullptr;
  return true;
}

bool QKScrubbableNumberFormatter::isPartialStringValid(std::string_view partial, std::optional<std::string>* newString,
                                                       std::string* error) const {
  if (newString) newString->reset();
  if (error) error->clear();
  if (partial.empty()) return true;
  if (CharacterSet::whitespace().contains(decodeCharacter(partial).character)) return false;

  Scanner scanner(partial);
  scanner.setDecimalSeparator(decimalSeparator());
  std::string_view found;
  if (scanner.scanCharacters(CharacterSet("-"), &found) && found.size() != 1) return false;
  Scanner ahead = scanner;
  if (ahead.scanCharacters(CharacterSet(decimalSeparator()), &found)) {
    if (characterCount(found) != 1) return false;
    if (ahead.isAtEnd()) return takesFraction();
  }
  if (takesFraction()) {
    scanner.scanDouble(nullptr);
  } else {
    scanner.scanCharacters(CharacterSet::decimalDigits(), nullptr);
  }
  return scanner.isAtEnd();
}

double QKScrubbableNumberFormatter::privateSanitizedValueForObject(Object* object) const {
  const std::optional<std::string> text = stringForObjectValue(object);
  std::optional<Number> number;
  return text && readNumber(&number, *text, nullptr) && number ? number->doubleValue() : 0;
}

std::string QKScrubbableNumberFormatter::privateDefaultStringForZero() const {
  std::string text = zeros(std::max<std::int64_t>(minimumIntegerDigits(), 1));
  if (minimumFractionDigits() > 0) text += decimalSeparator() + zeros(minimumFractionDigits());
  return text;
}

void QKScrubbableNumberFormatter::privatePrepareAttributedStringForZero() {
  setTextForZero(privateDefaultStringForZero());
}

// ---- Segments ----

struct QKScrubbableNumberFormatter::Extent {
  std::size_t begin, firstDigit, end;
  std::int64_t signLength;  // in characters, 0 without a sign
};

QKScrubbableNumberFormatter::Extent QKScrubbableNumberFormatter::extentOfNumber(std::string_view text) const {
  Extent extent{};
  const std::string_view sign = minusSign().empty() ? "-" : std::string_view(minusSign());
  std::size_t place = text.find(sign);
  const bool isNegative = place != std::string_view::npos;
  extent.signLength = isNegative ? static_cast<std::int64_t>(characterCount(sign)) : 0;
  extent.firstDigit = std::min(text.find_first_of(kDigits, isNegative ? place + sign.size() : 0), text.size());
  extent.begin = isNegative ? place : extent.firstDigit;
  place = text.find_last_of(kDigits);
  extent.end = std::max(extent.firstDigit, place == std::string_view::npos ? 0 : place + 1);
  return extent;
}

bool QKScrubbableNumberFormatter::isZeroSymbolShown(Object* object) const {
  const auto* number = classCast<Number>(object);
  return number && number->doubleValue() == 0 && zeroSymbol() && *zeroSymbol() != privateDefaultStringForZero();
}

// The logarithm is taken from the digits where it counts them, so that 999999999999999.9 has 15.
std::int64_t QKScrubbableNumberFormatter::leadingTag(double value) const {
  const double magnitude = std::abs(value);
  std::int64_t tag = 0;
  if (magnitude >= 1) {
    tag = std::isfinite(value) ? shortestDigits(magnitude).exponent - 1 : 0;
  } else if (magnitude > 0) {
    tag = saturateToInt64(std::log10(magnitude));
  }
  const std::int64_t leftmostZero = minimumIntegerDigits() - 1;
  return std::max(leftmostZero, magnitude > 0 ? tag : std::int64_t{0});
}

std::int64_t QKScrubbableNumberFormatter::segmentCountInObjectValue(Object* object) const {
  if (isWholeNumber()) return 1;
  if (!object) return nilSymbol() ? 1 : 0;
  if (isZeroSymbolShown(object)) return 1;
  const std::string text = stringForObjectValue(object).value_or("");
  return digitCount(std::string_view(text).substr(extentOfNumber(text).firstDigit));
}

std::int64_t QKScrubbableNumberFormatter::segmentTagForIndex(std::int64_t index, Object* object) const {
  if (!object || isWholeNumber() || isZeroSymbolShown(object)) return 0;
  return wrappingSubtract(leadingTag(privateSanitizedValueForObject(object)), index);
}

// The same rule both ways.
std::int64_t QKScrubbableNumberFormatter::segmentIndexForTag(std::int64_t tag, Object* object) const {
  return segmentTagForIndex(tag, object);
}

std::int64_t QKScrubbableNumberFormatter::segmentFieldWidthForTag(std::int64_t tag, Object* object) const {
  if (!object) return nilSymbol() ? std::max<std::int64_t>(lengthOf(nilSymbol()), 1) : 0;
  if (isZeroSymbolShown(object)) return std::max<std::int64_t>(lengthOf(zeroSymbol()), 1);
  const std::int64_t index = segmentIndexForTag(tag, object);
  if (index < 0) return 0;
  const std::string text = stringForObjectValue(object).value_or("");
  const Extent extent = extentOfNumber(text);
  if (!isWholeNumber()) return index == 0 ? extent.signLength + 1 : 1;
  const std::string_view number = std::string_view(text).substr(extent.begin, extent.end - extent.begin);
  const auto length = static_cast<std::int64_t>(characterCount(number));
  return std::max<std::int64_t>(length - (showsFraction() ? 1 : 0), 0);
}

bool QKScrubbableNumberFormatter::segmentFieldContainsDecimalSeparatorForTag(std::int64_t, Object*) const {
  return isWholeNumber() && showsFraction();
}

void QKScrubbableNumberFormatter::segmentWithTagHasPadding(std::int64_t, bool* atLeft, bool* atRight, Object*) const {
  if (atLeft) *atLeft = false;
  if (atRight) *atRight = false;
}

Range QKScrubbableNumberFormatter::substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const {
  if (tag == kNoSegmentTag) return {};
  if (!object) return {0, characterCount(nilSymbol().value_or(""))};
  if (isZeroSymbolShown(object)) return {0, characterCount(*zeroSymbol())};
  const std::int64_t index = segmentIndexForTag(tag, object);
  if (index < 0) return {};
  const std::string text = stringForObjectValue(object).value_or("");
  const Extent extent = extentOfNumber(text);
  if (extent.firstDigit == text.size()) return {};
  const std::uint64_t begin = charactersBefore(text, extent.begin);
  if (isWholeNumber()) return {begin, charactersBefore(text, extent.end) - begin};
  if (index == 0) return {begin, static_cast<std::uint64_t>(extent.signLength) + 1};
  std::int64_t left = index;
  for (std::size_t place = extent.firstDigit; place < extent.end; ++place) {
    if (digitCount(std::string_view(text).substr(place, 1)) == 1 && left-- == 0) {
      return {charactersBefore(text, place), 1};
    }
  }
  return {begin, 1};
}

std::int64_t QKScrubbableNumberFormatter::defaultSelectedSegmentTagInObjectValue(Object*) const { return 0; }

Formatter* QKScrubbableNumberFormatter::formatterForSegmentTag(std::int64_t, Object*) {
  return isWholeNumber() ? this : nullptr;
}

bool QKScrubbableNumberFormatter::allowsSegmentEditing() const { return false; }

// ---- Stepping and typing ----

double QKScrubbableNumberFormatter::privateClampToMinMax(double value) const {
  if (Number(value) > deFactoMaximum()) return deFactoMaximum().doubleValue();
  if (Number(value) < deFactoMinimum()) return deFactoMinimum().doubleValue();
  return value;
}

double QKScrubbableNumberFormatter::privateIncrementValue(double value, std::int64_t steps,
                                                          std::int64_t powerOfTen) const {
  const auto count = static_cast<double>(steps);
  if (powerOfTen >= 0) {
    const auto unit = static_cast<double>(saturateToInt64(std::pow(10.0, static_cast<double>(powerOfTen))));
    const double stepped = count * unit + value;
    const bool crossesZero = (value > 0 && stepped < 0) || (value < 0 && stepped > 0);
    if (!crossesZero) return stepped;
    const double magnitude = std::trunc(std::abs(stepped) / unit) * unit + std::fmod(std::abs(value), unit);
    return stepped < 0 ? -magnitude : magnitude;
  }
  // In the smallest units shown, so that 0.00007 counts as 7 hundred-thousandths and not as 6.999999999999999. Digits
  // behind those shown, which only a bound can bring, stay hidden in steps below them.
  const double unitsInOne = roundHalfAway(std::pow(10.0, -static_cast<double>(powerOfTen)));
  const double units = std::abs(value) * unitsInOne;
  const auto places = static_cast<double>(maximumFractionDigits()) + static_cast<double>(powerOfTen);
  const double scale = std::pow(10.0, std::clamp(places, 0.0, 18.0));
  const double shown = places < 0 ? std::trunc(units * (1 + 1e-15)) : roundHalfAway(units * scale);
  const double whole = std::trunc(shown / scale);
  const double rest = (shown - whole * scale) / scale;  // [0, 1)
  const double stepped = count + (value < 0 ? -whole : whole);
  const double result = (stepped >= 0 ? stepped + rest : stepped - rest) / unitsInOne;
  return std::isfinite(result) ? result : value;  // a place that no double reaches
}

// Single steps toward a bound until the value is within it; the whole steps before the last two ahead of the bound or
// of zero, where digits are mirrored, are taken at once.
double QKScrubbableNumberFormatter::stepInside(double value, std::int64_t direction, double bound,
                                               std::int64_t powerOfTen) const {
  const double unit = std::pow(10.0, static_cast<double>(powerOfTen));
  const auto isOutside = [&](double v) { return direction < 0 ? v > bound : v < bound; };
  constexpr int kMostRounds = 64;  // each but the last few leaves two units of a distance
  for (int round = 0; isOutside(value); ++round) {
    if (privateIncrementValue(value, direction, powerOfTen) == value) return bound;
    const bool passesZero = (value > 0 && bound < 0) || (value < 0 && bound > 0);
    const double distance = passesZero ? std::abs(value) : std::abs(value - bound);
    const std::int64_t steps = std::max<std::int64_t>(saturateToInt64(distance / unit) - 2, 1);
    const double next = privateIncrementValue(value, direction * steps, powerOfTen);
    if (!std::isfinite(next) || round == kMostRounds) return bound;
    value = next;
  }
  return value;
}

void QKScrubbableNumberFormatter::getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag,
                                                                           std::int64_t increment,
                                                                           Object* object) const {
  if (!result) return;
  const Ref<Object> prototype = object ? nullptr : defaultObjectPrototype();
  if (!object) object = prototype.get();
  const double reached = doubleOf(object) + std::pow(10.0, static_cast<double>(tag)) * static_cast<double>(increment);
  if (!(std::abs(reached) <= kTwoTo63)) {
    *result = object->copy();
    return;
  }
  const double value = privateSanitizedValueForObject(object);
  if (isWholeNumber()) {
    *result = boxed(privateClampToMinMax(value + static_cast<double>(increment)));
    return;
  }
  const double stepped = privateIncrementValue(value, increment, tag);
  const double within = stepInside(stepped, -1, deFactoMaximum().doubleValue(), tag);
  *result = boxed(stepInside(within, 1, deFactoMinimum().doubleValue(), tag));
}

void QKScrubbableNumberFormatter::getObjectValueFloatIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t,
                                                                                double increment,
                                                                                Object* object) const {
  const bool isMeant = isWholeNumber() && showsFraction();
  if (!isMeant) {
    lightAssertionFailed("_scrubbingType == kWholeNumberScrubbing && [self minimumFractionDigits]", kFile, __LINE__);
  }
  if (!result) return;
  const Ref<Object> prototype = object ? nullptr : defaultObjectPrototype();
  if (!object) object = prototype.get();
  const double sum = privateSanitizedValueForObject(object) + increment;
  *result = isMeant && !std::isnan(sum) ? boxed(privateClampToMinMax(sum)) : object->copy();
}

bool QKScrubbableNumberFormatter::privateIsValidString(std::string_view string, std::int64_t tag, Object* object,
                                                       std::string* error) const {
  if (isWholeNumber()) return isPartialStringValid(string, nullptr, error);
  if (segmentIndexForTag(tag, object) == 0 && string.starts_with('-')) string.remove_prefix(1);
  const std::string_view digits = stringByTrimmingNondecimalsFromEnd(string);
  if (digits.size() > 1) return detail::fail(error, "Too many digits in string");
  return !digits.empty();
}

bool QKScrubbableNumberFormatter::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string,
                                                                  std::int64_t tag, Object* object,
                                                                  std::string* error) {
  const Ref<Object> prototype = object ? nullptr : defaultObjectPrototype();
  if (!object) object = prototype.get();
  if (segmentIndexForTag(tag, object) < 0) {
    if (!error) return false;
    *error = "segment with tag ";
    appendInteger(*error, tag);
    *error += " doesn't exist";
    return false;
  }
  Ref<Object> typed;
  if (isWholeNumber()) {
    if (!getObjectValue(&typed, string, error)) return false;
  } else {
    if (!privateIsValidString(string, tag, object, error)) return false;
    const double value = privateSanitizedValueForObject(object);
    const double magnitude = std::abs(value);
    const double unit = std::pow(10.0, static_cast<double>(tag));
    const double digit = std::fmod(std::trunc(magnitude / unit), 10);
    const bool isNegated = value < 0 && segmentIndexForTag(tag, object) != 0;
    const double number = string.front() == '-' ? '0' - string[1] : string.front() - '0';
    typed = boxed((isNegated ? -number : number) + (magnitude - (value < 0 ? -digit : digit) * unit));
  }
  if (typed && doubleOf(typed.get()) != privateClampToMinMax(doubleOf(typed.get()))) return false;
  if (result) *result = std::move(typed);
  return true;
}

// ---- Coding ----

QKScrubbableNumberFormatter::QKScrubbableNumberFormatter(KeyedCoder& coder) : NumberFormatter(coder) {
  const DecodingRegistration registration(coder, descriptor);
  Number fields[5];
  if (coder.allowsKeyedCoding()) {
    coder.decodeInteger(kVersionKey);  // every version reads alike
    for (std::size_t i = 0; i < std::size(fields); ++i) fields[i] = coder.decodeInteger(kFieldKeys[i]);
  } else {
    coder.versionForClassName("OrbisScrubbableNumberFormatter");
    coder.decodeValues("iiiii", fields);
  }
  scrubbingType_ = static_cast<QKScrubbingType>(fields[0].int64Value());
  fractionDigitsForSingleDigitScrubbingType_ = fields[1].int64Value();
  fractionDigitsForWholeNumberScrubbingType_ = fields[2].int64Value();
  integerDigitsForSingleDigitScrubbingType_ = fields[3].int64Value();
  integerDigitsForWholeNumberScrubbingType_ = fields[4].int64Value();
  privatePrepareAttributedStringForZero();
}

void QKScrubbableNumberFormatter::encodeWithCoder(KeyedCoder& coder) const {
  NumberFormatter::encodeWithCoder(coder);
  const std::int64_t fields[] = {scrubbingType_, fractionDigitsForSingleDigitScrubbingType_,
                                 fractionDigitsForWholeNumberScrubbingType_, integerDigitsForSingleDigitScrubbingType_,
                                 integerDigitsForWholeNumberScrubbingType_};
  if (coder.allowsKeyedCoding()) {
    coder.encodeInteger(version(), kVersionKey);
    for (std::size_t i = 0; i < std::size(fields); ++i) coder.encodeInteger(fields[i], kFieldKeys[i]);
  } else {
    coder.encodeValues("iiiii", {fields[0], fields[1], fields[2], fields[3], fields[4]});
  }
}

}  // namespace quill::inline v0
