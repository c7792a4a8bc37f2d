#include "FormatterFixtures.h"

namespace quill {
namespace {

// What a text parses to, as a label, or its error in brackets.
std::string parsed(QKTimecodeFormatter& formatter, std::string_view text) {
  Ref<Object> object = std::make_shared<Number>(7);
  std::string error;
  const bool isParsed = formatter.getObjectValue(&object, text, &error);
  EXPECT_EQ(formatter.getObjectValue(nullptr, text, nullptr), isParsed);
  EXPECT_EQ(error.empty(), isParsed);
  return isParsed ? labelOf(object) : "[" + error + "]";
}

TEST(QKTimecodeFormatterWholeStrings, NoValueShowsAndReadsTheNilSymbol) {
  QKTimecodeFormatter formatter;
  const std::optional<std::string> symbols[] = {std::nullopt, "--", ""};
  for (const auto& symbol : symbols) {
    formatter.setNilSymbol(symbol);
    EXPECT_EQ(formatter.stringForObjectValue(nullptr), symbol.value_or("—:—:—:—"));
    EXPECT_EQ(parsed(formatter, symbol.value_or("—:—:—:—")), "none");
    EXPECT_EQ(parsed(formatter, "—:—:—:—"), symbol ? "[Illegal characters.]" : "none");
  }
  formatter.setDeputy(nullptr, QKTimecodeFormatSMPTE);
  QKVideoTimecode value;
  EXPECT_EQ(formatter.stringForObjectValue(nullptr), "");
  EXPECT_EQ(formatter.stringForObjectValue(&value), std::nullopt);
  EXPECT_EQ(parsed(formatter, ""), "none");
  formatter.setNilSymbol(std::nullopt);
  EXPECT_EQ(formatter.stringForObjectValue(nullptr), std::nullopt);
}

TEST(QKTimecodeFormatterWholeStrings, ANegativeValueMustBeAllowed) {
  QKTimecodeFormatter formatter;
  const Ref<QKVideoTimecode> value = timecodeAt(k25, "-0:00:01:02");
  ReportRecorder reports(ReportRecorder::Returned);
  EXPECT_EQ(formatter.stringForObjectValue(value.get()), "00:00:01:02");
  expectAssertion(
      reports, "QKTimecodeFormatter", 748,
      "-[QKTimecodeFormatter stringForObjectValue:] negative timecode in formatter that doesn't accept negatives.\n\n\tBecause the SMPTE spec does not allow negative timecodes, QKTimecodeFormatter defaults to only handling non-negative timecodes. However, there is a common convention to interpret negative timecodes as a sort of counting backwards. If you want this timecode formatter to handle negative timecodes, you'll have to call -[QKTimecodeFormatter setAllowsNegative:] and pass YES before you give it any negative timecodes (you may also set this attribute in Designer). Once you do that, you'll no longer get this assertion.\n\n");
  EXPECT_EQ(formatter.substringRangeForSegmentWithTag(3, value.get()), (Range{10, 2}));
  expectAssertion(
      reports, "QKTimecodeFormatter", 1141,
      "-[QKTimecodeFormatter substringRangeForSegmentWithTag:inObjectValue:] negative timecode in formatter that doesn't allow negative");
  EXPECT_EQ(formatter.substringRangeForSegmentWithTag(0x7fffffff, value.get()), Range()) << "no such segment";
  formatter.setAllowsNegative(true);
  HostTimecode host(*value);
  Number number = -1;
  EXPECT_EQ(formatter.stringForObjectValue(value.get()), "-00:00:01:02");
  EXPECT_EQ(formatter.stringForObjectValue(&host), "-00:00:01:02");
  EXPECT_EQ(formatter.stringForObjectValue(&number), "");
  EXPECT_EQ(formatter.substringRangeForSegmentWithTag(0, value.get()), (Range{0, 3}));
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKTimecodeFormatterWholeStrings, ParsingStartsFromTheCurrentTimecodeAndLeavesItAlone) {
  QKTimecodeFormatter formatter;
  formatter.setDefaultObjectPrototype(timecodeAt(k24, "0:00:10:00"));
  EXPECT_EQ(parsed(formatter, "12"), "0:00:10:12");
  EXPECT_EQ(labelOf(formatter.currentTimecode()), "0:00:10:00") << "the prototype's copy";
  const Ref<QKVideoTimecode> current = timecodeAt(k25, "1:02:03:04");
  formatter.setCurrentTimecode(current);
  EXPECT_EQ(parsed(formatter, "+1:00"), "1:02:04:04");
  EXPECT_EQ(labelOf(current), "1:02:03:04");

  const ReportRecorder reports;
  const std::pair<Ref<Object>, const char*> rows[] = {
      {std::make_shared<Number>(1), "[Object does not conform to protocol]"},
      {std::make_shared<TextObject>("x"), "[Object does not conform to protocol]"},
      {std::make_shared<TextObject>(formatter.defaultNilSymbol().value()), "0:00:05:06"},  // the prototype's
      {std::make_shared<HostTimecode>(*current, nullptr), "[Object does not conform to protocol]"},
      {std::make_shared<HostTimecode>(*current), "1:02:05:06"},
      {std::make_shared<HostTimecode>(*current, &QKBasicTimecode::legacyProtocol), "1:02:05:06"}};
  for (const auto& [object, result] : rows) {
    formatter.setCurrentTimecode(object);
    EXPECT_EQ(parsed(formatter, "5:06"), result);
  }
  EXPECT_TRUE(reports.isQuiet()) << reports;
  current->setSeconds(1e300);
  formatter.setCurrentTimecode(current);  // infinite: no text changes it
  EXPECT_EQ(parsed(formatter, "5"), "0:00:00:00");
}

TEST(QKTimecodeFormatterWholeStrings, AFormatWithoutADeputySaysSo) {
  for (const std::int64_t format : {-1, 1, 7}) {
    QKTimecodeFormatter formatter;
    formatter.setTimecodeFormat(static_cast<QKTimecodeFormat>(format));
    formatter.setDeputy(nullptr, formatter.timecodeFormat());
    EXPECT_EQ(parsed(formatter, "1"), "[No deputy for current format.]");
    EXPECT_FALSE(formatter.defaultNilSymbol() || formatter.legalCharacterSet() || formatter.allowsSegmentEditing() ||
                 formatter.isPartialStringValid("1", nullptr, nullptr));
  }
}

TEST(QKTimecodeFormatterWholeStrings, ADeputyMustGiveATimecode) {
  struct : QKSMPTETimecodeFormatDeputy {
    bool getObjectValue(Ref<Object>* object, std::string_view, const QKTimecodeFormatter&,
                        std::string*) const override {
      *object = std::make_shared<Number>(1);
      return true;
    }
  } deputy;
  QKTimecodeFormatter formatter;
  formatter.setDeputy(Ref<QKFormatDeputy>(Ref<void>(), &deputy), QKTimecodeFormatSMPTE);
  formatter.setNilSymbol("");
  ReportRecorder reports(ReportRecorder::Returned);
  Ref<Object> object;
  EXPECT_TRUE(formatter.getObjectValue(&object, "x", nullptr));
  EXPECT_TRUE(object && object->isEqual(Number(1)));
  expectAssertion(
      reports, "QKTimecodeFormatter", 783,
      "-[QKTimecodeFormatter getObjectValue:forString:errorDescription:] Impossible! deputy returned a non-timecode object");
}

TEST(QKTimecodeFormatterWholeStrings, PartialStringsStartWithoutWhiteSpace) {
  QKTimecodeFormatter formatter;
  formatter.setSMPTEDisplaysQuarterFrames(true);
  eachPairIn("deputies.txt", "partial strings", [&](const std::string& text, const std::string& expected) {
    std::optional<std::string> proposed = "as before";
    std::string error = "as before";
    const bool isValid = formatter.isPartialStringValid(text, &proposed, &error);
    EXPECT_EQ((isValid ? "1 " : "0 ") + proposed.value_or("none") + ", " + error, expected);
  });
  EXPECT_EQ(formatter.legalCharacterSet(), CharacterSet("0123456789,.;:/+-"));
  EXPECT_EQ(formatter.secondaryColorRange("12:34"), (Range{9223372036854775807, 0}));
}

// A class of a host's own takes every field through the setters, the library's own take whole labels at once: both come
// to the same.
TEST(QKTimecodeFormatterWholeStrings, ADerivedClassTakesEntriesAndStepsAsItsBaseDoes) {
  struct Derived : QKVideoTimecode {
    explicit Derived(const QKVideoTimecode& base) : QKVideoTimecode(base.timeValue(), base.timecodeMode()) {}
    Ref<Object> copy() const override { return std::make_shared<Derived>(*this); }
  };
  Random random;
  const ReportRecorder reports;
  for (int round = 0; round < 20000; ++round) {
    const auto mode = static_cast<QKSMPTETimecodeMode>(random.below(19));
    const auto rate = static_cast<std::int32_t>(kTimecodeModeTable[mode].tickRate);
    const std::int32_t timescales[] = {rate, rate, rate, 2 * rate, 600};
    const std::int64_t frame = kTimecodeModeTable[mode].ticksPerFrame(),
                       count = static_cast<std::int64_t>(random.below(5000000));
    const std::int64_t ticks = random.flip() ? count * frame : count * 977;
    const QKVideoTimecode own(MediaTime(random.below(4) == 0 ? -ticks : ticks, random.of(timescales)), mode);
    QKTimecodeFormatter formatter;
    formatter.setAllowsNegative(random.flip());
    formatter.setSMPTEHas24HourRollover(random.flip());
    formatter.setSMPTEDisplaysHours(random.below(4) != 0);
    formatter.setSMPTEDisplaysSubframes(random.below(4) == 0);
    formatter.setSMPTEDisplaysQuarterFrames(random.below(4) == 0);
    formatter.setSMPTEStringInterpretation(
        random.of({OrbSMPTEStringInterpretationPreservingUpper, OrbSMPTEStringInterpretationDiscardingUpper}));
    std::string text;
    for (std::uint64_t field = random.below(8) == 0 ? random.below(5) : 4; field > 0; --field) {
      text +=
          random.below(8) == 0 ? std::to_string(random.below(200)) : std::to_string(100 + random.below(60)).substr(1);
      if (field > 1) text += random.of({':', ':', ';', '.', ','});
    }
    if (random.below(4) == 0) text.insert(0, 1, random.of({'+', '-', ' '}));
    const auto tag = static_cast<std::int64_t>(random.below(6));
    const auto step = static_cast<std::int64_t>(random.below(80)) - 40;
    const auto outcome = [&](const Ref<QKVideoTimecode>& value) {
      Ref<Object> entered, stepped;
      std::string error;
      formatter.setCurrentTimecode(value);
      formatter.getObjectValue(&entered, text, &error);
      if (formatter.allowsNegative() || !value->isNegative()) {
        formatter.getObjectValueIncrementingSegmentWithTag(&stepped, tag, step, value.get());
      }
      const auto timeOf = [](const Ref<Object>& object) {
        return object ? std::static_pointer_cast<QKVideoTimecode>(object)->timeValue() : MediaTime();
      };
      return std::tuple(timeOf(entered), error, timeOf(stepped), value->timeValue());
    };
    ASSERT_EQ(outcome(copyOf(own)), outcome(std::make_shared<Derived>(own)))
        << round << ' ' << timecodeModeShortName(mode) << ' ' << own.description() << ' ' << text << ' ' << tag << ' '
        << step;
  }
}

}  // namespace
}  // namespace quill
