#include "../Framework/QKOneDTimeTimecodeFormatDeputy.h"

#include "../Platform/Archive.h"
#include "DeputyField.h"
#include "ReportRecorder.h"

namespace quill {
namespace {

QKOneDTimeTimecodeFormatDeputy deputyOf(std::uint64_t places) {
  QKOneDTimeTimecodeFormatDeputy deputy;
  deputy.setSecondsDecimalPlaces(places);
  return deputy;
}

const auto none = deputyOf(0), two = deputyOf(2), four = deputyOf(4), six = deputyOf(6);

TEST(QKOneDTimeTimecodeFormatDeputyRendering, RoundsToThePlacesAndCutsIntoGroups) {
  const auto tooMany = deputyOf(std::numeric_limits<std::uint64_t>::max());
  DeputyField(none).expectShown("2.5 > 3; -2.5 > -3; 0.4 > 0");
  DeputyField(two).expectShown("0.125 > 0.12; -12345.25 > -12345.25");
  DeputyField(six).expectShown("-1.5 > -1.500000; 0 > 0.000000");
  DeputyField(none).expectSegments("1234 > 1|234; -123 > -123");
  DeputyField(two).expectSegments("-12345.25 > -12|345|25");
  DeputyField(four).expectSegments("1234567.25 > 1|234|567|250|0");
  DeputyField(six).expectSegments("-1.5 > -1|500|000");
  DeputyField(tooMany).expectSegments("1.5 > 1|500|000|000|000|000|000");
  DeputyField field(six);
  EXPECT_EQ(field.shown(*std::make_shared<Number>(1)), "");
  field.formatter.setAllowsNegative(false);
  EXPECT_EQ(field.shown(*inTicks(-1.5)), "1.500000");
}

TEST(QKOneDTimeTimecodeFormatDeputyParsing, TakesSecondsAndAmounts) {
  DeputyField(two).expectEntries(
      "10  .25 > 0.25; 10 1e2 > 100.00; 10 +1.5 > 11.50; -10 + 1.5 > -8.50; 10 -11.5 > -1.50; -10 > -10.00; "
      "-10 + > -10.00; 10 1.5x > 1.50; 10 1.5.7 > 1.50; 10 1,5 > 1.00; 10 x1 > [Illegal characters.]; "
      "10 inf > [Illegal characters.]; 10 +-1 > [Illegal characters.]; 10 - -1 > [Illegal characters.]; "
      "10 ++1 > [Excess + or -'s]");
  EXPECT_EQ(DeputyField(two).entered(Number(1), "1"), "[Object does not conform to protocol]");
}

TEST(QKOneDTimeTimecodeFormatDeputySegments, HaveFormattersOfTheirWidth) {
  const Ref<Object> value = inTicks(1234.5);
  const NumberFormatter* const leading = &sharedDeputyLeadingIntegerNumberFormatter();
  const NumberFormatter* const threes = &sharedDeputyFollowingThreeDigitNumberFormatter();
  const NumberFormatter* const twos = &sharedDeputyFollowingTwoDigitNumberFormatter();
  const NumberFormatter* const ones = &sharedDeputyOneDigitNumberFormatter();
  const std::tuple<std::uint64_t, std::int64_t, const NumberFormatter*> rows[] = {
      {6, 2, nullptr}, {6, 1, leading}, {6, 0, threes}, {6, -2, threes}, {6, -3, nullptr},
      {4, -1, threes}, {4, -2, ones},   {2, -1, twos},  {0, 0, threes},  {0, -1, nullptr}};
  for (const auto& [places, tag, formatter] : rows) {
    const auto deputy = deputyOf(places);
    EXPECT_EQ(deputy.formatterForSegmentTag(tag, value.get()), formatter) << places << " tag " << tag;
    EXPECT_EQ(deputy.segmentFieldWidthForTag(tag, value.get()) > 0, formatter != nullptr);
  }
  EXPECT_EQ(DeputyField(six).paddings(-1, 1), "00 00 01");
  EXPECT_EQ(six.defaultSelectedSegmentTagInObjectValue(value.get()), 0);
  EXPECT_EQ(six.defaultNilSymbol() + none.defaultNilSymbol(), "—.——");
  EXPECT_EQ(six.legalCharacterSet(), CharacterSet(".0123456789"));
}

TEST(QKOneDTimeTimecodeFormatDeputyStepping, MirrorsThroughZero) {
  DeputyField(six).expectSteps(
      "1.5 0 2 > 3.500000; 1.5 1 1 > 1001.500000; 1.5 -1 -1 > 1.499000; 1.5 0 0 > 1.500000; "
      "0.5 0 -1 > -1.500000; -0.5 0 1 > 1.500000; 250.5 1 -1 > -1250.500000; 1 0 -2 > -1.000000; "
      "-1 0 2 > 0.000000; 0.0005 -1 -1 > -0.001500; 0.00001 -2 -15 > -0.000005; 1.5 -3 1 > 1.500000; "
      "1.5 7 1 > 1.500000");
  DeputyField(four).expectSteps("1.5 -2 1 > 1.5001");
  DeputyField(none).expectSteps("0.5 0 -2 > -2");
}

TEST(QKOneDTimeTimecodeFormatDeputyTyping, ChangesOneGroup) {
  DeputyField(six).expectTyped(
      "1234.5 1 7 > 7234.500000; 1234.5 0 7 > 1007.500000; 1234.5 -1 25 > 1234.025000; "
      "1234.5 -2 25 > 1234.500025; 1.5 0 2000 > 2000.500000; -1.5 0 5 > 5.500000; -0.5 -1 700 > -0.700000; "
      "-1.5 -1 250 > -0.750000; 1.5 -1 -1 > [Number below the minimum.]; "
      "1.5 1 1 > [Segment with tag 1 not visible]; 1.5 -3 1 > [Segment with tag -3 not visible]");
  DeputyField(four).expectTyped("1.25 -2 7 > 1.2507");  // one digit, out of ten
  DeputyField(two).expectTyped("1.25 -1 7 > 1.07");
  Number number = 1;
  EXPECT_EQ(DeputyField(six).typed(number, 0, "1"), "[Value doesn't conform to protocol]");
}

TEST(QKOneDTimeTimecodeFormatDeputyCoding, KeepsThePlacesAndMistrustsThem) {
  EXPECT_EQ(QKOneDTimeTimecodeFormatDeputy().secondsDecimalPlaces(), 6U);
  EXPECT_EQ(copyOf(two)->secondsDecimalPlaces(), 2U);
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    EXPECT_EQ(unarchived<QKOneDTimeTimecodeFormatDeputy>(archivedData(two, kind))->secondsDecimalPlaces(), 2U);
  }
  EXPECT_TRUE(conformsTo(none.copy().get(), Coding::protocol));
  const std::string archive = archivedData(two, ArchiveKind::Keyed);
  EXPECT_NE(archive.find(std::string("OrbisOneDTimeTimecodeFormatDeputyVersion\0", 41)), std::string::npos);
  for (const char byte : {'\x26', '\x17'}) {  // CBOR: -7, 23
    const auto read =
        unarchived<QKOneDTimeTimecodeFormatDeputy>(withValueOfKey(archive, "OTTFSecondsDecimalPlaces", byte));
    DeputyField(*read).expectSegments("1.5 > 1|500|000|000|000|000|000");
  }
}

TEST(QKOneDTimeTimecodeFormatDeputy, SurvivesRandomInput) {
  const ReportRecorder reports;  // of times out of range
  const auto most = deputyOf(18);
  DeputyField(none).survivesRandomInput(0.75);
  DeputyField(six).survivesRandomInput(-1234.5);
  DeputyField(most).survivesRandomInput(0.75);
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

}  // namespace
}  // namespace quill
