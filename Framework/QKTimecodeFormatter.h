// QKTimecodeFormatter: the formatter of a timecode field, in the notation that its format chooses.
//
// - Each format has a deputy that renders and parses its notation; a format without one answers "No deputy for current
//   format.".
// - Minimum and maximum are kept as copies and bound what is parsed, typed and stepped, not what is shown.
// - Negative values are refused until they are allowed: shown, they fail an assertion; parsed, they become zero.
// - In the SMPTE format without 24-hour rollover every result stays within 99:59:59 and the last frame, either way.
// - Values come as Object pointers, null standing for no value, and are not kept; showing one may bring it to another
//   timescale. Every out-pointer may be null.
// - One thread at a time.
//
// Rooms: Making; Properties; Whole strings; Segments; Stepping and typing; Display settings; Coding; For
// subclasses; Storage.
#pragma once

#include "../Platform/KeyedCoder.h"
#include "../Platform/NotificationCenter.h"
#include "QKSMPTETimecodeFormatDeputy.h"

#include <array>
#include <map>
#include <utility>

namespace quill::inline v0 {

enum QKTimecodeFormat : std::int64_t {
  QKTimecodeFormatSMPTE = 0,
  QKTimecodeFormatHMS = 1,
  QKTimecodeFormatVideoFrames = 2,
  QKTimecodeFormatAudioFrames = 3,
  QKTimecodeFormatSeconds = 4,
  QKTimecodeFormatBarsBeats = 5,
  QKTimecodeFormatFeetFrames = 6,
};

// Posted through NotificationCenter::defaultCenter(), the formatter as sender, at every change of format, setting,
// negative flag, minimum or maximum. Where a minimum or maximum changed, the user information holds the key
// QKTimecodeFormatterMinOrMaxChanged with true; otherwise there is none.
inline constexpr std::string_view QKTimecodeFormatterFormatChangedNotification =
    "QKTimecodeFormatterFormatChangedNotification";
inline constexpr std::string_view QKTimecodeFormatterMinOrMaxChanged = "QKTimecodeFormatterMinOrMaxChanged";

// The seven deputies of a formatter. A copy copies each.
class QUILL_EXPORT _QKTimecodeFormatterDeputyCollection : public Object {
 public:
  static const ClassDescriptor descriptor;

  // A plain deputy of each class.
  _QKTimecodeFormatterDeputyCollection();
  _QKTimecodeFormatterDeputyCollection(const _QKTimecodeFormatterDeputyCollection& other);
  _QKTimecodeFormatterDeputyCollection& operator=(const _QKTimecodeFormatterDeputyCollection& other);
  ~_QKTimecodeFormatterDeputyCollection() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;
  Ref<Object> copy() const override;

  // Null for a format outside 0 to 6, or one whose deputy is absent.
  Ref<QKFormatDeputy> deputyForFormat(QKTimecodeFormat format) const;
  // The same, not kept.
  QKFormatDeputy* borrowedDeputyForFormat(QKTimecodeFormat format) const;
  static bool supportsSecureCoding() { return true; }
  // The collection's class and its deputies'.
  static ClassSet keyedUnarchiverClasses();
  // A deputy that is absent is a nil object.
  explicit _QKTimecodeFormatterDeputyCollection(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

  // Keeps the deputy; a format outside 0 to 6 changes nothing.
  void setDeputy(Ref<QKFormatDeputy> deputy, QKTimecodeFormat format);

 private:
  struct Row;
  static const Row kRows[7];  // by format

  Ref<QKFormatDeputy> SMPTEDeputy_, HMSDeputy_, videoDeputy_, audioDeputy_, secondsDeputy_, barsBeatsDeputy_,
      feetFramesDeputy_;
};

class QUILL_EXPORT QKTimecodeFormatter : public Formatter {
 public:
  static const ClassDescriptor descriptor;

  // ---- Making ----

