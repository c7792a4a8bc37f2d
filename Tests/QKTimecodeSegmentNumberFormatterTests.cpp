#include "../Framework/QKTimecodeSegmentNumberFormatter.h"

#include <gtest/gtest.h>

namespace quill {
namespace {

TEST(QKTimecodeSegmentNumberFormatter, StartsWithDecimalStyleUngrouped) {
  const QKTimecodeSegmentNumberFormatter formatter;
  EXPECT_TRUE(formatter.formatterBehavior() == 1040 && formatter.numberStyle() == 1);
  EXPECT_FALSE(formatter.usesGroupingSeparator() || formatter.minimum());
  EXPECT_EQ(formatter.maximumFractionDigits(), 3);
  EXPECT_EQ(&copyOf(formatter)->classDescriptor(), &QKTimecodeSegmentNumberFormatter::descriptor);
}

using Texts = std::initializer_list<const char*>;

void expectTyping(const NumberFormatter& formatter, Texts valid, Texts invalid) {
  for (const bool isValid : {true, false}) {
    for (const char* text : isValid ? valid : invalid) {
      std::optional<std::string> proposed = "something";
      std::string error = "untouched";
      EXPECT_EQ(formatter.isPartialStringValid(text, &proposed, &error), isValid) << text;
      EXPECT_TRUE(!proposed && error == "untouched") << text;
      EXPECT_EQ(formatter.isPartialStringValid(text, nullptr, nullptr), isValid) << text;
    }
  }
}

TEST(QKTimecodeSegmentNumberFormatter, CountsDigitsSignsAndGroupsAsTheyAreTyped) {
  QKTimecodeSegmentNumberFormatter formatter;
  formatter.setLocale({",", ".", "\u2212"});
  expectTyping(formatter, {"1,", "1,234", "\u22121,5"}, {"1.5"});
  formatter.setLocale(Locale{});
  expectTyping(formatter, {"1.", "1.234", ".", ".5", "-.", "-.5"}, {"1.2345", "1..", "1.2.3", "1.2-", "1. 2", "1,5"});
  for (const Number& minimum : {Number(0), Number(1), Number(-0.0)}) {
    formatter.setMinimum(minimum);
    expectTyping(formatter, {"", "1"}, {"-", "-1", "1-"});
  }
  formatter.setMinimum(-0.5);
  expectTyping(formatter, {"-", "-1"}, {"--", "1-", "-1-"});
  formatter.setMinimum(std::nullopt);
  formatter.setUsesGroupingSeparator(true);
  formatter.setMaximumIntegerDigits(7);
  expectTyping(formatter, {"1", "123", "1,234", "123,456", "1,234,567", "-1,234.5", ".5"},
               {"1234", "12,345,678", "1,23", "1,2345", "1,", ",123", "1,,234", "1.234,5"});
  formatter.setGroupingSeparator("");
  expectTyping(formatter, {"1234"}, {"12345678"});
  formatter.setMaximumIntegerDigits(2);
  formatter.setMaximumFractionDigits(0);
  expectTyping(formatter, {"", "12", "-12"},
               {"123", "007", "1.", ".", "1a", "a", "+1", "1 2", " 1", "1 ", "1,", "１", "1\xFF"});
}

}  // namespace
}  // namespace quill
