#include "../Framework/QKScrubbableNumberFormatter.h"
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

// What comes of "cut 123.5", "enter 5", or "step 123.5 0 7" and "type 123.5 0 7": a value, a tag, and steps or a
// text. Behind "check" is a text as it is typed.
std::string outcome(QKScrubbableNumberFormatter& formatter, const std::string& operation) {
  const Cells words = partsOf(operation, " ");
  const std::string& verb = words[0];
  if (verb == "check")
    return formatter.isPartialStringValid(operation.substr(6), nullptr, nullptr) ? "valid" : "invalid";
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
  EXPECT_TRUE(digits.legalCharacterSet()->contains('-') && !digits.legalCharacterSet()->contains('+'));
  EXPECT_FALSE(whole.legalCharacterSet());
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

TEST(QKScrubbableNumberFormatter, PostsChangesAndKeepsTheDigitsOfEachType) {
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
}

}  // namespace
}  // namespace quill
