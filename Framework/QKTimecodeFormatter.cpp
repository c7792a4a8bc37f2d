#include "QKTimecodeFormatter.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "../Platform/Reports.h"
#include "QKExtendedTimecode.h"
#include "QKFFTimecodeFormatDeputy.h"
#include "QKHMSTimecodeFormatDeputy.h"
#include "QKMeasuredTimecodeFormatDeputy.h"
#include "QKOneDFramesTimecodeFormatDeputy.h"
#include "QKOneDTimeTimecodeFormatDeputy.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <typeinfo>

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKTimecodeFormatter";
constexpr std::int64_t kNoSegmentTag = 0x7fffffff;

std::optional<bool> usesHighOrderTyping;  // fixed by its first use

int compareValues(Object* a, const Ref<Object>& b) {
  const auto* timecode = protocolCast<QKBasicTimecode>(a);
  return timecode ? timecode->compare(*b) : 0;
}

bool hasFiniteTime(const QKVideoTimecode& timecode) {
  return timecode.useSeconds() ? std::isfinite(timecode.seconds()) : timecode.isNumeric();
}

// Ticks per second, at least 1, also for a value in the seconds mode; 0 for one that has no finite time.
std::int32_t timescaleOf(const Object* object) {
  const auto* timecode = classCast<QKVideoTimecode>(object);
  return timecode && hasFiniteTime(*timecode) ? std::max(timecode->timeValue().timescale, 1) : 0;
}

// Brings a result that has run over back to the furthest time that it can hold, at the timescale of the value that it
// came from; without one it had no time to run over.
void holdInRange(Object* result, std::int32_t timescale) {
  constexpr double kFurthestSeconds = std::numeric_limits<double>::max();
  auto* timecode = classCast<QKVideoTimecode>(result);
  if (timescale == 0 || !timecode || hasFiniteTime(*timecode)) return;
  if (timecode->useSeconds())
    return timecode->setSeconds(timecode->seconds() < 0 ? -kFurthestSeconds : kFurthestSeconds);
  const bool isNegative = (timecode->timeValue().flags & kMediaTimeNegativeInfinity) != 0;
  timecode->setTimeValue(MediaTime(isNegative ? -kInt64Highest : kInt64Highest, timescale));
}

void holdInRange(Object* result, const Object* cameFrom) {
  const auto* timecode = classCast<QKVideoTimecode>(result);
  if (timecode && !hasFiniteTime(*timecode)) holdInRange(result, timescaleOf(cameFrom));
}

// Whether a deputy's class is one of this library's own, which no one has derived from and changed.
bool isOwnDeputy(const QKFormatDeputy& deputy) {
  static constexpr const std::type_info* kOwn[] = {
      &typeid(QKSMPTETimecodeFormatDeputy),     &typeid(QKHMSTimecodeFormatDeputy),
      &typeid(QKOneDVideoTimecodeFormatDeputy), &typeid(QKOneDAudioTimecodeFormatDeputy),
      &typeid(QKOneDTimeTimecodeFormatDeputy),  &typeid(QKMeasuredTimecodeFormatDeputy),
      &typeid(QKFFTimecodeFormatDeputy)};
  return std::find(std::begin(kOwn), std::end(kOwn), &typeid(deputy)) != std::end(kOwn);
}

// Whether an object is negative; a time that is no number is not asked, since it would report that.
bool isKnownNegative(Object* object) {
  const auto* timecode = classCast<QKVideoTimecode>(object);
  return (!timecode || timecode->isNumeric()) && detail::isNegative<QKBasicTimecode>(object);
}

Ref<Object> copyOrNull(const Ref<Object>& object) { return object ? object->copy() : nullptr; }

// Clears a negative value. Whether it did.
bool clearNegative(Object* object) {
  auto* timecode = protocolCast<QKBasicTimecode>(object);
  if (!timecode || !timecode->isNegative()) return false;
  timecode->clearTimecode();
  return true;
}

}  // namespace

// What values are held to; null where there is none.
struct QKTimecodeFormatter::Bounds {
  Ref<Object> lowest;
  Ref<Object> highest;
};

// ---- The deputies ----

const ClassDescriptor _QKTimecodeFormatterDeputyCollection::descriptor{
    "_QKTimecodeFormatterDeputyCollection",
    "_OrbisTimecodeFormatterDeputyCollection",
    0,
    &Object::descriptor,
    []() -> Ref<Object> { return std::make_shared<_QKTimecodeFormatterDeputyCollection>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<_QKTimecodeFormatterDeputyCollection>(coder); }};

// A format's deputy: where it is held, its class, and its key in an archive.
struct _QKTimecodeFormatterDeputyCollection::Row {
  Ref<QKFormatDeputy> _QKTimecodeFormatterDeputyCollection::*deputy;
  const ClassDescriptor* descriptor;
  std::string_view key;
};

constinit const _QKTimecodeFormatterDeputyCollection::Row _QKTimecodeFormatterDeputyCollection::kRows[7] = {
    {&_QKTimecodeFormatterDeputyCollection::SMPTEDeputy_, &QKSMPTETimecodeFormatDeputy::descriptor,
     "_OrbisTimecodeFormatterDeputyCollectionSMPTE"},
    {&_QKTimecodeFormatterDeputyCollection::HMSDeputy_, &QKHMSTimecodeFormatDeputy::descriptor,
     "_OrbisTimecodeFormatterDeputyCollectionHMS"},
    {&_QKTimecodeFormatterDeputyCollection::videoDeputy_, &QKOneDVideoTimecodeFormatDeputy::descriptor,
     "_OrbisTimecodeFormatterDeputyCollectionVideo"},
    {&_QKTimecodeFormatterDeputyCollection::audioDeputy_, &QKOneDAudioTimecodeFormatDeputy::descriptor,
     "_OrbisTimecodeFormatterDeputyCollectionAudio"},
    {&_QKTimecodeFormatterDeputyCollection::secondsDeputy_, &QKOneDTimeTimecodeFormatDeputy::descriptor,
     "_OrbisTimecodeFormatterDeputyCollectionSeconds"},
    {&_QKTimecodeFormatterDeputyCollection::barsBeatsDeputy_, &QKMeasuredTimecodeFormatDeputy::descriptor,
     "_OrbisTimecodeFormatterDeputyCollectionBarsBeats"},
    {&_QKTimecodeFormatterDeputyCollection::feetFramesDeputy_, &QKFFTimecodeFormatDeputy::descriptor,
     "_OrbisTimecodeFormatterDeputyCollectionFeetFrames"},
};

