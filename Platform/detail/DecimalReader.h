// DecimalReader: gathers the digits of a decimal number one by one, without the heap, and gives the nearest double.
//
// - Keeps as many digits as can decide the rounding, and whether any digit other than "0" followed them: a number just
//   beyond a tie stays beyond it.
#pragma once

#include "ExactDecimal.h"

#include <cstddef>

namespace quill::inline v0::detail {

class DecimalReader {
 public:
  // Takes "0" to "9", all digits before the point first.
  void addDigit(char digit, bool inFraction) {
    if (count_ == 0 && digit == '0') {
      if (inFraction) --exponent_;
      return;
    }
    if (!inFraction) ++exponent_;
    if (count_ < kMostKept) {
      digits_[count_++] = digit;
    } else if (digit != '0') {
      leftOut_ = true;
    }
  }

  // Moves the point that many places to the right.
  void addExponent(std::int64_t places);

  // Ties to even; beyond the range of doubles an infinity or 0.
  double value() const;

 private:
  static constexpr std::size_t kMostKept = kMostDigits - 1;

  double slowValue() const;

  char digits_[kMostKept];  // 0.d1d2... x 10^exponent_; the first is not "0"
  std::size_t count_ = 0;
  bool leftOut_ = false;  // a digit other than "0" behind the last one
  std::int64_t exponent_ = 0;
};

}  // namespace quill::inline v0::detail
