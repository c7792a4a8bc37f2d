// One notation, QUILL_FUZZ_FORMAT: the first bytes make a value, bounds and settings, the rest is what is typed. No text
// raises, only the state of a value; what comes out lies within the bounds, shows, and can be typed itself.

#include "../Framework/QKExtendedTimecode.h"
#include "../Framework/QKTimecodeFormatter.h"
#include "../Platform/Reports.h"
#include "FuzzInput.h"

#include <cmath>

using namespace quill;

using Timecode = QKExtendedTimecode;  // serves every notation

constexpr QKTimecodeFormat kFormat = QUILL_FUZZ_FORMAT;
constexpr bool kIsSMPTE = kFormat == QKTimecodeFormatSMPTE, kIsBars = kFormat == QKTimecodeFormatBarsBeats;

// Of any mode, unknown ones too, in ticks of any size and rate or in seconds.
static Ref<Timecode> takeTimecode(FuzzInput& in) {
  const auto mode = static_cast<QKSMPTETimecodeMode>(in.below(QKSMPTETimecodeModeInvalid + 2));
  const auto timecode = std::make_shared<Timecode>(kMediaTimeZero, mode);
  const auto customRate = in.of<double>({0, 1, 1.5, 23.976, 29.5, 48, 1000, 1e6});
  if (customRate != 0) timecode->setCustomVideoFrameRate(customRate);
  timecode->setAudioFrameRate(in.of<std::uint64_t>({44100, 32000, 1, 96000, 4294967295, 1ULL << 63, 48000}));
  timecode->setAudioFrameSequencePhaseFrame(in.below(4));
  timecode->setTempo(in.of<double>({120, 97.3, 1, 0.001, 1e9}));
  timecode->setTimeSignatureNumerator(in.of<std::int64_t>({4, 3, 7, 1, 1LL << 62}));
  timecode->setTimeSignatureDenominator(in.of<std::int64_t>({4, 8, 2, 5, 1LL << 62}));
  timecode->setFilmType(static_cast<QKFilmType>(in.below(11)));
  const auto timescale = in.of<std::int32_t>({0, 1, 24, 1000, 2400000, 2147483647});
  const auto kind = in.below(8), shift = in.below(64);
  const auto ticks = in.take<std::int64_t>() >> shift;
  const auto seconds = in.take<double>();
  if (kind < 6) {
    timecode->setTimeValue({ticks, timescale != 0 ? timescale : timecode->timeValue().timescale});
  } else {
    timecode->setTimeRate(QKTimecodeUseSeconds);
    timecode->setSeconds(kind == 6 ? static_cast<double>(ticks) / 1000 : seconds);
  }
  return timecode;
}

// A mode without labels, or audio frames that may lie before the phase frame of their sequence.
static bool mayRaise(const Timecode& timecode) {
  return timecode.timecodeMode() >= QKSMPTETimecodeModeInvalid ||
         (kFormat == QKTimecodeFormatAudioFrames && timecode.usingSMPTE272MConversion());
}

// Whether every view of it fits its type: decades, rates of 32 bits, a tempo for people.
static bool isPlain(const Timecode& timecode) {
  return timecode.isNumeric() && std::abs(timecode.seconds()) < 1e9 && timecode.audioFrameRate() < 1ULL << 32 &&
         timecode.tempo() < 1000;
}

// On that side of a bound, by more than what steps round and the thousandth of a frame behind quarter frames.
static bool isBeyond(const Timecode& timecode, const Ref<Object>& bound, int side) {
  const auto* other = classCast<Timecode>(bound.get());
  const double rounding = kFormat == QKTimecodeFormatFeetFrames ? 1e-3 : timecode.useSeconds() ? 1e-6 : 0;
  return other && timecode.compare(*other) * side > 0 && std::abs(timecode.seconds() - other->seconds()) > rounding;
}

// The segments lie in the text, in order, and the text can be typed. On purpose SMPTE frames count as a segment where they
// are hidden, and each segment is a character too long where frames have three digits.
static void checkShown(QKTimecodeFormatter& formatter, const Ref<Timecode>& value) {
  const std::string shown = formatter.stringForObjectValue(value.get()).value_or("");
  QUILL_REQUIRE(!shown.empty());
  if (!isPlain(*value) || (kIsBars && value->isNegative())) return;  // negative bars say nothing
  const int hidden = kIsSMPTE && !formatter.SMPTEDisplaysFrames();
  std::uint64_t end = 0;
  for (std::int64_t index = 0; index < formatter.segmentCountInObjectValue(value.get()) - hidden; ++index) {
    const std::int64_t tag = formatter.segmentTagForIndex(index, value.get());
    QUILL_REQUIRE(formatter.segmentIndexForTag(tag, value.get()) == index);
    const Range range = formatter.substringRangeForSegmentWithTag(tag, value.get());
    QUILL_REQUIRE(range.location >= end && range.length > 0);
    end = range.location + range.length;
  }
  QUILL_REQUIRE(end <= characterCount(shown) + (kIsSMPTE && value->videoFrameRate() > 100 ? 1 : 0));
  QUILL_REQUIRE(formatter.isPartialStringValid(shown, nullptr, nullptr) || shown.front() == ' ');
  QUILL_REQUIRE(formatter.getObjectValue(nullptr, shown, nullptr));
}