_QKTimecodeFormatterDeputyCollection::_QKTimecodeFormatterDeputyCollection() {
  for (const Row& row : kRows) this->*row.deputy = std::static_pointer_cast<QKFormatDeputy>(row.descriptor->make());
}

_QKTimecodeFormatterDeputyCollection::_QKTimecodeFormatterDeputyCollection(
    const _QKTimecodeFormatterDeputyCollection& other)
    : Object(other) {
  *this = other;
}

_QKTimecodeFormatterDeputyCollection& _QKTimecodeFormatterDeputyCollection::operator=(
    const _QKTimecodeFormatterDeputyCollection& other) {
  if (this == &other) return *this;
  for (const Row& row : kRows) {
    const Ref<QKFormatDeputy>& deputy = other.*row.deputy;
    this->*row.deputy = deputy ? copyOf(*deputy) : nullptr;
  }
  return *this;
}

_QKTimecodeFormatterDeputyCollection::~_QKTimecodeFormatterDeputyCollection() = default;

void* _QKTimecodeFormatterDeputyCollection::asProtocol(const Protocol& protocol) {
  return &protocol == &Copying::protocol || &protocol == &Coding::protocol ? this : nullptr;
}

Ref<Object> _QKTimecodeFormatterDeputyCollection::copy() const {
  return std::make_shared<_QKTimecodeFormatterDeputyCollection>(*this);
}

Ref<QKFormatDeputy> _QKTimecodeFormatterDeputyCollection::deputyForFormat(QKTimecodeFormat format) const {
  const auto index = static_cast<std::uint64_t>(format);
  return index < std::size(kRows) ? this->*kRows[index].deputy : nullptr;
}

QKFormatDeputy* _QKTimecodeFormatterDeputyCollection::borrowedDeputyForFormat(QKTimecodeFormat format) const {
  const auto index = static_cast<std::uint64_t>(format);
  return index < std::size(kRows) ? (this->*kRows[index].deputy).get() : nullptr;
}

void _QKTimecodeFormatterDeputyCollection::setDeputy(Ref<QKFormatDeputy> deputy, QKTimecodeFormat format) {
  const auto index = static_cast<std::uint64_t>(format);
  if (index < std::size(kRows)) this->*kRows[index].deputy = std::move(deputy);
}

// ---- Making ----

const ClassDescriptor QKTimecodeFormatter::descriptor{
    "QKTimecodeFormatter",
    "OrbisTimecodeFormatter",
    4,
    &Formatter::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKTimecodeFormatter>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKTimecodeFormatter>(coder); }};

QKTimecodeFormatter::QKTimecodeFormatter() : defaultObjectPrototype_(std::make_shared<QKExtendedTimecode>()) {}

QKTimecodeFormatter::QKTimecodeFormatter(const QKTimecodeFormatter& other) : Formatter(other) { *this = other; }

QKTimecodeFormatter& QKTimecodeFormatter::operator=(const QKTimecodeFormatter& other) {
  if (this == &other) return *this;
  SMPTEStringInterpretation_ = other.SMPTEStringInterpretation_;
  allowsNegative_ = other.allowsNegative_;
  currentTimecode_ = nullptr;
  defaultObjectPrototype_ = copyOrNull(other.defaultObjectPrototype_);
  format_ = other.format_;
  formatDeputies_ = other.formatDeputies_;
  maximumTimecode_ = copyOrNull(other.maximumTimecode_);
  minimumTimecode_ = copyOrNull(other.minimumTimecode_);
  nilSymbol_ = other.nilSymbol_;
  return *this;
}

QKTimecodeFormatter::~QKTimecodeFormatter() { NotificationCenter::defaultCenter().removeObserversOf(this); }

void* QKTimecodeFormatter::asProtocol(const Protocol& protocol) {
  return &protocol == &Copying::protocol || &protocol == &Coding::protocol ? this : nullptr;
}

Ref<Object> QKTimecodeFormatter::copy() const { return std::make_shared<QKTimecodeFormatter>(*this); }

// ---- Properties ----

void QKTimecodeFormatter::setTimecodeFormat(QKTimecodeFormat format) {
  if (format == format_) return;
  format_ = format;
  postFormatChanged(false);
}

Ref<QKFormatDeputy> QKTimecodeFormatter::deputyForFormat(QKTimecodeFormat format) const {
  return formatDeputies_.deputyForFormat(format);
}

void QKTimecodeFormatter::setDeputy(Ref<QKFormatDeputy> deputy, QKTimecodeFormat format) {
  formatDeputies_.setDeputy(std::move(deputy), format);
}

Ref<Object> QKTimecodeFormatter::currentTimecode() const { return copyOrNull(currentTimecode_); }

void QKTimecodeFormatter::setAllowsNegative(bool flag) {
  if (flag == allowsNegative_) return;
  allowsNegative_ = flag;
  postFormatChanged(!flag && clearNegativeBounds());
}

Ref<Object> QKTimecodeFormatter::minimum() const { return copyOrNull(minimumTimecode_); }

void QKTimecodeFormatter::setMinimum(Object* minimum) { setBound(&minimumTimecode_, maximumTimecode_, 1, minimum); }

Ref<Object> QKTimecodeFormatter::maximum() const { return copyOrNull(maximumTimecode_); }

