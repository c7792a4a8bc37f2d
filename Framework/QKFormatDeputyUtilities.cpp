#include "QKFormatDeputyUtilities.h"

#include "../Platform/IntegerMath.h"
#include "detail/DeputySupport.h"
#include "detail/ParseText.h"

#include <algorithm>
#include <cmath>

namespace quill::inline v0 {

namespace {

// Never destroyed, so that formatters that die at exit may still use them. A count of 0 leaves the default.
QKTimecodeSegmentNumberFormatter& makeShared(std::int64_t digits, const std::optional<Number>& minimum) {
  auto& formatter = *new QKTimecodeSegmentNumberFormatter;
  if (digits > 0) {
    formatter.setMinimumIntegerDigits(digits);
    formatter.setMaximumIntegerDigits(digits);
  }
  formatter.setMinimumFractionDigits(0);
  formatter.setMaximumFractionDigits(0);
  formatter.setMinimum(minimum);
  return formatter;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t digitRunLength(std::string_view string) {
  std::size_t length = 0;
  while (length < string.size() && isDigit(string[length])) ++length;
  return length;
}

// Takes the run of digits off the front; its value, at most 2^63-1.
std::int64_t takeInteger(std::string_view& string) {
  const char* const begin = string.data();
  const char* const end = begin + std::min<std::size_t>(string.size(), 18);
  const char* digit = begin;
  std::int64_t value = 0;
  for (; digit != end && isDigit(*digit); ++digit) value = value * 10 + (*digit - '0');
  auto length = static_cast<std::size_t>(digit - begin);
  if (length == 18) {
    value = saturatingInt64(string);
    length = digitRunLength(string);
  }
  string.remove_prefix(length);
  return value;
}

}  // namespace

QKTimecodeSegmentNumberFormatter& sharedDeputyLeadingTwoDigitNumberFormatter() {
  static auto& shared = makeShared(2, std::nullopt);
  return shared;
}

QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingTwoDigitNumberFormatter() {
  static auto& shared = makeShared(2, 0);
  return shared;
}

QKTimecodeSegmentNumberFormatter& sharedDeputyTwoDigitMinimumOneNumberFormatter() {
  static auto& shared = makeShared(2, 1);
  return shared;
}

QKTimecodeSegmentNumberFormatter& sharedDeputyOneDigitNumberFormatter() {
  static auto& shared = makeShared(1, 0);
  return shared;
}

QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingThreeDigitNumberFormatter() {
  static auto& shared = makeShared(3, 0);
  return shared;
}

QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingFourDigitNumberFormatter() {
  static auto& shared = makeShared(4, 0);
  return shared;
}

QKTimecodeSegmentNumberFormatter& sharedDeputyLeadingIntegerNumberFormatter() {
  static auto& shared = makeShared(0, std::nullopt);
  return shared;
}

QKTimecodeSegmentNumberFormatter& sharedDeputyFollowingIntegerNumberFormatter() {
  static auto& shared = makeShared(0, 0);
  return shared;
}

const std::string& formatDeputyEmDash() {
  static const std::string& dash = *new std::string("\u2014");
  return dash;
}

const std::string& formatDeputyDecimalSeparator() {
  static const std::string& separator = *new std::string(QKTimecodeSegmentNumberFormatter().decimalSeparator());
  return separator;
}

const std::string& MDivisionsPlaceHolder() {
  static const std::string& placeHolder = *new std::string(" ");
  return placeHolder;
}

bool privateScanStringIntoFieldArray(std::string_view string, std::int64_t* fields, std::int64_t capacity,
                                     std::int64_t* count, const CharacterSet& separators) {
  std::int64_t stored = 0;
  while (stored < capacity) {
    detail::takeWhitespace(string);
    if (string.empty()) break;
    if (isDigit(string.front())) {
      fields[stored++] = takeInteger(string);
      continue;
    }
    const std::uint64_t separatorCount = detail::takeCharacters(string, separators);
    if (separatorCount == 0) break;
    detail::takeWhitespace(string);
    const bool partsTwoFields = stored > 0 && !string.empty();
    for (std::uint64_t empty = separatorCount - (partsTwoFields ? 1 : 0); empty > 0; --empty) {
      if (stored == capacity) {
        stored = 0;
        break;
      }
      fields[stored++] = 0;
    }
  }
  if (count) *count = stored;
  return stored > 0;
}

double privateDoubleFromIntegerPartAndFractionalPart(std::int64_t integerPart, std::int64_t fractionalPart,
                                                     std::int64_t fractionalDigits) {
  if (fractionalPart <= 0) return static_cast<double>(integerPart);  // also where the power is infinite
  const bool isExact = fractionalDigits >= -22 && fractionalDigits <= 22;
  const double power =
      isExact ? detail::powerOfTen(-fractionalDigits) : std::pow(10.0, -static_cast<double>(fractionalDigits));
  return static_cast<double>(integerPart) + static_cast<double>(fractionalPart) * power;
}

inline namespace QKFormatDeputyStringUtilities {

std::uint64_t unsignedLongLongValue(std::string_view string) {
  constexpr std::uint64_t kHighestBeforeAnotherDigit = 0x1999999999999998;
  std::string_view digits;
  if (!Scanner(string).scanCharacters(CharacterSet::decimalDigits(), &digits)) return 0;
  std::uint64_t value = 0;
  for (const char digit : digits) {
    if (value > kHighestBeforeAnotherDigit) return kUInt64Highest;
    value = value * 10 + static_cast<std::uint64_t>(digit - '0');  // at most 2^64-7
  }
  return value;
}

std::string stringWithDigitSpacesForLeadingZeroes(std::string_view string) {
  const std::size_t zeros = std::min(string.find_first_not_of('0'), string.size());
  const bool digitFollows = digitRunLength(string) > zeros;
  std::string result(string);
  std::fill_n(result.begin(), zeros == 0 || digitFollows ? zeros : zeros - 1, ' ');
  return result;
}

std::string stringWithLocalizedDecimalSeparatorForDot(std::string_view string) {
  std::string result(string);
  const std::size_t start = digitRunLength(string);
  const std::size_t end = std::min(string.find_first_not_of('.', start), string.size());
  if (end > start) result.replace(end - 1, 1, formatDeputyDecimalSeparator());
  return result;
}

std::string_view stringByTrimmingNondecimalsFromEnd(std::string_view string) {
  return string.substr(0, digitRunLength(string));
}

}  // namespace QKFormatDeputyStringUtilities

}  // namespace quill::inline v0
