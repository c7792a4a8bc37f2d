// Finding the nearest value inside a bound means: step k = 1, 2, 3 ... until a step passes the bound or moves nothing
// any more, and take the step before. Steps of one segment run evenly, so many ticks each, but at a few places: where they
// cross zero, which some notations mirror and then stand still at, and where drop-frame skips labels, at which a step of
// a frame stands still as well. So the search runs from one such place to the next, doubling k and halving back over the
// even part. Steps that stay uneven (minutes of drop-frame labels) stand still nowhere but at zero and are searched up to
// there in one go, and so are those of values that show no ticks, which may pass over skipped labels.

#include "QKFormatDeputy.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "../Platform/Reports.h"
#include "QKVideoTimecode.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKFormatDeputy";

// a against b, which stand in the same family of values.
int compareValues(Object* a, const Object& b) {
  const auto* timecode = protocolCast<QKBasicTimecode>(a);
  return timecode ? timecode->compare(b) : 0;
}

// A time that a huge step has driven out of range.
bool isLost(Object* object) {
  const auto* timecode = classCast<QKVideoTimecode>(object);
  return timecode && !timecode->isNumeric();
}

// The steps of one segment from a value toward a bound.
class Steps {
 public:
  Steps(const QKFormatDeputy& deputy, Object* bound, std::int64_t direction, std::int64_t tag, Object* start)
      : deputy_(deputy), bound_(bound), direction_(direction), tag_(tag), start_(start) {}

  Ref<Object> candidate(std::int64_t k) const {
    if (k == 0) return start_->copy();
    Ref<Object> result;
    deputy_.getObjectValueIncrementingSegmentWithTag(&result, tag_, direction_ * k, start_);
    return result;
  }

  // Beyond the bound, or out of range, or no value at all.
  bool isBeyond(const Ref<Object>& value) const {
    return !value || isLost(value.get()) || compareValues(bound_, *value) * direction_ < 0;
  }

  // The last step of the walk.
  std::int64_t lastInside() const {
    constexpr int kEvenParts = 8;
    std::int64_t k = 1;
    for (int part = 0; k < kFurthest; ++part) {
      if (endsAt(k)) return k - 1;
      if (endsAt(k + 1)) return k;
      k = endOfPart(k, part < kEvenParts);
    }
    return k;
  }

 private:
  static constexpr std::int64_t kFurthest = std::int64_t{1} << 61;

  // Whether the walk ends before step k: it passes the bound, or lands where the one before it did.
  bool endsAt(std::int64_t k) const {
    const Ref<Object> value = candidate(k), before = candidate(k - 1);
    return isBeyond(value) || !before || compareValues(value.get(), *before) == 0;
  }

  // Nothing for a value that is not held in ticks.
  static std::optional<std::int64_t> ticks(const Ref<Object>& value) {
    const auto* timecode = classCast<QKVideoTimecode>(value.get());
    if (!timecode || timecode->useSeconds()) return std::nullopt;
    return timecode->timeValue().value;
  }

  // The first step behind k + 1 that ends the walk, has another sign than step k, or, where steps are even, does not lie
  // as far on as the step from k to k + 1 says.
  std::int64_t endOfPart(std::int64_t k, bool isEven) const {
    const Ref<Object> first = candidate(k);
    const bool isNegative = detail::isNegative<QKBasicTimecode>(first.get());
    const auto start = ticks(first), next = ticks(candidate(k + 1));
    return firstAfter(k + 1, [&](std::int64_t n) {
      const Ref<Object> value = candidate(n);
      if (isBeyond(value) || detail::isNegative<QKBasicTimecode>(value.get()) != isNegative) return true;
      if (!isEven || !start || !next) return endsAt(n);
      const std::int64_t stride = wrappingSubtract(*next, *start);
      return ticks(value) != wrappingAdd(*start, saturatingMultiply(stride, n - k));
    });
  }

  // The first k above `from` at which the condition holds, given that it holds for all later ones too.
  template <class Condition>
  std::int64_t firstAfter(std::int64_t from, Condition holds) const {
    std::int64_t below = from, stride = 1;
    while (!holds(below + stride)) {
      below += stride;
      if (below >= kFurthest) return below;
      stride *= 2;
    }
    std::int64_t above = below + stride;
    while (above - below > 1) {
      const std::int64_t middle = below + (above - below) / 2;
      (holds(middle) ? above : below) = middle;
    }
    return above;
  }

