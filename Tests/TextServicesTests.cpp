#include "../Platform/TextServices.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/LocaleInfo.h"
#include "../Platform/detail/ExactDecimal.h"
#include "TextTable.h"

#include <bit>
#include <cmath>
#include <random>

namespace quill {
namespace {

using namespace detail;

constexpr double kLargest = std::numeric_limits<double>::max();

template <class Append, class... Arguments>
std::string made(Append append, Arguments... arguments) {
  std::string text = "kept ";
  append(text, arguments...);
  return text.starts_with("kept ") ? text.substr(5) : "the text before is gone";
}

TEST(TextServicesCharacters, AreDecodedCountedAndCut) {
  for (const char32_t character : U"\0\x7F\x80\x7FF\x800\xFFFF\x10000\x10FFFF") {
    const std::string text = made(appendCharacter, character);
    EXPECT_TRUE(decodeCharacter(text).character == character && decodeCharacter(text).byteCount == text.size()) << text;
  }
  EXPECT_EQ(made(appendCharacter, U'\x10FFFF') + made(appendCharacter, char32_t{0xD800}),
            "\xF4\x8F\xBF\xBF\xEF\xBF\xBD");
  // Beyond the last, a surrogate, overlong, a continuation alone, cut off, not continued.
  for (const char* text : {"\xF4\x90\x80\x80", "\xED\xA0\x80", "\xC0\x80", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\x80",
                           "\xE2\x80", "\xE2\x80z"})
    EXPECT_TRUE(decodeCharacter(text).character == kInvalidCharacter && decodeCharacter(text).byteCount == 1) << text;
  // Characters of one to four bytes and an invalid byte, at every distance from the blocks of eight.
  for (std::uint64_t at = 0; at < 20; ++at) {
    for (const std::string piece : {"a", "é", "—", "𝄞", "\xFF"}) {
      const std::string text = std::string(at, '.') + piece + "0123456789abcdef" + piece;
      EXPECT_EQ(characterCount(text), at + 18) << text;
      EXPECT_TRUE(substring(text, {at, 1}) == piece && substring(text, {kNotFound, 3}).empty()) << text;
      EXPECT_EQ(substring(text, {at + 16, kUInt64Highest}), "f" + piece) << text;
    }
  }
}

TEST(TextServicesCharacterSet, ContainsWhatWasAdded) {
  CharacterSet set("a9—");
  set.add("é\xFF—𝄞");
  const auto isIn = [](std::u32string_view characters, char32_t c) { return characters.find(c) != characters.npos; };
  for (char32_t c = 0; c < 0x3100; ++c) {
    ASSERT_EQ(set.contains(c), isIn(U"a9—é", c)) << std::uint32_t{c};
    ASSERT_EQ(CharacterSet::decimalDigits().contains(c), isIn(U"0123456789", c)) << std::uint32_t{c};
    const bool isSpace = isIn(U" \t\n\v\f\r\u0085\u00A0\u1680\u2028\u2029\u202F\u205F\u3000", c);
    ASSERT_EQ(CharacterSet::whitespace().contains(c), isSpace || (c >= 0x2000 && c <= 0x200A)) << std::uint32_t{c};
  }
  EXPECT_TRUE(set == CharacterSet("é𝄞9a—") && set.contains(U'𝄞') && !set.contains(kInvalidCharacter));
}

TEST(TextServicesScanner, SkipsWhiteSpaceUnlessToldOtherwise) {
  Scanner scanner(" \t12 34\u00A0x ");
  std::string_view found = "untouched";
  EXPECT_TRUE(!scanner.scanCharacters(CharacterSet("x"), &found) && found == "untouched" && scanner.byteOffset() == 0);
  EXPECT_TRUE(scanner.scanCharacters(CharacterSet::decimalDigits(), &found) && found == "12");
  EXPECT_TRUE(scanner.scanUpToCharacters(CharacterSet("4x"), &found) && found == "3");
  EXPECT_TRUE(!scanner.scanUpToCharacters(CharacterSet("4x"), &found) && scanner.scanString("4"));
  EXPECT_TRUE(!scanner.isAtEnd() && !scanner.scanString("") && scanner.scanString("x"));
  EXPECT_TRUE(scanner.rest() == " " && scanner.byteOffset() == 10 && scanner.location() == 9 && scanner.isAtEnd());
  scanner.skipNothing();
  EXPECT_TRUE(!scanner.isAtEnd() && scanner.scanString(" ") && scanner.isAtEnd());
  Scanner dots("..7\xFF");
  dots.setSkippedCharacters(CharacterSet("."));
  EXPECT_TRUE(dots.scanCharacters(CharacterSet("7"), nullptr));
  EXPECT_FALSE(dots.scanCharacters(CharacterSet("\xFF"), nullptr)) << "an invalid byte is in no set";
}

TEST(TextServicesScanner, ReadsDoubles) {
  const Locale before = Locale::current();
  for (const bool byLocale : {false, true}) {
    eachRowIn("platform.txt", "scanned doubles", [&](const Cells& row) {
      Locale::setCurrent({byLocale ? row.at(0) : "?", "", "-"});
      const std::string text = row.at(1) + row.at(2);
      Scanner scanner(text);
      if (!byLocale) scanner.setDecimalSeparator(row[0]);
      double value = 99;
      EXPECT_EQ(scanner.scanDouble(&value), !row[1].empty());
      EXPECT_EQ(made(appendScientific, value, 1), row.at(3));
      EXPECT_EQ(scanner.rest(), row[2]);
    });
  }
  Locale::setCurrent(before);
}

TEST(TextServicesNumbers, AreReadFromText) {
  eachRowIn("platform.txt", "saturating integers", [](const Cells& row) {
    EXPECT_EQ(std::to_string(saturatingUInt64(row.at(0))), row.at(1));
    EXPECT_EQ(saturatingInt64(row[0]), saturatingFromUInt64(saturatingUInt64(row[0])));
  });
  const std::string zeros(2000, '0');
  EXPECT_EQ(doubleFromText("9007199254740993." + zeros + "1"), 9007199254740994.0) << "far beyond the tie";
  EXPECT_EQ(doubleFromText("9007199254740993." + zeros), 9007199254740992.0);
  EXPECT_EQ(doubleFromText("0." + zeros + "5e2001") + doubleFromText("5" + zeros + "e-2000"), 10.0);
  for (const char* text : {"", "-1", "1,5", "1x", "1e"}) EXPECT_EQ(doubleFromText(text), 0.0) << text;
}

TEST(TextServicesNumbers, AreWritten) {
  std::string text;
  appendInteger(text, kInt64Lowest), appendInteger(text, kUInt64Highest), appendInteger(text, std::int32_t{-7});
  appendInteger(text, std::uint32_t{4294967295}), appendAddress(text, reinterpret_cast<const void*>(0x12abcdefu));
  EXPECT_EQ(text, "-922337203685477580818446744073709551615-742949672950x12abcdef");
  eachRowIn("platform.txt", "padded integers", [](const Cells& row) {
    EXPECT_EQ(made(appendPadded, std::stoll(row.at(0)), std::stoi(row.at(1))), row.at(2));
  });
  eachRowIn("platform.txt", "written doubles", [](const Cells& row) {
    EXPECT_EQ(made(appendFixed, doubleOf(row.at(0)), std::stoi(row.at(1))), row.at(2));
    EXPECT_EQ(made(appendScientific, doubleOf(row[0]), std::stoi(row[1])), row.at(3));
    EXPECT_EQ(made(appendShortest, doubleOf(row[0])), row.at(4));
  });
  EXPECT_EQ(made(appendFixed, -kLargest, 1000).size(), 1U + 309 + 1 + 340);
}

// "-12@3" for -0.12 x 10^3.
std::string textOf(const DecimalDigits& number) {
  return (number.negative ? "-" : "") + number.digits + "@" + std::to_string(number.exponent);
}

TEST(TextServicesDigits, AreRoundedHalfToEvenOnTheDecimalForm) {
  eachRowIn("platform.txt", "rounded digits", [](const Cells& row) {
    DecimalDigits number = shortestDigits(doubleOf(row.at(0)));
    roundToPlaces(number, std::stoi(row.at(1)));
    EXPECT_EQ(textOf(number), row.at(2));
  });
  EXPECT_EQ(textOf(digitsOf(kInt64Lowest)) + textOf(digitsOf(kUInt64Highest)) + textOf(digitsOf(std::int64_t{0})),
            "-9223372036854775808@1918446744073709551615@20@0");
  EXPECT_TRUE(shortestDigits(-0.0).negative && shortestDigits(HUGE_VAL).digits.empty());
}

TEST(ExactDecimal, ReadsTiesToEvenUpToTheEndsOfTheRange) {
  eachRowIn("platform.txt", "nearest doubles", [](const Cells& row) {
    EXPECT_EQ(exactNearestDouble(row.at(0), std::stoll(row.at(1))), doubleOf(row.at(2)));
  });
  EXPECT_EQ(exactNearestDouble("90071992547409930" + std::string(700, '0') + "1", 16), 9007199254740994.0);
}

// The digits of number text between its leading and trailing zeros.
std::string digitsIn(std::string_view text) {
  std::string digits;
  for (const char c : text.substr(0, text.find('e')))
    if (c >= '0' && c <= '9' && !(c == '0' && digits.empty())) digits += c;
  return digits.erase(digits.find_last_not_of('0') + 1);
}

// The public functions use charconv where the standard library has it for doubles.
TEST(ExactDecimal, IsThatOfCharconv) {
  // Doubles of every exponent, more of them where the code has edges.
  std::vector<double> values = {-0.0, kLargest, 0.49999999999999994, 1e23};
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    const double power = std::ldexp(1.0, exponent), half = power + std::floor(power) + 0.5;
    values.insert(values.end(), {power, std::nextafter(power, 0.0), std::nextafter(power, kLargest), half});
  }
  for (std::mt19937_64 random(20240229); values.size() < 100000;) values.push_back(std::bit_cast<double>(random()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double value = values[i];
    if (!std::isfinite(value)) continue;
    const DecimalDigits shortest = exactShortestDigits(value);
    ASSERT_EQ(textOf(shortest), textOf(shortestDigits(value)));
    ASSERT_EQ(exactNearestDouble(shortest.digits, shortest.exponent), std::abs(value));
    // Around the sizes where digits and powers of ten stop being exact doubles.
    const std::string digits = std::to_string(std::bit_cast<std::uint64_t>(value) >> (i % 60) | 1);
    const std::int64_t places = shortest.exponent % (i % 2 == 0 ? 28 : 360), size = std::ssize(digits);
    ASSERT_EQ(doubleFromText(digits + "e" + std::to_string(places)), exactNearestDouble(digits, places + size))
        << digits;
    if (i % 16 != 0) continue;
    const int count = i % 256 == 0 ? 340 : static_cast<int>(i / 16 % 30);
    ASSERT_EQ(exactDigitsToPlaces(value, count).digits, digitsIn(made(appendFixed, value, count))) << value;
    const DecimalDigits counted = exactDigitsToCount(value, count + 1);
    const std::string text = made(appendScientific, value, count);
    ASSERT_EQ(counted.digits, digitsIn(text)) << text;
    const int power = counted.digits.empty() ? 0 : counted.exponent - 1;
    ASSERT_TRUE(text.ends_with((power < 0 ? "e-" : "e+") + made(appendPadded, std::abs(power), 2))) << text;
  }
}

}  // namespace
}  // namespace quill
