// FieldModel's room of settings.
#include "FieldModel.h"

#include <algorithm>

namespace field {

using namespace quill;

namespace {

constexpr std::int64_t kHighestAudioRate = 10000000;
constexpr double kLowestTempo = 1, kHighestTempo = 10000;
constexpr std::int64_t kHighestSignature = 1000;  // either number

constexpr std::int64_t kRowCount = std::ssize(kRows);
constexpr std::int64_t kModeCount = std::ssize(kTimecodeModeTable);
constexpr std::int64_t kFilmCount = std::ssize(kFilmTypeTable);

// The place that lies so many further, round and round.
std::int64_t inRound(std::int64_t place, std::int64_t count, std::int64_t size) {
  return (place + count % size + size) % size;
}

constexpr std::string_view onOrOff(bool isOn) { return isOn ? "on" : "off"; }

}  // namespace

// Of an archive they may be anything.
bool FieldModel::hasSoundSettings(const Timecode& timecode) {
  const auto isInSignature = [](std::int64_t number) { return number >= 1 && number <= kHighestSignature; };
  return timecodeModeRow(timecode.timecodeMode()) && timecode.audioFrameRate() >= 1 &&
         timecode.audioFrameRate() <= kHighestAudioRate && filmTypeRow(timecode.filmType()) &&
         timecode.tempo() >= kLowestTempo && timecode.tempo() <= kHighestTempo &&
         isInSignature(timecode.timeSignatureNumerator()) && isInSignature(timecode.timeSignatureDenominator());
}

// ---- Format ----

bool FieldModel::setFormat(std::string_view name) {
  const auto* const row = std::ranges::find(kRows, name, &Row::name);
  if (row == std::end(kRows)) return fail("The formats are smpte, hms, frames, samples, seconds, bars and feet.");
  changeFormat(row->format);
  return true;
}

void FieldModel::cycleFormat(std::int64_t count) {
  changeFormat(kRows[inRound(formatter_.timecodeFormat(), count, kRowCount)].format);
}

void FieldModel::changeFormat(QKTimecodeFormat format) {
  clearMessage();
  formatter_.setTimecodeFormat(format);
  tag_ = formatter_.defaultSelectedSegmentTagInObjectValue(value_.get());
}

bool FieldModel::setDecimals(std::string_view places) {
  const auto number = examples::wholeNumber(places, 0, kMostDecimals);
  if (!number) return fail("Decimal places are from 0 to 9.");
  formatter_.setHMSSecondsDecimalPlaces(*number);
  formatter_.setODTSecondsDecimalPlaces(static_cast<std::uint64_t>(*number));
  keepSelectionVisible();
  return true;
}

void FieldModel::addDecimals(std::int64_t count) {
  const auto within = [](std::int64_t places) { return std::clamp<std::int64_t>(places, 0, kMostDecimals); };
  const auto sum = [&](std::int64_t places) { return within(within(places) + count); };  // any number, in an archive
  formatter_.setHMSSecondsDecimalPlaces(sum(formatter_.HMSSecondsDecimalPlaces()));
  const auto places = static_cast<std::int64_t>(formatter_.ODTSecondsDecimalPlaces());
  formatter_.setODTSecondsDecimalPlaces(static_cast<std::uint64_t>(sum(places)));
  keepSelectionVisible();
}

bool FieldModel::setSubframes(std::string_view state) {
  return setSwitch(state, [&](bool isOn) { showFrameDivision(isOn, false); });
}

bool FieldModel::setQuarterFrames(std::string_view state) {
  return setSwitch(state, [&](bool isOn) { showFrameDivision(false, isOn); });
}

void FieldModel::showFrameDivision(bool subframes, bool quarterFrames) {
  formatter_.setSMPTEDisplaysSubframes(subframes);
  formatter_.setSMPTEDisplaysQuarterFrames(quarterFrames);
  formatter_.setFFDisplaysQuarterFrames(quarterFrames);
  keepSelectionVisible();
}

bool FieldModel::setRollover(std::string_view state) {
  return setSwitch(state, [&](bool isOn) {
    formatter_.setSMPTEHas24HourRollover(isOn);
    formatter_.setHMSHas24HourRollover(isOn);
  });
}

bool FieldModel::setSwitch(std::string_view state, const std::function<void(bool isOn)>& set) {
  if (state != onOrOff(true) && state != onOrOff(false)) return fail("It is on or off.");
  clearMessage();
  set(state == onOrOff(true));
  return true;
}

void FieldModel::toggleSubframes() { setSubframes(onOrOff(!formatter_.SMPTEDisplaysSubframes())); }

void FieldModel::toggleQuarterFrames() { setQuarterFrames(onOrOff(!formatter_.SMPTEDisplaysQuarterFrames())); }

void FieldModel::toggleRollover() { setRollover(onOrOff(!formatter_.SMPTEHas24HourRollover())); }

// ---- Value ----

bool FieldModel::setMode(std::string_view name) {
  const auto mode = examples::modeFrom(name);
  return mode ? changeMode(*mode) : fail("The modes are " + examples::modeList(", ") + ".");
}

bool FieldModel::cycleMode(std::int64_t count) {
  return changeMode(kTimecodeModeTable[inRound(value_->timecodeMode(), count, kModeCount)].mode);
}

bool FieldModel::changeMode(QKSMPTETimecodeMode mode) {
  return convert([&](Timecode& timecode) { return timecode.timecodePreservingSMPTEWithMode(mode); });
}

bool FieldModel::setAudioRate(std::string_view rate) {
  const auto number = examples::wholeNumber(rate, 1, kHighestAudioRate);
  if (!number) return fail("An audio rate is a whole number of samples a second, up to 10000000.");
  return change([&](Timecode& timecode) { timecode.setAudioFrameRate(static_cast<std::uint64_t>(*number)); });
}

bool FieldModel::setFilm(std::string_view name) {
  const auto type = examples::filmTypeFrom(name);
  return type ? changeFilm(*type) : fail("The films are " + examples::filmTypeList(", ") + ".");
}

bool FieldModel::cycleFilm(std::int64_t count) {
  return changeFilm(kFilmTypeTable[inRound(value_->filmType(), count, kFilmCount)].type);
}

bool FieldModel::changeFilm(QKFilmType type) {
  return change([&](Timecode& timecode) { timecode.setFilmType(type); });
}

bool FieldModel::setTempo(std::string_view text) {
  const auto tempo = examples::tempoFrom(text);
  if (!tempo) return fail("A tempo is a number of beats a minute, from 1 to 10000.");
  return change([&](Timecode& timecode) {
    const MediaTime time = timecode.timeValue();
    if (!timecode.isNegative()) return timecode.setTempo(*tempo);
    timecode.clearTimecode();  // bars and beats below zero say nothing
    timecode.setTempo(*tempo);
    timecode.setTimeValue(time);
  });
}

bool FieldModel::setSignature(std::string_view signature) {
  const auto numbers = examples::timeSignatureFrom(signature);
  if (!numbers) return fail("A signature is two numbers from 1 to 1000, such as 6/8.");
  return change([&](Timecode& timecode) {
    timecode.setTimeSignatureNumerator(numbers->numerator);
    timecode.setTimeSignatureDenominator(numbers->denominator);
  });
}

// ---- Entries ----

bool FieldModel::setInterpretation(std::string_view rule) {
  const bool discarding = rule == "discarding";
  if (!discarding && rule != "preserving") return fail("It is preserving or discarding.");
  clearMessage();
  formatter_.setSMPTEStringInterpretation(discarding ? OrbSMPTEStringInterpretationDiscardingUpper
                                                     : OrbSMPTEStringInterpretationPreservingUpper);
  return true;
}

void FieldModel::toggleInterpretation() {
  const bool preserving = formatter_.SMPTEStringInterpretation() == OrbSMPTEStringInterpretationPreservingUpper;
  setInterpretation(preserving ? "discarding" : "preserving");
}

bool FieldModel::setNegatives(std::string_view state) {
  if (state == onOrOff(false) && value_->isNegative()) return fail("The value is negative: negatives stay on.");
  return setSwitch(state, [&](bool isOn) { formatter_.setAllowsNegative(isOn); });
}

bool FieldModel::toggleNegatives() { return setNegatives(onOrOff(!formatter_.allowsNegative())); }

bool FieldModel::setMinimum(std::string_view entry) {
  Ref<Timecode> bound;
  if (!read(entry, *zero(), &bound)) return false;
  const auto maximum = formatter_.maximum();
  if (maximum && bound->compare(*maximum) > 0) return fail("The minimum is above the maximum.");
  formatter_.setMinimum(bound.get());
  if (value_->compare(*bound) < 0) value_ = bound;
  return true;
}

bool FieldModel::setMaximum(std::string_view entry) {
  Ref<Timecode> bound;
  if (!read(entry, *zero(), &bound)) return false;
  const auto minimum = formatter_.minimum();
  if (minimum && bound->compare(*minimum) < 0) return fail("The maximum is below the minimum.");
  formatter_.setMaximum(bound.get());
  if (value_->compare(*bound) > 0) value_ = bound;
  return true;
}

void FieldModel::toggleMinimum() { formatter_.setMinimum(formatter_.minimum() ? nullptr : value_.get()); }

void FieldModel::toggleMaximum() { formatter_.setMaximum(formatter_.maximum() ? nullptr : value_.get()); }

// In the SMPTE format without rollover the formatter holds to 99 hours as well as to the bounds it was given. It is asked
// where it stops: at the end of an entry that is far too large.
std::string FieldModel::range() const {
  QKTimecodeFormatter formatter(formatter_);
  formatter.setSMPTEHas24HourRollover(false);  // shows hours past 24
  formatter.setHMSHas24HourRollover(false);
  Ref<Object> minimum = formatter_.minimum();
  Ref<Object> maximum = formatter_.maximum();
  if (!minimum && !formatter_.allowsNegative()) minimum = zero();
  const QKTimecodeFormat format = formatter_.timecodeFormat();
  if (format == QKTimecodeFormatSMPTE && !formatter_.SMPTEHas24HourRollover()) {
    const auto reach = [&](std::string_view entry, Ref<Object>* end) {
      formatter.setCurrentTimecode(zero());
      formatter.getObjectValue(end, entry, nullptr);
    };
    reach("-1000:00:00:00", &minimum);
    reach("+1000:00:00:00", &maximum);
  }
  const auto text = [&](const Ref<Object>& end) -> std::optional<std::string> {
    std::string shown;
    if (end) render(formatter, format, static_cast<Timecode&>(*end), &shown);
    return end ? std::optional(shown) : std::nullopt;
  };
  return rangeText(text(minimum), text(maximum));
}

}  // namespace field
