// Random bytes, torn labels and huge numbers, typed and stepped into values of every mode and every size: nothing may
// raise, and what comes out lies within the bounds and shows. The seed is fixed; an odd row reproduces by its number.

#include "FormatterFixtures.h"

#include <limits>
#include <random>

namespace quill {
namespace {

constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kRows = 800;

class Random {
 public:
  std::uint64_t below(std::uint64_t n) { return bits_() % n; }
  bool flip() { return below(2) != 0; }
  template <class T, std::size_t n>
  T of(const T (&choices)[n]) {
    return choices[below(n)];
  }
  // Of any magnitude, either sign, the ends included.
  std::int64_t integer() {
    if (below(8) == 0) return of<std::int64_t>({kLowest, kLowest + 1, -1, 0, 1, kHighest});
    const auto magnitude = static_cast<std::int64_t>(bits_() >> (1 + below(63)));
    return flip() ? magnitude : -magnitude;
  }

  std::string text() {
    static constexpr std::string_view kPieces =
        "0|1|7|59|99|00:00:10:12|9223372036854775807|9223372036854775808|18446744073709551616|"
        "99999999999999999999999999999999999999|:|;|.|,|/|::|+|-|--| |\t|\u2003|\u2014|"
        "\u2014:\u2014:\u2014:\u2014|x|e9|inf|nan|\xFF|\xE2\x80|\uFF11|\U0001F3AC|%s|\\";
    std::string text;
    for (std::uint64_t n = below(8); n > 0; --n) {
      const std::size_t start =
          kPieces.find('|', static_cast<std::size_t>(below(kPieces.size()))) + 1;  // 0 behind the last
      text += below(12) == 0 ? std::string(1, static_cast<char>(below(256)))
                             : kPieces.substr(start, kPieces.find('|', start) - start);
    }
    return text;
  }

  // Of a fixed or custom mode, in ticks or seconds.
  Ref<QKVideoTimecode> value() {
    const auto mode = static_cast<QKSMPTETimecodeMode>(below(QKSMPTETimecodeModeInvalid));
    auto value = std::make_shared<QKVideoTimecode>(kMediaTimeZero, mode);
    if (mode == QKSMPTETimecodeModeCustom && flip()) {
      value->setCustomVideoFrameRate(of<double>({1, 1.5, 23.976, 29.5, 48, 1000, 1e6, 0.1, kInfinity}));
    }
    if (below(4) == 0) {
      value->setTimeRate(QKTimecodeUseSeconds);
      value->setSeconds(of<double>({0, -0.0, 0.04, 10.5, -10.5, 86400.0, 359999.99, 1e9, -1e15, 1e300}));
    } else {
      value->setTimeValue(
          {flip() ? integer() : integer() % 1000000000000, of<std::int32_t>({1, 24, 1000, 2400000, 2147483647})});
    }
    const bool isNegative = value->isNegative();
    value->setSMPTESubframes(value->SMPTESubframes());  // finer fractions do not survive every step
    value->setIsNegative(isNegative);
    return value;
  }

 private:
  std::mt19937_64 bits_{20240229};
};

// The value moved by hours, where it still lies on that side; else itself. Adding labels drops the finest fractions.
Ref<QKVideoTimecode> moved(const QKVideoTimecode& value, std::int64_t hours) {
  const Ref<QKVideoTimecode> result = copyOf(value);
  if (hours < 0) result->subtractSMPTEHours(-hours, 0, 0, 0, 0, 0);
  if (hours > 0) result->addSMPTEHours(hours, 0, 0, 0, 0, 0);
  const bool isOnThatSide = result->isNumeric() && result->compare(value) * hours >= 0;
  return isOnThatSide ? result : copyOf(value);
}

class Row {
 public:
  Row(Random& random, int number) : random_(random), number_(number), value_(random.value()) {
    if (random.flip()) value_->setIsNegative(false);
    formatter_.setAllowsNegative(value_->isNegative() || random.flip());
    formatter_.setSMPTEDisplaysHours(random.below(4) != 0);
    formatter_.setSMPTEDisplaysFrames(random.below(4) != 0);
    formatter_.setSMPTEDisplaysSubframes(random.flip());
    formatter_.setSMPTEDisplaysQuarterFrames(random.flip());
    formatter_.setSMPTEHas24HourRollover(random.flip());
    formatter_.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(random.below(3)));
    // Bounds around the value, where the ceiling does not lie within them and the best timescale holds them.
    if (value_->SMPTEHours() > (formatter_.SMPTEHas24HourRollover() ? 100000000 : 90)) return;
    const auto hours = static_cast<std::int64_t>(random.below(3));
    if (random.flip()) formatter_.setMinimum(moved(*value_, -hours).get());
    if (random.flip()) formatter_.setMaximum(moved(*value_, hours).get());
  }