  const QKFormatDeputy& deputy_;
  Object* bound_;
  std::int64_t direction_;
  std::int64_t tag_;
  Object* start_;
};

}  // namespace

const ClassDescriptor QKFormatDeputy::descriptor{"QKFormatDeputy", nullptr, 0, &Object::descriptor,
                                                 []() -> Ref<Object> { return std::make_shared<QKFormatDeputy>(); }};

QKFormatDeputy::QKFormatDeputy() = default;
QKFormatDeputy::~QKFormatDeputy() = default;

void* QKFormatDeputy::asProtocol(const Protocol& protocol) {
  const bool isServed =
      &protocol == &Copying::protocol || (&protocol == &Coding::protocol && classDescriptor().makeWithCoder != nullptr);
  return isServed ? this : nullptr;
}

Ref<Object> QKFormatDeputy::copy() const {
  const auto make = classDescriptor().make;
  return make ? make() : nullptr;
}

// ---- Whole strings ----

std::string QKFormatDeputy::stringForObjectValue(Object*, const QKTimecodeFormatter&) const { return {}; }

bool QKFormatDeputy::getObjectValue(Ref<Object>*, std::string_view, const QKTimecodeFormatter&,
                                    std::string* error) const {
  return detail::fail(error, "Abstract method -[QKFormatDeputy getObjectValue:forString:formatter:errorDescription:]");
}

bool QKFormatDeputy::isPartialStringValid(std::string_view partial, std::string* error) const {
  std::string_view rest;
  if (!trimSignFromString(partial, &rest, nullptr, error)) return false;
  Scanner scanner(rest);
  const CharacterSet legal = legalCharacterSet();
  while (scanner.scanCharacters(legal, nullptr)) {
  }
  return scanner.isAtEnd() || detail::fail(error, "Illegal character.");
}

CharacterSet QKFormatDeputy::legalCharacterSet() const { return CharacterSet(",.;:0123456789"); }

std::string QKFormatDeputy::defaultNilSymbol() const {
  logLine("Abstract method -[QKFormatDeputy defaultNilSymbol]");
  return {};
}

const Protocol& QKFormatDeputy::requiredProtocol() const {
  assertionFailed({"-[QKFormatDeputy requiredProtocol]", this, kFile, 359,
                   "-[QKFormatDeputy requiredProtocol] must be implemented by subclass."});
  return QKBasicTimecode::protocol;
}

// ---- Segments ----

std::int64_t QKFormatDeputy::segmentCountInObjectValue(Object*) const {
  logLine("Abstract method -[QKFormatDeputy segmentCountInObjectValue:]");
  return 0;
}

std::int64_t QKFormatDeputy::segmentTagForIndex(std::int64_t index, Object*) const {
  logLine("Abstract method -[QKFormatDeputy segmentTagForIndex:inObjectValue:]");
  return index;
}

std::int64_t QKFormatDeputy::segmentIndexForTag(std::int64_t tag, Object*) const {
  logLine("Abstract method -[QKFormatDeputy segmentIndexForTag:inObjectValue:]");
  return tag;
}

std::int64_t QKFormatDeputy::segmentFieldWidthForTag(std::int64_t, Object*) const {
  logLine("Abstract method -[QKFormatDeputy segmentFieldWidthForTag:inObjectValue:]");
  return 0;
}

std::int64_t QKFormatDeputy::defaultSelectedSegmentTagInObjectValue(Object*) const {
  logLine("Abstract method -[QKFormatDeputy defaultSelectedSegmentTagInObjectValue:]");
  return 0;
}

void QKFormatDeputy::segmentWithTagHasPadding(std::int64_t, bool*, bool*, Object*) const {
  logLine("Abstract method -[QKFormatDeputy segmentWithTag:hasPaddingAtLeft:atRight:inObjectValue:]");
}

Range QKFormatDeputy::substringRangeForSegmentWithTag(std::int64_t, Object*) const {
  logLine("Abstract method -[QKFormatDeputy substringRangeForSegmentWithTag:inObjectValue:]");
  return {};
}

