// A frame scale says how the stored time counts frames at one moment: ticks (or seconds) per frame and how its labels
// are counted. Every SMPTE read brings the time to its best timescale, where a frame is a whole number of ticks, takes
// the whole frames and the rest in integers, and labels the frame number (SMPTEArithmetic). Only odd custom rates, odd
// timescales and the seconds mode compute in doubles, in the order of operations that is written here.

#include "QKVideoTimecode.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "../Platform/Reports.h"
#include "../Platform/TextServices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKVideoTimecode";
constexpr double kDegenerateSeconds = 0.000001;
constexpr double kMixedCompareSeconds = 0.0005;

QKSMPTETimecodeMode fallbackMode = QKSMPTETimecodeMode_24;
bool hasLoggedDegenerateSeconds = false;

// A frame duration and the modes it stands for: counting, drop-frame (selector 1), duration (selector 2).
struct FrameDurationRow {
  MediaTime duration;
  QKSMPTETimecodeMode counting, drop, elapsed;
};
constexpr FrameDurationRow sameMode(std::int32_t framesPer100Seconds, QKSMPTETimecodeMode mode) {
  return {{100, framesPer100Seconds}, mode, mode, mode};
}
constexpr FrameDurationRow kFrameDurations[] = {
    {{2002, 60000}, QKSMPTETimecodeMode_2997, QKSMPTETimecodeMode_2997Drop, QKSMPTETimecodeMode_2997Duration},
    {{100, 2997}, QKSMPTETimecodeMode_2997, QKSMPTETimecodeMode_2997Drop, QKSMPTETimecodeMode_2997Duration},
    {{1001, 24000}, QKSMPTETimecodeMode_23976, QKSMPTETimecodeMode_23976, QKSMPTETimecodeMode_23976Duration},
    sameMode(2400, QKSMPTETimecodeMode_24),
    sameMode(2500, QKSMPTETimecodeMode_25),
    sameMode(3000, QKSMPTETimecodeMode_30),
    sameMode(5000, QKSMPTETimecodeMode_50),
    {{1001, 60000}, QKSMPTETimecodeMode_5994, QKSMPTETimecodeMode_5994Drop, QKSMPTETimecodeMode_5994Duration},
    sameMode(6000, QKSMPTETimecodeMode_60),
    sameMode(9000, QKSMPTETimecodeMode_90),
    sameMode(10000, QKSMPTETimecodeMode_100),
    {{1001, 120000}, QKSMPTETimecodeMode_11988, QKSMPTETimecodeMode_11988Drop, QKSMPTETimecodeMode_11988Duration},
    sameMode(12000, QKSMPTETimecodeMode_120),
};

QKSMPTETimecodeMode modeForFrameDuration(const MediaTime& duration, std::int64_t dropFrame) {
  if (!duration.isNumeric() || compare(duration, kMediaTimeZero) == 0) {
    if (fallbackMode == QKSMPTETimecodeModeInvalid) {  // the setter never stores it
      lightAssertionFailed("timecodeMode != QKSMPTETimecodeModeInvalid", kFile, 418);
    }
    return fallbackMode;
  }
  for (const FrameDurationRow& row : kFrameDurations) {
    if (compare(duration, row.duration) != 0) continue;
    return dropFrame == 1 ? row.drop : dropFrame == 2 ? row.elapsed : row.counting;
  }
  return QKSMPTETimecodeModeCustom;
}

struct WholeAndRest {
  std::uint64_t whole, rest;
};

// Dividing by a constant is several times faster, and nearly every frame lasts 80 or 80080 ticks.
WholeAndRest divideByFrameTime(std::uint64_t ticks, std::uint64_t frameTime) {
  if (frameTime == 80080) return {ticks / 80080, ticks % 80080};
  if (frameTime == 80) return {ticks / 80, ticks % 80};
  return {ticks / frameTime, ticks % frameTime};
}

// Of ticks at the rate of a fixed mode, as magnitudes.
WholeAndRest framesAndRest(const TimecodeModeRow& row, std::int64_t ticks) {
  return divideByFrameTime(magnitudeOf(ticks), static_cast<std::uint64_t>(row.ticksPerFrame()));
}

// Whether a few frames more or less stay within 64 bits of ticks.
constexpr bool isFarFromEnds(std::int64_t ticks) {
  constexpr std::int64_t kEnd = std::int64_t{1} << 62;
  return ticks > -kEnd && ticks < kEnd;
}

int orderOf(double a, double b) { return a < b ? -1 : a > b ? 1 : 0; }

}  // namespace

struct QKVideoTimecode::FrameScale {
  SMPTECounting counting;
  bool isDuration = false;
  bool useSeconds = false;
  std::int64_t timescale = 0;        // ticks per second
  double rate = 0;                   // exact frames per second
  double frameTime = 0;              // ticks or seconds per frame
  std::uint64_t wholeFrameTime = 0;  // ticks per frame when that is whole, else 0

  // The ticks of a label, a magnitude.
  std::int64_t ticksOf(const SMPTEFieldSet& label, double fraction) const;
  double secondsOf(const SMPTEFieldSet& label, double fraction) const;
  SMPTEPosition atTicks(std::uint64_t magnitude) const;
  SMPTEPosition atSeconds(double magnitude) const;

  // At most 2^63-1; what lies beyond is left to the fraction.
  double wholeFrames(double magnitude) const { return static_cast<double>(saturateToInt64(magnitude / frameTime)); }
  double fractionPast(double wholeFrameCount, double magnitude) const;

 private:
  // Seconds of a label in a duration mode.
  double elapsedSeconds(const SMPTEFieldSet& label, double fraction) const;
  SMPTEPosition elapsed(double seconds) const;
  SMPTEPosition counted(double magnitude) const;
};

double QKVideoTimecode::FrameScale::elapsedSeconds(const SMPTEFieldSet& label, double fraction) const {
  double frames = static_cast<double>(label.frames) + fraction;
  double seconds = static_cast<double>(label.seconds);
  if (frames >= counting.nominal) {
    frames -= counting.nominal;
    ++seconds;
  }
  return privateSecondsFromHMS(label.hours, label.minutes, seconds) + frames / counting.nominal;
}

std::int64_t QKVideoTimecode::FrameScale::ticksOf(const SMPTEFieldSet& label, double fraction) const {
  const auto frameTicks = static_cast<std::int64_t>(wholeFrameTime);
  const auto fractionTicks = saturateToInt64(frameTime * fraction + 0.5);
  if (isDuration) {
    if (wholeFrameTime == 0) {
      return saturateToInt64(elapsedSeconds(label, fraction) * static_cast<double>(timescale) + 0.5);
    }
    // Frames that reach the next second carry one second and lose one second's ticks: nothing to do.
    std::int64_t seconds = saturatingMultiply(label.hours, 3600);
    seconds = saturatingAdd(seconds, saturatingMultiply(label.minutes, 60));
    seconds = saturatingAdd(seconds, label.seconds);
    return saturatingAdd(saturatingMultiply(seconds, timescale),
                         saturatingAdd(saturatingMultiply(label.frames, frameTicks), fractionTicks));
  }
  if (wholeFrameTime != 0 && counting.whole != 0) {
    return saturatingAdd(saturatingMultiply(frameFromLabel(counting, label), frameTicks), fractionTicks);
  }
  const double n = fractionalFrameFromLabel(counting, label);
  return wholeFrameTime != 0 ? saturateToInt64(n * frameTime + static_cast<double>(fractionTicks))
                             : saturateToInt64((n + fraction) * frameTime);
}

double QKVideoTimecode::FrameScale::secondsOf(const SMPTEFieldSet& label, double fraction) const {
  if (isDuration) return elapsedSeconds(label, fraction);
  return (fractionalFrameFromLabel(counting, label) + fraction) / rate;
}

SMPTEPosition QKVideoTimecode::FrameScale::atTicks(std::uint64_t magnitude) const {
  if (wholeFrameTime == 0) {
    const double ticks = static_cast<double>(magnitude);
    return isDuration ? elapsed(ticks / static_cast<double>(timescale)) : counted(ticks);
  }
  const auto fractionOf = [this](std::uint64_t ticks) {
    return static_cast<double>(ticks) / static_cast<double>(wholeFrameTime);
  };
  if (isDuration) {
    const auto second = static_cast<std::uint64_t>(timescale);
    const std::uint64_t seconds = magnitude / second;  // [0, 2^63)
    const auto [frames, rest] = divideByFrameTime(magnitude % second, wholeFrameTime);
    return {{static_cast<std::int64_t>(seconds / 3600), static_cast<std::int64_t>(seconds / 60 % 60),
             static_cast<std::int64_t>(seconds % 60), static_cast<std::int64_t>(frames), 0},
            fractionOf(rest)};
  }
  const auto [frames, rest] = divideByFrameTime(magnitude, wholeFrameTime);
  return {labelFromFrame(counting, saturatingFromUInt64(frames)), fractionOf(rest)};
}

SMPTEPosition QKVideoTimecode::FrameScale::atSeconds(double magnitude) const {
  return isDuration ? elapsed(magnitude) : counted(magnitude);
}

