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

// What the formatter gave, as a value that this field can have. Amounts that 64 bits of ticks cannot hold end at, or near,
// the last tick that they can: the field ends halfway there, more than half a million hours from zero.
Ref<Timecode> fieldValue(const Ref<Object>& result, std::string* error) {
  constexpr std::int64_t kLastTick = INT64_MAX / 2;
  const auto* timecode = classCast<Timecode>(result.get());
  if (!timecode) {
    *error = "This field always has a value.";
    return nullptr;
  }
  const MediaTime time = timecode->timeValue();
  if (!time.isNumeric() || time.timescale <= 0 || time.value < -kLastTick || time.value > kLastTick) {
    *error = "Out of range.";
    return nullptr;
  }
  return std::static_pointer_cast<Timecode>(result);
}

// Reads an entry over the formatter's current timecode. Parsing passes over what it cannot read behind the last field;
// an editor does not: it lets nothing stand that its formatter finds illegal.
bool parse(QKTimecodeFormatter& formatter, std::string_view entry, Ref<Object>* result, std::string* error) {
  entry.remove_prefix(std::min(entry.find_first_not_of(" \t"), entry.size()));
  return formatter.getObjectValue(result, entry, error) && formatter.isPartialStringValid(entry, nullptr, error);
}

}  // namespace

