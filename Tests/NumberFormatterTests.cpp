#include "../Platform/NumberFormatter.h"

#include "../Framework/QKTimecodeSegmentNumberFormatter.h"
#include "../Platform/IntegerMath.h"
#include "TextTable.h"

namespace quill {
namespace {

// A formatter with settings as Data/platform.txt has them.
template <class Formatter = NumberFormatter>
Formatter formatterOf(const std::string& settings) {
  Formatter f;
  f.setLocale(Locale{});
  for (const std::string& setting : partsOf(settings, " ")) {
    const std::string value = setting.substr(1);
    switch (setting[0]) {
      case 'i': f.setMinimumIntegerDigits(std::stoll(value)); break;
      case 'I': f.setMaximumIntegerDigits(std::stoll(value)); break;
      case 'f': f.setMinimumFractionDigits(std::stoll(value)); break;
      case 'F': f.setMaximumFractionDigits(std::stoll(value)); break;
      case 'd': f.setNumberStyle(NumberFormatter::DecimalStyle); break;
      case 'n': f.setNumberStyle(NumberFormatter::NoStyle); break;
      case 'l':
        f.setLocale({std::string(substring(value, {0, 1})), std::string(substring(value, {1, 1})),
                     std::string(substring(value, {2, 1}))});
        break;
      case 'g': f.setUsesGroupingSeparator(value == "1"); break;
      case 's': f.setGroupingSeparator(value); break;
      case '<': f.setMinimum(numberOf(value)); break;
      case '>': f.setMaximum(numberOf(value)); break;
      case 'z': f.setNilSymbol(value); break;
      case '0': f.setZeroSymbol(value); break;
      default: ADD_FAILURE() << setting;
    }
  }
  return f;
}

TEST(NumberFormatter, KeepsDigitCountsInOrder) {
  eachRowIn("platform.txt", "digit counts", [](const Cells& row) {
    const NumberFormatter f = formatterOf(row.at(0));
    EXPECT_EQ((Cells{row[0], std::to_string(f.minimumIntegerDigits()), std::to_string(f.maximumIntegerDigits()),
                     std::to_string(f.minimumFractionDigits()), std::to_string(f.maximumFractionDigits())}),
              row);
    EXPECT_EQ(f.usesGroupingSeparator(), f.numberStyle() == NumberFormatter::DecimalStyle);
  });
}

TEST(NumberFormatter, ShowsNumbers) {
  eachRowIn("platform.txt", "shown numbers", [](const Cells& row) {
    Number number = numberOf(row.at(1));
    EXPECT_EQ(formatterOf(row.at(0)).stringForObjectValue(&number), row.at(2));
  });
  NumberFormatter symbols = formatterOf("z-- i4 d");
  EXPECT_TRUE(symbols.stringForObjectValue(nullptr) == "--" && !symbols.stringForObjectValue(&symbols));
  EXPECT_EQ(copyOf(symbols)->stringFromNumber(7), "0,007");
  // A count from a broken archive does not run away.
  const std::string most = std::to_string(kInt64Highest);
  EXPECT_EQ(formatterOf("i" + most + " f" + most).stringFromNumber(1).size(), 1100U + 1 + 1100);
}

TEST(NumberFormatter, ReadsNumbersWithinTheBounds) {
  eachRowIn("platform.txt", "read numbers", [](const Cells& row) {
    constexpr const char* kKinds[] = {" signed", " unsigned", " double", " boolean"};
    const Ref<Object> before = std::make_shared<Number>(-99);
    Ref<Object> object = before;
    std::string error;
    NumberFormatter formatter = formatterOf(row.at(0));
    const bool isRead = formatter.getObjectValue(&object, row.at(1), &error);
    EXPECT_EQ(formatter.getObjectValue(nullptr, row[1], nullptr), isRead);
    EXPECT_TRUE(isRead ? error.empty() : object == before);
    const auto* number = classCast<Number>(object.get());
    const std::string kind = number ? kKinds[static_cast<int>(number->kind())] : "";
    EXPECT_EQ(!isRead ? error : number ? number->description() + kind : "no value", row.at(2));
  });
  EXPECT_FALSE(formatterOf("F0").getNumber(nullptr, "1\xFF", nullptr));
}

TEST(QKTimecodeSegmentNumberFormatter, ChecksDigitsSignsAndGroupsAsTheyAreTyped) {
  const QKTimecodeSegmentNumberFormatter plain;
  EXPECT_TRUE(plain.formatterBehavior() == 1040 && plain.numberStyle() == 1 && plain.maximumFractionDigits() == 3);
  EXPECT_TRUE(&copyOf(plain)->classDescriptor() == &plain.descriptor && !plain.usesGroupingSeparator());
  eachRowIn("platform.txt", "typed numbers", [](const Cells& row) {
    const auto formatter = formatterOf<QKTimecodeSegmentNumberFormatter>(row.at(0));
    for (std::string text : partsOf(row.at(2), " ")) {
      std::replace(text.begin(), text.end(), '_', ' ');
      std::optional<std::string> proposed = "something";
      const bool isValid = formatter.isPartialStringValid(text == "\"\"" ? "" : text, &proposed, nullptr);
      EXPECT_EQ(isValid ? "valid" : "invalid", row.at(1)) << text;
      EXPECT_FALSE(proposed) << text;
    }
  });
  EXPECT_FALSE(plain.isPartialStringValid("1\xFF", nullptr, nullptr));
}

}  // namespace
}  // namespace quill