SMPTEPosition QKVideoTimecode::FrameScale::elapsed(double seconds) const {
  const double whole = std::trunc(seconds);
  const std::int64_t second = saturateToInt64(whole);
  const double frames = counting.nominal * (seconds - whole);
  SMPTEPosition fields;
  fields.label.hours = second / 3600;
  fields.label.minutes = second / 60 % 60;
  fields.label.seconds = second % 60;
  fields.label.frames = saturateToInt64(frames);
  fields.fraction = frames - static_cast<double>(fields.label.frames);
  return fields;
}

SMPTEPosition QKVideoTimecode::FrameScale::counted(double magnitude) const {
  const double whole = wholeFrames(magnitude);
  return {labelFromFrame(counting, saturateToInt64(whole)), fractionPast(whole, magnitude)};
}

double QKVideoTimecode::FrameScale::fractionPast(double wholeFrameCount, double magnitude) const {
  const double leftOver = std::abs(magnitude - wholeFrameCount * frameTime);
  if (leftOver >= frameTime) lightAssertionFailed("ABS(leftOverTime) < frameTime", kFile, 1225);
  return useSeconds ? leftOver * rate : leftOver / frameTime;
}

// ---- Making ----

const ClassDescriptor QKVideoTimecode::descriptor{
    "QKVideoTimecode",
    "OrbisVideoTimecode",
    2,
    &Object::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKVideoTimecode>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKVideoTimecode>(coder); }};

QKVideoTimecode::QKVideoTimecode() : time_(kMediaTimeZero) {}

QKVideoTimecode::QKVideoTimecode(const MediaTime& time, QKSMPTETimecodeMode timecodeMode)
    : time_(time), mode_(timecodeMode) {
  if (time.isNumeric()) return;
  logLine("ERROR: " + descriptionForReport() + " initialized with non-numeric rhoTime. Using kMediaTimeZero instead.");
  time_ = kMediaTimeZero;
}

QKVideoTimecode::QKVideoTimecode(const MediaTime& time, const MediaTime& frameDuration)
    : QKVideoTimecode(time, frameDuration, 0) {}

QKVideoTimecode::QKVideoTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame)
    : QKVideoTimecode(time, modeForFrameDuration(frameDuration, dropFrame)) {
  if (mode_ == QKSMPTETimecodeModeCustom) {
    QKVideoTimecode::setCustomVideoFrameRate(static_cast<double>(frameDuration.timescale) /
                                             static_cast<double>(frameDuration.value));
  }
}

QKVideoTimecode::QKVideoTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode)
    : mode_(timecodeMode) {
  if (timeRate == QKTimecodeUseSeconds) {
    flags_.useSeconds = true;
    seconds_ = timecodeNumberValue.doubleValue();
    privateNormalizeSecondsValue();
    return;
  }
  if (timeRate == QKTimecodeBestTimeRate) {
    const bool hasOwnRate = timecodeMode != QKSMPTETimecodeModeCustom && timecodeMode != QKSMPTETimecodeModeInvalid;
    timeRate = hasOwnRate ? TimeRate(minimumTickRateForMode(timecodeMode)) : QKTimecodeSCRTimeRate;
  }
  time_ = _rhoTimeFromOldTimeValue(timecodeNumberValue.uint64Value(), timeRate, false);
}

QKVideoTimecode::~QKVideoTimecode() = default;

Ref<Object> QKVideoTimecode::copy() const { return std::make_shared<QKVideoTimecode>(*this); }

void QKVideoTimecode::clearTimecode() {
  if (flags_.useSeconds) {
    seconds_ = 0;
  } else {
    time_ = time_.isNumeric() ? MediaTime(0, time_.timescale) : kMediaTimeZero;
  }
}

// ---- Time and mode ----

std::uint64_t QKVideoTimecode::minimumTickRateForMode(QKSMPTETimecodeMode mode) {
  if (const auto* row = timecodeModeRow(mode)) return static_cast<std::uint64_t>(row->tickRate);
  if (mode == QKSMPTETimecodeModeInvalid) return 1;
  constexpr std::string_view kMethod = "+[QKVideoTimecode minimumTickRateForMode:]";
  if (mode == QKSMPTETimecodeModeCustom) {
    assertionFailed({kMethod, nullptr, kFile, 491, "Can't find minimum tick rate for Custom mode"});
  } else {
    std::string text = "Can't find minimum tick rate for unkown mode: ";
    appendInteger(text, std::int64_t{mode});
    assertionFailed({kMethod, nullptr, kFile, 493, text});
  }
  return 0;
}

void QKVideoTimecode::setFallbackTimecodeMode(QKSMPTETimecodeMode mode) {
  const bool isFixed = mode != QKSMPTETimecodeModeCustom && mode != QKSMPTETimecodeModeInvalid;
  fallbackMode = isFixed ? mode : QKSMPTETimecodeMode_24;
}

QKSMPTETimecodeMode QKVideoTimecode::fallbackTimecodeMode() { return fallbackMode; }

std::uint64_t QKVideoTimecode::timeRateForTimecodeModes(std::span<const QKSMPTETimecodeMode> modes,
                                                        std::span<const std::uint64_t> otherTimeRates) {
  if (modes.empty() && otherTimeRates.empty()) return QKTimecodeSCRTimeRate;
  std::optional<std::uint64_t> result;
  const auto fold = [&result](std::uint64_t rate) { result = result ? _QKTimecodeUtilityLCM(*result, rate) : rate; };
  for (const std::uint64_t rate : otherTimeRates) {
    if (rate == 0) {
      assertionFailed({"+[QKVideoTimecode timeRateForTimecodeModes:otherTimeRates:]", nullptr, kFile, 524,
                       "Can't calculate time rate from zero."});
    }
    fold(rate);
  }
  for (const QKSMPTETimecodeMode mode : modes) fold(minimumTickRateForMode(mode));
  return *result;
}

std::uint64_t QKVideoTimecode::timeRateForTimecodeModes(std::initializer_list<QKSMPTETimecodeMode> modes,
                                                        std::initializer_list<std::uint64_t> otherTimeRates) {
  return timeRateForTimecodeModes(std::span(modes.begin(), modes.size()),
                                  std::span(otherTimeRates.begin(), otherTimeRates.size()));
}

MediaTime QKVideoTimecode::timeValue() const { return flags_.useSeconds ? kMediaTimeInvalid : time_; }

void QKVideoTimecode::setTimeValue(const MediaTime& time) {
  flags_.useSeconds = false;
  time_ = time;
  if (time.isNumeric()) return;
  logLine("ERROR: " + descriptionForReport() +
          " setTimeValue: sent non-numeric rhoTime. Using kMediaTimeZero instead.");
  time_ = kMediaTimeZero;
}

void QKVideoTimecode::setTimecodeMode(QKSMPTETimecodeMode mode) {
  mode_ = mode;
  if (mode == QKSMPTETimecodeModeCustom && customVideoModeInfo_.preferredTimeScale == 0) return;
  time_ = time_.convertedTo(saturateToInt32(_bestTimeScale()));
}

std::uint64_t QKVideoTimecode::timeRate() {
  if (!flags_.useSeconds && time_.isNumeric() && time_.timescale < 0) {
    lightAssertionFailed("TIME_CAST(pt_time).timescale >= 0", kFile, 994);
    time_ = time_.convertedTo(static_cast<std::int32_t>(0 - static_cast<std::uint32_t>(time_.timescale)));
  }
  if (flags_.useSeconds || !time_.isNumeric()) return 1;
  return static_cast<std::uint64_t>(time_.timescale);
}

void QKVideoTimecode::setTimeRate(TimeRate timeRate) {
  if (refusesNonNumeric("ERROR: Can't set time rate with non-numeric internal time. Timecode unchanged")) {
    return;
  }
  const std::uint64_t rate =
      timeRate == QKTimecodeBestTimeRate ? static_cast<std::uint64_t>(_bestTimeScale()) : timeRate.value;
  const bool wantsSeconds = rate == 0;
  if (wantsSeconds == flags_.useSeconds) {
    if (!wantsSeconds && rate != static_cast<std::uint64_t>(time_.timescale)) {
      time_ = time_.convertedTo(_timeScaleForTimeRate(rate));
    }
  } else if (wantsSeconds) {
    time_ = kMediaTimeInvalid;
    flags_.useSeconds = true;  // seconds_ stays as it was, on purpose
  } else {
    const std::uint64_t ticks = saturateToUInt64(std::abs(seconds_) * static_cast<double>(rate));
    time_ = _rhoTimeFromOldTimeValue(ticks, rate, isNegative());
    flags_.useSeconds = false;
  }
}

void QKVideoTimecode::setCustomVideoFrameRate(double framesPerSecond) {
  if (mode_ != QKSMPTETimecodeModeCustom) {
    lightAssertionFailed("[self timecodeMode] == QKSMPTETimecodeModeCustom", kFile, 894);
    return;
  }
  customVideoModeInfo_.frameRate = framesPerSecond;
  if (!std::isfinite(framesPerSecond) || framesPerSecond < 1.0) {
    std::string text = "WARNING: -[QKVideoTimecode setCustomVideoFrameRate:] passed invalid frames per second: ";
    appendFixed(text, framesPerSecond, 6);
    text += ". Using 30 fps.";
    logLine(text);
    customVideoModeInfo_.frameRate = 30.0;
  }
  // The tick rate follows the rate asked for, not the 30 that may stand in for it.
  const double wanted = framesPerSecond < 1.0 ? 1.0 : framesPerSecond;
  const bool isWhole = wanted <= std::numeric_limits<std::int32_t>::max() && std::trunc(wanted) == wanted;
  customVideoModeInfo_.preferredTimeScale =
      isWhole ? saturateToInt32(wanted) : static_cast<std::int32_t>(QKTimecodeSCRTimeRate);
  if (!flags_.useSeconds) time_ = time_.convertedTo(customVideoModeInfo_.preferredTimeScale);
}

