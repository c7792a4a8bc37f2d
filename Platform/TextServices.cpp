// UTF-8 is decoded by the shape of its lead byte; what follows is checked against the smallest character that needs so
// many bytes, which catches overlong forms. Runs of ASCII are walked eight bytes at a time.
//
// Number text goes through DecimalDigits in both directions. A double comes from charconv where the standard library
// has it for floating point, otherwise from the exact arithmetic of detail/ExactDecimal.h; both give the same.

#include "TextServices.h"

#include "IntegerMath.h"
#include "LocaleInfo.h"
#include "detail/DecimalReader.h"
#include "detail/ExactDecimal.h"
#include "detail/FloatingCharconv.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace quill::inline v0 {

namespace {

constexpr int kMostPlaces = 340;

constexpr bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }

// Whether the eight bytes from there on are all ASCII.
bool isAsciiBlock(const char* bytes) {
  std::uint64_t block;
  std::memcpy(&block, bytes, sizeof block);
  return (block & 0x8080808080808080) == 0;
}

// The bytes that so many characters take from the start, cut at the end of the text.
std::size_t bytesOfCharacters(std::string_view text, std::uint64_t count) {
  std::size_t offset = 0;
  while (count != 0 && offset < text.size()) {
    if (count >= 8 && text.size() - offset >= 8 && isAsciiBlock(text.data() + offset)) {
      offset += 8;
      count -= 8;
    } else {
      offset += decodeCharacter(text.substr(offset)).byteCount;
      --count;
    }
  }
  return offset;
}

}  // namespace

// Characters

std::uint64_t characterCount(std::string_view text) {
  std::uint64_t count = 0;
  for (std::size_t offset = 0; offset < text.size();) {
    if (text.size() - offset >= 8 && isAsciiBlock(text.data() + offset)) {
      offset += 8;
      count += 8;
    } else {
      offset += decodeCharacter(text.substr(offset)).byteCount;
      ++count;
    }
  }
  return count;
}

std::string_view substring(std::string_view text, Range characters) {
  const std::string_view rest = text.substr(bytesOfCharacters(text, characters.location));
  return rest.substr(0, bytesOfCharacters(rest, characters.length));
}

DecodedCharacter decodeCharacter(std::string_view text) {
  constexpr DecodedCharacter kInvalid{kInvalidCharacter, 1};
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return {lead, 1};

  std::uint32_t byteCount;
  char32_t character, lowest;
  if ((lead & 0xE0) == 0xC0) {
    byteCount = 2, character = lead & 0x1F, lowest = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    byteCount = 3, character = lead & 0x0F, lowest = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    byteCount = 4, character = lead & 0x07, lowest = 0x10000;
  } else {
    return kInvalid;
  }
  if (text.size() < byteCount) return kInvalid;
  for (std::uint32_t i = 1; i < byteCount; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0) != 0x80) return kInvalid;
    character = (character << 6) | (next & 0x3F);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < lowest || character > 0x10FFFF || surrogate) return kInvalid;
  return {character, byteCount};
}

void appendCharacter(std::string& text, char32_t character) {
  const auto append = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  const auto appendContinuation = [&](int shift) { append(0x80 | ((character >> shift) & 0x3F)); };
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character > 0x10FFFF || surrogate) character = 0xFFFD;
  if (character < 0x80) return append(character);
  if (character < 0x800) {
    append(0xC0 | (character >> 6));
  } else {
    if (character < 0x10000) {
      append(0xE0 | (character >> 12));
    } else {
      append(0xF0 | (character >> 18));
      appendContinuation(12);
    }
    appendContinuation(6);
  }
  appendContinuation(0);
}

// Character sets

CharacterSet::CharacterSet(std::string_view characters) { add(characters); }

const CharacterSet& CharacterSet::decimalDigits() {
  static const CharacterSet& set = *new CharacterSet("0123456789");
  return set;
}

