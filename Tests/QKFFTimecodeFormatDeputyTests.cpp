#include "../Framework/QKFFTimecodeFormatDeputy.h"

#include "../Framework/QKExtendedTimecode.h"
#include "../Platform/Archive.h"
#include "DeputyField.h"
#include "ReportRecorder.h"

#include <sstream>

namespace quill {
namespace {

// 12.053 is 12+05/3 at 16 frames a foot. 80 ticks to a frame hold no thousandth of one, which film arithmetic adds.
Ref<Object> filmAt(double position) {
  auto film = std::make_shared<QKExtendedTimecode>(0, QKTimecodeBestTimeRate, QKSMPTETimecodeMode_24, 24);
  const std::int64_t digits = std::llround(std::abs(position) * 1000);
  film->addFeet(digits / 1000, digits / 10 % 100, digits % 10);
  film->setIsNegative(position < 0);
  return film;
}

struct OpenDeputy : QKFFTimecodeFormatDeputy {
  OpenDeputy(std::int64_t separator, bool quarterFrames, bool all = false) : formatsAllTags(all) {
    setSeparator(separator);
    setDisplaysQuarterFrames(quarterFrames);
  }
  NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const override {
    return QKFFTimecodeFormatDeputy::formatterForSegmentTag(formatsAllTags ? 0 : tag, object);
  }
  using QKFFTimecodeFormatDeputy::privateNumberStringWithNormalizedSeparatorCount;
  using QKFFTimecodeFormatDeputy::privateScanFFNumberString;
  bool formatsAllTags;
};

const OpenDeputy plus(1, false), plusQuarters(1, true), point(2, false), pointQuarters(2, true), spaced(0, false),
    spacedQuarters(0, true), formatsAll(1, true, true);
DeputyField field(const OpenDeputy& deputy) { return DeputyField(deputy, {filmAt}); }

TEST(QKFFTimecodeFormatDeputyParsing, FillsFieldsFromTheRight) {
  field(plus).expectEntries(
      "-12.05 > 0012+05; -12.05 7 > 0012+07; 12.05 12 > 0012+12; 12.05 103 > 0001+03; 12.05 12345 > 0125+13; "
      "12.05 12x > 0012+12; 12.05 1+2 > 0001+02; 12.05 1:2 > 0001+02; 12.05 1+ > 0001+00; 12.05 ,7 > 0000+07; "
      "12.05 1+2+3 > 0001+02; 12.05 1++++5 > 0012+01; 12.05 +2 > 0012+07; 12.05 -1+6 > 0010+15; "
      "12.05 -103 > 0011+02; 12.05 -+2 > 0012+03; 1.05 -2+0 > -0000+11; -1.05 +2 > -0001+03; "
      "1 + > [Illegal characters.]; 1 ++1 > [Illegal characters.]; 1  5 > [Illegal characters.]; "
      "1 . > [Illegal characters.]; 1 1+2++ > [Illegal characters.]");
  const auto quarters =
      "12.052 7 > 0012+07/2; 12.052 12 > 0012+12/2; 12.052 107 > 0001+07/2; 12.052 12;5 > 0012+05/0; "
      "12.052 12/3 > 0012+03/0; 12.052 12+5/3 > 0012+05/3; 12.052 12+ > 0012+00/0; 12.052 /3 > 0000+03/0; "
      "12.052 205 3 > 0002+05/3; 12.052 5 6 > 0012+06/2; 12.052 . > 0012+00/0; 12.052 +5 > 0012+10/2; "
      "12.052 +0+0/3 > 0012+06/1; 12.052 -205 > 0010+00/2; 12.052 1:2 > 0012+01/2; 1 x > [Illegal characters.]";
  field(plusQuarters).expectEntries(quarters);
  field(spaced).expectEntries("12.05 3. 7 > 0003. 7; 12.05 3+7 > 0012. 3; 12.05 -3+7 > 0012. 2");
  EXPECT_EQ(field(plus).entered(QKTimecode(), "1"), "[Object does not conform to protocol]");
}

TEST(QKFFTimecodeFormatDeputyRendering, AndSegmentsFollowTheOptions) {
  const std::tuple<OpenDeputy, const char*, const char*, const char*, const char*> rows[] = {
      {plus, ",.;+", "—+—", "-12.05 > -0012|05; 12345.15 > 12345|15", "01 10"},
      {plusQuarters, ",.;+/", "—+—/—", "-12345.052 > -12345|05|2", "01 11 10"},
      {point, ",.;", "—.—", "0 > 0000|00", "01 10"},
      {spacedQuarters, ",.;/", "—.—/—", "0 > 0000| 0|0; 12.052 > 0012| 5|2", "01 11 10"},
  };
  for (const auto& [deputy, legal, nilSymbol, segments, paddings] : rows) {
    EXPECT_EQ(deputy.legalCharacterSet(), CharacterSet(std::string("0123456789") + legal)) << legal;
    EXPECT_EQ(deputy.defaultNilSymbol(), nilSymbol);
    field(deputy).expectSegments(segments);
    EXPECT_EQ(field(deputy).paddings(0, deputy.segmentCountInObjectValue(nullptr) - 1), paddings);
  }
  field(plus).expectShown("12.05 > 0012+05; -0.05 > -0000+05; 12345.153 > 12345+15");
  field(plusQuarters).expectShown("-12.052 > -0012+05/2");
  field(point).expectShown("12.05 > 0012.05");
  field(spaced).expectShown("12.05 > 0012. 5; 12 > 0012. 0; 12.1 > 0012.10");
  field(spacedQuarters).expectShown("12.052 > 0012. 5/2; 12.003 > 0012. 0/3");
  EXPECT_EQ(field(plus).shown(*std::make_shared<QKTimecode>()), "");
  DeputyField unsignedField = field(plus);
  unsignedField.formatter.setAllowsNegative(false);
  EXPECT_EQ(unsignedField.shown(*filmAt(-1)), "0001+00");
  EXPECT_EQ(plus.formatterForSegmentTag(2, nullptr), &sharedDeputyOneDigitNumberFormatter());
  EXPECT_EQ(plus.defaultSelectedSegmentTagInObjectValue(nullptr), 1);
  EXPECT_EQ(plus.segmentIndexForTag(2, nullptr), -1);
}

TEST(QKFFTimecodeFormatDeputySegments, StepThroughAMirrorAtZeroAndAreTypedAlone) {
  field(plus).expectSteps(
      "12.05 0 3 > 0015+05; 12.05 1 11 > 0013+00; 12.05 1 0 > 0012+05; 0.05 0 -1 > -0001+05; 12.05 0 -20 > -0001+05; "
      "0 0 -1 > -0001+00; -12 0 13 > 0000+00; -12.05 0 13 > 0001+05; 0.001 0 -1 > -0001+00; 0.05 1 -7 > -0000+02");
  const auto quarters =
      "12.053 2 2 > 0012+06/1; 0.052 0 -1 > -0001+05/2; 0.001 0 -1 > -0001+00/1; -0.001 0 1 > 0001+00/1; "
      "0.052 1 -7 > -0000+01/2; 0.05 1 -9 > -0000+01/0; -0.05 1 9 > 0000+00/0; 0.052 2 -23 > -0000+00/1";
  field(plusQuarters).expectSteps(quarters);
  const auto typed =
      "12.052 0 7 > 0007+05/2; 12.052 0 -7 > -0007+05/2; -12.052 0 7 > 0007+05/2; -12.052 1 7 > -0012+07/2; "
      "12.052 1 20 > 0013+04/2; 12.052 2 3 > 0012+05/3; 12.052 2 9 > 0012+07/1; "
      "12.052 1 -5 > [Number below the minimum.]; 12.052 0 x > [Not a number.]";
  field(plusQuarters).expectTyped(typed);
  QKTimecode other;
  EXPECT_EQ(field(plus).typed(other, 0, "1"), "[Value doesn't conform to protocol]");
}

TEST(QKFFTimecodeFormatDeputyReports, NameWhatIsUnknown) {
  const Ref<Object> film = filmAt(12.052);
  std::int64_t fields[3] = {}, count = 0;
  const std::string scan = "-[QKFFTimecodeFormatDeputy privateScanFFNumberString:intoFieldArray:length:indexAtEnd:",
                    raised = "assertion: " + scan + "currentQuarterFrames:] QKFFTimecodeFormatDeputy:64 " + scan +
                             "] unexpected value for fieldLen\n";
  const std::tuple<std::string, int, std::function<void()>> rows[] = {
      {"NO", 364, [&] { EXPECT_EQ(plus.segmentFieldWidthForTag(3, film.get()), 0); }},
      {"NO", 392, [&] { EXPECT_EQ(field(plus).paddings(3, 3), "11"); }},
      {"NO", 410, [&] { EXPECT_EQ(plus.substringRangeForSegmentWithTag(-1, film.get()), Range()); }},
      {"NO", 437, [&] { EXPECT_EQ(field(plusQuarters).stepped(*film, 3, -99), "0012+05/2"); }},
      {"NO", 437, [&] { plus.getObjectValueIncrementingSegmentWithTag(nullptr, 3, 1, film.get()); }},
      {"NO", 490, [&] { EXPECT_EQ(field(formatsAll).typed(*film, 3, "9"), "0012+05/2"); }},
      {"NO", 514, [&] { EXPECT_EQ(field(plus).typed(*film, 3, "9"), "[Segment with tag 3 not visible]"); }},
      {"[self displaysQuarterFrames]", 141, [&] { plus.privateNumberStringWithNormalizedSeparatorCount("1+2"); }},
      {raised, 0, [&] { EXPECT_TRUE(plus.privateScanFFNumberString("12345", fields, 4, &count, -1)); }},
      {raised, 0, [&] { EXPECT_TRUE(plusQuarters.privateScanFFNumberString("9", fields + 2, 0, &count, 9)); }},
  };
  for (const auto& [text, line, run] : rows) {
    ReportRecorder reports(ReportRecorder::Returned);
    run();
    const std::string light = "light: MyAssertMessage: " + text + ",  file: QKFFTimecodeFormatDeputy, line: ";
    EXPECT_EQ((std::ostringstream() << reports).str(), line ? light + std::to_string(line) + ", value: 0\n" : text);
  }
  EXPECT_EQ((std::vector{count, fields[0], fields[1], fields[2]}), (std::vector<std::int64_t>{0, 123, 45, 0}));
}

// What is shown is read back, over zero with its sign and without one over a value whose frames fit every foot. 70 mm
// film is left out: its first foot is shorter than the 12.8 frames that it counts.
TEST(QKFFTimecodeFormatDeputy, ReadsWhatItShows) {
  for (const FilmTypeRow& row : kFilmTypeTable) {
    for (std::uint64_t n = 1; n < 400 && row.type != QKFilmType_70mm_5perf; ++n) {
      const auto mode = n % 5 < 2 ? QKSMPTETimecodeMode_2997Drop : QKSMPTETimecodeMode_24;
      QKExtendedTimecode value(0, QKTimecodeBestTimeRate, mode, 48000, 120, 4, 4, row.type), zero = value,
                                                                                             other = value;
      other.addFeet(7, 5, 2);
      value.setVideoFrames(n % 7 == 0 ? n * 997 : n);
      value.setFFQuarterFrames(static_cast<std::int64_t>(n % 4));
      value.setIsNegative(n % 3 == 0);
      for (const OpenDeputy* deputy : {&plus, &plusQuarters, &point, &pointQuarters, &spaced, &spacedQuarters}) {
        const std::string text = field(*deputy).shown(value);
        EXPECT_EQ(field(*deputy).entered(n % 3 == 1 ? other : zero, text), text) << row.name;
      }
    }
  }
  QKExtendedTimecode last(63, 24, QKSMPTETimecodeMode_24, 24, 120, 4, 4, QKFilmType_35mm_3perf);
  EXPECT_EQ(field(plus).shown(last) + field(plus).entered(last, "0+5"), "0002+210001+05");  // 0+21 on the way
}

TEST(QKFFTimecodeFormatDeputy, SurvivesRandomInput) {
  const ReportRecorder reports;
  const auto zero = [](double) { return copyOf(QKExtendedTimecode::initWithFilmType(QKFilmType_35mm_3perf)); };
  for (const auto* deputy : {&plusQuarters, &spaced}) DeputyField(*deputy, {filmAt, zero}).survivesRandomInput(100'000);
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

TEST(QKFFTimecodeFormatDeputyCoding, KeepsTheOptions) {
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    const auto read = copyOf(*unarchived<QKFFTimecodeFormatDeputy>(archivedData(spacedQuarters, kind)));
    EXPECT_TRUE(read->separator() == 0 && read->displaysQuarterFrames());
  }
}

}  // namespace
}  // namespace quill
