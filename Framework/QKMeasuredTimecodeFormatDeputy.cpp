// Of a negative value held as seconds the protocol may give negative fields: a field's width counts its minus sign too.

#include "QKMeasuredTimecodeFormatDeputy.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "../Platform/Reports.h"
#include "QKTimecodeFormatter.h"
#include "QKTimecodeProtocols.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKMeasuredTimecodeFormatDeputy";
constexpr std::string_view kVersionKey = "OrbisMeasuredTimecodeFormatDeputyVersion";
constexpr std::string_view kSeparatorKey = "OMTFSeparator";
constexpr std::string_view kDisplaysKey = "OMTFDisplaysDivisionsAndTicks";
constexpr std::string_view kDroppedKey = "OMTFIsDivisionsFieldDropped";
constexpr std::string_view kPlacesKey = "OMTFBeatsDecimalPlaces";
constexpr std::string_view kSeparators = ",.;";
constexpr std::int64_t kMostTicksInThreeDigits = 1000;  // a beat, or a division

enum Tag : std::int64_t { kBars, kBeats, kDivisions, kTicks, kFraction };

struct Position {
  std::int64_t bars = 0, beats = 0, divisions = 0, ticks = 0;
};

Position positionOf(QKMeasuredTimecode& value) {
  Position at;
  value.getBars(&at.bars, &at.beats, &at.divisions, &at.ticks);
  return at;
}

struct BarsAndBeats {
  std::int64_t bars = 0;
  double beats = 0;
};

BarsAndBeats barsAndBeatsOf(QKMeasuredTimecode& value) {
  BarsAndBeats at;
  value.getBars(&at.bars, &at.beats);
  return at;
}

// Ticks counted from the beat.
std::int64_t combinedTicks(const QKMeasuredTimecode& value, const Position& at) {
  return saturatingAdd(at.ticks, saturatingMultiply(saturatingAdd(at.divisions, -1), value.ticksPerDivision()));
}

struct SplitTicks {
  std::int64_t divisions, ticks;  // of ticks counted from the beat; both from 0
};

SplitTicks splitTicks(const QKMeasuredTimecode& value, std::int64_t combined) {
  const std::int64_t ticksPerDivision = value.ticksPerDivision();
  if (ticksPerDivision < 1) return {0, combined};
  return {combined / ticksPerDivision, combined % ticksPerDivision};
}

// A field with spaces in front.
void appendSpaced(std::string& text, std::int64_t value, int width) {
  std::string field;
  appendPadded(field, value, width);
  text += stringWithDigitSpacesForLeadingZeroes(field);
}

std::int64_t widthOf(std::int64_t field, std::int64_t least) {
  const int characters = detail::decimalDigitCount(magnitudeOf(field)) + (field < 0 ? 1 : 0);
  return std::max<std::int64_t>(characters, least);
}

std::int64_t widthOfWhole(double field) {
  return detail::decimalDigitCount(saturateToUInt64(std::abs(field))) + (std::signbit(field) ? 1 : 0);
}

bool showsSign(const QKMeasuredTimecode& value, std::int64_t bars) { return bars >= 1 && value.isNegative(); }

// Whether the integer that a text begins with is 0, as it is without one.
bool beginsWithZero(std::string_view string) {
  std::string_view digits = string;
  QKFormatDeputy::trimSignFromString(string, &digits, nullptr, nullptr);
  return unsignedLongLongValue(digits) == 0;
}

}  // namespace

const ClassDescriptor QKMeasuredTimecodeFormatDeputy::descriptor{
    "QKMeasuredTimecodeFormatDeputy",
    "OrbisMeasuredTimecodeFormatDeputy",
    0,
    &QKFormatDeputy::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKMeasuredTimecodeFormatDeputy>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKMeasuredTimecodeFormatDeputy>(coder); }};

QKMeasuredTimecodeFormatDeputy::QKMeasuredTimecodeFormatDeputy() = default;

QKMeasuredTimecodeFormatDeputy::QKMeasuredTimecodeFormatDeputy(const QKMeasuredTimecodeFormatDeputy& other)
    : QKFormatDeputy(other) {
  *this = other;
}