const CharacterSet& CharacterSet::whitespace() {
  static const CharacterSet& set = *[] {
    std::string text = "\t\n\v\f\r ";
    for (char32_t space = 0x2000; space <= 0x200A; ++space) appendCharacter(text, space);
    constexpr char32_t kOthers[] = {0x85, 0xA0, 0x1680, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
    for (const char32_t space : kOthers) appendCharacter(text, space);
    return new CharacterSet(text);
  }();
  return set;
}

void CharacterSet::add(std::string_view characters) {
  for (std::size_t offset = 0; offset < characters.size();) {
    const auto [character, byteCount] = decodeCharacter(characters.substr(offset));
    offset += byteCount;
    if (character < 128) {
      ascii_[character >> 6] |= std::uint64_t{1} << (character & 63);
    } else if (character != kInvalidCharacter) {
      const auto place = std::lower_bound(others_.begin(), others_.end(), character);
      if (place == others_.end() || *place != character) others_.insert(place, character);
    }
  }
}

bool CharacterSet::containsOther(char32_t character) const {
  return std::binary_search(others_.begin(), others_.end(), character);
}

// Scanner

namespace {

// The offset of the first character from there on whose membership in the set is not the one given.
std::size_t offsetAfter(std::string_view text, std::size_t offset, const CharacterSet& set, bool isMember) {
  while (offset < text.size()) {
    const auto byte = static_cast<unsigned char>(text[offset]);
    const DecodedCharacter next = byte < 0x80 ? DecodedCharacter{byte, 1} : decodeCharacter(text.substr(offset));
    if (set.contains(next.character) != isMember) break;
    offset += next.byteCount;
  }
  return offset;
}

}  // namespace

void Scanner::setSkippedCharacters(const CharacterSet& characters) {
  skipsWhitespace_ = false;
  otherSkipped_ = characters;
}

void Scanner::setDecimalSeparator(std::string_view separator) {
  hasDecimalSeparator_ = true;
  decimalSeparator_ = separator;
}

const CharacterSet& Scanner::skippedCharacters() const {
  return skipsWhitespace_ ? CharacterSet::whitespace() : otherSkipped_;
}

std::size_t Scanner::offsetAfterSkipping() const { return offsetAfter(text_, offset_, skippedCharacters(), true); }

bool Scanner::scanCharacters(const CharacterSet& set, std::string_view* found) {
  const std::size_t begin = offsetAfterSkipping();
  const std::size_t end = offsetAfter(text_, begin, set, true);
  if (end == begin) return false;
  if (found) *found = text_.substr(begin, end - begin);
  offset_ = end;
  return true;
}

bool Scanner::scanUpToCharacters(const CharacterSet& set, std::string_view* found) {
  const std::size_t begin = offsetAfterSkipping();
  const std::size_t end = offsetAfter(text_, begin, set, false);
  if (end == begin) return false;
  if (found) *found = text_.substr(begin, end - begin);
  offset_ = end;
  return true;
}

bool Scanner::scanString(std::string_view wanted) {
  const std::size_t begin = offsetAfterSkipping();
  if (wanted.empty() || !text_.substr(begin).starts_with(wanted)) return false;
  offset_ = begin + wanted.size();
  return true;
}

bool Scanner::isAtEnd() const { return offsetAfterSkipping() == text_.size(); }

std::uint64_t Scanner::location() const { return characterCount(text_.substr(0, offset_)); }

// Doubles from text

namespace {

// The bytes that a number takes at the start of the text, without a sign; 0 when there is none.
std::size_t readDecimal(std::string_view text, std::string_view separator, double* value) {
  detail::DecimalReader reader;
  std::size_t offset = 0;
  bool hasDigits = false, inFraction = false;
  for (; offset < text.size(); ++offset) {
    if (isAsciiDigit(text[offset])) {
      hasDigits = true;
      reader.addDigit(text[offset], inFraction);
    } else if (!inFraction && !separator.empty() && text.substr(offset).starts_with(separator)) {
      inFraction = true;
      offset += separator.size() - 1;
    } else {
      break;
    }
  }
  if (!hasDigits) return 0;
  if (offset < text.size() && (text[offset] == 'e' || text[offset] == 'E')) {
    std::size_t end = offset + 1;
    const bool hasSign = end < text.size() && (text[end] == '-' || text[end] == '+');
    const bool isNegative = hasSign && text[end] == '-';
    if (hasSign) ++end;
    const std::size_t begin = end;
    while (end < text.size() && isAsciiDigit(text[end])) ++end;
    if (end != begin) {
      const std::int64_t exponent = saturatingInt64(text.substr(begin, end - begin));
      reader.addExponent(isNegative ? -exponent : exponent);
      offset = end;
    }
  }
  if (value) *value = reader.value();
  return offset;
}

}  // namespace

bool Scanner::scanDouble(double* value) {
  std::size_t offset = offsetAfterSkipping();
  const bool hasSign = offset < text_.size() && (text_[offset] == '-' || text_[offset] == '+');
  const bool isNegative = hasSign && text_[offset] == '-';
  if (hasSign) ++offset;
  const std::string_view separator = hasDecimalSeparator_ ? decimalSeparator_ : Locale::current().decimalSeparator;
  double magnitude = 0;
  const std::size_t byteCount = readDecimal(text_.substr(offset), separator, &magnitude);
  if (byteCount == 0) return false;
  if (value) *value = isNegative ? -magnitude : magnitude;
  offset_ = offset + byteCount;
  return true;
}

double doubleFromText(std::string_view text) {
  double value = 0;
  return readDecimal(text, ".", &value) == text.size() ? value : 0;
}

// Integers from text

std::uint64_t saturatingUInt64(std::string_view digits) {
  std::uint64_t value = 0;
  for (const char c : digits) {
    if (!isAsciiDigit(c)) break;
    const auto digit = static_cast<std::uint64_t>(c - '0');
    if (value > (kUInt64Highest - digit) / 10) return kUInt64Highest;
    value = value * 10 + digit;
  }
  return value;
}

std::int64_t saturatingInt64(std::string_view digits) { return saturatingFromUInt64(saturatingUInt64(digits)); }

// Integers to text

namespace {

template <class Integer>
void appendWithToChars(std::string& text, Integer value) {
  char buffer[20];  // "-9223372036854775808", "18446744073709551615"
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

}  // namespace

void appendInteger(std::string& text, std::int64_t value) { appendWithToChars(text, value); }

void appendInteger(std::string& text, std::uint64_t value) { appendWithToChars(text, value); }

void appendPadded(std::string& text, std::int64_t value, int width) {
  char buffer[20];
  char* end = std::to_chars(buffer, buffer + sizeof buffer, magnitudeOf(value)).ptr;
  std::int64_t padding = std::int64_t{width} - (end - buffer);
  if (value < 0) {
    text += '-';
    --padding;
  }
  if (padding > 0) text.append(static_cast<std::size_t>(padding), '0');
  text.append(buffer, end);
}

void appendAddress(std::string& text, const void* address) {
  char buffer[2 * sizeof(void*)];
  const auto bits = reinterpret_cast<std::uintptr_t>(address);
  text += "0x";
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, bits, 16).ptr);
}

