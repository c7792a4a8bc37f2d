#include "../Platform/TextServices.h"

#include "../Platform/LocaleInfo.h"
#include "../Platform/detail/ExactDecimal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>

namespace quill {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::uint64_t kHighestUnsigned = std::numeric_limits<std::uint64_t>::max();

// Sets the current locale for a scope.
class LocaleScope {
 public:
  explicit LocaleScope(const char* decimalSeparator) {
    Locale locale;
    locale.decimalSeparator = decimalSeparator;
    Locale::setCurrent(locale);
  }
  ~LocaleScope() { Locale::setCurrent(before_); }

 private:
  Locale before_ = Locale::current();
};

template <class Append, class... Arguments>
std::string made(Append append, Arguments... arguments) {
  std::string text = "kept ";
  append(text, arguments...);
  return text.starts_with("kept ") ? text.substr(5) : "the text before is gone";
}

TEST(TextServicesCharacters, AreDecodedOrOneInvalidByte) {
  for (const char32_t character : U"\0\x7F\x80\x7FF\x800\xFFFF\x10000\x10FFFF") {
    const std::string text = made(appendCharacter, character);
    EXPECT_EQ(decodeCharacter(text).character, character) << text;
    EXPECT_EQ(decodeCharacter(text).byteCount, text.size()) << text;
  }
  EXPECT_EQ(made(appendCharacter, U'\x7FF') + made(appendCharacter, U'\x10FFFF'), "\xDF\xBF\xF4\x8F\xBF\xBF");
  // Beyond the last, a surrogate, overlong, a continuation alone, cut off, not continued.
  for (const char* text :
       {"\xF4\x90\x80\x80", "\xED\xA0\x80", "\xC0\x80", "\xF0\x8F\xBF\xBF", "\x80", "\xE2\x80", "\xE2\x80z"}) {
    EXPECT_EQ(decodeCharacter(text).character, kInvalidCharacter) << text;
    EXPECT_EQ(decodeCharacter(text).byteCount, 1U) << text;
  }
  EXPECT_EQ(made(appendCharacter, char32_t{0xD800}), "\xEF\xBF\xBD") << "no character";
}

TEST(TextServicesCharacters, AreCountedAndCutAtAnyPlace) {
  // Characters of one to four bytes and an invalid byte, at every distance from the blocks of eight.
  for (std::uint64_t at = 0; at < 20; ++at) {
    for (const std::string piece : {"a", "é", "—", "𝄞", "\xFF"}) {
      const std::string text = std::string(at, '.') + piece + "0123456789abcdef" + piece;
      EXPECT_EQ(characterCount(text), at + 18) << text;
      EXPECT_EQ(substring(text, {at, 1}), piece) << text;
      EXPECT_EQ(substring(text, {at + 1, 16}), "0123456789abcdef") << text;
      EXPECT_EQ(substring(text, {at + 16, kHighestUnsigned}), "f" + piece) << text;
      EXPECT_EQ(substring(text, {kNotFound, 3}), "") << text;
    }
  }
}

TEST(TextServicesCharacterSet, ContainsWhatWasAdded) {
  CharacterSet set("a9—");
  set.add("é\xFF—𝄞");
  EXPECT_EQ(set, CharacterSet("é𝄞9a—"));
  for (const char32_t in : {U'a', U'9', U'—', U'é', U'𝄞'}) EXPECT_TRUE(set.contains(in));
  for (const char32_t out : {U'b', U'\0', U'\u2013', U'\u00FF', kInvalidCharacter}) EXPECT_FALSE(set.contains(out));
  for (const char32_t in : U" \t\n\v\f\r\u0085\u00A0\u2003\u202F\u3000")
    EXPECT_EQ(CharacterSet::whitespace().contains(in), in != 0);
  for (const char32_t out : U"0_\u200B\u2060") EXPECT_FALSE(CharacterSet::whitespace().contains(out));
  for (char32_t c = 0; c < 0x3000; ++c) ASSERT_EQ(CharacterSet::decimalDigits().contains(c), c >= '0' && c <= '9');
}

TEST(TextServicesScanner, SkipsWhiteSpaceUnlessToldOtherwise) {
  Scanner scanner(" \t12 34\u00A0x ");
  std::string_view found = "untouched";
  EXPECT_FALSE(scanner.scanCharacters(CharacterSet("x"), &found));
  EXPECT_TRUE(found == "untouched" && scanner.byteOffset() == 0) << "a failed scan does not move";
  EXPECT_TRUE(scanner.scanCharacters(CharacterSet::decimalDigits(), &found) && found == "12");
  EXPECT_TRUE(scanner.scanUpToCharacters(CharacterSet("4x"), &found) && found == "3");
  EXPECT_FALSE(scanner.scanUpToCharacters(CharacterSet("4x"), &found));
  EXPECT_TRUE(scanner.scanString("4") && !scanner.isAtEnd());
  EXPECT_TRUE(!scanner.scanString("") && scanner.scanString("x"));
  EXPECT_TRUE(scanner.rest() == " " && scanner.byteOffset() == 10 && scanner.location() == 9 && scanner.isAtEnd());
  scanner.skipNothing();
  EXPECT_FALSE(scanner.isAtEnd());
  EXPECT_TRUE(scanner.scanString(" ") && scanner.isAtEnd());
  Scanner dots("..7\xFF");
  dots.setSkippedCharacters(CharacterSet("."));
  EXPECT_TRUE(dots.scanCharacters(CharacterSet("7"), nullptr));
  EXPECT_FALSE(dots.scanCharacters(CharacterSet("\xFF"), nullptr)) << "an invalid byte is in no set";
  EXPECT_TRUE(dots.scanUpToCharacters(CharacterSet("7"), &found) && found == "\xFF");
}

TEST(TextServicesScanner, ReadsDoubles) {
  const auto scanned = [](const char* separator, bool byLocale, std::initializer_list<const char*> texts) {
    const LocaleScope scope(byLocale ? separator : "?");
    std::string all;
    for (const char* text : texts) {
      Scanner scanner(text);
      if (!byLocale) scanner.setDecimalSeparator(separator);
      double value = 99;
      EXPECT_TRUE(scanner.scanDouble(&value)) << text;
      appendScientific(all, value, 1);
      all.append("|").append(scanner.rest()).append(" ");
    }
    return all;
  };
  for (const bool byLocale : {false, true}) {
    EXPECT_EQ(scanned(".", byLocale, {"  -1.5e3x", "+.2", "7.", "1.2.3", "1,5", "2e", "2e+", "2E-1", "0x1F"}),
              "-1.5e+03|x 2.0e-01| 7.0e+00| 1.2e+00|.3 1.0e+00|,5 2.0e+00|e 2.0e+00|e+ 2.0e-01| 0.0e+00|x1F ");
    EXPECT_EQ(scanned(".", byLocale, {"1e400", "-1e-400", "1e99999999999999999999", "0e99999999999999999999"}),
              "inf| -0.0e+00| inf| 0.0e+00| ");
    EXPECT_EQ(scanned(",", byLocale, {"1,5", "1.5"}) + scanned("٫", byLocale, {"3٫2"}),
              "1.5e+00| 1.0e+00|.5 3.2e+00| ");
  }
  for (const char* text : {"inf", "nan", ".", "-", "--1", "- 1", ""}) {
    Scanner scanner(text);
    EXPECT_FALSE(scanner.scanDouble(nullptr)) << text;
    EXPECT_EQ(scanner.rest(), text);
  }
}

TEST(TextServicesNumbers, AreReadFromText) {
  std::string all;
  for (const char* text : {"", "0042", "12:30", "-5", "9223372036854775806", "9223372036854775808",
                           "18446744073709551615", "18446744073709551616", "99999999999999999999"}) {
    const std::uint64_t value = saturatingUInt64(text);
    all += std::to_string(value) + " ";
    EXPECT_EQ(saturatingInt64(text), static_cast<std::int64_t>(std::min(value, kHighestUnsigned / 2))) << text;
  }
  EXPECT_EQ(all,
            "0 42 12 0 9223372036854775806 9223372036854775808 18446744073709551615 18446744073709551615 "
            "18446744073709551615 ");
  const std::string zeros(2000, '0');
  EXPECT_EQ(doubleFromText("9007199254740993." + zeros + "1"), 9007199254740994.0) << "far beyond the tie";
  EXPECT_EQ(doubleFromText("9007199254740993." + zeros), 9007199254740992.0);
  EXPECT_EQ(doubleFromText("0." + zeros + "5e2001"), 5.0);
  EXPECT_EQ(doubleFromText("5" + zeros + "e-2000"), 5.0);
  EXPECT_EQ(doubleFromText("2" + zeros), kInfinity);
  for (const char* text : {"", "-1", "1,5", "1x", "1e"}) EXPECT_EQ(doubleFromText(text), 0.0) << text;
  // Around the sizes where digits and powers of ten stop being exact doubles.
  std::mt19937_64 random(1522);
  for (int i = 0; i < 100000; ++i) {
    const std::string digits = std::to_string(random() >> (random() % 60) | 1);
    const auto power = static_cast<std::int64_t>(random()) % (i % 2 == 0 ? 28 : 360);
    const auto exponent = power + static_cast<std::int64_t>(digits.size());
    ASSERT_EQ(doubleFromText(digits + "e" + std::to_string(power)), detail::exactNearestDouble(digits, exponent))
        << digits << "e" << power;
  }
}

TEST(TextServicesNumbers, AreWrittenAsIntegers) {
  std::string text;
  appendInteger(text, kLowest);
  appendInteger(text, kHighestUnsigned);
  appendInteger(text, std::int32_t{-7});
  appendInteger(text, std::uint32_t{4294967295});
  appendInteger(text, std::int64_t{0});
  EXPECT_EQ(text, "-922337203685477580818446744073709551615-742949672950");
  const std::tuple<std::int64_t, int, const char*> rows[] = {
      {5, 3, "005"}, {-5, 3, "-05"}, {-5, 1, "-5"},     {1234, 2, "1234"},
      {0, 0, "0"},   {7, -4, "7"},   {-100, 4, "-100"}, {kLowest, 21, "-09223372036854775808"}};
  for (const auto& [value, width, padded] : rows) EXPECT_EQ(made(appendPadded, value, width), padded);
  EXPECT_EQ(made(appendAddress, reinterpret_cast<const void*>(0x12abcdefu)), "0x12abcdef");
  EXPECT_EQ(made(appendAddress, static_cast<const void*>(nullptr)), "0x0");
}

TEST(TextServicesNumbers, AreWrittenAsDoubles) {
  const std::tuple<double, int, const char*, const char*, std::string> rows[] = {
      {2.5, 0, "2", "2e+00", "2.5"},
      {9.9996, 3, "10.000", "1.000e+01", "9.9996"},
      {-0.0004, 3, "-0.000", "-4.000e-04", "-0.0004"},
      {-0.0, 1, "-0.0", "-0.0e+00", "0"},
      {0.1, 20, "0.10000000000000000555", "1.00000000000000005551e-01", "0.1"},
      {1e-300, 0, "0", "1e-300", "0." + std::string(299, '0') + "1"},
      {1234.5, -3, "1234", "1e+03", "1234.5"},
      {-kInfinity, 2, "-inf", "-inf", "-inf"},
      {std::nan(""), 2, "nan", "nan", "nan"},
  };
  for (const auto& [value, places, fixed, scientific, shortest] : rows) {
    EXPECT_EQ(made(appendFixed, value, places), fixed);
    EXPECT_EQ(made(appendScientific, value, places), scientific);
    EXPECT_EQ(made(appendShortest, value), shortest);
  }
  EXPECT_EQ(made(appendFixed, -std::numeric_limits<double>::max(), 1000).size(), 1U + 309 + 1 + 340);
}

TEST(TextServicesDigits, AreRoundedHalfToEvenOnTheDecimalForm) {
  const std::tuple<double, int, const char*> rows[] = {
      {0.25, 1, "2@0"},    {0.35, 1, "4@0"},       {0.2500001, 1, "3@0"},   {0.5, 0, "@0"},
      {0.51, 0, "1@1"},    {0.09, 0, "@0"},        {5e-324, 300, "@0"},     {9.996, 2, "1@2"},
      {1.2004, 3, "12@1"}, {-1250.0, -2, "12@4-"}, {0.5, 2147483647, "5@0"}};
  const auto textOf = [](const DecimalDigits& number) {
    return number.digits + "@" + std::to_string(number.exponent) + (number.negative ? "-" : "");
  };
  for (const auto& [value, places, text] : rows) {
    DecimalDigits number = shortestDigits(value);
    roundToPlaces(number, places);
    EXPECT_EQ(textOf(number), text) << value;
  }
  EXPECT_EQ(textOf(digitsOf(kLowest)), "9223372036854775808@19-");
  EXPECT_EQ(textOf(digitsOf(kHighestUnsigned)), "18446744073709551615@20");
  EXPECT_EQ(textOf(digitsOf(std::int64_t{0})), "@0");
  EXPECT_TRUE(shortestDigits(-0.0).negative && shortestDigits(kInfinity).digits.empty());
}

}  // namespace
}  // namespace quill
