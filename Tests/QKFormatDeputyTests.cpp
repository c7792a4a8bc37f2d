#include "../Framework/QKHMSTimecodeFormatDeputy.h"
#include "FormatterFixtures.h"

namespace quill {
namespace {

TEST(QKFormatDeputy, AbstractOperationsLogAndAnswer) {
  ReportRecorder reports(ReportRecorder::Returned);
  const QKFormatDeputy d;
  QKVideoTimecode value;
  Ref<Object> result;
  std::string error;
  bool left = true, right = true;
  // An operation's answer, and the method that its log line has named.
  const auto logs = [&](bool isRight, const std::string& method) {
    EXPECT_TRUE(isRight) << method;
    EXPECT_EQ(reports.logs, std::vector{"Abstract method -[QKFormatDeputy " + method + ']'});
    reports.logs.clear();
  };
  logs(d.segmentCountInObjectValue(&value) == 0, "segmentCountInObjectValue:");
  logs(d.segmentTagForIndex(7, &value) == 7, "segmentTagForIndex:inObjectValue:");
  logs(d.segmentIndexForTag(-7, &value) == -7, "segmentIndexForTag:inObjectValue:");
  logs(d.segmentFieldWidthForTag(1, &value) == 0, "segmentFieldWidthForTag:inObjectValue:");
  logs(d.defaultSelectedSegmentTagInObjectValue(&value) == 0, "defaultSelectedSegmentTagInObjectValue:");
  d.segmentWithTagHasPadding(1, &left, &right, &value);
  logs(left && right, "segmentWithTag:hasPaddingAtLeft:atRight:inObjectValue:");
  logs(d.substringRangeForSegmentWithTag(1, &value) == Range{0, 0}, "substringRangeForSegmentWithTag:inObjectValue:");
  d.getObjectValueIncrementingSegmentWithTag(&result, 1, 1, &value);
  logs(!result, "getObjectValue:incrementingSegmentWithTag:byIncrement:inObjectValue:");
  logs(d.getObjectValueForSegmentWithTag(&result, "1", 1, &value, nullptr) && result->isEqual(Number(0)),
       "getObjectValue:forString:forSegmentWithIndex:inObjectValue:errorDescription:");
  logs(!d.formatterForSegmentTag(1, &value), "formatterForSegmentTag:inObjectValue:");
  logs(d.defaultNilSymbol().empty(), "defaultNilSymbol");
  // without a word
  EXPECT_EQ(d.stringForObjectValue(&value, {}), "");
  EXPECT_FALSE(d.getObjectValue(nullptr, "1", {}, &error));
  EXPECT_EQ(error, "Abstract method -[QKFormatDeputy getObjectValue:forString:formatter:errorDescription:]");
  EXPECT_TRUE(d.allowsSegmentEditing() && d.legalCharacterSet() == CharacterSet(",.;:0123456789"));
  EXPECT_TRUE(reports.isQuiet()) << reports;
  EXPECT_EQ(&d.requiredProtocol(), &QKBasicTimecode::protocol);
  expectAssertion(reports, "QKFormatDeputy", 359,
                  "-[QKFormatDeputy requiredProtocol] must be implemented by subclass.");
}

TEST(QKFormatDeputy, TrimsOneSignAndChecksWhatIsTyped) {
  const QKFormatDeputy deputy;
  eachPairIn("deputies.txt", "signs", [&](const std::string& text, const std::string& expected) {
    std::string_view trimmed;
    std::int64_t sign = 7;
    std::string trimError, typeError;
    const bool isTrimmed = QKFormatDeputy::trimSignFromString(text, &trimmed, &sign, &trimError);
    const bool isValid = deputy.isPartialStringValid(text, &typeError);
    EXPECT_EQ(isTrimmed, QKFormatDeputy::trimSignFromString(text, nullptr, nullptr, nullptr));
    EXPECT_EQ(isTrimmed ? std::to_string(sign) + '|' + std::string(trimmed) + '|' + typeError : trimError, expected);
    EXPECT_TRUE(isTrimmed ? isValid == typeError.empty() : !isValid && typeError == trimError);
  });
}

TEST(QKFormatDeputy, MassagingGivesTheLeadingSegmentsSignToTheValue) {
  eachPairIn("deputies.txt", "massaged fields", [](const std::string& left, const std::string& right) {
    const auto words = partsOf(left, " ");
    const ReportRecorder reports;
    const Ref<QKVideoTimecode> value = timecodeAt(k25, words[0]);
    const QKHMSTimecodeFormatDeputy deputy;
    const auto magnitude = deputy.massagedFieldValue(std::stoll(words[2]), std::stoll(words[1]), value.get());
    EXPECT_EQ(
        labelOf(value) + ' ' + std::to_string(magnitude) + (reports.lights.empty() ? "" : ' ' + reports.lights[0]),
        right);
  });
}

// ---- The nearest value within a bound ----

int compareValues(Object& a, Object& b) { return protocolCast<QKBasicTimecode>(&a)->compare(b); }

// To the maximum from a value below it, to the minimum from one above.
std::string nearest(const QKFormatDeputy& deputy, std::int64_t tag, Object& bound, Object& value) {
  const auto find = compareValues(value, bound) < 0 ? &QKFormatDeputy::getObjectValueNearestToMaximum
                                                    : &QKFormatDeputy::getObjectValueNearestToMinimum;
  Ref<Object> result;
  (deputy.*find)(&result, &bound, tag, &value);
  return labelOf(result);
}

// Step after step from the value, until one passes the bound or gives what the one before gave; "" when it takes long.
std::string walkedNearest(const QKFormatDeputy& deputy, std::int64_t tag, Object& bound, Object& value) {
  const int direction = compareValues(value, bound) < 0 ? 1 : -1;
  Ref<Object> last = value.copy();
  for (std::int64_t k = 1; k < 700; ++k) {
    Ref<Object> next;
    deputy.getObjectValueIncrementingSegmentWithTag(&next, tag, direction * k, &value);
    if (compareValues(bound, *next) * direction < 0 || compareValues(*next, *last) == 0) return labelOf(last);
    last = next;
  }
  return "";
}

TEST(QKFormatDeputyNearest, IsWhereTheWalkEnds) {
  ReportRecorder reports;
  QKSMPTETimecodeFormatDeputy deputy;
  deputy.setDisplaysSubframes(true);
  const auto labels = partsOf(
      "0:00:00:00 -0:00:00:03 0:00:01:07.40 -0:01:01:10.40 0:00:50:05 0:01:02:03 0:02:00:00 1:09:59:29.05", " ");
  int walked = 0;
  for (const auto mode : {k25, k2997Drop, k5994Drop, k2997Duration}) {
    for (const std::string& from : labels) {
      for (const std::string& to : labels) {
        const Ref<QKVideoTimecode> value = timecodeAt(mode, from), bound = timecodeAt(mode, to);
        HostTimecode host(*value), hostBound(*bound);
        for (std::int64_t tag = 0; tag <= 5; ++tag) {
          SCOPED_TRACE(from + " to " + to + ", mode " + std::to_string(mode) + " tag " + std::to_string(tag));
          const std::string end = walkedNearest(deputy, tag, *bound, *value);
          if (end.empty()) continue;
          ++walked;
          EXPECT_EQ(nearest(deputy, tag, *bound, *value), end);
          EXPECT_EQ(mode == k25 ? nearest(deputy, tag, hostBound, host) : end, end) << "a host's value";
        }
      }
    }
  }
  EXPECT_GT(walked, 900);
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKFormatDeputyNearest, NeedsNoBillionSteps) {
  QKSMPTETimecodeFormatDeputy deputy;
  deputy.setDisplaysSubframes(true);
  eachPairIn("deputies.txt", "nearest values", [&](const std::string& left, const std::string& right) {
    const auto words = partsOf(left, " ");
    const auto mode = timecodeModeNamed(words[0]).value();
    const Ref<QKVideoTimecode> value = timecodeAt(mode, words[1]), bound = timecodeAt(mode, words[3]);
    EXPECT_EQ(nearest(deputy, std::stoll(words[2]), *bound, *value), right);
  });
}

TEST(QKFormatDeputyNearest, IsTheBoundForAValueBeyondItAndTheValueWithoutABound) {
  const QKSMPTETimecodeFormatDeputy deputy;
  QKVideoTimecode low({1, 1}, k25), high({40, 4}, k24);
  Ref<Object> result;
  deputy.getObjectValueNearestToMinimum(&result, &high, 3, &low);
  EXPECT_TRUE(result->isEqual(QKVideoTimecode({10, 1}, k25))) << "converted into the value's own";
  deputy.getObjectValueNearestToMaximum(&result, &low, 3, &high);
  EXPECT_TRUE(result->isEqual(QKVideoTimecode({4, 4}, k24)));
  HostTimecode lowHost(low), highHost(high);
  deputy.getObjectValueNearestToMinimum(&result, &highHost, 3, &lowHost);
  auto* copy = dynamic_cast<HostTimecode*>(result.get());
  EXPECT_TRUE(copy && copy != &highHost && copy->value == high) << "a copy of the bound";

  const ReportRecorder reports;
  deputy.getObjectValueNearestToMinimum(&result, nullptr, 3, &low);
  EXPECT_EQ(labelOf(result), "0:00:01:00");
  deputy.getObjectValueNearestToMaximum(&result, nullptr, 3, &high);
  EXPECT_EQ(labelOf(result), "0:00:10:00");
  EXPECT_EQ(reports.lights,
            (std::vector<std::string>{"MyAssertMessage: minimum,  file: QKFormatDeputy, line: 293, value: 0\n",
                                      "MyAssertMessage: maximum,  file: QKFormatDeputy, line: 319, value: 0\n"}));
}

// ---- Utilities ----

TEST(SharedDeputyFormatters, AreMadeOnceEachWithItsDigitsAndMinimum) {
  // Minimum and maximum of the integer digits, the maximum of the fraction digits and the minimum.
  const std::pair<QKTimecodeSegmentNumberFormatter& (*)(), const char*> rows[] = {
      {sharedDeputyLeadingTwoDigitNumberFormatter, "2 2 0 none"},
      {sharedDeputyFollowingTwoDigitNumberFormatter, "2 2 0 0"},
      {sharedDeputyTwoDigitMinimumOneNumberFormatter, "2 2 0 1"},
      {sharedDeputyOneDigitNumberFormatter, "1 1 0 0"},
      {sharedDeputyFollowingThreeDigitNumberFormatter, "3 3 0 0"},
      {sharedDeputyFollowingFourDigitNumberFormatter, "4 4 0 0"},
      {sharedDeputyLeadingIntegerNumberFormatter, "1 2000000000 0 none"},
      {sharedDeputyFollowingIntegerNumberFormatter, "1 2000000000 0 0"},
  };
  for (const auto& [shared, text] : rows) {
    const QKTimecodeSegmentNumberFormatter& f = shared();
    EXPECT_EQ(&f, &shared());
    EXPECT_EQ(std::to_string(f.minimumIntegerDigits()) + ' ' + std::to_string(f.maximumIntegerDigits()) + ' ' +
                  std::to_string(f.maximumFractionDigits()) + ' ' + (f.minimum() ? f.minimum()->description() : "none"),
              text);
  }
  EXPECT_EQ(formatDeputyEmDash() + formatDeputyDecimalSeparator() + MDivisionsPlaceHolder(), "\xE2\x80\x94. ");
}

TEST(FieldScanning, SplitsDigitsAtSeparators) {
  eachPairIn("deputies.txt", "scanned fields",
             [separators = CharacterSet(",.;:")](const std::string& left, const std::string& expected) {
               const std::int64_t capacity = std::stoll(left);
               std::int64_t fields[6] = {-7, -7, -7, -7, -7, -7}, count = -1;
               const bool isFound = privateScanStringIntoFieldArray(left.substr(left.find(' ') + 1), fields, capacity,
                                                                    &count, separators);
               EXPECT_EQ(fields[std::max<std::int64_t>(capacity, 0)], -7) << "past the capacity";
               std::string got;
               for (std::int64_t i = 0; i < count; ++i) (got += i == 0 ? "" : " ") += std::to_string(fields[i]);
               EXPECT_EQ(isFound ? got : "none", expected);
             });
}

TEST(DeputyStrings, AreReadAndChangedAtTheirHead) {
  eachPairIn("deputies.txt", "heads of texts", [](const std::string& text, const std::string& expected) {
    EXPECT_EQ(std::to_string(unsignedLongLongValue(text)) + '|' + stringWithDigitSpacesForLeadingZeroes(text) + '|' +
                  std::string(stringByTrimmingNondecimalsFromEnd(text)),
              expected);
    EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot(text), text);
  });
  const struct {
    std::int64_t whole, fraction, digits;
    double number;
  } rows[] = {{-1, 25, 2, -0.75},       {7, -5, 1, 7},           {2, 3, -1, 32},
              {0, 1, 22, 1e-22},        {0, 3, 30, 3e-30},       {0, 1, -25, 1e25},
              {1, 1, kInt64Highest, 1}, {5, 0, kInt64Lowest, 5}, {0, 1, kInt64Lowest, kInfinity}};
  for (const auto& [whole, fraction, digits, number] : rows)
    EXPECT_DOUBLE_EQ(privateDoubleFromIntegerPartAndFractionalPart(whole, fraction, digits), number) << digits;
}

}  // namespace
}  // namespace quill