// Doubles to text

namespace {

// "inf", "-inf" and "nan"; false for a finite value.
bool appendNonFinite(std::string& text, double value) {
  if (std::isfinite(value)) return false;
  text += std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf";
  return true;
}

// The digits in places [from, to) counted from the first digit, "0" where there are none.
void appendDigits(std::string& text, std::string_view digits, std::int64_t from, std::int64_t to) {
  for (std::int64_t place = from; place < to; ++place) {
    const bool isPresent = place >= 0 && place < static_cast<std::int64_t>(digits.size());
    text += isPresent ? digits[static_cast<std::size_t>(place)] : '0';
  }
}

// At least one digit before the point; no point without places behind it.
void appendDecimal(std::string& text, const DecimalDigits& number, std::int64_t places) {
  const std::int64_t point = number.exponent;
  if (point > 0) {
    appendDigits(text, number.digits, 0, point);
  } else {
    text += '0';
  }
  if (places == 0) return;
  text += '.';
  appendDigits(text, number.digits, point, point + places);
}

DecimalDigits digitsFromText(std::string_view digits, std::int32_t exponent, bool negative) {
  const std::size_t length = digits.find_last_not_of('0') + 1;
  return {std::string(digits.substr(0, length)), length == 0 ? 0 : exponent, negative};
}

}  // namespace

