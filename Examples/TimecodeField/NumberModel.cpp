#include "NumberModel.h"

#include "../Shared/Parameters.h"

namespace field {

using namespace quill;

namespace {

constexpr std::string_view kDigits = "digits", kWhole = "whole";

// The names of the tags from -3.
constexpr std::int64_t kLowestNamedTag = -3;
constexpr std::string_view kTagNames[] = {"thousandths", "hundredths", "tenths",   "units",
                                          "tens",        "hundreds",   "thousands"};

const Number& numberOf(const Ref<Object>& object) { return static_cast<const Number&>(*object); }

}  // namespace

NumberModel::NumberModel() { formatter_.setIntegerDigitsForWholeNumberScrubbingType(1); }  // "0.50", not ".50"

bool NumberModel::fail(std::string_view text) {
  message_ = {std::string(text), true};
  return false;
}

// ---- Settings ----

bool NumberModel::setScrubbing(std::string_view name) {
  if (name != kDigits && name != kWhole) return fail("A number is scrubbed by digits or whole.");
  clearMessage();
  formatter_.setScrubbingType(name == kWhole ? kWholeNumberScrubbing : kSingleDigitScrubbing);
  return true;
}

std::string_view NumberModel::scrubbing() const { return isWhole() ? kWhole : kDigits; }

void NumberModel::cycleFormat(std::int64_t count) {
  if (count % 2 != 0) setScrubbing(isWhole() ? kDigits : kWhole);
}

bool NumberModel::setDecimals(std::string_view places) {
  const auto number = examples::wholeNumber(places, 0, kMostDecimals);
  if (!number) return fail("Decimal places are from 0 to 9.");
  applyDecimals(*number);
  return true;
}

void NumberModel::addDecimals(std::int64_t count) {
  applyDecimals(std::clamp<std::int64_t>(formatter_.minimumFractionDigits() + count, 0, kMostDecimals));
}

// Of both types, and at once of the one that is in use.
void NumberModel::applyDecimals(std::int64_t places) {
  formatter_.setFractionDigitsForSingleDigitScrubbingType(places);
  formatter_.setFractionDigitsForWholeNumberScrubbingType(places);
  formatter_.setMinimumFractionDigits(places);
  formatter_.setMaximumFractionDigits(places);
  tag_ = std::max(tag_, -places);
}

bool NumberModel::setMinimum(std::string_view entry) {
  Number bound;
  if (!readBound(entry, &bound)) return false;
  if (formatter_.maximum() && bound > *formatter_.maximum()) return fail("The minimum is above the maximum.");
  formatter_.setMinimum(bound);
  keepWithinBounds();
  return true;
}

bool NumberModel::setMaximum(std::string_view entry) {
  Number bound;
  if (!readBound(entry, &bound)) return false;
  if (formatter_.minimum() && bound < *formatter_.minimum()) return fail("The maximum is below the minimum.");
  formatter_.setMaximum(bound);
  keepWithinBounds();
  return true;
}

bool NumberModel::readBound(std::string_view entry, Number* bound) {
  Formatter plain(formatter_);
  plain.setMinimum(std::nullopt);
  plain.setMaximum(std::nullopt);
  return read(plain, entry, bound);
}

void NumberModel::keepWithinBounds() {
  const Number value = numberOf(value_);
  if (formatter_.minimum() && value < *formatter_.minimum()) value_ = formatter_.minimum()->copy();
  if (formatter_.maximum() && value > *formatter_.maximum()) value_ = formatter_.maximum()->copy();
}

void NumberModel::toggleMinimum() {
  formatter_.setMinimum(formatter_.minimum() ? std::nullopt : std::optional(numberOf(value_)));
}

void NumberModel::toggleMaximum() {
  formatter_.setMaximum(formatter_.maximum() ? std::nullopt : std::optional(numberOf(value_)));
}

std::string NumberModel::range() const {
  const auto text = [&](std::optional<Number> bound) {
    return bound ? formatter_.stringForObjectValue(&*bound) : std::nullopt;
  };
  return rangeText(text(formatter_.minimum()), text(formatter_.maximum()));
}

// ---- Value ----

std::string NumberModel::text() const { return formatter_.stringForObjectValue(value_.get()).value_or(""); }

bool NumberModel::read(Formatter& formatter, std::string_view entry, Number* number) {
  entry.remove_prefix(std::min(entry.find_first_not_of(" \t"), entry.size()));
  Ref<Object> result;
  std::string error;
  if (!formatter.getObjectValue(&result, entry, &error)) return fail(error);
  // An editor lets nothing stand that could not be typed, such as decimals where there are none.
  if (!formatter.isPartialStringValid(entry, nullptr, nullptr)) return fail("No such number can be typed here.");
  *number = numberOf(result);
  if (*number < formatter.deFactoMinimum() || *number > formatter.deFactoMaximum()) return fail("Out of range.");
  clearMessage();
  return true;
}

bool NumberModel::takeEntry(std::string_view entry) {
  Number number;
  if (!read(formatter_, entry, &number)) return false;
  value_ = number.copy();
  return true;
}

// ---- Segments ----

FieldText NumberModel::shown() const {
  FieldText field{text(), formatter_.substringRangeForSegmentWithTag(tag_, value_.get())};
  const std::int64_t index = selectedIndex();
  if (index < 0) {
    field.text.insert(0, static_cast<std::size_t>(-index), '_');  // places up to the selected one
    field.selected = {0, 1};
  }
  return field;
}

std::string NumberModel::nameOf(std::int64_t tag) const {
  if (isWhole()) return "number";
  const std::int64_t place = tag - kLowestNamedTag;
  if (place >= 0 && place < std::ssize(kTagNames)) return std::string(kTagNames[place]);
  std::string name = "10^";
  appendInteger(name, tag);
  return name;
}

std::vector<NumberSegment> NumberModel::segments() const {
  std::vector<NumberSegment> segments;
  const std::string whole = text();
  const std::int64_t count = formatter_.segmentCountInObjectValue(value_.get());
  for (std::int64_t index = 0; index < count; ++index) {
    const std::int64_t tag = formatter_.segmentTagForIndex(index, value_.get());
    const Range range = formatter_.substringRangeForSegmentWithTag(tag, value_.get());
    segments.push_back({nameOf(tag), std::string(substring(whole, range))});
  }
  return segments;
}

void NumberModel::select(std::int64_t index) {
  if (isWhole()) return;
  const std::int64_t last = formatter_.segmentCountInObjectValue(value_.get()) - 1;
  tag_ = formatter_.segmentTagForIndex(std::clamp<std::int64_t>(index, 0, last), value_.get());
}

void NumberModel::selectBy(std::int64_t count) {
  if (!isWhole()) return select(selectedIndex() + count);
  if (formatter_.minimumFractionDigits() == 0) return;
  Ref<Object> result;
  const double increment = static_cast<double>(count) / 10;
  formatter_.getObjectValueFloatIncrementingSegmentWithTag(&result, tag_, increment, value_.get());
  value_ = result;
}

void NumberModel::selectFirst() { select(0); }

void NumberModel::selectLast() { select(INT64_MAX); }

void NumberModel::step(std::int64_t count) {
  Ref<Object> result;
  formatter_.getObjectValueIncrementingSegmentWithTag(&result, tag_, count, value_.get());
  value_ = result;
}

// ---- Typing ----

bool NumberModel::type(char character) {
  clearMessage();
  const std::string text(1, character);
  if (typing_ == Typing::Nothing && !isWhole() && character >= '0' && character <= '9') {
    Ref<Object> result;
    std::string error;
    if (formatter_.getObjectValueForSegmentWithTag(&result, text, tag_, value_.get(), &error)) {
      value_ = result;
    } else {
      fail(error.empty() ? "Out of range." : error);
    }
    return true;
  }
  if (typing_ == Typing::Nothing && !formatter_.isPartialStringValid(text, nullptr, nullptr)) return false;
  openEntry();
  if (!typed_.type(character)) fail("No entry is longer than that.");
  return true;
}

bool NumberModel::confirm() {
  clearMessage();
  if (typed().find_first_not_of(' ') != std::string::npos && !takeEntry(typed())) return false;
  giveUp();
  return true;
}

void NumberModel::giveUp() {
  clearMessage();
  typing_ = Typing::Nothing;
  typed_.clear();
}

}  // namespace field
