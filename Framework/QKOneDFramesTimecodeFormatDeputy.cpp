#include "QKOneDFramesTimecodeFormatDeputy.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "../Platform/Reports.h"
#include "QKTimecodeFormatter.h"
#include "QKTimecodeProtocols.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

#include <iterator>

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKOneDFramesTimecodeFormatDeputy";

// Frames in one unit of each segment, by tag. A signed count has at most 19 digits.
constexpr std::int64_t kUnits[] = {
    1, 1'000, 1'000'000, 1'000'000'000, 1'000'000'000'000, 1'000'000'000'000'000, 1'000'000'000'000'000'000};
constexpr auto kUnitCount = static_cast<std::int64_t>(std::size(kUnits));

void setNegative(Object* object, bool isNegative) {
  if (auto* value = protocolCast<QKBasicTimecode>(object)) value->setIsNegative(isNegative);
}

// Segments of three digits.
std::int64_t groupsOf(std::int64_t frames) {
  return detail::groupCount(detail::decimalDigitCount(magnitudeOf(frames)));
}

// The description begins with the method in brackets.
BoundOperation failAbstract(std::string_view description, int line) {
  assertionFailed({description.substr(0, description.find(']') + 1), nullptr, kFile, line, description});
  return {};
}

}  // namespace

// ---- Making ----

const ClassDescriptor QKOneDFramesTimecodeFormatDeputy::descriptor{
    "QKOneDFramesTimecodeFormatDeputy", nullptr, 0, &QKFormatDeputy::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKOneDFramesTimecodeFormatDeputy>(); }};

QKOneDFramesTimecodeFormatDeputy::QKOneDFramesTimecodeFormatDeputy() = default;
QKOneDFramesTimecodeFormatDeputy::~QKOneDFramesTimecodeFormatDeputy() = default;

void* QKOneDFramesTimecodeFormatDeputy::asProtocol(const Protocol& protocol) {
  const bool archives = classDescriptor().makeWithCoder != nullptr;
  return archives && &protocol == &Coding::protocol ? this : QKFormatDeputy::asProtocol(protocol);
}

// ---- Frame counts ----

BoundOperation QKOneDFramesTimecodeFormatDeputy::framesInvocation() const {
  return failAbstract("+[QKOneDFramesTimecodeFormatDeputy framesInvocation] must be implemented by subclass.", 28);
}

BoundOperation QKOneDFramesTimecodeFormatDeputy::setFramesInvocation() const {
  return failAbstract("+[QKOneDFramesTimecodeFormatDeputy setFramesInvocation] must be implemented by subclass.", 33);
}

BoundOperation QKOneDFramesTimecodeFormatDeputy::addFramesInvocation() const {
  return failAbstract("+[QKOneDFramesTimecodeFormatDeputy addFramesInvocation] must be implemented by subclass.", 38);
}

BoundOperation QKOneDFramesTimecodeFormatDeputy::subtractFramesInvocation() const {
  return failAbstract("+[QKOneDFramesTimecodeFormatDeputy subtractFramesInvocation] must be implemented by subclass.",
                      43);
}

std::int64_t QKOneDFramesTimecodeFormatDeputy::framesFromObject(Object* object) const {
  const std::int64_t frames = framesInvocation().run(object, 0);
  if (frames < 0) lightAssertionFailed("frames >= 0", kFile, 59);
  return frames;
}

void QKOneDFramesTimecodeFormatDeputy::setFramesOnObject(std::int64_t frames, Object* object) const {
  setFramesInvocation().run(object, frames);
}

void QKOneDFramesTimecodeFormatDeputy::addFramesOnObject(std::int64_t frames, Object* object) const {
  addFramesInvocation().run(object, frames);
}

void QKOneDFramesTimecodeFormatDeputy::subtractFramesOnObject(std::int64_t frames, Object* object) const {
  subtractFramesInvocation().run(object, frames);
}

// ---- Whole strings ----

std::string QKOneDFramesTimecodeFormatDeputy::stringForObjectValue(Object* object,
                                                                   const QKTimecodeFormatter& formatter) const {
  std::string text;
  if (!conformsTo(object, requiredProtocol())) return text;
  if (formatter.allowsNegative() && detail::isNegative<QKBasicTimecode>(object)) text += '-';
  appendInteger(text, framesFromObject(object));
  return text;
}