Ref<QKVideoTimecode> QKVideoTimecode::timecodePreservingSMPTEWithMode(QKSMPTETimecodeMode mode) {
  Ref<QKVideoTimecode> result = copyOf(*this);
  result->setTimecodeMode(mode);
  SMPTEFieldSet fields;
  getSMPTEHours(&fields.hours, &fields.minutes, &fields.seconds, &fields.frames, &fields.subframes, nullptr);
  result->setSMPTEHours(fields.hours);
  result->setSMPTEMinutes(fields.minutes);
  result->setSMPTESeconds(fields.seconds);
  result->setSMPTEFrames(fields.frames);
  result->setSMPTESubframes(fields.subframes);
  return result;
}

void QKVideoTimecode::takeConvertedValueFromTimecode(const QKVideoTimecode& other) {
  if (flags_.useSeconds) {
    setSeconds(other.seconds());
  } else if (other.flags_.useSeconds) {
    time_ = MediaTime::withSeconds(other.seconds(), time_.timescale);
  } else {
    time_ = other.time_.convertedTo(time_.timescale);
  }
}

Number QKVideoTimecode::timecodeNumberValue() const {
  return flags_.useSeconds ? Number(seconds_) : Number(time_.value);
}

void QKVideoTimecode::setTimecodeNumberValue(const Number& number) {
  if (flags_.useSeconds) {
    seconds_ = number.doubleValue();
    privateNormalizeSecondsValue();
    return;
  }
  const double asDouble = number.doubleValue();
  std::uint64_t ticks = number.uint64Value();
  if (!(asDouble >= 0 && asDouble < kTwoTo64) || ticks == kUInt64Highest) {
    logLine("ticks maxed out");
    ticks = kUInt64Highest;
  }
  const std::uint64_t rate = timeRate();
  time_ = _rhoTimeFromOldTimeValue(ticks, rate, ticks != 0 && isNegative());
}

bool QKVideoTimecode::isNegative() const {
  if (refusesNonNumeric(
          "ERROR: -[QKVideoTimecode isNegative] can't get numeric info from non-numeric time, returning NO")) {
    return false;
  }
  if (flags_.useSeconds) return seconds_ < 0;
  return time_.timescale > 0 ? time_.value < 0 : quill::compare(time_, kMediaTimeZero) < 0;
}

void QKVideoTimecode::setIsNegative(bool isNegative) {
  if (refusesNonNumeric("ERROR: -[QKVideoTimecode setIsNegative:] ignored for non-numeric time")) return;
  if (isNegative == QKVideoTimecode::isNegative()) return;
  if (flags_.useSeconds) {
    seconds_ = -seconds_;
  } else {
    time_.value = wrappingNegate(time_.value);
  }
}

double QKVideoTimecode::nominalFrameRate() const {
  const auto* row = timecodeModeRow(mode_);
  return row ? row->nominalFrameRate() : videoFrameRate();
}

double QKVideoTimecode::videoFrameRate() const {
  if (const auto* row = timecodeModeRow(mode_)) return row->videoFrameRate();
  constexpr std::string_view kMethod = "-[QKVideoTimecode videoFrameRate]";
  if (mode_ == QKSMPTETimecodeModeCustom) {
    if (customVideoModeInfo_.frameRate != 0) return customVideoModeInfo_.frameRate;
    return flags_.useSeconds ? 1.0 : static_cast<double>(time_.timescale);
  }
  if (mode_ == QKSMPTETimecodeModeInvalid) {
    raise(kMethod, 1816, "QKVideoTimecode: no video frame rate for QKSMPTETimecodeModeInvalid");
  } else {
    raise(kMethod, 1819, "-[QKVideoTimecode videoFrameRate] unknown timecode mode");
  }
  return 30.0;
}

bool QKVideoTimecode::isDuration() const {
  if (mode_ == QKSMPTETimecodeModeInvalid) {
    raise("-[QKVideoTimecode isDuration]", 1826,
          "QKVideoTimecode: Can't provide SMPTE information in mode QKSMPTETimecodeModeInvalid");
  }
  const auto* row = timecodeModeRow(mode_);
  return row && row->kind == TimecodeModeKind::Duration;
}

bool QKVideoTimecode::isDropFrame() const {
  if (mode_ == QKSMPTETimecodeModeInvalid) {
    raise("-[QKVideoTimecode isDropFrame]", 1841,
          "QKVideoTimecode: Can't provide SMPTE information in mode QKSMPTETimecodeModeInvalid");
  }
  const auto* row = timecodeModeRow(mode_);
  return row && row->kind == TimecodeModeKind::Drop;
}

std::int64_t QKVideoTimecode::_bestTimeScale() const {
  if (const auto* row = timecodeModeRow(mode_)) return row->tickRate;
  return mode_ == QKSMPTETimecodeModeCustom ? customVideoModeInfo_.preferredTimeScale
                                            : static_cast<std::int64_t>(minimumTickRateForMode(mode_));
}

std::int32_t QKVideoTimecode::_timeScaleForTimeRate(TimeRate timeRate) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(timeRate.value));
}

void QKVideoTimecode::_normalizeTimeScaleForFrameRateIfNecessary() {
  if (flags_.useSeconds) return;
  const std::int64_t best = _bestTimeScale();
  if (time_.timescale == best && best > 0 && time_.isNumeric()) return;
  const MediaTime converted = time_.convertedTo(saturateToInt32(best));
  if (converted.isNumeric() && converted.timescale == best) {
    time_ = converted;
  } else {
    logLine("WARNING: " + descriptionForReport() +
            " can't convert timescale to get integer number of ticks per frame.");
  }
}

void QKVideoTimecode::privateNormalizeSecondsValue() {
  if (!flags_.useSeconds) lightAssertionFailed("pt_flags.useSeconds", kFile, 435);
  if (seconds_ == 0 || !(std::abs(seconds_) < kDegenerateSeconds)) return;
  if (!hasLoggedDegenerateSeconds) {
    hasLoggedDegenerateSeconds = true;
    std::string text = "QKVideoTimecode WARNING: Degenerate value for seconds (";
    appendScientific(text, seconds_, 6);
    text += ") from -setTimecodNumberValue: or -initWithTimecodeNumberValue:::. Normalizing to 0. Will only log once.";
    logLine(text);
  }
  seconds_ = 0;
}

MediaTime QKVideoTimecode::_rhoTimeFromOldTimeValue(std::uint64_t value, TimeRate rate, bool isNegative) {
  const bool hasTopBit = (value >> 63) != 0;
  if (hasTopBit) {
    lightAssertionFailed("NO", kFile, 577);
    value += 0x8000000000000001;  // modulo 2^64: less 2^63-1
  }
  if (isNegative) value = 0 - value;
  return MediaTime::withEpoch(static_cast<std::int64_t>(value), _timeScaleForTimeRate(rate), hasTopBit ? 1 : 0);
}

bool QKVideoTimecode::refusesNonNumeric(std::string_view logText) const {
  if (isNumeric()) return false;
  logLine(logText);
  return true;
}

void QKVideoTimecode::raise(std::string_view method, int line, std::string_view description) const {
  assertionFailed({method, this, kFile, line, description});
}

// ---- SMPTE fields ----

SMPTECounting QKVideoTimecode::counting() const {
  if (const auto* fixed = SMPTECounting::ofMode(mode_)) return *fixed;
  return SMPTECounting::atRate(nominalFrameRate(), isDropFrame());
}

const QKVideoTimecode::FrameScale& QKVideoTimecode::frameScale(FrameScale& storage) const {
  return frameScaleAt(time_.timescale, storage);
}

// As it will be once the time is brought to the best timescale, where that is possible.
const QKVideoTimecode::FrameScale& QKVideoTimecode::bestFrameScale(FrameScale& storage) const {
  const std::int64_t best = flags_.useSeconds ? 0 : _bestTimeScale();
  const bool holdsBest = best > 0 && best <= std::numeric_limits<std::int32_t>::max();
  return frameScaleAt(holdsBest ? best : time_.timescale, storage);
}

