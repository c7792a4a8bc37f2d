// The deputies of one notation each: runs the rows of Data/formats.txt, which says how they are written, and what only
// single cases show. QKSMPTETimecodeFormatDeputyTests.cpp has more of that deputy.

#include "ArchivedFields.h"
#include "ArchivedMarker.h"
#include "DeputyField.h"

#include <fstream>

namespace quill {
namespace {

template <class Base>
struct Derived : Base {};
template <class... Bases>
constexpr bool areNeverCutDown = ((!std::is_constructible_v<Bases, const Derived<Bases>&> &&
                                   !std::is_assignable_v<Bases&, const Derived<Bases>&> &&
                                   std::is_copy_constructible_v<Derived<Bases>>)&&...);
static_assert(areNeverCutDown<QKSMPTETimecodeFormatDeputy, QKHMSTimecodeFormatDeputy, QKOneDVideoTimecodeFormatDeputy,
                              QKOneDAudioTimecodeFormatDeputy, QKOneDTimeTimecodeFormatDeputy,
                              QKMeasuredTimecodeFormatDeputy, QKFFTimecodeFormatDeputy, _QKCustomVideoModeInfo,
                              QKTimecodeSegmentNumberFormatter, QKTimecode, QKTimecodeFormatter>);

constexpr std::pair<std::string_view, QKTimecodeFormat> kFormats[] = {
    {"SMPTE", QKTimecodeFormatSMPTE},       {"HMS", QKTimecodeFormatHMS},
    {"video", QKTimecodeFormatVideoFrames}, {"counts", QKTimecodeFormatVideoFrames},
    {"audio", QKTimecodeFormatAudioFrames}, {"seconds", QKTimecodeFormatSeconds},
    {"feet", QKTimecodeFormatFeetFrames},   {"bars", QKTimecodeFormatBarsBeats}};

// What the rows of a section are about: a deputy or a formatter, and the ways to make a value.
class Section {
 public:
  using Make = std::function<Ref<Object>(const std::string& position)>;

  explicit Section(const std::string& header) : words_(partsOf(header, " ")) {
    const auto number = [](auto make) {
      return [make](const std::string& position) { return make(doubleOf(position)); };
    };
    if (is("SMPTE") || is("formatter")) {
      const auto mode = timecodeModeNamed(words_.at(1)).value();
      makers = {[mode](const std::string& label) { return timecodeAt(mode, label); },
                [mode](const std::string& label) { return std::make_shared<HostTimecode>(*timecodeAt(mode, label)); }};
      if (mode == k11988Drop) makers.pop_back();  // the frames of a host's value have two digits
    } else if (is("counts")) {
      makers = {number([](double count) {
        const auto value = std::make_shared<OpenVideoTimecode>(customAt(1));
        value->setTimeValue(MediaTime(saturateToInt64(count), 1));
        return value;
      })};
    } else if (is("feet")) {
      makers = {number(filmAt)};
    } else if (is("bars")) {
      makers = {number(atBeat<48000>), number(atBeat<QKTimecodeUseSeconds>)};
    } else {
      makers = {number(inTicks), number(asSeconds)};
      if (is("audio")) makers.pop_back();
    }
  }

  bool is(std::string_view kind) const { return words_[0] == kind; }