// The formatter handed out stays where it is.
QKMeasuredTimecodeFormatDeputy& QKMeasuredTimecodeFormatDeputy::operator=(const QKMeasuredTimecodeFormatDeputy& other) {
  separator_ = other.separator_;
  displaysDivisionsAndTicks_ = other.displaysDivisionsAndTicks_;
  isDivisionsFieldDropped_ = other.isDivisionsFieldDropped_;
  beatsDecimalPlaces_ = other.beatsDecimalPlaces_;
  if (fractionFormatter_) detail::setFractionWidth(*fractionFormatter_, usedPlaces());
  return *this;
}

QKMeasuredTimecodeFormatDeputy::~QKMeasuredTimecodeFormatDeputy() = default;

Ref<Object> QKMeasuredTimecodeFormatDeputy::copy() const {
  return std::make_shared<QKMeasuredTimecodeFormatDeputy>(*this);
}

// ---- Options ----

void QKMeasuredTimecodeFormatDeputy::setBeatsDecimalPlaces(std::int64_t places) {
  beatsDecimalPlaces_ = std::max<std::int64_t>(places, 0);
  if (fractionFormatter_) detail::setFractionWidth(*fractionFormatter_, usedPlaces());
}

int QKMeasuredTimecodeFormatDeputy::usedPlaces() const { return detail::placesInRange(beatsDecimalPlaces_); }

NumberFormatter* QKMeasuredTimecodeFormatDeputy::beatsDecimalPlacesFormatter() const {
  if (usedPlaces() == 0) return nullptr;
  if (!fractionFormatter_) {
    fractionFormatter_.emplace();
    fractionFormatter_->setFormatterBehavior(NumberFormatter::Behavior10_4);
    fractionFormatter_->setMinimum(0);
    fractionFormatter_->setMinimumFractionDigits(0);
    fractionFormatter_->setMaximumFractionDigits(0);
    detail::setFractionWidth(*fractionFormatter_, usedPlaces());
  }
  return &*fractionFormatter_;
}

// ---- Whole strings ----

std::string QKMeasuredTimecodeFormatDeputy::stringForObjectValue(Object* object,
                                                                 const QKTimecodeFormatter& formatter) const {
  std::string text;
  auto* value = protocolCast<QKMeasuredTimecode>(object);
  if (!value) return text;
  const std::string_view separator = privateSeparatorString();
  if (!displaysDivisionsAndTicks_) {
    const BarsAndBeats at = barsAndBeatsOf(*value);
    if (formatter.allowsNegative() && showsSign(*value, at.bars)) text += '-';
    appendSpaced(text, at.bars, 1);
    text += separator;
    std::string beats;
    if (usedPlaces() > 0) {
      appendFixed(beats, at.beats, usedPlaces());
    } else {
      appendInteger(beats, saturateToInt64(at.beats + 0.5));
    }
    text += stringWithLocalizedDecimalSeparatorForDot(beats);
    return text;
  }

  const Position at = positionOf(*value);
  if (formatter.allowsNegative() && showsSign(*value, at.bars)) text += '-';
  appendSpaced(text, at.bars, 4);
  text += separator;
  appendSpaced(text, at.beats, 2);
  text += separator;
  if (isDivisionsFieldDropped_) {
    text += MDivisionsPlaceHolder();
    appendSpaced(text, combinedTicks(*value, at), value->ticksPerBeat() <= kMostTicksInThreeDigits ? 3 : 4);
  } else {
    appendSpaced(text, at.divisions, 2);
    text += separator;
    appendSpaced(text, at.ticks, 3);
  }
  return text;
}