const QKVideoTimecode::FrameScale& QKVideoTimecode::frameScaleAt(std::int64_t timescale, FrameScale& storage) const {
  static constexpr auto kBestFrameScales = [] {
    std::array<FrameScale, std::size(kTimecodeModeTable)> scales{};
    for (std::size_t i = 0; i < scales.size(); ++i) {
      const TimecodeModeRow& row = kTimecodeModeTable[i];
      const std::int64_t ticksPerFrame = row.ticksPerFrame();
      scales[i] = {detail::kModeCountings[i],
                   row.kind == TimecodeModeKind::Duration,
                   false,
                   row.tickRate,
                   row.videoFrameRate(),
                   static_cast<double>(ticksPerFrame),
                   static_cast<std::uint64_t>(ticksPerFrame)};
    }
    return scales;
  }();
  const auto* row = timecodeModeRow(mode_);
  if (row && !flags_.useSeconds) {
    const FrameScale& best = kBestFrameScales[static_cast<std::size_t>(mode_)];
    if (timescale == best.timescale) return best;
    // A common timescale with audio: the ticks of a frame are as many times more.
    const auto ticks = static_cast<std::uint32_t>(timescale), ofMode = static_cast<std::uint32_t>(best.timescale);
    if (timescale > 0 && ticks % ofMode == 0) {
      storage = best;
      storage.timescale = timescale;
      storage.wholeFrameTime *= ticks / ofMode;
      storage.frameTime = static_cast<double>(storage.wholeFrameTime);
      return storage;
    }
  }
  const double rate = videoFrameRate();
  // A mode without a row counts at its exact rate and drops nothing.
  storage = {row ? *SMPTECounting::ofMode(mode_) : SMPTECounting::atRate(rate, false),
             isDuration(),
             flags_.useSeconds,
             timescale,
             rate,
             0};
  if (flags_.useSeconds) {
    storage.frameTime = 1 / rate;
    return storage;
  }
  storage.frameTime = roundHalfAway(static_cast<double>(timescale) * 1000 / rate) / 1000;
  if (storage.isDuration) {
    const std::int64_t ticks = timescale * 1001, frames = 1000 * row->countingRate;
    if (ticks > 0 && ticks % frames == 0) storage.wholeFrameTime = static_cast<std::uint64_t>(ticks / frames);
  } else if (storage.frameTime >= 1 && std::trunc(storage.frameTime) == storage.frameTime) {
    storage.wholeFrameTime = saturateToUInt64(storage.frameTime);
  }
  return storage;
}

std::int64_t QKVideoTimecode::privateFramesPerHour() const { return counting().framesPerHour; }
std::int64_t QKVideoTimecode::privateFramesPerTenMinutes() const { return counting().framesPerTenMinutes; }
std::int64_t QKVideoTimecode::privateFramesPerMinute() const { return counting().framesPerMinute; }

SMPTEPosition QKVideoTimecode::privatePosition() {
  const auto* row = rowAtBest();
  return row ? positionAtTicks(*row, magnitudeOf(time_.value)) : unusualPosition();
}

SMPTEPosition QKVideoTimecode::unusualPosition() {
  if (mode_ == QKSMPTETimecodeModeInvalid) {
    raise("-[QKVideoTimecode privateGetSMPTEHours:minutes:seconds:frames:fractionalFrames:]", 1374,
          "QKVideoTimecode: Can't use SMPTE information in mode QKSMPTETimecodeModeInvalid");
  }
  _normalizeTimeScaleForFrameRateIfNecessary();
  if (!isNumeric() || mode_ == QKSMPTETimecodeModeInvalid) {  // says what is wrong
    isDuration() ? static_cast<void>(QKVideoTimecode::seconds()) : static_cast<void>(videoFrames());
  }
  FrameScale storage;
  const FrameScale& scale = frameScale(storage);
  if (!isNumeric()) return {};
  return flags_.useSeconds ? scale.atSeconds(std::abs(seconds_)) : scale.atTicks(magnitudeOf(time_.value));
}

void QKVideoTimecode::privateGetSMPTEHours(std::int64_t* hours, std::int64_t* minutes, std::int64_t* seconds,
                                           std::int64_t* frames, double* fractionalFrames) {
  const SMPTEPosition position = privatePosition();
  if (hours) *hours = position.label.hours;
  if (minutes) *minutes = position.label.minutes;
  if (seconds) *seconds = position.label.seconds;
  if (frames) *frames = position.label.frames;
  if (fractionalFrames) *fractionalFrames = position.fraction;
}

void QKVideoTimecode::getSMPTEHours(std::int64_t* hours, std::int64_t* minutes, std::int64_t* seconds,
                                    std::int64_t* frames, std::int64_t* subframes, std::int64_t* quarterFrames) {
  if (refusesNonNumeric("ERROR: Can't get SMPTE HH:MM:FF:SS with non-numeric time. Returning 0")) {
    for (std::int64_t* field : {hours, minutes, seconds, frames, subframes, quarterFrames}) {
      if (field) *field = 0;
    }
    return;
  }
  SMPTEFieldSet fields;
  std::int64_t quarters = 0;
  if (const auto* row = rowAtBest()) {
    fields = fieldsAtTicks(*row, magnitudeOf(time_.value));
    quarters = fields.subframes / (kSubframesPerFrame / kQuarterFramesPerFrame);
  } else {
    const SMPTEPosition position = unusualPosition();
    fields = position.label;
    fields.subframes = subframesFromFraction(position.fraction);
    quarters = quarterFramesFromFraction(position.fraction);
  }
  if (hours) *hours = fields.hours;
  if (minutes) *minutes = fields.minutes;
  if (seconds) *seconds = fields.seconds;
  if (frames) *frames = fields.frames;
  if (subframes) *subframes = fields.subframes;
  if (quarterFrames) *quarterFrames = quarters;
}

std::int64_t QKVideoTimecode::SMPTEHours() {
  if (refusesNonNumeric("ERROR: Can't get SMPTE hours with non-numeric time. Returning 0")) return 0;
  return privateFields().hours;
}

std::int64_t QKVideoTimecode::SMPTEMinutes() {
  if (refusesNonNumeric("ERROR: Can't get SMPTE minutes with non-numeric time. Returning 0")) return 0;
  return privateFields().minutes;
}

std::int64_t QKVideoTimecode::SMPTESeconds() {
  if (refusesNonNumeric("ERROR: Can't get SMPTE seconds with non-numeric time. Returning 0")) return 0;
  return privateFields().seconds;
}

std::int64_t QKVideoTimecode::SMPTEFrames() {
  if (refusesNonNumeric("ERROR: Can't get SMPTE frames with non-numeric time. Returning 0")) return 0;
  return privateFields().frames;
}

std::int64_t QKVideoTimecode::SMPTESubframes() {
  if (refusesNonNumeric("ERROR: Can't get SMPTE subframes with non-numeric time. Returning 0")) return 0;
  return privateFields().subframes;
}

std::int64_t QKVideoTimecode::SMPTEQuarterFrames() {
  if (refusesNonNumeric("ERROR: Can't get SMPTE quarterFrames with non-numeric time. Returning 0")) return 0;
  return quarterFramesFromFraction(privatePosition().fraction);
}

// All five fields, subframes as the public getter gives them.
SMPTEFieldSet QKVideoTimecode::privateFields() {
  if (const auto* row = rowAtBest()) return fieldsAtTicks(*row, magnitudeOf(time_.value));
  SMPTEPosition position = unusualPosition();
  position.label.subframes = subframesFromFraction(position.fraction);
  return position.label;
}

void QKVideoTimecode::privateSetSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds,
                                           std::int64_t frames, double fractionalFrames) {
  const SMPTEFieldSet label{hours, minutes, seconds, frames, 0};
  if (const auto* row = rowAtBest(); row && hasUsualFields(*row, label)) {
    writeUsualFields(*row, label, fractionalFrames);
    return;
  }
  const bool wasNegative = isNegative();
  _normalizeTimeScaleForFrameRateIfNecessary();
  FrameScale storage;
  const FrameScale& scale = frameScale(storage);
  if (flags_.useSeconds) {
    seconds_ = scale.secondsOf(label, fractionalFrames);  // the sign is lost, on purpose
    return;
  }
  const std::int64_t ticks = scale.ticksOf(label, fractionalFrames);
  time_.value = wasNegative ? wrappingNegate(ticks) : ticks;
}

bool QKVideoTimecode::canSetSMPTEFieldsAtOnce(SMPTEPosition* now) {
  const auto* row = timecodeModeRow(mode_);
  if (!row || row->kind == TimecodeModeKind::Duration || flags_.useSeconds || !time_.isNumeric()) return false;
  const std::int64_t best = _bestTimeScale();
  if (best != row->tickRate && best % row->tickRate != 0) return false;
  if (time_.timescale != best) {
    const MediaTime converted = time_.convertedTo(saturateToInt32(best));
    if (!converted.isNumeric() || converted.timescale != best) return false;
    time_ = converted;
  }
  *now = best == row->tickRate ? positionAtTicks(*row, magnitudeOf(time_.value)) : unusualPosition();
  return true;
}

bool QKVideoTimecode::setSMPTEFieldsAtOnce(const SMPTEFieldSet& fields, double fractionalFrames) {
  const auto* row = timecodeModeRow(mode_);
  if (!hasUsualFields(*row, fields)) return false;
  writeUsualFields(*row, fields, fractionalFrames);
  return true;
}

Ref<Object> QKVideoTimecode::copyAtUsualLabel(const SMPTEFieldSet& label) const {
  const auto* row = rowAtBest();
  if (!row || row->kind == TimecodeModeKind::Duration || !hasUsualFields(*row, label)) return nullptr;
  const auto [frames, rest] = framesAndRest(*row, time_.value);
  if (rest != 0 || frames >= static_cast<std::uint64_t>(24 * SMPTECounting::ofMode(mode_)->framesPerHour))
    return nullptr;
  Ref<Object> result = copy();
  static_cast<QKVideoTimecode&>(*result).time_.value = ticksOfUsualLabel(*row, label);
  return result;
}

