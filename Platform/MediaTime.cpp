#include "MediaTime.h"

#include "IntegerMath.h"
#include "TextServices.h"
#include "detail/WideMath.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace quill::inline v0 {

namespace {

using detail::multiplyWide;
using detail::UInt128;

constexpr std::uint64_t kHighestMagnitude = std::uint64_t{1} << 63;  // of a negative tick count

MediaTime infinity(bool negative) { return negative ? MediaTime::negativeInfinity() : MediaTime::positiveInfinity(); }

// The tick count with its sign, or an infinity when the magnitude does not fit.
MediaTime timeFromMagnitude(std::uint64_t magnitude, bool negative, std::int32_t timescale, std::uint32_t flags,
                            std::int64_t epoch) {
  if (magnitude > kHighestMagnitude - (negative ? 0 : 1)) return infinity(negative);
  const std::uint64_t bits = negative ? 0 - magnitude : magnitude;
  return {static_cast<std::int64_t>(bits), timescale, flags, epoch};
}

// The place of a time in the order of compare(): numbers are 1.
int rankOf(const MediaTime& time) {
  if (!(time.flags & kMediaTimeValid)) return 4;
  if (time.flags & kMediaTimeIndefinite) return 3;
  if (time.flags & kMediaTimePositiveInfinity) return 2;
  return time.flags & kMediaTimeNegativeInfinity ? 0 : 1;
}

// The sum at a common multiple of both timescales: below 2^95 before it is known to fit.
MediaTime exactSum(const MediaTime& a, const MediaTime& b, std::int32_t timescale) {
  const auto scaled = [&](const MediaTime& time) {
    return multiplyWide(magnitudeOf(time.value), static_cast<std::uint64_t>(timescale / time.timescale));
  };
  UInt128 x = scaled(a), y = scaled(b);
  bool negative = a.value < 0;
  UInt128 sum;
  if (negative == (b.value < 0)) {
    sum.low = x.low + y.low;  // modulo 2^64, the carry below
    sum.high = x.high + y.high + (sum.low < x.low ? 1 : 0);
  } else {
    if (x < y) {
      std::swap(x, y);
      negative = !negative;
    }
    sum.low = x.low - y.low;
    sum.high = x.high - y.high - (x.low < y.low ? 1 : 0);
  }
  return sum.high != 0 ? infinity(negative)
                       : timeFromMagnitude(sum.low, negative, timescale, a.flags | b.flags, a.epoch);
}

int orderOf(bool less, bool greater) { return less ? -1 : greater ? 1 : 0; }

}  // namespace

MediaTime MediaTime::withSeconds(double seconds, std::int32_t timescale) {
  if (timescale <= 0) return kMediaTimeInvalid;
  if (std::isnan(seconds)) return indefinite();
  const double ticks = seconds * timescale;
  const double whole = roundHalfAway(ticks);
  if (whole >= kTwoTo63 || whole < -kTwoTo63) return infinity(whole < 0);
  MediaTime time{saturateToInt64(whole), timescale};
  if (whole != ticks) time.flags |= kMediaTimeHasBeenRounded;
  return time;
}

double MediaTime::seconds() const {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (isNumeric() && timescale != 0) return static_cast<double>(value) / timescale;
  switch (rankOf(*this)) {
    case 0: return -kInfinity;
    case 2: return kInfinity;
    default: return std::numeric_limits<double>::quiet_NaN();
  }
}

std::string MediaTime::description() const {
  static constexpr const char* kNames[] = {"{-infinity}", nullptr, "{+infinity}", "{indefinite}", "{invalid}"};
  if (const char* name = kNames[rankOf(*this)]) return name;
  std::string text = "{";
  appendInteger(text, value);
  text += '/';
  appendInteger(text, timescale);
  text += " = ";
  appendFixed(text, seconds(), 3);
  text += flags & kMediaTimeHasBeenRounded ? " s, rounded}" : " s}";
  return text;
}

int compare(const MediaTime& a, const MediaTime& b) {
  if (a.timescale == b.timescale && a.timescale > 0 && a.isNumeric() && b.isNumeric()) {  // as mostly
    return orderOf(a.value < b.value, b.value < a.value);
  }
  const int rankA = rankOf(a), rankB = rankOf(b);
  if (rankA != 1 || rankB != 1) return orderOf(rankA < rankB, rankB < rankA);
  // a.value / a.timescale against b.value / b.timescale, multiplied out; a negative timescale moves its sign up.
  const bool negativeA = a.value != 0 && (a.value < 0) != (a.timescale < 0);
  const bool negativeB = b.value != 0 && (b.value < 0) != (b.timescale < 0);
  if (negativeA != negativeB) return negativeA ? -1 : 1;
  const UInt128 left = multiplyWide(magnitudeOf(a.value), magnitudeOf(b.timescale));
  const UInt128 right = multiplyWide(magnitudeOf(b.value), magnitudeOf(a.timescale));
  return negativeA ? orderOf(right < left, left < right) : orderOf(left < right, right < left);
}

MediaTime add(const MediaTime& a, const MediaTime& b) {
  const int rankA = rankOf(a), rankB = rankOf(b);
  if (rankA != 1 || rankB != 1) {
    if (rankA == 4 || rankB == 4) return kMediaTimeInvalid;
    if (rankA == 3 || rankB == 3 || rankA + rankB == 2) {
      // One of them is a number unless they are opposite infinities: 1 + 1 cannot come here.
      return MediaTime::indefinite();
    }
    return infinity(rankA == 0 || rankB == 0);
  }
  if (a.timescale != b.timescale) {
    if (a.timescale <= 0 || b.timescale <= 0) return kMediaTimeInvalid;
    const std::int64_t common = std::lcm(std::int64_t{a.timescale}, std::int64_t{b.timescale});
    if (common > std::numeric_limits<std::int32_t>::max()) {
      const std::int32_t larger = std::max(a.timescale, b.timescale);
      return add(a.convertedTo(larger), b.convertedTo(larger));
    }
    return exactSum(a, b, static_cast<std::int32_t>(common));
  }
  const std::int64_t sum = wrappingAdd(a.value, b.value);
  const bool overflow = (a.value >= 0) == (b.value >= 0) && (sum >= 0) != (a.value >= 0);
  if (overflow) return infinity((a.value < 0) != (a.timescale < 0));
  return {sum, a.timescale, a.flags | b.flags, a.epoch};
}

}  // namespace quill::inline v0