void QKTimecodeFormatter::setMaximum(Object* maximum) { setBound(&maximumTimecode_, minimumTimecode_, -1, maximum); }

// `clampedSide` is the order of a bound that lies on the wrong side of the other one.
void QKTimecodeFormatter::setBound(Ref<Object>* bound, const Ref<Object>& otherBound, int clampedSide, Object* object) {
  privateVerifyAsBound(object);
  if (object && otherBound && compareValues(object, otherBound) * clampedSide > 0) object = otherBound.get();
  if (object == bound->get()) return;
  *bound = object ? object->copy() : nullptr;
  if (!allowsNegative_) clearNegativeBounds();
  postFormatChanged(true);
}

bool QKTimecodeFormatter::clearNegativeBounds() {
  const bool clearedMinimum = clearNegative(minimumTimecode_.get());
  return clearNegative(maximumTimecode_.get()) || clearedMinimum;
}

void QKTimecodeFormatter::privateVerifyAsBound(Object* object) const {
  if (!object || (conformsTo(object, Copying::protocol) && conformsTo(object, Coding::protocol) &&
                  conformsTo(object, QKBasicTimecode::protocol))) {
    return;
  }
  assertionFailed(
      {"-[QKTimecodeFormatter privateVerifyAsBound:]", this, kFile, __LINE__,
       "Invalid object for QKTimecodeFormatter minimum or maximum. Object must conform to QKBasicTimecode, Copying and Coding protocols and also implement -compare:"});
}

std::optional<std::string> QKTimecodeFormatter::defaultNilSymbol() const {
  const QKFormatDeputy* deputy = activeDeputy();
  return deputy ? std::optional(deputy->defaultNilSymbol()) : std::nullopt;
}

Ref<Object> QKTimecodeFormatter::defaultObjectPrototype() const { return copyOrNull(defaultObjectPrototype_); }

void QKTimecodeFormatter::setDefaultObjectPrototype(Ref<Object> prototype) {
  defaultObjectPrototype_ = prototype ? std::move(prototype) : std::make_shared<QKExtendedTimecode>();
}

void QKTimecodeFormatter::_setOrbSMPTETimecodeFormatterUsesHighOrderTyping(bool flag) {
  if (!usesHighOrderTyping) usesHighOrderTyping = flag;
}

bool QKTimecodeFormatter::_orbSMPTETimecodeFormatterUsesHighOrderTyping() {
  if (!usesHighOrderTyping) usesHighOrderTyping = false;
  return *usesHighOrderTyping;
}

void QKTimecodeFormatter::postFormatChanged(bool minOrMaxChanged) const {
  static const UserInfo& info = *new UserInfo{{std::string(QKTimecodeFormatterMinOrMaxChanged), Number::boolean(true)}};
  NotificationCenter::defaultCenter().post(QKTimecodeFormatterFormatChangedNotification, this,
                                           minOrMaxChanged ? &info : nullptr);
}

// ---- Whole strings ----

QKFormatDeputy* QKTimecodeFormatter::activeDeputy() const { return formatDeputies_.borrowedDeputyForFormat(format_); }

std::optional<std::string> QKTimecodeFormatter::stringForObjectValue(Object* object) const {
  if (!object) return nilSymbol_ ? nilSymbol_ : defaultNilSymbol();
  if (!allowsNegative_ && detail::isNegative<QKBasicTimecode>(object)) {
    assertionFailed(
        {"-[QKTimecodeFormatter stringForObjectValue:]", this, kFile, 748,
         "-[QKTimecodeFormatter stringForObjectValue:] negative timecode in formatter that doesn't accept negatives.\n\n\tBecause the SMPTE spec does not allow negative timecodes, QKTimecodeFormatter defaults to only handling non-negative timecodes. However, there is a common convention to interpret negative timecodes as a sort of counting backwards. If you want this timecode formatter to handle negative timecodes, you'll have to call -[QKTimecodeFormatter setAllowsNegative:] and pass YES before you give it any negative timecodes (you may also set this attribute in Designer). Once you do that, you'll no longer get this assertion.\n\n"});
  }
  const QKFormatDeputy* deputy = activeDeputy();
  if (!deputy) return std::nullopt;
  return deputy->stringForObjectValue(object, *this);
}

// Asked only where there is a symbol: one set, or the deputy's.
bool QKTimecodeFormatter::isNilSymbol(std::string_view text, const QKFormatDeputy* deputy) const {
  if (nilSymbol_) return text == *nilSymbol_;
  constexpr char kDash = *"\u2014";  // its first byte: those of this library's own deputies begin with it
  if (!text.starts_with(kDash) && isOwnDeputy(*deputy)) return false;
  return text == deputy->defaultNilSymbol();
}

// A whole label typed over a value of this library's own, where no bound, symbol or rule steps in: what parsing comes to,
// without its steps. Null for anything else.
Ref<Object> QKTimecodeFormatter::valueOfUsualLabel(std::string_view string) const {
  const bool isPlain = format_ == QKTimecodeFormatSMPTE && !nilSymbol_ && !minimumTimecode_ && !maximumTimecode_ &&
                       (SMPTEStringInterpretation_ == OrbSMPTEStringInterpretationPreservingUpper ||
                        SMPTEStringInterpretation_ == OrbSMPTEStringInterpretationDiscardingUpper);
  const QKFormatDeputy* deputy = isPlain ? activeDeputy() : nullptr;
  SMPTEFieldSet label;
  if (!deputy || &typeid(*deputy) != &typeid(QKSMPTETimecodeFormatDeputy) ||
      !static_cast<const QKSMPTETimecodeFormatDeputy*>(deputy)->readUsualLabel(&label, string)) {
    return nullptr;
  }
  const auto* current = detail::ownTimecode(currentTimecode_.get());
  return current ? current->copyAtUsualLabel(label) : nullptr;
}

