// Reading the high-order typing switch while it is unset fixes it to false for the process.

#include "../../Framework/QKTimecodeFormatter.h"

#include <gtest/gtest.h>

namespace quill {
namespace {

TEST(HighOrderTypingUnset, IsFixedToFalseByReading) {
  QKTimecodeFormatter formatter;
  formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(2));
  EXPECT_FALSE(formatter.getObjectValue(nullptr, "5:06", nullptr));  // reads it
  QKTimecodeFormatter::_setOrbSMPTETimecodeFormatterUsesHighOrderTyping(true);
  EXPECT_FALSE(QKTimecodeFormatter::_orbSMPTETimecodeFormatterUsesHighOrderTyping());
}

}  // namespace
}  // namespace quill