  // SMPTE, plain deputies, no bounds, no negatives, a plain QKExtendedTimecode as prototype.
  QKTimecodeFormatter();
  // Everything but the current timecode, which a copy does not have.
  QKTimecodeFormatter(const QKTimecodeFormatter& other);
  QKTimecodeFormatter& operator=(const QKTimecodeFormatter& other);
  template <ProperlyDerivedFrom<QKTimecodeFormatter> Derived>
  QKTimecodeFormatter(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKTimecodeFormatter> Derived>
  QKTimecodeFormatter& operator=(const Derived&) = delete;
  // Takes the registrations of its observers with it.
  ~QKTimecodeFormatter() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;
  Ref<Object> copy() const override;

  // ---- Properties ----

  QKTimecodeFormat timecodeFormat() const { return format_; }
  void setTimecodeFormat(QKTimecodeFormat format);
  Ref<QKFormatDeputy> deputyForFormat(QKTimecodeFormat format) const;
  void setDeputy(Ref<QKFormatDeputy> deputy, QKTimecodeFormat format);

  // The value being edited, which parsing starts from: kept as given, handed out as a copy; null without one.
  Ref<Object> currentTimecode() const;
  void setCurrentTimecode(Ref<Object> timecode) { currentTimecode_ = std::move(timecode); }

  // Turning negatives off clears a negative minimum or maximum to zero.
  bool allowsNegative() const { return allowsNegative_; }
  void setAllowsNegative(bool flag);

  // Copies of the bounds; null without one. A new minimum above the maximum becomes the maximum, a new maximum below the
  // minimum becomes the minimum; a negative one becomes zero while negatives are not allowed. Setting an equal bound
  // again posts again. An object that is no copyable QKBasicTimecode fails an assertion.
  Ref<Object> minimum() const;
  void setMinimum(Object* minimum);
  Ref<Object> maximum() const;
  void setMaximum(Object* maximum);

  // What stands for no value; nothing: the deputy's default.
  const std::optional<std::string>& nilSymbol() const { return nilSymbol_; }
  void setNilSymbol(std::optional<std::string> symbol) { nilSymbol_ = std::move(symbol); }
  // The active deputy's; nothing without a deputy.
  std::optional<std::string> defaultNilSymbol() const;

  // The value that parsing and stepping start from where there is none: kept as given, handed out as a copy; null makes
  // the default one again. Give a prototype with the mode and tick rate that entries are to have.
  Ref<Object> defaultObjectPrototype() const;
  void setDefaultObjectPrototype(Ref<Object> prototype);

  // How SMPTE entries are read. Posts nothing.
  OrbSMPTEStringInterpretation SMPTEStringInterpretation() const { return SMPTEStringInterpretation_; }
  void setSMPTEStringInterpretation(OrbSMPTEStringInterpretation interpretation) {
    SMPTEStringInterpretation_ = interpretation;
  }

  // A switch of the process, fixed by the first call of either: SMPTE entries keep the fields not typed, whatever the
  // interpretation. Reading it while it is unset fixes it to false.
  static void _setOrbSMPTETimecodeFormatterUsesHighOrderTyping(bool flag);
  static bool _orbSMPTETimecodeFormatterUsesHighOrderTyping();

  // ---- Whole strings ----

  // The nil symbol for null. A negative value fails an assertion while negatives are not allowed. Nothing without a
  // deputy.
  std::optional<std::string> stringForObjectValue(Object* object) const override;

  // A copy of the current timecode (the prototype, where there is none) changed as the text says, zero where it is
  // negative and may not be, and brought within the bounds; the nil symbol gives null and true. What is typed never
  // fails an assertion. Errors: "No deputy for current format.", "Object does not conform to protocol", and the deputy's.
  bool getObjectValue(Ref<Object>* object, std::string_view string, std::string* error) override;

  // As the deputy's, and never with white space in front. `newString` is set to nothing.
  bool isPartialStringValid(std::string_view partial, std::optional<std::string>* newString,
                            std::string* error) const override;

  // The deputy's set with "+" and "-"; nothing without a deputy.
  std::optional<CharacterSet> legalCharacterSet() const;

  // The empty range at kNotFound: no part of a text is drawn in a secondary colour.
  Range secondaryColorRange(std::string_view string) const;

  // ---- Segments ----
  //
  // As the deputy's. Without a deputy, for a value that it cannot serve and for a segment that is not shown the answer is
  // 0, no padding, the empty range or null; for no value the nil symbol counts as the one segment.

  std::int64_t segmentCountInObjectValue(Object* object) const;
  std::int64_t segmentTagForIndex(std::int64_t index, Object* object) const;
  std::int64_t segmentIndexForTag(std::int64_t tag, Object* object) const;
  // An object that is no timecode fails an assertion.
  std::int64_t segmentFieldWidthForTag(std::int64_t tag, Object* object) const;
  std::int64_t defaultSelectedSegmentTagInObjectValue(Object* object) const;
  void segmentWithTagHasPadding(std::int64_t tag, bool* atLeft, bool* atRight, Object* object) const;
  // The tag 0x7fffffff stands for no segment. A negative value fails an assertion while negatives are not allowed.
  Range substringRangeForSegmentWithTag(std::int64_t tag, Object* object) const;
  // What a segment is typed with: this formatter itself where the deputy has none for it; for the leading segment a copy
  // of the deputy's that takes a sign only while negatives are allowed. Lives as long as this formatter.
  Formatter* formatterForSegmentTag(std::int64_t tag, Object* object);
  // False without a deputy.
  bool allowsSegmentEditing() const;

  // ---- Stepping and typing ----
  //
  // A result that runs out of range, or is to reach a bound that does, is the furthest time that its value can hold.

  // A copy of the value (the prototype, for null) moved by whole steps of one segment, stopped at the last whole step
  // within the bounds, zeroed in that segment where it is negative and may not be. A segment that is not shown steps
  // too. An object that is no timecode fails an assertion; the number 0 comes without a deputy that can serve it.
  void getObjectValueIncrementingSegmentWithTag(Ref<Object>* result, std::int64_t tag, std::int64_t increment,
                                                Object* object) const;

  // Sets one segment of the value itself (a copy of the prototype, for null) from a text; the result is a copy within
  // the bounds. Errors: "Value doesn't conform to protocol", "Segment with tag %ld not visible", and the segment's.
  bool getObjectValueForSegmentWithTag(Ref<Object>* result, std::string_view string, std::int64_t tag, Object* object,
                                       std::string* error);

  // ---- Display settings ----
  //
  // Those of the deputy that owns them, whatever the format. A setter that changes a value posts the notification. Where
  // that deputy is absent or of another class they answer false or 0 and set nothing.

  bool SMPTEDisplaysHours() const;
  void setSMPTEDisplaysHours(bool flag);
  bool SMPTEDisplaysFrames() const;
  void setSMPTEDisplaysFrames(bool flag);
  bool SMPTEDisplaysSubframes() const;
  void setSMPTEDisplaysSubframes(bool flag);
  bool SMPTEDisplaysQuarterFrames() const;
  void setSMPTEDisplaysQuarterFrames(bool flag);
  bool SMPTEHas24HourRollover() const;
  void setSMPTEHas24HourRollover(bool flag);
  // Subframes or quarter frames; a change sets the subframes to it and the quarter frames to false.
  bool SMPTEDisplaysFrameDivision() const;
  void setSMPTEDisplaysFrameDivision(bool flag);
  // The settings that SMPTEDisplaysFrameDivision changes with.
  static std::array<std::string_view, 2> keyPathsForValuesAffectingSMPTEDisplaysFrameDivision();

  std::int64_t HMSSecondsDecimalPlaces() const;
  void setHMSSecondsDecimalPlaces(std::int64_t places);
  bool HMSHas24HourRollover() const;
  void setHMSHas24HourRollover(bool flag);
  std::uint64_t ODTSecondsDecimalPlaces() const;
  void setODTSecondsDecimalPlaces(std::uint64_t places);

  std::int64_t MSeparator() const;
  void setMSeparator(std::int64_t separator);
  bool MDisplaysDivisionsAndTicks() const;
  void setMDisplaysDivisionsAndTicks(bool flag);
  bool MIsDivisionsFieldDropped() const;
  void setMIsDivisionsFieldDropped(bool flag);
  std::int64_t MBeatsDecimalPlaces() const;
  void setMBeatsDecimalPlaces(std::int64_t places);

  std::int64_t FFSeparator() const;
  void setFFSeparator(std::int64_t separator);
  bool FFDisplaysQuarterFrames() const;
  void setFFDisplaysQuarterFrames(bool flag);

  // ---- Coding ----

  static std::int64_t version() { return descriptor.version; }
  static bool supportsSecureCoding() { return true; }
  // The classes that an archive of a formatter may hold.
  static ClassSet keyedUnarchiverClasses();
  // Reads every older version; a negative bound without negatives as zero. What is archived is what a copy copies.
  explicit QKTimecodeFormatter(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;

 protected:
  // ---- For subclasses ----

  // Fails an assertion for an object that cannot be a bound; null can.
  void privateVerifyAsBound(Object* object) const;

 private:
  QKFormatDeputy* activeDeputy() const;
  // The active deputy where it can serve the object, else null; null for no object.
  QKFormatDeputy* deputyServing(Object* object) const;
  // The active deputy where it can serve the object and shows the segment, else null.
  QKFormatDeputy* deputyShowing(std::int64_t tag, Object* object) const;
  Ref<Object> valueOfUsualLabel(std::string_view string) const;
  bool isNilSymbol(std::string_view text, const QKFormatDeputy* deputy) const;
  std::uint64_t nilSymbolLength() const;
  void setBound(Ref<Object>* bound, const Ref<Object>& otherBound, int clampedSide, Object* object);
  bool clearNegativeBounds();
  void postFormatChanged(bool minOrMaxChanged) const;
  Ref<Object> SMPTECeiling(Object* object) const;
  struct Bounds;
  Bounds effectiveBounds(Object* object) const;
  bool mayBeOutside(Object* result) const;
  void imposeBounds(Ref<Object>* result) const;
  void imposeSegmentBounds(Ref<Object>* result, std::int64_t tag, Object* object) const;
  NumberFormatter* leadingFormatter(const NumberFormatter& deputys, std::int64_t tag);
  template <class Deputy, class Value>
  Value deputySetting(QKTimecodeFormat format, Value (Deputy::*get)() const) const;
  template <class Deputy, class Value>
  void setDeputySetting(QKTimecodeFormat format, Value (Deputy::*get)() const, void (Deputy::*set)(Value), Value value);
  void takeArchivedDeputies(const Ref<Object>& archived, std::int64_t archivedVersion);

  // ---- Storage ----

  OrbSMPTEStringInterpretation SMPTEStringInterpretation_ = OrbSMPTEStringInterpretationPreservingUpper;
  bool allowsNegative_ = false;
  Ref<Object> currentTimecode_;
  Ref<Object> defaultObjectPrototype_;
  QKTimecodeFormat format_ = QKTimecodeFormatSMPTE;
  _QKTimecodeFormatterDeputyCollection formatDeputies_;
  Ref<Object> maximumTimecode_;
  Ref<Object> minimumTimecode_;
  std::optional<std::string> nilSymbol_;
  // This formatter's own copies of the deputies' formatters of leading segments, by format and tag.
  std::map<std::pair<QKTimecodeFormat, std::int64_t>, Ref<NumberFormatter>> leadingFormatters_;
};

}  // namespace quill::inline v0