  void run() {
    const std::string text = random_.text();
    SCOPED_TRACE(testing::Message() << "row " << number_ << ", \"" << text << "\" for " << *value_);
    const Ref<QKFormatDeputy> deputy = formatter_.deputyForFormat(QKTimecodeFormatSMPTE);
    std::string error;
    Ref<Object> result;
    formatter_.setCurrentTimecode(value_);
    if (formatter_.getObjectValue(&result, text, &error)) {
      check(result, "whole");
    } else {
      EXPECT_FALSE(error.empty());
    }
    deputy->getObjectValue(&result, text, formatter_, &error);
    formatter_.isPartialStringValid(text, nullptr, &error);
    deputy->isPartialStringValid(text, &error);
    std::int64_t fields[3], count = 0;
    privateScanStringIntoFieldArray(text, fields, 3, &count, CharacterSet(text));
    stringWithDigitSpacesForLeadingZeroes(text);
    stringWithLocalizedDecimalSeparatorForDot(text);
    unsignedLongLongValue(text);

    for (const std::int64_t tag :
         {random_.integer(), std::int64_t{0}, std::int64_t{1}, static_cast<std::int64_t>(random_.below(6))}) {
      formatter_.segmentFieldWidthForTag(tag, value_.get());
      formatter_.substringRangeForSegmentWithTag(tag, value_.get());
      formatter_.formatterForSegmentTag(tag, value_.get());
      formatter_.getObjectValueIncrementingSegmentWithTag(&result, tag, random_.integer(), value_.get());
      check(result, "stepped");
      Ref<QKVideoTimecode> typedInto = copyOf(*value_);
      if (formatter_.getObjectValueForSegmentWithTag(&result, random_.flip() ? text : "-5", tag, typedInto.get(),
                                                     &error)) {
        check(result, "typed");
      }
      deputy->massagedFieldValue(random_.integer(), tag, typedInto.get());
      deputy->getObjectValueNearestToMinimum(&result, typedInto.get(), tag, value_.get());
      deputy->getObjectValueNearestToMaximum(&result, typedInto.get(), tag, value_.get());
    }
  }

 private:
  // Within the bounds and the ceiling, and shows.
  void check(const Ref<Object>& result, const char* how) {
    if (!result) return;
    auto* timecode = classCast<QKVideoTimecode>(result.get());
    ASSERT_TRUE(timecode) << how;
    const Ref<Object> minimum = formatter_.minimum(), maximum = formatter_.maximum();
    if (minimum) {
      EXPECT_GE(timecode->compare(*minimum), 0) << how << *timecode;
    }
    if (maximum) {
      EXPECT_LE(timecode->compare(*maximum), 0) << how << *timecode;
    }
    EXPECT_TRUE(timecode->isNumeric()) << how << *timecode;
    // The ticks of a custom rate may be too coarse for the last fraction of a frame.
    const bool hasCeiling = !formatter_.SMPTEHas24HourRollover() && value_->SMPTEHours() <= 90 &&
                            value_->timecodeMode() != QKSMPTETimecodeModeCustom;
    EXPECT_TRUE(!hasCeiling || timecode->SMPTEHours() <= 99) << how << *timecode;
    EXPECT_TRUE(formatter_.allowsNegative() || !timecode->isNegative()) << how << *timecode;
    EXPECT_GE(formatter_.stringForObjectValue(timecode).value_or("").size(), 5u) << how;
  }

  Random& random_;
  int number_;
  Ref<QKVideoTimecode> value_;
  QKTimecodeFormatter formatter_;
};

TEST(TypedTextFuzz, NothingTypedOrSteppedRaises) {
  ReportRecorder reports;
  Random random;
  for (int number = 0; number < kRows && !testing::Test::HasFailure(); ++number) {
    Row(random, number).run();
    EXPECT_TRUE(reports.assertions.empty()) << "row " << number << '\n' << reports;
    reports.clear();
  }
}

}  // namespace
}  // namespace quill
