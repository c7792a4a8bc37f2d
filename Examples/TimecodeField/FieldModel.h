// FieldModel: one timecode that is shown in several formats, a row each, and edited in one of them, as a field editor
// keeps it: a formatter, the value, the segment that is selected, and what has been typed but not been taken yet.
//
// - It reads no keys and draws nothing.
// - Everything about a notation is asked of the formatter: segments, places in the text, what may be typed, steps.
// - The row being edited is the formatter's format. The other rows show the same value through their formats' deputies.
// - What fails leaves the value, the settings, the selection and the typed text as they are, and says why in message().
//
// Rooms: Settings; Value; Segments; Typing; Storage.
#pragma once

#include "../Shared/Parameters.h"
#include "Framework/QKExtendedTimecode.h"
#include "Framework/QKTimecodeFormatter.h"
#include "ModelParts.h"

#include <cstddef>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

namespace field {

// The class of value that all rows can show.
using Timecode = quill::QKExtendedTimecode;

struct Row {
  quill::QKTimecodeFormat format;
  std::string_view name;
  // Digits that a number in an entry may have, so that 64 bits of ticks hold it; the first two formats stop by themselves.
  std::size_t digits;
  std::string_view segments[7];  // their names, by tag
};

inline constexpr std::size_t kAnyDigits = std::string_view::npos;

// Row i is format i.
inline constexpr Row kRows[] = {
    {quill::QKTimecodeFormatSMPTE,
     "smpte",
     kAnyDigits,
     {"hours", "minutes", "seconds", "frames", "subframes", "quarter frames"}},
    {quill::QKTimecodeFormatHMS, "hms", kAnyDigits, {"hours", "minutes", "seconds", "fraction"}},
    {quill::QKTimecodeFormatVideoFrames, "frames", 10, {"frames", "thousands", "millions", "billions"}},
    {quill::QKTimecodeFormatAudioFrames, "samples", 12, {"samples", "thousands", "millions", "billions"}},
    {quill::QKTimecodeFormatSeconds, "seconds", 9, {"seconds", "thousands", "millions", "billions"}},
    {quill::QKTimecodeFormatBarsBeats, "bars", 8, {"bars", "beats", "divisions", "ticks"}},
    {quill::QKTimecodeFormatFeetFrames, "feet", 8, {"feet", "frames", "quarter frames"}},
};

using examples::firstLine;

class FieldModel {
 public:
  // Zero at 29.97 drop-frame, 48000 audio frames a second, 120 beats a minute in 4/4 and on 35 mm film of 4 perforations
  // a frame, as SMPTE with 24-hour rollover.
  FieldModel();
  FieldModel(const FieldModel&) = delete;
  FieldModel& operator=(const FieldModel&) = delete;

  // Takes a value and a formatter as another field had them. Fails for those that no field can have.
  bool restore(const quill::Ref<Timecode>& value, const quill::QKTimecodeFormatter& formatter);

  const Timecode& value() const { return *value_; }
  const quill::QKTimecodeFormatter& formatter() const { return formatter_; }

  // What the last operation had to say; empty after one that went well without a word.
  const Message& message() const { return message_; }
  void clearMessage() { message_ = {}; }

  // ---- Settings ----
  //
  // By texts, as a command line or an entry has them; switches are "on" or "off".

  bool setFormat(std::string_view name);
  // The label stays: hours, minutes, seconds, frames and subframes, of the value and of both bounds.
  bool setMode(std::string_view name);
  // Audio frames a second.
  bool setAudioRate(std::string_view rate);
  bool setFilm(std::string_view name);
  // Beats a minute. The position in bars and beats stays and the time moves; that of a negative value stays.
  bool setTempo(std::string_view tempo);
  // "6/8"
  bool setSignature(std::string_view signature);
  // Decimal places of the formats that have them, 0 to 9.
  bool setDecimals(std::string_view places);
  // "preserving" or "discarding".
  bool setInterpretation(std::string_view rule);
  // A negative value keeps negatives on.
  bool setNegatives(std::string_view state);
  // Each switches the other one off.
  bool setSubframes(std::string_view state);
  bool setQuarterFrames(std::string_view state);
  bool setRollover(std::string_view state);
  // A bound is an entry, read as if typed over zero; it brings the value within. Fails also for a negative one while
  // negatives are off, and for a minimum above the maximum.
  bool setMinimum(std::string_view entry);
  bool setMaximum(std::string_view entry);

  // So many rows, modes or film types further, round and round.
  void cycleFormat(std::int64_t count);
  bool cycleMode(std::int64_t count);
  bool cycleFilm(std::int64_t count);
  // So many decimal places more, within 0 and 9.
  void addDecimals(std::int64_t count);
  void toggleInterpretation();
  bool toggleNegatives();
  void toggleSubframes();
  void toggleQuarterFrames();
  void toggleRollover();
  // The present value as a bound, or none where there is one.
  void toggleMinimum();
  void toggleMaximum();