void appendFixed(std::string& text, double value, int places) {
  if (appendNonFinite(text, value)) return;
  places = std::clamp(places, 0, kMostPlaces);
#if QUILL_HAS_FLOATING_CHARCONV
  char buffer[1 + 309 + 1 + kMostPlaces];
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, places).ptr);
#else
  if (std::signbit(value)) text += '-';
  appendDecimal(text, detail::exactDigitsToPlaces(value, places), places);
#endif
}

void appendScientific(std::string& text, double value, int places) {
  if (appendNonFinite(text, value)) return;
  places = std::clamp(places, 0, kMostPlaces);
#if QUILL_HAS_FLOATING_CHARCONV
  char buffer[1 + 1 + 1 + kMostPlaces + 5];
  text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, places).ptr);
#else
  if (std::signbit(value)) text += '-';
  DecimalDigits number = detail::exactDigitsToCount(value, places + 1);
  const int exponent = number.digits.empty() ? 0 : number.exponent - 1;
  number.exponent = 1;
  appendDecimal(text, number, places);
  text += exponent < 0 ? "e-" : "e+";
  appendPadded(text, std::abs(exponent), 2);
#endif
}

void appendShortest(std::string& text, double value) {
  if (appendNonFinite(text, value)) return;
  const DecimalDigits number = shortestDigits(value);
  if (number.digits.empty()) {
    text += '0';
    return;
  }
  if (number.negative) text += '-';
  const std::int64_t count = static_cast<std::int64_t>(number.digits.size());
  appendDecimal(text, number, std::max<std::int64_t>(count - number.exponent, 0));
}

// Decimal digits

DecimalDigits shortestDigits(double value) {
  if (!std::isfinite(value)) return {};
  // A whole number below 2^53 differs from its neighbours by more than fewer digits could say.
  if (std::abs(value) < 9007199254740992.0 && std::trunc(value) == value) {
    DecimalDigits number = digitsOf(saturateToInt64(value));
    number.negative = std::signbit(value);
    return number;
  }
#if QUILL_HAS_FLOATING_CHARCONV
  char buffer[32];  // "-d.dddddddddddddddde-ddd"
  const char* end = std::to_chars(buffer, buffer + sizeof buffer, std::abs(value), std::chars_format::scientific).ptr;
  const char* mark = std::find(static_cast<const char*>(buffer), end, 'e');
  std::int32_t exponent = 0;
  std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end, exponent);
  char digits[20];
  const char* digitsEnd = std::remove_copy(static_cast<const char*>(buffer), mark, digits, '.');
  const auto count = static_cast<std::size_t>(digitsEnd - digits);
  return digitsFromText({digits, count}, exponent + 1, std::signbit(value));
#else
  return detail::exactShortestDigits(value);
#endif
}

DecimalDigits digitsOf(std::int64_t value) {
  DecimalDigits number = digitsOf(magnitudeOf(value));
  number.negative = value < 0;
  return number;
}

DecimalDigits digitsOf(std::uint64_t value) {
  if (value == 0) return {};
  char buffer[20];
  const char* end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  const auto count = static_cast<std::size_t>(end - buffer);
  return digitsFromText({buffer, count}, static_cast<std::int32_t>(count), false);
}

void roundToPlaces(DecimalDigits& number, std::int32_t places) {
  std::string& digits = number.digits;
  const std::int64_t kept = std::int64_t{number.exponent} + places;
  if (kept >= static_cast<std::int64_t>(digits.size())) return;
  if (kept < 0) {
    digits.clear();
    number.exponent = 0;
    return;
  }
  const auto length = static_cast<std::size_t>(kept);
  const bool isTie = digits[length] == '5' && length + 1 == digits.size();
  const bool lastIsOdd = length > 0 && (digits[length - 1] - '0') % 2 != 0;
  const bool up = isTie ? lastIsOdd : digits[length] >= '5';
  digits.resize(length);
  if (up) {
    digits.erase(digits.find_last_not_of('9') + 1);
    if (digits.empty()) {
      digits += '1';
      ++number.exponent;
    } else {
      ++digits.back();
    }
    return;
  }
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.empty()) number.exponent = 0;
}

}  // namespace quill::inline v0
