#include "../Platform/MediaTime.h"

#include "../Platform/IntegerMath.h"
#include "TextTable.h"

#include <cmath>
#include <random>
#include <utility>

namespace quill {
namespace {

static_assert(MediaTime{} == kMediaTimeInvalid && kMediaTimeZero == MediaTime{0, 1, 1, 0});

TEST(MediaTime, IsMadeOfSecondsAndSaysThem) {
  eachRowIn("platform.txt", "times of seconds", [](const Cells& row) {
    EXPECT_EQ(textOf(MediaTime::withSeconds(doubleOf(row.at(0)), std::stoi(row.at(1)))), row.at(2));
  });
  eachRowIn("platform.txt", "seconds of times", [](const Cells& row) {
    std::string seconds;
    appendFixed(seconds, timeOf(row.at(0)).seconds(), 4);
    EXPECT_EQ(timeOf(row[0]).description() + " | " + seconds, row.at(1) + " | " + row.at(2));
  });
  for (std::uint32_t flags = 0; flags < 64; ++flags)
    EXPECT_EQ((MediaTime{1, 1, flags, 0}.isNumeric()), (flags & 1) != 0 && (flags & 28) == 0) << flags;
}

TEST(MediaTime, ConvertsRoundingHalfAwayFromZeroAndMarksIt) {
  eachRowIn("platform.txt", "converted times", [](const Cells& row) {
    EXPECT_EQ(textOf(timeOf(row.at(0)).convertedTo(std::stoi(row.at(1)))), row.at(2));
  });
  // As long division does, in base two, every partial remainder below 2^32.
  std::mt19937_64 random(2997);
  const auto below2To31 = [&random] {
    return static_cast<std::int32_t>((random() & 0x7FFFFFFF) >> (random() % 31) | 1);
  };
  for (int i = 0; i < 100000; ++i) {
    const MediaTime time(static_cast<std::int64_t>(random()) >> (random() % 63), below2To31());
    const std::int32_t timescale = below2To31();
    const auto from = static_cast<std::uint64_t>(time.timescale), to = static_cast<std::uint64_t>(timescale);
    std::uint64_t quotient = 0, remainder = 0;
    for (int bit = 63; bit >= 0; --bit) {
      remainder = remainder * 2 + (((magnitudeOf(time.value) >> bit) & 1) != 0 ? to : 0);
      quotient = quotient * 2 + remainder / from;
      remainder %= from;
    }
    quotient += remainder * 2 >= from ? 1 : 0;
    const MediaTime converted = time.convertedTo(timescale);
    const double size = std::abs(static_cast<double>(time.value)) / time.timescale * timescale;
    const bool isSame = converted.isNumeric() && magnitudeOf(converted.value) == quotient &&
                        (quotient == 0 || (converted.value < 0) == (time.value < 0));
    ASSERT_TRUE(size > 9.3e18 ? !converted.isNumeric() : size > 9.2e18 || isSame) << textOf(time) << " to " << to;
  }
}

TEST(MediaTime, IsOrderedExactlyAcrossTimescales) {
  std::vector<std::pair<int, MediaTime>> times;  // with their ranks
  eachRowIn("platform.txt", "ascending times", [&, rank = 0](const Cells& row) mutable {
    for (const std::string& time : row) times.emplace_back(rank, timeOf(time));
    ++rank;
  });
  for (const auto& [rankA, a] : times) {
    for (const auto& [rankB, b] : times)
      EXPECT_EQ(compare(a, b), (rankA > rankB) - (rankA < rankB)) << textOf(a) << " and " << textOf(b);
  }
}

TEST(MediaTime, IsAddedExactlyWhereATimescaleServesBoth) {
  eachRowIn("platform.txt", "sums of times", [](const Cells& row) {
    EXPECT_EQ(textOf(add(timeOf(row.at(0)), timeOf(row.at(1)))), row.at(2));
    MediaTime turned = add(timeOf(row[1]), timeOf(row[0]));
    turned.epoch = timeOf(row[2]).epoch;
    EXPECT_EQ(textOf(turned), row[2]);
  });
}

}  // namespace
}  // namespace quill
