#include "../Platform/NumberFormatter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quill {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

NumberFormatter formatterOf(std::int64_t minimumInteger, std::int64_t minimumFraction, std::int64_t maximumFraction) {
  NumberFormatter formatter;
  formatter.setLocale(Locale{});
  formatter.setMinimumIntegerDigits(minimumInteger);
  formatter.setMaximumFractionDigits(maximumFraction);
  formatter.setMinimumFractionDigits(minimumFraction);
  return formatter;
}

TEST(NumberFormatterSettings, KeepDigitCountsInOrder) {
  NumberFormatter formatter;
  const auto counts = [&formatter] {
    std::string text;
    for (const std::int64_t count : {formatter.minimumIntegerDigits(), formatter.maximumIntegerDigits(),
                                     formatter.minimumFractionDigits(), formatter.maximumFractionDigits()})
      text += std::to_string(count) + " ";
    return text + (formatter.usesGroupingSeparator() ? "grouped" : "plain");
  };
  const std::string most = std::to_string(NumberFormatter::kDefaultMaximumIntegerDigits);
  EXPECT_EQ(counts(), "1 " + most + " 0 0 plain");
  formatter.setNumberStyle(NumberFormatter::DecimalStyle);
  EXPECT_EQ(counts(), "1 " + most + " 0 3 grouped");
  formatter.setNumberStyle(NumberFormatter::NoStyle);
  formatter.setMaximumIntegerDigits(0);
  EXPECT_EQ(counts(), "0 0 0 0 plain");
  formatter.setMinimumIntegerDigits(4);
  formatter.setMinimumFractionDigits(3);
  EXPECT_EQ(counts(), "4 4 3 3 plain");
  formatter.setMinimumIntegerDigits(-1);
  formatter.setMaximumFractionDigits(-5);
  EXPECT_EQ(counts(), "0 4 0 0 plain");
}

TEST(NumberFormatterRendering, ShapesDigits) {
  const auto shaped = [](int integer, int minimum, int maximum, std::initializer_list<Number> numbers) {
    std::string all;
    for (const Number& number : numbers) all += formatterOf(integer, minimum, maximum).stringFromNumber(number) + " ";
    return all;
  };
  EXPECT_EQ(shaped(1, 0, 0, {kLowest, 2.5, std::nan(""), -HUGE_VAL}), "-9223372036854775808 2 NaN -∞ ");
  EXPECT_EQ(shaped(3, 0, 0, {-7, 0, 12345, Number::boolean(true)}), "-007 000 12345 001 ");
  EXPECT_EQ(shaped(1, 0, 2, {1.005, 1.015, 1e-3}), "1 1.02 0 ");  // half of the shortest form
  EXPECT_EQ(shaped(1, 2, 2, {3.1, 9.996, -0.0, -0.004}), "3.10 10.00 0.00 0.00 ");
  EXPECT_EQ(shaped(0, 0, 2, {0.25, 0}), ".25 0 ");
  // A count from a broken archive does not run away.
  EXPECT_EQ(formatterOf(kHighest, kHighest, kHighest).stringFromNumber(1).size(), 1100U + 1 + 1100);
}

TEST(NumberFormatterRendering, TakesSeparatorsAndSymbols) {
  NumberFormatter formatter;
  formatter.setLocale({"٫", "\u202F", "\u2212"});
  formatter.setNumberStyle(NumberFormatter::DecimalStyle);
  EXPECT_EQ(formatter.stringFromNumber(1234567.25), "1\u202F234\u202F567٫25");
  EXPECT_EQ(formatter.stringFromNumber(-1000), "\u22121\u202F000");
  EXPECT_EQ(formatter.stringFromNumber(100000), "100\u202F000");
  formatter.setMinimumIntegerDigits(4);
  EXPECT_EQ(formatter.stringFromNumber(7), "0\u202F007");
  EXPECT_EQ(copyOf(formatter)->stringFromNumber(7), "0\u202F007");
  Number zero = 0.0, some = 0.4;
  EXPECT_EQ(formatter.stringForObjectValue(nullptr), "");
  EXPECT_EQ(formatter.stringForObjectValue(&formatter), std::nullopt);
  formatter.setZeroSymbol("none");
  formatter.setNilSymbol("--");
  formatter.setNumberStyle(NumberFormatter::NoStyle);
  formatter.setMinimumIntegerDigits(1);
  EXPECT_EQ(formatter.stringForObjectValue(&zero), "none");
  EXPECT_EQ(formatter.stringForObjectValue(&some), "0") << "rounded, not zero itself";
  EXPECT_EQ(formatter.stringForObjectValue(nullptr), "--");
}

