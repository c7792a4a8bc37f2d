// Text services: UTF-8 counted in characters, character sets, a scanner, and the making of number text.
//
// - Text is UTF-8. A character is a code point; every length, location and width counts characters, not bytes.
// - A byte that is no valid UTF-8 counts as one character, is in no character set, and is passed on unchanged.
// - No function here depends on the C or C++ locale.
#pragma once

#include "Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quill::inline v0 {

// Characters of a text, from a location on.
struct Range {
  std::uint64_t location = 0;
  std::uint64_t length = 0;

  friend constexpr bool operator==(const Range&, const Range&) = default;
};

// The location of an empty range that stands for "nowhere".
inline constexpr std::uint64_t kNotFound = 9223372036854775807;

// The number of characters.
QUILL_EXPORT std::uint64_t characterCount(std::string_view text);

// The bytes of a range of characters; a range that reaches past the end is cut there.
QUILL_EXPORT std::string_view substring(std::string_view text, Range characters);

// What decodeCharacter answers for a byte that is no valid UTF-8.
inline constexpr char32_t kInvalidCharacter = 0xFFFFFFFF;

struct DecodedCharacter {
  char32_t character;
  std::uint32_t byteCount;  // [1, 4]
};

// The first character of a text that is not empty. Overlong forms, surrogates and values above U+10FFFF are invalid.
QUILL_EXPORT DecodedCharacter decodeCharacter(std::string_view text);

QUILL_EXPORT void appendCharacter(std::string& text, char32_t character);

// A set of characters. Sets of ASCII characters take no heap.
class QUILL_EXPORT CharacterSet {
 public:
  CharacterSet() = default;
  // The characters of a text; invalid bytes are left out.
  explicit CharacterSet(std::string_view characters);

  // The ten digits 0 to 9.
  static const CharacterSet& decimalDigits();
  // Space, tab, line ends and the other white space of Unicode.
  static const CharacterSet& whitespace();

  bool contains(char32_t character) const {
    if (character < 128) return ((ascii_[character >> 6] >> (character & 63)) & 1) != 0;
    return containsOther(character);
  }
  void add(std::string_view characters);

  friend bool operator==(const CharacterSet&, const CharacterSet&) = default;

 private:
  bool containsOther(char32_t character) const;

  std::uint64_t ascii_[2] = {0, 0};
  std::vector<char32_t> others_;  // ascending
};

// Walks over a text that outlives it. Before each scan it passes over the characters to skip, white space unless told
// otherwise. A scan that finds nothing leaves the position where it was and answers false. Out-pointers may be null.
class QUILL_EXPORT Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  void setSkippedCharacters(const CharacterSet& characters);
  void skipNothing() { setSkippedCharacters(CharacterSet()); }
  // What scanDouble takes between the whole and the fraction. At first the current locale's.
  void setDecimalSeparator(std::string_view separator);

  // A run of characters of the set.
  bool scanCharacters(const CharacterSet& set, std::string_view* found);
  // The characters before the next one of the set; fails when there are none.
  bool scanUpToCharacters(const CharacterSet& set, std::string_view* found);
  // The very text given.
  bool scanString(std::string_view wanted);
  // Digits with at most one separator among them, an optional sign before and an optional exponent behind: "12", ".5",
  // "-1.5e3". Never hexadecimal, "inf" or "nan". The nearest double; beyond its range an infinity or 0.
  bool scanDouble(double* value);

  // Whether nothing is left, or only characters to skip.
  bool isAtEnd() const;
  // Position in bytes and in characters from the start.
  std::uint64_t byteOffset() const { return offset_; }
  std::uint64_t location() const;
  // What has not been scanned, characters to skip included.
  std::string_view rest() const { return text_.substr(offset_); }

 private:
  std::size_t offsetAfterSkipping() const;
  const CharacterSet& skippedCharacters() const;

  std::string_view text_;
  std::size_t offset_ = 0;  // bytes, at the start of a character
  bool skipsWhitespace_ = true;
  CharacterSet otherSkipped_;  // instead of white space
  bool hasDecimalSeparator_ = false;
  std::string decimalSeparator_;  // instead of the current locale's
};

// The value of the run of ASCII digits that a text begins with (no sign, no space), 2^63-1 or 2^64-1 when it is larger;
// 0 without one.
QUILL_EXPORT std::int64_t saturatingInt64(std::string_view digits);
QUILL_EXPORT std::uint64_t saturatingUInt64(std::string_view digits);

// The nearest double of "12.5e-3": ASCII digits, at most one ".", an optional exponent, no sign. 0 for other text.
QUILL_EXPORT double doubleFromText(std::string_view text);

// Decimal digits, "-" before a negative value.
QUILL_EXPORT void appendInteger(std::string& text, std::int64_t value);
QUILL_EXPORT void appendInteger(std::string& text, std::uint64_t value);
inline void appendInteger(std::string& text, std::int32_t value) { appendInteger(text, std::int64_t{value}); }
inline void appendInteger(std::string& text, std::uint32_t value) { appendInteger(text, std::uint64_t{value}); }

// As appendInteger with leading zeros up to a width in characters, the sign included: (-5, 3) gives "-05".
QUILL_EXPORT void appendPadded(std::string& text, std::int64_t value, int width);

// As printf's %.*f, %.*e: the exact value rounded half to even at the last place, "." as separator; "inf", "-inf",
// "nan". Places are cut to [0, 340]. (2.5, 0) gives "2".
QUILL_EXPORT void appendFixed(std::string& text, double value, int places);
QUILL_EXPORT void appendScientific(std::string& text, double value, int places);

// The fewest digits that read back as the same double, without exponent: "0.1", "1e300" as 301 digits, "-0" as "0".
QUILL_EXPORT void appendShortest(std::string& text, double value);

// As printf's %p on most systems: "0x7f30c0".
QUILL_EXPORT void appendAddress(std::string& text, const void* address);

// Decimal digits d1 d2 ... dn with the point before d1 and an exponent: 0.d1d2...dn x 10^exponent. No leading or
// trailing zero digit; zero has no digits.
struct DecimalDigits {
  std::string digits;
  std::int32_t exponent = 0;
  bool negative = false;
};

// The fewest digits that read back as the same double; no digits for one that is not finite.
QUILL_EXPORT DecimalDigits shortestDigits(double value);
QUILL_EXPORT DecimalDigits digitsOf(std::int64_t value);
QUILL_EXPORT DecimalDigits digitsOf(std::uint64_t value);

// Rounds half to even to at most that many digits behind the point: (0.25, 1) gives 0.2.
QUILL_EXPORT void roundToPlaces(DecimalDigits& number, std::int32_t places);

}  // namespace quill::inline v0
