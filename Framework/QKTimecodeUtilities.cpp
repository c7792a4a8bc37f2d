#include "QKTimecodeUtilities.h"

#include <numeric>

namespace quill::inline v0 {

std::uint64_t _QKTimecodeUtilityLCM(std::uint64_t a, std::uint64_t b) {
  if (a == 0 || b == 0) return 0;
  const std::uint64_t multiple = (a / std::gcd(a, b)) * b;  // may wrap
  return multiple < a || multiple < b || multiple % a != 0 || multiple % b != 0 ? 0 : multiple;
}

double privateSecondsFromHMS(std::int64_t hours, std::int64_t minutes, double seconds) {
  return seconds + static_cast<double>(minutes) * 60 + static_cast<double>(hours) * 3600;
}

}  // namespace quill::inline v0
