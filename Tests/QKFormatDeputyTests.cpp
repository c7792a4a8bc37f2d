#include "FormatterFixtures.h"

#include <limits>

namespace quill {
namespace {

constexpr auto k24 = QKSMPTETimecodeMode_24, k25 = QKSMPTETimecodeMode_25, kDrop = QKSMPTETimecodeMode_2997Drop,
               k5994Drop = QKSMPTETimecodeMode_5994Drop, kElapsed = QKSMPTETimecodeMode_2997Duration,
               k120 = QKSMPTETimecodeMode_120;
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();

// Its segments are its tags; it writes down what it is asked to type.
class NotingDeputy : public QKFormatDeputy {
 public:
  static const ClassDescriptor descriptor;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  std::int64_t segmentIndexForTag(std::int64_t tag, Object*) const override { return tag; }
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error) const override {
    note = std::string(string) + ' ' + std::to_string(tag) + (error ? " error" : "");
    if (result) *result = object->copy();
    return true;
  }
  mutable std::string note;
};
const ClassDescriptor NotingDeputy::descriptor{"NotingDeputy", nullptr, 0, &QKFormatDeputy::descriptor,
                                               []() -> Ref<Object> { return std::make_shared<NotingDeputy>(); }};

TEST(QKFormatDeputy, AbstractOperationsLogAndAnswer) {
  ReportRecorder reports;
  const QKFormatDeputy d;
  QKVideoTimecode value;
  Ref<Object> result;
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
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKFormatDeputy, AnswersOfTheBase) {
  ReportRecorder reports(ReportRecorder::Returned);
  const QKFormatDeputy deputy;
  const QKTimecodeFormatter formatter;
  QKVideoTimecode value;
  std::string error;
  EXPECT_EQ(deputy.stringForObjectValue(&value, formatter), "");
  EXPECT_FALSE(deputy.getObjectValue(nullptr, "1", formatter, &error));
  EXPECT_EQ(error,
            "Abstract method -[QKFormatDeputy "
            "getObjectValue:forString:formatter:errorDescription:]");
  EXPECT_FALSE(deputy.getObjectValue(nullptr, "1", formatter, nullptr));
  EXPECT_TRUE(deputy.allowsSegmentEditing());
  EXPECT_EQ(deputy.legalCharacterSet(), CharacterSet(",.;:0123456789"));
  EXPECT_EQ(&deputy.copy()->classDescriptor(), &QKFormatDeputy::descriptor);
  EXPECT_EQ(&NotingDeputy().copy()->classDescriptor(), &NotingDeputy::descriptor);
  EXPECT_TRUE(reports.isQuiet()) << reports;
  EXPECT_EQ(&deputy.requiredProtocol(), &QKBasicTimecode::protocol);
  expectAssertion(reports, "QKFormatDeputy", 359,
                  "-[QKFormatDeputy requiredProtocol] must be implemented by subclass.");
}

TEST(QKFormatDeputy, ZeroingTypesANought) {
  const NotingDeputy deputy;
  QKVideoTimecode value;
  Ref<Object> result;
  deputy.getObjectValueZeroingSegmentWithTag(&result, 4, &value);
  EXPECT_EQ(deputy.note, "0 4");
  EXPECT_TRUE(result && result.get() != &value);
}

TEST(QKFormatDeputy, TrimsOneSign) {
  const struct {
    const char *text, *trimmed;
    std::int64_t sign;
  } rows[] = {
      {"", "", 0},         {"12", "12", 0},  {" 12", " 12", 0},     {"+12", "12", 1},
      {"+", "", 1},        {" -5", "5", -1}, {"\t+ 5", " 5", 1},    {"+-5", "-5", 1},
      {"- -5", " -5", -1}, {"1-", "1-", 0},  {"\u2003-5", "5", -1}, {"\xFF-", "\xFF-", 0},
  };
  std::string_view trimmed;
  std::int64_t sign = 7;
  std::string error;
  for (const auto& row : rows) {
    EXPECT_TRUE(QKFormatDeputy::trimSignFromString(row.text, &trimmed, &sign, &error)) << row.text;
    EXPECT_EQ(trimmed, row.trimmed);
    EXPECT_EQ(sign, row.sign) << row.text;
  }
  for (const char* text : {"--3", "++", " ---"}) {
    EXPECT_FALSE(QKFormatDeputy::trimSignFromString(text, nullptr, nullptr, &error)) << text;
    EXPECT_EQ(error, "Excess + or -'s");
    EXPECT_FALSE(QKFormatDeputy::trimSignFromString(text, nullptr, nullptr, nullptr));
  }
}

TEST(QKFormatDeputy, PartialStringsHaveOneSignAndLegalCharacters) {
  const QKFormatDeputy deputy;
  std::string error;
  for (const char* text : {"", "01:02;03.04,05", "-1", "+ 1 2", " 1", ";;", "1 ", "+"}) {
    EXPECT_TRUE(deputy.isPartialStringValid(text, &error)) << text << error;
  }
  for (const char* text : {"1a", "1/2", "+-5", "1-", "\xFF", "1\uFF11", "\u2014"}) {
    EXPECT_FALSE(deputy.isPartialStringValid(text, &error)) << text;
    EXPECT_EQ(error, "Illegal character.") << text;
  }
  EXPECT_FALSE(deputy.isPartialStringValid("++1", &error));
  EXPECT_EQ(error, "Excess + or -'s");
  EXPECT_FALSE(deputy.isPartialStringValid("a", nullptr));
}

TEST(QKFormatDeputy, MassagingGivesTheLeadingSegmentsSignToTheValue) {
  const struct {
    std::int64_t typed, index;
    const char *before, *after;
    std::int64_t magnitude;
    bool isReported;
  } rows[] = {
      {-5, 0, "0:00:01:00", "-0:00:01:00", 5, false},
      {5, 0, "-0:00:01:00", "0:00:01:00", 5, false},
      {0, 0, "-0:00:01:00", "0:00:01:00", 0, false},
      {5, 1, "-0:00:01:00", "-0:00:01:00", 5, false},
      {-5, 1, "0:00:01:00", "-0:00:01:00", 5, true},
      {kLowest, 0, "0:00:01:00", "-0:00:01:00", kHighest, false},
      {kHighest, 0, "-0:00:01:00", "0:00:01:00", kHighest, false},
  };
  for (const auto& row : rows) {
    ReportRecorder reports;
    const Ref<QKVideoTimecode> value = timecodeAt(k25, row.before);
    EXPECT_EQ(NotingDeputy().massagedFieldValue(row.typed, row.index, value.get()), row.magnitude);
    EXPECT_EQ(labelOf(value), row.after) << row.typed << " in " << row.index;
    const std::string light = "MyAssertMessage: segmentIndex == 0,  file: QKFormatDeputy, line: 348, value: 0\n";
    EXPECT_EQ(reports.lights, std::vector<std::string>(row.isReported ? 1 : 0, light));
    EXPECT_TRUE(reports.logs.empty() && reports.assertions.empty()) << reports;
  }
}

// ---- The nearest value within a bound ----

std::string nearest(const QKFormatDeputy& deputy, int direction, std::int64_t tag, Object& bound, Object& value) {
  Ref<Object> result;
  if (direction < 0) {
    deputy.getObjectValueNearestToMinimum(&result, &bound, tag, &value);
  } else {
    deputy.getObjectValueNearestToMaximum(&result, &bound, tag, &value);
  }
  return labelOf(result);
}

int compareValues(Object& a, Object& b) { return protocolCast<QKBasicTimecode>(&a)->compare(b); }

// Step after step from the value, until one passes the bound or gives what the one before gave. "" when it takes too long.
std::string walkedNearest(const QKFormatDeputy& deputy, int direction, std::int64_t tag, Object& bound, Object& value) {
  Ref<Object> last = value.copy();
  for (std::int64_t k = 1; k < 700; ++k) {
    Ref<Object> next;
    deputy.getObjectValueIncrementingSegmentWithTag(&next, tag, direction * k, &value);
    const bool isBeyond = compareValues(bound, *next) * direction < 0;
    if (isBeyond || compareValues(*next, *last) == 0) return labelOf(last);
    last = next;
  }
  return "";
}

TEST(QKFormatDeputyNearest, IsWhereTheWalkEnds) {
  ReportRecorder reports;
  QKSMPTETimecodeFormatDeputy deputy;
  deputy.setDisplaysSubframes(true);
  const char* const labels[] = {"0:00:00:00", "-0:00:00:03", "0:00:01:07.40", "-0:01:01:10.40",
                                "0:00:50:05", "0:01:02:03",  "0:02:00:00",    "1:09:59:29.05"};
  int walked = 0;
  for (const auto mode : {k25, kDrop, k5994Drop, kElapsed}) {
    for (const char* const from : labels) {
      for (const char* const to : labels) {
        const Ref<QKVideoTimecode> value = timecodeAt(mode, from), bound = timecodeAt(mode, to);
        HostTimecode host(*value), hostBound(*bound);
        const int direction = value->compare(*bound) < 0 ? 1 : -1;
        for (std::int64_t tag = 0; tag <= 5; ++tag) {
          const std::string end = walkedNearest(deputy, direction, tag, *bound, *value);
          if (end.empty()) continue;
          ++walked;
          EXPECT_EQ(nearest(deputy, direction, tag, *bound, *value), end)
              << timecodeModeShortName(mode) << ' ' << from << " to " << to << ", tag " << tag;
          if (mode != k25) continue;
          EXPECT_EQ(nearest(deputy, direction, tag, hostBound, host), end) << "a host's value";
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
  const struct {
    QKSMPTETimecodeMode mode;
    const char *from, *to;
    std::int64_t tag;
    const char* nearest;
  } rows[] = {
      {k120, "0:00:00:00", "99:59:59:119.79", 4, "99:59:59:119.79"},  // 3.5 billion steps
      {k120, "0:00:00:00.05", "-99:59:59:119.79", 4, "-99:59:59:119.79"},
      {k120, "0:00:00:01.05", "99:59:59:119.79", 3, "99:59:59:119.05"},
      {kDrop, "0:00:00:00", "1000000000:00:00:00", 0, "1000000000:00:00:00"},
      {kDrop, "0:00:00:05", "1000000:00:00:04", 2, "999999:59:59:05"},
      {k25, "2000000000:00:00:10", "-1:00:00:00", 0, "0:00:00:10"},
      {k25, "2000000000:00:00:10", "-2:00:00:00", 0, "-1:00:00:10"},
  };
  for (const auto& row : rows) {
    const Ref<QKVideoTimecode> value = timecodeAt(row.mode, row.from), bound = timecodeAt(row.mode, row.to);
    const int direction = value->compare(*bound) < 0 ? 1 : -1;
    EXPECT_EQ(nearest(deputy, direction, row.tag, *bound, *value), row.nearest) << row.from;
  }
}

TEST(QKFormatDeputyNearest, IsTheBoundForAValueBeyondIt) {
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
}

TEST(QKFormatDeputyNearest, ReportsAMissingBound) {
  const QKSMPTETimecodeFormatDeputy deputy;
  const Ref<QKVideoTimecode> value = timecodeAt(k25, "0:00:01:02");
  ReportRecorder reports;
  Ref<Object> low, high;
  deputy.getObjectValueNearestToMinimum(&low, nullptr, 3, value.get());
  deputy.getObjectValueNearestToMaximum(&high, nullptr, 3, value.get());
  EXPECT_EQ(labelOf(low), "0:00:01:02");
  EXPECT_EQ(labelOf(high), "0:00:01:02");
  EXPECT_EQ(reports.lights,
            (std::vector<std::string>{"MyAssertMessage: minimum,  file: QKFormatDeputy, line: 293, value: 0\n",
                                      "MyAssertMessage: maximum,  file: QKFormatDeputy, line: 319, value: 0\n"}));
}

}  // namespace
}  // namespace quill
