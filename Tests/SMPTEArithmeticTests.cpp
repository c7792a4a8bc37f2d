#include "../Framework/SMPTEArithmetic.h"

#include "OpenVideoTimecode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>
#include <type_traits>

namespace quill {
namespace {

static_assert(std::is_aggregate_v<SMPTEFieldSet> && sizeof(SMPTEFieldSet) == 40);
static_assert(SMPTEFieldSet{1, 0, 0, 0, 0} > SMPTEFieldSet{0, 59, 59, 119, 79});

// Drop-frame rows follow from 1800 - 2 labels a minute, 18000 - 9 x 2 in ten, and so on at 60 and 120.
TEST(SMPTEArithmetic, LabelsAndFrameNumbersOfWorkedRows) {
  const std::tuple<double, std::int64_t, SMPTEFieldSet> rows[] = {
      {30, 1799, {0, 0, 59, 29, 0}},  {30, 1800, {0, 1, 0, 2, 0}},   {30, 3598, {0, 2, 0, 2, 0}},
      {30, 17982, {0, 10, 0, 0, 0}},  {30, 107892, {1, 0, 0, 0, 0}}, {60, 3600, {0, 1, 0, 4, 0}},
      {60, 215784, {1, 0, 0, 0, 0}},  {120, 7200, {0, 1, 0, 8, 0}},  {120, 71928, {0, 10, 0, 0, 0}},
      {24, 86399, {0, 59, 59, 23, 0}}};
  for (const auto& [rate, frame, label] : rows) {
    const auto counting = SMPTECounting::atRate(rate, rate > 24);
    EXPECT_EQ(labelFromFrame(counting, frame), label) << rate << ": " << frame;
    EXPECT_EQ(frameFromLabel(counting, label), frame) << rate << ": " << frame;
    // A skipped label is the first frame of its minute.
    for (std::int64_t skipped = 0; skipped < counting.dropped; ++skipped) {
      for (std::int64_t minute = 1; minute < 10; ++minute) {
        EXPECT_EQ(frameFromLabel(counting, {0, minute, 0, skipped, 0}),
                  frameFromLabel(counting, {0, minute, 0, counting.dropped, 0}));
      }
    }
  }
}

// All fields in subframes.
std::int64_t sumOf(const SMPTEFieldSet& f, std::int64_t rate) {
  return (((f.hours * 60 + f.minutes) * 60 + f.seconds) * rate + f.frames) * 80 + f.subframes;
}

bool isCarried(const SMPTEFieldSet& f, std::int64_t rate) {
  return f.subframes >= 0 && f.subframes < 80 && f.frames >= 0 && f.frames < rate && f.seconds >= 0 && f.seconds < 60 &&
         f.minutes >= 0 && f.minutes < 60;
}

TEST(SMPTEArithmetic, FieldSetsCarryAndBorrowWithoutLoss) {
  std::mt19937_64 random(1);
  const auto upTo = [&random](std::uint64_t n) {
    return static_cast<std::int64_t>(random() % (2 * n + 1)) - static_cast<std::int64_t>(n);
  };
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t rate = 61 + upTo(60), frames = upTo(100000);
    const SMPTEFieldSet a{upTo(200), upTo(200), upTo(200), upTo(500), upTo(500)};
    const SMPTEFieldSet b{upTo(200), upTo(200), upTo(200), upTo(500), upTo(500)};
    const SMPTEFieldSet sum = addFields(a, b, rate), difference = subtractFields(a, b, rate),
                        adjusted = privateHMSFsFrameAdjustment(a, frames, rate);
    ASSERT_TRUE(isCarried(sum, rate) && isCarried(difference, rate) && isCarried(adjusted, rate));
    ASSERT_EQ(sumOf(sum, rate), sumOf(a, rate) + sumOf(b, rate));
    ASSERT_EQ(sumOf(difference, rate), sumOf(a, rate) - sumOf(b, rate));
    ASSERT_EQ(sumOf(adjusted, rate), sumOf(a, rate) + 80 * frames);
  }
}

// Across a dropped label a change by field arithmetic alone would be D frames off. It is exact for changes that reach no
// further than k seconds to either side of the minute.
TEST(SMPTEArithmetic, SmallChangesMoveByAsManyFramesAsTheySay) {
  for (const std::int64_t rate : {30, 60}) {
    const auto counting = SMPTECounting::atRate(static_cast<double>(rate), true);
    const std::int64_t farthest = 99 / rate * rate;
    std::int64_t differences = 0;
    for (std::int64_t n = farthest; n < counting.framesPerTenMinutes + 2 * rate; ++n) {
      const SMPTEFieldSet label = labelFromFrame(counting, n);
      for (std::int64_t frames = 1; frames <= farthest; ++frames) {
        const SMPTEFieldSet change = carriedFields({0, 0, 0, frames, 0}, rate);
        if (change.frames == 0) continue;  // whole seconds move the label, not the frames
        for (const std::int64_t sign : {1, -1}) {
          const SMPTEFieldSet moved = sign > 0 ? addFields(label, change, rate) : subtractFields(label, change, rate);
          const std::int64_t adjustment = dropFrameAdjustment(rate, label, moved, change);
          const SMPTEFieldSet adjusted = privateHMSFsFrameAdjustment(moved, adjustment, rate);
          differences += frameFromLabel(counting, adjusted) != n + sign * frames;
        }
      }
    }
    EXPECT_EQ(differences, 0) << rate;
  }
}

TEST(SMPTEArithmetic, DropFrameAdjustment) {
  const std::tuple<const char*, std::int64_t, SMPTEFieldSet, SMPTEFieldSet, SMPTEFieldSet, std::int64_t> rows[] = {
      {"119.88: k is 0", 120, {0, 0, 59, 119, 0}, {0, 1, 0, 0, 0}, {0, 0, 0, 1, 0}, 0},
      {"99 frames", 30, {0, 0, 57, 0, 0}, {0, 1, 0, 9, 0}, {0, 0, 3, 9, 0}, 2},
      {"to second k", 30, {0, 0, 59, 25, 0}, {0, 1, 3, 4, 0}, {0, 0, 3, 9, 0}, 2},
      {"99 frames and a subframe", 30, {0, 0, 57, 0, 0}, {0, 1, 0, 9, 1}, {0, 0, 3, 9, 1}, 0},
      {"from too early", 30, {0, 0, 56, 29, 0}, {0, 1, 0, 8, 0}, {0, 0, 3, 9, 0}, 0},
      {"unmoved on label 1", 30, {0, 1, 0, 1, 0}, {0, 1, 0, 1, 0}, {}, 1},
      {"unmoved in a tenth minute", 30, {0, 10, 0, 0, 0}, {0, 10, 0, 0, 0}, {}, 0},
      {"back from too late", 30, {0, 1, 4, 0, 0}, {0, 1, 0, 1, 0}, {0, 0, 3, 29, 0}, 0},
  };
  for (const auto& [label, rate, before, after, change, frames] : rows) {
    EXPECT_EQ(dropFrameAdjustment(rate, before, after, change), frames) << label;
  }
}

// The fraction at which a part count begins, found to the last double, is where k / parts - 1/1000 says.
TEST(SMPTEArithmetic, PartsOfAFrameBeginAThousandthEarly) {
  for (const std::int64_t parts : {80, 4}) {
    const auto partsOf = parts == 80 ? subframesFromFraction : quarterFramesFromFraction;
    for (std::int64_t k = 1; k < parts; ++k) {
      double low = 0, high = 1;
      for (int i = 0; i < 60; ++i) (partsOf((low + high) / 2) < k ? low : high) = (low + high) / 2;
      ASSERT_NEAR(high, static_cast<double>(k) / static_cast<double>(parts) - 0.001, 1e-14) << k << " of " << parts;
      ASSERT_TRUE(partsOf(low) == k - 1 && partsOf(high) == k) << k << " of " << parts;
    }
    EXPECT_TRUE(partsOf(0.999) == parts - 1 && partsOf(1e300) == parts - 1 && partsOf(kNaN) == 0);
  }
}

TEST(SMPTEArithmetic, IsDefinedForEveryInteger) {
  constexpr std::int64_t kExtremes[] = {kInt64Lowest,          -1,           0, 1, 60, 107892, 0xFFFFFFFF, 0x100000000,
                                        std::int64_t{1} << 55, kInt64Highest};
  const auto real = [](std::int64_t n) { return static_cast<double>(n); };
  for (const double rate : {1.0, 30.0, 120.0, 1e15, 29.5, 1e300, -30.0, 0.0, kNaN}) {
    const auto counting = SMPTECounting::atRate(rate, rate == 30 || rate == 120);
    for (const std::int64_t a : kExtremes) {
      const std::int64_t back = frameFromLabel(counting, labelFromFrame(counting, a));
      ASSERT_TRUE(counting.whole == 0 || a < 0 || back == a) << rate << ' ' << a;
      for (const std::int64_t b : kExtremes) {
        if (a < 0 || b < 0 || counting.whole == 0 || counting.dropped > 0) continue;
        const double exact = real(a) * 3600 * rate + real(b) * 61 * rate + real(a);
        const std::int64_t n = frameFromLabel(counting, {a, b, b, a, 0});
        ASSERT_NEAR(real(n), std::min(exact, kTwoTo63), 1e-9 * exact) << a << ' ' << b;
      }
    }
  }
  for (const std::int64_t a : kExtremes) {
    for (const std::int64_t b : kExtremes) {
      for (const std::int64_t rate : {std::int64_t{1}, std::int64_t{30}, kInt64Highest}) {
        const SMPTEFieldSet x{b, a, a, a, a}, y{a, b, b, b, b};
        ASSERT_TRUE(isCarried(addFields(x, y, rate), rate) && isCarried(subtractFields(x, y, rate), rate) &&
                    isCarried(privateHMSFsFrameAdjustment(x, b, rate), rate))
            << a << ' ' << b;
        for (const auto& after : {x, y, SMPTEFieldSet{}}) {
          const std::int64_t frames = dropFrameAdjustment(rate, x, after, {0, 0, 0, 1, 0});
          ASSERT_GE(frames, -(rate / 15));
          ASSERT_LE(frames, saturatingAdd(rate / 15, saturatingFromUInt64(magnitudeOf(a))));
        }
      }
    }
  }
}

}  // namespace
}  // namespace quill