static void check(QKTimecodeFormatter& formatter, const Ref<Object>& result, bool isHeld) {
  if (!result) return;  // the nil symbol was typed
  const auto* timecode = classCast<Timecode>(result.get());
  QUILL_REQUIRE(formatter.allowsNegative() || !timecode->isNegative());
  const bool isOutside = isBeyond(*timecode, formatter.minimum(), -1) || isBeyond(*timecode, formatter.maximum(), 1);
  QUILL_REQUIRE(!isHeld || (timecode->isNumeric() && !isOutside));
  checkShown(formatter, copyOf(*timecode));
}

static void run(FuzzInput in, bool* raises) {
  const Ref<Timecode> value = takeTimecode(in), other = takeTimecode(in);
  const auto settings = in.below(256), negatives = in.below(3), bounds = in.below(8), shift = in.below(64);
  const auto places = in.of<std::int64_t>({3, 0, 1, 2, 6, 17, 18, 19, 1LL << 62});
  const std::int64_t below = in.take<std::uint32_t>(), above = in.take<std::uint32_t>();
  const auto increment = in.take<std::int64_t>() >> shift, anyTag = in.take<std::int64_t>();
  const std::int64_t tag = anyTag % 16 == 15 ? anyTag : anyTag % 8;

  QKTimecodeFormatter formatter;
  formatter.setTimecodeFormat(kFormat);
  if (negatives == 0) value->setIsNegative(false);
  formatter.setAllowsNegative(value->isNegative() || negatives == 2);
  formatter.setSMPTEDisplaysHours((settings & 1) == 0);
  formatter.setSMPTEDisplaysFrames((settings & 2) == 0);
  formatter.setSMPTEDisplaysSubframes((settings & 4) != 0);
  formatter.setSMPTEDisplaysQuarterFrames((settings & 8) != 0);
  formatter.setSMPTEHas24HourRollover((settings & 16) != 0);
  formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(settings >> 5 & 1));
  formatter.setHMSHas24HourRollover((settings & 16) != 0);
  formatter.setHMSSecondsDecimalPlaces(places);
  formatter.setODTSecondsDecimalPlaces(static_cast<std::uint64_t>(places));
  formatter.setMSeparator(settings & 1);
  formatter.setMDisplaysDivisionsAndTicks((settings & 2) == 0);
  formatter.setMIsDivisionsFieldDropped((settings & 4) != 0);
  formatter.setMBeatsDecimalPlaces(places);
  formatter.setFFSeparator(settings & 3);
  formatter.setFFDisplaysQuarterFrames((settings & 4) != 0);

  const bool isAround = bounds < 4 && !mayRaise(*value) && value->timecodeMode() != QKSMPTETimecodeModeCustom;
  bool isHeld = false;
  Ref<Timecode> minimum = other, maximum = other;  // any at all
  if (isAround) {                                  // the value
    if (!value->useSeconds()) value->setTimeRate(QKTimecodeBestTimeRate);
    isHeld = isPlain(*value) && (!kIsSMPTE || value->SMPTEHours() <= 90);  // below the ceiling of SMPTE labels
    MediaTime low = value->timeValue(), high = low;
    low.value -= isHeld ? below : 0, high.value += isHeld ? above : 0;
    minimum = copyOf(*value), maximum = copyOf(*value);
    if (!value->useSeconds()) minimum->setTimeValue(low), maximum->setTimeValue(high);
  }
  if (bounds & 1) formatter.setMinimum(minimum.get());
  if (bounds & 2) formatter.setMaximum(maximum.get());
  formatter.setCurrentTimecode(value);
  *raises = mayRaise(*value) || (!isAround && mayRaise(*other));

  Ref<Object> result;
  std::string error;
  const bool isRead = formatter.getObjectValue(&result, in.text, &error);
  QUILL_REQUIRE(isRead ? error.empty() : (!error.empty() || kIsBars));
  check(formatter, result, isHeld);
  formatter.isPartialStringValid(in.text, nullptr, &error);
  checkShown(formatter, copyOf(*value));  // of a copy: showing may edit
  formatter.getObjectValueIncrementingSegmentWithTag(&result, tag, increment, value.get());
  check(formatter, result, isHeld);
  if (formatter.getObjectValueForSegmentWithTag(&result, in.text, tag, value.get(), &error)) {
    check(formatter, result, isHeld);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  setLogSink([](std::string_view) {});
  setLightAssertionSink([](std::string_view) {});
  bool raises = true;  // no value yet
  try {
    run(FuzzInput(data, size), &raises);
  } catch (const InternalInconsistencyFailure&) {
    QUILL_REQUIRE(raises);
  }
  return 0;
}
