// What the format deputies share: digit formatters, separators, the field scanner and operations on strings.
#pragma once

#include "../Platform/TextServices.h"
#include "QKTimecodeSegmentNumberFormatter.h"

namespace quill::inline v0 {

// Number formatters of one segment each, made on first use, kept for the life of the process and never changed once
// made; no fraction digits. The leading ones take negative numbers, the others have a minimum of 0 or 1. An integer one
// has no limit of digits.
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyLeadingTwoDigitNumberFormatter();
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingTwoDigitNumberFormatter();
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyTwoDigitMinimumOneNumberFormatter();
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyOneDigitNumberFormatter();
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingThreeDigitNumberFormatter();
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingFourDigitNumberFormatter();
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyLeadingIntegerNumberFormatter();
QUILL_EXPORT QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingIntegerNumberFormatter();

// U+2014, the sign of a field without a value.
QUILL_EXPORT const std::string& formatDeputyEmDash();

// The decimal separator of the locale that is current when it is first asked for; it stays.
QUILL_EXPORT const std::string& formatDeputyDecimalSeparator();

// What stands in place of a divisions field that is dropped: " ".
QUILL_EXPORT const std::string& MDivisionsPlaceHolder();

// Splits runs of digits and separators into at most `capacity` integers; true when there is at least one. A separator
// between two fields parts them; each further one, one in front and one at the end stand for a field of 0: "1:" gives 1
// and 0, ":5" gives 0 and 5, "1::2" gives 1, 0 and 2. Scanning ends at any other character and passes over white space.
// A run of digits beyond 2^63-1 counts as that. An empty field beyond the capacity starts the array over and drops the
// rest of its run: "1::::5" with capacity 3 gives 5.
QUILL_EXPORT bool privateScanStringIntoFieldArray(std::string_view string, std::int64_t* fields, std::int64_t capacity,
                                                  std::int64_t* count, const CharacterSet& separators);

// integerPart + fractionalPart / 10^fractionalDigits; a negative fraction counts as 0. Digits below 0 multiply: 2, 3 and
// -1 give 32.
QUILL_EXPORT double privateDoubleFromIntegerPartAndFractionalPart(std::int64_t integerPart, std::int64_t fractionalPart,
                                                                  std::int64_t fractionalDigits);

// Operations on strings, the string first.
inline namespace QKFormatDeputyStringUtilities {

// The value of the digits in front, white space passed over; 0 without any. Stops at 2^64-1, which is also the answer
// for the last values below it (18446744073709551610 and up).
QUILL_EXPORT std::uint64_t unsignedLongLongValue(std::string_view string);

// Every zero in front as a space, but for the last digit: "007" gives "  7", "000" gives "  0".
QUILL_EXPORT std::string stringWithDigitSpacesForLeadingZeroes(std::string_view string);

// The "." behind the digits in front as the decimal separator: "1.5" gives "1,5" where that is a comma.
QUILL_EXPORT std::string stringWithLocalizedDecimalSeparatorForDot(std::string_view string);

// The digits in front, or nothing when the string does not begin with one. White space is not passed over.
QUILL_EXPORT std::string_view stringByTrimmingNondecimalsFromEnd(std::string_view string);

}  // namespace QKFormatDeputyStringUtilities

}  // namespace quill::inline v0