std::string firstLine(std::string_view text) {
  std::string line(text.substr(0, text.find('\n')));
  std::erase_if(line, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  return line;
}

FieldModel::FieldModel()
    : value_(std::make_shared<Timecode>(Number(0), QKTimecodeBestTimeRate, QKSMPTETimecodeMode_2997Drop, 48000)) {
  formatter_.setDefaultObjectPrototype(zero());
  formatter_.setHMSHas24HourRollover(true);  // as the SMPTE format has it
  changeFormat(QKTimecodeFormatSMPTE);
}

bool FieldModel::restore(const Ref<Timecode>& value, const QKTimecodeFormatter& formatter) {
  return attempt([&](std::string* error) {
    const auto isSound = [&](const Ref<Object>& object) {
      const auto timecode = fieldValue(object, error);
      return timecode && timecodeModeRow(timecode->timecodeMode()) && timecode->audioFrameRate() > 0 &&
             (formatter.allowsNegative() || !timecode->isNegative());
    };
    const auto minimum = formatter.minimum(), maximum = formatter.maximum();
    bool works = isSound(value) && (!minimum || isSound(minimum)) && (!maximum || isSound(maximum)) &&
                 static_cast<std::uint64_t>(formatter.timecodeFormat()) < std::size(kRows);
    for (const Row& row : kRows) works = works && formatter.deputyForFormat(row.format);
    if (!works) {
      *error = "No field can have that value with those settings.";
      return false;
    }
    value_ = value;
    formatter_ = formatter;
    formatter_.setDefaultObjectPrototype(zero());
    changeFormat(formatter.timecodeFormat());
    return true;
  });
}

// Runs something that can fail. Where the state of a value breaks a contract of the library, that is a failure too.
bool FieldModel::attempt(const Operation& operation) {
  std::string error;
  try {
    if (operation(&error)) {
      clearMessage();
      return true;
    }
  } catch (const InternalInconsistencyFailure& failure) {
    error = failure.what();
  }
  return fail(firstLine(error));
}

bool FieldModel::fail(std::string_view text) {
  message_ = {std::string(text), true};
  return false;
}

bool FieldModel::accept(const Ref<Object>& result, std::string* error) {
  const auto value = fieldValue(result, error);
  if (value) value_ = value;
  return value != nullptr;
}

// Changes the value, both bounds and the prototype alike. Where one of them cannot follow, nothing changes.
bool FieldModel::convert(const Conversion& conversion) {
  return attempt([&](std::string* error) {
    const auto converted = [&](const Ref<Object>& object) -> Ref<Timecode> {
      auto* timecode = classCast<Timecode>(object.get());
      return timecode ? fieldValue(conversion(*timecode), error) : nullptr;
    };
    const auto value = converted(value_);
    const auto minimum = converted(formatter_.minimum());
    const auto maximum = converted(formatter_.maximum());
    if (!error->empty()) return false;
    value_ = value;
    formatter_.setMinimum(nullptr);
    formatter_.setMaximum(maximum.get());
    formatter_.setMinimum(minimum.get());
    formatter_.setDefaultObjectPrototype(zero());
    return true;
  });
}

Ref<Timecode> FieldModel::zero() const {
  const auto zero = copyOf(*value_);
  zero->clearTimecode();
  return zero;
}

// Reads an entry over a value, without bounds.
bool FieldModel::read(std::string_view entry, const Timecode& start, Ref<Timecode>* result) {
  QKTimecodeFormatter plain(formatter_);
  plain.setMinimum(nullptr);
  plain.setMaximum(nullptr);
  plain.setAllowsNegative(true);
  plain.setCurrentTimecode(copyOf(start));
  return attempt([&](std::string* error) {
    Ref<Object> object;
    if (!parse(plain, entry, &object, error)) return false;
    *result = fieldValue(object, error);
    if (*result && (*result)->isNegative() && !formatter_.allowsNegative()) *error = "Negatives are off.";
    return error->empty();
  });
}

// ---- Value ----

std::string FieldModel::text(QKTimecodeFormat format) const {
  try {
    return formatter_.deputyForFormat(format)->stringForObjectValue(value_.get(), formatter_);
  } catch (const InternalInconsistencyFailure& failure) {
    return "error: " + firstLine(failure.what());
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

bool FieldModel::setValue(std::string_view entry) {
  Ref<Timecode> ignored;
  return read(entry, *value_, &ignored) && takeEntry(entry);
}

// ---- Segments ----

std::int64_t FieldModel::segmentCount() const { return formatter_.segmentCountInObjectValue(value_.get()); }

std::int64_t FieldModel::selectedIndex() const { return formatter_.segmentIndexForTag(tag_, value_.get()); }

void FieldModel::keepSelectionVisible() {
  attempt([&](std::string*) {
    const std::int64_t index = selectedIndex();
    if (index < 0 || index >= segmentCount()) tag_ = formatter_.defaultSelectedSegmentTagInObjectValue(value_.get());
    return true;
  });
}

FieldText FieldModel::shown() const {
  FieldText field{text(), {}};
  try {
    field.selected = formatter_.substringRangeForSegmentWithTag(tag_, value_.get());
  } catch (const InternalInconsistencyFailure&) {
    return field;  // its text says what is wrong
  }
  // Of an SMPTE field with three frame digits every range has three characters, a separator among them.
  std::string_view segment = substring(field.text, field.selected);
  constexpr std::string_view kSeparators = ":;./";
  while (!segment.empty() && kSeparators.find(segment.back()) != std::string_view::npos) segment.remove_suffix(1);
  while (!segment.empty() && kSeparators.find(segment.front()) != std::string_view::npos) {
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
  const auto& names = kRows[formatter_.timecodeFormat()].segments;
  if (tag_ < 0) return "decimals";
  return tag_ < std::ssize(names) ? names[tag_] : "";
}

// The index is asked for where it may fail.
bool FieldModel::select(const std::function<std::int64_t()>& index) {
  return attempt([&](std::string*) {
    tag_ = formatter_.segmentTagForIndex(index(), value_.get());
    return true;
  });
}

bool FieldModel::selectBy(std::int64_t count) {
  return select([&] { return std::clamp<std::int64_t>(selectedIndex() + count, 0, segmentCount() - 1); });
}

bool FieldModel::selectFirst() {
  return select([] { return 0; });
}

bool FieldModel::selectLast() {
  return select([&] { return segmentCount() - 1; });
}

bool FieldModel::step(std::int64_t count) {
  return attempt([&](std::string* error) {
    Ref<Object> result;
    formatter_.getObjectValueIncrementingSegmentWithTag(&result, tag_, count, value_.get());
    return accept(result, error);
  });
}

bool FieldModel::zeroSegment() { return setSegment("0", *value_); }

// ---- Typing ----

const FieldModel::Purpose FieldModel::kEntry{"entry", &FieldModel::takeEntry};
const FieldModel::Purpose FieldModel::kAudioRate{"audio rate", &FieldModel::setAudioRate};

bool FieldModel::segmentTakes(const std::string& text) {
  try {
    const auto* formatter = formatter_.formatterForSegmentTag(tag_, value_.get());
    return formatter && formatter->isPartialStringValid(text, nullptr, nullptr);
  } catch (const InternalInconsistencyFailure&) {
    return false;  // as a whole entry it may still replace such a value
  }
}

bool FieldModel::setSegment(const std::string& text, const Timecode& start) {
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
    fail("No entry is longer than that.");
    return;
  }
  typed_.insert(cursor_++, 1, character);
  remarkOnEntry();
}

// What an editor would refuse to take is only remarked on, so that nothing typed or pasted gets lost.
void FieldModel::remarkOnEntry() {
  clearMessage();
  if (purpose_ != &kEntry) return;
  std::string error;
  if (!formatter_.isPartialStringValid(typed_, nullptr, &error)) message_ = {error, !error.empty()};
}

void FieldModel::openEntry(const Purpose& purpose) {
  typing_ = Typing::Entry;
  purpose_ = &purpose;
  untypedValue_ = value_;
}

bool FieldModel::confirm() {
  clearMessage();
  switch (typing_) {
    case Typing::Nothing: return true;
    case Typing::Segment:
      if (!segmentIsSet_ && !setSegment(typed_, *untypedValue_)) return false;
      break;
    case Typing::Entry:
      if (typed_.find_first_not_of(' ') != std::string::npos && !(this->*purpose_->take)(typed_)) return false;
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
  purpose_ = &kEntry;
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
