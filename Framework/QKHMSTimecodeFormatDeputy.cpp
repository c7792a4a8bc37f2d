#include "QKHMSTimecodeFormatDeputy.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "QKTimecodeFormatter.h"
#include "QKTimecodeProtocols.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

namespace quill::inline v0 {

namespace {

constexpr std::string_view kVersionKey = "OrbisHMSTimecodeFormatDeputyVersion";
constexpr std::string_view kPlacesKey = "OHTFSecondsDecimalPlaces";
constexpr std::string_view kRolloverKey = "OHTFHas24HourRollover";
constexpr std::string_view kSeparators = ",.;:";

enum Tag : std::int64_t { kHours, kMinutes, kSeconds, kFraction, kTagCount };

double fractionOf(double seconds) { return seconds - std::trunc(seconds); }

// 5 behind "1." is 500 of three places.
std::int64_t fractionOfEntry(std::int64_t field, std::string_view string, int places) {
  const std::size_t separator = string.find_last_of(kSeparators);
  if (separator == std::string_view::npos) return field;
  return detail::fractionOfEntry(field, string.substr(separator + 1), places);
}

}  // namespace

const ClassDescriptor QKHMSTimecodeFormatDeputy::descriptor{
    "QKHMSTimecodeFormatDeputy",
    "OrbisHMSTimecodeFormatDeputy",
    0,
    &QKFormatDeputy::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKHMSTimecodeFormatDeputy>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKHMSTimecodeFormatDeputy>(coder); }};

QKHMSTimecodeFormatDeputy::QKHMSTimecodeFormatDeputy() = default;

QKHMSTimecodeFormatDeputy::QKHMSTimecodeFormatDeputy(const QKHMSTimecodeFormatDeputy& other)
    : QKFormatDeputy(other),
      secondsDecimalPlaces_(other.secondsDecimalPlaces_),
      has24HourRollover_(other.has24HourRollover_) {}

QKHMSTimecodeFormatDeputy& QKHMSTimecodeFormatDeputy::operator=(const QKHMSTimecodeFormatDeputy& other) {
  secondsDecimalPlaces_ = other.secondsDecimalPlaces_;
  has24HourRollover_ = other.has24HourRollover_;
  privateConfigureSecondsDecimalPlacesFormatter();
  return *this;
}

QKHMSTimecodeFormatDeputy::~QKHMSTimecodeFormatDeputy() = default;

void* QKHMSTimecodeFormatDeputy::asProtocol(const Protocol& protocol) {
  return &protocol == &Coding::protocol ? this : QKFormatDeputy::asProtocol(protocol);
}

Ref<Object> QKHMSTimecodeFormatDeputy::copy() const { return std::make_shared<QKHMSTimecodeFormatDeputy>(*this); }

// ---- Options ----

void QKHMSTimecodeFormatDeputy::setSecondsDecimalPlaces(std::int64_t places) {
  secondsDecimalPlaces_ = std::max<std::int64_t>(places, 0);
  privateConfigureSecondsDecimalPlacesFormatter();
}

int QKHMSTimecodeFormatDeputy::usedPlaces() const { return detail::placesInRange(secondsDecimalPlaces_); }

NumberFormatter* QKHMSTimecodeFormatDeputy::secondsDecimalPlacesFormatter() const {
  if (usedPlaces() == 0) return nullptr;
  if (!fractionFormatter_) {
    fractionFormatter_.emplace();
    fractionFormatter_->setMinimumFractionDigits(0);
    fractionFormatter_->setMaximumFractionDigits(0);
    fractionFormatter_->setMinimum(0);
    privateConfigureSecondsDecimalPlacesFormatter();
  }
  return &*fractionFormatter_;
}

// ---- Whole strings ----

