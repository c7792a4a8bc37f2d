// What a process settles at the first use and keeps: the deputies' decimal separator and the switch for high-order
// typing. And the warning that a process logs once.

#include "../../Framework/QKExtendedTimecode.h"
#include "../../Framework/QKOneDTimeTimecodeFormatDeputy.h"
#include "../../Framework/QKTimecodeFormatter.h"
#include "../../Platform/LocaleInfo.h"
#include "../OpenVideoTimecode.h"
#include "../ReportRecorder.h"
#include "../TextTable.h"

namespace quill {
namespace {

TEST(HighOrderTyping, OnceOnReadsEveryEntryPreserving) {
  QKTimecodeFormatter::_setOrbSMPTETimecodeFormatterUsesHighOrderTyping(true);
  QKTimecodeFormatter::_setOrbSMPTETimecodeFormatterUsesHighOrderTyping(false);
  EXPECT_TRUE(QKTimecodeFormatter::_orbSMPTETimecodeFormatterUsesHighOrderTyping());
  QKTimecodeFormatter formatter;
  formatter.setCurrentTimecode(std::make_shared<QKVideoTimecode>(valueAt(k25, "1:02:03:04.00").timeValue(), k25));
  for (const std::int64_t interpretation : {0, 1, 2}) {
    formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(interpretation));
    Ref<Object> result;
    ASSERT_TRUE(formatter.getObjectValue(&result, "5:06", nullptr));
    EXPECT_EQ(formatter.stringForObjectValue(result.get()), "01:02:05:06") << interpretation;
  }
}

TEST(CommaDeputies, WriteAndReadTheComma) {
  Locale::setCurrent({",", ".", "-"});
  QKTimecodeFormatter formatter;
  formatter.setAllowsNegative(true), formatter.setSMPTEDisplaysSubframes(true);
  formatter.setMDisplaysDivisionsAndTicks(false);
  eachRowIn("labels.txt", "decimal comma", [&](const Cells& row) {
    formatter.setTimecodeFormat(static_cast<QKTimecodeFormat>(std::stoi(row[0])));
    Ref<Object> value = std::make_shared<QKExtendedTimecode>(std::stod(row[1]), QKTimecodeUseSeconds, k24);
    formatter.setCurrentTimecode(value);
    std::string error;
    const bool isRead = row[2].empty() || formatter.getObjectValue(&value, row[2], &error);
    EXPECT_EQ(isRead ? formatter.stringForObjectValue(value.get()) : error, row[3]);
  });
  const QKOneDTimeTimecodeFormatDeputy deputy;
  EXPECT_TRUE(deputy.legalCharacterSet() == CharacterSet(",0123456789") && deputy.defaultNilSymbol() == "—.—");
  Locale::setCurrent(Locale{});
  eachRowOf("1.5 | 1,5; 12...5.5 | 12..,5.5; .5 | ,5; x.5 | x.5; 1,5 | 1,5;  1.5 |  1.5",
            [](const Cells& row) { EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot(row[0]), row[1]); });
}

TEST(DegenerateSeconds, AreLoggedOnceInAProcess) {
  ReportRecorder reports;
  const QKVideoTimecode zero(0.0, QKTimecodeUseSeconds, k24), small(0.000001, QKTimecodeUseSeconds, k24);
  EXPECT_TRUE(reports.isQuiet() && small.seconds() == 0.000001) << reports;
  for (const double seconds : {-2.5e-7, 5e-324, 0.0000009999999}) {
    QKVideoTimecode value(seconds, QKTimecodeUseSeconds, k24), other(1.0, QKTimecodeUseSeconds, k24), set = other;
    other.setSeconds(seconds), set.setTimecodeNumberValue(seconds);
    EXPECT_TRUE(value.seconds() == 0 && other.seconds() == 0 && set.seconds() == 0) << seconds;
  }
  EXPECT_EQ(
      reports.logs,
      std::vector<std::string>{
          "QKVideoTimecode WARNING: Degenerate value for seconds (-2.500000e-07) from -setTimecodNumberValue: or -initWithTimecodeNumberValue:::. Normalizing to 0. Will only log once."});
}

}  // namespace
}  // namespace quill
