#include "QKOneDTimeTimecodeFormatDeputy.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "QKTimecodeFormatter.h"
#include "QKTimecodeProtocols.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

namespace quill::inline v0 {

namespace {

constexpr std::string_view kVersionKey = "OrbisOneDTimeTimecodeFormatDeputyVersion";
constexpr std::string_view kPlacesKey = "OTTFSecondsDecimalPlaces";
constexpr std::int64_t kHighestTag = 6;  // 20 digits are 7 groups

// Digits of the whole seconds, [1, 20].
std::int64_t wholeDigits(Object* object) {
  const auto* value = protocolCast<QKOneDimensionalTimeTimecode>(object);
  return detail::decimalDigitCount(value ? saturateToUInt64(std::abs(value->seconds())) : 0);
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  if (from.empty()) return;
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
}

}  // namespace

const ClassDescriptor QKOneDTimeTimecodeFormatDeputy::descriptor{
    "QKOneDTimeTimecodeFormatDeputy",
    "OrbisOneDTimeTimecodeFormatDeputy",
    0,
    &QKFormatDeputy::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKOneDTimeTimecodeFormatDeputy>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKOneDTimeTimecodeFormatDeputy>(coder); }};

QKOneDTimeTimecodeFormatDeputy::QKOneDTimeTimecodeFormatDeputy() = default;
QKOneDTimeTimecodeFormatDeputy::~QKOneDTimeTimecodeFormatDeputy() = default;

void* QKOneDTimeTimecodeFormatDeputy::asProtocol(const Protocol& protocol) {
  return &protocol == &Coding::protocol ? this : QKFormatDeputy::asProtocol(protocol);
}

Ref<Object> QKOneDTimeTimecodeFormatDeputy::copy() const {
  return std::make_shared<QKOneDTimeTimecodeFormatDeputy>(*this);
}

// ---- Options ----

int QKOneDTimeTimecodeFormatDeputy::usedPlaces() const {
  return detail::placesInRange(saturatingFromUInt64(secondsDecimalPlaces_));
}

std::int64_t QKOneDTimeTimecodeFormatDeputy::lowestTag() const { return -detail::groupCount(usedPlaces()); }

double QKOneDTimeTimecodeFormatDeputy::scaleOfTag(std::int64_t tag) const {
  return detail::powerOfTen(tag == lowestTag() ? -usedPlaces() : 3 * tag);
}

// ---- Whole strings ----

std::string QKOneDTimeTimecodeFormatDeputy::stringForObjectValue(Object* object,
                                                                 const QKTimecodeFormatter& formatter) const {
  std::string text;
  const auto* value = protocolCast<QKOneDimensionalTimeTimecode>(object);
  if (!value) return text;
  if (formatter.allowsNegative() && value->isNegative()) text += '-';
  const double seconds = std::abs(value->seconds());
  if (usedPlaces() > 0) {
    appendFixed(text, seconds, usedPlaces());
    detail::localizePoint(text);
  } else {
    appendInteger(text, saturateToUInt64(seconds + 0.5));
  }
  return text;
}

bool QKOneDTimeTimecodeFormatDeputy::getObjectValue(Ref<Object>* object, std::string_view string,
                                                    const QKTimecodeFormatter& formatter, std::string* error) const {
  Ref<Object> current = formatter.currentTimecode();
  auto* value = protocolCast<QKOneDimensionalTimeTimecode>(current.get());
  if (!value) return detail::fail(error, detail::kObjectDoesNotConform);
  std::string_view rest;
  std::int64_t sign = 0;
  if (!trimSignFromString(string, &rest, &sign, error)) return false;
  detail::takeWhitespace(rest);
  if (rest.starts_with('+') || rest.starts_with('-')) return detail::fail(error, detail::kIllegalCharacters);

  std::string number(rest);
  if (formatDeputyDecimalSeparator() != ".") {
    replaceAll(number, ".", "~");  // ends the number
    replaceAll(number, formatDeputyDecimalSeparator(), ".");
  }
  Scanner scanner(number);
  scanner.setDecimalSeparator(".");
  double seconds = 0;
  if (scanner.scanDouble(&seconds)) {
    if (sign == 0) {
      value->setIsNegative(false);
      value->setSeconds(seconds);
    } else if (sign > 0) {
      value->addSeconds(seconds);
    } else {
      value->subtractSeconds(seconds);
    }
  } else if (!scanner.isAtEnd()) {
    return detail::fail(error, detail::kIllegalCharacters);
  }
  if (object) *object = std::move(current);
  return true;
}

CharacterSet QKOneDTimeTimecodeFormatDeputy::legalCharacterSet() const {
  static const CharacterSet& characters = *new CharacterSet(formatDeputyDecimalSeparator() + "0123456789");
  return characters;
}

std::string QKOneDTimeTimecodeFormatDeputy::defaultNilSymbol() const {
  return usedPlaces() > 0 ? "\u2014.\u2014" : "\u2014";
}

const Protocol& QKOneDTimeTimecodeFormatDeputy::requiredProtocol() const {
  return QKOneDimensionalTimeTimecode::protocol;
}

// ---- Segments ----

std::int64_t QKOneDTimeTimecodeFormatDeputy::segmentCountInObjectValue(Object* object) const {
  return detail::groupCount(wholeDigits(object)) - lowestTag();
}

std::int64_t QKOneDTimeTimecodeFormatDeputy::segmentTagForIndex(std::int64_t index, Object* object) const {
  return wrappingSubtract(detail::groupCount(wholeDigits(object)) - 1, index);
}

