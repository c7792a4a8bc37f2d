// The timecode modes: their enumeration and one row of facts for each of the nineteen fixed ones.
//
// - Counting modes label frames at a whole rate; drop modes skip labels so that the label keeps up with the clock;
//   duration modes show elapsed time at the exact, fractional rate.
// - A tick rate holds every frame and every subframe (1/80 frame) exactly: 80 ticks a frame at whole rates, 80080 at
//   rates of 1000/1001.
#pragma once

#include "../Platform/Export.h"

#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

namespace quill::inline v0 {

enum QKSMPTETimecodeMode : std::int64_t {
  QKSMPTETimecodeMode_23976Duration = 0,
  QKSMPTETimecodeMode_23976 = 1,
  QKSMPTETimecodeMode_24 = 2,
  QKSMPTETimecodeMode_25 = 3,
  QKSMPTETimecodeMode_2997Duration = 4,
  QKSMPTETimecodeMode_2997 = 5,
  QKSMPTETimecodeMode_2997Drop = 6,
  QKSMPTETimecodeMode_30 = 7,
  QKSMPTETimecodeMode_50 = 8,
  QKSMPTETimecodeMode_5994Duration = 9,
  QKSMPTETimecodeMode_5994 = 10,
  QKSMPTETimecodeMode_5994Drop = 11,
  QKSMPTETimecodeMode_60 = 12,
  QKSMPTETimecodeMode_90 = 13,
  QKSMPTETimecodeMode_100 = 14,
  QKSMPTETimecodeMode_11988Duration = 15,
  QKSMPTETimecodeMode_11988 = 16,
  QKSMPTETimecodeMode_11988Drop = 17,
  QKSMPTETimecodeMode_120 = 18,
  QKSMPTETimecodeModeCustom = 19,
  QKSMPTETimecodeModeInvalid = 20,
};

enum class TimecodeModeKind : std::uint8_t { Counting, Drop, Duration };

struct TimecodeModeRow {
  QKSMPTETimecodeMode mode;
  std::string_view name;       // "QKSMPTETimecodeMode_2997Drop", as descriptions print it
  std::string_view shortName;  // "29.97df", for people
  TimecodeModeKind kind;
  std::int64_t rateNumerator;  // exact frames per second
  std::int64_t rateDenominator;
  std::int64_t countingRate;      // frame labels a second: 24, 25, 30 ... (the whole rate of a duration mode)
  std::int64_t tickRate;          // ticks per second, below 2^31
  QKSMPTETimecodeMode plainMode;  // the mode that counts the same frames without dropping

