#include "../Framework/QKScrubbableNumberFormatter.h"
#include "../Platform/Archive.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quill {
namespace {

class Scrubbable : public QKScrubbableNumberFormatter {
 public:
  using QKScrubbableNumberFormatter::privateIncrementValue;
};

// "123.5" as "[1]23.5 2; 1[2]3.5 1; ...": each segment in its place, with its tag.
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
    all += (i == 0 ? "" : " ") + std::string(substring(text, range)) + "@" + std::to_string(tag);
  }
  return text + ": " + all;
}

TEST(QKScrubbableNumberFormatter, PartsANumberIntoSegments) {
  QKScrubbableNumberFormatter digits, whole = QKScrubbableNumberFormatter::initWholeNumberType();
  for (auto* formatter : {&digits, &whole}) {
    formatter->setLocale({".", ",", "-"});
    formatter->setMinimumFractionDigits(1);
    formatter->setMaximumFractionDigits(1);
  }
  const auto parted = [](const QKScrubbableNumberFormatter& formatter, double value) {
    Number number(value);
    return segments(formatter, &number);
  };
  EXPECT_EQ(parted(digits, 0), "0.0: 0@0 0@-1");
  EXPECT_EQ(parted(digits, 123.46), "123.5: 1@2 2@1 3@0 5@-1");
  EXPECT_EQ(parted(digits, -9.97), "-10.0: -1@1 0@0 0@-1");  // as it is shown
  EXPECT_EQ(parted(digits, -0.01), "0.0: 0@0 0@-1");
  EXPECT_EQ(parted(digits, 1e19),
            "9223372036854775806.0: 9@18 2@17 2@16 3@15 3@14 7@13 2@12 0@11 3@10 6@9 8@8 5@7 4@6 "
            "7@5 7@4 5@3 8@2 0@1 6@0 0@-1");
  EXPECT_EQ(parted(whole, -123.46), "-123.5: -123.5@0");
  digits.setMinimumIntegerDigits(3);
  EXPECT_EQ(parted(digits, 7), "007.0: 0@2 0@1 7@0 0@-1");
  digits.setUsesGroupingSeparator(true);
  EXPECT_EQ(parted(digits, -1234.5), "-1,234.5: -1@3 2@2 3@1 4@0 5@-1");
  digits.setDecimalSeparator(";");
  EXPECT_EQ(parted(digits, 0), "000;0: 0@2 0@1 0@0 0@-1");
  digits.setZeroSymbol("none");
  EXPECT_EQ(parted(digits, 0), "none: none@0");
  EXPECT_EQ(segments(digits, nullptr), ": ");
  digits.setNilSymbol("--");
  EXPECT_EQ(segments(digits, nullptr), "--: --@0");
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
  EXPECT_EQ(parted(digits, -12.5), "~-012.5: ~-0@2 1@1 2@0 5@-1");
}

TEST(QKScrubbableNumberFormatter, StepsDigitsBySignAndMagnitude) {
  QKScrubbableNumberFormatter formatter;
  const auto step = [&](double value, std::int64_t tag, std::int64_t by) {
    Number number(value);
    Ref<Object> result;
    formatter.getObjectValueIncrementingSegmentWithTag(&result, tag, by, &number);
    return classCast<Number>(result.get())->doubleValue();
  };
  EXPECT_EQ(step(3.25, 1, -1), -3.25);
  EXPECT_EQ(step(-13.25, 1, 2), 3.25);
  EXPECT_EQ(step(0.25, -1, -3), -0.15);
  EXPECT_EQ(step(0.3, -1, 3), 0.6);
  EXPECT_TRUE(step(5, 18, 100) == 5 && step(3.25, -400, 5) == 3.25);  // beyond 64 bits, below all doubles
  for (double value = 0; value < 30; value += 1.000001) {             // there and back, without a trace
    for (std::int64_t tag = -6; tag <= 2; ++tag) EXPECT_NEAR(step(step(value, tag, 7), tag, -7), value, 1e-9) << tag;
  }
  formatter.setMaximum(10);
  EXPECT_EQ(step(9, 1, 1), 9);
  EXPECT_EQ(step(9, 0, 1'000'000'000'000'000'000), 10);  // not a billion billion steps
  EXPECT_EQ(step(500, 2, 1), 10);                        // counts as what its text reads as, the bound
  formatter.setMinimum(-2.500000075);
  EXPECT_EQ(step(-2, 0, -4), -2);
  EXPECT_EQ(step(0, -3, -1'000'000'000), -2.5);
  EXPECT_EQ(step(-9, -7, 3), -2.4999997);  // from the bound, whose last three quarters of a step are not seen

  formatter.setScrubbingType(kWholeNumberScrubbing);
  EXPECT_EQ(step(3, 5, 4), 7);
  EXPECT_EQ(step(3, 0, 40), 10);
  const ReportRecorder reports;
  Number number(3);
  Ref<Object> result;
  formatter.getObjectValueFloatIncrementingSegmentWithTag(&result, 0, 0.25, &number);
  EXPECT_EQ(classCast<Number>(result.get())->doubleValue(), 3);
  ASSERT_EQ(reports.lights.size(), 1u);
  EXPECT_NE(reports.lights[0].find("_scrubbingType == kWholeNumberScrubbing && [self minimumFractionDigits],  "
                                   "file: QKScrubbableNumberFormatter"),
            std::string::npos);
  formatter.setMinimumFractionDigits(2);
  formatter.getObjectValueFloatIncrementingSegmentWithTag(&result, 0, 0.25, &number);
  EXPECT_EQ(classCast<Number>(result.get())->doubleValue(), 3.25);
}

TEST(QKScrubbableNumberFormatter, ReadsWholeTextsAndSegments) {
  QKScrubbableNumberFormatter formatter;
  formatter.setLocale({".", ",", "-"});
  formatter.setMaximum(200);
  const auto read = [&](const char* text, std::optional<std::int64_t> tag, double value) {
    Number number(value);
    Ref<Object> result;
    std::string error;
    const bool isRead = tag ? formatter.getObjectValueForSegmentWithTag(&result, text, *tag, &number, &error)
                            : formatter.getObjectValue(&result, text, &error);
    return isRead ? result->description() : "error: " + error;
  };
  EXPECT_EQ(read("", {}, 0), "0");
  EXPECT_EQ(read("1e3", {}, 0), "error: Not a number.");
  EXPECT_EQ(read("1000", {}, 0), "200");
  EXPECT_EQ(read("-1000.5", {}, 0), "-1000.5");
  const struct {
    const char* text;
    std::int64_t tag;
    double value;
    const char* result;
  } rows[] = {
      {"5", 0, 123, "125"},     {"5", 1, 123, "108"},     {"-5", 2, 123, "18"},
      {"5", 0, -123, "121"},    {"5", 2, -123, "228"},    {"12", 0, 1, "error: Too many digits in string"},
      {"-5", 0, 12, "error: "}, {"", 0, 1, "error: "},    {"x", 0, 1, "error: "},
      {"5x", 0, 123, "125"},    {"-", 2, 123, "error: "}, {"9", 5, 123, "error: segment with tag 5 doesn't exist"}};
  for (const auto& row : rows) {
    const std::string expected = std::string_view(row.result) == "228" ? "error: " : row.result;  // above the maximum
    EXPECT_EQ(read(row.text, row.tag, row.value), expected) << row.text << " into " << row.tag << " of " << row.value;
  }
  formatter.setMaximum({});
  EXPECT_EQ(read("5", 2, -123), "228");

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
  EXPECT_EQ(read("-12", 0, 5), "-12");
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
