#include "DeputySupport.h"

#include "../../Platform/IntegerMath.h"
#include "../QKExtendedTimecode.h"
#include "ParseText.h"

#include <typeinfo>

namespace quill::inline v0::detail {

std::int64_t stepCount(std::int64_t increment) { return saturatingFromUInt64(magnitudeOf(increment)); }

double unitsAcrossZero(double before, double step, bool isNegative) {
  constexpr double kLeastFraction = 1e-18;
  const double units = before / step;
  const double fraction = units - std::trunc(units);
  return fraction + (fraction >= kLeastFraction || isNegative ? 1 : 0);
}

bool readSegment(const QKFormatDeputy& deputy, std::int64_t* number, std::string_view string, std::int64_t tag,
                 Object* object, std::string* error) {
  const NumberFormatter* formatter = deputy.formatterForSegmentTag(tag, object);
  if (!formatter) return failNotVisible(error, tag);
  Number found;
  if (!formatter->getNumber(&found, string, error)) return false;
  *number = found.int64Value();
  return true;
}

std::int64_t fractionOfEntry(std::int64_t field, std::string_view typed, int places) {
  const auto digits = static_cast<std::int64_t>(characterCount(typed));
  if (digits == places) return field;
  return saturateToInt64(roundHalfAway(powerOfTen(places - digits) * static_cast<double>(field)));
}

void setFractionWidth(NumberFormatter& formatter, int places) {
  std::string zero;
  appendPadded(zero, 0, places);
  formatter.setMinimumIntegerDigits(places);
  formatter.setMaximumIntegerDigits(places);
  formatter.setZeroSymbol(zero);
}

void FieldText::addOtherField(std::int64_t value, int width) {
  std::string digits;
  appendPadded(digits, value, width);
  for (const char c : digits) add(c);
}

QKVideoTimecode* ownTimecode(Object* object) {
  if (!object) return nullptr;
  const std::type_info* const type = &typeid(*object);
  const bool isOwn =
      type == &typeid(QKExtendedTimecode) || type == &typeid(QKVideoTimecode) || type == &typeid(QKTimecode);
  return isOwn ? static_cast<QKVideoTimecode*>(object) : nullptr;
}

int decimalDigitCount(std::uint64_t value) {
  int count = 1;
  for (; value >= 10; value /= 10) ++count;
  return count;
}

double powerOfTen(std::int64_t exponent) {
  const std::int64_t magnitude = std::min<std::int64_t>(stepCount(exponent), 22);
  double power = 1;
  for (std::int64_t i = 0; i < magnitude; ++i) power *= 10;
  return exponent < 0 ? 1 / power : power;
}

void localizePoint(std::string& text) {
  const std::size_t point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, formatDeputyDecimalSeparator());
}

}  // namespace quill::inline v0::detail
