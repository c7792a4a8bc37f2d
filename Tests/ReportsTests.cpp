#include "../Platform/Reports.h"

#include "../Platform/Number.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

namespace quill {
namespace {

TEST(Reports, PrintAndRaiseByDefault) {
  const ReportRecorder restoring;
  setLogSink({}), setAssertionHandler({}), setLightAssertionSink({});
  ::testing::internal::CaptureStderr();
  ::testing::internal::CaptureStdout();
  logLine("WARNING: no % here %s");
  lightAssertionFailed("a >= 0", "QKTimecode", 132);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "MyAssertMessage: a >= 0,  file: QKTimecode, line: 132, value: 0\n");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "WARNING: no % here %s\n");
  const Number number;
  for (const Object* object : {static_cast<const Object*>(&number), static_cast<const Object*>(nullptr)}) {
    try {
      assertionFailed({"-[Number test]", object, "NumberFile", 7, "it must hold"});
      ADD_FAILURE() << "went on";
    } catch (const InternalInconsistencyFailure& failure) {
      EXPECT_STREQ(failure.what(), "it must hold");
      EXPECT_EQ(failure.object(), object ? number.classNameAndAddress() : "");
      EXPECT_EQ(failure.method() + failure.file() + std::to_string(failure.line()), "-[Number test]NumberFile7");
    }
  }
}

TEST(Reports, GoToTheSinksThatAreSet) {
  ReportRecorder reports(ReportRecorder::Returned);
  logLine("one");
  lightAssertionFailed("two", "File", 1);
  assertionFailed({"-[X y]", nullptr, "X", 1, "three"});  // goes on
  setLogSink([](std::string_view) {})("four");            // the sink before is handed back
  EXPECT_EQ((::testing::Message() << reports).GetString(),
            "log: one\nlog: four\nassertion: -[X y] X:1 three\nlight: MyAssertMessage: two,  file: File, line: 1, "
            "value: 0\n");
}

}  // namespace
}  // namespace quill
