// What the deputies share apart from the descriptions of failures: signs, scanned fields and decimal digits.
#pragma once

#include "../QKFormatDeputy.h"
#include "../QKTimecodeProtocols.h"

#include <algorithm>

namespace quill::inline v0::detail {

// ---- Values ----

// Whether an object serves a protocol and is negative.
template <class P>
bool isNegative(Object* object) {
  const auto* value = protocolCast<P>(object);
  return value && value->isNegative();
}

// Steps of a segment, without their sign.
std::int64_t stepCount(std::int64_t increment);

// A number that takes a step through zero, in units of the step: its digits below the unit, behind 1. At a whole number
// of units the result is 1 for a negative one and 0 for another.
double unitsAcrossZero(double before, double step, bool isNegative);

// ---- Entries ----

// Stands for a field that an entry does not have.
constexpr std::int64_t kNotTyped = -1;

constexpr bool isTyped(std::int64_t field) { return field != kNotTyped; }

// The fields of an entry, taken from the right.
struct ScannedFields {
  std::int64_t fields[5];
  std::int64_t count = 0;

  // The last field left, or the answer given where none is.
  std::int64_t takeOr(std::int64_t none) { return count == 0 ? none : fields[--count]; }
};

// Reads the text of a segment with the segment's formatter; a fraction is cut off. Fails as the formatter does, and for a
// segment that has none.
bool readSegment(const QKFormatDeputy& deputy, std::int64_t* number, std::string_view string, std::int64_t tag,
                 Object* object, std::string* error);

// The last field of an entry as a fraction of that many places, given what was typed behind the last separator: 5 from
// "5" is 500 of three places. Rounded half away from zero.
std::int64_t fractionOfEntry(std::int64_t field, std::string_view typed, int places);

// Makes a formatter show and take a fraction of that many digits, zeros in front.
void setFractionWidth(NumberFormatter& formatter, int places);

// ---- Digits ----

// [1, 20]
int decimalDigitCount(std::uint64_t value);

// The nearest double; the exponent is cut to [-22, 22], outside of which it would not be exact.
double powerOfTen(std::int64_t exponent);

// Decimal places as they are used, whatever an archive says.
constexpr int placesInRange(std::int64_t places) { return static_cast<int>(std::clamp<std::int64_t>(places, 0, 18)); }

// Groups of three digits that so many digits fill, and the digits of the outermost one.
constexpr std::int64_t groupCount(std::int64_t digits) { return (digits + 2) / 3; }
constexpr std::int64_t outerGroupWidth(std::int64_t digits) { return (digits + 2) % 3 + 1; }

// Appends a field with leading zeros.
inline void appendField(std::string& text, std::int64_t value, int width) {
  if (width == 2 && value >= 0 && value < 100) {
    text += static_cast<char>('0' + value / 10);
    text += static_cast<char>('0' + value % 10);
  } else {
    appendPadded(text, value, width);
  }
}

// The decimal separator of the locale in place of the point of a number.
void localizePoint(std::string& text);

}  // namespace quill::inline v0::detail
