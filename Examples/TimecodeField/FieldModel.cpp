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

// False for an entry with a number that is too long for its format.
bool numbersAreShort(std::string_view entry, QKTimecodeFormat format, std::string* error) {
  std::size_t digits = 0;
  for (const char c : entry) {
    digits = c >= '0' && c <= '9' ? digits + 1 : 0;
    if (digits > kRows[format].digits) {
      *error = "Too many digits.";
      return false;
    }
  }
  return true;
}

// Reads an entry over a value. Parsing passes over what it cannot read behind the last field; an editor does not: it lets
// nothing stand that its formatter finds illegal.
//
// Bars and beats, and feet and frames, are set field by field, the highest first. Where a bar is no whole number of
// ticks, or feet differ in length, the lower fields of the value before can carry into one that is set already.
bool parse(QKTimecodeFormatter& formatter, std::string_view entry, const Ref<Timecode>& start, Ref<Object>* result,
           std::string* error) {
  entry.remove_prefix(std::min(entry.find_first_not_of(" \t"), entry.size()));
  const bool isAmount = entry.starts_with('+') || entry.starts_with('-');
  const QKTimecodeFormat format = formatter.timecodeFormat();
  if (!numbersAreShort(entry, format, error)) return false;
  formatter.setCurrentTimecode(start);
  if (format == QKTimecodeFormatBarsBeats && !isAmount && !entry.empty()) {
    start->clearTimecode();                                  // such an entry keeps nothing of the value before
    start->addBars(0, 0, 0, start->ticksPerDivision() / 2);  // far from where a field changes
  }
  if (!formatter.getObjectValue(result, entry, error) || !formatter.isPartialStringValid(entry, nullptr, error)) {
    return false;
  }
  if (format != QKTimecodeFormatFeetFrames || isAmount) return true;
  formatter.setCurrentTimecode(*result);  // which has the lower fields of the entry
  return formatter.getObjectValue(result, entry, error);
}

}  // namespace

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
      return timecode && hasSoundSettings(*timecode) && (formatter.allowsNegative() || !timecode->isNegative());
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
  return fail(error.empty() ? "That is no entry." : firstLine(error));  // a deputy may fail without a word
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

// The same by a change of a copy.
bool FieldModel::change(const std::function<void(Timecode& timecode)>& edit) {
  return convert([&](const Timecode& timecode) {
    const auto changed = copyOf(timecode);
    edit(*changed);
    return changed;
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
  return attempt([&](std::string* error) {
    Ref<Object> object;
    if (!parse(plain, entry, copyOf(start), &object, error)) return false;
    *result = fieldValue(object, error);
    if (*result && (*result)->isNegative() && !formatter_.allowsNegative()) *error = "Negatives are off.";
    return error->empty();
  });
}

// ---- Value ----

// The text of a value in a format of a formatter. False with the reason where it has none.
bool FieldModel::render(const QKTimecodeFormatter& formatter, QKTimecodeFormat format, Timecode& timecode,
                        std::string* text) {
  if (format == QKTimecodeFormatBarsBeats && timecode.isNegative()) {
    *text = "Bars and beats count from zero up.";  // below it they would say nothing
    return false;
  }
  try {
    *text = formatter.deputyForFormat(format)->stringForObjectValue(&timecode, formatter);
    return true;
  } catch (const InternalInconsistencyFailure& failure) {
    *text = firstLine(failure.what());
    return false;
  }
}

std::string FieldModel::text(QKTimecodeFormat format) const {
  std::string text;
  return render(formatter_, format, *value_, &text) ? text : "error: " + text;
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
    return parse(formatter_, entry, copyOf(*value_), &result, error) && accept(result, error);
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
  FieldText field;
  if (!render(formatter_, formatter_.timecodeFormat(), *value_, &field.text)) return {text(), {}};
  field.selected = formatter_.substringRangeForSegmentWithTag(tag_, value_.get());
  // Of an SMPTE field with three frame digits every range has three characters, a separator among them.
  std::string_view segment = substring(field.text, field.selected);
  constexpr std::string_view kSeparators = ":;./";
  while (!segment.empty() && kSeparators.find(segment.back()) != std::string_view::npos) segment.remove_suffix(1);
  while (!segment.empty() && kSeparators.find(segment.front()) != std::string_view::npos) {
    segment.remove_prefix(1);
    ++field.selected.location;
  }
  if (typing_ == Typing::Segment && !segmentIsSet_) {
    std::string typed = typed_.text();
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
const FieldModel::Purpose FieldModel::kTempo{"tempo", &FieldModel::setTempo};
const FieldModel::Purpose FieldModel::kSignature{"signature", &FieldModel::setSignature};

// A value without a text has no segments either, but a whole entry may replace it.
bool FieldModel::segmentTakes(const std::string& text) {
  std::string shown;
  if (!render(formatter_, formatter_.timecodeFormat(), *value_, &shown)) return false;
  const auto* formatter = formatter_.formatterForSegmentTag(tag_, value_.get());
  return formatter && formatter->isPartialStringValid(text, nullptr, nullptr);
}

bool FieldModel::setSegment(const std::string& text, const Timecode& start) {
  return attempt([&](std::string* error) {
    const auto edited = copyOf(start);  // typing into a segment changes the value it is given
    std::string shown;
    if (!render(formatter_, formatter_.timecodeFormat(), *edited, &shown)) {
      *error = shown;
      return false;
    }
    Ref<Object> result;
    return numbersAreShort(text, formatter_.timecodeFormat(), error) &&
           formatter_.getObjectValueForSegmentWithTag(&result, text, tag_, edited.get(), error) &&
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
  const std::string text = typed_.text() + character;
  if (!segmentTakes(text)) return false;
  typing_ = Typing::Segment;
  typed_.type(character);
  const bool isFull = !segmentTakes(text + '0');
  segmentIsSet_ = isFull && setSegment(typed_.text(), *untypedValue_);
  return true;
}

void FieldModel::typeIntoEntry(char character) {
  if (typed_.type(character)) {
    remarkOnEntry();
  } else {
    fail("No entry is longer than that.");
  }
}

// What an editor would refuse to take is only remarked on, so that nothing typed or pasted gets lost.
void FieldModel::remarkOnEntry() {
  clearMessage();
  if (purpose_ != &kEntry) return;
  std::string error;
  if (!formatter_.isPartialStringValid(typed_.text(), nullptr, &error)) message_ = {error, !error.empty()};
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
      if (!segmentIsSet_ && !setSegment(typed_.text(), *untypedValue_)) return false;
      break;
    case Typing::Entry:
      if (typed().find_first_not_of(' ') != std::string::npos && !(this->*purpose_->take)(typed())) return false;
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
  segmentIsSet_ = false;
  untypedValue_ = nullptr;
}

void FieldModel::eraseBefore() {
  if (typing_ == Typing::Segment) {
    std::string rest = typed().substr(0, typed().size() - 1);
    giveUp();
    for (const char character : rest) type(character);
  } else if (typing_ == Typing::Entry && cursor() > 0) {
    typed_.eraseBefore();
    remarkOnEntry();
  }
}

void FieldModel::eraseAfter() {
  if (typing_ != Typing::Entry) return;
  typed_.eraseAfter();
  remarkOnEntry();
}

void FieldModel::eraseAll() {
  if (typing_ == Typing::Segment) return giveUp();
  typed_.clear();
  clearMessage();
}

}  // namespace field
