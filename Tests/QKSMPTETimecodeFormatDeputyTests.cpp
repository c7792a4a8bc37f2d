#include "FormatterFixtures.h"

#include <random>
#include <vector>

namespace quill {
namespace {

constexpr auto k25 = QKSMPTETimecodeMode_25, k100 = QKSMPTETimecodeMode_100, kDrop = QKSMPTETimecodeMode_2997Drop,
               k120Drop = QKSMPTETimecodeMode_11988Drop, kElapsed = QKSMPTETimecodeMode_2997Duration;

class OpenDeputy : public QKSMPTETimecodeFormatDeputy {
 public:
  // Options by letter: hours, frames, subframes, quarter frames, 24-hour rollover.
  explicit OpenDeputy(std::string_view options) {
    const auto has = [&](char letter) { return options.find(letter) != options.npos; };
    setDisplaysHours(has('h'));
    setDisplaysFrames(has('f'));
    setDisplaysSubframes(has('s'));
    setDisplaysQuarterFrames(has('q'));
    setHas24HourRollover(has('r'));
  }
  using QKSMPTETimecodeFormatDeputy::privateInsertSeparatorsIntoSMPTENumberString;
};

QKTimecodeFormatter signedFormatter() {
  QKTimecodeFormatter formatter;
  formatter.setAllowsNegative(true);
  return formatter;
}

TEST(QKSMPTEDeputy, StartsWithItsDefaultsAndCopiesWhatIsStored) {
  QKSMPTETimecodeFormatDeputy deputy;
  EXPECT_TRUE(deputy.displaysHours() && deputy.displaysFrames() && deputy.has24HourRollover());
  EXPECT_FALSE(deputy.displaysSubframes() || deputy.displaysQuarterFrames());
  deputy = OpenDeputy("sq");
  const Ref<QKSMPTETimecodeFormatDeputy> copy = copyOf(deputy);
  EXPECT_FALSE(copy->displaysHours() || copy->displaysFrames() || copy->has24HourRollover());
  EXPECT_FALSE(copy->displaysSubframes() || copy->displaysQuarterFrames());
  copy->setDisplaysFrames(true);  // brings back what was set while frames were hidden
  EXPECT_TRUE(copy->displaysSubframes() && copy->displaysQuarterFrames());
  EXPECT_EQ(&deputy.requiredProtocol(), &QKSMPTETimecode::protocol);
  EXPECT_EQ(deputy.defaultSelectedSegmentTagInObjectValue(nullptr), 3);
}

TEST(QKSMPTEDeputy, Renders) {
  const struct {
    const char* options;
    QKSMPTETimecodeMode mode;
    const char *label, *text;
  } rows[] = {
      {"hfr", k25, "1:02:03:04.40", "01:02:03:04"},
      {"hfr", kDrop, "1:02:03:04.40", "01:02:03;04"},
      {"hfsr", kDrop, "1:02:03:04.40", "01:02:03;04.40"},
      {"hfqr", kDrop, "1:02:03:04.40", "01:02:03;04/2"},
      {"hfsqr", kDrop, "1:02:03:04.40", "01:02:03;04.40"},
      {"fr", kDrop, "1:02:03:04.40", "02:03;04"},
      {"fqr", k25, "1:02:03:04.79", "02:03:04/3"},
      {"hsqr", kDrop, "1:02:03:04.40", "01:02:03"},
      {"", k25, "1:02:03:04.40", "02:03"},
      // hours
      {"hfr", k25, "150:00:00:00", "06:00:00:00"},
      {"hf", k25, "150:00:00:00", "99:00:00:00"},
      {"hfr", k25, "-25:00:00:01", "-01:00:00:01"},
      {"fr", k25, "-25:01:00:01", "-01:00:01"},
      // frames of three digits
      {"hfr", k100, "1:02:03:99", "01:02:03:99"},
      {"hfsr", k120Drop, "-1:02:03:104.40", "-01:02:03;104.40"},
      {"hfr", kElapsed, "1:02:03:29", "01:02:03:29"},
  };
  const QKTimecodeFormatter formatter = signedFormatter();
  for (const auto& row : rows) {
    const Ref<QKVideoTimecode> value = timecodeAt(row.mode, row.label);
    EXPECT_EQ(OpenDeputy(row.options).stringForObjectValue(value.get(), formatter), row.text)
        << row.label << row.options;
    const bool hidesHours = std::string_view(row.options).find('h') == std::string_view::npos;
    EXPECT_EQ(value->SMPTEHours() == 0, hidesHours) << "hidden hours are taken off the value";
  }
  OpenVideoTimecode custom = customAt(2000, {3001, 2000});
  HostTimecode host(*timecodeAt(k120Drop, "0:00:00:104"));
  HostTimecode hostAtTwo(*timecodeAt(k120Drop, "0:00:00:002"));
  Number number = 1;
  const OpenDeputy deputy("hfr");
  EXPECT_EQ(deputy.stringForObjectValue(&custom, formatter), "00:00:01:1001");
  EXPECT_EQ(deputy.stringForObjectValue(&host, formatter), "00:00:00;104");
  EXPECT_EQ(deputy.stringForObjectValue(&hostAtTwo, formatter), "00:00:00;02");
  EXPECT_EQ(deputy.stringForObjectValue(&number, formatter), "");
}

TEST(QKSMPTEDeputy, OptionsShapeSegmentsNilSymbolAndSeparators) {
  const struct {
    const char *options, *nilSymbol, *legal, *inserted;  // separators put into "123456789"
    std::vector<std::int64_t> tags;
  } rows[] = {
      {"hfr", "—:—:—:—", ",.;:", "123:45:67:89", {0, 1, 2, 3}},
      {"f", "—:—:—", ",.;:", "12345:67:89", {1, 2, 3}},
      {"hfs", "—:—:—:—.—", ",.;:", "1:23:45:67.89", {0, 1, 2, 3, 4}},
      {"hfq", "—:—:—:—/—", ",.;:/", "12:34:56:78/9", {0, 1, 2, 3, 5}},
      {"fq", "—:—:—/—", ",.;:/", "1234:56:78/9", {1, 2, 3, 5}},
      {"hfsq", "—:—:—:—/—", ",.;:/", "1:23:45:67.89", {0, 1, 2, 3, 4}},
      {"hsq", "—:—:—:—", ",.;:", "123:45:67:89", {0, 1, 2, 3}},  // hidden frames still count
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.options);
    const OpenDeputy deputy(row.options);
    ReportRecorder reports;
    EXPECT_EQ(deputy.defaultNilSymbol(), row.nilSymbol);
    EXPECT_EQ(deputy.legalCharacterSet(), CharacterSet(std::string("0123456789") + row.legal));
    EXPECT_EQ(deputy.privateInsertSeparatorsIntoSMPTENumberString("123456789x", nullptr), row.inserted);
    ASSERT_EQ(deputy.segmentCountInObjectValue(nullptr), static_cast<std::int64_t>(row.tags.size()));
    const bool showsBoth = row.options == std::string_view("hfsq");
    for (std::int64_t tag = -2, index = 0; tag <= 9; ++tag) {
      const bool isShown = std::find(row.tags.begin(), row.tags.end(), tag) != row.tags.end();
      if (isShown) {
        EXPECT_EQ(deputy.segmentTagForIndex(index, nullptr), tag);
      }
      if (showsBoth && tag == 5) continue;
      EXPECT_EQ(deputy.segmentIndexForTag(tag, nullptr), isShown ? index++ : -1) << tag;
    }
    EXPECT_TRUE(reports.isQuiet()) << reports;
  }
  EXPECT_EQ(OpenDeputy("hfsq").segmentIndexForTag(5, nullptr), 4);
}

TEST(QKSMPTEDeputy, IndexesOutOfBoundsFail) {
  const struct {
    const char* options;
    std::int64_t index, tag;
    std::vector<int> lines;
  } rows[] = {
      {"hf", 4, 0, {593}}, {"f", 3, 0, {587}},   {"f", 4, 0, {590, 593}}, {"fs", 4, 4, {590}}, {"fq", 4, 5, {590}},
      {"hf", 5, 0, {596}}, {"hfs", 5, 0, {596}}, {"hf", -1, 0, {596}},    {"fs", 3, 4, {}},
  };
  for (const auto& row : rows) {
    ReportRecorder reports(ReportRecorder::Returned);
    EXPECT_EQ(OpenDeputy(row.options).segmentTagForIndex(row.index, nullptr), row.tag);
    std::vector<int> lines;
    for (const RecordedAssertion& assertion : reports.assertions) {
      lines.push_back(assertion.line);
      EXPECT_EQ(assertion.file + ' ' + assertion.description,
                "QKSMPTETimecodeFormatDeputy -[QKSMPTETimecodeFormatDeputy "
                "segmentTagForIndex:inObjectValue:] out-of-bounds segmentIndex.");
    }
    EXPECT_EQ(lines, row.lines) << row.options << row.index;
  }
}

TEST(QKSMPTEDeputy, SegmentsHaveWidthPaddingRangeAndFormatter) {
  auto *const leading = &sharedDeputyLeadingTwoDigitNumberFormatter(),
              *const following = &sharedDeputyFollowingTwoDigitNumberFormatter(),
              *const oneDigit = &sharedDeputyOneDigitNumberFormatter();
  const struct {
    const char* options;
    std::int64_t tag, width, negativeWidth;
    bool left, right;
    Range range, negativeRange, fastRange;
    NumberFormatter* formatter;
  } rows[] = {
      {"hfs", 0, 2, 3, false, true, {0, 2}, {0, 3}, {0, 3}, leading},
      {"hfs", 1, 2, 2, true, true, {3, 2}, {4, 2}, {3, 3}, following},
      {"hfs", 2, 2, 2, true, true, {6, 2}, {7, 2}, {6, 3}, following},
      {"hfs", 3, 2, 2, true, true, {9, 2}, {10, 2}, {9, 3}, following},
      {"hf", 3, 2, 2, true, false, {9, 2}, {10, 2}, {9, 3}, following},
      {"hfs", 4, 2, 2, true, false, {12, 2}, {13, 2}, {12, 3}, following},
      {"hfq", 5, 1, 1, true, false, {12, 1}, {13, 1}, {12, 3}, oneDigit},
      {"fs", 1, 2, 3, false, true, {0, 2}, {0, 3}, {0, 3}, leading},
      {"fs", 3, 2, 2, true, true, {6, 2}, {7, 2}, {6, 3}, following},
      {"fq", 5, 1, 1, true, false, {9, 1}, {10, 1}, {9, 3}, oneDigit},
      {"fs", 0, 2, 2, false, true, {0, 0}, {0, 0}, {0, 0}, nullptr},
  };
  const Ref<QKVideoTimecode> value = timecodeAt(k25, "0:00:01:00"), fast = timecodeAt(k120Drop, "0:00:01:00");
  HostTimecode negative(*timecodeAt(k120Drop, "-0:00:01:00"));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.options + std::to_string(row.tag));
    const OpenDeputy deputy(row.options);
    EXPECT_EQ(deputy.segmentFieldWidthForTag(row.tag, value.get()), row.width);
    EXPECT_EQ(deputy.segmentFieldWidthForTag(row.tag, &negative), row.negativeWidth);
    bool left = !row.left, right = !row.right;
    deputy.segmentWithTagHasPadding(row.tag, &left, &right, value.get());
    EXPECT_TRUE(left == row.left && right == row.right);
    EXPECT_EQ(deputy.substringRangeForSegmentWithTag(row.tag, value.get()), row.range);
    EXPECT_EQ(deputy.substringRangeForSegmentWithTag(row.tag, &negative), row.negativeRange);
    EXPECT_EQ(deputy.substringRangeForSegmentWithTag(row.tag, fast.get()), row.fastRange);
    EXPECT_EQ(deputy.formatterForSegmentTag(row.tag, value.get()), row.formatter);
  }
  bool left = true, right = false;
  OpenDeputy("hf").segmentWithTagHasPadding(6, &left, &right, value.get());
  EXPECT_TRUE(left && !right) << "unknown tags are left alone";
}