  // For values of one kind.
  DeputyField field(const Make& make) const {
    const std::string options = words_.size() > 2 ? words_[2] : "";
    const auto has = [&](char letter) { return options.find(letter) != std::string::npos; };
    QKTimecodeFormatter f = SMPTEFormatterOf(options);
    f.setTimecodeFormat(has('S')   ? QKTimecodeFormatSeconds
                        : has('V') ? QKTimecodeFormatVideoFrames
                                   : f.timecodeFormat());
    f.setAllowsNegative(!is("formatter") || has('n'));
    f.setHMSHas24HourRollover(has('r'));
    if (is("HMS")) f.setHMSSecondsDecimalPlaces(std::stoll(words_[1]));
    if (is("seconds")) f.setODTSecondsDecimalPlaces(std::stoull(words_[1]));
    if (is("feet")) f.setFFSeparator(std::stoll(words_[1])), f.setFFDisplaysQuarterFrames(has('q'));
    if (is("bars")) {
      f.setMSeparator(std::stoll(words_[1]));
      f.setMDisplaysDivisionsAndTicks(!options.starts_with("beats"));
      f.setMIsDivisionsFieldDropped(!options.starts_with("full"));
      f.setMBeatsDecimalPlaces(std::stoll(options.substr(options.find_first_of("-0123456789"))));
    }
    if (words_.size() > 3 && words_[3] != "-") f.setMinimum(make(words_[3]).get());
    if (words_.size() > 4 && words_[4] != "-") f.setMaximum(make(words_[4]).get());
    if (words_.size() > 5) f.setMinimum(make(words_[5]).get());
    const auto format =
        std::find_if(std::begin(kFormats), std::end(kFormats), [&](auto& row) { return is(row.first); });
    return {f, format == std::end(kFormats) ? std::nullopt : std::optional(format->second),
            is("SMPTE") || is("formatter")};
  }

  std::vector<Make> makers;

