// Seconds that are next to nothing become zero, and a process says so once. Its own program: the suite's other tests
// would say it first.

#include "../../Framework/QKVideoTimecode.h"
#include "../ReportRecorder.h"

#include <gtest/gtest.h>

namespace quill {
namespace {

TEST(DegenerateSeconds, AreLoggedOnceInAProcess) {
  ReportRecorder reports;
  const QKVideoTimecode zero(0.0, QKTimecodeUseSeconds, QKSMPTETimecodeMode_24);
  EXPECT_TRUE(reports.isQuiet()) << reports;
  for (int i = 0; i < 3; ++i) {
    QKVideoTimecode value(-2.5e-7, QKTimecodeUseSeconds, QKSMPTETimecodeMode_24);
    EXPECT_EQ(value.seconds(), 0);
    value.setSeconds(5e-324);
    EXPECT_EQ(value.seconds(), 0);
  }
  EXPECT_EQ(reports.logs,
            std::vector<std::string>{"QKVideoTimecode WARNING: Degenerate value for seconds (-2.500000e-07) from "
                                     "-setTimecodNumberValue: or -initWithTimecodeNumberValue:::. Normalizing to 0. "
                                     "Will only log once."});
}

}  // namespace
}  // namespace quill
