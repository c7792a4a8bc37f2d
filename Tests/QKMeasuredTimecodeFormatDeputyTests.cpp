#include "../Framework/QKMeasuredTimecodeFormatDeputy.h"

#include "../Framework/QKExtendedTimecode.h"
#include "DeputyField.h"
#include "ReportRecorder.h"

namespace quill {
namespace {

enum Tag { kBars, kBeats, kDivisions, kTicks, kFraction };
enum Layout { Full, Dropped, Beats };

struct Deputy : QKMeasuredTimecodeFormatDeputy {
  Deputy(Layout layout, std::int64_t separator, std::int64_t places) {
    setSeparator(separator);
    setDisplaysDivisionsAndTicks(layout != Beats);
    setIsDivisionsFieldDropped(layout != Full);
    setBeatsDecimalPlaces(places);
  }
};
constexpr std::int64_t kPoint = 0, kSpace = 7;
const Deputy fullPoint(Full, kPoint, 3), droppedPoint(Dropped, kPoint, 3), threePoint(Beats, kPoint, 3),
    dropped(Dropped, kSpace, 3), three(Beats, kSpace, 3), none(Beats, kSpace, -2), most(Beats, kPoint, 99);
const QKMeasuredTimecodeFormatDeputy full;  // as it is made

DeputyField fieldOf(const QKFormatDeputy& d) { return DeputyField(d); }

// Calls itself negative, and so counts back from the next bar; has a grid of its own.
struct Mirrored : QKExtendedTimecode {
  Mirrored(int sixteenths, std::int64_t ticks) : QKExtendedTimecode(6000 * sixteenths, 48000, {}), grid(ticks) {}
  bool isNegative() const override { return true; }
  std::int64_t privateTicksPerWholeNote() const override { return grid; }
  std::int64_t grid;
};

TEST(QKMeasuredTimecodeFormatDeputyRendering, CountsBackFromTheNextBarAndFollowsTheGridOfTheValue) {
  EXPECT_EQ(fieldOf(full).segments(*atBeat<QKTimecodeUseSeconds>(-21.03125)), "-005| 0| 1|-30");

  Mirrored value(21, 3840), zero(0, 3840), four(20, 4004), fine(21, 16000);  // 1001 ticks a beat; 1000 a division
  EXPECT_EQ(fieldOf(full).shown(value) + fieldOf(full).segments(value), "-   2  3  4   0-   2| 3| 4|  0");
  EXPECT_EQ(fieldOf(three).shown(value) + fieldOf(three).segments(value), "-2 3.750-2|3|750");
  EXPECT_EQ(fieldOf(full).shown(zero) + fieldOf(three).shown(zero), "   0  1  1   00 1.000");  // no sign before bar 1
  EXPECT_EQ(fieldOf(dropped).shown(four) + fieldOf(dropped).segments(four), "-   2  4     0-   2| 4|   ");  // of 3
  DeputyField field = fieldOf(full);
  field.formatter.setAllowsNegative(false);
  EXPECT_EQ(field.shown(value) + field.shown(*inTicks(0)), "   2  3  4   0");
  EXPECT_EQ(full.formatterForSegmentTag(kTicks, &fine), &sharedDeputyFollowingThreeDigitNumberFormatter());
  EXPECT_EQ(dropped.formatterForSegmentTag(kTicks, &four), &sharedDeputyFollowingFourDigitNumberFormatter());
}

// Where bars, beats and ticks are whole time units, whatever the value was before. A bar that is no whole number of beats
// can be left by fields that are set one by one, so there the value was at the start of one.
TEST(QKMeasuredTimecodeFormatDeputyParsing, ReadsBackWhatItShows) {
  const std::pair<const QKFormatDeputy&, int> deputies[] = {
      {full, 1}, {fullPoint, 1}, {dropped, 1}, {droppedPoint, 1}, {none, 960}, {three, 24}, {most, 1}};
  const std::tuple<double, int, int, double> grids[] = {{120, 4, 4, 1.5}, {100, 6, 8, 2.75}, {150, 7, 8, 0}};
  for (const auto& [tempo, numerator, denominator, beats] : grids) {
    for (const auto& [deputy, leastTicks] : deputies) {
      DeputyField field = fieldOf(deputy);
      for (std::int64_t n = 0; n < 700; ++n) {
        const Ref<QKExtendedTimecode> value = std::make_shared<QKExtendedTimecode>(
            0, 48000, QKSMPTETimecodeMode_24, 48000, tempo, numerator, denominator, QKFilmType_35mm_4perf);
        const auto current = copyOf(*value);
        current->addBars(n % 3, beats);
        field.formatter.setCurrentTimecode(current);
        value->addBars(n * n, 0, 0, 11 * n % (3840 * numerator / denominator / leastTicks) * leastTicks);
        Ref<Object> read;
        const bool isRead = deputy.getObjectValue(&read, field.shown(*value), field.formatter, nullptr);
        ASSERT_TRUE(isRead && value->compare(*read) == 0) << field.shown(*value);
      }
    }
  }
}

TEST(QKMeasuredTimecodeFormatDeputySegments, FollowTheOptions) {
  const auto layout = [](const QKMeasuredTimecodeFormatDeputy& deputy) {
    std::string all = std::to_string(deputy.segmentTagForIndex(3, nullptr)) + ',';  // the others are the segments'
    for (int tag = -1; tag < 6; ++tag) all += ' ' + std::to_string(deputy.segmentIndexForTag(tag, nullptr));
    return all + ", " + fieldOf(deputy).paddings(-1, 4) + ", " + deputy.defaultNilSymbol();
  };
  EXPECT_EQ(layout(full), "3, -1 0 1 2 3 -1 -1, 00 00 00 00 00 00, —  —    —  —");
  EXPECT_EQ(layout(dropped), "3, -1 0 1 -1 2 -1 -1, 00 00 00 00 00 00, —  —    —");
  EXPECT_EQ(layout(three), "4, -1 0 1 -1 -1 2 -1, 00 00 00 00 00 00, —  —.—");
  EXPECT_EQ(layout(none), "3, -1 0 1 -1 -1 -1 -1, 00 00 00 00 00 00, —  —");
  EXPECT_EQ(layout(fullPoint), "3, -1 0 1 2 3 -1 -1, 11 11 11 11 10 10, —.  —.  .  —.  —");  // left is never written
  EXPECT_EQ(layout(threePoint), "4, -1 0 1 -1 -1 2 -1, 00 01 10 00 00 00, —. —.—");
  EXPECT_EQ(full.defaultSelectedSegmentTagInObjectValue(nullptr), kBeats);
  Ref<Object> stepped;
  full.getObjectValueIncrementingSegmentWithTag(&stepped, kBars, 1, nullptr);
  EXPECT_FALSE(stepped);

  Deputy deputy = three;
  const NumberFormatter* fraction = deputy.beatsDecimalPlacesFormatter();
  deputy.setBeatsDecimalPlaces(2);
  EXPECT_EQ(fraction->stringFromNumber(5) + fraction->stringFromNumber(0), "0500");
  deputy = three;
  EXPECT_EQ(deputy.formatterForSegmentTag(kFraction, nullptr), fraction);
  EXPECT_EQ(fraction->stringFromNumber(0) + std::to_string(fraction->formatterBehavior()), "0001040");
}

TEST(QKMeasuredTimecodeFormatDeputyReports, PrintOneLineAndGoOn) {
  const Ref<Object> value = atBeat<48000>(5);
  const auto step = [&](auto& deputy, int tag) { return fieldOf(deputy).stepped(*value, tag, 1); };
  const auto type = [&](auto& deputy, int tag) { return fieldOf(deputy).typed(*value, tag, "7"); };
  const std::tuple<int, std::string, std::string, std::function<std::string()>> rows[] = {
      {305, "lastSeparatorLocation != kNotFound", "3 4.005", [&] { return fieldOf(three).entered(*value, "3 4 5"); }},
      {522, "NO", "0", [&] { return std::to_string(full.substringRangeForSegmentWithTag(5, value.get()).length); }},
      {548, "![self isDivisionsFieldDropped]", "   1  2    0", [&] { return step(dropped, kDivisions); }},
      {555, "NO", "   1  2  1   0", [&] { return step(full, kFraction); }},
      {578, "NO", "1 2.000", [&] { return step(three, kTicks); }},
      {625, "NO", "   1  2  1   0", [&] { return type(full, kFraction); }},
      {642, "NO", "1 2.000", [&] { return type(three, kDivisions); }},
      {669, "NO", "[Segment with tag 5 not visible]", [&] { return type(full, 5); }}};
  for (const auto& [line, condition, after, run] : rows) {
    const ReportRecorder reports;
    EXPECT_EQ(run(), after) << line;
    const std::string place = ",  file: QKMeasuredTimecodeFormatDeputy, line: " + std::to_string(line);
    EXPECT_EQ(reports.lights, std::vector{"MyAssertMessage: " + condition + place + ", value: 0\n"});
  }
  ReportRecorder reports;
  static_cast<QKVideoTimecode&>(*value).setSeconds(1e300);
  reports.clear();
  full.getObjectValueIncrementingSegmentWithTag(nullptr, kFraction, 1, value.get());
  three.getObjectValueIncrementingSegmentWithTag(nullptr, kTicks, 1, value.get());
  EXPECT_TRUE(reports.lights.size() == 2 && reports.logs.empty()) << "nothing is added to no time" << reports;
  reports.clear();  // an entry is read whole before the value is changed, which so many bars overflow
  fieldOf(three).entered(*atBeat<48000>(5), "9223372036854775807 4 5");
  EXPECT_TRUE(reports.lights.size() > 1 && reports.lights[0].find("line: 305") != std::string::npos) << reports;
}

}  // namespace
}  // namespace quill