bool QKMeasuredTimecodeFormatDeputy::getObjectValue(Ref<Object>* object, std::string_view string,
                                                    const QKTimecodeFormatter& formatter, std::string* error) const {
  static const CharacterSet& separators = *new CharacterSet(kSeparators);
  Ref<Object> current = formatter.currentTimecode();
  auto* value = protocolCast<QKMeasuredTimecode>(current.get());
  if (!value) return detail::fail(error, detail::kObjectDoesNotConform);
  if (string.empty()) {
    if (object) *object = std::move(current);
    return true;
  }
  std::string_view rest;
  std::int64_t sign = 0, fields[4] = {}, count = 0;
  if (!trimSignFromString(string, &rest, &sign, error) ||
      !privateScanStringIntoFieldArray(rest, fields, 4, &count, separators)) {
    return false;
  }
  count = std::min(count, privateMaximumCurrentFields());
  const auto fieldOr = [&](std::int64_t index, std::int64_t none) { return index < count ? fields[index] : none; };

  const std::int64_t origin = sign == 0 ? 1 : 0;  // beats and divisions count from 1, amounts from 0
  const std::int64_t bars = fields[0], beats = std::max(fieldOr(1, origin), origin);
  std::int64_t divisions = fieldOr(2, origin), ticks = fieldOr(3, 0);
  double exactBeats = 0;
  if (!displaysDivisionsAndTicks_) {
    std::int64_t fraction = fieldOr(2, 0);
    if (count > 2) {
      const std::size_t lastSeparator = rest.find_last_of(kSeparators);
      if (lastSeparator == std::string_view::npos) {
        lightAssertionFailed("lastSeparatorLocation != kNotFound", kFile, 305);
      } else {
        fraction = detail::fractionOfEntry(fraction, rest.substr(lastSeparator + 1), usedPlaces());
      }
    }
    exactBeats = privateDoubleFromIntegerPartAndFractionalPart(beats, fraction, usedPlaces());
  } else if (isDivisionsFieldDropped_) {
    const SplitTicks split = splitTicks(*value, fieldOr(2, 0));
    divisions = saturatingAdd(split.divisions, origin);
    ticks = split.ticks;
  }

  if (sign == 0) {
    value->setIsNegative(false);
    value->setBars(bars);
    if (displaysDivisionsAndTicks_) {
      value->setIntegerBeats(beats);
      value->setDivisions(std::max(divisions, origin));
      value->setTicks(ticks);
    } else {
      value->setDoubleBeats(exactBeats);
    }
  } else if (displaysDivisionsAndTicks_) {
    sign > 0 ? value->addBars(bars, beats, divisions, ticks) : value->subtractBars(bars, beats, divisions, ticks);
  } else {
    sign > 0 ? value->addBars(bars, exactBeats) : value->subtractBars(bars, exactBeats);
  }
  if (object) *object = std::move(current);
  return true;
}

std::string QKMeasuredTimecodeFormatDeputy::defaultNilSymbol() const {
  const std::string& dash = formatDeputyEmDash();
  const std::string separator(privateSeparatorString());
  const std::string next = separator + " " + dash;
  if (!displaysDivisionsAndTicks_) return dash + next + (usedPlaces() > 0 ? "." + dash : "");
  const std::string beginning = dash + next + separator + " ";
  return isDivisionsFieldDropped_ ? beginning + next : beginning + next + next;
}

const Protocol& QKMeasuredTimecodeFormatDeputy::requiredProtocol() const { return QKMeasuredTimecode::protocol; }

// ---- Segments ----

std::int64_t QKMeasuredTimecodeFormatDeputy::segmentCountInObjectValue(Object*) const {
  return privateMaximumCurrentFields();
}

std::int64_t QKMeasuredTimecodeFormatDeputy::segmentTagForIndex(std::int64_t index, Object*) const {
  if (index < 2 || index > 3) return index;
  if (displaysDivisionsAndTicks_) return isDivisionsFieldDropped_ ? kTicks : index;
  return usedPlaces() > 0 ? kFraction : index;
}

std::int64_t QKMeasuredTimecodeFormatDeputy::segmentIndexForTag(std::int64_t tag, Object*) const {
  const bool showsDivisions = displaysDivisionsAndTicks_ && !isDivisionsFieldDropped_;
  switch (tag) {
    case kBars:
    case kBeats: return tag;
    case kDivisions: return showsDivisions ? 2 : -1;
    case kTicks: return showsDivisions ? 3 : displaysDivisionsAndTicks_ ? 2 : -1;
    case kFraction: return !displaysDivisionsAndTicks_ && usedPlaces() > 0 ? 2 : -1;
    default: return -1;
  }
}

std::int64_t QKMeasuredTimecodeFormatDeputy::segmentFieldWidthForTag(std::int64_t tag, Object* object) const {
  if (tag == kFraction) return usedPlaces();
  auto* value = protocolCast<QKMeasuredTimecode>(object);
  if (!value) return 0;
  if (!displaysDivisionsAndTicks_) {
    const BarsAndBeats at = barsAndBeatsOf(*value);
    if (tag == kBars) return widthOf(at.bars, 1) + (showsSign(*value, at.bars) ? 1 : 0);
    return tag == kBeats ? widthOfWhole(at.beats) : 0;
  }
  const Position at = positionOf(*value);
  switch (tag) {
    case kBars: return widthOf(at.bars, 4) + (showsSign(*value, at.bars) ? 1 : 0);
    case kBeats: return widthOf(at.beats, 2);
    case kDivisions: return isDivisionsFieldDropped_ ? 0 : widthOf(at.divisions, 2);
    case kTicks: return widthOf(isDivisionsFieldDropped_ ? combinedTicks(*value, at) : at.ticks, 3);
    default: return 0;
  }
}