  // "from 00:00:00;00 to 99:59:59;29", "from ... up", "up to ...", "no limits", in the format being edited.
  std::string range() const;

  // ---- Value ----

  // In a format: "-01:00:12;04"; "error: ..." where the value has no text in it.
  std::string text(quill::QKTimecodeFormat format) const;
  // In the format being edited.
  std::string text() const { return text(formatter_.timecodeFormat()); }
  // Whole video frames, toward zero: "-107892".
  std::string frames() const;
  // With seven places: "-3599.9964000".
  std::string seconds() const;

  // Takes a whole entry.
  bool takeEntry(std::string_view entry);
  // The same, but a negative result fails while negatives are off instead of becoming zero.
  bool setValue(std::string_view entry);

  // ---- Segments ----

  // The text with what is being typed in its place: "01:00:12;1_".
  FieldText shown() const;
  // "frames"
  std::string_view selectedName() const;

  // To the left and right; stops at the ends.
  bool selectBy(std::int64_t count);
  bool selectFirst();
  bool selectLast();
  bool step(std::int64_t count);
  bool zeroSegment();

  // ---- Typing ----
  //
  // Characters go to the selected segment as long as its formatter can make something of them. The segment is set at
  // once when it is full, else when it is left. A character too many, a sign or a separator that the segment does not
  // take turns what was typed into a whole entry, which is taken with confirm().
  //
  // Whoever changes a setting, selects or steps calls confirm() first.

  enum class Typing : std::uint8_t { Nothing, Segment, Entry };

  // What an open entry is for.
  struct Purpose {
    std::string_view name;
    bool (FieldModel::*take)(std::string_view entry);
  };
  static const Purpose kEntry, kAudioRate, kTempo, kSignature;

  Typing typing() const { return typing_; }
  const Purpose& purpose() const { return *purpose_; }
  // What was typed, and the place in it where the next character goes.
  const std::string& typed() const { return typed_.text(); }
  std::size_t cursor() const { return typed_.cursor(); }

  // A printable ASCII character. False for one that nothing can be made of, which only an open entry takes all the same
  // and remarks on.
  bool type(char character);
  // Opens an empty entry.
  void openEntry(const Purpose& purpose);
  void openEntry() { openEntry(kEntry); }
  // Takes what was typed. An entry that fails stays open; an empty one just closes.
  bool confirm();
  // Forgets what was typed, and what it has already set.
  void giveUp();
  void eraseBefore();
  void eraseAfter();
  void eraseAll();
  // Negative to the left, as far as the text goes.
  void moveCursorBy(std::int64_t count) { typed_.moveCursorBy(count); }

 private:
  using Operation = std::function<bool(std::string* error)>;
  using Conversion = std::function<quill::Ref<quill::Object>(Timecode& timecode)>;

  bool attempt(const Operation& operation);
  bool fail(std::string_view text);
  static bool render(const quill::QKTimecodeFormatter& formatter, quill::QKTimecodeFormat format, Timecode& timecode,
                     std::string* text);
  bool accept(const quill::Ref<quill::Object>& result, std::string* error);
  bool convert(const Conversion& conversion);
  bool change(const std::function<void(Timecode& timecode)>& edit);
  static bool hasSoundSettings(const Timecode& timecode);
  void changeFormat(quill::QKTimecodeFormat format);
  bool changeMode(quill::QKSMPTETimecodeMode mode);
  bool changeFilm(quill::QKFilmType type);
  void showFrameDivision(bool subframes, bool quarterFrames);
  bool setSwitch(std::string_view state, const std::function<void(bool isOn)>& set);
  void keepSelectionVisible();
  bool read(std::string_view entry, const Timecode& start, quill::Ref<Timecode>* result);
  quill::Ref<Timecode> zero() const;
  std::int64_t segmentCount() const;
  std::int64_t selectedIndex() const;
  bool select(const std::function<std::int64_t()>& index);
  bool segmentTakes(const std::string& text);
  bool setSegment(const std::string& text, const Timecode& start);
  bool typeIntoSegment(char character);
  void typeIntoEntry(char character);
  void remarkOnEntry();
  void endTyping();

  // ---- Storage ----

  quill::QKTimecodeFormatter formatter_;
  quill::Ref<Timecode> value_;
  std::int64_t tag_ = 0;  // of the selected segment
  Message message_;
  Typing typing_ = Typing::Nothing;
  const Purpose* purpose_ = &kEntry;
  EntryText typed_;
  bool segmentIsSet_ = false;          // typed_ is in value_ already
  quill::Ref<Timecode> untypedValue_;  // value_ before the typing
};

}  // namespace field
