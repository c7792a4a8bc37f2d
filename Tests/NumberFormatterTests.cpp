#include "../Platform/NumberFormatter.h"

#include "../Framework/QKTimecodeSegmentNumberFormatter.h"
#include "../Platform/IntegerMath.h"
#include "NumberSettings.h"

namespace quill {
namespace {

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