std::int64_t QKMeasuredTimecodeFormatDeputy::defaultSelectedSegmentTagInObjectValue(Object*) const { return kBeats; }

void QKMeasuredTimecodeFormatDeputy::segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight,
                                                              Object*) const {
  const bool isPoint = separator_ == 0;
  if (atLeft && !(isPoint && displaysDivisionsAndTicks_)) *atLeft = isPoint && tag == kBeats;
  if (atRight) *atRight = isPoint && (displaysDivisionsAndTicks_ ? tag < kTicks : tag == kBars);
}

Range QKMeasuredTimecodeFormatDeputy::substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const {
  if (tag < kBars || tag > kFraction) {
    lightAssertionFailed("NO", kFile, 522);
    return {};
  }
  const auto width = [&](Tag of) { return static_cast<std::uint64_t>(segmentFieldWidthForTag(of, object)); };
  const std::uint64_t separator = characterCount(privateSeparatorString());
  std::uint64_t location = 0;
  if (tag > kBars) location += width(kBars) + separator;
  if (tag > kBeats) location += width(kBeats) + (tag == kFraction ? 1 : separator);
  if (tag == kTicks) location += isDivisionsFieldDropped_ ? 1 : width(kDivisions) + separator;
  return {location, width(static_cast<Tag>(tag))};
}

NumberFormatter* QKMeasuredTimecodeFormatDeputy::formatterForSegmentTag(std::int64_t tag, Object* object) const {
  switch (tag) {
    case kBars: return &sharedDeputyLeadingIntegerNumberFormatter();
    case kBeats:
    case kDivisions: return &sharedDeputyTwoDigitMinimumOneNumberFormatter();
    case kTicks: {
      const auto* value = protocolCast<QKMeasuredTimecode>(object);
      const std::int64_t ticks = !value                     ? 0
                                 : isDivisionsFieldDropped_ ? value->ticksPerBeat()
                                                            : value->ticksPerDivision();
      return ticks > kMostTicksInThreeDigits ? &sharedDeputyFollowingFourDigitNumberFormatter()
                                             : &sharedDeputyFollowingThreeDigitNumberFormatter();
    }
    case kFraction: return beatsDecimalPlacesFormatter();
    default: lightAssertionFailed("NO", kFile, 669); return nullptr;
  }
}

// ---- Stepping and typing ----

void QKMeasuredTimecodeFormatDeputy::getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag,
                                                                              std::int64_t increment,
                                                                              Object* object) const {
  if (!protocolCast<QKMeasuredTimecode>(object)) return;
  Ref<Object> copy = object->copy();
  auto* value = protocolCast<QKMeasuredTimecode>(copy.get());
  if (!value) return;
  const std::int64_t steps = detail::stepCount(increment);
  const std::int64_t bars = tag == kBars ? steps : 0;
  if (displaysDivisionsAndTicks_) {
    const bool isLacking = tag == kDivisions && isDivisionsFieldDropped_;
    if (isLacking) lightAssertionFailed("![self isDivisionsFieldDropped]", kFile, 548);
    const std::int64_t beats = tag == kBeats ? steps : 0, ticks = tag == kTicks ? steps : 0;
    const std::int64_t divisions = tag == kDivisions && !isLacking ? steps : 0;
    if (tag < kBars || tag > kTicks) {
      lightAssertionFailed("NO", kFile, 555);
    } else if (increment > 0) {
      value->addBars(bars, beats, divisions, ticks);
    } else {
      value->subtractBars(bars, beats, divisions, ticks);
    }
  } else {
    const double exactSteps = static_cast<double>(steps);
    const double beats = tag == kBeats      ? exactSteps
                         : tag == kFraction ? exactSteps / detail::powerOfTen(usedPlaces())
                                            : 0;
    if (tag != kBars && tag != kBeats && tag != kFraction) {
      lightAssertionFailed("NO", kFile, 578);
    } else if (increment > 0) {
      value->addBars(bars, beats);
    } else {
      value->subtractBars(bars, beats);
    }
  }
  if (result) *result = std::move(copy);
}