bool QKOneDFramesTimecodeFormatDeputy::getObjectValue(Ref<Object>* object, std::string_view string,
                                                      const QKTimecodeFormatter& formatter, std::string* error) const {
  Ref<Object> current = formatter.currentTimecode();
  if (!conformsTo(current.get(), requiredProtocol())) return detail::fail(error, detail::kObjectDoesNotConform);
  std::string_view rest, digits;
  std::int64_t sign = 0;
  if (!trimSignFromString(string, &rest, &sign, error)) return false;
  Scanner scanner(rest);
  const bool hasDigits = scanner.scanCharacters(CharacterSet::decimalDigits(), &digits);
  if (!scanner.isAtEnd()) return detail::fail(error, detail::kIllegalCharacters);
  if (hasDigits) {
    const auto frames = static_cast<std::int64_t>(unsignedLongLongValue(digits));
    if (frames < 0) lightAssertionFailed("frames >= 0", kFile, 150);
    if (sign == 0) {
      setNegative(current.get(), false);
      setFramesOnObject(frames, current.get());
    } else if (sign > 0) {
      addFramesOnObject(frames, current.get());
    } else {
      subtractFramesOnObject(frames, current.get());
    }
  }
  if (object) *object = std::move(current);
  return true;
}

CharacterSet QKOneDFramesTimecodeFormatDeputy::legalCharacterSet() const { return CharacterSet::decimalDigits(); }

std::string QKOneDFramesTimecodeFormatDeputy::defaultNilSymbol() const { return formatDeputyEmDash(); }

// ---- Segments ----

std::int64_t QKOneDFramesTimecodeFormatDeputy::segmentCountInObjectValue(Object* object) const {
  return detail::groupCount(privateDigitCountForValue(object));
}

std::int64_t QKOneDFramesTimecodeFormatDeputy::segmentTagForIndex(std::int64_t index, Object* object) const {
  const std::int64_t count = segmentCountInObjectValue(object);
  return index >= count ? -1 : wrappingSubtract(count - 1, index);
}

std::int64_t QKOneDFramesTimecodeFormatDeputy::segmentIndexForTag(std::int64_t tag, Object* object) const {
  return tag < 0 ? -1 : segmentCountInObjectValue(object) - 1 - tag;
}

std::int64_t QKOneDFramesTimecodeFormatDeputy::segmentFieldWidthForTag(std::int64_t tag, Object* object) const {
  return static_cast<std::int64_t>(substringRangeForSegmentWithTag(tag, object).length);
}

std::int64_t QKOneDFramesTimecodeFormatDeputy::defaultSelectedSegmentTagInObjectValue(Object*) const { return 0; }

void QKOneDFramesTimecodeFormatDeputy::segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight,
                                                                Object*) const {
  if (atLeft) *atLeft = false;
  if (atRight) *atRight = tag != 0;
}

Range QKOneDFramesTimecodeFormatDeputy::substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const {
  const std::int64_t digits = privateDigitCountForValue(object);
  const std::int64_t index = detail::groupCount(digits) - 1 - std::max<std::int64_t>(tag, 0);
  if (tag < 0 || index < 0) return {};
  const auto leading = static_cast<std::uint64_t>(detail::outerGroupWidth(digits) +
                                                  (detail::isNegative<QKBasicTimecode>(object) ? 1 : 0));
  return index == 0 ? Range{0, leading} : Range{leading + 3 * static_cast<std::uint64_t>(index - 1), 3};
}

NumberFormatter* QKOneDFramesTimecodeFormatDeputy::formatterForSegmentTag(std::int64_t tag, Object* object) const {
  const std::int64_t index = segmentIndexForTag(tag, object);
  if (index < 0) return nullptr;
  return index == 0 ? &sharedDeputyLeadingIntegerNumberFormatter() : &sharedDeputyFollowingThreeDigitNumberFormatter();
}

// ---- Stepping and typing ----

void QKOneDFramesTimecodeFormatDeputy::getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag,
                                                                                std::int64_t increment,
                                                                                Object* object) const {
  if (!result || !conformsTo(object, requiredProtocol())) return;
  *result = object->copy();
  if (tag < 0 || tag >= kUnitCount) return;
  Object* value = result->get();
  const std::int64_t frames = saturatingMultiply(detail::stepCount(increment), kUnits[tag]);
  if (increment < 0) {
    subtractFramesOnObject(frames, value);
  } else {
    addFramesOnObject(frames, value);
  }
  const bool isNegative = detail::isNegative<QKBasicTimecode>(value);
  if (isNegative == detail::isNegative<QKBasicTimecode>(object)) return;
  const auto unit = static_cast<double>(kUnits[tag]);
  const auto before = static_cast<double>(framesFromObject(object));
  setFramesOnObject(saturateToInt64(detail::unitsAcrossZero(before, unit, isNegative) * unit), value);
  setNegative(value, isNegative);
}

