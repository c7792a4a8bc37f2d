#include "QKTimecode.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "../Platform/Reports.h"
#include "../Platform/TextServices.h"
#include "AudioFrameSequence.h"

#include <algorithm>
#include <cmath>

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKTimecode";
constexpr std::uint64_t kHighestTimescale = 0x7fffffff;

// The least common multiple of two tick rates, or the larger of them where a timescale does not hold it.
std::uint64_t commonTimescale(std::uint64_t timescale, std::uint64_t audioFrameRate) {
  // As nearly always: one holds the other. Narrow divisions are fast.
  const auto videoTicks = static_cast<std::uint32_t>(timescale),
             audioTicks = static_cast<std::uint32_t>(audioFrameRate);
  if (timescale <= kHighestTimescale && audioFrameRate <= kHighestTimescale && videoTicks != 0 && audioTicks != 0) {
    if (videoTicks % audioTicks == 0) return videoTicks;
    if (audioTicks % videoTicks == 0) return audioTicks;
  }
  const std::uint64_t multiple = _QKTimecodeUtilityLCM(timescale, audioFrameRate == 0 ? 1 : audioFrameRate);
  if (multiple != 0 && multiple <= kHighestTimescale) return multiple;
  return std::max(std::min(timescale, kHighestTimescale), std::min(audioFrameRate, kHighestTimescale));
}

}  // namespace

// ---- Making ----

const ClassDescriptor QKTimecode::descriptor{
    "QKTimecode",
    "OrbisTimecode",
    0,
    &QKVideoTimecode::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKTimecode>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<QKTimecode>(coder); }};

QKTimecode::QKTimecode() : audioFrameRate_(timeRate()) {}

QKTimecode::QKTimecode(const MediaTime& time, QKSMPTETimecodeMode timecodeMode)
    : QKVideoTimecode(time, timecodeMode), audioFrameRate_(timeRate()) {}

QKTimecode::QKTimecode(const MediaTime& time, const MediaTime& frameDuration) : QKTimecode(time, frameDuration, 0) {}

QKTimecode::QKTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame)
    : QKVideoTimecode(time, frameDuration, dropFrame), audioFrameRate_(timeRate()) {}

QKTimecode::QKTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode)
    : QKVideoTimecode(timecodeNumberValue, timeRate, timecodeMode), audioFrameRate_(this->timeRate()) {}

QKTimecode::QKTimecode(const MediaTime& time, const MediaTime& frameDuration, std::int64_t dropFrame,
                       std::uint64_t audioFrameRate)
    : QKVideoTimecode(time, frameDuration, dropFrame) {
  setFirstAudioFrameRate(audioFrameRate);
}

QKTimecode::QKTimecode(const Number& timecodeNumberValue, TimeRate timeRate, QKSMPTETimecodeMode timecodeMode,
                       std::uint64_t audioFrameRate)
    : QKVideoTimecode(timecodeNumberValue, checkedTimeRate(timeRate, audioFrameRate), timecodeMode) {
  setFirstAudioFrameRate(audioFrameRate);
}

// Before the base is made: there is no object yet to name.
TimeRate QKTimecode::checkedTimeRate(TimeRate timeRate, std::uint64_t audioFrameRate) {
  if (audioFrameRate == 0 && timeRate == QKTimecodeBestTimeRate) {
    assertionFailed({"-[QKTimecode initWithTimecodeNumberValue:timeRate:timecodeMode:audioFrameRate:]", nullptr, kFile,
                     __LINE__, "Can't calculate best time rate with 0 sample rate"});
  }
  return timeRate;
}

// A rate that is 0 is never equal to the one that setAudioFrameRate puts in its place.
void QKTimecode::setFirstAudioFrameRate(std::uint64_t audioFrameRate) {
  QKTimecode::setAudioFrameRate(audioFrameRate == 0 ? timeRateInsteadOfZero() : audioFrameRate);
}

std::uint64_t QKTimecode::timeRateInsteadOfZero() { return std::max<std::uint64_t>(timeRate(), 1); }

QKTimecode::~QKTimecode() = default;

Ref<Object> QKTimecode::copy() const { return std::make_shared<QKTimecode>(*this); }

bool QKTimecode::isNegative() const { return QKVideoTimecode::isNegative(); }
void QKTimecode::setIsNegative(bool isNegative) { QKVideoTimecode::setIsNegative(isNegative); }
void QKTimecode::clearTimecode() { QKVideoTimecode::clearTimecode(); }

// ---- Audio frame rate ----