bool QKMeasuredTimecodeFormatDeputy::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string,
                                                                     std::int64_t tag, Object* object,
                                                                     std::string* error) const {
  auto* value = protocolCast<QKMeasuredTimecode>(object);
  if (!value) return detail::fail(error, detail::kValueDoesNotConform);
  std::int64_t field = 1;
  const bool countsFromOne = tag == kBeats || tag == kDivisions;
  if (!(countsFromOne && beginsWithZero(string)) && !detail::readSegment(*this, &field, string, tag, object, error)) {
    return false;
  }
  field = massagedFieldValue(field, tag, object);
  const bool isNegative = value->isNegative();

  if (tag == kBars) {
    value->setBars(field);
  } else if (displaysDivisionsAndTicks_) {
    if (tag == kBeats) {
      value->setIntegerBeats(field);
    } else if (tag == kDivisions) {
      value->setDivisions(field);
    } else if (tag == kTicks && isDivisionsFieldDropped_) {
      const SplitTicks split = splitTicks(*value, field);
      value->setDivisions(saturatingAdd(split.divisions, 1));
      value->setTicks(split.ticks);
    } else if (tag == kTicks) {
      value->setTicks(field);
    } else {
      lightAssertionFailed("NO", kFile, 625);
    }
  } else if (tag == kBeats || tag == kFraction) {
    const double now = barsAndBeatsOf(*value).beats, whole = std::trunc(now);
    const double entry = static_cast<double>(field);
    const double beats = tag == kBeats ? entry + (now - whole) : whole + entry / detail::powerOfTen(usedPlaces());
    value->setDoubleBeats(std::max(1.0, beats));  // beats of a negative value may lie below
  } else {
    lightAssertionFailed("NO", kFile, 642);
  }
  value->setIsNegative(isNegative);
  if (result) *result = object->copy();
  return true;
}

// ---- Coding ----

QKMeasuredTimecodeFormatDeputy::QKMeasuredTimecodeFormatDeputy(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  if (coder.allowsKeyedCoding()) {
    coder.decodeInteger(kVersionKey);  // every version reads alike
    separator_ = coder.decodeInteger(kSeparatorKey);
    displaysDivisionsAndTicks_ = coder.decodeBool(kDisplaysKey);
    isDivisionsFieldDropped_ = coder.decodeBool(kDroppedKey);
    beatsDecimalPlaces_ = coder.decodeInteger(kPlacesKey);
  } else {
    coder.versionForClassName(descriptor.archiveName);
    Number values[4];
    coder.decodeValues("iiii", values);
    separator_ = values[0].int64Value();
    displaysDivisionsAndTicks_ = values[1].boolValue();
    isDivisionsFieldDropped_ = values[2].boolValue();
    beatsDecimalPlaces_ = values[3].int64Value();
  }
}

void QKMeasuredTimecodeFormatDeputy::encodeWithCoder(KeyedCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeInteger(descriptor.version, kVersionKey);
    coder.encodeInteger(separator_, kSeparatorKey);
    coder.encodeBool(displaysDivisionsAndTicks_, kDisplaysKey);
    coder.encodeBool(isDivisionsFieldDropped_, kDroppedKey);
    coder.encodeInteger(beatsDecimalPlaces_, kPlacesKey);
  } else {
    coder.encodeValues("iiii", {saturateToInt32(separator_), displaysDivisionsAndTicks_ ? 1 : 0,
                                isDivisionsFieldDropped_ ? 1 : 0, saturateToInt32(beatsDecimalPlaces_)});
  }
}

// ---- For subclasses ----

std::int64_t QKMeasuredTimecodeFormatDeputy::privateMaximumCurrentFields() const {
  if (displaysDivisionsAndTicks_) return isDivisionsFieldDropped_ ? 3 : 4;
  return usedPlaces() > 0 ? 3 : 2;
}

std::string_view QKMeasuredTimecodeFormatDeputy::privateSeparatorString() const {
  if (separator_ != 0) return " ";
  return displaysDivisionsAndTicks_ ? ". " : ".";
}

}  // namespace quill::inline v0
