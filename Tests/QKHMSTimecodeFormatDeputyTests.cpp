#include "../Framework/QKHMSTimecodeFormatDeputy.h"

#include "../Platform/Archive.h"
#include "DeputyField.h"
#include "ReportRecorder.h"

namespace quill {
namespace {

constexpr std::int64_t kHours = 0, kSeconds = 2, kFraction = 3;  // 1 is the minutes

QKHMSTimecodeFormatDeputy deputyOf(std::int64_t places, bool rollover = false) {
  QKHMSTimecodeFormatDeputy deputy;
  deputy.setSecondsDecimalPlaces(places);
  deputy.setHas24HourRollover(rollover);
  return deputy;
}

const auto none = deputyOf(-2), one = deputyOf(1), three = deputyOf(3);

TEST(QKHMSTimecodeFormatDeputyRendering, RoundsAndCarries) {
  const auto rollover = deputyOf(3, true), tooMany = deputyOf(1000);
  DeputyField field(three);
  field.expectShown(
      "0 > 00:00:00.000; -3723.5 > -01:02:03.500; 59.9994 > 00:00:59.999; 59.9996 > 00:01:00.000; "
      "3599.9996 > 01:00:00.000; 442800 > 123:00:00.000");
  // The day is not wrapped again.
  DeputyField(rollover).expectShown("90000 > 01:00:00.000; 86399.9996 > 24:00:00.000");
  DeputyField(one).expectShown("1.25 > 00:00:01.2");  // half to even
  DeputyField(none).expectShown("2.5 > 00:00:03; 59.5 > 00:01:00; 3599.5 > 01:00:00");
  DeputyField(tooMany).expectShown("1.5 > 00:00:01.500000000000000000");
  EXPECT_NE(field.shown(*asSeconds(std::numeric_limits<double>::infinity())), "");
  EXPECT_EQ(field.shown(*std::make_shared<Number>(5)), "");
  field.formatter.setAllowsNegative(false);
  EXPECT_EQ(field.shown(*inTicks(-1)), "00:00:01.000");
}

TEST(QKHMSTimecodeFormatDeputyParsing, FillsFieldsFromTheRight) {
  DeputyField(three).expectEntries(
      "-3723.5 > 01:02:03.500; -3723.5 7 > 01:02:07.000; 3723.5 12 > 01:02:12.000; 3723.5 123 > 01:02:12.300; "
      "3723.5 1234 > 01:02:12.340; 3723.5 123456 > 01:01:23.456; 3723.5 1234567 > 01:12:34.567; "
      "3723.5 12345678901 > 12:34:56.789; 3723.5 99999999999999999999999999 > 10:40:39.999; "
      "3723.5 12x34 > 01:02:12.000; 3723.5 1:00 > 01:02:01.000; 3723.5 1.05 > 01:02:01.050; "
      "3723.5 1.23456 > 01:02:01.235; 3723.5 1.99996 > 01:02:02.000; "
      "3723.5 1.00000000000000000000000000005 > 01:02:01.000; 3723.5 :5 > 01:02:00.500; "
      "3723.5 4:5:6:7 > 04:05:06.700; 3723.5 1;2,3.25 > 01:02:03.250; 3723.5 +1:00 > 01:02:04.500; "
      "3723.5  + 1.5 > 01:02:05.000; 3723.5 -5 > 01:01:58.500; 3723.5 -2:0:0.0 > -00:57:56.500; "
      "-3723.5 +1.0 > -01:02:02.500; 3723.5 + > [Illegal characters.]; 3723.5 ++1 > [Illegal characters.]; "
      "3723.5 +-1 > [Illegal characters.]; 3723.5  5 > [Illegal characters.]; "
      "3723.5 x > [Illegal characters.]");
  DeputyField(none).expectEntries(
      "3723 5 > 01:02:05; 3723 123 > 01:01:23; 3723 12345678 > 12:34:56; 3723 :5 > 01:00:05; "
      "3723 +1:00 > 01:03:03");
  EXPECT_EQ(DeputyField(none).entered(QKVideoTimecode(), "1"), "[Object does not conform to protocol]");
  for (const bool rollover : {false, true}) {  // keeps the day
    const auto deputy = deputyOf(3, rollover);
    DeputyField field(deputy);
    field.formatter.setCurrentTimecode(inTicks(49 * 3600));
    Ref<Object> result;
    ASSERT_TRUE(deputy.getObjectValue(&result, "5:0:0.0", field.formatter, nullptr));
    EXPECT_EQ(protocolCast<QKOneDimensionalTimeTimecode>(result.get())->seconds(), rollover ? 53 * 3600 : 5 * 3600);
  }
}

TEST(QKHMSTimecodeFormatDeputySegments, FollowTheTextAndTheOptions) {
  DeputyField(none).expectSegments("-442800 > -123|00|00");
  DeputyField(one).expectSegments("-3723.5 > -01|02|03|5");
  DeputyField(three).expectSegments("3723.5 > 01|02|03|500; 442800 > 123|00|00|000");
  EXPECT_EQ(DeputyField(three).paddings(-1, 4), "00 01 11 10 00 00");
  EXPECT_EQ(none.defaultNilSymbol() + three.defaultNilSymbol(), "—:—:——:—:—.—");
  EXPECT_EQ(three.defaultSelectedSegmentTagInObjectValue(nullptr), kSeconds);
  EXPECT_EQ(three.segmentFieldWidthForTag(4, inTicks(1).get()), 0);
  EXPECT_EQ(three.substringRangeForSegmentWithTag(kHighest, inTicks(1).get()), Range());

  QKHMSTimecodeFormatDeputy deputy;
  const QKHMSTimecodeFormatDeputy copy = deputy;
  const NumberFormatter* fraction = deputy.secondsDecimalPlacesFormatter();
  ASSERT_TRUE(fraction);
  EXPECT_EQ(fraction->stringFromNumber(25), "025");
  EXPECT_FALSE(fraction->isPartialStringValid("1234", nullptr, nullptr));
  EXPECT_FALSE(fraction->isPartialStringValid("-", nullptr, nullptr));
  deputy.setSecondsDecimalPlaces(2);
  EXPECT_EQ(fraction->stringFromNumber(0), "00");
  deputy = copy;
  EXPECT_EQ(fraction, deputy.formatterForSegmentTag(kFraction, nullptr));
  EXPECT_EQ(fraction->stringFromNumber(0), "000");
  EXPECT_NE(fraction, copyOf(deputy)->secondsDecimalPlacesFormatter());
  EXPECT_FALSE(none.formatterForSegmentTag(kFraction, nullptr));
}

TEST(QKHMSTimecodeFormatDeputyStepping, MirrorsThroughZero) {
  DeputyField(three).expectSteps(
      "3599.999 3 1 > 01:00:00.000; 0.5 3 -600 > -00:00:00.100; 3723.5 1 60 > 02:02:03.500; "
      "3723.5 0 0 > 01:02:03.500; 10 1 -1 > -00:01:10.000; -10 1 1 > 00:01:10.000; -60 1 2 > 00:00:00.000; "
      "0 1 -1 > -00:01:00.000; 10 1 -90 > -01:01:10.000; 10 0 -1 > -01:00:10.000; 70.5 0 -1 > -01:01:10.500; "
      "0 0 -1 > -01:00:00.000; -70 0 1 > 01:01:10.000; -3600 0 2 > 00:00:00.000; 0.5 2 -1 > -00:00:01.500; "
      "-0.5 2 1 > 00:00:01.500; 1 2 -2 > -00:00:01.000; -1 2 2 > 00:00:00.000; 0.5 4 -1 > 00:00:00.500; "
      "0.5 -1 -1 > 00:00:00.500");
  DeputyField(none).expectSteps("1 3 1 > 00:00:02");  // hidden: by 1/10^0
}

TEST(QKHMSTimecodeFormatDeputyTyping, ChangesOneField) {
  DeputyField(three).expectTyped(
      "3723.5 0 5 > 05:02:03.500; 3723.5 0 -5 > -05:02:03.500; -3723.5 0 5 > 05:02:03.500; "
      "-3723.5 1 7 > -01:07:03.500; 3723.5 1 75 > 02:15:03.500; -3723.5 2 7 > -01:02:07.500; "
      "-3723.5 3 25 > -01:02:03.025; 3723.5 3 12345 > 01:02:15.345; 3723.5 1 -5 > [Number below the minimum.]; "
      "3723.5 2 x > [Not a number.]; 3723.5 4 1 > [Segment with tag 4 not visible]");
  DeputyField(none).expectTyped("1 3 1 > [Segment with tag 3 not visible]");
  QKVideoTimecode other;
  EXPECT_EQ(DeputyField(three).typed(other, kHours, "1"), "[Value doesn't conform to protocol]");
}

TEST(QKHMSTimecodeFormatDeputyCoding, KeepsOptionsAndMistrustsPlaces) {
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    for (const bool rollover : {false, true}) {
      const auto read = unarchived<QKHMSTimecodeFormatDeputy>(archivedData(deputyOf(5, rollover), kind));
      EXPECT_EQ(read->secondsDecimalPlaces(), 5);
      EXPECT_EQ(read->has24HourRollover(), rollover);
    }
  }
  EXPECT_TRUE(conformsTo(none.copy().get(), Coding::protocol));
  const std::string archive = archivedData(deputyOf(5, true), ArchiveKind::Keyed);
  // The flag is the integer 1, not a boolean.
  EXPECT_NE(archive.find("OHTFHas24HourRollover\x01"), std::string::npos);
  EXPECT_NE(archive.find(std::string("OrbisHMSTimecodeFormatDeputyVersion\0", 36)), std::string::npos);
  for (const char byte : {'\x26', '\x17'}) {  // CBOR: -7, 23
    const auto read = unarchived<QKHMSTimecodeFormatDeputy>(withValueOfKey(archive, "OHTFSecondsDecimalPlaces", byte));
    EXPECT_EQ(read->secondsDecimalPlaces(), byte == '\x26' ? -7 : 23);
    DeputyField(*read).expectSegments(byte == '\x26' ? "1.5 > 00|00|02" : "1.5 > 00|00|01|500000000000000000");
  }
}

TEST(QKHMSTimecodeFormatDeputy, SurvivesRandomInput) {
  const ReportRecorder reports;  // of times out of range
  DeputyField(none).survivesRandomInput(3723.25);
  DeputyField(three).survivesRandomInput(-90061.5);
  const auto rollover = deputyOf(18, true);
  DeputyField(rollover).survivesRandomInput(3723.25);
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

}  // namespace
}  // namespace quill
