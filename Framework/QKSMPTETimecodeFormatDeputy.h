// QKSMPTETimecodeFormatDeputy: SMPTE fields as text, "01:02:03;04", with subframes ".79" or quarter frames "/3" behind.
//
// - It serves any value of the QKSMPTETimecode protocol; frames of a QKVideoTimecode above 100 frames per second are
//   shown with three digits.
// - ";" stands before the frames of a drop-frame value, ":" before those of any other.
// - With frames hidden the segments and the parsing still count a frames field; the text just does not show it.
//
// Segment tags: 0 hours, 1 minutes, 2 seconds, 3 frames, 4 subframes, 5 quarter frames.
//
// Rooms: Options; Whole strings; Segments; Stepping and typing; Coding; For subclasses; Storage.
#pragma once

#include "QKFormatDeputy.h"
#include "SMPTEArithmetic.h"

namespace quill::inline v0 {

class QKVideoTimecode;

// How a whole SMPTE entry is read. Any other value fails with "Unknown OrbSMPTEStringInterpretation".
enum OrbSMPTEStringInterpretation : std::int64_t {
  // Fields fill from the right; fields not typed keep the values of the current timecode.
  OrbSMPTEStringInterpretationPreservingUpper = 0,
  // The entry is the whole value: fields not typed are 0. An entry with a sign is relative, as above.
  OrbSMPTEStringInterpretationDiscardingUpper = 1,
};

inline constexpr std::uint8_t OrbTimecodeFormatterDefaultSMPTEDisplaysHours = 1;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultSMPTEDisplaysFrames = 1;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultSMPTEDisplaysSubframes = 0;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultSMPTEDisplaysQuarterFrames = 0;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultSMPTEHas24HourRollover = 1;

class QUILL_EXPORT QKSMPTETimecodeFormatDeputy : public QKFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  // The defaults above.
  QKSMPTETimecodeFormatDeputy();
  QKSMPTETimecodeFormatDeputy(const QKSMPTETimecodeFormatDeputy&) = default;
  QKSMPTETimecodeFormatDeputy& operator=(const QKSMPTETimecodeFormatDeputy&) = default;
  template <ProperlyDerivedFrom<QKSMPTETimecodeFormatDeputy> Derived>
  QKSMPTETimecodeFormatDeputy(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKSMPTETimecodeFormatDeputy> Derived>
  QKSMPTETimecodeFormatDeputy& operator=(const Derived&) = delete;
  ~QKSMPTETimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  Ref<Object> copy() const override;

  // ---- Options ----

  bool displaysHours() const { return displaysHours_; }
  void setDisplaysHours(bool flag) { displaysHours_ = flag; }
  bool displaysFrames() const { return displaysFrames_; }
  void setDisplaysFrames(bool flag) { displaysFrames_ = flag; }
  // Both answer false while frames are hidden and keep what was set. Where both are set subframes are shown, but an
  // entry that discards reads the lower field as quarter frames: set one of them.
  bool displaysSubframes() const { return displaysFrames_ && displaysSubframes_; }
  void setDisplaysSubframes(bool flag) { displaysSubframes_ = flag; }
  bool displaysQuarterFrames() const { return displaysFrames_ && displaysQuarterFrames_; }
  void setDisplaysQuarterFrames(bool flag) { displaysQuarterFrames_ = flag; }
  // Hours shown modulo 24; else up to 99.
  bool has24HourRollover() const { return has24HourRollover_; }
  void setHas24HourRollover(bool flag) { has24HourRollover_ = flag; }

  // ---- Whole strings ----

  // With hours hidden, the value's own hours are set to 0 first, on purpose.
  std::string stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const override;

  // Bare digits fill the fields from the right: "1234" is 12 seconds 34 frames. A sign makes the entry an amount to add
  // or subtract; "" only clears the sign. With hours and rollover shown, typed hours keep the day of a value past 24
  // hours. Fails with "Illegal characters." or "Unknown OrbSMPTEStringInterpretation".
  bool getObjectValue(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                      std::string* error) const override;

  // Digits and ",.;:", and "/" with quarter frames.
  CharacterSet legalCharacterSet() const override;
  // An em dash for each field shown: "—:—:—:—".
  std::string defaultNilSymbol() const override;
  const Protocol& requiredProtocol() const override;

  // ---- Segments ----

  std::int64_t segmentCountInObjectValue(Object* object) const override;
  // An index that the notation does not have fails an assertion and gives 0.
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const override;
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const override;
  // Frames count two characters even where three are shown.
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const override;
  // Frames.
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const override;
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const override;
  // For a value with three frame digits every range is three long, on purpose.
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const override;
  NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const override;

  // ---- Stepping and typing ----

  // A step through zero mirrors the value: the stepped field reads 1, the lower ones keep their digits.
  // 00:00:00:10 down a minute is -00:01:00:10.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const override;
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error) const override;

  // ---- Coding ----

  static std::int64_t version() { return descriptor.version; }
  explicit QKSMPTETimecodeFormatDeputy(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

  // ---- For the formatter ----

  // Reads "01:02:03;04", four pairs of digits that both rules read as hours, minutes, seconds and frames. False for any
  // other text, and where other fields are shown.
  bool readUsualLabel(SMPTEFieldSet* label, std::string_view string) const;

 protected:
  // ---- For subclasses ----

  // The fields that a full entry has.
  std::int64_t privateMaximumCurrentFields() const;
  // 3 above 100 frames per second, else 2; 2 for null.
  static std::int64_t privateDigitsForFramesWithTimecode(const QKVideoTimecode* timecode);
  // The characters that part fields.
  std::string_view privateSeparators() const;
  // "1234567" as "1:23:45:67", with "." or "/" before the lowest field where one is shown; "" without digits in front.
  std::string privateInsertSeparatorsIntoSMPTENumberString(std::string_view string,
                                                           const QKVideoTimecode* timecode) const;
  bool getObjectValuePreservingUpper(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                                     std::string* error) const;
  bool getObjectValueDiscardingUpper(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                                     std::string* error) const;

 private:
  struct Entry;
  // Reads a text into the value given.
  using Rule = bool (QKSMPTETimecodeFormatDeputy::*)(Object* current, std::string_view string,
                                                     std::string* error) const;

  bool parse(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter, std::string* error,
             Rule rule) const;
  bool discardUpper(Object* current, std::string_view string, std::string* error) const;
  bool preserveUpper(Object* current, std::string_view string, std::string* error) const;
  bool scanEntry(Entry* entry, std::string_view string, std::int64_t capacity, Object* timecode) const;
  bool showsLowerField() const { return displaysSubframes() || displaysQuarterFrames(); }

  // ---- Storage ----

  bool displaysHours_ = OrbTimecodeFormatterDefaultSMPTEDisplaysHours;
  bool displaysFrames_ = OrbTimecodeFormatterDefaultSMPTEDisplaysFrames;
  bool displaysSubframes_ = OrbTimecodeFormatterDefaultSMPTEDisplaysSubframes;
  bool displaysQuarterFrames_ = OrbTimecodeFormatterDefaultSMPTEDisplaysQuarterFrames;
  bool has24HourRollover_ = OrbTimecodeFormatterDefaultSMPTEHas24HourRollover;
};

}  // namespace quill::inline v0
