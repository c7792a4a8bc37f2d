// Drop-frame counting (SMPTE ST 12-1) at 29.97 skips labels 00 and 01 at the start of each minute but the tenth:
//
//   minute   0     1     2     3     4     5     6     7     8     9     (10)
//   frames   1800  1798  1798  1798  1798  1798  1798  1798  1798  1798  = 17982 in ten minutes
//   first    0     1800  3598  5396  7194  8992  10790 12588 14386 16184 17982
//   label    00:00 01:02 02:02 03:02 04:02 05:02 06:02 07:02 08:02 09:02 10:00
//
// So the first minute of ten has D = 2 frames more than the others, and the first second of a minute that drops has D
// frames fewer than the rest. At 59.94 D is 4, at 119.88 it is 8. Plain counting is the same arithmetic with D = 0.

#include "SMPTEArithmetic.h"

#include <algorithm>
#include <utility>

namespace quill::inline v0 {

namespace {

std::int64_t truncatingModulo(std::int64_t n, std::int64_t d) {
  return wrappingSubtract(n, saturatingMultiply(truncatingDivide(n, d), d));
}

// Moves the whole multiples of `size` from one field into the next, so that `low` ends in [0, size).
void carry(std::int64_t& low, std::int64_t& high, std::int64_t size) {
  if (size < 1 || (low >= 0 && low < size)) return;
  std::int64_t quotient = low / size, rest = low % size;  // size is positive
  if (rest < 0) {
    rest += size;
    --quotient;
  }
  low = rest;
  high = saturatingAdd(high, quotient);
}

SMPTEFieldSet fieldByField(const SMPTEFieldSet& a, const SMPTEFieldSet& b,
                           std::int64_t (*operation)(std::int64_t, std::int64_t)) {
  return {operation(a.hours, b.hours), operation(a.minutes, b.minutes), operation(a.seconds, b.seconds),
          operation(a.frames, b.frames), operation(a.subframes, b.subframes)};
}

// Counts and n fit the word; the narrow one divides faster. Every count is positive.
template <class Word>
constexpr SMPTEFieldSet wholeRateLabel(const SMPTECounting& counting, Word n) {
  const auto perMinute = static_cast<Word>(counting.framesPerMinute);
  const auto perTenMinutes = static_cast<Word>(counting.framesPerTenMinutes);
  const auto perHour = static_cast<Word>(counting.framesPerHour);
  const auto dropped = static_cast<Word>(counting.dropped), whole = static_cast<Word>(counting.whole);
  const Word hours = n / perHour;
  Word r = n % perHour;
  Word minutes = r / perTenMinutes * 10;
  r %= perTenMinutes;
  const Word firstMinute = perMinute + dropped;
  if (r >= firstMinute) {
    r -= firstMinute;
    minutes += r / perMinute + 1;
    r = r % perMinute + dropped;  // as if the skipped labels had frames
  }
  return {static_cast<std::int64_t>(hours), static_cast<std::int64_t>(minutes), static_cast<std::int64_t>(r / whole),
          static_cast<std::int64_t>(r % whole), 0};
}

// With the constants of each fixed mode compiled in: dividing by them is several times faster.

template <std::size_t mode>
SMPTEFieldSet labelInMode(std::uint64_t frames) {
  constexpr const SMPTECounting& counting = detail::kModeCountings[mode];
  const auto narrow = static_cast<std::uint32_t>(frames);
  return narrow == frames ? wholeRateLabel(counting, narrow) : wholeRateLabel(counting, frames);
}

// Takes the frames off the ticks and gives their label.
template <std::size_t mode>
SMPTEFieldSet takeLabel(std::uint64_t& ticks) {
  constexpr const TimecodeModeRow& row = kTimecodeModeTable[mode];
  constexpr auto frameTicks = static_cast<std::uint64_t>(row.ticksPerFrame());
  std::uint64_t seconds = 0;
  if constexpr (row.kind == TimecodeModeKind::Duration) {
    constexpr auto secondTicks = static_cast<std::uint64_t>(row.tickRate);
    seconds = ticks / secondTicks;
    ticks -= seconds * secondTicks;
  }
  const std::uint64_t frames = ticks / frameTicks;
  ticks -= frames * frameTicks;
  if constexpr (row.kind == TimecodeModeKind::Duration) {
    return {static_cast<std::int64_t>(seconds / 3600), static_cast<std::int64_t>(seconds / 60 % 60),
            static_cast<std::int64_t>(seconds % 60), static_cast<std::int64_t>(frames), 0};
  } else {
    return labelInMode<mode>(frames);
  }
}

template <std::size_t mode>
SMPTEPosition positionInMode(std::uint64_t ticks) {
  SMPTEPosition position;
  position.label = takeLabel<mode>(ticks);
  if (ticks != 0) position.fraction = static_cast<double>(ticks) / kTimecodeModeTable[mode].ticksPerFrame();
  return position;
}

template <std::size_t mode>
SMPTEFieldSet fieldsInMode(std::uint64_t ticks) {
  constexpr auto frameTicks = static_cast<std::uint64_t>(kTimecodeModeTable[mode].ticksPerFrame());
  SMPTEFieldSet fields = takeLabel<mode>(ticks);
  // As subframesFromFraction of ticks / frameTicks, in integers: a thousandth of a frame is added before the cut.
  const std::uint64_t subframes = (ticks * 1000 + frameTicks) * kSubframesPerFrame / (frameTicks * 1000);
  fields.subframes = static_cast<std::int64_t>(std::min<std::uint64_t>(subframes, kSubframesPerFrame - 1));
  return fields;
}

struct PlainArithmetic {
  static std::int64_t add(std::int64_t a, std::int64_t b) { return a + b; }
  static std::int64_t multiply(std::int64_t a, std::int64_t b) { return a * b; }
};

struct SaturatingArithmetic {
  static std::int64_t add(std::int64_t a, std::int64_t b) { return saturatingAdd(a, b); }
  static std::int64_t multiply(std::int64_t a, std::int64_t b) { return saturatingMultiply(a, b); }
};

template <class Arithmetic>
std::int64_t wholeRateFrame(const SMPTECounting& counting, const SMPTEFieldSet& label) {
  const auto add = &Arithmetic::add;
  const auto multiply = &Arithmetic::multiply;
  const std::int64_t minuteInTen = label.minutes % 10;
  std::int64_t n =
      add(multiply(label.hours, counting.framesPerHour), multiply(label.minutes / 10, counting.framesPerTenMinutes));
  n = add(n, multiply(minuteInTen, counting.framesPerMinute));
  if (counting.dropped > 0 && minuteInTen != 0 && label.seconds == 0) {
    // A skipped label stands for the first frame of the minute, which the first one of the ten pushed back.
    return add(add(n, counting.dropped), std::max<std::int64_t>(add(label.frames, -counting.dropped), 0));
  }
  // What the first minute has more and the first second has fewer cancels out.
  return add(add(n, multiply(label.seconds, counting.whole)), label.frames);
}

template <std::size_t mode>
std::int64_t ticksInMode(const SMPTEFieldSet& label) {
  constexpr const TimecodeModeRow& row = kTimecodeModeTable[mode];
  if constexpr (row.kind == TimecodeModeKind::Duration) {
    const std::int64_t seconds = (label.hours * 60 + label.minutes) * 60 + label.seconds;
    return seconds * row.tickRate + label.frames * row.ticksPerFrame();
  } else {
    return wholeRateFrame<PlainArithmetic>(detail::kModeCountings[mode], label) * row.ticksPerFrame();
  }
}

template <std::size_t mode>
constexpr detail::ModeFunctions functionsOfMode() {
  detail::ModeFunctions functions{nullptr, positionInMode<mode>, fieldsInMode<mode>, ticksInMode<mode>};
  if constexpr (detail::kModeCountings[mode].whole > 0) functions.label = labelInMode<mode>;
  return functions;
}

// Whether the minute skips labels in a drop-frame mode.
bool dropsLabels(std::int64_t minute) { return minute % 10 != 0; }

}  // namespace

constinit const std::array<detail::ModeFunctions, std::size(kTimecodeModeTable)> detail::kModeFunctions =
    []<std::size_t... modes>(std::index_sequence<modes...>) {
  return std::array<ModeFunctions, sizeof...(modes)>{functionsOfMode<modes>()...};
}
(std::make_index_sequence<std::size(kTimecodeModeTable)>());

SMPTEFieldSet labelFromFrame(const SMPTECounting& counting, std::int64_t n) {
  if (counting.whole > 0 && n >= 0) {
    const auto frames = static_cast<std::uint64_t>(n);
    return counting.fixedMode >= 0 ? detail::kModeFunctions[static_cast<std::size_t>(counting.fixedMode)].label(frames)
                                   : wholeRateLabel(counting, frames);
  }
  SMPTEFieldSet label;
  // A fractional rate drops nothing; its counts may be 0.
  label.hours = truncatingDivide(n, counting.framesPerHour);
  std::int64_t r = truncatingModulo(n, counting.framesPerHour);
  const std::int64_t tens = truncatingDivide(r, counting.framesPerTenMinutes);
  r = truncatingModulo(r, counting.framesPerTenMinutes);
  const std::int64_t minuteInTen = truncatingDivide(r, counting.framesPerMinute);
  r = truncatingModulo(r, counting.framesPerMinute);
  label.minutes = saturatingAdd(saturatingMultiply(tens, 10), minuteInTen);
  double rest = static_cast<double>(r);
  if (rest < counting.nominal) {
    label.frames = r;
  } else {
    rest -= counting.nominal;
    const double second = std::trunc(rest / counting.nominal);
    label.seconds = saturatingAdd(saturateToInt64(second), 1);
    label.frames = saturateToInt64(rest - counting.nominal * second);
  }
  return label;
}

std::int64_t frameFromLabel(const SMPTECounting& counting, const SMPTEFieldSet& label) {
  if (counting.whole == 0) return saturateToInt64(fractionalFrameFromLabel(counting, label));
  // Fields below 2^20 and counts below 2^40, the usual case, need no watch over 64 bits.
  const std::int64_t fields = label.hours | label.minutes | label.seconds | label.frames;
  const bool isUsual = (fields >> 20) == 0 && (counting.framesPerHour >> 40) == 0;
  return isUsual ? wholeRateFrame<PlainArithmetic>(counting, label)
                 : wholeRateFrame<SaturatingArithmetic>(counting, label);
}

double fractionalFrameFromLabel(const SMPTECounting& counting, const SMPTEFieldSet& label) {
  if (counting.whole > 0) return static_cast<double>(frameFromLabel(counting, label));
  const auto count = [](std::int64_t times, std::int64_t frames) {
    return static_cast<double>(times) * static_cast<double>(frames);
  };
  const double secondFrames =
      label.seconds == 0 ? 0 : counting.nominal * (static_cast<double>(label.seconds) - 1) + counting.nominal;
  return count(label.hours, counting.framesPerHour) + count(label.minutes / 10, counting.framesPerTenMinutes) +
         count(label.minutes % 10, counting.framesPerMinute) + secondFrames + static_cast<double>(label.frames);
}

SMPTEFieldSet carriedFields(SMPTEFieldSet fields, std::int64_t framesPerSecond) {
  carry(fields.subframes, fields.frames, kSubframesPerFrame);
  carry(fields.frames, fields.seconds, framesPerSecond);
  carry(fields.seconds, fields.minutes, 60);
  carry(fields.minutes, fields.hours, 60);
  return fields;
}

SMPTEFieldSet addFields(const SMPTEFieldSet& a, const SMPTEFieldSet& b, std::int64_t framesPerSecond) {
  return carriedFields(fieldByField(a, b, saturatingAdd), framesPerSecond);
}

SMPTEFieldSet subtractFields(const SMPTEFieldSet& a, const SMPTEFieldSet& b, std::int64_t framesPerSecond) {
  return carriedFields(fieldByField(a, b, wrappingSubtract), framesPerSecond);
}

SMPTEFieldSet privateHMSFsFrameAdjustment(SMPTEFieldSet fields, std::int64_t frameDelta, std::int64_t framesPerSecond) {
  fields.frames = saturatingAdd(fields.frames, frameDelta);
  return carriedFields(fields, framesPerSecond);
}

std::int64_t dropFrameAdjustment(std::int64_t framesPerSecond, const SMPTEFieldSet& before, const SMPTEFieldSet& after,
                                 const SMPTEFieldSet& change) {
  if (framesPerSecond < 1) return 0;
  const std::int64_t dropped = framesPerSecond / 15;
  // 99 frames as seconds and frames.
  const std::int64_t k = 99 / framesPerSecond, t = 99 - k * framesPerSecond;
  const SMPTEFieldSet limit{0, 0, k, t, 0};
  const bool isSmallChange = change.frames >= 1 && change <= limit;

  if (before < after) {
    const std::int64_t m = saturatingAdd(before.minutes, 1);
    const bool crosses =
        isSmallChange && dropsLabels(m) && before.seconds >= 60 - k && after.minutes == m % 60 && after.seconds <= k;
    return crosses ? dropped : 0;
  }
  if (before == after) {
    const bool isSkipped = dropsLabels(before.minutes) && before.seconds == 0 && before.frames < dropped;
    return isSkipped ? saturatingAdd(dropped, -std::max(before.frames, -kInt64Highest)) : 0;
  }
  if (!isSmallChange || !dropsLabels(before.minutes) || before.seconds > k) return 0;
  if (after.minutes == before.minutes && after.seconds == 0 && after.frames < dropped) return -dropped;
  const std::int64_t previous = (before.minutes % 60 + 59) % 60;
  return after.minutes == previous && after.seconds >= 60 - k ? -dropped : 0;
}

}  // namespace quill::inline v0