bool QKTimecodeFormatter::getObjectValue(Ref<Object>* object, std::string_view string, std::string* error) {
  if (Ref<Object> value = valueOfUsualLabel(string)) {
    if (object) *object = std::move(value);
    return true;
  }
  const QKFormatDeputy* deputy = activeDeputy();
  bool isTimecode = conformsTo(currentTimecode_.get(), QKBasicTimecode::protocol);
  if (nilSymbol_ || deputy) {
    if (isNilSymbol(string, deputy)) {
      if (object) object->reset();
      return true;
    }
    const auto* text = isTimecode ? nullptr : classCast<TextObject>(currentTimecode_.get());
    if (!currentTimecode_ || (text && isNilSymbol(text->text(), deputy))) {
      currentTimecode_ = defaultObjectPrototype();
      isTimecode = conformsTo(currentTimecode_.get(), QKBasicTimecode::protocol);
    }
  }
  if (!deputy) return detail::fail(error, "No deputy for current format.");
  if (!isTimecode || !conformsTo(currentTimecode_.get(), deputy->requiredProtocol())) {
    return detail::fail(error, detail::kObjectDoesNotConform);
  }
  Ref<Object> result;
  if (!deputy->getObjectValue(&result, string, *this, error)) return false;
  if (mayBeOutside(result.get())) imposeBounds(&result);
  if (object) *object = std::move(result);
  return true;
}

// Whether a result may have run out of range, be negative without leave, or lie beyond a bound: false for a value of this
// library's own in ticks that is plainly neither.
bool QKTimecodeFormatter::mayBeOutside(Object* result) const {
  const auto* timecode = detail::ownTimecode(result);
  if (minimumTimecode_ || maximumTimecode_ || !timecode || timecode->useSeconds()) return true;
  const MediaTime& time = timecode->storedTime();
  if (!time.isNumeric() || time.timescale <= 0 || time.value < 0) return true;
  // Labels end at 100 hours.
  const auto* row = timecodeModeRow(timecode->timecodeMode());
  const bool isFarBelow = row && (time.timescale == row->tickRate || time.timescale % row->tickRate == 0) &&
                          time.value < std::int64_t{99} * 3600 * time.timescale;
  return !isFarBelow && !SMPTEHas24HourRollover();
}

void QKTimecodeFormatter::imposeBounds(Ref<Object>* result) const {
  holdInRange(result->get(), currentTimecode_.get());
  if (conformsTo(result->get(), QKBasicTimecode::protocol)) {
    if (!allowsNegative_) clearNegative(result->get());
    const Bounds bounds = effectiveBounds(result->get());
    if (bounds.lowest && compareValues(result->get(), bounds.lowest) < 0) *result = bounds.lowest->copy();
    if (bounds.highest && compareValues(result->get(), bounds.highest) > 0) *result = bounds.highest->copy();
  } else {
    assertionFailed(
        {"-[QKTimecodeFormatter getObjectValue:forString:errorDescription:]", this, kFile, 783,
         "-[QKTimecodeFormatter getObjectValue:forString:errorDescription:] Impossible! deputy returned a non-timecode object"});
  }
}

// The highest value that SMPTE fields show: 99:59:59 and the last frame with its last fraction shown. Null outside the
// SMPTE format and for a value without SMPTE fields.
Ref<Object> QKTimecodeFormatter::SMPTECeiling(Object* object) const {
  if (format_ != QKTimecodeFormatSMPTE || !protocolCast<QKSMPTETimecode>(object)) return nullptr;
  Ref<Object> ceiling = object->copy();
  auto* timecode = protocolCast<QKBasicTimecode>(ceiling.get());
  auto* fields = protocolCast<QKSMPTETimecode>(ceiling.get());
  if (!timecode || !fields) return nullptr;
  timecode->clearTimecode();
  fields->setSMPTEHours(100);
  fields->subtractSMPTEHours(0, 0, 0, 1, 0, 0);
  if (SMPTEDisplaysQuarterFrames()) {
    fields->addSMPTEHours(0, 0, 0, 0, 0, 3);
  } else if (SMPTEDisplaysSubframes()) {
    fields->addSMPTEHours(0, 0, 0, 0, 79, 0);
  }
  return ceiling;
}

QKTimecodeFormatter::Bounds QKTimecodeFormatter::effectiveBounds(Object* object) const {
  Bounds bounds{minimumTimecode_, maximumTimecode_};
  if (SMPTEHas24HourRollover()) return bounds;
  const Ref<Object> ceiling = SMPTECeiling(object);
  if (!ceiling) return bounds;
  if (!bounds.highest || compareValues(ceiling.get(), bounds.highest) < 0) bounds.highest = ceiling;
  if (allowsNegative_) {
    Ref<Object> floor = ceiling->copy();
    protocolCast<QKBasicTimecode>(floor.get())->setIsNegative(true);
    if (!bounds.lowest || compareValues(floor.get(), bounds.lowest) > 0) bounds.lowest = std::move(floor);
  }
  return bounds;
}

bool QKTimecodeFormatter::isPartialStringValid(std::string_view partial, std::optional<std::string>* newString,
                                               std::string* error) const {
  if (!partial.empty() && CharacterSet::whitespace().contains(decodeCharacter(partial).character)) return false;
  if (newString) newString->reset();
  const QKFormatDeputy* deputy = activeDeputy();
  return deputy && deputy->isPartialStringValid(partial, error);
}

std::optional<CharacterSet> QKTimecodeFormatter::legalCharacterSet() const {
  const QKFormatDeputy* deputy = activeDeputy();
  if (!deputy) return std::nullopt;
  CharacterSet set = deputy->legalCharacterSet();
  set.add("+-");
  return set;
}

Range QKTimecodeFormatter::secondaryColorRange(std::string_view) const { return {kNotFound, 0}; }

// ---- Segments ----

QKFormatDeputy* QKTimecodeFormatter::deputyServing(Object* object) const {
  QKFormatDeputy* deputy = object ? activeDeputy() : nullptr;
  return deputy && conformsTo(object, deputy->requiredProtocol()) ? deputy : nullptr;
}