bool QKVideoTimecode::standsOnFrame() const {
  const auto* row = rowAtBest();
  // In a duration mode frames begin anew with each second.
  return row && row->kind != TimecodeModeKind::Duration && framesAndRest(*row, time_.value).rest == 0;
}

// Moves by frames within a minute, where labels and frames run alike. Whether it did: not for a value between frames,
// which loses what is finer than subframes, nor through zero.
bool QKVideoTimecode::addFramesWithinMinute(std::int64_t frames, bool isNegativeDelta) {
  const auto* row = rowAtBest();
  if (!row || row->kind != TimecodeModeKind::Drop || frames < 1 || frames >= row->countingRate ||
      !isFarFromEnds(time_.value)) {
    return false;
  }
  const SMPTEFieldSet now = fieldsAtTicks(*row, magnitudeOf(time_.value));
  const bool isUp = isNegativeDelta == (time_.value < 0);
  const std::int64_t label = now.seconds * row->countingRate + now.frames + (isUp ? frames : -frames);
  if (label < row->droppedLabels() || label >= 60 * row->countingRate || !standsOnFrame()) return false;
  time_.value += frames * (isNegativeDelta ? -row->ticksPerFrame() : row->ticksPerFrame());
  return true;
}

// At the tick rate of a fixed mode or a multiple of it, with the sign that the value has.
void QKVideoTimecode::writeUsualFields(const TimecodeModeRow& row, const SMPTEFieldSet& fields, double fraction) {
  std::int64_t frameTicks = row.ticksPerFrame(), ticks = ticksOfUsualLabel(row, fields);  // below 2^63
  if (time_.timescale != row.tickRate) {
    const std::int32_t times = time_.timescale / static_cast<std::int32_t>(row.tickRate);
    frameTicks *= times;
    ticks *= times;
  }
  if (fraction != 0) {
    ticks = saturatingAdd(ticks, saturateToInt64(static_cast<double>(frameTicks) * fraction + 0.5));
  }
  time_.value = time_.value < 0 ? -ticks : ticks;
}

void QKVideoTimecode::privateSetSMPTEHours(std::int64_t hours) {
  if (hours < 0) {
    raise("-[QKVideoTimecode privateSetSMPTEHours:]", 1254,
          "-[QKVideoTimecode privateSetSMPTEHours:] - Invalid argument");
  }
  std::int64_t minutes = 0, seconds = 0, frames = 0;
  double fraction = 0;
  privateGetSMPTEHours(nullptr, &minutes, &seconds, &frames, &fraction);
  privateSetSMPTEHours(hours, minutes, seconds, frames, fraction);
}

void QKVideoTimecode::privateSetSMPTEMinutes(std::int64_t minutes) {
  if (minutes < 0) {
    raise("-[QKVideoTimecode privateSetSMPTEMinutes:]", 1265,
          "-[QKVideoTimecode privateSetSMPTEMinutes:] - Invalid argument");
  }
  std::int64_t hours = 0, seconds = 0, frames = 0;
  double fraction = 0;
  privateGetSMPTEHours(&hours, nullptr, &seconds, &frames, &fraction);
  if (minutes > 59) {
    minutes -= 60;
    hours = saturatingAdd(hours, 1);
  }
  privateSetSMPTEHours(hours, minutes, seconds, frames, fraction);
}

void QKVideoTimecode::privateSetSMPTESeconds(std::int64_t seconds) {
  if (seconds < 0) {
    raise("-[QKVideoTimecode privateSetSMPTESeconds:]", 1282,
          "-[QKVideoTimecode privateSetSMPTESeconds:] - Invalid argument");
  }
  std::int64_t hours = 0, minutes = 0, frames = 0;
  double fraction = 0;
  privateGetSMPTEHours(&hours, &minutes, nullptr, &frames, &fraction);
  if (seconds > 59) {  // once only, on purpose
    seconds -= 60;
    if (++minutes == 60) {
      minutes = 0;
      hours = saturatingAdd(hours, 1);
    }
  }
  privateSetSMPTEHours(hours, minutes, seconds, frames, fraction);
}

void QKVideoTimecode::privateSetSMPTEFrames(std::int64_t frames) {
  if (frames < 0) {
    raise("-[QKVideoTimecode privateSetSMPTEFrames:]", 1302,
          "-[QKVideoTimecode privateSetSMPTEFrames:] - Invalid argument");
  }
  std::int64_t hours = 0, minutes = 0, seconds = 0;
  double fraction = 0;
  privateGetSMPTEHours(&hours, &minutes, &seconds, nullptr, &fraction);
  const bool rollsOver = frames > counting().highestFrameLabel();
  privateSetSMPTEHours(hours, minutes, seconds, rollsOver ? 0 : frames, fraction);
  if (rollsOver) setVideoFrames(frameCountSum(videoFrames(), static_cast<std::uint64_t>(frames)));
}

// The sum of two frame counts, held to what the ticks can count.
std::uint64_t QKVideoTimecode::frameCountSum(std::uint64_t a, std::uint64_t b) const {
  FrameScale storage;
  const FrameScale& scale = frameScale(storage);
  const std::uint64_t sum = a > kUInt64Highest - b ? kUInt64Highest : a + b;
  if (flags_.useSeconds || !(scale.frameTime > 0)) return sum;
  // A product of doubles may lie an ulp above.
  return std::min(sum, scale.wholeFrameTime != 0 ? static_cast<std::uint64_t>(kInt64Highest) / scale.wholeFrameTime
                                                 : saturateToUInt64((kTwoTo63 - 4096) / scale.frameTime));
}

void QKVideoTimecode::privateSetSMPTESubframes(std::int64_t subframes) {
  if (subframes < 0) {
    raise("-[QKVideoTimecode privateSetSMPTESubframes:]", 1324,
          "-[QKVideoTimecode privateSetSMPTESubframes:] - Invalid argument");
  }
  privateSetFrameParts(subframes, kSubframesPerFrame);
}

void QKVideoTimecode::privateSetSMPTEQuarterFrames(std::int64_t quarterFrames) {
  if (quarterFrames < 0) {
    raise("-[QKVideoTimecode privateSetSMPTEQuarterFrames:]", 1349,
          "-[QKVideoTimecode privateSetSMPTEQuarterFrames:] - Invalid argument");
  }
  privateSetFrameParts(quarterFrames, kQuarterFramesPerFrame);
}

// Whole frames among the parts go to the frames field.
void QKVideoTimecode::privateSetFrameParts(std::int64_t parts, std::int64_t partsPerFrame) {
  const auto* row = rowAtBest();
  if (row && row->kind != TimecodeModeKind::Duration && isFarFromEnds(time_.value) && parts >= 0 &&
      parts < partsPerFrame) {  // the label stays, and the parts are whole ticks
    const std::int64_t ticks = row->ticksPerFrame() / partsPerFrame * parts;
    const std::int64_t rest = time_.value % row->ticksPerFrame();  // with the sign
    time_.value += (time_.value < 0 ? -ticks : ticks) - rest;
    return;
  }
  std::int64_t hours = 0, minutes = 0, seconds = 0, frames = 0;
  privateGetSMPTEHours(&hours, &minutes, &seconds, &frames, nullptr);
  if (parts >= partsPerFrame) {
    frames = saturatingAdd(frames, parts / partsPerFrame);
    parts %= partsPerFrame;
    if (frames > counting().highestFrameLabel()) {
      privateSetSMPTEFrames(frames);
      privateGetSMPTEHours(&hours, &minutes, &seconds, &frames, nullptr);
    }
  }
  const double fraction = static_cast<double>(parts) / static_cast<double>(partsPerFrame);
  privateSetSMPTEHours(hours, minutes, seconds, frames, fraction);
}

void QKVideoTimecode::setSMPTEHours(std::int64_t hours) {
  if (refusesNonNumeric("ERROR: Can't set SMPTE hours with non-numeric time. Returning 0")) return;
  privateSetSMPTEHours(hours);
}

void QKVideoTimecode::setSMPTEMinutes(std::int64_t minutes) {
  if (refusesNonNumeric("ERROR: Can't set SMPTE minutes with non-numeric time. Returning 0")) return;
  privateSetSMPTEMinutes(minutes);
}

void QKVideoTimecode::setSMPTESeconds(std::int64_t seconds) {
  if (refusesNonNumeric("ERROR: Can't set SMPTE seconds with non-numeric time. Returning 0")) return;
  privateSetSMPTESeconds(seconds);
}

void QKVideoTimecode::setSMPTEFrames(std::int64_t frames) {
  if (refusesNonNumeric("ERROR: Can't set SMPTE frames with non-numeric time. Returning 0")) return;
  privateSetSMPTEFrames(frames);
}

void QKVideoTimecode::setSMPTESubframes(std::int64_t subframes) {
  if (refusesNonNumeric("ERROR: Can't set SMPTE subframes with non-numeric time. Returning 0")) return;
  privateSetSMPTESubframes(subframes);
}

void QKVideoTimecode::setSMPTEQuarterFrames(std::int64_t quarterFrames) {
  if (refusesNonNumeric("ERROR: Can't set SMPTE quarterFrames with non-numeric time. Returning 0")) return;
  privateSetSMPTEQuarterFrames(quarterFrames);
}

