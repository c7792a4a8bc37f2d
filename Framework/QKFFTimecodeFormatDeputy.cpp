#include "QKFFTimecodeFormatDeputy.h"

#include "../Platform/KeyedCoder.h"
#include "../Platform/Reports.h"
#include "QKTimecodeFormatter.h"
#include "QKTimecodeProtocols.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKFFTimecodeFormatDeputy";
constexpr std::string_view kVersionKey = "OrbisFFTimecodeFormatDeputyVersion";
constexpr std::string_view kSeparatorKey = "OFTFSeparator";
constexpr std::string_view kQuarterFramesKey = "OFTFDisplaysQuarterFrames";

constexpr std::int64_t kPlusSeparator = 1, kPointSeparatorAndDigitSpaces = 0;

enum Tag : std::int64_t { kFeet, kFrames, kQuarterFrames, kTagCount };

void reportUnknownTag(int line) { lightAssertionFailed("NO", kFile, line); }

}  // namespace

const ClassDescriptor QKFFTimecodeFormatDeputy::descriptor{
    "QKFFTimecodeFormatDeputy",
    "OrbisFFTimecodeFormatDeputy",
    0,
    &QKFormatDeputy::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKFFTimecodeFormatDeputy>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKFFTimecodeFormatDeputy>(coder); }};

QKFFTimecodeFormatDeputy::QKFFTimecodeFormatDeputy() = default;
QKFFTimecodeFormatDeputy::~QKFFTimecodeFormatDeputy() = default;

Ref<Object> QKFFTimecodeFormatDeputy::copy() const { return std::make_shared<QKFFTimecodeFormatDeputy>(*this); }

// ---- Whole strings ----

std::string QKFFTimecodeFormatDeputy::stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const {
  std::string text;
  auto* value = protocolCast<QKFeetFramesTimecode>(object);
  if (!value) return text;
  std::int64_t feet = 0, frames = 0, quarterFrames = 0;
  value->getFFFeet(&feet, &frames, &quarterFrames);

  std::string framesPart;
  detail::appendField(framesPart, frames, 2);
  if (displaysQuarterFrames_) {
    framesPart += '/';
    appendInteger(framesPart, quarterFrames);
  }
  if (separator_ == kPointSeparatorAndDigitSpaces) framesPart = stringWithDigitSpacesForLeadingZeroes(framesPart);

  if (formatter.allowsNegative() && value->isNegative()) text += '-';
  detail::appendField(text, feet, 4);
  text += privateSeparatorString();
  text += framesPart;
  return text;
}

bool QKFFTimecodeFormatDeputy::getObjectValue(Ref<Object>* object, std::string_view string,
                                              const QKTimecodeFormatter& formatter, std::string* error) const {
  Ref<Object> current = formatter.currentTimecode();
  auto* value = protocolCast<QKFeetFramesTimecode>(current.get());
  if (!value) return detail::fail(error, detail::kObjectDoesNotConform);
  if (string.empty()) {
    value->setIsNegative(false);
    if (object) *object = std::move(current);
    return true;
  }
  std::string_view rest;
  std::int64_t sign = 0;
  if (!trimSignFromString(string, &rest, &sign, nullptr)) return detail::fail(error, detail::kIllegalCharacters);
  std::string entry(rest);
  if (displaysQuarterFrames_) entry = privateNumberStringWithNormalizedSeparatorCount(entry);

  detail::ScannedFields typed;
  const auto scanFields = [&] {
    const CharacterSet separators(privateSeparators());
    if (!privateScanStringIntoFieldArray(entry, typed.fields, kTagCount, &typed.count, separators)) return false;
    std::int64_t quarterFrames = detail::kNotTyped;
    if (displaysQuarterFrames_ && typed.count == 2) {  // feet and frames in one run, quarter frames behind a blank
      entry.clear();
      appendInteger(entry, typed.fields[0]);
      quarterFrames = typed.fields[1];
    } else if (typed.count != 1) {
      return true;
    } else if (displaysQuarterFrames_) {
      quarterFrames = 0;
      if (sign == 0) value->getFFFeet(nullptr, nullptr, &quarterFrames);
    }
    return privateScanFFNumberString(entry, typed.fields, kTagCount, &typed.count, quarterFrames);
  };
  if (!scanFields()) return detail::fail(error, detail::kIllegalCharacters);
  typed.count = std::min(typed.count, privateMaximumCurrentFields());

  const std::int64_t none = sign == 0 ? detail::kNotTyped : 0;  // an amount that is not typed is 0
  const std::int64_t quarterFrames = displaysQuarterFrames_ ? typed.takeOr(none) : none;
  const std::int64_t frames = typed.takeOr(none);
  const std::int64_t feet = typed.takeOr(none);
  if (sign == 0) {
    value->setIsNegative(false);
    if (detail::isTyped(feet)) value->setFFFeet(feet);
    if (detail::isTyped(frames)) value->setFFFrames(frames);
    if (detail::isTyped(quarterFrames)) value->setFFQuarterFrames(quarterFrames);
  } else {
    const auto change = sign > 0 ? &QKFeetFramesTimecode::addFeet : &QKFeetFramesTimecode::subtractFeet;
    (value->*change)(feet, frames, quarterFrames);
  }
  if (object) *object = std::move(current);
  return true;
}