QKFormatDeputy* QKTimecodeFormatter::deputyShowing(std::int64_t tag, Object* object) const {
  QKFormatDeputy* deputy = deputyServing(object);
  return deputy && deputy->segmentIndexForTag(tag, object) >= 0 ? deputy : nullptr;
}

// Of the nil symbol or the deputy's default.
std::uint64_t QKTimecodeFormatter::nilSymbolLength() const {
  return characterCount(nilSymbol_ ? *nilSymbol_ : defaultNilSymbol().value_or(std::string()));
}

std::int64_t QKTimecodeFormatter::segmentCountInObjectValue(Object* object) const {
  if (!object) return 1;
  const QKFormatDeputy* deputy = deputyServing(object);
  return deputy ? deputy->segmentCountInObjectValue(object) : 0;
}

std::int64_t QKTimecodeFormatter::segmentTagForIndex(std::int64_t index, Object* object) const {
  const QKFormatDeputy* deputy = deputyServing(object);
  return deputy ? deputy->segmentTagForIndex(index, object) : 0;
}

std::int64_t QKTimecodeFormatter::segmentIndexForTag(std::int64_t tag, Object* object) const {
  const QKFormatDeputy* deputy = deputyServing(object);
  return deputy ? deputy->segmentIndexForTag(tag, object) : 0;
}

std::int64_t QKTimecodeFormatter::segmentFieldWidthForTag(std::int64_t tag, Object* object) const {
  if (!object) return static_cast<std::int64_t>(std::max<std::uint64_t>(nilSymbolLength(), 1));
  if (!conformsTo(object, QKBasicTimecode::protocol)) {
    assertionFailed({"-[QKTimecodeFormatter segmentFieldWidthForTag:inObjectValue:]", this, kFile, 1095,
                     "-[QKTimecodeFormatter segmentFieldWidthForTag:inObjectValue:] - illegal value"});
  }
  const QKFormatDeputy* deputy = deputyShowing(tag, object);
  return deputy ? deputy->segmentFieldWidthForTag(tag, object) : 0;
}

std::int64_t QKTimecodeFormatter::defaultSelectedSegmentTagInObjectValue(Object* object) const {
  const QKFormatDeputy* deputy = activeDeputy();
  return object && deputy ? deputy->defaultSelectedSegmentTagInObjectValue(object) : 0;
}

void QKTimecodeFormatter::segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight,
                                                   Object* object) const {
  if (atLeft) *atLeft = false;
  if (atRight) *atRight = false;
  if (const QKFormatDeputy* deputy = deputyShowing(tag, object)) {
    deputy->segmentWithTagHasPadding(tag, atLeft, atRight, object);
  }
}

Range QKTimecodeFormatter::substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const {
  if (!object) return {0, nilSymbolLength()};
  const QKFormatDeputy* deputy = tag == kNoSegmentTag ? nullptr : deputyShowing(tag, object);
  if (!deputy) return {};
  if (!allowsNegative_ && detail::isNegative<QKBasicTimecode>(object)) {
    assertionFailed(
        {"-[QKTimecodeFormatter substringRangeForSegmentWithTag:inObjectValue:]", this, kFile, 1141,
         "-[QKTimecodeFormatter substringRangeForSegmentWithTag:inObjectValue:] negative timecode in formatter that doesn't allow negative"});
  }
  return deputy->substringRangeForSegmentWithTag(tag, object);
}

Formatter* QKTimecodeFormatter::formatterForSegmentTag(std::int64_t tag, Object* object) {
  const QKFormatDeputy* deputy = deputyShowing(tag, object);
  if (!deputy) return nullptr;
  NumberFormatter* formatter = deputy->formatterForSegmentTag(tag, object);
  if (!formatter) return this;
  return deputy->segmentIndexForTag(tag, object) == 0 ? leadingFormatter(*formatter, tag) : formatter;
}

NumberFormatter* QKTimecodeFormatter::leadingFormatter(const NumberFormatter& deputys, std::int64_t tag) {
  Ref<NumberFormatter>& own = leadingFormatters_[{format_, tag}];
  if (own && &own->classDescriptor() == &deputys.classDescriptor()) {
    *own = deputys;
  } else {
    own = copyOf(deputys);
  }
  own->setMinimum(allowsNegative_ ? std::nullopt : std::optional<Number>(0));
  return own.get();
}

bool QKTimecodeFormatter::allowsSegmentEditing() const {
  const QKFormatDeputy* deputy = activeDeputy();
  return deputy && deputy->allowsSegmentEditing();
}

// ---- Stepping and typing ----

void QKTimecodeFormatter::imposeSegmentBounds(Ref<Object>* result, std::int64_t tag, Object* object) const {
  const QKFormatDeputy* deputy = activeDeputy();
  const Bounds bounds = effectiveBounds(result->get());
  if (bounds.lowest && compareValues(result->get(), bounds.lowest) < 0) {
    deputy->getObjectValueNearestToMinimum(result, bounds.lowest.get(), tag, object);
  }
  if (bounds.highest && compareValues(result->get(), bounds.highest) > 0) {
    deputy->getObjectValueNearestToMaximum(result, bounds.highest.get(), tag, object);
  }
}

