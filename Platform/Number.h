// Number: a number that remembers whether it is signed, unsigned, a double or a boolean.
//
// - A plain value in arithmetic, without the heap; an object in a Ref where an object is asked for.
// - Equality, order and hash follow the exact numeric value, whatever the kind.
#pragma once

#include "Object.h"

#include <compare>
#include <concepts>

namespace quill::inline v0 {

class QUILL_EXPORT Number final : public Object {
 public:
  static const ClassDescriptor descriptor;

  enum class Kind : std::uint8_t { Signed, Unsigned, Double, Boolean };

  Number() = default;
  // Of the integer's own signedness, or a double.
  template <std::signed_integral T>
  Number(T value) : kind_(Kind::Signed), bits_(static_cast<std::uint64_t>(std::int64_t{value})) {}
  template <std::unsigned_integral T>
  requires(!std::same_as<T, bool>) Number(T value) : kind_(Kind::Unsigned), bits_(value) {}
  Number(double value);
  Number(bool) = delete;  // see boolean()
  static Number boolean(bool value);

  Number(const Number&) = default;
  Number& operator=(const Number&) = default;
  ~Number() override;

  Kind kind() const { return kind_; }

  // Toward zero and saturating for a double (NaN is 0); an unsigned value from 2^63 up is read as its bit pattern.
  std::int64_t int64Value() const;
  // A negative value is read as its two's complement (of the saturated integer for a double); a double from 2^64 up
  // gives 2^64-1.
  std::uint64_t uint64Value() const;
  // The nearest double.
  double doubleValue() const;
  // Whether the value is not 0.
  bool boolValue() const;

  // The number in digits, a double in the fewest that read back as itself; "true", "false".
  std::string description() const override;
  bool isEqual(const Object& other) const override;
  std::uint64_t hash() const override;
  Ref<Object> copy() const override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;

  // Unordered, and unequal, when either is NaN.
  friend QUILL_EXPORT std::partial_ordering operator<=>(const Number& a, const Number& b);
  friend bool operator==(const Number& a, const Number& b) { return (a <=> b) == 0; }

 private:
  Kind kind_ = Kind::Signed;
  std::uint64_t bits_ = 0;  // two's complement, the double's bits, or 0 and 1
};

}  // namespace quill::inline v0