 private:
  std::vector<std::string> words_;
};

void expectRow(const Section& section, const std::string& verb, const std::string& left, const std::string& right) {
  const std::size_t space = std::min(left.find(' '), left.size());
  const std::string argument = left.substr(std::min(space + 1, left.size()));
  for (const auto& make : section.makers) {
    if (section.is("formatter") && verb != "enter" && &make != section.makers.data())
      break;  // nothing holds it in range
    DeputyField field = section.field(make);
    const Ref<Object> value = make(left.substr(0, space));
    std::string text = field.run(verb, *value, argument);
    if (verb == "enter" && section.is("SMPTE")) {
      field.formatter.setSMPTEStringInterpretation(OrbSMPTEStringInterpretationDiscardingUpper);
      const std::string discarding = field.run(verb, *value, argument);
      if (discarding != text) text += " > " + discarding;
    }
    EXPECT_EQ(text, right) << "value " << &make - section.makers.data();
  }
}

TEST(FormatTable, RowsHoldForEveryKindOfValue) {
  std::ifstream file(QUILL_TEST_DATA "/formats.txt");
  std::optional<Section> section;
  int rows = 0, number = 0;
  const ReportRecorder reports;  // log lines of times that run out of range
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '[') {
      section.emplace(line.substr(1, line.find(']') - 1));
      continue;
    }
    SCOPED_TRACE("line " + std::to_string(number) + ": " + line);
    const std::size_t space = line.find(' '), middle = line.find(" > ");
    expectRow(section.value(), line.substr(0, space), line.substr(space + 1, middle - space - 1),
              line.substr(middle + 3));
    ++rows;
  }
  EXPECT_GT(rows, 590);
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

TEST(FormatDeputies, TakeOnlyValuesOfTheirProtocol) {
  for (const char* header : {"HMS 0", "seconds 6", "video", "audio", "feet 1", "bars 1 full3"}) {
    SCOPED_TRACE(header);
    DeputyField field = Section(header).field({});
    const bool takesAll = !field.shown(*inTicks(0)).empty();  // but feet and bars
    const Ref<Object> other = takesAll ? std::make_shared<Number>(1) : inTicks(0);
    EXPECT_EQ(field.shown(*other) + field.entered(*other, "1") + field.typed(*other, 0, "1"),
              "[Object does not conform to protocol][Value doesn't conform to protocol]");
    if (!takesAll) continue;
    field.formatter.setAllowsNegative(false);
    EXPECT_EQ(field.shown(*inTicks(-1.5)), field.shown(*inTicks(1.5)));
  }
}

TEST(FormatDeputies, MistrustArchivedPlaces) {
  eachRowIn("archives.txt", "places", [](const Cells& row) {
    const std::string name = "'" + row.at(0) + "'";
    const std::string bytes = archiveOf(ArchiveKind::Keyed, "D81C 82" + name + row.at(1), "A1" + name + "00");
    const auto deputy = unarchivedObject(bytes, kArchivedClasses);
    const DeputyField field(static_cast<QKFormatDeputy&>(*deputy));
    EXPECT_EQ(fieldsOf(deputy) + ": " + field.segments(*atBeat<48000>(doubleOf(row.at(2)))), row.at(3));
  });
}

TEST(QKHMSTimecodeFormatDeputy, KeepsTheDayOfTypedHours) {
  QKHMSTimecodeFormatDeputy deputy;
  deputy.setHas24HourRollover(true);
  QKTimecodeFormatter formatter;
  formatter.setCurrentTimecode(inTicks(49 * 3600));
  Ref<Object> result;
  ASSERT_TRUE(copyOf(deputy)->getObjectValue(&result, "5:0:0.0", formatter, nullptr));
  EXPECT_EQ(static_cast<QKTimecode&>(*result).seconds(), 53 * 3600);
  EXPECT_EQ(DeputyField(deputy).shown(*asSeconds(kInfinity)), "07:00:   nan");
}

TEST(QKHMSTimecodeFormatDeputy, TheFractionsFormatterFollowsThePlaces) {
  QKHMSTimecodeFormatDeputy deputy;
  const QKHMSTimecodeFormatDeputy copy = deputy;
  const NumberFormatter* fraction = deputy.secondsDecimalPlacesFormatter();
  EXPECT_EQ(fraction->stringFromNumber(25), "025");
  EXPECT_FALSE(fraction->isPartialStringValid("1234", nullptr, nullptr));
  deputy.setSecondsDecimalPlaces(2);
  EXPECT_EQ(fraction->stringFromNumber(0), "00");
  deputy = copy;
  EXPECT_EQ(fraction, deputy.formatterForSegmentTag(3, nullptr));
  EXPECT_EQ(fraction->stringFromNumber(0), "000");
  EXPECT_NE(fraction, copyOf(deputy)->secondsDecimalPlacesFormatter());
}

TEST(QKOneDFramesTimecodeFormatDeputy, ReportsWhatIsMissingOrTooLarge) {
  ReportRecorder reports(ReportRecorder::Returned);
  const QKOneDFramesTimecodeFormatDeputy base;
  const QKOneDVideoTimecodeFormatDeputy video;
  QKVideoTimecode value;
  value.setVideoFrames(5);
  EXPECT_EQ(base.framesFromObject(&value), 0);
  base.setFramesOnObject(1, &value);
  base.addFramesOnObject(1, &value);
  base.subtractFramesOnObject(1, &value);
  EXPECT_EQ(video.framesFromObject(&value), 5);
  EXPECT_EQ(QKOneDAudioTimecodeFormatDeputy().framesFromObject(&value), 0);  // it has none
  EXPECT_EQ(video.segmentTagForIndex(5, &value), -1);
  std::string raised;
  for (const auto& [operation, line] :
       {std::pair("frames", 28), {"setFrames", 33}, {"addFrames", 38}, {"subtractFrames", 43}}) {
    const std::string method = "+[QKOneDFramesTimecodeFormatDeputy " + std::string(operation) + "Invocation]";
    raised += "assertion: " + method + " QKOneDFramesTimecodeFormatDeputy:" + std::to_string(line) + ' ' + method +
              " must be implemented by subclass.\n";
  }
  EXPECT_EQ(testing::PrintToString(reports), raised);
  reports.clear();
  EXPECT_EQ(DeputyField(video).entered(*asSeconds(1), "9223372036854775808"), "-9223372036854775808");
  const std::string light = "MyAssertMessage: frames >= 0,  file: QKOneDFramesTimecodeFormatDeputy, line: ";
  EXPECT_EQ(reports.lights, (std::vector{light + "150, value: 0\n", light + "59, value: 0\n"}));
}

}  // namespace
}  // namespace quill