CharacterSet QKFFTimecodeFormatDeputy::legalCharacterSet() const {
  CharacterSet set("0123456789,.;");
  if (separator_ == kPlusSeparator) set.add("+");
  if (displaysQuarterFrames_) set.add("/");
  return set;
}

std::string QKFFTimecodeFormatDeputy::defaultNilSymbol() const {
  std::string symbol = formatDeputyEmDash();
  symbol += privateSeparatorString();
  symbol += formatDeputyEmDash();
  if (displaysQuarterFrames_) symbol += '/' + formatDeputyEmDash();
  return symbol;
}

const Protocol& QKFFTimecodeFormatDeputy::requiredProtocol() const { return QKFeetFramesTimecode::protocol; }

// ---- Segments ----

std::int64_t QKFFTimecodeFormatDeputy::segmentCountInObjectValue(Object*) const {
  return privateMaximumCurrentFields();
}

std::int64_t QKFFTimecodeFormatDeputy::segmentTagForIndex(std::int64_t index, Object*) const { return index; }

std::int64_t QKFFTimecodeFormatDeputy::segmentIndexForTag(std::int64_t tag, Object*) const {
  return tag < privateMaximumCurrentFields() ? tag : -1;
}

std::int64_t QKFFTimecodeFormatDeputy::segmentFieldWidthForTag(std::int64_t tag, Object* object) const {
  switch (tag) {
    case kFeet: {
      auto* value = protocolCast<QKFeetFramesTimecode>(object);
      std::int64_t feet = 0;
      if (value) value->getFFFeet(&feet, nullptr, nullptr);
      const int digits = feet < 1 ? 1 : detail::decimalDigitCount(static_cast<std::uint64_t>(feet));
      return std::max(digits, 4) + (value && value->isNegative() ? 1 : 0);
    }
    case kFrames: return 2;
    case kQuarterFrames: return 1;
    default: reportUnknownTag(364); return 0;
  }
}

std::int64_t QKFFTimecodeFormatDeputy::defaultSelectedSegmentTagInObjectValue(Object*) const { return kFrames; }

void QKFFTimecodeFormatDeputy::segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object*) const {
  if (tag < kFeet || tag >= kTagCount) return reportUnknownTag(392);
  if (atLeft) *atLeft = tag != kFeet;
  if (atRight) *atRight = tag == kFeet || (tag == kFrames && displaysQuarterFrames_);
}

Range QKFFTimecodeFormatDeputy::substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const {
  if (tag < kFeet || tag >= kTagCount) {
    reportUnknownTag(410);
    return {};
  }
  const auto length = static_cast<std::uint64_t>(segmentFieldWidthForTag(tag, object));
  if (tag == kFeet) return {0, length};
  const auto feet = static_cast<std::uint64_t>(segmentFieldWidthForTag(kFeet, object));
  return {feet + 3 * static_cast<std::uint64_t>(tag) - 2, length};
}

NumberFormatter* QKFFTimecodeFormatDeputy::formatterForSegmentTag(std::int64_t tag, Object*) const {
  switch (tag) {
    case kFeet: return &sharedDeputyLeadingIntegerNumberFormatter();
    case kFrames: return &sharedDeputyFollowingTwoDigitNumberFormatter();
    case kQuarterFrames: return &sharedDeputyOneDigitNumberFormatter();
    default: reportUnknownTag(514); return nullptr;
  }
}

// ---- Stepping and typing ----

void QKFFTimecodeFormatDeputy::getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag,
                                                                        std::int64_t increment, Object* object) const {
  auto* old = protocolCast<QKFeetFramesTimecode>(object);
  if (!old) return;
  const bool isKnown = tag >= kFeet && tag < kTagCount;
  if (!isKnown) reportUnknownTag(437);
  if (!result) return;
  *result = object->copy();
  auto* value = protocolCast<QKFeetFramesTimecode>(result->get());
  if (!value || !isKnown) return;

  std::int64_t amounts[kTagCount] = {};
  amounts[tag] = detail::stepCount(increment);
  const auto change = increment > 0 ? &QKFeetFramesTimecode::addFeet : &QKFeetFramesTimecode::subtractFeet;
  (value->*change)(amounts[kFeet], amounts[kFrames], amounts[kQuarterFrames]);

  const bool isNegative = value->isNegative();
  const bool mirrors = tag == kFeet || (tag == kFrames && displaysQuarterFrames_);
  if (!mirrors || isNegative == old->isNegative()) return;
  std::int64_t frames = 0, quarterFrames = 0;
  old->getFFFeet(nullptr, &frames, &quarterFrames);
  const bool hasLower = (tag == kFeet && frames != 0) || (displaysQuarterFrames_ && quarterFrames != 0);
  const std::int64_t stepped = hasLower || isNegative ? 1 : 0;
  if (tag == kFeet) {
    value->setFFFeet(stepped);
    value->setFFFrames(frames);
  } else {
    value->setFFFrames(stepped);
  }
  if (displaysQuarterFrames_) value->setFFQuarterFrames(quarterFrames);
  value->setIsNegative(isNegative);
}

