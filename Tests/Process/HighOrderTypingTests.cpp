// The switch is fixed for the process by the first call that sets or reads it.

#include "../FormatterFixtures.h"

namespace quill {
namespace {

TEST(HighOrderTyping, OnceOnReadsEveryEntryPreserving) {
  QKTimecodeFormatter::_setOrbSMPTETimecodeFormatterUsesHighOrderTyping(true);
  QKTimecodeFormatter::_setOrbSMPTETimecodeFormatterUsesHighOrderTyping(false);
  EXPECT_TRUE(QKTimecodeFormatter::_orbSMPTETimecodeFormatterUsesHighOrderTyping());
  QKTimecodeFormatter formatter;
  formatter.setCurrentTimecode(timecodeAt(QKSMPTETimecodeMode_25, "1:02:03:04"));
  for (const std::int64_t interpretation : {0, 1, 2}) {
    formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(interpretation));
    Ref<Object> result;
    EXPECT_TRUE(formatter.getObjectValue(&result, "5:06", nullptr));
    EXPECT_EQ(labelOf(result), "1:02:05:06") << interpretation;
  }
}

}  // namespace
}  // namespace quill