void QKTimecode::setAudioFrameRate(std::uint64_t audioFrameRate) {
  if (audioFrameRate == audioFrameRate_) return;
  audioFrameRate_ = audioFrameRate == 0 ? timeRateInsteadOfZero() : audioFrameRate;
  if (useSeconds()) return;
  if (!storedTime().isNumeric()) {
    logLine("ERROR: Can't set audio frame rate with non-numeric internal time. Timecode unchanged");
    return;
  }
  const std::int64_t best = _bestTimeScale();  // in a constructor the class's own
  if (best != storedTime().timescale) {
    setStoredTime(storedTime().convertedTo(saturateToInt32(best)));
  }
}

bool QKTimecode::usingSMPTE272MConversion() const {
  const QKSMPTETimecodeMode mode = timecodeMode();
  const bool is2997 = mode == QKSMPTETimecodeMode_2997 || mode == QKSMPTETimecodeMode_2997Drop;
  switch (audioFrameRate_) {
    case 32000:
    case 44100: return is2997;
    case 48000: return is2997 || mode == QKSMPTETimecodeMode_23976;
    default: return false;
  }
}

std::int64_t QKTimecode::_bestTimeScale() const {
  const auto videoScale = static_cast<std::uint64_t>(QKVideoTimecode::_bestTimeScale());
  return static_cast<std::int64_t>(commonTimescale(videoScale, audioFrameRate_));
}

void QKTimecode::setTimeRate(TimeRate timeRate) {
  QKVideoTimecode::setTimeRate(
      timeRate == QKTimecodeBestTimeRate ? timeRateForTimecodeModes({timecodeMode()}, {audioFrameRate_}) : timeRate);
}

void QKTimecode::setCustomVideoFrameRate(double framesPerSecond) {
  const MediaTime saved = storedTime();
  QKVideoTimecode::setCustomVideoFrameRate(framesPerSecond);
  if (timecodeMode() != QKSMPTETimecodeModeCustom || useSeconds()) return;
  if (!saved.isNumeric()) {
    logLine("ERROR: Can't set video frame rate with non-numeric internal time. Timecode unchanged");
    return;
  }
  const auto timescale = static_cast<std::uint64_t>(storedTime().timescale);
  setStoredTime(saved.convertedTo(static_cast<std::int32_t>(commonTimescale(timescale, audioFrameRate_))));
}

// ---- Hours, minutes, seconds ----

void QKTimecode::getHMSHours(std::int64_t* hours, std::int64_t* minutes, double* seconds) const {
  const double position = std::abs(QKTimecode::seconds());
  double rest = isNumeric() ? position : 0;
  const double wholeHours = std::trunc(rest / 3600);
  rest -= wholeHours * 3600;
  const double wholeMinutes = std::trunc(rest / 60);
  rest -= wholeMinutes * 60;
  if (hours) *hours = saturateToInt64(wholeHours);
  if (minutes) *minutes = saturateToInt64(wholeMinutes);
  if (seconds) *seconds = rest;
}

void QKTimecode::setHMSHours(std::int64_t hours) {
  if (refusesNonNumeric("ERROR: Can't set HMS hours with non-numeric internal time. Timecode unchanged.")) return;
  std::int64_t minutes = 0;
  double seconds = 0;
  getHMSHours(nullptr, &minutes, &seconds);
  setSeconds(secondsOfHMS(hours, minutes, seconds));
}

void QKTimecode::setHMSMinutes(std::int64_t minutes) {
  if (refusesNonNumeric("ERROR: Can't set HMS minutes with non-numeric internal time. Timecode unchanged.")) return;
  std::int64_t hours = 0;
  double seconds = 0;
  getHMSHours(&hours, nullptr, &seconds);
  setSeconds(secondsOfHMS(hours, minutes, seconds));
}

void QKTimecode::setHMSSeconds(double seconds) {
  if (refusesNonNumeric("ERROR: Can't set HMS seconds with non-numeric internal time. Timecode unchanged.")) return;
  std::int64_t hours = 0, minutes = 0;
  getHMSHours(&hours, &minutes, nullptr);
  setSeconds(secondsOfHMS(hours, minutes, seconds));
}

// Whole minutes first: their sum is exact, so that the result is rounded once.
double QKTimecode::secondsOfHMS(std::int64_t hours, std::int64_t minutes, double seconds) {
  return static_cast<double>(minutes) * 60 + static_cast<double>(hours) * 3600 + seconds;
}

void QKTimecode::addHMSHours(std::int64_t hours, std::int64_t minutes, double seconds) {
  if (refusesNonNumeric("ERROR: Can't add HMS with non-numeric internal time. Timecode unchanged.")) return;
  privateAddHMSHours(hours, minutes, seconds, false);
}

void QKTimecode::subtractHMSHours(std::int64_t hours, std::int64_t minutes, double seconds) {
  if (refusesNonNumeric("ERROR: Can't subtract HMS with non-numeric internal time. Timecode unchanged.")) return;
  privateAddHMSHours(hours, minutes, seconds, true);
}