bool QKFFTimecodeFormatDeputy::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string,
                                                               std::int64_t tag, Object* object,
                                                               std::string* error) const {
  auto* value = protocolCast<QKFeetFramesTimecode>(object);
  if (!value) return detail::fail(error, detail::kValueDoesNotConform);
  std::int64_t field = 0;
  if (!detail::readSegment(*this, &field, string, tag, object, error)) return false;
  field = massagedFieldValue(field, tag, object);
  const bool isNegative = value->isNegative();
  switch (tag) {
    case kFeet: value->setFFFeet(field); break;
    case kFrames: value->setFFFrames(field); break;
    case kQuarterFrames: value->setFFQuarterFrames(field); break;
    default: reportUnknownTag(490);
  }
  value->setIsNegative(isNegative);
  if (result) *result = object->copy();
  return true;
}

// ---- Coding ----

QKFFTimecodeFormatDeputy::QKFFTimecodeFormatDeputy(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  if (coder.allowsKeyedCoding()) {
    coder.decodeInteger(kVersionKey);  // every version reads alike
    separator_ = coder.decodeInteger(kSeparatorKey);
    displaysQuarterFrames_ = coder.decodeBool(kQuarterFramesKey);
  } else {
    coder.versionForClassName(descriptor.archiveName);
    Number values[2];
    coder.decodeValues("ii", values);
    separator_ = values[0].int64Value();
    displaysQuarterFrames_ = values[1].boolValue();
  }
}

void QKFFTimecodeFormatDeputy::encodeWithCoder(KeyedCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeInteger(descriptor.version, kVersionKey);
    coder.encodeInteger(separator_, kSeparatorKey);
    coder.encodeBool(displaysQuarterFrames_, kQuarterFramesKey);
  } else {
    coder.encodeValues("ii", {static_cast<std::int32_t>(separator_), displaysQuarterFrames_ ? 1 : 0});
  }
}

// ---- For subclasses ----

std::int64_t QKFFTimecodeFormatDeputy::privateMaximumCurrentFields() const { return displaysQuarterFrames_ ? 3 : 2; }

std::string_view QKFFTimecodeFormatDeputy::privateSeparatorString() const {
  return separator_ == kPlusSeparator ? "+" : ".";
}

std::string_view QKFFTimecodeFormatDeputy::privateSeparators() const {
  if (separator_ == kPlusSeparator) return displaysQuarterFrames_ ? ",.;+/" : ",.;:+";
  return displaysQuarterFrames_ ? ",.;/" : ",.;";
}

std::string QKFFTimecodeFormatDeputy::privateNumberStringWithNormalizedSeparatorCount(std::string_view string) const {
  if (!displaysQuarterFrames_) lightAssertionFailed("[self displaysQuarterFrames]", kFile, 141);
  const std::string_view separators = privateSeparators();
  const auto count = std::ranges::count_if(string, [&](char c) { return separators.find(c) != separators.npos; });
  std::string result(string);
  if (count == 1) result += '.';
  return result;
}

bool QKFFTimecodeFormatDeputy::privateScanFFNumberString(std::string_view string, std::int64_t* fields,
                                                         std::int64_t length, std::int64_t* indexAtEnd,
                                                         std::int64_t currentQuarterFrames) const {
  std::string digits(stringByTrimmingNondecimalsFromEnd(string));
  if (digits.empty()) return false;
  if (length < 1 || length > kTagCount) {
    assertionFailed(
        {"-[QKFFTimecodeFormatDeputy privateScanFFNumberString:intoFieldArray:length:indexAtEnd:currentQuarterFrames:]",
         this, kFile, 64,
         "-[QKFFTimecodeFormatDeputy privateScanFFNumberString:intoFieldArray:length:indexAtEnd:] unexpected value for fieldLen"});
  }
  if (displaysQuarterFrames_) appendInteger(digits, currentQuarterFrames);

  const std::size_t quarterDigits = displaysQuarterFrames_ ? 1 : 0;
  const std::size_t pairs = std::min<std::size_t>((digits.size() - quarterDigits + 1) / 2, 2);
  const auto count = std::min(static_cast<std::int64_t>(pairs + quarterDigits), length);
  if (indexAtEnd) *indexAtEnd = count;

  // Seven or six digits at least, from the right: one of the quarter frames, two of the frames, the rest the feet's.
  const std::size_t width = 6 + quarterDigits;
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  std::string_view left = digits;
  const auto takeLast = [&left](std::size_t characters) {
    const std::string_view field = left.substr(left.size() - characters);
    left.remove_suffix(characters);
    return saturatingInt64(field);
  };
  std::int64_t field = count;
  if (displaysQuarterFrames_ && field > 0) fields[--field] = takeLast(1);
  if (field > 0) fields[--field] = takeLast(2);
  if (field > 0) fields[--field] = takeLast(left.size());
  return true;
}

}  // namespace quill::inline v0