Number QKVideoTimecode::privateTimeForHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds,
                                            std::int64_t frames, std::int64_t subframes,
                                            std::int64_t quarterFrames) const {
  FrameScale storage;
  const FrameScale& scale = bestFrameScale(storage);
  const SMPTEFieldSet label{hours, minutes, seconds, frames, 0};
  const double fraction =
      subframes != 0 ? static_cast<double>(subframes) / 80 : static_cast<double>(quarterFrames) * 0.25;
  return flags_.useSeconds ? Number(scale.secondsOf(label, fraction)) : Number(scale.ticksOf(label, fraction));
}

SMPTEFieldSet QKVideoTimecode::privateNormalizeHMSFs(const SMPTEFieldSet& fields) const {
  const auto* row = timecodeModeRow(mode_);
  if (row && !flags_.useSeconds && hasUsualFields(*row, fields) && fields.subframes >= 0 &&
      fields.subframes < kSubframesPerFrame) {
    return fields;
  }
  FrameScale storage;
  FrameScale scale = bestFrameScale(storage);
  if (row) {
    scale.counting = *SMPTECounting::ofMode(row->plainMode);
    scale.isDuration = false;
    scale.timescale = row->tickRate;
    if (!flags_.useSeconds) {
      scale.wholeFrameTime = static_cast<std::uint64_t>(row->ticksPerFrame());
      scale.frameTime = static_cast<double>(scale.wholeFrameTime);
    }
  }
  const double fraction = static_cast<double>(fields.subframes) / 80;
  const SMPTEPosition read = flags_.useSeconds ? scale.atSeconds(std::abs(scale.secondsOf(fields, fraction)))
                                               : scale.atTicks(magnitudeOf(scale.ticksOf(fields, fraction)));
  SMPTEFieldSet result = read.label;
  result.subframes = subframesFromFraction(read.fraction);
  return result;
}

std::int64_t QKVideoTimecode::privateDropFrameAdjustmentForHMFSsBeforeChange(const SMPTEFieldSet& before,
                                                                             const SMPTEFieldSet& afterChange,
                                                                             const SMPTEFieldSet& change) const {
  return dropFrameAdjustment(saturateToInt64(nominalFrameRate()), before, afterChange, change);
}

void QKVideoTimecode::privateAddHMSFs(const SMPTEFieldSet& delta, bool isNegativeDelta) {
  const bool wasNegative = isNegative();
  const std::int64_t framesPerSecond = saturateToInt64(nominalFrameRate());
  SMPTEPosition position;
  const bool isWrittenAtOnce = canSetSMPTEFieldsAtOnce(&position);
  if (!isWrittenAtOnce) position = privatePosition();
  SMPTEFieldSet before = position.label;
  before.subframes = subframesFromFraction(position.fraction);
  bool endsNegative = wasNegative;
  SMPTEFieldSet after;
  if (isNegativeDelta != wasNegative && before < delta) {  // through zero: no correction
    after = subtractFields(delta, before, framesPerSecond);
    endsNegative = !wasNegative;
  } else if (isNegativeDelta != wasNegative && before == delta) {
    clearTimecode();
    return;
  } else {
    after = isNegativeDelta == wasNegative ? addFields(before, delta, framesPerSecond)
                                           : subtractFields(before, delta, framesPerSecond);
    if (isDropFrame()) {
      const std::int64_t frames = privateDropFrameAdjustmentForHMFSsBeforeChange(before, after, delta);
      if (frames != 0) after = privateHMSFsFrameAdjustment(after, frames, framesPerSecond);
    }
  }
  if (!isWrittenAtOnce || !setSMPTEFieldsAtOnce(after, static_cast<double>(after.subframes) / 80)) {
    privateSetSMPTEHours(after.hours);
    privateSetSMPTEMinutes(after.minutes);
    privateSetSMPTESeconds(after.seconds);
    privateSetSMPTEFrames(after.frames);
    privateSetSMPTESubframes(after.subframes);
  }
  setIsNegative(endsNegative);  // a zero on the way has no sign
}

void QKVideoTimecode::privateAddSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds,
                                           std::int64_t frames, std::int64_t subframes, std::int64_t quarterFrames,
                                           bool isNegativeDelta) {
  constexpr std::string_view kMethod =
      "-[QKVideoTimecode privateAddSMPTEHours:minutes:seconds:frames:subframes:quarterFrames:isNegativeDelta:]";
  if (mode_ == QKSMPTETimecodeModeInvalid) {
    raise(kMethod, 1722, "QKVideoTimecode: Can't provide SMPTE information in mode QKSMPTETimecodeModeInvalid");
  }
  if (!allNonnegative(6, hours, minutes, seconds, frames, subframes, quarterFrames)) {
    raise(kMethod, 1724, "-[QKVideoTimecode addSMPTEHours::::::] expects nonnegative deltas");
  }
  const bool areFramesAlone = (hours | minutes | seconds | subframes | quarterFrames) == 0;
  if (areFramesAlone && addFramesWithinMinute(frames, isNegativeDelta)) {
    flags_.maintainedFramesValid = false;
    return;
  }
  _normalizeTimeScaleForFrameRateIfNecessary();
  if (!isDropFrame()) {
    addTimecodeNumberValue(privateTimeForHours(hours, minutes, seconds, frames, subframes, quarterFrames),
                           isNegativeDelta);
    return;
  }
  if (subframes == 0 && quarterFrames != 0) {
    subframes = saturatingMultiply(quarterFrames, kSubframesPerFrame / kQuarterFramesPerFrame);
  }
  if (frames > 0 || subframes > 0) {
    flags_.maintainedFramesValid = false;
  } else if (frames == 0 && subframes == 0 && !flags_.maintainedFramesValid &&
             (hours > 0 || minutes > 0 || seconds > 0)) {
    flags_.maintainedFramesValid = true;
    maintainedFrames_ = privateFields().frames;
  }
  privateAddHMSFs(privateNormalizeHMSFs({hours, minutes, seconds, frames, subframes}), isNegativeDelta);
  if (!flags_.maintainedFramesValid) return;
  const SMPTEFieldSet now = privateFields();
  if (now.frames == 2 && (now.minutes % 10 == 0 || now.seconds != 0)) {  // 2 at every rate, on purpose
    const bool endsNegative = isNegative();
    privateSetSMPTEFrames(maintainedFrames_);
    setIsNegative(endsNegative);
  }
}

void QKVideoTimecode::addSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t frames,
                                    std::int64_t subframes, std::int64_t quarterFrames) {
  if (refusesNonNumeric("ERROR: Can't add SMPTE info with non-numeric time. Timecode unchanged")) return;
  privateAddSMPTEHours(hours, minutes, seconds, frames, subframes, quarterFrames, false);
}

void QKVideoTimecode::subtractSMPTEHours(std::int64_t hours, std::int64_t minutes, std::int64_t seconds,
                                         std::int64_t frames, std::int64_t subframes, std::int64_t quarterFrames) {
  if (refusesNonNumeric("ERROR: Can't subtract SMPTE info with non-numeric time. Timecode unchanged")) return;
  privateAddSMPTEHours(hours, minutes, seconds, frames, subframes, quarterFrames, true);
}

void QKVideoTimecode::privateClampIntegerValue(std::int64_t* value, std::int64_t minimum, std::int64_t maximum,
                                               bool warn) const {
  if (minimum > maximum) {
    raise("-[QKVideoTimecode privateClampIntegerValue:min:max:warn:]", 1189,
          "-[QKVideoTimecode privateClampIntegerValue:min:max:warn:] nonsense min/max");
  }
  if (*value >= minimum && *value <= maximum) return;
  *value = *value < minimum ? minimum : maximum;
  if (!warn) return;
  std::string text = "-[QKVideoTimecode privateClampIntegerValue:min:max:warn:] clamping a value to [";
  appendInteger(text, minimum);
  text += ',';
  appendInteger(text, maximum);
  text += ']';
  logLine(text);
}

// ---- Frames and seconds ----

double QKVideoTimecode::_doubleFrameTime() const {
  FrameScale storage;
  return frameScale(storage).frameTime;
}

std::int64_t QKVideoTimecode::privateWholeVideoFrames() const {
  const double position = flags_.useSeconds ? seconds_ : static_cast<double>(time_.value);
  return saturateToInt64(std::abs(std::trunc(position / _doubleFrameTime())));
}

double QKVideoTimecode::privateVideoFramesFractionalPart() const {
  if (!isNumeric()) return 0;
  if (const auto* row = rowAtBest()) {
    return static_cast<double>(framesAndRest(*row, time_.value).rest) / static_cast<double>(row->ticksPerFrame());
  }
  FrameScale storage;
  const FrameScale& scale = frameScale(storage);
  if (!flags_.useSeconds && scale.wholeFrameTime != 0) {
    return static_cast<double>(magnitudeOf(time_.value) % scale.wholeFrameTime) /
           static_cast<double>(scale.wholeFrameTime);
  }
  const double magnitude = std::abs(flags_.useSeconds ? seconds_ : static_cast<double>(time_.value));
  return scale.fractionPast(scale.wholeFrames(magnitude), magnitude);
}

double QKVideoTimecode::seconds() const {
  if (flags_.useSeconds) return seconds_;
  refusesNonNumeric("ERROR: Non-numeric internal time will return NaN or ±inf for seconds");
  return time_.seconds();
}