TEST(NumberFormatterParsing, ReadsIntegersAndDoubles) {
  const NumberFormatter formatter = formatterOf(1, 0, 0);
  std::string all;
  for (const char* text : {" \t-12\u00A0\n", "12.0", "-0", ".5", "-1.25", "9223372036854775807", "-9223372036854775808",
                           "9223372036854775808", "-9223372036854775809"}) {
    Number number = -99;
    std::string error = "untouched";
    EXPECT_TRUE(formatter.getNumber(&number, text, &error) && error == "untouched") << text;
    all += number.description() + (number.kind() == Number::Kind::Double ? "d " : " ");
  }
  EXPECT_EQ(
      all, "-12 12 0 0.5d -1.25d 9223372036854775807 -9223372036854775808 9223372036854776000d -9223372036854776000d ");
  for (const char* text : {"",     " ",   "-", ".",   "-.",    "+1",  "--1", "- 1", "1 2",   "1 .", "1e3",
                           "0x10", "1,0", "a", "12a", "1.2.3", "NaN", "∞",   "１",  "1\xFF", "1-"}) {
    Number number = -99;
    std::string error;
    EXPECT_FALSE(formatter.getNumber(&number, text, &error)) << text;
    EXPECT_TRUE(error == "Not a number." && number == Number(-99)) << text;
    EXPECT_FALSE(formatter.getNumber(nullptr, text, nullptr)) << text;
  }
  const NumberFormatter exact = formatterOf(1, 0, 1100);
  for (const double value : {-1.0 / 3, 1e23, 5e-324, std::numeric_limits<double>::max(), 123456.789}) {
    Number number;
    EXPECT_TRUE(exact.getNumber(&number, exact.stringFromNumber(value), nullptr) && number == Number(value)) << value;
  }
}

TEST(NumberFormatterParsing, TakesTheLocalesSeparators) {
  NumberFormatter formatter;
  formatter.setLocale({",", "\u202F", "\u2212"});
  formatter.setNumberStyle(NumberFormatter::DecimalStyle);
  std::string all;
  for (const char* text : {"\u22121\u202F234\u202F567,5", "-1\u202F000", "12\u202F34", "\u202F1"}) {
    Number number = 0;
    EXPECT_TRUE(formatter.getNumber(&number, text, nullptr)) << text;
    all += number.description() + " ";
  }
  EXPECT_EQ(all, "-1234567.5 -1000 1234 1 ");
  for (const char* text : {"1\u202F", "1\u202F\u202F1", "1\u202F,5", "1.5"})
    EXPECT_FALSE(formatter.getNumber(nullptr, text, nullptr)) << text;
  formatter.setUsesGroupingSeparator(false);
  EXPECT_FALSE(formatter.getNumber(nullptr, "1\u202F000", nullptr));
}

TEST(NumberFormatterParsing, EnforcesBoundsButNoDigitCounts) {
  NumberFormatter formatter = formatterOf(2, 0, 0);
  formatter.setMaximumIntegerDigits(2);
  formatter.setMinimum(-1.5);
  formatter.setMaximum(100);
  std::string errors;
  for (const char* text : {"-1.5", "-1.51", "100", "100.0001", "1.25"}) {
    std::string error;
    const bool found = formatter.getNumber(nullptr, text, &error);
    EXPECT_EQ(found, error.empty()) << text;
    errors += error + "|";
  }
  EXPECT_EQ(errors, "|Number below the minimum.||Number above the maximum.||");
  formatter.setMaximum(kHighest);
  EXPECT_TRUE(formatter.getNumber(nullptr, "9223372036854775808", nullptr)) << "equal as doubles";

  formatter.setMinimum(1);
  formatter.setZeroSymbol("none");
  Ref<Object> object = std::make_shared<Number>(5);
  EXPECT_FALSE(formatter.getObjectValue(&object, "", nullptr));
  EXPECT_FALSE(formatter.getObjectValue(&object, "none", nullptr)) << "0 is below the minimum";
  EXPECT_TRUE(object->isEqual(Number(5))) << "left alone";
  formatter.setMinimum(std::nullopt);
  EXPECT_TRUE(formatter.getObjectValue(&object, "none", nullptr) && object->isEqual(Number(0)));
  formatter.setNilSymbol("");
  EXPECT_TRUE(formatter.getObjectValue(nullptr, "", nullptr));
  EXPECT_TRUE(formatter.getObjectValue(&object, "", nullptr) && !object);
}

}  // namespace
}  // namespace quill
