// Both directions keep the value as a fraction of two natural numbers and take one digit after the other from it: in
// base ten from a double, in base two from decimal digits. The remainder left at the end decides the rounding exactly.
//
// For the fewest digits, the distances to the two neighbours' midpoints are scaled along: generation stops at the first
// digit where stopping, or stopping one higher, stays between the midpoints. Below a power of two the lower neighbour is
// half as far away. A midpoint itself reads back as the even one of its two doubles, so it counts as inside for an even
// significand.

#include "ExactDecimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <compare>
#include <limits>

namespace quill::inline v0::detail {

namespace {

// A natural number below 2^4096: the largest here is 10^(330 + kMostDigits), 3688 bits.
class Natural {
 public:
  explicit Natural(std::uint64_t value) {
    for (; value != 0; value >>= 32) words_[count_++] = static_cast<std::uint32_t>(value);
  }

  bool isZero() const { return count_ == 0; }

  int bitLength() const {
    if (count_ == 0) return 0;
    return static_cast<int>(32 * count_) - std::countl_zero(words_[count_ - 1]);
  }

  void multiplyAdd(std::uint32_t factor, std::uint32_t addend) {
    std::uint64_t carry = addend;
    for (std::size_t i = 0; i < count_; ++i) {
      carry += std::uint64_t{words_[i]} * factor;
      words_[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    if (carry != 0) words_[count_++] = static_cast<std::uint32_t>(carry);
  }

  void multiplyByPowerOfTen(int exponent) {
    for (; exponent >= 9; exponent -= 9) multiplyAdd(1000000000, 0);
    for (; exponent > 0; --exponent) multiplyAdd(10, 0);
  }

  void shiftLeft(int bits) {
    const auto wholeWords = static_cast<std::size_t>(bits / 32);
    if (wholeWords != 0 && count_ != 0) {
      std::copy_backward(words_.begin(), words_.begin() + static_cast<std::ptrdiff_t>(count_),
                         words_.begin() + static_cast<std::ptrdiff_t>(count_ + wholeWords));
      std::fill_n(words_.begin(), wholeWords, 0U);
      count_ += wholeWords;
    }
    multiplyAdd(std::uint32_t{1} << (bits % 32), 0);
  }

  // Requires other <= *this.
  void subtract(const Natural& other) {
    std::uint64_t borrow = 0;
    for (std::size_t i = 0; i < count_; ++i) {
      const std::uint64_t taken = (i < other.count_ ? other.words_[i] : 0) + borrow;
      borrow = words_[i] < taken ? 1 : 0;
      words_[i] = static_cast<std::uint32_t>(words_[i] - taken);
    }
    while (count_ != 0 && words_[count_ - 1] == 0) --count_;
  }

  void add(const Natural& other) {
    std::uint64_t carry = 0;
    const std::size_t count = std::max(count_, other.count_);
    for (std::size_t i = 0; i < count; ++i) {
      carry += (i < count_ ? words_[i] : 0);
      carry += (i < other.count_ ? other.words_[i] : 0);
      words_[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    count_ = count;
    if (carry != 0) words_[count_++] = static_cast<std::uint32_t>(carry);
  }

  friend std::strong_ordering operator<=>(const Natural& a, const Natural& b) {
    if (a.count_ != b.count_) return a.count_ <=> b.count_;
    for (std::size_t i = a.count_; i-- > 0;) {
      if (a.words_[i] != b.words_[i]) return a.words_[i] <=> b.words_[i];
    }
    return std::strong_ordering::equal;
  }

 private:
  std::array<std::uint32_t, 128> words_{};  // lowest first; 0 from count_ on is not promised
  std::size_t count_ = 0;                   // the highest word counted is not 0
};

std::strong_ordering compareToHalf(Natural numerator, const Natural& denominator) {
  numerator.shiftLeft(1);
  return numerator <=> denominator;
}

// A positive double as significand x 2^exponent, both whole.
struct BinaryParts {
  std::uint64_t significand;  // [1, 2^53)
  int exponent;               // [-1074, 971]
};

constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << 52;

BinaryParts partsOf(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t fraction = bits & (kHiddenBit - 1);
  const int biased = static_cast<int>((bits >> 52) & 0x7FF);
  if (biased == 0) return {fraction, -1074};
  return {fraction | kHiddenBit, biased - 1075};
}

// A positive double, taken apart from the highest decimal digit down: what is left is
// numerator / denominator x 10^exponent, the fraction at first in [0.1, 1).
struct Fraction {
  Natural numerator{0};
  Natural denominator{1};
  Natural below{1};  // the distances to the midpoints, over the same denominator
  Natural above{1};
  int exponent = 0;
  bool even = false;  // the significand

  explicit Fraction(double value) {
    const BinaryParts parts = partsOf(value);
    const bool lowerIsNearer = parts.significand == kHiddenBit && parts.exponent > -1074;
    even = parts.significand % 2 == 0;
    numerator = Natural(parts.significand * (lowerIsNearer ? 4 : 2));
    denominator = Natural(lowerIsNearer ? 4 : 2);
    above = Natural(lowerIsNearer ? 2 : 1);
    if (parts.exponent > 0) {
      numerator.shiftLeft(parts.exponent);
      below.shiftLeft(parts.exponent);
      above.shiftLeft(parts.exponent);
    } else {
      denominator.shiftLeft(-parts.exponent);
    }
    // The estimate is never too high: trunc() is floor() + 1 for the negative ones, which begin one higher.
    const int binaryExponent = parts.exponent + static_cast<int>(std::bit_width(parts.significand)) - 1;
    exponent = binaryExponent * 30103 / 100000;  // log10(2)
    denominator.multiplyByPowerOfTen(exponent);
    multiplyByPowerOfTen(-exponent);
    while (numerator >= denominator) {
      denominator.multiplyAdd(10, 0);
      ++exponent;
    }
  }

  // Positive powers only; others change nothing.
  void multiplyByPowerOfTen(int power) {
    numerator.multiplyByPowerOfTen(power);
    below.multiplyByPowerOfTen(power);
    above.multiplyByPowerOfTen(power);
  }

  // The next digit, [0, 9].
  int takeDigit() {
    numerator.multiplyAdd(10, 0);
    int digit = 0;
    for (; numerator >= denominator; ++digit) numerator.subtract(denominator);
    return digit;
  }
};

// Adds one at the last digit.
void incrementLast(DecimalDigits& number) {
  while (!number.digits.empty() && number.digits.back() == '9') number.digits.pop_back();
  if (number.digits.empty()) {
    number.digits += '1';
    ++number.exponent;
  } else {
    ++number.digits.back();
  }
}

void dropTrailingZeros(DecimalDigits& number) {
  number.digits.erase(number.digits.find_last_not_of('0') + 1);
  if (number.digits.empty()) number.exponent = 0;
}

// `count` digits, rounded half to even; a count below 0 gives 0.
DecimalDigits digitsOfFraction(Fraction fraction, std::int64_t count, bool negative) {
  DecimalDigits number{"", fraction.exponent, negative};
  if (count < 0) return {"", 0, negative};
  for (std::int64_t i = 0; i < count && !fraction.numerator.isZero(); ++i) {
    number.digits += static_cast<char>('0' + fraction.takeDigit());
  }
  const auto half = compareToHalf(fraction.numerator, fraction.denominator);
  const bool odd = !number.digits.empty() && (number.digits.back() - '0') % 2 != 0;
  if (half > 0 || (half == 0 && odd)) incrementLast(number);
  dropTrailingZeros(number);
  return number;
}

bool isNegative(double value) { return std::bit_cast<std::int64_t>(value) < 0; }

}  // namespace

DecimalDigits exactShortestDigits(double value) {
  DecimalDigits number{"", 0, isNegative(value)};
  if (value == 0) return number;
  Fraction rest(value);
  number.exponent = rest.exponent;
  for (;;) {
    const int digit = rest.takeDigit();
    rest.below.multiplyAdd(10, 0);
    rest.above.multiplyAdd(10, 0);
    Natural reach = rest.numerator;
    reach.add(rest.above);
    const auto low = rest.numerator <=> rest.below, high = rest.denominator <=> reach;
    const bool canStop = low < 0 || (low == 0 && rest.even);
    const bool canStopAbove = high < 0 || (high == 0 && rest.even);
    number.digits += static_cast<char>('0' + digit);
    if (!canStop && !canStopAbove) continue;
    const auto half = compareToHalf(rest.numerator, rest.denominator);
    const bool nearerAbove = half > 0 || (half == 0 && digit % 2 != 0);
    if (canStopAbove && (!canStop || nearerAbove)) incrementLast(number);
    dropTrailingZeros(number);
    return number;
  }
}

DecimalDigits exactDigitsToPlaces(double value, int places) {
  if (value == 0) return {"", 0, isNegative(value)};
  const Fraction fraction(value);
  return digitsOfFraction(fraction, std::int64_t{fraction.exponent} + places, isNegative(value));
}

DecimalDigits exactDigitsToCount(double value, int count) {
  if (value == 0) return {"", 0, isNegative(value)};
  return digitsOfFraction(Fraction(value), count, isNegative(value));
}

double exactNearestDouble(std::string_view digits, std::int64_t exponent) {
  if (digits.empty() || exponent < -330) return 0;
  if (exponent > 310) return std::numeric_limits<double>::infinity();
  Natural numerator(0), denominator(1);
  for (const char digit : digits) {
    numerator.multiplyAdd(10, static_cast<std::uint32_t>(digit - '0'));
  }
  const int power = static_cast<int>(exponent) - static_cast<int>(digits.size());
  if (power >= 0) {
    numerator.multiplyByPowerOfTen(power);
  } else {
    denominator.multiplyByPowerOfTen(-power);
  }

  // To numerator / denominator x 2^binaryExponent with the fraction in [1, 2).
  int binaryExponent = numerator.bitLength() - denominator.bitLength();
  if (binaryExponent > 0) denominator.shiftLeft(binaryExponent);
  if (binaryExponent < 0) numerator.shiftLeft(-binaryExponent);
  if (numerator < denominator) {
    numerator.shiftLeft(1);
    --binaryExponent;
  }
  if (binaryExponent > 1023) return std::numeric_limits<double>::infinity();
  if (binaryExponent < -1075) return 0;

  const int significantBits = std::min(53, binaryExponent + 1075);  // fewer below the normal range
  std::uint64_t significand = 0;
  for (int bit = 0; bit < significantBits; ++bit) {
    significand <<= 1;
    if (numerator >= denominator) {
      numerator.subtract(denominator);
      significand |= 1;
    }
    numerator.shiftLeft(1);
  }
  // What is left is in [0, 2), the next bit its whole part: at 1 it is a tie.
  const auto half = numerator <=> denominator;
  if (half > 0 || (half == 0 && significand % 2 != 0)) ++significand;
  // A carry out of the significand moves up the exponent bits by itself, to the infinity too.
  const auto biased = static_cast<std::uint64_t>(std::max(binaryExponent + 1022, 0));
  return std::bit_cast<double>((biased << 52) + significand);
}

}  // namespace quill::inline v0::detail
