// How segments are stepped and typed into within bounds is in Data/formats.txt.

#include "FormatterFixtures.h"

namespace quill {
namespace {

constexpr std::int64_t kNoTag = 0x7fffffff;

TEST(QKTimecodeFormatterSegments, AnswersForNoValueAndForOnesThatItCannotServe) {
  QKTimecodeFormatter plain, longNil, bare;
  longNil.setNilSymbol("— — — — —");
  bare.setDeputy(nullptr, QKTimecodeFormatSMPTE);
  QKVideoTimecode value;
  HostTimecode host(value);
  Number number = 1;
  const struct {
    const char* label;
    QKTimecodeFormatter& formatter;
    Object* object;
    std::int64_t tag;
    const char* answers;  // count, first tag, index, width, selected tag, range, paddings, whether it has a formatter
  } rows[] = {
      {"value", plain, &value, 3, "4 0 3 2 3 9+2 10 1"},
      {"host", plain, &host, 3, "4 0 3 2 3 9+2 10 1"},
      {"hidden segment", plain, &value, 4, "4 0 -1 0 3 0+0 00 0"},
      {"no such segment", plain, &value, kNoTag, "4 0 -1 0 3 0+0 00 0"},
      {"no value", plain, nullptr, 3, "1 0 0 7 0 0+7 00 0"},
      {"no value, nil symbol", longNil, nullptr, 3, "1 0 0 9 0 0+9 00 0"},
      {"not conforming", plain, &number, 3, "0 0 0 0 3 0+0 00 0"},
      {"no deputy", bare, &value, 3, "0 0 0 0 0 0+0 00 0"},
      {"no deputy, no value", bare, nullptr, 3, "1 0 0 1 0 0+0 00 0"},
  };
  for (const auto& [label, f, object, tag, answers] : rows) {
    SCOPED_TRACE(label);
    ReportRecorder reports(ReportRecorder::Returned);
    const Range range = f.substringRangeForSegmentWithTag(tag, object);
    bool left = true, right = true;
    f.segmentWithTagHasPadding(tag, &left, &right, object);
    f.segmentWithTagHasPadding(tag, nullptr, nullptr, object);
    std::ostringstream got;
    got << f.segmentCountInObjectValue(object) << ' ' << f.segmentTagForIndex(0, object) << ' '
        << f.segmentIndexForTag(tag, object) << ' ' << f.segmentFieldWidthForTag(tag, object) << ' '
        << f.defaultSelectedSegmentTagInObjectValue(object) << ' ' << range.location << '+' << range.length << ' '
        << left << right << ' ' << (f.formatterForSegmentTag(tag, object) != nullptr);
    EXPECT_EQ(got.str(), answers);
    if (object == &number) {
      expectAssertion(reports, "QKTimecodeFormatter", 1095,
                      "-[QKTimecodeFormatter segmentFieldWidthForTag:inObjectValue:] - illegal value");
    }
    EXPECT_TRUE(reports.isQuiet()) << reports;
  }
}

TEST(QKTimecodeFormatterSegments, TheLeadingFormatterIsTheFormattersOwn) {
  const auto& shared = sharedDeputyLeadingTwoDigitNumberFormatter();
  QKVideoTimecode value;
  QKTimecodeFormatter formatter;
  for (const bool showsHours : {true, false}) {
    formatter.setSMPTEDisplaysHours(showsHours);
    const std::int64_t tag = formatter.segmentTagForIndex(0, &value);
    QKTimecodeFormatter copy = formatter;
    for (const bool allowsNegative : {true, false}) {
      formatter.setAllowsNegative(allowsNegative);
      const auto* own = dynamic_cast<NumberFormatter*>(formatter.formatterForSegmentTag(tag, &value));
      ASSERT_TRUE(own && own != &shared && own != copy.formatterForSegmentTag(tag, &value));
      EXPECT_EQ(own->minimum(), allowsNegative ? std::nullopt : std::optional<Number>(0));
      EXPECT_EQ(own->maximumIntegerDigits(), 2);
      EXPECT_EQ(shared.minimum(), std::nullopt) << "never written";
    }
  }
  EXPECT_EQ(formatter.formatterForSegmentTag(2, &value), &sharedDeputyFollowingTwoDigitNumberFormatter());
  // A segment without a formatter is typed with the whole one.
  struct : QKSMPTETimecodeFormatDeputy {
    NumberFormatter* formatterForSegmentTag(std::int64_t, Object*) const override { return nullptr; }
  } deputy;
  formatter.setDeputy(Ref<QKFormatDeputy>(Ref<void>(), &deputy), QKTimecodeFormatSMPTE);
  EXPECT_EQ(formatter.formatterForSegmentTag(1, &value), &formatter);
  EXPECT_EQ(formatter.formatterForSegmentTag(3, &value), &formatter);
}

TEST(QKTimecodeFormatterSegments, StepAndTakeTextOfAValueThatTheDeputyServes) {
  QKTimecodeFormatter formatter;
  formatter.setDefaultObjectPrototype(timecodeAt(k25, "0:00:01:00"));
  ReportRecorder reports(ReportRecorder::Returned);
  Ref<Object> result;
  std::string error;
  const auto stepped = [&](Object* object) {
    formatter.getObjectValueIncrementingSegmentWithTag(&result, 2, 1, object);
    formatter.getObjectValueIncrementingSegmentWithTag(nullptr, 2, 1, object);
    return result->isEqual(Number(0)) ? "0" : labelOf(result);
  };
  const auto typed = [&](Object* object) {
    return formatter.getObjectValueForSegmentWithTag(&result, "7", 3, object, &error) ? labelOf(result) : error;
  };
  EXPECT_EQ(stepped(nullptr), "0:00:02:00");
  EXPECT_EQ(typed(nullptr), "0:00:01:07");
  EXPECT_EQ(labelOf(formatter.defaultObjectPrototype()), "0:00:01:00");
  HostTimecode host(*timecodeAt(k2997Drop, "0:01:00:02"));
  EXPECT_EQ(stepped(&host), "0:01:01:02");
  EXPECT_EQ(typed(&host), "0:01:00:07");
  Number number = 5;
  EXPECT_EQ(typed(&number), "Value doesn't conform to protocol");
  formatter.getObjectValueIncrementingSegmentWithTag(&result, 2, 1, &number);
  EXPECT_TRUE(result->isEqual(Number(0)));
  expectAssertion(
      reports, "QKTimecodeFormatter", 1156,
      "-[QKTimecodeFormatter getObjectValue:incrementingSegmentWithTag:byIncrement:inObjectValue:] - illegal value.");
  formatter.setDeputy(nullptr, QKTimecodeFormatSMPTE);
  EXPECT_EQ(stepped(&host), "0");
  EXPECT_EQ(typed(&host), "Value doesn't conform to protocol");
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKTimecodeFormatterSegments, AResultThatRunsOutOfRangeIsHeldAtItsEnd) {
  QKTimecodeFormatter formatter;
  formatter.setTimecodeFormat(QKTimecodeFormatSeconds);
  formatter.setAllowsNegative(true);
  QKVideoTimecode far(1e18, QKTimecodeUseSeconds, k24), value({24, 24}, k24), lost = value;
  Ref<Object> result;
  const auto ticks = [&] { return classCast<QKVideoTimecode>(result.get())->timeValue(); };
  formatter.setMinimum(&far);  // which ticks do not hold
  formatter.getObjectValueIncrementingSegmentWithTag(&result, 0, 1, &value);
  EXPECT_EQ(ticks(), MediaTime(kInt64Highest, 24));
  EXPECT_TRUE(formatter.getObjectValueForSegmentWithTag(&result, "5", 0, &value, nullptr));
  EXPECT_EQ(ticks(), MediaTime(kInt64Highest, 24));
  formatter.setMinimum(nullptr);
  formatter.setCurrentTimecode(far.copy());
  for (const char* entry : {"1e999", "+1e999", "-1e999"}) {
    EXPECT_TRUE(formatter.getObjectValue(&result, entry, nullptr));
    EXPECT_EQ(classCast<QKVideoTimecode>(result.get())->seconds(),
              (entry[0] == '-' ? -1 : 1) * std::numeric_limits<double>::max());
  }

  ReportRecorder reports;
  lost.setSeconds(1e300);
  reports.clear();
  formatter.setTimecodeFormat(QKTimecodeFormatSMPTE);
  formatter.setAllowsNegative(false);
  EXPECT_TRUE(formatter.getObjectValueForSegmentWithTag(&result, "5", 3, &lost, nullptr));
  EXPECT_EQ(reports.logs.size(), 3u) << "the deputy's own" << reports;
}

// Text never fails an assertion, although samples of the SMPTE 272M sequence have no negative count.
TEST(QKTimecodeFormatterSegments, TakeASignOverSamplesOfTheSequence) {
  QKTimecodeFormatter formatter;
  formatter.setTimecodeFormat(QKTimecodeFormatAudioFrames);
  formatter.setAllowsNegative(true);
  QKTimecode value(0, 2400000, k2997Drop, 48000);
  value.setAudioFrames(5000);
  ReportRecorder reports;
  EXPECT_TRUE(formatter.getObjectValueForSegmentWithTag(nullptr, "-5", 1, &value, nullptr));
  EXPECT_TRUE(value.isNegative() && reports.isQuiet());
}

}  // namespace
}  // namespace quill