void QKVideoTimecode::setSeconds(double seconds) {
  if (flags_.useSeconds) {
    seconds_ = seconds;
    privateNormalizeSecondsValue();
    return;
  }
  const std::int32_t timescale = time_.timescale;
  time_ = MediaTime::withSeconds(seconds, timescale > 0 ? timescale : 1);
  if (time_.timescale != timescale) {
    logLine("WARNING: QKTimecode time scale changed in -setSeconds:. May cause problems down the line.");
  }
}

Number QKVideoTimecode::privateTimeForSeconds(double seconds) {
  if (flags_.useSeconds) return seconds;
  return wrapToUInt64(std::trunc(static_cast<double>(timeRate()) * seconds + 0.5));
}

void QKVideoTimecode::addSeconds(double seconds) {
  if (!(seconds >= 0)) {
    raise("-[QKVideoTimecode addSeconds:]", 2085, "-[QKVideoTimecode addSeconds:] requires nonnegative delta.");
  }
  addTimecodeNumberValue(privateTimeForSeconds(seconds), false);
}

void QKVideoTimecode::subtractSeconds(double seconds) {
  if (!(seconds >= 0)) {
    raise("-[QKVideoTimecode subtractSeconds:]", 2092,
          "-[QKVideoTimecode subtractSeconds:] requires nonnegative delta.");
  }
  addTimecodeNumberValue(privateTimeForSeconds(seconds), true);
}

void QKVideoTimecode::addTimecodeNumberValue(const Number& number, bool isNegativeDelta) {
  if (refusesNonNumeric("ERROR: Can't add time with non-numeric time. Timecode unchanged")) return;
  if (flags_.useSeconds) {
    const double amount = std::abs(number.doubleValue());
    seconds_ += isNegativeDelta ? -amount : amount;
    return;
  }
  const std::uint64_t rate = timeRate();
  time_ = add(time_, _rhoTimeFromOldTimeValue(magnitudeOf(number.int64Value()), rate, isNegativeDelta));
}

void QKVideoTimecode::requireVideoFrames(std::string_view method, int line) const {
  if (mode_ != QKSMPTETimecodeModeInvalid) return;
  raise(method, line, "QKVideoTimecode: No video frame information in mode QKSMPTETimecodeModeInvalid");
}

// Whole frames of the magnitude, or the nearest number of them in a duration mode: `nearest` is for doubles, where adding
// a half and rounding half away differ in the last place.
std::uint64_t QKVideoTimecode::frameMagnitude(double (*nearest)(double)) const {
  FrameScale storage;
  const FrameScale& scale = frameScale(storage);
  if (!flags_.useSeconds && scale.wholeFrameTime != 0) {
    const auto [frames, rest] = divideByFrameTime(magnitudeOf(time_.value), scale.wholeFrameTime);
    return frames + (scale.isDuration && rest >= scale.wholeFrameTime - rest ? 1 : 0);
  }
  const double magnitude = std::abs(flags_.useSeconds ? seconds_ : static_cast<double>(time_.value));
  const double frames = magnitude / scale.frameTime;
  return saturateToUInt64(scale.isDuration ? nearest(frames) : frames);
}

std::uint64_t QKVideoTimecode::videoFrames() {
  if (const auto* row = rowAtBest(); row && row->kind != TimecodeModeKind::Duration)
    return framesAndRest(*row, time_.value).whole;
  if (refusesNonNumeric("ERROR: Can't calculate video frames with non-numeric time. Returning 0")) return 0;
  requireVideoFrames("-[QKVideoTimecode videoFrames]", 2174);
  _normalizeTimeScaleForFrameRateIfNecessary();
  return frameMagnitude([](double frames) { return std::trunc(frames + 0.5); });
}

std::int64_t QKVideoTimecode::signedVideoFrames() {
  if (refusesNonNumeric("ERROR: Can't calculate video frames with non-numeric time. Returning 0")) return 0;
  requireVideoFrames("-[QKVideoTimecode signedVideoFrames]", 2136);
  _normalizeTimeScaleForFrameRateIfNecessary();
  const std::uint64_t frames = frameMagnitude(roundHalfAway);
  return isNegative() ? wrappingNegate(static_cast<std::int64_t>(std::min(frames, magnitudeOf(kInt64Lowest))))
                      : saturatingFromUInt64(frames);
}

void QKVideoTimecode::setVideoFrames(std::uint64_t frames) {
  if (refusesNonNumeric("ERROR: Can't set video frames with non-numeric time. Timecode unchanged")) return;
  requireVideoFrames("-[QKVideoTimecode setVideoFrames:]", 2160);
  setTimecodeNumberValue(privateTimeForVideoFrames(frames));
}

void QKVideoTimecode::setSignedVideoFrames(std::int64_t frames) {
  if (refusesNonNumeric("ERROR: Can't set video frames with non-numeric time. Timecode unchanged")) return;
  requireVideoFrames("-[QKVideoTimecode setSignedVideoFrames:]", 2112);
  _normalizeTimeScaleForFrameRateIfNecessary();
  FrameScale storage;
  const FrameScale& scale = frameScale(storage);
  if (flags_.useSeconds) {
    seconds_ = static_cast<double>(frames) * scale.frameTime;
  } else if (scale.wholeFrameTime != 0) {
    time_.value = saturatingMultiply(frames, static_cast<std::int64_t>(scale.wholeFrameTime));
  } else {
    time_.value = saturateToInt64(static_cast<double>(frames) * scale.frameTime);
  }
}

Number QKVideoTimecode::privateTimeForVideoFrames(std::uint64_t frames) {
  _normalizeTimeScaleForFrameRateIfNecessary();
  FrameScale storage;
  const FrameScale& scale = frameScale(storage);
  if (flags_.useSeconds) return static_cast<double>(frames) * scale.frameTime;
  if (scale.wholeFrameTime == 0) return saturateToUInt64(static_cast<double>(frames) * scale.frameTime);
  return frames > kUInt64Highest / scale.wholeFrameTime ? kUInt64Highest : frames * scale.wholeFrameTime;
}

// Adds frames in place in the usual case, where the sum is far from the ends of 64 bits. Whether it did.
bool QKVideoTimecode::addFramesAtBest(std::uint64_t frames, bool isNegativeDelta) {
  const auto* row = rowAtBest();
  if (!row || !isFarFromEnds(time_.value) || frames > std::numeric_limits<std::uint32_t>::max()) return false;
  const std::int64_t ticks = static_cast<std::int64_t>(frames) * row->ticksPerFrame();
  time_.value += isNegativeDelta ? -ticks : ticks;
  return true;
}

void QKVideoTimecode::addVideoFrames(std::uint64_t frames) {
  if (addFramesAtBest(frames, false)) return;
  requireVideoFrames("-[QKVideoTimecode addVideoFrames:]", 2190);
  addTimecodeNumberValue(privateTimeForVideoFrames(frames), false);
}

void QKVideoTimecode::subtractVideoFrames(std::uint64_t frames) {
  if (addFramesAtBest(frames, true)) return;
  requireVideoFrames("-[QKVideoTimecode subtractVideoFrames:]", 2198);
  addTimecodeNumberValue(privateTimeForVideoFrames(frames), true);
}

// ---- Comparing and text ----

int QKVideoTimecode::compareQuietly(const QKVideoTimecode& other) const {
  if (!isNumeric() || !other.isNumeric()) return 0;
  if (flags_.useSeconds != other.flags_.useSeconds) return _compareDouble(other);
  return flags_.useSeconds ? orderOf(seconds_, other.seconds_) : quill::compare(time_, other.time_);
}

int QKVideoTimecode::_compareDouble(const QKVideoTimecode& other) const {
  if (flags_.useSeconds == other.flags_.useSeconds) {
    lightAssertionFailed("pt_flags.useSeconds != otherTimecode->pt_flags.useSeconds", kFile, 1036);
  }
  const double mine = seconds(), others = other.seconds();
  return std::abs(mine - others) < kMixedCompareSeconds ? 0 : orderOf(mine, others);
}

int QKVideoTimecode::compare(const Object& other) const {
  const auto* timecode = classCast<QKVideoTimecode>(&other);
  if (!timecode) {
    logLine("ERROR: can't compare timecode " + descriptionForReport() + " to " + other.descriptionForReport() +
            ". Returning OrderedSame.");
    return 0;
  }
  if (!isNumeric() || !timecode->isNumeric()) {
    logLine("ERROR: compare: called with non-numeric time on at least one operand, returning OrderedSame");
    return 0;
  }
  return compareQuietly(*timecode);
}

std::partial_ordering operator<=>(const QKVideoTimecode& a, const QKVideoTimecode& b) {
  const auto hasOrder = [](const QKVideoTimecode& t) {
    return t.flags_.useSeconds ? !std::isnan(t.seconds_) : t.time_.isNumeric();
  };
  if (!hasOrder(a) || !hasOrder(b)) return std::partial_ordering::unordered;
  return a.compareQuietly(b) <=> 0;
}

// Modes that are equal have equal rates, but for the Custom one.
bool QKVideoTimecode::isEqualApartFromTime(const Object& other) const {
  const auto* timecode = classCast<QKVideoTimecode>(&other);
  return timecode && mode_ == timecode->mode_ && flags_.useSeconds == timecode->flags_.useSeconds &&
         (mode_ != QKSMPTETimecodeModeCustom || videoFrameRate() == timecode->videoFrameRate());
}