  constexpr double videoFrameRate() const {
    return static_cast<double>(rateNumerator) / static_cast<double>(rateDenominator);
  }
  // The whole rate, or the fractional one in a duration mode.
  constexpr double nominalFrameRate() const {
    return kind == TimecodeModeKind::Duration ? videoFrameRate() : static_cast<double>(countingRate);
  }
  // Labels skipped in every minute but the tenth: 2 a minute for each 30 frames a second (SMPTE ST 12-1).
  constexpr std::int64_t droppedLabels() const { return kind == TimecodeModeKind::Drop ? countingRate * 2 / 30 : 0; }
  // In which 80 subframes and, at a fractional rate, the 1001 parts of each are whole.
  constexpr std::int64_t ticksPerFrame() const { return rateDenominator == 1 ? 80 : 80080; }
};

#define QUILL_MODE(suffix) QKSMPTETimecodeMode_##suffix, "QKSMPTETimecodeMode_" #suffix
// In the order of the modes.
inline constexpr TimecodeModeRow kTimecodeModeTable[] = {
    {QUILL_MODE(23976Duration), "23.976 duration", TimecodeModeKind::Duration, 24000, 1001, 24, 1920000,
     QKSMPTETimecodeMode_23976},
    {QUILL_MODE(23976), "23.976", TimecodeModeKind::Counting, 24000, 1001, 24, 1920000, QKSMPTETimecodeMode_23976},
    {QUILL_MODE(24), "24", TimecodeModeKind::Counting, 24, 1, 24, 1920, QKSMPTETimecodeMode_24},
    {QUILL_MODE(25), "25", TimecodeModeKind::Counting, 25, 1, 25, 2000, QKSMPTETimecodeMode_25},
    {QUILL_MODE(2997Duration), "29.97 duration", TimecodeModeKind::Duration, 30000, 1001, 30, 2400000,
     QKSMPTETimecodeMode_2997},
    {QUILL_MODE(2997), "29.97", TimecodeModeKind::Counting, 30000, 1001, 30, 2400000, QKSMPTETimecodeMode_2997},
    {QUILL_MODE(2997Drop), "29.97df", TimecodeModeKind::Drop, 30000, 1001, 30, 2400000, QKSMPTETimecodeMode_2997},
    {QUILL_MODE(30), "30", TimecodeModeKind::Counting, 30, 1, 30, 2400, QKSMPTETimecodeMode_30},
    {QUILL_MODE(50), "50", TimecodeModeKind::Counting, 50, 1, 50, 4000, QKSMPTETimecodeMode_50},
    {QUILL_MODE(5994Duration), "59.94 duration", TimecodeModeKind::Duration, 60000, 1001, 60, 4800000,
     QKSMPTETimecodeMode_5994},
    {QUILL_MODE(5994), "59.94", TimecodeModeKind::Counting, 60000, 1001, 60, 4800000, QKSMPTETimecodeMode_5994},
    {QUILL_MODE(5994Drop), "59.94df", TimecodeModeKind::Drop, 60000, 1001, 60, 4800000, QKSMPTETimecodeMode_5994},
    {QUILL_MODE(60), "60", TimecodeModeKind::Counting, 60, 1, 60, 4800, QKSMPTETimecodeMode_60},
    {QUILL_MODE(90), "90", TimecodeModeKind::Counting, 90, 1, 90, 7200, QKSMPTETimecodeMode_90},
    {QUILL_MODE(100), "100", TimecodeModeKind::Counting, 100, 1, 100, 8000, QKSMPTETimecodeMode_100},
    {QUILL_MODE(11988Duration), "119.88 duration", TimecodeModeKind::Duration, 120000, 1001, 120, 9600000,
     QKSMPTETimecodeMode_11988},
    {QUILL_MODE(11988), "119.88", TimecodeModeKind::Counting, 120000, 1001, 120, 9600000, QKSMPTETimecodeMode_11988},
    {QUILL_MODE(11988Drop), "119.88df", TimecodeModeKind::Drop, 120000, 1001, 120, 9600000, QKSMPTETimecodeMode_11988},
    {QUILL_MODE(120), "120", TimecodeModeKind::Counting, 120, 1, 120, 9600, QKSMPTETimecodeMode_120},
};
#undef QUILL_MODE

consteval bool timecodeModeRowsStandInOrderAndDivide() {
  for (std::int64_t i = 0; const TimecodeModeRow& row : kTimecodeModeTable) {
    if (row.mode != i++) return false;
    if (row.tickRate * row.rateDenominator != row.ticksPerFrame() * row.rateNumerator) return false;
  }
  return true;
}
static_assert(timecodeModeRowsStandInOrderAndDivide());

// The row of a fixed mode; null for Custom, Invalid and values outside the enumeration.
constexpr const TimecodeModeRow* timecodeModeRow(QKSMPTETimecodeMode mode) {
  const auto index = static_cast<std::uint64_t>(mode);
  return index < std::size(kTimecodeModeTable) ? &kTimecodeModeTable[index] : nullptr;
}

// "QKSMPTETimecodeMode_2997Drop"; Custom and Invalid have names too. Empty for values outside the enumeration.
QUILL_EXPORT std::string_view timecodeModeName(QKSMPTETimecodeMode mode);

// "29.97df", "23.976", "29.97 duration", "custom", "invalid". Empty for values outside the enumeration.
QUILL_EXPORT std::string_view timecodeModeShortName(QKSMPTETimecodeMode mode);

// The mode that either name says, whatever the case, spaces aside: "29.97DF", "119.88 duration", "custom". Other ways
// to say a suffix are understood: "29.97drop", "29.97 ndf", "25fps", and "23.98" for "23.976". Nothing for other text.
QUILL_EXPORT std::optional<QKSMPTETimecodeMode> timecodeModeNamed(std::string_view name);

// Whether a label is one that drop-frame counting skips (SMPTE ST 12-1): the first labels of second 0 of every minute
// but the tenth. Always false outside the drop modes, and for a negative field. (29.97df, 1, 0, 1) gives true.
QUILL_EXPORT bool isDroppedLabel(QKSMPTETimecodeMode mode, std::int64_t minutes, std::int64_t seconds,
                                 std::int64_t frames);

}  // namespace quill::inline v0
