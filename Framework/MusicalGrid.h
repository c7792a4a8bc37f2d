// The musical grid as plain arithmetic: positions in bars, beats, divisions and ticks, and the time they stand at.
//
// - A beat is always a quarter note, a division a sixteenth; a bar is as long as its time signature says.
// - Positions here count from 0 in every field. People count beats and divisions from 1: the caller adds that.
// - No function reports anything, and each is defined for every input: what 64 bits do not hold stops at the end of the
//   range, and a grid without a length (tempo 0, 4/0) reads as position 0 wherever it divides by nothing.
#pragma once

#include "../Platform/Export.h"
#include "../Platform/IntegerMath.h"

#include <optional>

namespace quill::inline v0 {

// What a whole note holds.
struct WholeNote {
  std::int64_t beats = 4;
  std::int64_t divisions = 16;
  std::int64_t ticks = 3840;

  constexpr double divisionsPerBeat() const { return static_cast<double>(divisions) / static_cast<double>(beats); }
  constexpr std::int64_t ticksPerBeat() const { return truncatingDivide(ticks, beats); }
  constexpr std::int64_t ticksPerDivision() const { return truncatingDivide(ticks, divisions); }
  // Divisions or ticks of so many beats, to the nearest.
  constexpr std::int64_t inBeats(std::int64_t perWholeNote, std::int64_t beatCount) const {
    return saturateToInt64(
        static_cast<double>(perWholeNote) * static_cast<double>(beatCount) / static_cast<double>(beats) + 0.5);
  }
};

// How long the units last: in seconds, or in time units that only whole numbers of count.
struct MusicalGrid {
  double bar = 0;
  double beat = 0;
  double division = 0;
  double tick = 0;
  bool countsSeconds = false;

  // At a tempo in beats per minute and a rate in time units per second, none for seconds. At 120, 4/4 and 48000 a beat
  // lasts 24000 units, a bar 96000, a division 6000, a tick 25.
  static MusicalGrid atTempo(double tempo, std::int64_t numerator, std::int64_t denominator, const WholeNote& whole,
                             std::optional<std::uint64_t> rate) {
    const double beat = rate ? 60 / tempo * static_cast<double>(*rate) : 60 / tempo;
    const double wholeNote = static_cast<double>(whole.beats) * beat;
    return {static_cast<double>(numerator) * wholeNote / static_cast<double>(denominator), beat,
            beat / whole.divisionsPerBeat(), beat / static_cast<double>(whole.ticksPerBeat()), !rate};
  }
};

// Each field counts from 0.
struct BarsAndBeats {
  std::int64_t bars = 0;
  double beats = 0;
};

// Each field counts from 0. The remaining time is what the fields leave of a time, in seconds below a tick; in time units
// it is 0 or negative, because ticks are read to the nearest one.
struct MusicalPosition {
  std::int64_t bars = 0;
  std::int64_t beats = 0;
  std::int64_t divisions = 0;
  std::int64_t ticks = 0;
  double remainingTime = 0;
};

// Bars, beats and divisions are cut, ticks rounded to the nearest, in seconds cut too.
QUILL_EXPORT BarsAndBeats barsAndBeatsAtTime(const MusicalGrid& grid, double time);
QUILL_EXPORT MusicalPosition musicalPositionAtTime(const MusicalGrid& grid, double time);

// In time units a whole number. Fields may pass their usual range.
QUILL_EXPORT double timeOf(const MusicalGrid& grid, const BarsAndBeats& position);
QUILL_EXPORT double timeOf(const MusicalGrid& grid, const MusicalPosition& position);

// The position of a negative time as a count back from zero, for a bar of so many beats. In 4/4 beat 1 of bar 0, both
// from 0, becomes beat 3 of bar 1.
QUILL_EXPORT BarsAndBeats mirroredPosition(const BarsAndBeats& position, std::int64_t beatsPerBar);
QUILL_EXPORT MusicalPosition mirroredPosition(const MusicalPosition& position, std::int64_t beatsPerBar,
                                              const WholeNote& whole);

// One field counted back from the next larger unit: `x` the field, `n` how many of it that unit holds, `t` the sum of the
// finer fields. A field of 0 stays unless something finer is left. (1, 4, 0) gives 3, (1, 4, 7) gives 2, (0, 4, 7) gives 3.
QUILL_EXPORT std::int64_t privateCountingAdjustment(std::int64_t x, std::int64_t n, std::int64_t t);

}  // namespace quill::inline v0
