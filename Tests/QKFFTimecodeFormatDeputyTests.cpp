#include "../Framework/QKFFTimecodeFormatDeputy.h"

#include "DeputyField.h"
#include "ReportRecorder.h"

#include <sstream>

namespace quill {
namespace {

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
DeputyField field(const OpenDeputy& deputy) { return DeputyField(deputy); }

TEST(QKFFTimecodeFormatDeputy, LosesTheSignWhereNoneIsAllowedAndKnowsTwoSegments) {
  DeputyField unsignedField = field(plus);
  unsignedField.formatter.setAllowsNegative(false);
  EXPECT_EQ(unsignedField.shown(*filmAt(-1)), "0001+00");
  EXPECT_EQ(plus.formatterForSegmentTag(2, nullptr), &sharedDeputyOneDigitNumberFormatter());
  EXPECT_EQ(plus.segmentIndexForTag(2, nullptr), -1);
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

}  // namespace
}  // namespace quill
