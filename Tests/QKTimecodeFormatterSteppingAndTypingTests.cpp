#include "FormatterFixtures.h"

#include <limits>

namespace quill {
namespace {

constexpr auto k25 = QKSMPTETimecodeMode_25, kDrop = QKSMPTETimecodeMode_2997Drop;
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();

struct Setting {
  const char *minimum = nullptr, *maximum = nullptr;
  bool allowsNegative = false, hasRollover = true, showsHours = true;
  QKTimecodeFormat format = QKTimecodeFormatSMPTE;
};

QKTimecodeFormatter formatterWith(const Setting& setting, QKSMPTETimecodeMode mode) {
  QKTimecodeFormatter formatter;
  formatter.setAllowsNegative(setting.allowsNegative);
  formatter.setSMPTEHas24HourRollover(setting.hasRollover);
  formatter.setSMPTEDisplaysHours(setting.showsHours);
  formatter.setTimecodeFormat(setting.format);
  if (setting.minimum) formatter.setMinimum(timecodeAt(mode, setting.minimum).get());
  if (setting.maximum) formatter.setMaximum(timecodeAt(mode, setting.maximum).get());
  return formatter;
}

std::string stepped(const QKTimecodeFormatter& formatter, std::int64_t tag, std::int64_t increment, Object* object) {
  Ref<Object> result;
  formatter.getObjectValueIncrementingSegmentWithTag(&result, tag, increment, object);
  formatter.getObjectValueIncrementingSegmentWithTag(nullptr, tag, increment, object);
  return labelOf(result);
}

// What a text in a segment gives, as a label, or its error behind "! ".
std::string typed(QKTimecodeFormatter& formatter, std::int64_t tag, std::string_view text, Object* object) {
  Ref<Object> result;
  std::string error;
  const bool isTyped = formatter.getObjectValueForSegmentWithTag(&result, text, tag, object, &error);
  EXPECT_EQ(error.empty(), isTyped);
  return isTyped ? labelOf(result) : "! " + error;
}

TEST(QKTimecodeFormatterStepping, StopsAtTheLastWholeStepWithinTheBounds) {
  constexpr Setting kPlain, kBounded{"0:00:10:00", "0:00:20:00"}, kSigned{nullptr, nullptr, true},
      kCeiling{nullptr, nullptr, true, false}, kFar{nullptr, "200:00:00:00", true, false},
      kNoHours{nullptr, nullptr, false, true, false};
  const struct {
    Setting setting;
    const char* from;
    std::int64_t tag, increment;
    const char* to;
  } rows[] = {
      {kPlain, "0:00:15:10", 2, 1, "0:00:16:10"},
      {kBounded, "0:00:15:10", 2, 4, "0:00:19:10"},
      {kBounded, "0:00:15:10", 2, 5, "0:00:19:10"},
      {kBounded, "0:00:15:10", 2, kHighest, "0:00:19:10"},
      {kBounded, "0:00:15:10", 2, -5, "0:00:10:10"},
      {kBounded, "0:00:15:10", 2, kLowest, "0:00:10:10"},
      {kBounded, "0:00:15:10", 1, 1, "0:00:15:10"},  // one step passes the bound
      {kBounded, "0:00:25:10", 2, 1, "0:00:20:00"},  // already beyond it
      {kBounded, "0:00:05:10", 2, -1, "0:00:10:00"},
      {kCeiling, "0:00:15:10", 0, kHighest, "99:00:15:10"},
      {kCeiling, "0:00:15:10", 3, kHighest, "99:59:59:24"},
      {kCeiling, "99:59:59:24", 3, 1, "99:59:59:24"},
      {kCeiling, "-99:59:59:24", 3, -1, "-99:59:59:24"},
      {kFar, "98:00:00:00", 0, 10, "99:00:00:00"},
      {kPlain, "98:00:00:00", 0, 10, "108:00:00:00"},
      // below zero
      {kSigned, "0:00:00:10", 1, -1, "-0:01:00:10"},
      {kPlain, "0:00:00:10", 1, -1, "0:00:00:10"},  // refused: that segment becomes 0
      {kPlain, "0:00:00:10", 3, -11, "0:00:00:00"},
      {kPlain, "0:00:02:10", 2, kLowest, "0:00:00:10"},
      // a hidden segment steps too, and is not zeroed without a formatter
      {kNoHours, "0:00:15:10", 0, 1, "1:00:15:10"},
      {kNoHours, "0:00:15:10", 0, -1, "0:00:15:10"},
      {kPlain, "0:00:15:10", 4, 1, "0:00:15:10.01"},
      {kPlain, "0:00:15:10", 6, 1, "0:00:15:10"},
      {kPlain, "0:00:15:10", -1, 1, "0:00:15:10"},
  };
  ReportRecorder reports;  // log lines of times that run out of range
  for (const auto& row : rows) {
    const QKTimecodeFormatter formatter = formatterWith(row.setting, k25);
    const Ref<QKVideoTimecode> value = timecodeAt(k25, row.from);
    EXPECT_EQ(stepped(formatter, row.tag, row.increment, value.get()), row.to)
        << row.from << ", tag " << row.tag << " by " << row.increment;
    EXPECT_EQ(labelOf(value), row.from);
  }
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

TEST(QKTimecodeFormatterStepping, NeedsATimecode) {
  QKTimecodeFormatter formatter;
  formatter.setDefaultObjectPrototype(timecodeAt(k25, "0:00:01:00"));
  EXPECT_EQ(stepped(formatter, 2, 1, nullptr), "0:00:02:00");
  EXPECT_EQ(labelOf(formatter.defaultObjectPrototype()), "0:00:01:00");
  HostTimecode host(*timecodeAt(kDrop, "0:01:00:02"));
  EXPECT_EQ(stepped(formatter, 1, -1, &host), "0:00:00:02");

  ReportRecorder reports(ReportRecorder::Returned);
  Number number = 5;
  Ref<Object> result;
  formatter.getObjectValueIncrementingSegmentWithTag(&result, 2, 1, &number);
  EXPECT_TRUE(result && result->isEqual(Number(0)));
  expectAssertion(reports, "QKTimecodeFormatter", 1156,
                  "-[QKTimecodeFormatter "
                  "getObjectValue:incrementingSegmentWithTag:byIncrement:inObjectValue:] - illegal "
                  "value.");
  formatter.setDeputy(nullptr, QKTimecodeFormatSMPTE);
  formatter.getObjectValueIncrementingSegmentWithTag(&result, 2, 1, &host);
  EXPECT_TRUE(result && result->isEqual(Number(0)));
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKTimecodeFormatterTyping, SetsOneSegmentOfTheValueWithinTheBounds) {
  constexpr Setting kPlain, kSigned{nullptr, nullptr, true}, kBounded{"0:00:10:00", "0:00:20:00", true},
      kNoHours{nullptr, nullptr, true, true, false},
      kSeconds{nullptr, "0:00:20:00", false, true, true, QKTimecodeFormatSeconds},
      kFrames{nullptr, nullptr, false, true, true, QKTimecodeFormatVideoFrames};
  const struct {
    Setting setting;
    const char* from;
    std::int64_t tag;
    const char *text, *result, *value;  // value: what the one typed into becomes
  } rows[] = {
      {kPlain, "1:02:03:04", 2, "5", "1:02:05:04", "1:02:05:04"},
      {kPlain, "1:02:03:04", 0, "5", "5:02:03:04", "5:02:03:04"},
      {kBounded, "0:00:15:04", 2, "25", "0:00:20:00", "0:00:25:04"},
      {kBounded, "0:00:15:04", 2, "5", "0:00:10:00", "0:00:05:04"},
      // the sign stands in the leading segment
      {kPlain, "1:02:03:04", 0, "-5", "! Number below the minimum.", "1:02:03:04"},
      {kSigned, "1:02:03:04", 0, "-5", "-5:02:03:04", "-5:02:03:04"},
      {kSigned, "-1:02:03:04", 0, "5", "5:02:03:04", "5:02:03:04"},
      {kSigned, "-1:02:03:04", 2, "5", "-1:02:05:04", "-1:02:05:04"},
      {kSigned, "1:02:03:04", 2, "-5", "! Number below the minimum.", "1:02:03:04"},
      {kNoHours, "0:02:03:04", 1, "-5", "-0:05:03:04", "-0:05:03:04"},
      // more seconds or frames than ticks: those of 2^63-1 at 2000 a second, and none
      {kSeconds, "0:00:15:04", 0, "9223372036854775808", "0:00:20:00", "1281023894007:36:27:22.47"},
      {kFrames, "0:00:15:04", 0, "9223372036854775808", "0:00:00:00", "0:00:00:00"},
      // failures change nothing
      {kPlain, "1:02:03:04", 2, "x", "! Not a number.", "1:02:03:04"},
      {kPlain, "1:02:03:04", 0, "", "! Not a number.", "1:02:03:04"},
      {kPlain, "1:02:03:04", 4, "1", "! Segment with tag 4 not visible", "1:02:03:04"},
      {kPlain, "1:02:03:04", -7, "1", "! Segment with tag -7 not visible", "1:02:03:04"},
      {kNoHours, "1:02:03:04", 0, "1", "! Segment with tag 0 not visible", "1:02:03:04"},
  };
  for (const auto& row : rows) {
    QKTimecodeFormatter formatter = formatterWith(row.setting, k25);
    const Ref<QKVideoTimecode> value = timecodeAt(k25, row.from);
    EXPECT_EQ(typed(formatter, row.tag, row.text, value.get()), row.result) << row.from << row.text;
    EXPECT_EQ(labelOf(value), row.value) << row.from << row.text;
  }
}

TEST(QKTimecodeFormatterTyping, NeedsAValueThatItServes) {
  QKTimecodeFormatter formatter;
  formatter.setDefaultObjectPrototype(timecodeAt(k25, "0:00:01:00"));
  EXPECT_EQ(typed(formatter, 3, "7", nullptr), "0:00:01:07");
  EXPECT_EQ(labelOf(formatter.defaultObjectPrototype()), "0:00:01:00");
  HostTimecode host(*timecodeAt(k25, "0:01:00:02"));
  EXPECT_TRUE(formatter.getObjectValueForSegmentWithTag(nullptr, "7", 2, &host, nullptr));
  EXPECT_EQ(labelOf(host.value), "0:01:07:02.00");
  Number number = 5;
  EXPECT_EQ(typed(formatter, 3, "7", &number), "! Value doesn't conform to protocol");
  formatter.setDeputy(nullptr, QKTimecodeFormatSMPTE);
  EXPECT_EQ(typed(formatter, 3, "7", &host), "! Value doesn't conform to protocol");
}

}  // namespace
}  // namespace quill
