// NumberModel: a plain number that is scrubbed digit by digit or as a whole, as a field editor keeps it: a scrubbable
// number formatter, the value, the digit that is selected, and an entry that has been typed but not been taken yet.
//
// - It reads no keys and draws nothing. A form treats it as it treats a FieldModel.
// - The selection is a power of ten. It stays when the number grows or shrinks; a digit in front of the number steps too.
// - What fails leaves all as it is, and says why in message().
//
// Rooms: Settings; Value; Segments; Typing; Storage.
#pragma once

#include "Framework/QKScrubbableNumberFormatter.h"
#include "ModelParts.h"

#include <vector>

namespace field {

struct NumberSegment {
  std::string name;  // "tens", "10^12"; "number" for a whole one
  std::string text;
};

class NumberModel {
 public:
  // Zero, digit by digit, with six decimals; a whole number has none.
  NumberModel();
  NumberModel(const NumberModel&) = delete;
  NumberModel& operator=(const NumberModel&) = delete;

  const Message& message() const { return message_; }
  void clearMessage() { message_ = {}; }

  // ---- Settings ----

  // "digits" or "whole".
  bool setScrubbing(std::string_view name);
  std::string_view scrubbing() const;
  // Decimal places of both, 0 to 9.
  bool setDecimals(std::string_view places);
  // A bound is an entry; it brings the value within. Fails also for a minimum above the maximum.
  bool setMinimum(std::string_view entry);
  bool setMaximum(std::string_view entry);

  // An odd count changes to the other type.
  void cycleFormat(std::int64_t count);
  // So many decimal places more, within 0 and 9.
  void addDecimals(std::int64_t count);
  // The present value as a bound, or none where there is one.
  void toggleMinimum();
  void toggleMaximum();

  std::string range() const;

  // ---- Value ----

  std::string text() const;
  // Takes a whole entry. Beyond a bound it is the bound; without one it fails beyond 64 bits.
  bool takeEntry(std::string_view entry);

  // ---- Segments ----

  FieldText shown() const;
  std::string selectedName() const { return nameOf(tag_); }
  // All of them, from the left.
  std::vector<NumberSegment> segments() const;

  // To the left and right; stops at the ends. A whole number is one segment: to one with decimals this adds tenths.
  void selectBy(std::int64_t count);
  void selectFirst();
  void selectLast();
  void step(std::int64_t count);
  // The whole number, in either type.
  bool zeroSegment() { return takeEntry("0"); }

  // ---- Typing ----
  //
  // With single digits a digit goes into the selected segment at once, where it counts as units: 5 typed into the tens of
  // 123 gives 108. All else that a number can begin with starts a whole entry, which is taken with confirm().

  enum class Typing : std::uint8_t { Nothing, Entry };

  Typing typing() const { return typing_; }
  const std::string& typed() const { return typed_.text(); }
  std::size_t cursor() const { return typed_.cursor(); }

  // A printable ASCII character. False for one that no entry begins with.
  bool type(char character);
  void openEntry() { typing_ = Typing::Entry; }
  // Takes what was typed. An entry that fails stays open; an empty one just closes.
  bool confirm();
  void giveUp();
  void eraseBefore() { typed_.eraseBefore(); }
  void eraseAfter() { typed_.eraseAfter(); }
  void eraseAll() { typed_.clear(); }
  void moveCursorBy(std::int64_t count) { typed_.moveCursorBy(count); }

 private:
  using Formatter = quill::QKScrubbableNumberFormatter;

  bool fail(std::string_view text);
  bool isWhole() const { return formatter_.scrubbingType() == quill::kWholeNumberScrubbing; }
  void applyDecimals(std::int64_t places);
  // Reads an entry within the bounds of a formatter.
  bool read(Formatter& formatter, std::string_view entry, quill::Number* number);
  bool readBound(std::string_view entry, quill::Number* bound);
  void keepWithinBounds();
  std::int64_t selectedIndex() const { return formatter_.segmentIndexForTag(tag_, value_.get()); }
  void select(std::int64_t index);
  std::string nameOf(std::int64_t tag) const;

  // ---- Storage ----

  Formatter formatter_;
  quill::Ref<quill::Object> value_ = std::make_shared<quill::Number>(0.0);
  std::int64_t tag_ = 0;  // of the selected digit, also while the number is whole
  Message message_;
  Typing typing_ = Typing::Nothing;
  EntryText typed_;
};

}  // namespace field
