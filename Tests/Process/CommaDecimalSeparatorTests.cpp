// The deputies' decimal separator is that of the locale at its first use, for the life of the process.

#include "../FormatterFixtures.h"

namespace quill {
namespace {

TEST(CommaDecimalSeparator, IsKeptFromItsFirstUse) {
  Locale::setCurrent({",", ".", "-"});
  EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot("1.5"), "1,5");
  EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot("12...5.5"), "12..,5.5");
  EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot(".5"), ",5");
  for (const char* text : {"", "1", "x.5", "1,5", " 1.5"}) {
    EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot(text), text);
  }
  Locale::setCurrent(Locale{});
  EXPECT_EQ(formatDeputyDecimalSeparator(), ",");
  EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot("1.5"), "1,5");
}

TEST(CommaDecimalSeparator, IsNoMatterOfSMPTEText) {
  Locale::setCurrent({",", ".", "-"});
  QKTimecodeFormatter formatter;
  formatter.setSMPTEDisplaysSubframes(true);
  Ref<Object> result;
  EXPECT_TRUE(formatter.getObjectValue(&result, "01:02:03;04.05", nullptr));
  EXPECT_EQ(formatter.stringForObjectValue(result.get()), "01:02:03;04.05");
}

}  // namespace
}  // namespace quill
