// The deputies of frame counts: a value as one number, "1234567", of video frames or of audio frames.
//
// - QKOneDFramesTimecodeFormatDeputy does the work; the two classes below tell it which operations count. A host's own
//   count joins in the same way.
// - The sign of a value is read and set through QKBasicTimecode; counts are magnitudes. A count of 2^63 or more reports
//   the light assertion "frames >= 0" and is used as the negative number with the same bits.
// - The digits are cut into segments of three from the right. Nothing stands between them in the text.
//
// Segment tags: 0 the lowest three digits, 1 the thousands, and so on to 6. The index runs the other way.
//
// Rooms: Frame counts; Whole strings; Segments; Stepping and typing; For subclasses; and the two classes.
#pragma once

#include "../Platform/BoundOperation.h"
#include "QKFormatDeputy.h"

namespace quill::inline v0 {

class QUILL_EXPORT QKOneDFramesTimecodeFormatDeputy : public QKFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  QKOneDFramesTimecodeFormatDeputy();
  ~QKOneDFramesTimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;

  // ---- Frame counts ----

  // The operations of the value; each takes or gives a count. The base fails an assertion and answers one that does
  // nothing.
  virtual BoundOperation framesInvocation() const;
  virtual BoundOperation setFramesInvocation() const;
  virtual BoundOperation addFramesInvocation() const;
  virtual BoundOperation subtractFramesInvocation() const;

  std::int64_t framesFromObject(Object* object) const;
  void setFramesOnObject(std::int64_t frames, Object* object) const;
  void addFramesOnObject(std::int64_t frames, Object* object) const;
  void subtractFramesOnObject(std::int64_t frames, Object* object) const;

  // ---- Whole strings ----

  std::string stringForObjectValue(Object* object, const QKTimecodeFormatter& formatter) const override;

  // "25" sets 25 frames, "+25" adds them, "-25" subtracts them; "" and a mere sign change nothing. A count past 2^63-1
  // reports as above. Fails with "Illegal characters." or "Excess + or -'s".
  bool getObjectValue(Ref<Object>* object, std::string_view string, const QKTimecodeFormatter& formatter,
                      std::string* error) const override;

  // The digits.
  CharacterSet legalCharacterSet() const override;
  // An em dash.
  std::string defaultNilSymbol() const override;

  // ---- Segments ----

  std::int64_t segmentCountInObjectValue(Object* object) const override;
  // -1 for an index behind the last.
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const override;
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const override;
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const override;
  // The lowest three digits.
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const override;
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const override;
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const override;
  NumberFormatter* formatterForSegmentTag(std::int64_t tag, Object* object) const override;

  // ---- Stepping and typing ----

  // A step through zero mirrors the value: the stepped segment reads 1, the lower ones keep their digits. 500 down a
  // thousand is -1500; from a whole number of steps a value lands on 0 upward and on -1 step downward. The lower digits
  // pass through a double and are cut, on purpose: some end one short (1 down a thousand is -1000). Those below a typed
  // segment are rounded, and kept as long as the count is below 2^52.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const override;
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error) const override;

 protected:
  // ---- For subclasses ----

  QKOneDFramesTimecodeFormatDeputy(const QKOneDFramesTimecodeFormatDeputy&) = default;
  QKOneDFramesTimecodeFormatDeputy& operator=(const QKOneDFramesTimecodeFormatDeputy&) = default;

  // Of the value's frame count; 1 for 0.
  std::int64_t privateDigitCountForValue(Object* object) const;
};

// Video frames, of a QKOneDimensionalVideoTimecode.
class QUILL_EXPORT QKOneDVideoTimecodeFormatDeputy : public QKOneDFramesTimecodeFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  QKOneDVideoTimecodeFormatDeputy();
  QKOneDVideoTimecodeFormatDeputy(const QKOneDVideoTimecodeFormatDeputy&) = default;
  QKOneDVideoTimecodeFormatDeputy& operator=(const QKOneDVideoTimecodeFormatDeputy&) = default;
  template <ProperlyDerivedFrom<QKOneDVideoTimecodeFormatDeputy> Derived>
  QKOneDVideoTimecodeFormatDeputy(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKOneDVideoTimecodeFormatDeputy> Derived>
  QKOneDVideoTimecodeFormatDeputy& operator=(const Derived&) = delete;
  ~QKOneDVideoTimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  const Protocol& requiredProtocol() const override;

  BoundOperation framesInvocation() const override;
  BoundOperation setFramesInvocation() const override;
  BoundOperation addFramesInvocation() const override;
  BoundOperation subtractFramesInvocation() const override;

  explicit QKOneDVideoTimecodeFormatDeputy(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;
};

// Audio frames, of a QKOneDimensionalAudioTimecode.
class QUILL_EXPORT QKOneDAudioTimecodeFormatDeputy : public QKOneDFramesTimecodeFormatDeputy {
 public:
  static const ClassDescriptor descriptor;

  QKOneDAudioTimecodeFormatDeputy();
  QKOneDAudioTimecodeFormatDeputy(const QKOneDAudioTimecodeFormatDeputy&) = default;
  QKOneDAudioTimecodeFormatDeputy& operator=(const QKOneDAudioTimecodeFormatDeputy&) = default;
  template <ProperlyDerivedFrom<QKOneDAudioTimecodeFormatDeputy> Derived>
  QKOneDAudioTimecodeFormatDeputy(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKOneDAudioTimecodeFormatDeputy> Derived>
  QKOneDAudioTimecodeFormatDeputy& operator=(const Derived&) = delete;
  ~QKOneDAudioTimecodeFormatDeputy() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  const Protocol& requiredProtocol() const override;

  BoundOperation framesInvocation() const override;
  BoundOperation setFramesInvocation() const override;
  BoundOperation addFramesInvocation() const override;
  BoundOperation subtractFramesInvocation() const override;

  explicit QKOneDAudioTimecodeFormatDeputy(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;
};

}  // namespace quill::inline v0