void QKTimecode::privateAddHMSHours(std::int64_t hours, std::int64_t minutes, double seconds, bool isNegativeDelta) {
  if (!allNonnegative(2, hours, minutes) || !(std::trunc(seconds) >= 0)) {
    assertionFailed({"-[QKTimecode privateAddHMSHours:minutes:seconds:isNegativeDelta:]", this, kFile, __LINE__,
                     "-[QKTimecode addHMSHours:minutes:seconds:] requires nonnegative deltas."});
  }
  addTimecodeNumberValue(privateTimeForHours(hours, minutes, seconds), isNegativeDelta);
}

Number QKTimecode::privateTimeForHours(std::int64_t hours, std::int64_t minutes, double seconds) {
  if (useSeconds()) {
    return static_cast<double>(hours) * 3600 + (static_cast<double>(minutes) * 60 + seconds);
  }
  const std::int64_t rate = saturatingFromUInt64(timeRate());
  const std::int64_t wholeSeconds = saturatingAdd(saturatingMultiply(hours, 3600), saturatingMultiply(minutes, 60));
  const std::int64_t rest = saturateToInt64(static_cast<double>(rate) * seconds + 0.5);
  return static_cast<std::uint64_t>(saturatingAdd(saturatingMultiply(wholeSeconds, rate), rest));
}

void QKTimecode::privateSetSecondsWithClampedHours(double seconds) {
  setSeconds(seconds);
  std::int64_t hours = 0, minutes = 0;
  double rest = 0;
  getHMSHours(&hours, &minutes, &rest);
  std::int64_t clamped = hours;
  privateClampIntegerValue(&clamped, 0, 99, true);
  if (clamped != hours) setSeconds(secondsOfHMS(clamped, minutes, rest));
}

// ---- Audio frames ----

double QKTimecode::privateAudioFrameTime() const {
  const auto rate = static_cast<double>(audioFrameRate_);
  return useSeconds() ? 1.0 / rate : roundHalfAway(static_cast<double>(storedTime().timescale) * 1000 / rate) * 0.001;
}

Number QKTimecode::boxedTime(double time) const { return useSeconds() ? Number(time) : Number(saturateToUInt64(time)); }

std::uint64_t QKTimecode::privateSampleRemainder() {
  if (!usingSMPTE272MConversion()) lightAssertionFailed("[self usingSMPTE272MConversion]", kFile, __LINE__);
  const std::uint64_t frame = videoFrames();  // first: it may change the timescale
  const double frameStart = _doubleFrameTime() * static_cast<double>(frame);
  if (useSeconds()) {
    return saturateToUInt64((std::abs(seconds()) - frameStart) / privateAudioFrameTime() + 0.5);
  }
  const double past = static_cast<double>(magnitudeOf(storedTime().value)) - frameStart;
  return saturateToUInt64(static_cast<double>(saturateToUInt64(past)) / privateAudioFrameTime());
}

std::uint64_t QKTimecode::audioFrames() {
  if (refusesNonNumeric("ERROR: Can't calculate audio frames with non-numeric internal time. Returning 0.")) return 0;
  _normalizeTimeScaleForFrameRateIfNecessary();
  if (!usingSMPTE272MConversion()) {
    if (useSeconds()) return saturateToUInt64(std::abs(seconds()) * static_cast<double>(audioFrameRate_));
    const double framesPerTick = static_cast<double>(audioFrameRate_) / storedTime().timescale;
    return saturateToUInt64(static_cast<double>(magnitudeOf(storedTime().value)) * framesPerTick);
  }
  if (isNegative()) {
    assertionFailed({"-[QKTimecode audioFrames]", this, kFile, __LINE__,
                     "No SMPTE 272M audio frames conversion of negative time value"});
  }
  const std::uint64_t frame = videoFrames();
  if (frame < sequencePhaseFrame_) {
    assertionFailed(
        {"-[QKTimecode audioFrames]", this, kFile, __LINE__,
         "invalid time for SMPTE 272M audio frames conversion: video frames must not be less than audio frame sequence phase frame (sequencePhaseFrame)"});
  }
  const AudioFrameSequence* sequence = audioFrameSequence(sequenceFrameRate(), audioFrameRate_);
  if (!sequence) return 0;
  return privateSampleRemainder() + sequence->firstSampleOfFrame(frame - sequencePhaseFrame_);
}

void QKTimecode::setAudioFrames(std::uint64_t frames) {
  if (refusesNonNumeric("ERROR: Can't set audio frames with non-numeric internal time. Timecode unchanged")) return;
  _normalizeTimeScaleForFrameRateIfNecessary();
  if (!usingSMPTE272MConversion()) {
    setTimecodeNumberValue(boxedTime(static_cast<double>(frames) * privateAudioFrameTime()));
    return;
  }
  std::int32_t remainder = 0;
  const std::uint64_t frame = OBFrameFromSample(frames, audioFrameRate_, sequenceFrameRate(), &remainder);
  setTimecodeNumberValue(boxedTime(static_cast<double>(frame + sequencePhaseFrame_) * _doubleFrameTime() +
                                   remainder * privateAudioFrameTime()));
}

