#include "FormatterFixtures.h"

namespace quill {
namespace {

constexpr auto k25 = QKSMPTETimecodeMode_25;
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
    std::int64_t tag, count, firstTag, index, width, selected;
    Range range;
    bool hasFormatter;
  } rows[] = {
      {"value", plain, &value, 3, 4, 0, 3, 2, 3, {9, 2}, true},
      {"host", plain, &host, 3, 4, 0, 3, 2, 3, {9, 2}, true},
      {"hidden segment", plain, &value, 4, 4, 0, -1, 0, 3, {0, 0}, false},
      {"no such segment", plain, &value, kNoTag, 4, 0, -1, 0, 3, {0, 0}, false},
      {"no value", plain, nullptr, 3, 1, 0, 0, 7, 0, {0, 7}, false},
      {"no value, nil symbol", longNil, nullptr, 3, 1, 0, 0, 9, 0, {0, 9}, false},
      {"not conforming", plain, &number, 3, 0, 0, 0, 0, 3, {0, 0}, false},
      {"no deputy", bare, &value, 3, 0, 0, 0, 0, 0, {0, 0}, false},
      {"no deputy, no value", bare, nullptr, 3, 1, 0, 0, 1, 0, {0, 0}, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    ReportRecorder reports(ReportRecorder::Returned);
    QKTimecodeFormatter& f = row.formatter;
    EXPECT_EQ(f.segmentCountInObjectValue(row.object), row.count);
    EXPECT_EQ(f.segmentTagForIndex(0, row.object), row.firstTag);
    EXPECT_EQ(f.segmentIndexForTag(row.tag, row.object), row.index);
    EXPECT_EQ(f.defaultSelectedSegmentTagInObjectValue(row.object), row.selected);
    EXPECT_EQ(f.substringRangeForSegmentWithTag(row.tag, row.object), row.range);
    EXPECT_EQ(f.formatterForSegmentTag(row.tag, row.object) != nullptr, row.hasFormatter);
    bool left = true, right = true;
    f.segmentWithTagHasPadding(row.tag, &left, &right, row.object);
    EXPECT_EQ(left, row.hasFormatter);
    EXPECT_FALSE(right);
    f.segmentWithTagHasPadding(row.tag, nullptr, nullptr, row.object);
    EXPECT_TRUE(reports.isQuiet()) << reports;

    EXPECT_EQ(f.segmentFieldWidthForTag(row.tag, row.object), row.width);
    if (row.object != &number) continue;
    expectAssertion(reports, "QKTimecodeFormatter", 1095,
                    "-[QKTimecodeFormatter segmentFieldWidthForTag:inObjectValue:] - illegal value");
  }
}

TEST(QKTimecodeFormatterSegments, RangesOfANegativeValueMustBeAllowed) {
  QKTimecodeFormatter formatter;
  const Ref<QKVideoTimecode> value = timecodeAt(k25, "-0:00:01:02");
  ReportRecorder reports(ReportRecorder::Returned);
  EXPECT_EQ(formatter.substringRangeForSegmentWithTag(3, value.get()), (Range{10, 2}));
  expectAssertion(reports, "QKTimecodeFormatter", 1141,
                  "-[QKTimecodeFormatter substringRangeForSegmentWithTag:inObjectValue:] negative "
                  "timecode in formatter that doesn't allow negative");
  EXPECT_EQ(formatter.substringRangeForSegmentWithTag(kNoTag, value.get()), (Range{0, 0}));
  formatter.setAllowsNegative(true);
  EXPECT_EQ(formatter.substringRangeForSegmentWithTag(0, value.get()), (Range{0, 3}));
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKTimecodeFormatterSegments, TheLeadingFormatterIsTheFormattersOwn) {
  const auto& shared = sharedDeputyLeadingTwoDigitNumberFormatter();
  QKVideoTimecode value;
  QKTimecodeFormatter refusing, allowing;
  allowing.setAllowsNegative(true);
  const auto leading = [&](QKTimecodeFormatter& formatter) {
    const std::int64_t tag = formatter.segmentTagForIndex(0, &value);
    return classCast<QKTimecodeSegmentNumberFormatter>(
        static_cast<Object*>(formatter.formatterForSegmentTag(tag, &value)));
  };
  for (const bool showsHours : {true, false}) {
    refusing.setSMPTEDisplaysHours(showsHours);
    allowing.setSMPTEDisplaysHours(showsHours);
    const auto *own = leading(refusing), *other = leading(allowing);
    ASSERT_TRUE(own && other && own != other && own != &shared && other != &shared);
    EXPECT_EQ(own->minimum(), Number(0));
    EXPECT_EQ(other->minimum(), std::nullopt);
    EXPECT_EQ(shared.minimum(), std::nullopt) << "never written";
    EXPECT_EQ(own->maximumIntegerDigits(), 2);
  }
  allowing.setAllowsNegative(false);
  EXPECT_EQ(leading(allowing)->minimum(), Number(0));
  QKTimecodeFormatter copy = allowing;
  EXPECT_NE(leading(copy), leading(allowing));
  EXPECT_EQ(refusing.formatterForSegmentTag(2, &value), &sharedDeputyFollowingTwoDigitNumberFormatter());
}

TEST(QKTimecodeFormatterSegments, ASegmentWithoutAFormatterIsTypedWithTheWholeOne) {
  struct : QKSMPTETimecodeFormatDeputy {
    NumberFormatter* formatterForSegmentTag(std::int64_t, Object*) const override { return nullptr; }
  } deputy;
  QKTimecodeFormatter formatter;
  formatter.setDeputy(Ref<QKFormatDeputy>(Ref<void>(), &deputy), QKTimecodeFormatSMPTE);
  QKVideoTimecode value;
  EXPECT_EQ(formatter.formatterForSegmentTag(0, &value), &formatter);
  EXPECT_EQ(formatter.formatterForSegmentTag(3, &value), &formatter);
}

}  // namespace
}  // namespace quill
