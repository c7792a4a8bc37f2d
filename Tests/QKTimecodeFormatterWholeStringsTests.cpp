#include "FormatterFixtures.h"

namespace quill {
namespace {

constexpr auto k24 = QKSMPTETimecodeMode_24, k25 = QKSMPTETimecodeMode_25, kDrop = QKSMPTETimecodeMode_2997Drop,
               k120 = QKSMPTETimecodeMode_120;

// Renders nothing, needs only a timecode, and parses every text as the number 1.
class NumberDeputy : public QKFormatDeputy {
 public:
  const Protocol& requiredProtocol() const override { return QKBasicTimecode::protocol; }
  bool getObjectValue(Ref<Object>* object, std::string_view, const QKTimecodeFormatter&, std::string*) const override {
    *object = std::make_shared<Number>(1);
    return true;
  }
};

// What a text parses to, as a label, or its error behind "! ".
std::string parsed(QKTimecodeFormatter& formatter, std::string_view text) {
  Ref<Object> object = std::make_shared<Number>(7);
  std::string error;
  const bool isParsed = formatter.getObjectValue(&object, text, &error);
  EXPECT_EQ(formatter.getObjectValue(nullptr, text, nullptr), isParsed);
  EXPECT_EQ(error.empty(), isParsed);
  return isParsed ? labelOf(object) : "! " + error;
}

TEST(QKTimecodeFormatterWholeStrings, NoValueShowsAndReadsTheNilSymbol) {
  QKTimecodeFormatter formatter;
  EXPECT_EQ(formatter.stringForObjectValue(nullptr), "—:—:—:—");
  EXPECT_EQ(parsed(formatter, "—:—:—:—"), "none");
  formatter.setNilSymbol("--");
  EXPECT_EQ(formatter.stringForObjectValue(nullptr), "--");
  EXPECT_EQ(parsed(formatter, "--"), "none");
  EXPECT_EQ(parsed(formatter, "—:—:—:—"), "! Illegal characters.");
  formatter.setNilSymbol("");
  EXPECT_EQ(formatter.stringForObjectValue(nullptr), "");
  EXPECT_EQ(parsed(formatter, ""), "none");

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
  expectAssertion(reports, "QKTimecodeFormatter", 748,
                  "-[QKTimecodeFormatter stringForObjectValue:] negative timecode in formatter that doesn't "
                  "accept negatives.\n\n\tBecause the SMPTE spec does not allow negative timecodes, "
                  "QKTimecodeFormatter defaults to only handling non-negative timecodes. However, there is a "
                  "common convention to interpret negative timecodes as a sort of counting backwards. If you "
                  "want this timecode formatter to handle negative timecodes, you'll have to call "
                  "-[QKTimecodeFormatter setAllowsNegative:] and pass YES before you give it any negative "
                  "timecodes (you may also set this attribute in Designer). Once you do that, you'll no longer "
                  "get this assertion.\n\n");
  formatter.setAllowsNegative(true);
  EXPECT_EQ(formatter.stringForObjectValue(value.get()), "-00:00:01:02");
  HostTimecode host(*value);
  EXPECT_EQ(formatter.stringForObjectValue(&host), "-00:00:01:02");
  Number number = -1;
  EXPECT_EQ(formatter.stringForObjectValue(&number), "");
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
  EXPECT_EQ(parsed(formatter, "+1:00"), "1:02:04:04");
  EXPECT_EQ(labelOf(current), "1:02:03:04");

  ReportRecorder reports;
  formatter.setCurrentTimecode(std::make_shared<Number>(1));
  EXPECT_EQ(parsed(formatter, "1"), "! Object does not conform to protocol");
  formatter.setCurrentTimecode(std::make_shared<HostTimecode>(*current, nullptr));
  EXPECT_EQ(parsed(formatter, "1"), "! Object does not conform to protocol");
  for (const Protocol* basic : {&QKBasicTimecode::protocol, &QKBasicTimecode::legacyProtocol}) {
    formatter.setCurrentTimecode(std::make_shared<HostTimecode>(*current, basic));
    EXPECT_EQ(parsed(formatter, "5:06"), "1:02:05:06");
  }
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKTimecodeFormatterWholeStrings, AFormatWithoutADeputySaysSo) {
  int without = 0;
  for (std::int64_t format = -2; format <= 9; ++format) {
    QKTimecodeFormatter formatter;
    formatter.setTimecodeFormat(static_cast<QKTimecodeFormat>(format));
    if (formatter.deputyForFormat(formatter.timecodeFormat())) continue;
    ++without;
    EXPECT_EQ(parsed(formatter, "1"), "! No deputy for current format.") << format;
    EXPECT_EQ(formatter.defaultNilSymbol(), std::nullopt);
    EXPECT_EQ(formatter.legalCharacterSet(), std::nullopt);
    EXPECT_FALSE(formatter.isPartialStringValid("1", nullptr, nullptr));
    EXPECT_FALSE(formatter.allowsSegmentEditing());
  }
  EXPECT_GE(without, 5);
}

TEST(QKTimecodeFormatterWholeStrings, ResultsComeWithinTheBounds) {
  constexpr const char *kLow = "0:00:10:00", *kHigh = "0:00:20:00";
  const struct {
    const char* options;  // letters: negatives, rollover, subframes, quarter frames
    QKSMPTETimecodeMode mode;
    const char *minimum, *maximum;  // null: none
    const char *text, *result;
  } rows[] = {
      {"r", k25, kLow, kHigh, "9:24", kLow},
      {"r", k25, kLow, kHigh, "10:01", "0:00:10:01"},
      {"r", k25, kLow, kHigh, "20:01", kHigh},
      {"r", k25, kLow, nullptr, "-1:00", kLow},
      {"r", k25, nullptr, nullptr, "-1:00", "0:00:00:00"},
      {"nr", k25, nullptr, nullptr, "-1:00", "-0:00:01:00"},
      {"nr", k25, "-0:00:00:10", nullptr, "-1:00", "-0:00:00:10"},
      // the SMPTE ceiling
      {"nr", k25, nullptr, nullptr, "-150:0:0:0", "-150:00:00:00"},
      {"", k25, nullptr, nullptr, "100:0:0:0", "99:59:59:24"},
      {"s", k25, nullptr, nullptr, "100:0:0:0.0", "99:59:59:24.79"},
      {"q", k25, nullptr, nullptr, "100:0:0:0/0", "99:59:59:24.60"},
      {"sq", k25, nullptr, nullptr, "100:0:0:0.0", "99:59:59:24.60"},
      {"", kDrop, nullptr, nullptr, "100:0:0:0", "99:59:59:29"},
      {"", k120, nullptr, nullptr, "100:0:0:0", "99:59:59:119"},
      {"n", k25, nullptr, nullptr, "-100:0:0:0", "-99:59:59:24"},
      {"n", k25, nullptr, kHigh, "100:0:0:0", kHigh},
      {"n", k25, nullptr, "200:00:00:00", "150:0:0:0", "99:59:59:24"},
      {"n", k25, "-200:00:00:00", nullptr, "-150:0:0:0", "-99:59:59:24"},
      {"n", k25, "-0:00:20:00", nullptr, "-150:0:0:0", "-0:00:20:00"},
  };
  for (const auto& row : rows) {
    for (const bool isHost : {false, true}) {
      const auto has = [&](char letter) {
        return std::string_view(row.options).find(letter) != std::string_view::npos;
      };
      const auto at = [&](const char* label) -> Ref<Object> {
        if (!label) return nullptr;
        const Ref<QKVideoTimecode> value = timecodeAt(row.mode, label);
        return isHost ? std::make_shared<HostTimecode>(*value) : Ref<Object>(value);
      };
      QKTimecodeFormatter formatter;
      formatter.setAllowsNegative(has('n'));
      formatter.setSMPTEHas24HourRollover(has('r'));
      formatter.setSMPTEDisplaysSubframes(has('s'));
      formatter.setSMPTEDisplaysQuarterFrames(has('q'));
      formatter.setMinimum(at(row.minimum).get());
      formatter.setMaximum(at(row.maximum).get());
      formatter.setCurrentTimecode(at("0:00:00:00"));
      EXPECT_EQ(parsed(formatter, row.text), row.result) << row.text << (isHost ? ", host" : "");
    }
  }
}

TEST(QKTimecodeFormatterWholeStrings, WhatRunsOutOfRangeIsHeldWithinTheBounds) {
  QKTimecodeFormatter formatter;
  formatter.setCurrentTimecode(timecodeAt(k25, "0:00:01:00"));
  formatter.setMaximum(timecodeAt(k25, "0:00:20:00").get());
  EXPECT_EQ(parsed(formatter, "+9999999999999999999"), "0:00:20:00");
  formatter.setMaximum(nullptr);
  formatter.setSMPTEHas24HourRollover(false);
  EXPECT_EQ(parsed(formatter, "+9223372036854775807:0:0:0"), "99:59:59:24");
  const auto infinite = timecodeAt(k25, "0:00:00:00");
  infinite->setSeconds(1e300);
  formatter.setCurrentTimecode(infinite);  // no text changes it
  EXPECT_EQ(parsed(formatter, "5"), "0:00:00:00");
}

TEST(QKTimecodeFormatterWholeStrings, ADeputyMustGiveATimecode) {
  QKTimecodeFormatter formatter;
  formatter.setDeputy(std::make_shared<NumberDeputy>(), QKTimecodeFormatHMS);
  formatter.setTimecodeFormat(QKTimecodeFormatHMS);
  formatter.setNilSymbol("");
  ReportRecorder reports(ReportRecorder::Returned);
  Ref<Object> object;
  EXPECT_TRUE(formatter.getObjectValue(&object, "x", nullptr));
  EXPECT_TRUE(object && object->isEqual(Number(1)));
  expectAssertion(reports, "QKTimecodeFormatter", 783,
                  "-[QKTimecodeFormatter getObjectValue:forString:errorDescription:] Impossible! "
                  "deputy returned a non-timecode object");
}

TEST(QKTimecodeFormatterWholeStrings, PartialStringsStartWithoutWhiteSpace) {
  QKTimecodeFormatter formatter;
  std::optional<std::string> proposed = "untouched";
  std::string error = "untouched";
  for (const char* text : {" 1", "\t", "\u2003+1"}) {
    EXPECT_FALSE(formatter.isPartialStringValid(text, &proposed, &error)) << text;
    EXPECT_EQ(proposed, "untouched");
    EXPECT_EQ(error, "untouched");
  }
  EXPECT_TRUE(formatter.isPartialStringValid("+1:2 ", &proposed, &error));
  EXPECT_EQ(proposed, std::nullopt);
  EXPECT_TRUE(formatter.isPartialStringValid("", nullptr, nullptr));
  EXPECT_FALSE(formatter.isPartialStringValid("1/2", &proposed, &error));
  EXPECT_EQ(error, "Illegal character.");
  EXPECT_FALSE(formatter.isPartialStringValid("--", &proposed, &error));
  EXPECT_EQ(error, "Excess + or -'s");
  EXPECT_EQ(formatter.legalCharacterSet(), CharacterSet("0123456789,.;:+-"));
  formatter.setSMPTEDisplaysQuarterFrames(true);
  EXPECT_TRUE(formatter.isPartialStringValid("1/2", nullptr, nullptr));
  EXPECT_EQ(formatter.legalCharacterSet(), CharacterSet("0123456789,.;:/+-"));
  EXPECT_EQ(formatter.secondaryColorRange("12:34"), (Range{9223372036854775807, 0}));
}

}  // namespace
}  // namespace quill