// What an entry makes of the current timecode, or its error behind "! ".
std::string parsed(const QKSMPTETimecodeFormatDeputy& deputy, std::int64_t interpretation, const Ref<Object>& current,
                   std::string_view text) {
  QKTimecodeFormatter formatter = signedFormatter();
  formatter.setCurrentTimecode(current);
  formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(interpretation));
  Ref<Object> result;
  std::string error;
  const bool isParsed = deputy.getObjectValue(&result, text, formatter, &error);
  EXPECT_EQ(deputy.getObjectValue(nullptr, text, formatter, nullptr), isParsed);
  return isParsed ? labelOf(result) : "! " + error;
}

constexpr const char *kNow = "1:02:03:04.40", *kIllegal = "! Illegal characters.";

struct Entry {
  const char* options;
  QKSMPTETimecodeMode mode;
  const char *current, *text, *preserving, *discarding;  // the results of either interpretation
};

void expectParsed(std::initializer_list<Entry> rows) {
  ReportRecorder reports;
  for (const Entry& row : rows) {
    const OpenDeputy deputy(row.options);
    const Ref<QKVideoTimecode> current = timecodeAt(row.mode, row.current);
    EXPECT_EQ(parsed(deputy, 0, current, row.text), row.preserving) << row.options << row.text;
    EXPECT_EQ(parsed(deputy, 1, current, row.text), row.discarding) << row.options << row.text;
  }
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKSMPTEDeputy, ParsesFieldsSignsAndHours) {
  expectParsed({
      // digits fill the fields from the right
      {"hfr", k25, kNow, "7", "1:02:03:07", "0:00:00:07"},
      {"hfr", k100, kNow, "1234", "1:02:12:34", "0:00:12:34"},
      {"hfr", k25, kNow, "5060708", "5:06:07:08", "5:06:07:08"},
      {"hfr", k120Drop, kNow, "12345", "1:02:14:105", "0:00:14:105"},
      {"hfr", k25, kNow, "5:6", "1:02:05:06", "0:00:05:06"},
      {"hfr", k25, kNow, "5.6,7;8", "5:06:07:08", "5:06:07:08"},
      {"hfr", k25, kNow, "1:", "1:02:01:00", "0:00:01:00"},
      {"hfr", k25, kNow, ":5", "1:02:00:05", "0:00:00:05"},
      {"hfr", k25, kNow, "1::2", "1:01:00:02", "0:01:00:02"},
      {"hfr", k25, kNow, "12x", "1:02:03:12", "0:00:00:12"},
      {"hfr", k25, kNow, " 5:6", "1:02:05:06", "0:00:05:06"},
      {"hfr", kDrop, kNow, "1:00:00", "1:01:00:02", "0:01:00:02"},
      {"f", k25, kNow, "1:2:3:4", "1:01:02:03", "0:01:02:03"},
      // signs
      {"hfr", k25, "-1:02:03:04.40", "7", "1:02:03:07", "0:00:00:07"},
      {"hfr", k25, "-1:02:03:04.40", "", "1:02:03:04", "1:02:03:04"},
      {"hfr", k25, kNow, "+7", "1:02:03:11", "1:02:03:11"},
      {"hfr", k25, kNow, "+100", "1:02:04:04", "1:02:04:04"},
      {"hfr", k25, kNow, "-2:00:00:00", "-0:57:56:21", "-0:57:56:21"},
      {"hfr", k25, kNow, " +1:00", "1:02:04:04", kIllegal},
      {"hfr", k25, kNow, "+-7", kIllegal, kIllegal},
      // whole days of the current hours stay
      {"hfr", k25, "49:00:00:00", "5:00:00:00", "53:00:00:00", "53:00:00:00"},
      {"hfr", k25, "49:00:00:00", "5:00", "49:00:05:00", "48:00:05:00"},
      {"hf", k25, "49:00:00:00", "5:00:00:00", "5:00:00:00", "5:00:00:00"},
      {"fr", k25, "49:00:00:00", "5:00", "49:00:05:00", "48:00:05:00"},
  });
}

