#include "../Framework/QKFormatDeputyUtilities.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace quill {
namespace {

constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

TEST(SharedDeputyFormatters, AreMadeOnceEachWithItsDigitsAndMinimum) {
  const QKTimecodeSegmentNumberFormatter plain;
  const std::int64_t fewest = plain.minimumIntegerDigits(), most = plain.maximumIntegerDigits();
  const std::optional<Number> none;
  const struct {
    QKTimecodeSegmentNumberFormatter& (*shared)();
    std::int64_t minimumDigits, maximumDigits;
    std::optional<Number> minimum;
  } rows[] = {
      {sharedDeputyLeadingTwoDigitNumberFormatter, 2, 2, none},
      {sharedDeputyFollowingTwoDigitNumberFormatter, 2, 2, 0},
      {sharedDeputyTwoDigitMinimumOneNumberFormatter, 2, 2, 1},
      {sharedDeputyOneDigitNumberFormatter, 1, 1, 0},
      {sharedDeputyFollowingThreeDigitNumberFormatter, 3, 3, 0},
      {sharedDeputyFollowingFourDigitNumberFormatter, 4, 4, 0},
      {sharedDeputyLeadingIntegerNumberFormatter, fewest, most, none},
      {sharedDeputyFollowingIntegerNumberFormatter, fewest, most, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const QKTimecodeSegmentNumberFormatter& formatter = row.shared();
    EXPECT_EQ(&formatter, &row.shared());
    EXPECT_EQ(formatter.minimumIntegerDigits(), row.minimumDigits);
    EXPECT_EQ(formatter.maximumIntegerDigits(), row.maximumDigits);
    EXPECT_EQ(formatter.maximumFractionDigits(), 0);
    EXPECT_EQ(formatter.minimum(), row.minimum);
    for (const auto* other = rows; other != &row; ++other) EXPECT_NE(&other->shared(), &formatter);
  }
}

TEST(SharedDeputyStrings, AreKept) {
  EXPECT_EQ(formatDeputyEmDash(), "\xE2\x80\x94");
  EXPECT_EQ(&formatDeputyEmDash(), &formatDeputyEmDash());
  EXPECT_EQ(formatDeputyDecimalSeparator(), ".");
  EXPECT_EQ(MDivisionsPlaceHolder(), " ");
}

TEST(FieldScanning, SplitsDigitsAtSeparators) {
  const struct {
    const char* text;
    std::int64_t capacity;
    std::vector<std::int64_t> fields;
  } rows[] = {
      {"10:20:30:40", 4, {10, 20, 30, 40}},
      {"10:20:30:40", 3, {10, 20, 30}},
      {"1.2;3,4", 5, {1, 2, 3, 4}},
      // nothing to scan
      {"", 4, {}},
      {" \t\u2003", 4, {}},
      {"12", 0, {}},
      {"12", -1, {}},
      {"-5", 4, {}},
      {"\xFF", 4, {}},
      {"\uFF11", 4, {}},
      // other characters stop the scan
      {"12x34", 4, {12}},
      {"1:x", 4, {1}},
      {"1\xFF:2", 4, {1}},
      // empty fields
      {"1:", 4, {1, 0}},
      {":5", 4, {0, 5}},
      {"1::2", 4, {1, 0, 2}},
      {":", 4, {0}},
      {"::5", 4, {0, 0, 5}},
      {"1;.2", 4, {1, 0, 2}},
      // one too many starts over and drops the rest of its run
      {"1::::5", 3, {5}},
      {"1:::::5:6", 3, {5, 6}},
      {"1:::", 2, {}},
      {"::5", 1, {5}},
      {"1::2:3", 2, {1, 0}},
      // white space is passed over, and parts runs
      {" 1 : 2 ", 4, {1, 2}},
      {"1 2", 4, {1, 2}},
      {"1: :2", 4, {1, 2}},
      {"1: ", 4, {1, 0}},
      {"1\u2003:2", 4, {1, 2}},
      // long runs saturate
      {"9223372036854775806:9223372036854775808", 4, {kHighest - 1, kHighest}},
      {"123456789012345678:000000000000000000012", 4, {123456789012345678, 12}},
  };
  const CharacterSet separators(",.;:");
  for (const auto& row : rows) {
    std::vector<std::int64_t> fields(6, -7);
    std::int64_t count = -1;
    EXPECT_EQ(privateScanStringIntoFieldArray(row.text, fields.data(), row.capacity, &count, separators),
              !row.fields.empty())
        << row.text;
    for (std::size_t i = 5; static_cast<std::int64_t>(i) >= row.capacity && i > 0; --i)
      EXPECT_EQ(fields[i], -7) << row.text << ": past the capacity";
    fields.resize(static_cast<std::size_t>(count));
    EXPECT_EQ(fields, row.fields) << row.text;
  }
}

TEST(DeputyStrings, ReadUnsignedSaturating) {
  const struct {
    const char* text;
    std::uint64_t value;
  } rows[] = {
      {"", 0},
      {"abc", 0},
      {"-1", 0},
      {"  42abc", 42},
      {"0000000000000000000000001", 1},
      {"1844674407370955161", 1844674407370955161u},  // no further digit
      {"18446744073709551609", 18446744073709551609u},
      {"18446744073709551610", 18446744073709551615u},
      {"18446744073709551616", 18446744073709551615u},
      {"99999999999999999999999", 18446744073709551615u},
  };
  for (const auto& row : rows) EXPECT_EQ(unsignedLongLongValue(row.text), row.value) << row.text;
}

TEST(DeputyStrings, AreChangedAtTheirHead) {
  const struct {
    const char *text, *spaced, *trimmed;
  } rows[] = {
      {"", "", ""},         {"0", "0", "0"},    {"000", "  0", "000"}, {"007", "  7", "007"},   {"100", "100", "100"},
      {"00a", " 0a", "00"}, {" 07", " 07", ""}, {"1.5", "1.5", "1"},   {"0\xFF", "0\xFF", "0"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(stringWithDigitSpacesForLeadingZeroes(row.text), row.spaced) << row.text;
    EXPECT_EQ(stringWithLocalizedDecimalSeparatorForDot(row.text), row.text);
    EXPECT_EQ(stringByTrimmingNondecimalsFromEnd(row.text), row.trimmed) << row.text;
  }
}

TEST(DeputyNumbers, JoinIntegerAndFraction) {
  EXPECT_EQ(privateDoubleFromIntegerPartAndFractionalPart(-1, 25, 2), -0.75);
  EXPECT_EQ(privateDoubleFromIntegerPartAndFractionalPart(7, -5, 1), 7);
  EXPECT_EQ(privateDoubleFromIntegerPartAndFractionalPart(7, 3, 0), 10);
  EXPECT_EQ(privateDoubleFromIntegerPartAndFractionalPart(2, 3, -1), 5);
  EXPECT_EQ(privateDoubleFromIntegerPartAndFractionalPart(0, 1, kHighest), 1e-18);
}

}  // namespace
}  // namespace quill
