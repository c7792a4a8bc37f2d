// Doubles to decimal digits and back by exact integer arithmetic: for standard libraries whose charconv has no floating
// point, and to check those that have it.
#pragma once

#include "../TextServices.h"

namespace quill::inline v0::detail {

// The fewest digits that read back as the same finite double, the nearest of those to it.
QUILL_EXPORT DecimalDigits exactShortestDigits(double value);

// The exact value of a finite double rounded half to even at that many digits behind the point, [0, 1100].
QUILL_EXPORT DecimalDigits exactDigitsToPlaces(double value, int places);

// As exactDigitsToPlaces, to that many significant digits, [1, 1100].
QUILL_EXPORT DecimalDigits exactDigitsToCount(double value, int count);

// More digits than any double or tie between doubles has.
inline constexpr int kMostDigits = 780;

// The double nearest to 0.d1d2...dn x 10^exponent, ties to even; an infinity or 0 beyond the range. The first digit is
// not "0" and n is at most kMostDigits; no digits are 0.
QUILL_EXPORT double exactNearestDouble(std::string_view digits, std::int64_t exponent);

}  // namespace quill::inline v0::detail