void QKTimecodeFormatter::getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag,
                                                                   std::int64_t increment, Object* object) const {
  const Ref<Object> prototype = object ? nullptr : defaultObjectPrototype();
  if (!object) object = prototype.get();
  if (!conformsTo(object, QKBasicTimecode::protocol)) {
    assertionFailed(
        {"-[QKTimecodeFormatter getObjectValue:incrementingSegmentWithTag:byIncrement:inObjectValue:]", this, kFile,
         1156,
         "-[QKTimecodeFormatter getObjectValue:incrementingSegmentWithTag:byIncrement:inObjectValue:] - illegal value."});
  }
  const QKFormatDeputy* deputy = deputyServing(object);
  if (!deputy) {
    if (result) *result = std::make_shared<Number>(0);
    return;
  }
  Ref<Object> stepped;
  deputy->getObjectValueIncrementingSegmentWithTag(&stepped, tag, increment, object);
  if (!stepped) return;
  if (!mayBeOutside(stepped.get())) {
    if (result) *result = std::move(stepped);
    return;
  }
  holdInRange(stepped.get(), object);
  imposeSegmentBounds(&stepped, tag, object);
  holdInRange(stepped.get(), object);  // ticks may not hold a bound
  if (!allowsNegative_ && detail::isNegative<QKBasicTimecode>(stepped.get())) {
    const Ref<Object> copy = object->copy();
    stepped = nullptr;
    deputy->getObjectValueZeroingSegmentWithTag(&stepped, tag, copy.get());
    if (!stepped) stepped = object->copy();
  }
  if (result) *result = std::move(stepped);
}

bool QKTimecodeFormatter::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string,
                                                          std::int64_t tag, Object* object, std::string* error) {
  const Ref<Object> prototype = object ? nullptr : defaultObjectPrototype();
  if (!object) object = prototype.get();
  const QKFormatDeputy* deputy = deputyServing(object);
  if (!deputy) return detail::fail(error, detail::kValueDoesNotConform);
  const std::int64_t index = deputy->segmentIndexForTag(tag, object);
  if (index < 0) return detail::failNotVisible(error, tag);
  if (index == 0) {
    const NumberFormatter* shared = deputy->formatterForSegmentTag(tag, object);
    if (shared && !leadingFormatter(*shared, tag)->getObjectValue(nullptr, string, error)) return false;
  }
  const std::int32_t timescale = timescaleOf(object);
  const bool mayBeNegative = allowsNegative_ || isKnownNegative(object);
  Ref<Object> typed;
  if (!deputy->getObjectValueForSegmentWithTag(&typed, string, tag, object, error)) return false;
  // A number out of range leaves neither an infinity nor a sign that could not be shown.
  for (Object* changed : {object, typed.get()}) {
    holdInRange(changed, timescale);
    if (!mayBeNegative && isKnownNegative(changed)) clearNegative(changed);
  }
  imposeSegmentBounds(&typed, tag, object);
  holdInRange(typed.get(), timescale);  // ticks may not hold a bound
  if (result) *result = std::move(typed);
  return true;
}

// ---- SMPTE settings ----

namespace {

template <class Deputy>
Deputy* deputyOfClass(const _QKTimecodeFormatterDeputyCollection& deputies, QKTimecodeFormat format) {
  return classCast<Deputy>(static_cast<Object*>(deputies.borrowedDeputyForFormat(format)));
}

}  // namespace

// The value of one setting of a deputy; 0 or false where the deputy is absent or of another class.
template <class Deputy, class Value>
Value QKTimecodeFormatter::deputySetting(QKTimecodeFormat format, Value (Deputy::*get)() const) const {
  const auto* deputy = deputyOfClass<Deputy>(formatDeputies_, format);
  return deputy ? (deputy->*get)() : Value{};
}

template <class Deputy, class Value>
void QKTimecodeFormatter::setDeputySetting(QKTimecodeFormat format, Value (Deputy::*get)() const,
                                           void (Deputy::*set)(Value), Value value) {
  auto* deputy = deputyOfClass<Deputy>(formatDeputies_, format);
  if (!deputy || (deputy->*get)() == value) return;
  (deputy->*set)(value);
  postFormatChanged(false);
}

bool QKTimecodeFormatter::SMPTEDisplaysHours() const {
  return deputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysHours);
}

void QKTimecodeFormatter::setSMPTEDisplaysHours(bool flag) {
  setDeputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysHours,
                   &QKSMPTETimecodeFormatDeputy::setDisplaysHours, flag);
}

bool QKTimecodeFormatter::SMPTEDisplaysFrames() const {
  return deputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysFrames);
}

void QKTimecodeFormatter::setSMPTEDisplaysFrames(bool flag) {
  setDeputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysFrames,
                   &QKSMPTETimecodeFormatDeputy::setDisplaysFrames, flag);
}

bool QKTimecodeFormatter::SMPTEDisplaysSubframes() const {
  return deputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysSubframes);
}

void QKTimecodeFormatter::setSMPTEDisplaysSubframes(bool flag) {
  setDeputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysSubframes,
                   &QKSMPTETimecodeFormatDeputy::setDisplaysSubframes, flag);
}

bool QKTimecodeFormatter::SMPTEDisplaysQuarterFrames() const {
  return deputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysQuarterFrames);
}

void QKTimecodeFormatter::setSMPTEDisplaysQuarterFrames(bool flag) {
  setDeputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::displaysQuarterFrames,
                   &QKSMPTETimecodeFormatDeputy::setDisplaysQuarterFrames, flag);
}

bool QKTimecodeFormatter::SMPTEHas24HourRollover() const {
  return deputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::has24HourRollover);
}

void QKTimecodeFormatter::setSMPTEHas24HourRollover(bool flag) {
  setDeputySetting(QKTimecodeFormatSMPTE, &QKSMPTETimecodeFormatDeputy::has24HourRollover,
                   &QKSMPTETimecodeFormatDeputy::setHas24HourRollover, flag);
}

std::int64_t QKTimecodeFormatter::HMSSecondsDecimalPlaces() const {
  return deputySetting(QKTimecodeFormatHMS, &QKHMSTimecodeFormatDeputy::secondsDecimalPlaces);
}

void QKTimecodeFormatter::setHMSSecondsDecimalPlaces(std::int64_t places) {
  setDeputySetting(QKTimecodeFormatHMS, &QKHMSTimecodeFormatDeputy::secondsDecimalPlaces,
                   &QKHMSTimecodeFormatDeputy::setSecondsDecimalPlaces, places);
}