bool QKVideoTimecode::isEqual(const Object& other) const {
  return this == &other || (isEqualApartFromTime(other) && compare(other) == 0);
}

std::uint64_t QKVideoTimecode::hashQuietly() const {
  if (flags_.useSeconds) return wrapToUInt64(seconds_);
  return time_.isNumeric() ? wrapToUInt64(time_.seconds() * 10000 + 0.5) : 0;
}

std::uint64_t QKVideoTimecode::hash() const {
  refusesNonNumeric("ERROR: Can't hash non-numeric time. Returning 0");
  return hashQuietly();
}

std::string QKVideoTimecode::description() const {
  std::string text = classNameAndAddress();
  text += "\ntime: ";
  if (flags_.useSeconds) {
    appendFixed(text, seconds_, 6);
    text += " seconds";
  } else {
    text += time_.description();
  }
  const std::string_view name = timecodeModeName(mode_);
  text += "\ntimecode mode: ";
  text += name.empty() ? "(null)" : name;
  text += "\nframe rate: ";
  appendFixed(text, videoFrameRate(), 6);
  text += " frames per second";
  return text;
}

std::string QKVideoTimecode::descriptionForReport() const {
  const bool hasRate = timecodeModeRow(mode_) || mode_ == QKSMPTETimecodeModeCustom;
  return hasRate ? description() : classNameAndAddress();
}

std::ostream& operator<<(std::ostream& stream, const QKVideoTimecode& timecode) {
  return stream << timecode.description();
}

void* QKVideoTimecode::asProtocol(const Protocol& protocol) {
  if (&protocol == &QKSMPTETimecode::protocol) return static_cast<QKSMPTETimecode*>(this);
  if (&protocol == &QKBasicTimecode::protocol) return static_cast<QKBasicTimecode*>(this);
  if (&protocol == &QKOneDimensionalVideoTimecode::protocol) {
    return static_cast<QKOneDimensionalVideoTimecode*>(this);
  }
  if (&protocol == &QKOneDimensionalTimeTimecode::protocol) {
    return static_cast<QKOneDimensionalTimeTimecode*>(this);
  }
  const bool isServed = &protocol == &Copying::protocol || &protocol == &Coding::protocol;
  return isServed ? static_cast<Object*>(this) : nullptr;
}

// ---- Coding ----

namespace {

_QKCustomVideoModeInfo decodedInfo(const Ref<Object>& object) {
  const auto* info = classCast<_QKCustomVideoModeInfo>(object.get());
  return info ? *info : _QKCustomVideoModeInfo();
}

// The info of a layout that stored the custom rate alone.
_QKCustomVideoModeInfo oldInfo(double frameRate, std::int32_t preferredTimeScale) {
  _QKCustomVideoModeInfo info;
  info.frameRate = frameRate;
  info.preferredTimeScale = preferredTimeScale;
  return info;
}

constexpr auto kSCRTimeScale = static_cast<std::int32_t>(QKTimecodeSCRTimeRate);

// The tick rate of a custom mode in a layout that stored ticks at a rate.
std::int32_t oldPreferredTimeScale(double frameRate, std::uint64_t rate) {
  if (frameRate == 0) return 0;
  return rate < 0x80000000 ? static_cast<std::int32_t>(rate) : kSCRTimeScale;
}

constexpr const ClassDescriptor* kInfoClasses[] = {&_QKCustomVideoModeInfo::descriptor};

}  // namespace

QKVideoTimecode::QKVideoTimecode(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  if (coder.allowsKeyedCoding()) {
    decodeKeyed(coder);
  } else {
    decodeSequential(coder);
  }
}

void QKVideoTimecode::decodeKeyed(KeyedCoder& coder) {
  const bool isOld = coder.decodeInteger("OrbisVideoTimecodeVersion") < 2;
  mode_ = static_cast<QKSMPTETimecodeMode>(coder.decodeInteger("OrbisVideoTimecodeMode"));
  if (isOld) {
    customVideoModeInfo_.frameRate = coder.decodeDouble("OrbisVideoTimecodeCustomVideoFrameRate");
  } else {
    customVideoModeInfo_ = decodedInfo(coder.decodeObject(kInfoClasses, "OrbisVideoTimecodeCustomVideoModeInfo"));
  }
  flags_.useSeconds = coder.decodeBool("OrbisVideoTimecodeUseSeconds");
  if (flags_.useSeconds) {
    seconds_ = coder.decodeDouble("OrbisVideoTimecodeTimeValue");
    if (!isOld) return;
    if (coder.decodeBool("OrbisVideoTimecodeIsNegative")) seconds_ = -seconds_;
    customVideoModeInfo_.preferredTimeScale = kSCRTimeScale;
  } else if (isOld) {
    const auto value = static_cast<std::uint64_t>(coder.decodeInt64("OrbisVideoTimecodeTimeValue"));
    const auto rate = static_cast<std::uint64_t>(coder.decodeInt64("OrbisVideoTimecodeTimeRate"));
    const bool isNegative = coder.decodeBool("OrbisVideoTimecodeIsNegative");
    customVideoModeInfo_.preferredTimeScale = oldPreferredTimeScale(customVideoModeInfo_.frameRate, rate);
    time_ = _rhoTimeFromOldTimeValue(value, rate, isNegative);
  } else {
    time_.value = coder.decodeInt64("OrbisVideoTimecodeRhoTimeValue");
    time_.timescale = coder.decodeInt32("OrbisVideoTimecodeRhoTimeScale");
    time_.flags = static_cast<std::uint32_t>(coder.decodeInt32("OrbisVideoTimecodeRhoTimeFlags"));
    time_.epoch = coder.decodeInt64("OrbisVideoTimecodeRhoTimeEpoch");
  }
}

void QKVideoTimecode::decodeSequential(KeyedCoder& coder) {
  const bool isOld = coder.versionForClassName("OrbisVideoTimecode") < 2;
  Number values[5];
  const auto decode = [&](std::string_view types) {
    coder.decodeValues(types, std::span<Number>(values, types.size()));
  };
  decode("i");
  flags_.useSeconds = values[0].boolValue();
  if (flags_.useSeconds && isOld) {
    decode("Qiid");                             // the first two are not read
    mode_ = QKSMPTETimecodeMode_23976Duration;  // whatever was archived, on purpose
    const double frameRate = values[3].doubleValue();
    customVideoModeInfo_ = oldInfo(frameRate, frameRate != 0 ? kSCRTimeScale : 0);
  } else if (flags_.useSeconds) {
    decode("di");
    seconds_ = values[0].doubleValue();
    mode_ = static_cast<QKSMPTETimecodeMode>(values[1].int64Value());
  } else if (isOld) {
    decode("QQiid");
    const std::uint64_t rate = values[1].uint64Value();
    mode_ = static_cast<QKSMPTETimecodeMode>(values[3].int64Value());
    const double frameRate = values[4].doubleValue();
    customVideoModeInfo_ = oldInfo(frameRate, oldPreferredTimeScale(frameRate, rate));
    time_ = _rhoTimeFromOldTimeValue(values[0].uint64Value(), rate, values[2].boolValue());
  } else {
    decode("qiIqi");
    time_ = MediaTime(values[0].int64Value(), static_cast<std::int32_t>(values[1].int64Value()),
                      static_cast<std::uint32_t>(values[2].uint64Value()), values[3].int64Value());
    mode_ = static_cast<QKSMPTETimecodeMode>(values[4].int64Value());
  }
  if (!isOld) customVideoModeInfo_ = decodedInfo(coder.decodeObject(kInfoClasses));
}

void QKVideoTimecode::encodeWithCoder(KeyedCoder& coder) const {
  if (!coder.allowsKeyedCoding()) {
    coder.encodeValues("i", {flags_.useSeconds ? 1 : 0});
    const auto mode = static_cast<std::int64_t>(mode_);
    if (flags_.useSeconds) {
      coder.encodeValues("di", {seconds_, mode});
    } else {
      coder.encodeValues("qiIqi", {time_.value, time_.timescale, time_.flags, time_.epoch, mode});
    }
    coder.encodeObject(&customVideoModeInfo_);
    return;
  }
  coder.encodeInteger(version(), "OrbisVideoTimecodeVersion");
  coder.encodeInteger(mode_, "OrbisVideoTimecodeMode");
  coder.encodeObject(&customVideoModeInfo_, "OrbisVideoTimecodeCustomVideoModeInfo");
  coder.encodeBool(flags_.useSeconds, "OrbisVideoTimecodeUseSeconds");
  if (flags_.useSeconds) {
    coder.encodeDouble(seconds_, "OrbisVideoTimecodeTimeValue");
    return;
  }
  coder.encodeInt64(time_.value, "OrbisVideoTimecodeRhoTimeValue");
  coder.encodeInt32(time_.timescale, "OrbisVideoTimecodeRhoTimeScale");
  coder.encodeInt32(static_cast<std::int32_t>(time_.flags), "OrbisVideoTimecodeRhoTimeFlags");
  coder.encodeInt64(time_.epoch, "OrbisVideoTimecodeRhoTimeEpoch");
}

}  // namespace quill::inline v0

std::size_t std::hash<quill::QKVideoTimecode>::operator()(const quill::QKVideoTimecode& timecode) const {
  return static_cast<std::size_t>(timecode.hashQuietly());
}
