// QKFormatDeputy: the base of the format deputies, each of which renders and parses one notation of a timecode value.
//
// - A notation has segments, its separately editable fields. A tag names a field of the notation for good; an index is
//   its place from the left in what is shown now, 0 being the leading segment, which carries the sign.
// - A deputy reaches a value only through the protocol that requiredProtocol names and QKBasicTimecode, which every value
//   serves as well: one that does not is not seen as negative.
// - Values come as Object pointers that are never null and are not kept; showing one may bring it to another timescale.
//   Every out-pointer may be null.
// - A derived class overrides every operation that is called abstract here; the base logs "Abstract method " and the
//   operation's name and gives the answer stated.
//
// Rooms: Whole strings; Segments; Stepping and typing; For subclasses.
#pragma once

#include "../Platform/TextServices.h"
#include "QKFormatDeputyUtilities.h"

namespace quill::inline v0 {

class QKTimecodeFormatter;

class QUILL_EXPORT QKFormatDeputy : public Object {
 public:
  static const ClassDescriptor descriptor;

  QKFormatDeputy();
  ~QKFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  // Decoding is secure in every deputy that archives.
  static bool supportsSecureCoding() { return true; }
  void* asProtocol(const Protocol& protocol) override;
  // A plain new deputy; a class with options of its own copies them. A derived class has a descriptor, or a copy(), of its
  // own; else it is copied as its base.
  Ref<Object> copy() const override;

  // ---- Whole strings ----

  // The text for a value; "" for one that does not serve requiredProtocol, and from the base.
  virtual std::string stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const;

  // Reads a text into a copy of the formatter's current timecode. Fails with a short description. The base always does.
  virtual bool getObjectValue(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                              std::string* error) const;

  // Whether a text has at most one sign, in front, and otherwise legal characters and white space: "Excess + or -'s",
  // "Illegal character.".
  virtual bool isPartialStringValid(std::string_view partial, std::string* error) const;

  // ",.;:0123456789" in the base.
  virtual CharacterSet legalCharacterSet() const;

  // What stands for no value. Abstract: "".
  virtual std::string defaultNilSymbol() const;

  // The protocol that a value must serve. The base fails an assertion and answers QKBasicTimecode.
  virtual const Protocol& requiredProtocol() const;

  // ---- Segments ----

  // Abstract: 0, the index, the tag, 0, 0, the empty range, null; padding is left alone.
  virtual std::int64_t segmentCountInObjectValue(Object* object) const;
  virtual std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const;
  // Below 0 for a tag that is not shown.
  virtual std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const;
  // In characters.
  virtual std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const;
  virtual std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const;
  // Whether the segment has a margin to its neighbour.
  virtual void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const;
  // The characters that the segment takes in the rendered text.
  virtual Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const;
  // What a segment's text is typed and shown with; null for a segment that has none.
  virtual NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const;
  virtual bool allowsSegmentEditing() const;

  // ---- Stepping and typing ----

  // A copy of the value moved by that many whole steps of a segment's unit. Abstract: the output is left alone.
  virtual void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                        Object* object) const;

  // Sets one segment of the value itself from a text; the output is a copy of it. Abstract: the number 0 and true.
  virtual bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag,
                                               Object* object, std::string* error) const;

  // As typing "0" into a segment. Where that fails the output is left alone.
  virtual void getObjectValueZeroingSegmentWithTag(Ref<Object>* result, std::int64_t tag, Object* object) const;

  // The furthest value that whole steps of a segment reach without passing the bound, the value itself where one step
  // does; for a value already beyond it, the bound (converted into the value's own representation between video
  // timecodes). In ticks it stops early at a step that moves nothing, which values held otherwise may pass over. A null
  // bound reports a light assertion and gives a copy.
  virtual void getObjectValueNearestToMinimum(Ref<Object>* result, Object* minimum, std::int64_t tag,
                                              Object* object) const;
  virtual void getObjectValueNearestToMaximum(Ref<Object>* result, Object* maximum, std::int64_t tag,
                                              Object* object) const;

  // ---- For subclasses ----

  // The magnitude of a typed field, whose sign goes to the value when the segment leads. A negative number in another
  // segment reports the light assertion "segmentIndex == 0" and marks the value as well. The lowest integer gives 2^63-1.
  std::int64_t massagedFieldValue(std::int64_t value, std::int64_t tag, Object* object) const;

  // Takes one "+" (1) or "-" (-1) off the front, white space passed over; 0 without one, and the string whole. More than
  // one of the same fails with "Excess + or -'s". The trimmed string is a part of the one given, "" where nothing but
  // white space follows the sign.
  static bool trimSignFromString(std::string_view string, std::string_view* trimmedString,
                                 std::int64_t* foundPlusOrMinus, std::string* error);

 protected:
  QKFormatDeputy(const QKFormatDeputy&) = default;
  QKFormatDeputy& operator=(const QKFormatDeputy&) = default;

 private:
  void getNearest(Ref<Object>* result, Object* bound, std::int64_t direction, std::int64_t tag, Object* object) const;
};

}  // namespace quill::inline v0
