// The deputies in a process whose locale writes a decimal comma: the separator is read once and kept.

#include "../../Framework/QKExtendedTimecode.h"
#include "../../Framework/QKHMSTimecodeFormatDeputy.h"
#include "../../Framework/QKMeasuredTimecodeFormatDeputy.h"
#include "../../Framework/QKOneDTimeTimecodeFormatDeputy.h"
#include "../../Platform/LocaleInfo.h"
#include "../DeputyField.h"

namespace quill {
namespace {

TEST(CommaDeputies, WriteAndReadTheComma) {
  Locale::setCurrent({",", ".", "-"});
  const QKHMSTimecodeFormatDeputy clock;
  DeputyField(clock).expectShown({{-3723.5, "-01:02:03,500"}});
  DeputyField(clock).expectSegments({{-3723.5, "-01|02|03|500"}});
  DeputyField(clock).expectEntries({{0, "1,5", "00:00:01,500"}, {0, "1.5", "00:00:01,500"}});

  QKMeasuredTimecodeFormatDeputy beats;
  beats.setDisplaysDivisionsAndTicks(false);
  QKExtendedTimecode value(5.5, QKTimecodeUseSeconds, QKSMPTETimecodeMode_24);  // two bars and three beats
  EXPECT_EQ(DeputyField(beats).shown(value) + DeputyField(beats).entered(value, "1 2,25"), "2 4,0001 2,250");

  const QKOneDTimeTimecodeFormatDeputy seconds;
  DeputyField(seconds).expectShown({{-1.5, "-1,500000"}});
  DeputyField(seconds).expectSegments({{1234.5, "1|234|500|000"}});
  DeputyField(seconds).expectEntries({{0, "1,5", "1,500000"},
                                      {0, "-0,5", "-0,500000"},
                                      {0, "1.5", "1,000000"},  // a stray point ends the number
                                      {0, ".5", "[Illegal characters.]"},
                                      {0, "1,000,5", "1,000000"}});
  DeputyField(seconds).expectTyped({{1.5, -1, "25", "1,025000"}});
  EXPECT_EQ(seconds.legalCharacterSet(), CharacterSet(",0123456789"));
  EXPECT_EQ(seconds.defaultNilSymbol(), "—.—");

  Locale::setCurrent({});
  DeputyField(seconds).expectShown({{1.5, "1,500000"}});
}

}  // namespace
}  // namespace quill
