#include "Number.h"

#include "IntegerMath.h"
#include "KeyedCoder.h"
#include "TextServices.h"

#include <bit>

namespace quill::inline v0 {

namespace {

// An integer of either signedness: 65 bits.
struct WideInteger {
  bool negative;
  std::uint64_t bits;  // two's complement when negative

  friend bool operator==(const WideInteger&, const WideInteger&) = default;
  friend std::strong_ordering operator<=>(const WideInteger& a, const WideInteger& b) {
    if (a.negative != b.negative) return a.negative ? std::strong_ordering::less : std::strong_ordering::greater;
    return a.bits <=> b.bits;
  }
};

// An integer against a double that is not NaN: by whole parts, then by the fraction.
std::strong_ordering compareToDouble(WideInteger a, double b) {
  if (b >= kTwoTo64) return std::strong_ordering::less;
  if (b < -kTwoTo63) return std::strong_ordering::greater;
  const double whole = std::trunc(b);
  const WideInteger wholeB = whole < 0 ? WideInteger{true, static_cast<std::uint64_t>(saturateToInt64(whole))}
                                       : WideInteger{false, saturateToUInt64(whole)};
  if (a != wholeB) return a <=> wholeB;
  return whole < b   ? std::strong_ordering::less
         : whole > b ? std::strong_ordering::greater
                     : std::strong_ordering::equal;
}

}  // namespace

const ClassDescriptor Number::descriptor{"Number", nullptr, 0, &Object::descriptor,
                                         []() -> Ref<Object> { return std::make_shared<Number>(); }};

Number::Number(double value) : kind_(Kind::Double), bits_(std::bit_cast<std::uint64_t>(value)) {}

Number Number::boolean(bool value) {
  Number number(std::uint64_t{value});
  number.kind_ = Kind::Boolean;
  return number;
}

Number::~Number() = default;

std::int64_t Number::int64Value() const {
  return kind_ == Kind::Double ? saturateToInt64(doubleValue()) : static_cast<std::int64_t>(bits_);
}

std::uint64_t Number::uint64Value() const { return kind_ == Kind::Double ? wrapToUInt64(doubleValue()) : bits_; }

double Number::doubleValue() const {
  switch (kind_) {
    case Kind::Double: return std::bit_cast<double>(bits_);
    case Kind::Signed: return static_cast<double>(static_cast<std::int64_t>(bits_));
    default: return static_cast<double>(bits_);
  }
}

bool Number::boolValue() const { return kind_ == Kind::Double ? doubleValue() != 0 : bits_ != 0; }

std::string Number::description() const {
  std::string text;
  switch (kind_) {
    case Kind::Boolean: return bits_ ? "true" : "false";
    case Kind::Double: appendShortest(text, doubleValue()); break;
    case Kind::Signed: appendInteger(text, static_cast<std::int64_t>(bits_)); break;
    case Kind::Unsigned: appendInteger(text, bits_); break;
  }
  return text;
}

bool Number::isEqual(const Object& other) const {
  const auto* number = classCast<Number>(&other);
  return number && (this == number || *this == *number);
}

std::uint64_t Number::hash() const {
  if (kind_ != Kind::Double) return bits_;
  // A whole double hashes as the integer that it equals.
  const double value = doubleValue();
  if (std::trunc(value) == value && value >= -kTwoTo63 && value < kTwoTo64) return uint64Value();
  return bits_;
}

Ref<Object> Number::copy() const { return std::make_shared<Number>(*this); }

void* Number::asProtocol(const Protocol& protocol) {
  return &protocol == &Copying::protocol || &protocol == &Coding::protocol ? this : nullptr;
}

std::partial_ordering operator<=>(const Number& a, const Number& b) {
  const bool doubleA = a.kind_ == Number::Kind::Double, doubleB = b.kind_ == Number::Kind::Double;
  if (doubleA && doubleB) return a.doubleValue() <=> b.doubleValue();
  if ((doubleA && std::isnan(a.doubleValue())) || (doubleB && std::isnan(b.doubleValue()))) {
    return std::partial_ordering::unordered;
  }
  const auto wide = [](const Number& n) {
    const bool negative = n.kind_ == Number::Kind::Signed && static_cast<std::int64_t>(n.bits_) < 0;
    return WideInteger{negative, n.bits_};
  };
  if (doubleA) return 0 <=> compareToDouble(wide(b), a.doubleValue());
  if (doubleB) return compareToDouble(wide(a), b.doubleValue());
  return wide(a) <=> wide(b);
}

}  // namespace quill::inline v0
