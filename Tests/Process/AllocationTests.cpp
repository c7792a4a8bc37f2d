// No operation of a value takes memory from the heap. Its own program, because it replaces the global operator new.

#include "../../Framework/QKVideoTimecode.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {

// Atomic is not needed: the program has one thread.
std::size_t allocations = 0;

void* allocate(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace quill {
namespace {

// Everything that a caller does with a value, but text and reports; answers something of it all.
std::uint64_t useAll(QKVideoTimecode& value) {
  QKVideoTimecode copy(value), assigned;
  assigned = copy;
  std::int64_t f[6] = {};
  value.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
  copy.setSMPTEHours(1);
  copy.setSMPTEMinutes(61);
  copy.setSMPTESeconds(61);
  copy.setSMPTEFrames(500);
  copy.setSMPTESubframes(500);
  copy.setSMPTEQuarterFrames(50);
  copy.addSMPTEHours(0, 1, 2, 3, 4, 5);
  copy.addSMPTEHours(1, 1, 0, 0, 0, 0);
  copy.subtractSMPTEHours(9, 0, 0, 31, 0, 0);
  copy.setSeconds(copy.seconds() + 1.5);
  copy.addSeconds(2.5);
  copy.subtractSeconds(0.5);
  copy.setVideoFrames(copy.videoFrames() + 7);
  copy.setSignedVideoFrames(copy.signedVideoFrames() - 3);
  copy.addVideoFrames(5);
  copy.subtractVideoFrames(7);
  copy.setTimecodeNumberValue(1234567);
  copy.setIsNegative(!copy.isNegative());
  copy.takeConvertedValueFromTimecode(value);
  copy.setTimecodeMode(value.timecodeMode());
  copy.setTimeRate(copy.timeRate() + 1);
  copy.setTimeRate(QKTimecodeUseSeconds);
  copy.setTimeRate(48000);
  copy.setTimeValue({1, 3});
  const bool same = copy.isEqual(value) || copy == value || copy < assigned;
  copy.clearTimecode();
  return static_cast<std::uint64_t>(copy.compare(value) + f[3] + same) + value.hash();
}

TEST(Allocation, ValueOperationsTakeNone) {
  std::size_t taken = allocations;
  for (std::int64_t i = 0; i < 19; ++i) {
    const auto mode = static_cast<QKSMPTETimecodeMode>(i);
    QKVideoTimecode ticks({1001, 30000}, mode), seconds(3.7, QKTimecodeUseSeconds, mode);
    useAll(ticks);
    useAll(seconds);
  }
  for (const MediaTime duration : {MediaTime(1, 48), MediaTime(2, 59)}) {
    QKVideoTimecode custom({5, 2}, duration);
    useAll(custom);
  }
  QKVideoTimecode::timeRateForTimecodeModes({QKSMPTETimecodeMode_24}, {48000});
  taken = allocations - taken;
  EXPECT_EQ(taken, 0u);
  // The counter counts, and a copy on the heap is one piece.
  taken = allocations;
  const Ref<Object> copy = QKVideoTimecode().copy();
  EXPECT_EQ(allocations - taken, 1u);
}

}  // namespace
}  // namespace quill
