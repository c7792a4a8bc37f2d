// Positions are computed in doubles. In time units every length is brought to a whole number where it is used, so that
// bars of odd lengths do not drift: each bar is a multiple of the exact length, each beat is rounded within its bar.

#include "MusicalGrid.h"

namespace quill::inline v0 {

namespace {

double asDouble(std::int64_t n) { return static_cast<double>(n); }

// To the nearest; of negative numbers halves and more are cut.
double rounded(double x) { return std::trunc(x + 0.5); }

}  // namespace

BarsAndBeats barsAndBeatsAtTime(const MusicalGrid& grid, double time) {
  const std::int64_t bars = saturateToInt64(time / grid.bar);
  return {bars, (time - grid.bar * asDouble(bars)) / grid.beat};
}

MusicalPosition musicalPositionAtTime(const MusicalGrid& grid, double time) {
  const auto [bars, beats] = barsAndBeatsAtTime(grid, time);
  MusicalPosition position{bars, saturateToInt64(beats)};
  const double inBar = time - grid.bar * asDouble(bars);
  const double beatTime = grid.beat * asDouble(position.beats);
  if (grid.countsSeconds) {
    const double inBeat = inBar - beatTime;
    position.divisions = saturateToInt64(inBeat / grid.division);
    const double inDivision = inBeat - asDouble(position.divisions) * grid.division;
    position.ticks = saturateToInt64(inDivision / grid.tick);
    position.remainingTime = inDivision - asDouble(position.ticks) * grid.tick;
    return position;
  }
  const auto inBeat = static_cast<double>(saturateToUInt64(inBar - rounded(beatTime)));
  position.divisions = saturateToInt64(inBeat / grid.division);
  const double inDivision = inBeat - rounded(asDouble(position.divisions) * grid.division);
  position.ticks = saturateToInt64(inDivision / grid.tick + 0.5);
  const double tickTime = rounded(asDouble(position.ticks) * grid.tick);
  position.remainingTime = tickTime < inDivision ? 0 : inDivision - tickTime;
  return position;
}

double timeOf(const MusicalGrid& grid, const BarsAndBeats& position) {
  const double bars = grid.bar * asDouble(position.bars), beats = grid.beat * position.beats;
  return grid.countsSeconds ? bars + beats : std::trunc(rounded(beats) + bars);
}

double timeOf(const MusicalGrid& grid, const MusicalPosition& position) {
  const double bars = asDouble(position.bars) * grid.bar, beats = asDouble(position.beats) * grid.beat;
  const double divisions = asDouble(position.divisions) * grid.division, ticks = asDouble(position.ticks) * grid.tick;
  if (grid.countsSeconds) return position.remainingTime + (ticks + (divisions + (bars + beats)));
  const auto inBar = static_cast<std::int64_t>(saturateToUInt64(beats + divisions + ticks + 0.5));
  return std::trunc(asDouble(wrappingAdd(inBar, saturateToInt64(position.remainingTime))) + bars);
}

std::int64_t privateCountingAdjustment(std::int64_t x, std::int64_t n, std::int64_t t) {
  const std::int64_t y = x < 1 ? x : wrappingSubtract(n, x);
  return t < 1 ? y : wrappingSubtract(y >= 1 ? y : n, 1);
}

BarsAndBeats mirroredPosition(const BarsAndBeats& position, std::int64_t beatsPerBar) {
  if (!(position.beats > 0)) return position;
  const std::int64_t whole = saturateToInt64(position.beats);
  const double part = position.beats - asDouble(whole);  // [0, 1)
  const std::int64_t beats = privateCountingAdjustment(whole, beatsPerBar, part > 0 ? 1 : 0);
  return {saturatingAdd(position.bars, 1), asDouble(beats) + (part > 0 ? 1 - part : part)};
}

MusicalPosition mirroredPosition(const MusicalPosition& position, std::int64_t beatsPerBar, const WholeNote& whole) {
  const std::int64_t belowBeat = saturatingAdd(position.divisions, position.ticks);
  MusicalPosition mirrored = position;
  if (saturatingAdd(position.beats, belowBeat) > 0) mirrored.bars = saturatingAdd(position.bars, 1);
  mirrored.beats = privateCountingAdjustment(position.beats, beatsPerBar, belowBeat);
  mirrored.divisions =
      privateCountingAdjustment(position.divisions, saturateToInt64(whole.divisionsPerBeat() + 0.5), position.ticks);
  mirrored.ticks = privateCountingAdjustment(position.ticks, whole.ticksPerDivision(), 0);
  return mirrored;
}

}  // namespace quill::inline v0