std::string QKHMSTimecodeFormatDeputy::stringForObjectValue(Object* object,
                                                            const QKTimecodeFormatter& formatter) const {
  std::string text;
  const auto* value = protocolCast<QKHMSTimecode>(object);
  if (!value) return text;
  std::int64_t hours = 0, minutes = 0;
  double seconds = 0;
  value->getHMSHours(&hours, &minutes, &seconds);
  if (has24HourRollover_) hours %= 24;

  const int places = usedPlaces();
  std::int64_t wholeSeconds = 0;
  if (places > 0) {
    const double scale = detail::powerOfTen(places);
    if (std::trunc(std::trunc(scale * seconds + 0.5) / scale) == 60) {
      seconds = 0;
      minutes = saturatingAdd(minutes, 1);
    }
    if (minutes == 60) {
      minutes = 0;
      hours = saturatingAdd(hours, 1);
    }
  } else {
    wholeSeconds = saturateToInt64(seconds + 0.5);
    if (wholeSeconds >= 60) {
      minutes = saturatingAdd(minutes, wholeSeconds / 60);
      wholeSeconds %= 60;
    }
    if (minutes >= 60) {
      hours = saturatingAdd(hours, minutes / 60);
      minutes %= 60;
    }
  }

  if (formatter.allowsNegative() && value->isNegative()) text += '-';
  detail::appendField(text, hours, 2);
  text += ':';
  detail::appendField(text, minutes, 2);
  text += ':';
  if (places > 0) {
    std::string digits;
    appendFixed(digits, seconds, places);
    const std::size_t width = static_cast<std::size_t>(places) + 3;
    const std::size_t padding = width - std::min(digits.size(), width);
    text.append(padding, std::isfinite(seconds) ? '0' : ' ');
    text += digits;
    detail::localizePoint(text);
  } else {
    detail::appendField(text, wholeSeconds, 2);
  }
  return text;
}

bool QKHMSTimecodeFormatDeputy::getObjectValue(Ref<Object>* object, std::string_view string,
                                               const QKTimecodeFormatter& formatter, std::string* error) const {
  static const CharacterSet& separators = *new CharacterSet(kSeparators);
  Ref<Object> current = formatter.currentTimecode();
  auto* value = protocolCast<QKHMSTimecode>(current.get());
  if (!value) return detail::fail(error, detail::kObjectDoesNotConform);
  if (string.empty()) {
    value->setIsNegative(false);
    if (object) *object = std::move(current);
    return true;
  }
  std::string_view rest;
  std::int64_t sign = 0;
  detail::ScannedFields entry;
  if (!trimSignFromString(string, &rest, &sign, nullptr) ||
      !privateScanStringIntoFieldArray(rest, entry.fields, 4, &entry.count, separators) ||
      (entry.count == 1 && !privateScanHMSNumberString(rest, entry.fields, 4, &entry.count))) {
    return detail::fail(error, detail::kIllegalCharacters);
  }
  entry.count = std::min(entry.count, privateMaximumCurrentFields());

  const int places = usedPlaces();
  const std::int64_t none = sign == 0 ? detail::kNotTyped : 0;  // an amount that is not typed is 0
  const std::int64_t fraction = places > 0 ? fractionOfEntry(entry.takeOr(0), rest, places) : detail::kNotTyped;
  const std::int64_t wholeSeconds = entry.takeOr(none);
  const double seconds = privateDoubleFromIntegerPartAndFractionalPart(wholeSeconds, fraction, places);
  const std::int64_t minutes = entry.takeOr(none);
  std::int64_t hours = entry.takeOr(none);

  if (sign == 0) {
    value->setIsNegative(false);
    if (detail::isTyped(hours)) {
      std::int64_t hoursNow = 0;
      if (has24HourRollover_) value->getHMSHours(&hoursNow, nullptr, nullptr);
      hours = saturatingAdd(hours, hoursNow / 24 * 24);
      value->setHMSHours(hours);
    }
    if (detail::isTyped(minutes)) value->setHMSMinutes(minutes);
    if (detail::isTyped(wholeSeconds)) value->setHMSSeconds(seconds);
  } else {
    const auto change = sign > 0 ? &QKHMSTimecode::addHMSHours : &QKHMSTimecode::subtractHMSHours;
    (value->*change)(hours, minutes, seconds);
  }
  if (object) *object = std::move(current);
  return true;
}

std::string QKHMSTimecodeFormatDeputy::defaultNilSymbol() const {
  return usedPlaces() > 0 ? "\u2014:\u2014:\u2014.\u2014" : "\u2014:\u2014:\u2014";
}

const Protocol& QKHMSTimecodeFormatDeputy::requiredProtocol() const { return QKHMSTimecode::protocol; }

