#include "../Platform/Number.h"

#include "../Platform/KeyedCoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>
#include <vector>

namespace quill {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kHighestUnsigned = std::numeric_limits<std::uint64_t>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

static_assert(!std::is_convertible_v<bool, Number>);

TEST(NumberConversion, SaturatesWrapsAndKeepsSigns) {
  using enum Number::Kind;
  const std::tuple<Number, Number::Kind, std::int64_t, std::uint64_t, double, const char*> rows[] = {
      {-1, Signed, -1, kHighestUnsigned, -1, "-1"},
      {kLowest, Signed, kLowest, 9223372036854775808U, -9223372036854775808.0, "-9223372036854775808"},
      {kHighestUnsigned, Unsigned, -1, kHighestUnsigned, 18446744073709551616.0, "18446744073709551615"},
      {2.75, Double, 2, 2, 2.75, "2.75"},
      {-0.0, Double, 0, 0, -0.0, "0"},
      {1e19, Double, kHighest, 10000000000000000000U, 1e19, "10000000000000000000"},
      {-1e19, Double, kLowest, 9223372036854775808U, -1e19, "-10000000000000000000"},
      {kInfinity, Double, kHighest, kHighestUnsigned, kInfinity, "inf"},
      {Number::boolean(true), Boolean, 1, 1, 1, "true"},
  };
  for (const auto& [number, kind, int64, uint64, asDouble, text] : rows) {
    EXPECT_EQ(number.kind(), kind) << text;
    EXPECT_EQ(number.int64Value(), int64) << text;
    EXPECT_EQ(number.uint64Value(), uint64) << text;
    EXPECT_EQ(number.doubleValue(), asDouble) << text;
    EXPECT_EQ(number.boolValue(), asDouble != 0) << text;
    EXPECT_EQ(number.description(), text);
  }
  const Number notANumber = std::nan("");
  EXPECT_TRUE(notANumber.int64Value() == 0 && notANumber.uint64Value() == 0 && notANumber.description() == "nan");
  EXPECT_TRUE(notANumber.isEqual(notANumber)) << "the same object";
  for (const Number& other : {Number(0), Number(0.0), Number(0U), notANumber}) {
    EXPECT_TRUE((notANumber <=> other) == std::partial_ordering::unordered);
    EXPECT_TRUE((other <=> notANumber) == std::partial_ordering::unordered);
    EXPECT_FALSE(notANumber == other || (&other != &notANumber && notANumber.isEqual(other)));
  }
}

TEST(NumberOrder, FollowsTheExactValueWhateverTheKind) {
  const Number no = Number::boolean(false), yes = Number::boolean(true);
  constexpr double kTwo53 = 0x1p53, kTwo63 = 0x1p63, kTwo64 = 0x1p64;
  const std::vector<Number> ascending = {-kInfinity,  -kTwo63 - 2048,
                                         kLowest,     -kTwo63,
                                         kLowest + 1, -1,
                                         -1.0,        -0.5,
                                         0,           0U,
                                         0.0,         -0.0,
                                         no,          5e-324,
                                         1,           1U,
                                         1.0,         yes,
                                         1.5,         1LL << 53,
                                         kTwo53,      (1LL << 53) + 1,
                                         kHighest,    1ULL << 63,
                                         kTwo63,      kHighestUnsigned,
                                         kTwo64,      kInfinity};
  const int ranks[] = {0, 1, 2, 2, 3, 4, 4, 5, 6, 6, 6, 6, 6, 7, 8, 8, 8, 8, 9, 10, 10, 11, 12, 13, 13, 14, 15, 16};
  for (std::size_t i = 0; i < std::size(ranks); ++i) {
    for (std::size_t j = 0; j < std::size(ranks); ++j) {
      const Number &a = ascending[i], &b = ascending[j];
      const bool same = ranks[i] == ranks[j];
      EXPECT_TRUE((a <=> b) == (ranks[i] <=> ranks[j])) << a.description() << " and " << b.description();
      EXPECT_TRUE((a == b) == same && a.isEqual(b) == same) << a.description() << " and " << b.description();
      EXPECT_TRUE(!same || a.hash() == b.hash()) << a.description();
    }
  }
}

// An object that serves a protocol under a name that stands for another.
struct Speaking {
  static const Protocol protocol, otherName;
};
const Protocol Speaking::protocol{"Speaking"};
const Protocol Speaking::otherName{"OldSpeaking", &Speaking::protocol};

class Speaker : public Object, public Speaking {
 public:
  static const ClassDescriptor descriptor;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& wanted) override {
    return &wanted == &Speaking::protocol ? static_cast<Speaking*>(this) : nullptr;
  }
};
const ClassDescriptor Speaker::descriptor{"Speaker", nullptr, 0, &Object::descriptor, nullptr};

TEST(Object, AnswersForClassAndProtocol) {
  Speaker speaker, other;
  Number number = 2.5;
  EXPECT_EQ(protocolCast<Speaking>(&speaker), static_cast<Speaking*>(&speaker));
  EXPECT_TRUE(!protocolCast<Speaking>(&number) && !protocolCast<Speaking>(nullptr));
  EXPECT_TRUE(conformsTo(&speaker, Speaking::otherName) && conformsTo(&number, Copying::protocol) &&
              conformsTo(&number, Coding::protocol));
  EXPECT_FALSE(conformsTo(&speaker, Copying::protocol));
  EXPECT_TRUE(isKindOf(number, Object::descriptor));
  EXPECT_EQ(classCast<Number>(static_cast<Object*>(&number)), &number);
  EXPECT_EQ(classCast<Number>(static_cast<Object*>(&speaker)), nullptr);
  EXPECT_EQ(classCast<Number>(static_cast<Object*>(nullptr)), nullptr);
  const std::string description = speaker.description();
  EXPECT_TRUE(description.starts_with("<Speaker: 0x") && description.ends_with(">")) << description;
  EXPECT_TRUE(speaker.isEqual(speaker) && !speaker.isEqual(other) && !speaker.copy());
  const Ref<Number> copied = copyOf(number);
  number = 3;
  EXPECT_EQ(*copied, Number(2.5));
}

}  // namespace
}  // namespace quill
