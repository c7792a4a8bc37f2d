// FieldModel: one editable SMPTE field as a field editor keeps it: a formatter, the value that it shows, the segment that
// is selected, and what has been typed but not been taken yet.
//
// - It reads no keys and draws nothing.
// - Everything about the notation is asked of the formatter: segments, places in the text, what may be typed, steps.
// - What fails leaves the value, the selection and the typed text as they are, and says why in message().
//
// Rooms: Settings; Value; Segments; Typing; Storage.
#pragma once

#include "Framework/QKTimecodeFormatter.h"
#include "Framework/QKVideoTimecode.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace field {

struct Settings {
  quill::QKSMPTETimecodeMode mode = quill::QKSMPTETimecodeMode_2997Drop;
  quill::OrbSMPTEStringInterpretation interpretation = quill::OrbSMPTEStringInterpretationPreservingUpper;
  bool negatives = false;
  bool subframes = false;  // not together with quarterFrames
  bool quarterFrames = false;
  bool rollover = true;
};

struct Message {
  std::string text;
  bool isError = false;
};

// The field as drawn: its text, and which characters of it are the selected segment.
struct FieldText {
  std::string text;
  quill::Range selected;
};

// The first line of a text for people, without control characters.
std::string firstLine(std::string_view text);

class FieldModel {
 public:
  // Zero, the formatter's default segment selected.
  explicit FieldModel(const Settings& settings);
  FieldModel(const FieldModel&) = delete;
  FieldModel& operator=(const FieldModel&) = delete;

  // What the last operation had to say; empty after one that went well without a word.
  const Message& message() const { return message_; }
  void clearMessage() { message_ = {}; }

  // ---- Settings ----

  Settings settings() const;
  // The label stays: hours, minutes, seconds, frames and subframes, of the value and of both bounds.
  bool setMode(quill::QKSMPTETimecodeMode mode);
  // So many modes further in the table of the nineteen, round and round.
  bool cycleMode(std::int64_t count);
  void toggleInterpretation();
  // A negative value keeps negatives on.
  bool toggleNegatives();
  // Each switches the other one off.
  void toggleSubframes();
  void toggleQuarterFrames();
  void toggleRollover();

  // A bound as an entry, read as if typed over zero. Fails also for a negative one while negatives are off, and for a
  // minimum above the maximum.
  bool setMinimum(std::string_view entry);
  bool setMaximum(std::string_view entry);
  // The present value as a bound, or none where there is one.
  void toggleMinimum();
  void toggleMaximum();
  // "from 00:00:00;00 to 99:59:59;29", "from ... up", "up to ...", "no limits".
  std::string range() const;

  // ---- Value ----

  // "-01:00:12;04"
  std::string label() const;
  // Whole frames, toward zero: "-107892".
  std::string frames() const;
  // With seven places, which tell apart two ticks of any mode: "-3599.9964000".
  std::string seconds() const;

  // Takes a whole entry.
  bool takeEntry(std::string_view entry);
  // The same for a first value: a negative entry fails while negatives are off.
  bool takeFirstEntry(std::string_view entry);

  // ---- Segments ----

  // The label with what is being typed in its place: "01:00:12;1_".
  FieldText shown() const;
  // "frames"
  std::string_view selectedName() const;

  // Each first takes what was typed, and stays where that fails. To the left and right it stops at the ends, in a round
  // it goes on at the other end.
  bool selectBy(std::int64_t count);
  bool selectInRoundBy(std::int64_t count);
  bool selectFirst();
  bool selectLast();
  bool step(std::int64_t count);
  bool zeroSegment();

  // ---- Typing ----
  //
  // Characters go to the selected segment as long as its formatter can make something of them. The segment is set at
  // once when it is full, else when it is left. A character too many, a sign or a separator that the segment does not
  // take turns what was typed into a whole entry, which is taken with confirm().

  enum class Typing : std::uint8_t { Nothing, Segment, Entry };

  Typing typing() const { return typing_; }
  // What was typed, and the place in it where the next character goes.
  const std::string& typed() const { return typed_; }
  std::size_t cursor() const { return cursor_; }

  // A printable ASCII character. False for one that nothing can be made of, which only an open entry takes all the same
  // and remarks on.
  bool type(char character);
  // Opens an empty entry.
  bool openEntry();
  // Takes what was typed. An entry that fails stays open; an empty one just closes.
  bool confirm();
  // Forgets what was typed, and what it has already set.
  void giveUp();
  void eraseBefore();
  void eraseAfter();
  void eraseAll();
  // Negative to the left, as far as the text goes.
  void moveCursorBy(std::int64_t count);

 private:
  using Operation = std::function<bool(std::string* error)>;

  bool attempt(const Operation& operation);
  bool accept(const quill::Ref<quill::Object>& result, std::string* error);
  bool parseBound(std::string_view entry, quill::Ref<quill::QKVideoTimecode>* bound);
  bool select(std::int64_t index);
  std::int64_t selectedIndex() const;
  std::int64_t segmentCount() const;
  void keepSelectionVisible();
  void showFrameDivision(bool subframes, bool quarterFrames);
  bool segmentTakes(const std::string& text);
  bool setSegment(const std::string& text, const quill::QKVideoTimecode& start);
  bool typeIntoSegment(char character);
  void typeIntoEntry(char character);
  void remarkOnEntry();
  void endTyping();

  // ---- Storage ----

  quill::QKTimecodeFormatter formatter_;
  quill::Ref<quill::QKVideoTimecode> value_;
  std::int64_t tag_ = 0;  // of the selected segment
  Message message_;
  Typing typing_ = Typing::Nothing;
  std::string typed_;
  std::size_t cursor_ = 0;                           // in [0, typed_.size()]
  bool segmentIsSet_ = false;                        // typed_ is in value_ already
  quill::Ref<quill::QKVideoTimecode> untypedValue_;  // value_ before the typing
};

}  // namespace field