// ---- Segments ----

std::int64_t QKHMSTimecodeFormatDeputy::segmentCountInObjectValue(Object*) const {
  return privateMaximumCurrentFields();
}

std::int64_t QKHMSTimecodeFormatDeputy::segmentTagForIndex(std::int64_t index, Object*) const { return index; }

std::int64_t QKHMSTimecodeFormatDeputy::segmentIndexForTag(std::int64_t tag, Object*) const { return tag; }

std::int64_t QKHMSTimecodeFormatDeputy::segmentFieldWidthForTag(std::int64_t tag, Object* object) const {
  switch (tag) {
    case kHours:
      return privateDigitsInHoursForObjectValue(object) + (detail::isNegative<QKHMSTimecode>(object) ? 1 : 0);
    case kMinutes:
    case kSeconds: return 2;
    case kFraction: return usedPlaces();
    default: return 0;
  }
}

std::int64_t QKHMSTimecodeFormatDeputy::defaultSelectedSegmentTagInObjectValue(Object*) const { return kSeconds; }

void QKHMSTimecodeFormatDeputy::segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object*) const {
  if (atLeft) *atLeft = tag == kMinutes || tag == kSeconds;
  if (atRight) *atRight = tag == kHours || tag == kMinutes;
}

Range QKHMSTimecodeFormatDeputy::substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const {
  if (tag < kHours || tag >= kTagCount) return {};
  const auto length = static_cast<std::uint64_t>(segmentFieldWidthForTag(tag, object));
  if (tag == kHours) return {0, length};
  const auto hours = static_cast<std::uint64_t>(segmentFieldWidthForTag(kHours, object));
  return {hours + 3 * static_cast<std::uint64_t>(tag) - 2, length};
}

NumberFormatter* QKHMSTimecodeFormatDeputy::formatterForSegmentTag(std::int64_t tag, Object*) const {
  switch (tag) {
    case kHours: return &sharedDeputyLeadingIntegerNumberFormatter();
    case kMinutes:
    case kSeconds: return &sharedDeputyFollowingTwoDigitNumberFormatter();
    case kFraction: return secondsDecimalPlacesFormatter();
    default: return nullptr;
  }
}

// ---- Stepping and typing ----

void QKHMSTimecodeFormatDeputy::getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag,
                                                                         std::int64_t increment, Object* object) const {
  const auto* old = protocolCast<QKHMSTimecode>(object);
  if (!result || !old) return;
  *result = object->copy();
  auto* value = protocolCast<QKHMSTimecode>(result->get());
  if (!value || tag < kHours || tag >= kTagCount) return;

  const std::int64_t steps = detail::stepCount(increment);
  const double scale = detail::powerOfTen(usedPlaces());
  const double seconds = static_cast<double>(steps) / (tag == kFraction ? scale : 1);
  const auto change = increment > 0 ? &QKHMSTimecode::addHMSHours : &QKHMSTimecode::subtractHMSHours;
  (value->*change)(tag == kHours ? steps : 0, tag == kMinutes ? steps : 0, tag >= kSeconds ? seconds : 0);

  const bool isNegative = value->isNegative();
  if (tag == kFraction || isNegative == old->isNegative()) return;
  std::int64_t oldMinutes = 0;
  double oldSeconds = 0;
  old->getHMSHours(nullptr, &oldMinutes, &oldSeconds);
  const bool hasSeconds = std::trunc(oldSeconds * scale + 0.5) != 0;
  if (tag == kHours) {
    value->setHMSHours(oldMinutes != 0 || hasSeconds || isNegative ? 1 : 0);
    value->setHMSMinutes(oldMinutes);
    value->setHMSSeconds(oldSeconds);
  } else if (tag == kMinutes) {
    value->setHMSMinutes(hasSeconds || isNegative ? 1 : 0);
    value->setHMSSeconds(oldSeconds);
  } else {
    const double fraction = fractionOf(oldSeconds);
    value->setHMSSeconds(fraction + (fraction != 0 || isNegative ? 1 : 0));
  }
  value->setIsNegative(isNegative);
}

