#include "../Platform/Number.h"

#include "../Platform/IntegerMath.h"
#include "../Platform/KeyedCoder.h"
#include "TextTable.h"

#include <cmath>
#include <vector>

namespace quill {
namespace {

static_assert(!std::is_convertible_v<bool, Number>);

TEST(Number, ConvertsSaturatingWrappingOrWithItsSign) {
  eachRowIn("platform.txt", "numbers", [](const Cells& row) {
    const Number number = numberOf(row.at(0));
    EXPECT_EQ(std::to_string(number.int64Value()), row.at(1));
    EXPECT_EQ(std::to_string(number.uint64Value()), row.at(2));
    EXPECT_EQ(number.description(), row.at(3));
    EXPECT_EQ(number.boolValue(), number.doubleValue() != 0);
    EXPECT_TRUE(number.isEqual(number)) << "the same object";
  });
  const Number none = std::nan("");
  for (const Number& other : {Number(0), Number(0.0), Number(none)})
    EXPECT_FALSE((none <=> other) <= 0 || (none <=> other) > 0 || (other <=> none) <= 0 || none.isEqual(other));
}

TEST(Number, IsOrderedByTheExactValueWhateverTheKind) {
  std::vector<std::pair<int, Number>> numbers;  // with their ranks
  eachRowIn("platform.txt", "ascending numbers", [&, rank = 0](const Cells& row) mutable {
    for (const std::string& number : row) numbers.emplace_back(rank, numberOf(number));
    ++rank;
  });
  for (const auto& [rankA, a] : numbers) {
    for (const auto& [rankB, b] : numbers) {
      const bool same = rankA == rankB;
      EXPECT_TRUE((a <=> b) == (rankA <=> rankB)) << a.description() << " and " << b.description();
      EXPECT_TRUE((a == b) == same && a.isEqual(b) == same && (!same || a.hash() == b.hash())) << a.description();
    }
  }
}

// An object that serves a protocol under a name that stands for another.
struct Speaking {
  static const Protocol protocol, otherName;
};
const Protocol Speaking::protocol{"Speaking"}, Speaking::otherName{"OldSpeaking", &Speaking::protocol};

struct Speaker : Object, Speaking {
  const ClassDescriptor& classDescriptor() const override {
    static const ClassDescriptor speaker{"Speaker", nullptr, 0, &Object::descriptor, nullptr};
    return speaker;
  }
  void* asProtocol(const Protocol& wanted) override {
    return &wanted == &Speaking::protocol ? static_cast<Speaking*>(this) : nullptr;
  }
};

TEST(Object, AnswersForClassAndProtocol) {
  Speaker speaker, other;
  Number number = 2.5;
  Object *const speaking = &speaker, *const counting = &number, *const none = nullptr;
  EXPECT_TRUE(protocolCast<Speaking>(speaking) == &speaker && conformsTo(speaking, Speaking::otherName));
  EXPECT_FALSE(protocolCast<Speaking>(counting) || protocolCast<Speaking>(none) ||
               conformsTo(speaking, Copying::protocol));
  EXPECT_TRUE(conformsTo(counting, Copying::protocol) && conformsTo(counting, Coding::protocol));
  EXPECT_TRUE(isKindOf(number, Object::descriptor));
  EXPECT_TRUE(classCast<Number>(counting) == &number && !classCast<Number>(speaking) && !classCast<Number>(none));
  const std::string description = speaker.description();
  EXPECT_TRUE(description.starts_with("<Speaker: 0x") && description.ends_with(">")) << description;
  EXPECT_TRUE(speaker.isEqual(speaker) && !speaker.isEqual(other) && !speaker.copy());
  const Ref<Number> copied = copyOf(number);
  number = 3;
  EXPECT_EQ(*copied, Number(2.5));
}

TEST(IntegerMath, SaturatesOrWrapsAsNamed) {
  eachRowIn("platform.txt", "saturated doubles", [](const Cells& row) {
    const double value = doubleOf(row.at(0));
    EXPECT_EQ((Cells{row[0], std::to_string(saturateToInt64(value)), std::to_string(saturateToUInt64(value)),
                     std::to_string(saturateToInt32(value))}),
              row);
  });
  eachRowIn("platform.txt", "integer arithmetic", [](const Cells& row) {
    const std::int64_t a = std::stoll(row.at(0)), b = std::stoll(row.at(1)), wrapped = std::stoll(row.at(2)),
                       saturated = std::stoll(row.at(3)), product = std::stoll(row.at(4));
    EXPECT_TRUE(wrappingAdd(a, b) == wrapped && wrappingAdd(b, a) == wrapped && wrappingSubtract(wrapped, b) == a);
    EXPECT_TRUE(saturatingAdd(a, b) == saturated && saturatingAdd(b, a) == saturated);
    EXPECT_TRUE(saturatingMultiply(a, b) == product && saturatingMultiply(b, a) == product);
    EXPECT_TRUE(b == kInt64Lowest ? saturatingSubtract(0, b) == kInt64Highest : saturatingSubtract(a, -b) == saturated);
  });
  constexpr std::uint64_t k2To63 = std::uint64_t{1} << 63;
  EXPECT_TRUE(saturatingSubtract(kInt64Lowest, kInt64Lowest) == 0 &&
              saturatingSubtract(-1, kInt64Lowest) == kInt64Highest);
  EXPECT_TRUE(wrappingNegate(kInt64Lowest) == kInt64Lowest && magnitudeOf(kInt64Lowest) == k2To63);
  EXPECT_TRUE(saturatingFromUInt64(k2To63) == kInt64Highest && saturatingFromUInt64(k2To63 - 2) == kInt64Highest - 1);
  EXPECT_TRUE(truncatingDivide(-7, 2) == -3 && truncatingDivide(-7, 0) == 0 && roundHalfAway(-2.5) == -3);
  EXPECT_EQ(truncatingDivide(kInt64Lowest, -1), kInt64Lowest);
}

}  // namespace
}  // namespace quill
