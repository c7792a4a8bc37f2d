// A segment that is full has been set in value_, but what was typed is remembered with the value before it, so that the
// next digit can still turn both into a whole entry and giveUp() can take them back:
//
//   typed    typing    value (29.97 drop, frames selected, at 01:00:00;00)
//   1        Segment   01:00:00;00
//   12       Segment   01:00:00;12   set, for two digits are all that frames take
//   123      Entry     01:00:00;00   "123" is 1 second 23 frames once it is confirmed
#include "FieldModel.h"

#include "Platform/Reports.h"

#include <algorithm>

namespace field {

using namespace quill;

namespace {

constexpr std::size_t kLongestEntry = 1000;

// By tag.
constexpr std::string_view kSegmentNames[] = {"hours", "minutes", "seconds", "frames", "subframes", "quarter frames"};

Ref<QKVideoTimecode> zeroInMode(QKSMPTETimecodeMode mode) {
  return std::make_shared<QKVideoTimecode>(Number(0), QKTimecodeBestTimeRate, mode);
}

// What the formatter gave, as a value that this field can have. Amounts that 64 bits of ticks cannot hold end at, or near,
// the last tick that they can: the field ends halfway there, more than a hundred million hours from zero.
Ref<QKVideoTimecode> fieldValue(const Ref<Object>& result, std::string* error) {
  constexpr std::int64_t kLastTick = INT64_MAX / 2;
  const auto* timecode = classCast<QKVideoTimecode>(result.get());
  if (!timecode) {
    *error = "This field always has a value.";
    return nullptr;
  }
  const MediaTime time = timecode->timeValue();
  if (!time.isNumeric() || time.value < -kLastTick || time.value > kLastTick) {
    *error = "Out of range.";
    return nullptr;
  }
  return std::static_pointer_cast<QKVideoTimecode>(result);
}

// Reads an entry over the formatter's current timecode. Parsing passes over what it cannot read behind the last field;
// an editor does not: it lets nothing stand that its formatter finds illegal.
bool parse(QKTimecodeFormatter& formatter, std::string_view entry, Ref<Object>* result, std::string* error) {
  entry.remove_prefix(std::min(entry.find_first_not_of(" \t"), entry.size()));
  return formatter.getObjectValue(result, entry, error) && formatter.isPartialStringValid(entry, nullptr, error);
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

}  // namespace

std::string firstLine(std::string_view text) {
  std::string line(text.substr(0, text.find('\n')));
  std::erase_if(line, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  return line;
}

FieldModel::FieldModel(const Settings& settings) : value_(zeroInMode(settings.mode)) {
  formatter_.setDefaultObjectPrototype(zeroInMode(settings.mode));
  formatter_.setSMPTEStringInterpretation(settings.interpretation);
  formatter_.setAllowsNegative(settings.negatives);
  formatter_.setSMPTEHas24HourRollover(settings.rollover);
  showFrameDivision(settings.subframes, settings.quarterFrames);
  tag_ = formatter_.defaultSelectedSegmentTagInObjectValue(value_.get());
}

// Runs something that can fail. Where the state of a value breaks a contract of the library, that is a failure too.
bool FieldModel::attempt(const Operation& operation) {
  std::string error;
  try {
    if (operation(&error)) {
      message_ = {};
      return true;
    }
  } catch (const InternalInconsistencyFailure& failure) {
    error = failure.what();
  }
  message_ = {firstLine(error), true};
  return false;
}

bool FieldModel::accept(const Ref<Object>& result, std::string* error) {
  const auto value = fieldValue(result, error);
  if (value) value_ = value;
  return value != nullptr;
}

// ---- Settings ----

Settings FieldModel::settings() const {
  return {.mode = value_->timecodeMode(),
          .interpretation = formatter_.SMPTEStringInterpretation(),
          .negatives = formatter_.allowsNegative(),
          .subframes = formatter_.SMPTEDisplaysSubframes(),
          .quarterFrames = formatter_.SMPTEDisplaysQuarterFrames(),
          .rollover = formatter_.SMPTEHas24HourRollover()};
}

bool FieldModel::setMode(QKSMPTETimecodeMode mode) {
  const auto inMode = [&](const Ref<Object>& object) {
    auto* timecode = classCast<QKVideoTimecode>(object.get());
    return timecode ? timecode->timecodePreservingSMPTEWithMode(mode) : nullptr;
  };
  return confirm() && attempt([&](std::string* error) {
           if (!accept(inMode(value_), error)) return false;
           const auto minimum = inMode(formatter_.minimum());
           const auto maximum = inMode(formatter_.maximum());
           formatter_.setMinimum(nullptr);
           formatter_.setMaximum(maximum.get());
           formatter_.setMinimum(minimum.get());
           formatter_.setDefaultObjectPrototype(zeroInMode(mode));
           return true;
         });
}

bool FieldModel::cycleMode(std::int64_t count) {
  const auto modes = static_cast<std::int64_t>(std::size(kTimecodeModeTable));
  const std::int64_t next = (value_->timecodeMode() + count % modes + modes) % modes;
  return setMode(static_cast<QKSMPTETimecodeMode>(next));
}

void FieldModel::toggleInterpretation() {
  const bool preserving = formatter_.SMPTEStringInterpretation() == OrbSMPTEStringInterpretationPreservingUpper;
  formatter_.setSMPTEStringInterpretation(preserving ? OrbSMPTEStringInterpretationDiscardingUpper
                                                     : OrbSMPTEStringInterpretationPreservingUpper);
  clearMessage();
}

bool FieldModel::toggleNegatives() {
  if (!confirm()) return false;
  if (value_->isNegative()) {
    message_ = {"The value is negative: negatives stay on.", true};
    return false;
  }
  formatter_.setAllowsNegative(!formatter_.allowsNegative());
  return true;
}

void FieldModel::toggleSubframes() {
  if (confirm()) showFrameDivision(!formatter_.SMPTEDisplaysSubframes(), false);
}

void FieldModel::toggleQuarterFrames() {
  if (confirm()) showFrameDivision(false, !formatter_.SMPTEDisplaysQuarterFrames());
}

void FieldModel::toggleRollover() {
  if (confirm()) formatter_.setSMPTEHas24HourRollover(!formatter_.SMPTEHas24HourRollover());
}

void FieldModel::showFrameDivision(bool subframes, bool quarterFrames) {
  formatter_.setSMPTEDisplaysSubframes(subframes);
  formatter_.setSMPTEDisplaysQuarterFrames(quarterFrames);
  keepSelectionVisible();
}

bool FieldModel::parseBound(std::string_view entry, Ref<QKVideoTimecode>* bound) {
  QKTimecodeFormatter plain(formatter_);
  plain.setMinimum(nullptr);
  plain.setMaximum(nullptr);
  plain.setAllowsNegative(true);
  plain.setCurrentTimecode(zeroInMode(value_->timecodeMode()));
  return attempt([&](std::string* error) {
    Ref<Object> result;
    if (!parse(plain, entry, &result, error)) return false;
    *bound = fieldValue(result, error);
    if (*bound && (*bound)->isNegative() && !formatter_.allowsNegative()) {
      *error = "Negatives are off.";
    }
    return error->empty();
  });
}

bool FieldModel::setMinimum(std::string_view entry) {
  Ref<QKVideoTimecode> bound;
  if (!parseBound(entry, &bound)) return false;
  const auto maximum = formatter_.maximum();
  if (maximum && bound->compare(*maximum) > 0) {
    message_ = {"The minimum is above the maximum.", true};
    return false;
  }
  formatter_.setMinimum(bound.get());
  return true;
}

bool FieldModel::setMaximum(std::string_view entry) {
  Ref<QKVideoTimecode> bound;
  if (!parseBound(entry, &bound)) return false;
  const auto minimum = formatter_.minimum();
  if (minimum && bound->compare(*minimum) < 0) {
    message_ = {"The maximum is below the minimum.", true};
    return false;
  }
  formatter_.setMaximum(bound.get());
  return true;
}

void FieldModel::toggleMinimum() {
  if (confirm()) formatter_.setMinimum(formatter_.minimum() ? nullptr : value_.get());
}

void FieldModel::toggleMaximum() {
  if (confirm()) formatter_.setMaximum(formatter_.maximum() ? nullptr : value_.get());
}

// Without rollover the formatter holds to 99 hours as well as to the bounds it was given. It is asked where it stops: at
// the end of an entry that is far too large.
std::string FieldModel::range() const {
  QKTimecodeFormatter formatter(formatter_);
  formatter.setSMPTEHas24HourRollover(false);  // shows hours past 24
  Ref<Object> minimum = formatter_.minimum();
  Ref<Object> maximum = formatter_.maximum();
  if (!minimum && !formatter_.allowsNegative()) minimum = zeroInMode(value_->timecodeMode());
  if (!formatter_.SMPTEHas24HourRollover()) {
    const auto reach = [&](std::string_view entry, Ref<Object>* end) {
      formatter.setCurrentTimecode(zeroInMode(value_->timecodeMode()));
      formatter.getObjectValue(end, entry, nullptr);
    };
    reach("-1000:00:00:00", &minimum);
    reach("+1000:00:00:00", &maximum);
  }
  const auto text = [&](Object* end) { return formatter.stringForObjectValue(end).value_or(""); };
  if (minimum && maximum) return "from " + text(minimum.get()) + " to " + text(maximum.get());
  if (minimum) return "from " + text(minimum.get()) + " up";
  if (maximum) return "up to " + text(maximum.get());
  return "no limits";
}

// ---- Value ----

std::string FieldModel::label() const {
  try {
    return formatter_.stringForObjectValue(value_.get()).value_or("");
  } catch (const InternalInconsistencyFailure& failure) {
    return "(" + firstLine(failure.what()) + ")";
  }
}

std::string FieldModel::frames() const {
  std::string text;
  appendInteger(text, value_->signedVideoFrames());
  return text;
}

std::string FieldModel::seconds() const {
  constexpr std::uint64_t kParts = 10000000;
  const MediaTime time = value_->timeValue();
  const auto rate = static_cast<std::uint64_t>(time.timescale);  // [1, 2^31)
  const std::uint64_t ticks = time.value < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(time.value)
                                             : static_cast<std::uint64_t>(time.value);
  std::uint64_t whole = ticks / rate;
  std::uint64_t parts = (ticks % rate * kParts + rate / 2) / rate;  // [0, kParts]
  whole += parts / kParts;
  parts %= kParts;
  std::string text = time.value < 0 ? "-" : "";
  appendInteger(text, whole);
  text += '.';
  appendPadded(text, static_cast<std::int64_t>(parts), 7);
  return text;
}

bool FieldModel::takeEntry(std::string_view entry) {
  return attempt([&](std::string* error) {
    Ref<Object> result;
    formatter_.setCurrentTimecode(copyOf(*value_));
    return parse(formatter_, entry, &result, error) && accept(result, error);
  });
}

bool FieldModel::takeFirstEntry(std::string_view entry) {
  Ref<QKVideoTimecode> ignored;
  return parseBound(entry, &ignored) && takeEntry(entry);
}

// ---- Segments ----

std::int64_t FieldModel::segmentCount() const { return formatter_.segmentCountInObjectValue(value_.get()); }

std::int64_t FieldModel::selectedIndex() const { return formatter_.segmentIndexForTag(tag_, value_.get()); }

void FieldModel::keepSelectionVisible() {
  if (selectedIndex() < 0 || selectedIndex() >= segmentCount()) {
    tag_ = formatter_.defaultSelectedSegmentTagInObjectValue(value_.get());
  }
}

FieldText FieldModel::shown() const {
  FieldText field{label(), formatter_.substringRangeForSegmentWithTag(tag_, value_.get())};
  // Of a field with three frame digits every range has three characters, a separator among them.
  std::string_view segment = substring(field.text, field.selected);
  while (!segment.empty() && !isDigit(segment.back())) segment.remove_suffix(1);
  while (!segment.empty() && !isDigit(segment.front()) && segment.front() != '-') {
    segment.remove_prefix(1);
    ++field.selected.location;
  }
  if (typing_ == Typing::Segment && !segmentIsSet_) {
    std::string typed = typed_;
    const auto width = formatter_.segmentFieldWidthForTag(tag_, value_.get());
    typed.resize(std::max(typed.size(), static_cast<std::size_t>(width)), '_');
    const auto start = static_cast<std::size_t>(segment.data() - field.text.data());
    field.text.replace(start, segment.size(), typed);
    field.selected.length = typed.size();
  } else {
    field.selected.length = characterCount(segment);
  }
  return field;
}

std::string_view FieldModel::selectedName() const {
  return tag_ >= 0 && tag_ < std::ssize(kSegmentNames) ? kSegmentNames[tag_] : "";
}

bool FieldModel::select(std::int64_t index) {
  if (!confirm()) return false;
  tag_ = formatter_.segmentTagForIndex(index, value_.get());
  return true;
}

bool FieldModel::selectBy(std::int64_t count) {
  return select(std::clamp<std::int64_t>(selectedIndex() + count, 0, segmentCount() - 1));
}

bool FieldModel::selectInRoundBy(std::int64_t count) {
  const std::int64_t segments = segmentCount();
  return select((selectedIndex() + count % segments + segments) % segments);
}

bool FieldModel::selectFirst() { return select(0); }

bool FieldModel::selectLast() { return select(segmentCount() - 1); }

bool FieldModel::step(std::int64_t count) {
  return confirm() && attempt([&](std::string* error) {
           Ref<Object> result;
           formatter_.getObjectValueIncrementingSegmentWithTag(&result, tag_, count, value_.get());
           return accept(result, error);
         });
}

bool FieldModel::zeroSegment() { return confirm() && setSegment("0", *value_); }

// ---- Typing ----

bool FieldModel::segmentTakes(const std::string& text) {
  const auto* formatter = formatter_.formatterForSegmentTag(tag_, value_.get());
  return formatter && formatter->isPartialStringValid(text, nullptr, nullptr);
}

bool FieldModel::setSegment(const std::string& text, const QKVideoTimecode& start) {
  return attempt([&](std::string* error) {
    Ref<Object> result;
    const auto edited = copyOf(start);  // typing into a segment changes the value it is given
    return formatter_.getObjectValueForSegmentWithTag(&result, text, tag_, edited.get(), error) &&
           accept(result, error);
  });
}

bool FieldModel::type(char character) {
  clearMessage();
  if (typing_ == Typing::Entry) {
    typeIntoEntry(character);
    return true;
  }
  if (typing_ == Typing::Nothing) untypedValue_ = value_;
  if (typeIntoSegment(character)) return true;

  const auto legal = formatter_.legalCharacterSet();
  if (!legal || !legal->contains(static_cast<unsigned char>(character))) {
    if (typing_ == Typing::Nothing) endTyping();
    return false;
  }
  value_ = untypedValue_;
  typing_ = Typing::Entry;
  typeIntoEntry(character);
  return true;
}

bool FieldModel::typeIntoSegment(char character) {
  const std::string text = typed_ + character;
  if (!segmentTakes(text)) return false;
  typing_ = Typing::Segment;
  typed_ = text;
  cursor_ = typed_.size();
  const bool isFull = !segmentTakes(text + '0');
  segmentIsSet_ = isFull && setSegment(typed_, *untypedValue_);
  return true;
}

void FieldModel::typeIntoEntry(char character) {
  if (typed_.size() >= kLongestEntry) {
    message_ = {"No entry is longer than that.", true};
    return;
  }
  typed_.insert(cursor_++, 1, character);
  remarkOnEntry();
}

// What an editor would refuse to take is only remarked on, so that nothing typed or pasted gets lost.
void FieldModel::remarkOnEntry() {
  clearMessage();
  std::string error;
  if (!formatter_.isPartialStringValid(typed_, nullptr, &error)) message_ = {error, !error.empty()};
}

bool FieldModel::openEntry() {
  if (!confirm()) return false;
  typing_ = Typing::Entry;
  untypedValue_ = value_;
  return true;
}

bool FieldModel::confirm() {
  clearMessage();
  switch (typing_) {
    case Typing::Nothing: return true;
    case Typing::Segment:
      if (!segmentIsSet_ && !setSegment(typed_, *untypedValue_)) return false;
      break;
    case Typing::Entry:
      if (typed_.find_first_not_of(' ') != std::string::npos && !takeEntry(typed_)) return false;
      break;
  }
  endTyping();
  return true;
}

void FieldModel::giveUp() {
  clearMessage();
  if (typing_ == Typing::Nothing) return;
  value_ = untypedValue_;
  endTyping();
}

void FieldModel::endTyping() {
  typing_ = Typing::Nothing;
  typed_.clear();
  cursor_ = 0;
  segmentIsSet_ = false;
  untypedValue_ = nullptr;
}

void FieldModel::eraseBefore() {
  if (typing_ == Typing::Segment) {
    std::string rest = typed_.substr(0, typed_.size() - 1);
    giveUp();
    for (const char character : rest) type(character);
  } else if (typing_ == Typing::Entry && cursor_ > 0) {
    typed_.erase(--cursor_, 1);
    remarkOnEntry();
  }
}

void FieldModel::eraseAfter() {
  if (typing_ != Typing::Entry) return;
  typed_.erase(cursor_, 1);
  remarkOnEntry();
}

void FieldModel::eraseAll() {
  if (typing_ == Typing::Segment) return giveUp();
  typed_.clear();
  cursor_ = 0;
  clearMessage();
}

void FieldModel::moveCursorBy(std::int64_t count) {
  const auto size = static_cast<std::int64_t>(typed_.size());  // [0, kLongestEntry]
  const auto cursor = static_cast<std::int64_t>(cursor_);
  cursor_ = static_cast<std::size_t>(cursor + std::clamp(count, -cursor, size - cursor));
}

}  // namespace field
