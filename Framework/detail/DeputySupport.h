// What the deputies share apart from the descriptions of failures: signs, scanned fields and decimal digits.
#pragma once

#include "../QKFormatDeputy.h"
#include "../QKVideoTimecode.h"

#include <algorithm>
#include <string_view>

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

// Fields put together on the stack: room for six of any value, a sign and the separators between them.
class FieldText {
 public:
  void add(char c) { bytes_[length_++] = c; }
  // With leading zeros up to a width below 20.
  void addField(std::int64_t value, int width) {
    if (width == 2 && value >= 0 && value < 100) {
      const auto small = static_cast<unsigned>(value);
      add(static_cast<char>('0' + small / 10));
      add(static_cast<char>('0' + small % 10));
    } else {
      addOtherField(value, width);
    }
  }
  std::string_view view() const { return {bytes_, length_}; }

 private:
  void addOtherField(std::int64_t value, int width);

  char bytes_[128];
  std::size_t length_ = 0;
};

// Appends a field with leading zeros.
inline void appendField(std::string& text, std::int64_t value, int width) {
  FieldText field;
  field.addField(value, width);
  text += field.view();
}

// The object where its class is one of this library's own, which no one has derived from and changed; else null.
QKVideoTimecode* ownTimecode(Object* object);

// The decimal separator of the locale in place of the point of a number.
void localizePoint(std::string& text);

}  // namespace quill::inline v0::detail
