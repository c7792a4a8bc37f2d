#include "../Framework/QKScrubbableNumberFormatter.h"
#include "../Platform/Archive.h"
#include "NumberSettings.h"
#include "ReportRecorder.h"

#include <cmath>

namespace quill {
namespace {

// "123.5: 1@2 2@1 3@0 5@-1": each segment in its place, with its tag.
std::string segments(const QKScrubbableNumberFormatter& formatter, Object* object) {
  const std::string text = formatter.stringForObjectValue(object).value_or("none");
  std::string all;
  for (std::int64_t i = 0; i < formatter.segmentCountInObjectValue(object); ++i) {
    const std::int64_t tag = formatter.segmentTagForIndex(i, object);
    const Range range = formatter.substringRangeForSegmentWithTag(tag, object);
    EXPECT_EQ(formatter.segmentIndexForTag(tag, object), i);
    const bool hasSeparator = formatter.segmentFieldContainsDecimalSeparatorForTag(tag, object);
    EXPECT_EQ(formatter.segmentFieldWidthForTag(tag, object) + (hasSeparator ? 1 : 0),
              static_cast<std::int64_t>(range.length));
    all.append(" ").append(substring(text, range)).append("@").append(std::to_string(tag));
  }
  return text + ":" + all;
}

// What comes of "cut 123.5", "enter 5", or "step 123.5 0 7" and "type 123.5 0 7": a value, a tag, and steps or a text.
std::string outcome(QKScrubbableNumberFormatter& formatter, const std::string& operation) {
  const Cells words = partsOf(operation, " ");
  const std::string& verb = words[0];
  Number number(verb == "enter" || words.at(1) == "nil" ? 0 : doubleOf(words[1]));
  if (verb == "cut") return segments(formatter, words[1] == "nil" ? nullptr : &number);
  const std::int64_t tag = verb == "enter" ? 0 : std::stoll(words.at(2));
  const std::string text = words.size() > 3 ? words[3] : verb == "enter" && words.size() > 1 ? words[1] : "";
  Ref<Object> result;
  std::string error;
  bool isDone = true;
  if (verb == "step") {
    formatter.getObjectValueIncrementingSegmentWithTag(&result, tag, std::stoll(text), &number);
  } else if (verb == "type") {
    isDone = formatter.getObjectValueForSegmentWithTag(&result, text, tag, &number, &error);
  } else {
    isDone = formatter.getObjectValue(&result, text, &error);
  }
  return isDone ? result->description() : "[" + error + "]";
}

TEST(QKScrubbableNumberFormatter, IsCutSteppedTypedAndEntered) {
  eachRowIn("deputies.txt", "scrubbed numbers", [](const Cells& row) {
    const bool isWhole = row.at(0).starts_with("whole ");
    auto formatter = formatterOf<QKScrubbableNumberFormatter>(isWhole ? "" : row[0]);
    if (isWhole) formatter = formatterOf(row[0].substr(6), QKScrubbableNumberFormatter::initWholeNumberType());
    EXPECT_EQ(outcome(formatter, row.at(1)), row.at(2));
  });
}

TEST(QKScrubbableNumberFormatter, AnswersForItsSegments) {
  QKScrubbableNumberFormatter digits, whole = QKScrubbableNumberFormatter::initWholeNumberType();
  EXPECT_EQ(digits.substringRangeForSegmentWithTag(0x7fffffff, nullptr), Range());
  Number seven(7);
  EXPECT_EQ(digits.substringRangeForSegmentWithTag(-9, &seven), (Range{0, 1})) << "below the last digit: the first";
  bool atLeft = true, atRight = true;
  digits.segmentWithTagHasPadding(0, &atLeft, &atRight, &seven);
  EXPECT_FALSE(atLeft || atRight || digits.allowsSegmentEditing() || digits.formatterForSegmentTag(0, &seven));
  EXPECT_EQ(whole.formatterForSegmentTag(0, &seven), &whole);
  EXPECT_TRUE(whole.defaultObjectPrototype()->isEqual(Number(0.0)));
  EXPECT_EQ(whole.defaultSelectedSegmentTagInObjectValue(&seven), 0);
  for (auto* formatter : {&digits, &whole}) {
    Number nothing(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(formatter->substringRangeForSegmentWithTag(0, &nothing), Range()) << "no digits";
  }
  digits.setLocale({".", "", "~-"});
  Number negative(-12.5);
  EXPECT_EQ(segments(digits, &negative), "~-12.500000: ~-1@1 2@0 5@-1 0@-2 0@-3 0@-4 0@-5 0@-6");
}

TEST(QKScrubbableNumberFormatter, StepsThereAndBackWithoutATraceAndByParts) {
  QKScrubbableNumberFormatter formatter;
  const auto step = [&](double value, std::int64_t tag, std::int64_t by) {
    Number number(value);
    Ref<Object> result;
    formatter.getObjectValueIncrementingSegmentWithTag(&result, tag, by, &number);
    return classCast<Number>(result.get())->doubleValue();
  };
  for (double value = 0; value < 30; value += 1.000001) {
    for (std::int64_t tag = -6; tag <= 2; ++tag) EXPECT_NEAR(step(step(value, tag, 7), tag, -7), value, 1e-9) << tag;
  }
  formatter.setScrubbingType(kWholeNumberScrubbing);
  const ReportRecorder reports;
  Number number(3);
  Ref<Object> result;
  formatter.getObjectValueFloatIncrementingSegmentWithTag(&result, 0, 0.25, &number);
  EXPECT_EQ(classCast<Number>(result.get())->doubleValue(), 3);
  ASSERT_EQ(reports.lights.size(), 1u);
  EXPECT_NE(
      reports.lights[0].find(
          "_scrubbingType == kWholeNumberScrubbing && [self minimumFractionDigits],  file: QKScrubbableNumberFormatter"),
      std::string::npos);
  formatter.setMinimumFractionDigits(2);
  formatter.getObjectValueFloatIncrementingSegmentWithTag(&result, 0, 0.25, &number);
  EXPECT_EQ(classCast<Number>(result.get())->doubleValue(), 3.25);
}

TEST(QKScrubbableNumberFormatter, ChecksWhatIsTyped) {
  QKScrubbableNumberFormatter formatter = formatterOf<QKScrubbableNumberFormatter>("l.,-");
  for (const char* text : {"", "-", "1.", "-.5", ".", "12", "1 "}) {
    EXPECT_TRUE(formatter.isPartialStringValid(text, nullptr, nullptr)) << text;
  }
  for (const char* text : {" 1", "--1", "1x", "..5", "1..5"}) {
    EXPECT_FALSE(formatter.isPartialStringValid(text, nullptr, nullptr)) << text;
  }
  EXPECT_TRUE(formatter.legalCharacterSet()->contains('-') && !formatter.legalCharacterSet()->contains('+'));
  formatter.setScrubbingType(kWholeNumberScrubbing);
  EXPECT_FALSE(formatter.isPartialStringValid(".", nullptr, nullptr) ||
               formatter.isPartialStringValid("1.5", nullptr, nullptr));
  EXPECT_TRUE(formatter.isPartialStringValid("-12", nullptr, nullptr));
  EXPECT_FALSE(formatter.legalCharacterSet());
}

TEST(QKScrubbableNumberFormatter, PostsChangesAndArchivesItself) {
  QKScrubbableNumberFormatter formatter;
  int posts = 0;
  NotificationCenter::defaultCenter().addObserver("OrbisScrubbableFormatterFormatChangedNotification", &formatter,
                                                  [&](const Notification&) { ++posts; });
  const auto postsOf = [&](auto act) {
    const int before = posts;
    act();
    return posts - before;
  };
  EXPECT_EQ(postsOf([&] { formatter.setMinimum(1); }), 1);
  EXPECT_EQ(postsOf([&] { formatter.setMinimum(1.0); }), 0);
  EXPECT_EQ(postsOf([&] { formatter.setMinimumIntegerDigits(2); }), 1);
  EXPECT_EQ(postsOf([&] { formatter.setScrubbingType(kSingleDigitScrubbing); }), 0);
  EXPECT_EQ(postsOf([&] { formatter.setNumberStyle(NumberFormatter::NoStyle); }), 1);
  EXPECT_EQ(formatter.stringFromNumber(0), "00");
  EXPECT_EQ(postsOf([&] { formatter.setNumberStyle(NumberFormatter::DecimalStyle); }), 0);
  EXPECT_GE(postsOf([&] { formatter.setScrubbingType(kWholeNumberScrubbing); }), 1);
  const auto digits = [&] {
    return (Number(formatter.minimumIntegerDigits()).description() + ' ' +
            Number(formatter.minimumFractionDigits()).description() + ' ' +
            Number(formatter.maximumFractionDigits()).description());
  };
  EXPECT_EQ(digits(), "0 0 0");
  formatter.setIntegerDigitsForSingleDigitScrubbingType(4), formatter.setFractionDigitsForSingleDigitScrubbingType(5);
  formatter.setIntegerDigitsForWholeNumberScrubbingType(3);
  EXPECT_EQ(digits(), "0 0 0") << "for the next change of type";
  formatter.setScrubbingType(kSingleDigitScrubbing);
  EXPECT_EQ(digits(), "4 5 5");
  formatter.setScrubbingType(kWholeNumberScrubbing);
  EXPECT_EQ(digits(), "3 0 0");
  EXPECT_EQ(postsOf([&] { formatter.setMaximumIntegerDigits(9); }), 0);
  EXPECT_EQ(postsOf([&] { formatter.setMaximumIntegerDigits(2); }), 1) << "the minimum goes down with it";

  formatter.setMaximum(std::uint64_t{18446744073709551615u});
  formatter.setLocale({";", "'", "\u2212"});
  formatter.setUsesGroupingSeparator(true);
  formatter.setNilSymbol("");
  formatter.setMinimumFractionDigits(3);
  formatter.setFractionDigitsForWholeNumberScrubbingType(2);
  const ClassDescriptor* const classes[] = {&QKScrubbableNumberFormatter::descriptor};
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    const std::string bytes = archivedData(formatter, kind);
    const auto read = std::static_pointer_cast<QKScrubbableNumberFormatter>(unarchivedObject(bytes, classes));
    EXPECT_EQ(archivedData(*read, kind), bytes);
    EXPECT_EQ(archivedData(*read->copy(), kind), bytes);
    EXPECT_EQ(read->locale(), formatter.locale());
    Number number(-12345.5), zero(0);
    EXPECT_EQ(read->stringForObjectValue(&number), "\u221212'345;500");
    EXPECT_EQ(read->stringForObjectValue(&zero), "00;000");
  }
}

}  // namespace
}  // namespace quill
