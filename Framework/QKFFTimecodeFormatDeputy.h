// QKFFTimecodeFormatDeputy: feet and frames of film as text, "0012+05", with quarter frames "/3" behind.
//
// - It serves any value of the QKFeetFramesTimecode protocol.
// - "+" or "." stands between feet and frames. An entry may part its fields with any of ",.;", and with "+" where that
//   is the separator; only a sign in front makes it an amount.
//
// Segment tags: 0 feet, 1 frames, 2 quarter frames. Tag and index are the same number. What is asked about another tag
// reports the light assertion "NO", answers 0 or nothing and changes nothing.
//
// Rooms: Options; Whole strings; Segments; Stepping and typing; Coding; For subclasses; Storage.
#pragma once

#include "QKFormatDeputy.h"

namespace quill::inline v0 {

inline constexpr std::int64_t OrbTimecodeFormatterDefaultFFSeparator = 1;
inline constexpr std::uint8_t OrbTimecodeFormatterDefaultFFDisplaysQuarterFrames = 0;

class QUILL_EXPORT QKFFTimecodeFormatDeputy : public QKFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  // The defaults above.
  QKFFTimecodeFormatDeputy();
  QKFFTimecodeFormatDeputy(const QKFFTimecodeFormatDeputy&) = default;
  QKFFTimecodeFormatDeputy& operator=(const QKFFTimecodeFormatDeputy&) = default;
  template <ProperlyDerivedFrom<QKFFTimecodeFormatDeputy> Derived>
  QKFFTimecodeFormatDeputy(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKFFTimecodeFormatDeputy> Derived>
  QKFFTimecodeFormatDeputy& operator=(const Derived&) = delete;
  ~QKFFTimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  Ref<Object> copy() const override;

  // ---- Options ----

  // 1: "+". Any other: ".", and with 0 the leading zero of the frames is shown as a space: "0012. 5".
  std::int64_t separator() const { return separator_; }
  void setSeparator(std::int64_t separator) { separator_ = separator; }
  bool displaysQuarterFrames() const { return displaysQuarterFrames_; }
  void setDisplaysQuarterFrames(bool flag) { displaysQuarterFrames_ = flag; }

  // ---- Whole strings ----

  std::string stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const override;

  // Bare digits are frames, two of them, and feet before those: "5" is frame 5, "12345" is 123 feet 45 frames; the
  // quarter frame stays. One separator parts feet and frames, and with quarter frames shown "12+5" is 12+05/0. Fields
  // not typed stay. A sign makes the entry an amount to add or subtract; "" only clears the sign. Fails with "Illegal
  // characters.".
  //
  // Fields are set one by one, feet first. Feet of unequal length can carry in between: from 0002+21 of 35 mm 3-perf,
  // frame 21 of which foot 0 does not have, the entry "0000+05" gives 0001+05. Parse over zero where that must not be.
  bool getObjectValue(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                      std::string* error) const override;

  // Digits and the separators of an entry.
  CharacterSet legalCharacterSet() const override;
  // "—+—", with quarter frames "—+—/—".
  std::string defaultNilSymbol() const override;
  const Protocol& requiredProtocol() const override;

  // ---- Segments ----

  std::int64_t segmentCountInObjectValue(Object* object) const override;
  // The argument.
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const override;
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const override;
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const override;
  // Frames.
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const override;
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const override;
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const override;
  NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const override;

  // ---- Stepping and typing ----

  // A step through zero mirrors the value: the stepped field reads 1, the lower ones that are shown keep their digits.
  // 0000+05 down a foot is -0001+05.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const override;
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error) const override;

  // ---- Coding ----

  explicit QKFFTimecodeFormatDeputy(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // ---- For subclasses ----

  // The fields shown.
  std::int64_t privateMaximumCurrentFields() const;
  std::string_view privateSeparatorString() const;
  // The characters that part fields. Without quarter frames "+" brings ":" with it, which is no legal character.
  std::string_view privateSeparators() const;
  // The string, with "." behind it where it has exactly one separator, so that the two fields which that parts are feet
  // and frames. Reports the light assertion "[self displaysQuarterFrames]" without quarter frames.
  std::string privateNumberStringWithNormalizedSeparatorCount(std::string_view string) const;
  // Cuts the digits in front of a text, and the current quarter frames behind them where those are shown, into at most
  // `length` fields, the highest first; how many they are. False without any digits. A length other than 1 to 3 fails
  // an assertion.
  bool privateScanFFNumberString(std::string_view string, std::int64_t* fields, std::int64_t length,
                                 std::int64_t* indexAtEnd, std::int64_t currentQuarterFrames) const;

 private:
  // ---- Storage ----

  std::int64_t separator_ = OrbTimecodeFormatterDefaultFFSeparator;
  bool displaysQuarterFrames_ = OrbTimecodeFormatterDefaultFFDisplaysQuarterFrames;
};

}  // namespace quill::inline v0
