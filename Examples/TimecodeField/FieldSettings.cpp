// FieldModel's room of settings.
#include "FieldModel.h"

#include "Platform/Reports.h"

#include <algorithm>
#include <optional>

namespace field {

using namespace quill;

namespace {

constexpr std::int64_t kHighestAudioRate = 10000000;
constexpr std::int64_t kMostDecimals = 9;

constexpr std::int64_t kRowCount = std::ssize(kRows);
constexpr std::int64_t kModeCount = std::ssize(kTimecodeModeTable);

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

}  // namespace

std::string modeList(std::string_view separator) {
  std::string list;
  for (const auto& row : kTimecodeModeTable) {
    if (!list.empty()) list += separator;
    list += row.shortName;
  }
  return list;
}

// ---- Format ----

bool FieldModel::setFormat(std::string_view name) {
  std::string names;
  for (const Row& row : kRows) {
    if (row.name == name) {
      changeFormat(row.format);
      return true;
    }
    names.append(names.empty() ? "" : ", ").append(row.name);
  }
  return fail("The formats are " + names + ".");
}

bool FieldModel::cycleFormat(std::int64_t count) {
  changeFormat(kRows[inRound(formatter_.timecodeFormat(), count, kRowCount)].format);
  return true;
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
  const auto sum = [&](std::uint64_t places) {  // of an archive they may be any number
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(std::min<std::uint64_t>(places, kMostDecimals)) + count,
                                    0, kMostDecimals);
  };
  formatter_.setHMSSecondsDecimalPlaces(sum(static_cast<std::uint64_t>(formatter_.HMSSecondsDecimalPlaces())));
  formatter_.setODTSecondsDecimalPlaces(static_cast<std::uint64_t>(sum(formatter_.ODTSecondsDecimalPlaces())));
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
  return convert([&](Timecode& timecode) {
    const auto converted = copyOf(timecode);
    converted->setAudioFrameRate(static_cast<std::uint64_t>(*number));
    return converted;
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
  if (formatter_.timecodeFormat() == QKTimecodeFormatSMPTE && !formatter_.SMPTEHas24HourRollover()) {
    const auto reach = [&](std::string_view entry, Ref<Object>* end) {
      formatter.setCurrentTimecode(zero());
      formatter.getObjectValue(end, entry, nullptr);
    };
    reach("-1000:00:00:00", &minimum);
    reach("+1000:00:00:00", &maximum);
  }
  try {
    const auto text = [&](Object* end) { return formatter.stringForObjectValue(end).value_or(""); };
    if (minimum && maximum) return "from " + text(minimum.get()) + " to " + text(maximum.get());
    if (minimum) return "from " + text(minimum.get()) + " up";
    if (maximum) return "up to " + text(maximum.get());
    return "no limits";
  } catch (const InternalInconsistencyFailure& failure) {
    return firstLine(failure.what());
  }
}

}  // namespace field