std::int64_t QKOneDTimeTimecodeFormatDeputy::segmentIndexForTag(std::int64_t tag, Object* object) const {
  return segmentTagForIndex(tag, object);  // its own mirror image
}

std::int64_t QKOneDTimeTimecodeFormatDeputy::segmentFieldWidthForTag(std::int64_t tag, Object* object) const {
  return static_cast<std::int64_t>(substringRangeForSegmentWithTag(tag, object).length);
}

std::int64_t QKOneDTimeTimecodeFormatDeputy::defaultSelectedSegmentTagInObjectValue(Object*) const { return 0; }

void QKOneDTimeTimecodeFormatDeputy::segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight,
                                                              Object*) const {
  if (atLeft) *atLeft = false;
  if (atRight) *atRight = tag > 0;
}

Range QKOneDTimeTimecodeFormatDeputy::substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const {
  const std::int64_t digits = wholeDigits(object);
  const std::int64_t highestTag = detail::groupCount(digits) - 1;
  if (tag > highestTag || tag < lowestTag()) return {};
  const std::int64_t sign = detail::isNegative<QKOneDimensionalTimeTimecode>(object) ? 1 : 0;
  const std::int64_t leading = detail::outerGroupWidth(digits) + sign;
  if (tag == highestTag) return {0, static_cast<std::uint64_t>(leading)};
  const std::int64_t separator = tag < 0 ? 1 : 0;
  const std::int64_t location = leading + 3 * (highestTag - tag - 1) + separator;
  const std::int64_t length = tag == lowestTag() ? detail::outerGroupWidth(usedPlaces()) : 3;
  return {static_cast<std::uint64_t>(location), static_cast<std::uint64_t>(length)};
}

NumberFormatter* QKOneDTimeTimecodeFormatDeputy::formatterForSegmentTag(std::int64_t tag, Object* object) const {
  const std::int64_t index = segmentIndexForTag(tag, object);
  if (index < 0 || tag < lowestTag()) return nullptr;
  if (index == 0) return &sharedDeputyLeadingIntegerNumberFormatter();
  const std::int64_t width = tag == lowestTag() ? detail::outerGroupWidth(usedPlaces()) : 3;
  return width == 1   ? &sharedDeputyOneDigitNumberFormatter()
         : width == 2 ? &sharedDeputyFollowingTwoDigitNumberFormatter()
                      : &sharedDeputyFollowingThreeDigitNumberFormatter();
}

// ---- Stepping and typing ----

void QKOneDTimeTimecodeFormatDeputy::getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag,
                                                                              std::int64_t increment,
                                                                              Object* object) const {
  const auto* old = protocolCast<QKOneDimensionalTimeTimecode>(object);
  if (!result || !old) return;
  *result = object->copy();
  auto* value = protocolCast<QKOneDimensionalTimeTimecode>(result->get());
  if (!value || tag < lowestTag() || tag > kHighestTag) return;
  const double scale = scaleOfTag(tag);
  const double seconds = static_cast<double>(detail::stepCount(increment)) * scale;
  if (increment < 0) {
    value->subtractSeconds(seconds);
  } else {
    value->addSeconds(seconds);
  }
  const bool isNegative = value->isNegative();
  if (tag == lowestTag() || isNegative == old->isNegative()) return;
  value->setSeconds(scale * detail::unitsAcrossZero(std::abs(old->seconds()), scale, isNegative));
  value->setIsNegative(isNegative);
}

bool QKOneDTimeTimecodeFormatDeputy::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string,
                                                                     std::int64_t tag, Object* object,
                                                                     std::string* error) const {
  auto* value = protocolCast<QKOneDimensionalTimeTimecode>(object);
  if (!value) return detail::fail(error, detail::kValueDoesNotConform);
  std::int64_t field = 0;
  if (!detail::readSegment(*this, &field, string, tag, object, error)) return false;
  field = massagedFieldValue(field, tag, object);
  const bool isNegative = value->isNegative();
  const double scale = scaleOfTag(tag);
  const double modulus = tag == lowestTag() ? detail::powerOfTen(detail::outerGroupWidth(usedPlaces())) : 1000;
  const double units = value->seconds() / scale;
  value->setSeconds(scale * (units - std::trunc(units)) + scale * static_cast<double>(field) +
                    scale * modulus * std::trunc(units / modulus));
  value->setIsNegative(isNegative);
  if (result) *result = object->copy();
  return true;
}

// ---- Coding ----

QKOneDTimeTimecodeFormatDeputy::QKOneDTimeTimecodeFormatDeputy(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  if (coder.allowsKeyedCoding()) {
    coder.decodeInteger(kVersionKey);  // every version reads alike
    secondsDecimalPlaces_ = static_cast<std::uint64_t>(coder.decodeInteger(kPlacesKey));
  } else {
    coder.versionForClassName(descriptor.archiveName);
    Number places;
    coder.decodeValues("i", {&places, 1});
    secondsDecimalPlaces_ = places.uint64Value();
  }
}

void QKOneDTimeTimecodeFormatDeputy::encodeWithCoder(KeyedCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeInteger(descriptor.version, kVersionKey);
    coder.encodeInteger(static_cast<std::int64_t>(secondsDecimalPlaces_), kPlacesKey);
  } else {
    coder.encodeValues("i", {static_cast<std::int32_t>(secondsDecimalPlaces_)});
  }
}

}  // namespace quill::inline v0