bool QKOneDFramesTimecodeFormatDeputy::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string,
                                                                       std::int64_t tag, Object* object,
                                                                       std::string* error) const {
  if (!conformsTo(object, requiredProtocol())) return detail::fail(error, detail::kValueDoesNotConform);
  std::int64_t field = 0;
  if (!detail::readSegment(*this, &field, string, tag, object, error)) return false;
  // Read first: a sign that is typed would leave no count of audio frames in the SMPTE 272M sequence.
  const std::int64_t unit = kUnits[tag], count = framesFromObject(object);
  const bool leads = tag >= groupsOf(count) - 1;  // so does the last tag there is
  field = massagedFieldValue(field, tag, object);
  const bool isNegative = detail::isNegative<QKBasicTimecode>(object);
  const std::int64_t higher = leads ? 0 : count - count % kUnits[tag + 1];
  const double units = static_cast<double>(count) / static_cast<double>(unit);  // exact enough below 2^52 frames
  const std::int64_t lower = saturateToInt64((units - std::trunc(units)) * static_cast<double>(unit) + 0.5);
  setFramesOnObject(saturatingAdd(saturatingMultiply(field, unit), saturatingAdd(higher, lower)), object);
  setNegative(object, isNegative);
  if (result) *result = object->copy();
  return true;
}

// ---- For subclasses ----

std::int64_t QKOneDFramesTimecodeFormatDeputy::privateDigitCountForValue(Object* object) const {
  return detail::decimalDigitCount(magnitudeOf(framesFromObject(object)));
}

// ---- Video frames ----

const ClassDescriptor QKOneDVideoTimecodeFormatDeputy::descriptor{
    "QKOneDVideoTimecodeFormatDeputy",
    "OrbisOneDVideoTimecodeFormatDeputy",
    0,
    &QKOneDFramesTimecodeFormatDeputy::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKOneDVideoTimecodeFormatDeputy>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKOneDVideoTimecodeFormatDeputy>(coder); }};

QKOneDVideoTimecodeFormatDeputy::QKOneDVideoTimecodeFormatDeputy() = default;
QKOneDVideoTimecodeFormatDeputy::~QKOneDVideoTimecodeFormatDeputy() = default;

const Protocol& QKOneDVideoTimecodeFormatDeputy::requiredProtocol() const {
  return QKOneDimensionalVideoTimecode::protocol;
}

BoundOperation QKOneDVideoTimecodeFormatDeputy::framesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalVideoTimecode::videoFrames>();
}

BoundOperation QKOneDVideoTimecodeFormatDeputy::setFramesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalVideoTimecode::setVideoFrames>();
}

BoundOperation QKOneDVideoTimecodeFormatDeputy::addFramesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalVideoTimecode::addVideoFrames>();
}

BoundOperation QKOneDVideoTimecodeFormatDeputy::subtractFramesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalVideoTimecode::subtractVideoFrames>();
}

QKOneDVideoTimecodeFormatDeputy::QKOneDVideoTimecodeFormatDeputy(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
}

void QKOneDVideoTimecodeFormatDeputy::encodeWithCoder(KeyedCoder& coder) const {
  if (!coder.allowsKeyedCoding()) return;
  coder.encodeInteger(descriptor.version, "OrbisOneDVideoTimecodeFormatDeputyVersion");
}

// ---- Audio frames ----

const ClassDescriptor QKOneDAudioTimecodeFormatDeputy::descriptor{
    "QKOneDAudioTimecodeFormatDeputy",
    "OrbisOneDAudioTimecodeFormatDeputy",
    0,
    &QKOneDFramesTimecodeFormatDeputy::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKOneDAudioTimecodeFormatDeputy>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKOneDAudioTimecodeFormatDeputy>(coder); }};

QKOneDAudioTimecodeFormatDeputy::QKOneDAudioTimecodeFormatDeputy() = default;
QKOneDAudioTimecodeFormatDeputy::~QKOneDAudioTimecodeFormatDeputy() = default;

const Protocol& QKOneDAudioTimecodeFormatDeputy::requiredProtocol() const {
  return QKOneDimensionalAudioTimecode::protocol;
}

BoundOperation QKOneDAudioTimecodeFormatDeputy::framesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalAudioTimecode::audioFrames>();
}

BoundOperation QKOneDAudioTimecodeFormatDeputy::setFramesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalAudioTimecode::setAudioFrames>();
}

BoundOperation QKOneDAudioTimecodeFormatDeputy::addFramesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalAudioTimecode::addAudioFrames>();
}

BoundOperation QKOneDAudioTimecodeFormatDeputy::subtractFramesInvocation() const {
  return BoundOperation::of<&QKOneDimensionalAudioTimecode::subtractAudioFrames>();
}

QKOneDAudioTimecodeFormatDeputy::QKOneDAudioTimecodeFormatDeputy(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
}

void QKOneDAudioTimecodeFormatDeputy::encodeWithCoder(KeyedCoder& coder) const {
  if (!coder.allowsKeyedCoding()) return;
  coder.encodeInteger(descriptor.version, "OrbisOneDAudioTimecodeFormatDeputyVersion");
}

}  // namespace quill::inline v0