bool QKTimecodeFormatter::HMSHas24HourRollover() const {
  return deputySetting(QKTimecodeFormatHMS, &QKHMSTimecodeFormatDeputy::has24HourRollover);
}

void QKTimecodeFormatter::setHMSHas24HourRollover(bool flag) {
  setDeputySetting(QKTimecodeFormatHMS, &QKHMSTimecodeFormatDeputy::has24HourRollover,
                   &QKHMSTimecodeFormatDeputy::setHas24HourRollover, flag);
}

std::uint64_t QKTimecodeFormatter::ODTSecondsDecimalPlaces() const {
  return deputySetting(QKTimecodeFormatSeconds, &QKOneDTimeTimecodeFormatDeputy::secondsDecimalPlaces);
}

void QKTimecodeFormatter::setODTSecondsDecimalPlaces(std::uint64_t places) {
  setDeputySetting(QKTimecodeFormatSeconds, &QKOneDTimeTimecodeFormatDeputy::secondsDecimalPlaces,
                   &QKOneDTimeTimecodeFormatDeputy::setSecondsDecimalPlaces, places);
}

std::int64_t QKTimecodeFormatter::MSeparator() const {
  return deputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::separator);
}

void QKTimecodeFormatter::setMSeparator(std::int64_t separator) {
  setDeputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::separator,
                   &QKMeasuredTimecodeFormatDeputy::setSeparator, separator);
}

bool QKTimecodeFormatter::MDisplaysDivisionsAndTicks() const {
  return deputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::displaysDivisionsAndTicks);
}

void QKTimecodeFormatter::setMDisplaysDivisionsAndTicks(bool flag) {
  setDeputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::displaysDivisionsAndTicks,
                   &QKMeasuredTimecodeFormatDeputy::setDisplaysDivisionsAndTicks, flag);
}

bool QKTimecodeFormatter::MIsDivisionsFieldDropped() const {
  return deputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::isDivisionsFieldDropped);
}

void QKTimecodeFormatter::setMIsDivisionsFieldDropped(bool flag) {
  setDeputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::isDivisionsFieldDropped,
                   &QKMeasuredTimecodeFormatDeputy::setIsDivisionsFieldDropped, flag);
}

std::int64_t QKTimecodeFormatter::MBeatsDecimalPlaces() const {
  return deputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::beatsDecimalPlaces);
}

void QKTimecodeFormatter::setMBeatsDecimalPlaces(std::int64_t places) {
  setDeputySetting(QKTimecodeFormatBarsBeats, &QKMeasuredTimecodeFormatDeputy::beatsDecimalPlaces,
                   &QKMeasuredTimecodeFormatDeputy::setBeatsDecimalPlaces, places);
}

std::int64_t QKTimecodeFormatter::FFSeparator() const {
  return deputySetting(QKTimecodeFormatFeetFrames, &QKFFTimecodeFormatDeputy::separator);
}

void QKTimecodeFormatter::setFFSeparator(std::int64_t separator) {
  setDeputySetting(QKTimecodeFormatFeetFrames, &QKFFTimecodeFormatDeputy::separator,
                   &QKFFTimecodeFormatDeputy::setSeparator, separator);
}

bool QKTimecodeFormatter::FFDisplaysQuarterFrames() const {
  return deputySetting(QKTimecodeFormatFeetFrames, &QKFFTimecodeFormatDeputy::displaysQuarterFrames);
}

void QKTimecodeFormatter::setFFDisplaysQuarterFrames(bool flag) {
  setDeputySetting(QKTimecodeFormatFeetFrames, &QKFFTimecodeFormatDeputy::displaysQuarterFrames,
                   &QKFFTimecodeFormatDeputy::setDisplaysQuarterFrames, flag);
}

bool QKTimecodeFormatter::SMPTEDisplaysFrameDivision() const {
  return SMPTEDisplaysSubframes() || SMPTEDisplaysQuarterFrames();
}

void QKTimecodeFormatter::setSMPTEDisplaysFrameDivision(bool flag) {
  if (flag == SMPTEDisplaysFrameDivision()) return;
  setSMPTEDisplaysSubframes(flag);
  setSMPTEDisplaysQuarterFrames(false);
}

std::array<std::string_view, 2> QKTimecodeFormatter::keyPathsForValuesAffectingSMPTEDisplaysFrameDivision() {
  return {"SMPTEDisplaysSubframes", "SMPTEDisplaysQuarterFrames"};
}

// ---- Coding ----

namespace {

// Every class that a video timecode of the library can have.
constexpr const ClassDescriptor* kTimecodeClasses[] = {&QKVideoTimecode::descriptor, &QKTimecode::descriptor,
                                                       &QKExtendedTimecode::descriptor};
constexpr const ClassDescriptor* kTextClass[] = {&TextObject::descriptor};

// The formats whose deputies the class sets name: the audio frames are left out, on purpose.
constexpr const ClassDescriptor* kCollectionClasses[] = {&_QKTimecodeFormatterDeputyCollection::descriptor,
                                                         &QKSMPTETimecodeFormatDeputy::descriptor,
                                                         &QKHMSTimecodeFormatDeputy::descriptor,
                                                         &QKOneDVideoTimecodeFormatDeputy::descriptor,
                                                         &QKOneDTimeTimecodeFormatDeputy::descriptor,
                                                         &QKMeasuredTimecodeFormatDeputy::descriptor,
                                                         &QKFFTimecodeFormatDeputy::descriptor};

}  // namespace

ClassSet _QKTimecodeFormatterDeputyCollection::keyedUnarchiverClasses() { return kCollectionClasses; }

_QKTimecodeFormatterDeputyCollection::_QKTimecodeFormatterDeputyCollection(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  for (const Row& row : kRows) {
    const ClassSet classes(&row.descriptor, 1);
    const Ref<Object> deputy =
        coder.allowsKeyedCoding() ? coder.decodeObject(classes, row.key) : coder.decodeObject(classes);
    if (classCast<QKFormatDeputy>(deputy.get())) this->*row.deputy = std::static_pointer_cast<QKFormatDeputy>(deputy);
  }
}

