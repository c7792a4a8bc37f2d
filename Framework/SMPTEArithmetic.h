// SMPTE labels as plain arithmetic: frame numbers to labels and back, and field sets added and subtracted.
//
// Everything here works on magnitudes; signs travel apart. No function reports anything, and each is defined for every
// input: sums beyond 64 bits stop at the end of the range.
#pragma once

#include "../Platform/IntegerMath.h"
#include "TimecodeModeTable.h"

#include <algorithm>
#include <array>

namespace quill::inline v0 {

inline constexpr std::int64_t kSubframesPerFrame = 80;
inline constexpr std::int64_t kQuarterFramesPerFrame = 4;

// The five fields of a label. Ordered by hours first.
struct SMPTEFieldSet {
  std::int64_t hours = 0;
  std::int64_t minutes = 0;
  std::int64_t seconds = 0;
  std::int64_t frames = 0;
  std::int64_t subframes = 0;

  friend constexpr auto operator<=>(const SMPTEFieldSet&, const SMPTEFieldSet&) = default;
};

// How labels are counted at a rate. The counts a whole rate leads to are exact; a fractional one counts in doubles.
struct SMPTECounting {
  double nominal = 0;        // labels a second
  std::int64_t whole = 0;    // nominal, or 0 when that is no whole number from 1 up
  std::int64_t dropped = 0;  // labels skipped in every minute but the tenth
  std::int64_t framesPerHour = 0;
  std::int64_t framesPerTenMinutes = 0;
  std::int64_t framesPerMinute = 0;  // of a minute that drops
  std::int64_t fixedMode = -1;       // the fixed mode that counts so, or -1

  // At a nominal rate in frames per second.
  static constexpr SMPTECounting atRate(double nominal, bool drop) {
    const auto skipped = [&](double labelsAt30) { return drop ? saturateToInt64(nominal * labelsAt30 / 30) : 0; };
    const bool isWhole = nominal >= 1 && nominal < kTwoTo63 && static_cast<double>(saturateToInt64(nominal)) == nominal;
    return {nominal,
            isWhole ? saturateToInt64(nominal) : 0,
            skipped(2),
            wrappingSubtract(saturateToInt64(3600 * nominal), skipped(108)),
            wrappingSubtract(saturateToInt64(600 * nominal), skipped(18)),
            wrappingSubtract(saturateToInt64(60 * nominal), skipped(2))};
  }
  // Of a fixed mode; null for the others.
  static const SMPTECounting* ofMode(QKSMPTETimecodeMode mode);

