#include "DecimalReader.h"

#include "../IntegerMath.h"
#include "FloatingCharconv.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace quill::inline v0::detail {

void DecimalReader::addExponent(std::int64_t places) { exponent_ = saturatingAdd(exponent_, places); }

double DecimalReader::value() const {
  // Powers of ten that a double holds exactly: with exact digits too, there is one rounding.
  static constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                            1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  if (count_ == 0) return 0;
  const std::int64_t power = saturatingAdd(exponent_, -static_cast<std::int64_t>(count_));
  if (count_ > 15 || power < -22 || power > 22) return slowValue();
  const auto whole = static_cast<double>(saturatingUInt64({digits_, count_}));
  return power < 0 ? whole / kPowersOfTen[-power] : whole * kPowersOfTen[power];
}

double DecimalReader::slowValue() const {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (exponent_ > 310) return kInfinity;
  if (exponent_ < -330) return 0;
  char text[2 + kMostDigits + 5] = "0.";
  char* end = std::copy_n(digits_, count_, text + 2);
  if (leftOut_) *end++ = '1';
#if QUILL_HAS_FLOATING_CHARCONV
  *end++ = 'e';
  end = std::to_chars(end, text + sizeof text, exponent_).ptr;
  double value = 0;
  if (std::from_chars(text, end, value).ec == std::errc()) return value;
  return exponent_ > 0 ? kInfinity : 0;
#else
  return exactNearestDouble({text + 2, static_cast<std::size_t>(end - (text + 2))}, exponent_);
#endif
}

}  // namespace quill::inline v0::detail