bool QKHMSTimecodeFormatDeputy::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string,
                                                                std::int64_t tag, Object* object,
                                                                std::string* error) const {
  auto* value = protocolCast<QKHMSTimecode>(object);
  if (!value) return detail::fail(error, detail::kValueDoesNotConform);
  std::int64_t field = 0;
  if (!detail::readSegment(*this, &field, string, tag, object, error)) return false;
  field = massagedFieldValue(field, tag, object);
  const bool isNegative = value->isNegative();
  double seconds = 0;
  if (tag >= kSeconds) value->getHMSHours(nullptr, nullptr, &seconds);
  switch (tag) {
    case kHours: value->setHMSHours(field); break;
    case kMinutes: value->setHMSMinutes(field); break;
    case kSeconds: value->setHMSSeconds(fractionOf(seconds) + static_cast<double>(field)); break;
    default: value->setHMSSeconds(std::trunc(seconds) + static_cast<double>(field) / detail::powerOfTen(usedPlaces()));
  }
  value->setIsNegative(isNegative);
  if (result) *result = object->copy();
  return true;
}

// ---- Coding ----

QKHMSTimecodeFormatDeputy::QKHMSTimecodeFormatDeputy(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  if (coder.allowsKeyedCoding()) {
    coder.decodeInteger(kVersionKey);  // every version reads alike
    secondsDecimalPlaces_ = coder.decodeInteger(kPlacesKey);
    has24HourRollover_ = coder.decodeInteger(kRolloverKey) != 0;
  } else {
    coder.versionForClassName(descriptor.archiveName);
    Number values[2];
    coder.decodeValues("ii", values);
    secondsDecimalPlaces_ = values[0].int64Value();
    has24HourRollover_ = values[1].boolValue();
  }
}

void QKHMSTimecodeFormatDeputy::encodeWithCoder(KeyedCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeInteger(descriptor.version, kVersionKey);
    coder.encodeInteger(secondsDecimalPlaces_, kPlacesKey);
    coder.encodeInteger(has24HourRollover_ ? 1 : 0, kRolloverKey);
  } else {
    coder.encodeValues("ii", {static_cast<std::int32_t>(secondsDecimalPlaces_), has24HourRollover_ ? 1 : 0});
  }
}

// ---- For subclasses ----

std::int64_t QKHMSTimecodeFormatDeputy::privateMaximumCurrentFields() const { return usedPlaces() > 0 ? 4 : 3; }

std::int64_t QKHMSTimecodeFormatDeputy::privateDigitsInHoursForObjectValue(Object* object) const {
  const auto* value = protocolCast<QKHMSTimecode>(object);
  if (!value || has24HourRollover_) return 2;
  std::int64_t hours = 0;
  value->getHMSHours(&hours, nullptr, nullptr);
  return hours < 100 ? 2 : detail::decimalDigitCount(static_cast<std::uint64_t>(hours));
}

bool QKHMSTimecodeFormatDeputy::privateScanHMSNumberString(std::string_view string, std::int64_t* fields,
                                                           std::int64_t length, std::int64_t* indexAtEnd) const {
  const auto places = static_cast<std::size_t>(usedPlaces());
  std::string digits(stringByTrimmingNondecimalsFromEnd(string));
  const std::size_t typed = digits.size();
  if (typed == 0) return false;
  digits.append(typed < 3 ? places : std::max(places + 2, typed) - typed, '0');
  if ((digits.size() - places) % 2 != 0) digits.insert(0, 1, '0');

  const std::size_t pairs = (digits.size() - places) / 2;
  const auto count = std::min(static_cast<std::int64_t>(pairs) + (places > 0 ? 1 : 0), length);
  if (count <= 0) return false;
  const std::string_view all = digits;
  for (std::int64_t field = 0; field < count; ++field) {
    const std::size_t width = places > 0 && field == count - 1 ? places : 2;
    fields[field] = saturatingInt64(all.substr(2 * static_cast<std::size_t>(field), width));
  }
  if (indexAtEnd) *indexAtEnd = count;
  return true;
}

void QKHMSTimecodeFormatDeputy::privateConfigureSecondsDecimalPlacesFormatter() const {
  if (fractionFormatter_) detail::setFractionWidth(*fractionFormatter_, usedPlaces());
}

}  // namespace quill::inline v0