void _QKTimecodeFormatterDeputyCollection::encodeWithCoder(KeyedCoder& coder) const {
  for (const Row& row : kRows) {
    const Object* const deputy = (this->*row.deputy).get();
    if (coder.allowsKeyedCoding()) {
      coder.encodeObject(deputy, row.key);
    } else {
      coder.encodeObject(deputy);
    }
  }
}

ClassSet QKTimecodeFormatter::keyedUnarchiverClasses() {
  static const auto& classes = *[] {
    auto* all = new std::vector<const ClassDescriptor*>{&QKTimecodeFormatter::descriptor, &QKVideoTimecode::descriptor,
                                                        &TextObject::descriptor};
    all->insert(all->end(), std::begin(kCollectionClasses), std::end(kCollectionClasses));
    return all;
  }();
  return classes;
}

// Reads the deputies of an archive of that version.
void QKTimecodeFormatter::takeArchivedDeputies(const Ref<Object>& archived, std::int64_t archivedVersion) {
  if (archivedVersion >= 2) {
    const auto* collection = classCast<_QKTimecodeFormatterDeputyCollection>(archived.get());
    if (collection) formatDeputies_ = *collection;
    return;
  }
  const auto* dictionary = classCast<NumberedObjects>(archived.get());
  if (!dictionary) return;
  for (const auto& [format, deputy] : dictionary->objects()) {
    if (!classCast<QKFormatDeputy>(deputy.get())) continue;
    setDeputy(std::static_pointer_cast<QKFormatDeputy>(deputy), static_cast<QKTimecodeFormat>(format));
  }
}

QKTimecodeFormatter::QKTimecodeFormatter(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  const bool isKeyed = coder.allowsKeyedCoding();
  const std::int64_t archivedVersion = isKeyed ? coder.decodeInteger("OrbisTimecodeFormatterVersion")
                                               : coder.versionForClassName("OrbisTimecodeFormatter");
  const auto decodeObject = [&](ClassSet classes, std::string_view key) {
    return isKeyed ? coder.decodeObject(classes, key) : coder.decodeObject(classes);
  };
  const auto decodeInteger = [&](std::string_view key) {
    if (isKeyed) return coder.decodeInteger(key);
    Number value;
    coder.decodeValues("i", std::span<Number>(&value, 1));
    return value.int64Value();
  };

  std::vector<const ClassDescriptor*> deputyClasses(std::begin(kCollectionClasses), std::end(kCollectionClasses));
  deputyClasses.insert(deputyClasses.end(),
                       {&QKOneDAudioTimecodeFormatDeputy::descriptor, &NumberedObjects::descriptor});
  takeArchivedDeputies(decodeObject(deputyClasses, "OTFFormatDeputies"), archivedVersion);
  format_ = static_cast<QKTimecodeFormat>(decodeInteger("OTFFormat"));
  allowsNegative_ = isKeyed ? coder.decodeBool("OTFAllowsNegative") : decodeInteger({}) != 0;
  // Copies: an archive may hold one object in several places, and a bound is changed in place.
  minimumTimecode_ = copyOrNull(decodeObject(kTimecodeClasses, "OTFMinimumTimecode"));
  maximumTimecode_ = copyOrNull(decodeObject(kTimecodeClasses, "OTFMaximumTimecode"));
  // No formatter archives a negative bound with negatives off; an entry held to one could not be shown.
  if (!allowsNegative_) clearNegativeBounds();
  if (isKeyed || archivedVersion >= 1) {
    const Ref<Object> symbol = decodeObject(kTextClass, "OTFNilSymbol");
    if (const auto* text = classCast<TextObject>(symbol.get())) nilSymbol_ = text->text();
    defaultObjectPrototype_ = decodeObject(kTimecodeClasses, "OTFDefaultObjectPrototype");
  }
  if (archivedVersion >= 3) {
    SMPTEStringInterpretation_ =
        static_cast<OrbSMPTEStringInterpretation>(decodeInteger("OTFSMPTEStringInterpretation"));
  }
  setDefaultObjectPrototype(std::move(defaultObjectPrototype_));
  if (archivedVersion <= 3 && nilSymbol_ && nilSymbol_->empty()) nilSymbol_ = std::nullopt;
}

void QKTimecodeFormatter::encodeWithCoder(KeyedCoder& coder) const {
  const std::optional<TextObject> symbol = nilSymbol_ ? std::optional<TextObject>(*nilSymbol_) : std::nullopt;
  const Object* const symbolObject = symbol ? &*symbol : nullptr;
  if (!coder.allowsKeyedCoding()) {
    coder.encodeObject(&formatDeputies_);
    coder.encodeValues("ii", {std::int64_t{format_}, allowsNegative_ ? 1 : 0});
    coder.encodeObject(minimumTimecode_.get());
    coder.encodeObject(maximumTimecode_.get());
    coder.encodeObject(symbolObject);
    coder.encodeObject(defaultObjectPrototype_.get());
    coder.encodeValues("i", {std::int64_t{SMPTEStringInterpretation_}});
    return;
  }
  coder.encodeInteger(version(), "OrbisTimecodeFormatterVersion");
  coder.encodeObject(&formatDeputies_, "OTFFormatDeputies");
  coder.encodeInteger(format_, "OTFFormat");
  coder.encodeBool(allowsNegative_, "OTFAllowsNegative");
  coder.encodeObject(minimumTimecode_.get(), "OTFMinimumTimecode");
  coder.encodeObject(maximumTimecode_.get(), "OTFMaximumTimecode");
  coder.encodeObject(symbolObject, "OTFNilSymbol");
  coder.encodeObject(defaultObjectPrototype_.get(), "OTFDefaultObjectPrototype");
  coder.encodeInteger(SMPTEStringInterpretation_, "OTFSMPTEStringInterpretation");
}

}  // namespace quill::inline v0