void QKTimecode::addAudioFrames(std::uint64_t frames) {
  if (refusesNonNumeric("ERROR: Can't add audio frames with non-numeric internal time. Timecode unchanged")) return;
  changeAudioFrames(frames, false);
}

void QKTimecode::subtractAudioFrames(std::uint64_t frames) {
  if (refusesNonNumeric("ERROR: Can't subtract audio frames with non-numeric internal time. Timecode unchanged"))
    return;
  changeAudioFrames(frames, true);
}

void QKTimecode::changeAudioFrames(std::uint64_t frames, bool isNegativeDelta) {
  if (usingSMPTE272MConversion()) {
    privateSMPTE272MAddAudioFrames(frames, isNegativeDelta);
  } else {
    privateAddAudioFrames(frames, isNegativeDelta);
  }
}

void QKTimecode::privateAddAudioFrames(std::uint64_t frames, bool isNegativeDelta) {
  addTimecodeNumberValue(boxedTime(static_cast<double>(frames) * privateAudioFrameTime()), isNegativeDelta);
}

void QKTimecode::privateSMPTE272MAddAudioFrames(std::uint64_t frames, bool isNegativeDelta) {
  const std::uint64_t current = audioFrames();
  if (isNegativeDelta && current < frames) {
    setVideoFrames(sequencePhaseFrame_);  // audio frame 0
  } else {
    setAudioFrames(isNegativeDelta ? current - frames : current + frames);
  }
}

// ---- Comparing and text ----

bool QKTimecode::isEqualApartFromTime(const Object& other) const {
  const auto* timecode = classCast<QKTimecode>(&other);
  return timecode && audioFrameRate_ == timecode->audioFrameRate_ &&
         sequencePhaseFrame_ == timecode->sequencePhaseFrame_ && QKVideoTimecode::isEqualApartFromTime(other);
}

std::string QKTimecode::description() const {
  std::string text = QKVideoTimecode::description();
  text += "\naudio frame rate: ";
  appendInteger(text, static_cast<std::int64_t>(audioFrameRate_));
  text += " audio frames per second\nSMPTE 272M sequence phase frame: ";
  appendInteger(text, static_cast<std::int64_t>(sequencePhaseFrame_));
  return text;
}

void* QKTimecode::asProtocol(const Protocol& protocol) {
  if (&protocol == &QKHMSTimecode::protocol) return static_cast<QKHMSTimecode*>(this);
  if (&protocol == &QKOneDimensionalAudioTimecode::protocol) {
    return static_cast<QKOneDimensionalAudioTimecode*>(this);
  }
  return QKVideoTimecode::asProtocol(protocol);
}

// ---- Coding ----

QKTimecode::QKTimecode(KeyedCoder& coder) : QKVideoTimecode(coder) {
  const DecodingRegistration registration(coder, descriptor);
  if (coder.allowsKeyedCoding()) {
    coder.decodeInteger("OrbisTimecodeVersion");  // every version reads alike
    audioFrameRate_ = static_cast<std::uint64_t>(coder.decodeInt64("OrbisTimecodeAudioFrameRate"));
    sequencePhaseFrame_ = static_cast<std::uint64_t>(coder.decodeInt64("OrbisTimecodeSequencePhaseFrame"));
    return;
  }
  coder.versionForClassName("OrbisTimecode");  // likewise
  Number values[2];
  coder.decodeValues("QQ", values);
  audioFrameRate_ = values[0].uint64Value();
  sequencePhaseFrame_ = values[1].uint64Value();
}

void QKTimecode::encodeWithCoder(KeyedCoder& coder) const {
  QKVideoTimecode::encodeWithCoder(coder);
  if (coder.allowsKeyedCoding()) {
    coder.encodeInteger(QKVideoTimecode::version(), "OrbisTimecodeVersion");  // the base's, on purpose
    coder.encodeInt64(static_cast<std::int64_t>(audioFrameRate_), "OrbisTimecodeAudioFrameRate");
    coder.encodeInt64(static_cast<std::int64_t>(sequencePhaseFrame_), "OrbisTimecodeSequencePhaseFrame");
  } else {
    coder.encodeValues("QQ", {audioFrameRate_, sequencePhaseFrame_});
  }
}

}  // namespace quill::inline v0

std::size_t std::hash<quill::QKTimecode>::operator()(const quill::QKTimecode& timecode) const {
  return std::hash<quill::QKVideoTimecode>()(timecode);
}