TEST(QKSMPTEDeputy, ParsesLowerFieldsAndRefusesOtherText) {
  expectParsed({
      {"hfs", k25, kNow, "5:6:7:8.9", "5:06:07:08.09", "5:06:07:08.09"},
      {"hfs", k25, kNow, "5:6:7:8:9", "5:06:07:08.09", "6:07:08:09"},
      {"hfs", k25, kNow, "3.5", "1:02:03:05.40", "0:00:00:03.05"},
      {"hfs", k25, kNow, "705", "1:02:07:05.40", "0:00:00:07.05"},
      {"hfs", k25, kNow, "7", "1:02:03:07.40", "0:00:00:00.07"},
      {"hfs", k25, kNow, "3.90", "1:02:06:15", "0:00:00:04.10"},
      {"hfq", k25, kNow, "3/2", "1:02:03:03.40", "0:00:00:03.40"},
      {"hfq", k25, kNow, "3.1", "1:02:03:01.40", "0:00:00:03.20"},
      {"hfq", k25, kNow, "5:6:7:8:1", "5:06:07:08.20", "6:07:08:01"},
      {"hfq", k25, kNow, "123", "1:02:03:12.60", "0:00:00:12.60"},
      {"hfq", k25, kNow, "+0/2", "1:02:03:05", "1:02:03:05"},
      {"hfsq", k25, kNow, "5:6:7:8.5", "5:06:07:08.05", "5:06:07:09.20"},
      // no fields
      {"hfr", k25, kNow, "+", kIllegal, kIllegal},
      {"hfr", k25, kNow, "x", kIllegal, kIllegal},
      {"hfr", k25, kNow, ":", kIllegal, kIllegal},
      {"hfr", k25, kNow, " 7", kIllegal, kIllegal},
  });
  const OpenDeputy deputy("hfr");
  const Ref<QKVideoTimecode> current = timecodeAt(k25, kNow);
  for (const char* text : {"7", "+7"}) {
    EXPECT_EQ(parsed(deputy, 2, current, text), "! Unknown OrbSMPTEStringInterpretation");
  }
  EXPECT_EQ(parsed(deputy, 2, current, ""), "1:02:03:04");
}