  // The highest frame label of a second.
  constexpr std::int64_t highestFrameLabel() const { return saturateToInt64(nominal - 0.5); }
};

namespace detail {
inline constexpr auto kModeCountings = [] {
  std::array<SMPTECounting, std::size(kTimecodeModeTable)> countings{};
  for (std::size_t i = 0; i < countings.size(); ++i) {
    const TimecodeModeRow& row = kTimecodeModeTable[i];
    countings[i] = SMPTECounting::atRate(row.nominalFrameRate(), row.kind == TimecodeModeKind::Drop);
    countings[i].fixedMode = row.mode;
  }
  return countings;
}();
}  // namespace detail

inline const SMPTECounting* SMPTECounting::ofMode(QKSMPTETimecodeMode mode) {
  const auto index = static_cast<std::uint64_t>(mode);
  return index < detail::kModeCountings.size() ? &detail::kModeCountings[static_cast<std::size_t>(index)] : nullptr;
}

// The label of frame number n counted from 0; subframes are 0. Hours have no upper limit. At 29.97 drop frame 1800
// gives 00:01:00;02.
QUILL_EXPORT SMPTEFieldSet labelFromFrame(const SMPTECounting& counting, std::int64_t n);

// A label and the fraction of a frame past it, in [0, 1); the label's subframes are 0.
struct SMPTEPosition {
  SMPTEFieldSet label;
  double fraction = 0;
};

namespace detail {
struct ModeFunctions {
  SMPTEFieldSet (*label)(std::uint64_t frames);  // null in the duration modes, which count no labels
  SMPTEPosition (*position)(std::uint64_t ticks);
  SMPTEFieldSet (*fields)(std::uint64_t ticks);
  std::int64_t (*ticks)(const SMPTEFieldSet& label);
};
// By mode.
QUILL_EXPORT extern const std::array<ModeFunctions, std::size(kTimecodeModeTable)> kModeFunctions;
}  // namespace detail

// Where a count of ticks lies, at the tick rate of a fixed mode. In a duration mode the label is elapsed time.
// (the row of 29.97df, 1800 * 80080 + 40040) gives 00:01:00;02 and 0.5.
inline SMPTEPosition positionAtTicks(const TimecodeModeRow& row, std::uint64_t ticks) {
  return detail::kModeFunctions[static_cast<std::size_t>(row.mode)].position(ticks);
}

// The same with subframes in place of the fraction, as subframesFromFraction cuts it.
inline SMPTEFieldSet fieldsAtTicks(const TimecodeModeRow& row, std::uint64_t ticks) {
  return detail::kModeFunctions[static_cast<std::size_t>(row.mode)].fields(ticks);
}

// Whether each field stands in its usual range, subframes aside: below a million hours, 60 minutes, 60 seconds and the
// labels of a second.
constexpr bool hasUsualFields(const TimecodeModeRow& row, const SMPTEFieldSet& label) {
  const auto below = [](std::int64_t field, std::int64_t end) {
    return static_cast<std::uint64_t>(field) < static_cast<std::uint64_t>(end);
  };
  return below(label.hours, 1000000) && below(label.minutes, 60) && below(label.seconds, 60) &&
         below(label.frames, row.countingRate);
}

// And back, for a label of usual fields: the ticks of its frame. One that drop-frame skips gives the first frame of its
// minute; in a duration mode frames past the end of a second lie in the next.
inline std::int64_t ticksOfUsualLabel(const TimecodeModeRow& row, const SMPTEFieldSet& label) {
  return detail::kModeFunctions[static_cast<std::size_t>(row.mode)].ticks(label);
}

// The frame number of a label, subframes aside: a whole number except at fractional rates. A label that drop-frame
// skips gives the first frame of its minute. Fields may pass their usual range.
QUILL_EXPORT std::int64_t frameFromLabel(const SMPTECounting& counting, const SMPTEFieldSet& label);
QUILL_EXPORT double fractionalFrameFromLabel(const SMPTECounting& counting, const SMPTEFieldSet& label);

// Carries every field into the next one until subframes stand in [0, 80), frames in [0, framesPerSecond), seconds and
// minutes in [0, 60); borrows where a field is negative.
QUILL_EXPORT SMPTEFieldSet carriedFields(SMPTEFieldSet fields, std::int64_t framesPerSecond);

// Field by field, then carried.
QUILL_EXPORT SMPTEFieldSet addFields(const SMPTEFieldSet& a, const SMPTEFieldSet& b, std::int64_t framesPerSecond);
QUILL_EXPORT SMPTEFieldSet subtractFields(const SMPTEFieldSet& a, const SMPTEFieldSet& b, std::int64_t framesPerSecond);

// One field set with a signed number of frames added, carried into seconds, minutes and hours or borrowed from them.
QUILL_EXPORT SMPTEFieldSet privateHMSFsFrameAdjustment(SMPTEFieldSet fields, std::int64_t frameDelta,
                                                       std::int64_t framesPerSecond);

// The frames to add to `after`, so that a change of up to 99 frames across a dropped label moves by as many frames as
// it says, and a label that lands on a skipped one moves to the first real label. `before` and `after` are the labels
// before and after `change` was added or subtracted field by field. Signed, in frames.
QUILL_EXPORT std::int64_t dropFrameAdjustment(std::int64_t framesPerSecond, const SMPTEFieldSet& before,
                                              const SMPTEFieldSet& after, const SMPTEFieldSet& change);

// 80ths and quarters of a frame from a fraction of one: the whole parts after 1/1000 of a frame is added, at most 79
// and 3. 0.2375 gives 19 subframes.
constexpr std::int64_t subframesFromFraction(double fraction) {
  return fraction == 0 ? 0 : saturateToInt64(std::min((fraction + 0.001) * 80, 79.0));
}
constexpr std::int64_t quarterFramesFromFraction(double fraction) {
  return fraction == 0 ? 0 : saturateToInt64(std::min((fraction + 0.001) * 4, 3.0));
}

}  // namespace quill::inline v0
