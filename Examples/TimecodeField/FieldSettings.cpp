// FieldModel's room of settings.
#include "FieldModel.h"

#include <algorithm>
#include <optional>

namespace field {

using namespace quill;

namespace {

constexpr std::int64_t kHighestAudioRate = 10000000;
constexpr double kLowestTempo = 1, kHighestTempo = 1000;
constexpr std::int64_t kHighestSignature = 99;  // either number
constexpr std::int64_t kMostDecimals = 9;

constexpr std::int64_t kRowCount = std::ssize(kRows);
constexpr std::int64_t kModeCount = std::ssize(kTimecodeModeTable);
constexpr std::int64_t kFilmCount = std::ssize(kFilmTypeTable);

// The place that lies so many further, round and round.
std::int64_t inRound(std::int64_t place, std::int64_t count, std::int64_t size) {
  return (place + count % size + size) % size;
}

// A text of digits alone, within the limits.
std::optional<std::int64_t> wholeNumber(std::string_view text, std::int64_t lowest, std::int64_t highest) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  const std::int64_t number = saturatingInt64(text);
  return number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

constexpr std::string_view onOrOff(bool isOn) { return isOn ? "on" : "off"; }

template <class Rows, class Name>
std::string list(const Rows& rows, std::string_view separator, const Name& nameOf) {
  std::string names;
  for (const auto& row : rows) names.append(names.empty() ? "" : separator).append(nameOf(row));
  return names;
}

}  // namespace

std::string modeList(std::string_view separator) {
  return list(kTimecodeModeTable, separator, [](const TimecodeModeRow& row) { return row.shortName; });
}

std::string_view filmName(QKFilmType type) {
  constexpr std::string_view kPrefix = "QKFilmType_";
  const FilmTypeRow* const row = filmTypeRow(type);
  return row ? row->name.substr(kPrefix.size()) : "";
}

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
  for (const Row& row : kRows) {
    if (row.name != name) continue;
    changeFormat(row.format);
    return true;
  }
  return fail("The formats are " + list(kRows, ", ", [](const Row& row) { return row.name; }) + ".");
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
  const auto number = wholeNumber(places, 0, kMostDecimals);
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
  const auto mode = timecodeModeNamed(name);
  if (!mode || !timecodeModeRow(*mode)) return fail("The modes are " + modeList(", ") + ".");
  return changeMode(*mode);
}

bool FieldModel::cycleMode(std::int64_t count) {
  return changeMode(kTimecodeModeTable[inRound(value_->timecodeMode(), count, kModeCount)].mode);
}

bool FieldModel::changeMode(QKSMPTETimecodeMode mode) {
  return convert([&](Timecode& timecode) { return timecode.timecodePreservingSMPTEWithMode(mode); });
}

bool FieldModel::setAudioRate(std::string_view rate) {
  const auto number = wholeNumber(rate, 1, kHighestAudioRate);
  if (!number) return fail("An audio rate is a whole number of samples a second, up to 10000000.");
  return change([&](Timecode& timecode) { timecode.setAudioFrameRate(static_cast<std::uint64_t>(*number)); });
}

bool FieldModel::setFilm(std::string_view name) {
  for (const FilmTypeRow& row : kFilmTypeTable) {
    if (filmName(row.type) == name) return changeFilm(row.type);
  }
  return fail("The films are " + list(kFilmTypeTable, ", ", [](const auto& row) { return filmName(row.type); }) + ".");
}

bool FieldModel::cycleFilm(std::int64_t count) {
  return changeFilm(kFilmTypeTable[inRound(value_->filmType(), count, kFilmCount)].type);
}

bool FieldModel::changeFilm(QKFilmType type) {
  return change([&](Timecode& timecode) { timecode.setFilmType(type); });
}

bool FieldModel::setTempo(std::string_view text) {
  Scanner scanner(text);
  scanner.setDecimalSeparator(".");
  double tempo = 0;
  if (!scanner.scanDouble(&tempo) || !scanner.isAtEnd() || !(tempo >= kLowestTempo && tempo <= kHighestTempo)) {
    return fail("A tempo is a number of beats a minute, from 1 to 1000.");
  }
  return change([&](Timecode& timecode) {
    const MediaTime time = timecode.timeValue();
    if (!timecode.isNegative()) return timecode.setTempo(tempo);
    timecode.clearTimecode();  // bars and beats below zero say nothing
    timecode.setTempo(tempo);
    timecode.setTimeValue(time);
  });
}

bool FieldModel::setSignature(std::string_view signature) {
  const std::size_t slash = std::min(signature.find('/'), signature.size());
  const auto numerator = wholeNumber(signature.substr(0, slash), 1, kHighestSignature);
  const auto denominator = wholeNumber(signature.substr(std::min(slash + 1, signature.size())), 1, kHighestSignature);
  if (!numerator || !denominator) return fail("A signature is two numbers from 1 to 99, such as 6/8.");
  return change([&](Timecode& timecode) {
    timecode.setTimeSignatureNumerator(*numerator);
    timecode.setTimeSignatureDenominator(*denominator);
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
  const auto text = [&](const Ref<Object>& end) {
    std::string shown;
    render(formatter, format, static_cast<Timecode&>(*end), &shown);
    return shown;
  };
  if (minimum && maximum) return "from " + text(minimum) + " to " + text(maximum);
  if (minimum) return "from " + text(minimum) + " up";
  if (maximum) return "up to " + text(maximum);
  return "no limits";
}

}  // namespace field