TEST(QKSMPTEDeputy, WritesAVideoTimecodeAsAHostsValueFieldByField) {
  std::mt19937_64 random(7);
  const auto below = [&](std::uint64_t n) { return random() % n; };
  const char* const fields[] = {"0",
                                "1",
                                "2",
                                "9",
                                "23",
                                "29",
                                "59",
                                "60",
                                "79",
                                "80",
                                "119",
                                "120",
                                "999",
                                "4000000000000",
                                "9223372036854775807"};
  ReportRecorder reports;
  for (int i = 0; i < 20000; ++i) {
    const auto mode = static_cast<QKSMPTETimecodeMode>(below(QKSMPTETimecodeModeInvalid));
    const double rates[] = {1, 1.5, 23.976, 29.5, 48};
    OpenVideoTimecode open = customAt(rates[below(5)]);
    QKVideoTimecode value = static_cast<const QKVideoTimecode&>(open);
    if (mode != QKSMPTETimecodeModeCustom) value = QKVideoTimecode(kMediaTimeZero, mode);
    value.setTimeValue({static_cast<std::int64_t>(random() >> (1 + below(50))),
                        static_cast<std::int32_t>(below(2) ? 9600000 : 1 + below(30000))});
    value.setIsNegative(below(2) != 0);
    // A host's frames always have two digits, so the text must part its fields.
    std::string text = fields[below(std::size(fields))];
    for (std::uint64_t n = 0, more = 1 + below(4); n < more; ++n) {
      text += ":;./"[n == 0 ? 0 : below(4)];
      text += fields[below(std::size(fields))];
    }
    const OpenDeputy deputy(std::string("f") + (below(2) ? "h" : "") + (below(2) ? "s" : "") + (below(2) ? "q" : "") +
                            (below(2) ? "r" : ""));
    const auto interpretation = static_cast<std::int64_t>(below(2));
    EXPECT_EQ(parsed(deputy, interpretation, std::make_shared<QKVideoTimecode>(value), text),
              parsed(deputy, interpretation, std::make_shared<HostTimecode>(value), text))
        << value << '\n'
        << text;
  }
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

TEST(QKSMPTEDeputy, StepsMirrorAtZero) {
  const struct {
    const char* options;
    QKSMPTETimecodeMode mode;
    const char* from;
    std::int64_t tag, increment;
    const char* to;
  } rows[] = {
      {"hf", k25, "1:02:03:04", 0, 1, "2:02:03:04"},
      {"hf", k25, "1:02:03:04", 2, -4, "1:01:59:04"},
      {"hf", k25, "0:00:00:10.41", 3, 1, "0:00:00:11.41"},
      {"hf", k25, "0:00:00:10.41", 3, 0, "0:00:00:10.41"},
      {"hf", kDrop, "0:00:00:02", 1, 1, "0:01:00:02"},
      {"hf", kDrop, "0:01:00:02", 3, -1, "0:00:59:29"},
      {"hfs", k25, "0:00:00:00.05", 4, -10, "-0:00:00:00.05"},
      {"hfq", k25, "0:00:00:00", 5, -1, "-0:00:00:00.20"},
      // through zero: the stepped field reads 1, the lower ones keep their digits
      {"hf", k25, "0:00:00:10", 0, -1, "-1:00:00:10"},
      {"hf", k25, "0:00:00:10", 1, -1, "-0:01:00:10"},
      {"hf", k25, "0:00:00:10", 1, -5, "-0:01:00:10"},
      {"hf", k25, "0:00:00:10", 3, -10, "0:00:00:00"},
      {"hf", k25, "0:00:00:10", 3, -12, "-0:00:00:01"},
      {"hf", k25, "-0:00:30:05", 0, 1, "1:00:30:05"},
      {"hf", k25, "-0:00:30:05", 2, 31, "0:00:01:05"},
      // lower fields of 0
      {"hf", k25, "0:00:00:00", 0, -1, "-1:00:00:00"},
      {"hf", k25, "0:00:00:00", 3, -1, "-0:00:00:01"},
      {"hf", k25, "-0:02:00:00", 1, 3, "0:00:00:00"},
      // subframes count while they are shown
      {"hfs", k25, "-0:01:00:00.40", 1, 2, "0:01:00:00.40"},
      {"hf", k25, "-0:01:00:00.40", 1, 2, "0:00:59:24.40"},
      {"hfs", k25, "-0:00:00:01.40", 3, 2, "0:00:00:01.40"},
      {"hf", k25, "-0:00:00:01.40", 3, 2, "0:00:00:00.40"},
      {"hf", k25, "0:00:00:00.40", 3, -1, "-0:00:00:01.40"},
  };
  for (const auto& row : rows) {
    const OpenDeputy deputy(row.options);
    const Ref<QKVideoTimecode> value = timecodeAt(row.mode, row.from);
    Ref<Object> result;
    deputy.getObjectValueIncrementingSegmentWithTag(&result, row.tag, row.increment, value.get());
    EXPECT_EQ(labelOf(result), row.to) << row.from << ", tag " << row.tag << " by " << row.increment;
    EXPECT_EQ(labelOf(value), row.from);
  }
  OpenVideoTimecode seconds = secondsIn(k25, 10);
  Ref<Object> result;
  OpenDeputy("hf").getObjectValueIncrementingSegmentWithTag(&result, 1, -1, &seconds);
  EXPECT_EQ(labelOf(result), "-0:01:10:00");
  OpenDeputy("hf").getObjectValueIncrementingSegmentWithTag(nullptr, 1, -1, &seconds);
}

TEST(QKSMPTEDeputy, TypingSetsThatFieldAlone) {
  const struct {
    const char* options;
    QKSMPTETimecodeMode mode;
    const char* from;
    std::int64_t tag;
    const char *text, *to;
  } rows[] = {
      {"hf", k25, "1:02:03:04", 0, "-5", "-5:02:03:04"},
      {"hf", k25, "-1:02:03:04", 0, "5", "5:02:03:04"},
      {"hf", k25, "-1:02:03:04", 2, "5", "-1:02:05:04"},
      {"hf", k25, "1:02:03:04", 1, "75", "2:15:03:04"},
      {"hf", k25, "1:02:03:04", 3, "30", "1:02:04:05"},
      {"hfs", k25, "1:02:03:04", 4, "90", "1:02:03:05.10"},
      {"hfq", k25, "1:02:03:04", 5, "3", "1:02:03:04.60"},
      {"hf", k25, "1:02:03:04", 2, "7.9", "1:02:07:04"},
      {"f", k25, "0:02:03:04", 1, "-7", "-0:07:03:04"},
      // no minutes under drop-frame: they are taken off
      {"hf", kDrop, "1:03:00:02", 1, "0", "1:00:00:02"},
      {"hf", kDrop, "-1:03:00:02", 1, "0", "-1:00:00:02"},
      {"f", kDrop, "-0:03:00:02", 1, "0", "0:00:00:02"},
  };
  for (const auto& row : rows) {
    const Ref<QKVideoTimecode> value = timecodeAt(row.mode, row.from);
    Ref<Object> result;
    EXPECT_TRUE(
        OpenDeputy(row.options).getObjectValueForSegmentWithTag(&result, row.text, row.tag, value.get(), nullptr));
    EXPECT_EQ(labelOf(result), row.to) << row.from << ' ' << row.text;
    EXPECT_EQ(labelOf(value), row.to) << "the value itself";
    EXPECT_NE(result, value);
  }
  OpenVideoTimecode seconds = secondsIn(k25, -10.5);
  EXPECT_TRUE(OpenDeputy("hf").getObjectValueForSegmentWithTag(nullptr, "5", 2, &seconds, nullptr));
  EXPECT_EQ(labelOf(seconds), "-0:00:05:12.40");
  std::string error;
  EXPECT_FALSE(OpenDeputy("hf").getObjectValueForSegmentWithTag(nullptr, "x", 2, &seconds, &error));
  EXPECT_EQ(error, "Not a number.");
}

}  // namespace
}  // namespace quill