NumberFormatter* QKFormatDeputy::formatterForSegmentTag(std::int64_t, Object*) const {
  logLine("Abstract method -[QKFormatDeputy formatterForSegmentTag:inObjectValue:]");
  return nullptr;
}

bool QKFormatDeputy::allowsSegmentEditing() const { return true; }

// ---- Stepping and typing ----

void QKFormatDeputy::getObjectValueIncrementingSegmentWithTag(Ref<Object>*, std::int64_t, std::int64_t, Object*) const {
  logLine("Abstract method -[QKFormatDeputy getObjectValue:incrementingSegmentWithTag:byIncrement:inObjectValue:]");
}

bool QKFormatDeputy::getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view, std::int64_t, Object*,
                                                     std::string*) const {
  logLine(
      "Abstract method -[QKFormatDeputy getObjectValue:forString:forSegmentWithIndex:inObjectValue:errorDescription:]");
  if (result) *result = std::make_shared<Number>(0);
  return true;
}

void QKFormatDeputy::getObjectValueZeroingSegmentWithTag(Ref<Object>* result, std::int64_t tag, Object* object) const {
  getObjectValueForSegmentWithTag(result, "0", tag, object, nullptr);
}

void QKFormatDeputy::getNearest(Ref<Object>* result, Object* bound, std::int64_t direction, std::int64_t tag,
                                Object* object) const {
  if (!result) return;
  if (!bound) {
    *result = object->copy();
  } else if (compareValues(bound, *object) * direction < 0) {  // the value is beyond it already
    const auto* boundTimecode = classCast<QKVideoTimecode>(bound);
    const auto* timecode = classCast<QKVideoTimecode>(object);
    if (boundTimecode && timecode) {
      const Ref<QKVideoTimecode> copy = copyOf(*timecode);
      copy->takeConvertedValueFromTimecode(*boundTimecode);
      *result = copy;
    } else {
      *result = bound->copy();
    }
  } else {
    const Steps steps(*this, bound, direction, tag, object);
    *result = steps.candidate(steps.lastInside());
  }
}

void QKFormatDeputy::getObjectValueNearestToMinimum(Ref<Object>* result, Object* minimum, std::int64_t tag,
                                                    Object* object) const {
  if (!minimum) lightAssertionFailed("minimum", kFile, 293);
  getNearest(result, minimum, -1, tag, object);
}

void QKFormatDeputy::getObjectValueNearestToMaximum(Ref<Object>* result, Object* maximum, std::int64_t tag,
                                                    Object* object) const {
  if (!maximum) lightAssertionFailed("maximum", kFile, 319);
  getNearest(result, maximum, 1, tag, object);
}

// ---- For subclasses ----

std::int64_t QKFormatDeputy::massagedFieldValue(std::int64_t value, std::int64_t tag, Object* object) const {
  auto* timecode = protocolCast<QKBasicTimecode>(object);
  const std::int64_t segmentIndex = segmentIndexForTag(tag, object);
  if (value < 0) {
    if (segmentIndex != 0) lightAssertionFailed("segmentIndex == 0", kFile, 348);
    if (timecode) timecode->setIsNegative(true);
    return saturatingFromUInt64(magnitudeOf(value));
  }
  if (segmentIndex == 0 && timecode) timecode->setIsNegative(false);
  return value;
}

bool QKFormatDeputy::trimSignFromString(std::string_view string, std::string_view* trimmedString,
                                        std::int64_t* foundPlusOrMinus, std::string* error) {
  std::string_view rest = string;
  detail::takeWhitespace(rest);
  const char sign = rest.empty() ? '\0' : rest.front();
  const bool isSigned = sign == '+' || sign == '-';
  if (isSigned) rest.remove_prefix(1);
  if (isSigned && rest.starts_with(sign)) return detail::fail(error, "Excess + or -'s");
  if (isSigned && Scanner(rest).isAtEnd()) rest = {};
  if (foundPlusOrMinus) *foundPlusOrMinus = sign == '+' ? 1 : sign == '-' ? -1 : 0;
  if (trimmedString) *trimmedString = isSigned ? rest : string;
  return true;
}

}  // namespace quill::inline v0
