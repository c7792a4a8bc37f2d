#include "../Framework/AudioFrameSequence.h"

#include "../Platform/IntegerMath.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

namespace quill {
namespace {

// How many samples frame i of a cycle holds, said without the tables: at 32000 and 48000 each frame starts at the
// nearest sample to its exact start; at 44100 long and short frames take turns, three long ones being short.
std::uint64_t samplesOf(std::uint64_t i, std::uint64_t frames, std::uint64_t samples) {
  if (frames == 100) return i % 2 == 1 || i == 22 || i == 46 || i == 70 ? 1471 : 1472;
  const auto start = [&](std::uint64_t frame) { return (2 * frame * samples + frames) / (2 * frames); };
  return start(i + 1) - start(i);
}

TEST(AudioFrameSequence, EverySampleOfThreeCyclesIsInTheFrameThatASlowWalkFinds) {
  constexpr std::uint64_t kRows[][4] = {
      {30, 32000, 15, 16016}, {30, 44100, 100, 147147}, {30, 48000, 5, 8008}, {24, 48000, 1, 2002}};
  for (const auto& [rate, audio, frames, samples] : kRows) {
    const auto video = static_cast<std::int32_t>(rate);
    std::uint64_t sample = 0, differences = 0;
    std::int32_t remainder = 0;
    for (std::uint64_t frame = 0; frame < 3 * frames; ++frame) {
      differences += OBSampleFromFrame(frame, 1000, video, audio, 0) != 1000 + sample;
      const auto length = static_cast<std::int32_t>(samplesOf(frame % frames, frames, samples));
      for (std::int32_t offset = 0; offset < length; ++offset, ++sample) {
        differences += OBFrameFromSample(sample, audio, video, &remainder) != frame || remainder != offset;
      }
    }
    EXPECT_TRUE(differences == 0 && sample == 3 * samples) << audio;
    const auto last = OBFrameFromSample(kUInt64Highest, audio, video, &remainder);
    EXPECT_EQ(last / frames, kUInt64Highest / samples) << audio;
    EXPECT_EQ(OBSampleFromFrame(last, 0, video, audio, 0), kUInt64Highest - static_cast<std::uint64_t>(remainder));
  }
}

TEST(AudioFrameSequence, CountsFromThePhaseFrame) {
  // 2^64 - 2 frames are 3689348814741910322 cycles and 4 frames
  constexpr std::uint64_t kRows[][4] = {{7, 0, 0, 11211},  // frame, first sample, phase, sample
                                        {3, 500, 3, 500},
                                        {4, 500, 3, 2102},
                                        {3, 0, 3, 0},
                                        {10, kUInt64Highest - 6, 3, 0},
                                        {1, 2, 3, 6408 + 3689348814741910322u * 8008u}};
  for (const auto& [frame, first, phase, sample] : kRows) {
    ReportRecorder reports;
    EXPECT_EQ(OBSampleFromFrame(frame, first, 30, 48000, phase), sample) << frame;
    std::vector<std::string> lights;
    if (frame < phase) {
      lights = {"MyAssertMessage: frame >= sequencePhaseFrame,  file: QKTimecode, line: 132, value: 0\n"};
    }
    EXPECT_EQ(reports.lights, lights) << frame;
  }
  for (const std::int32_t video : {-30, 25, 30}) {  // no such pairs of rates
    std::int32_t remainder = 17;
    const std::uint64_t audio = video == 30 ? (std::uint64_t{1} << 32) + 48000 : 48000;
    EXPECT_TRUE(OBFrameFromSample(123456, audio, video, &remainder) == 0 && remainder == 0) << video;
    EXPECT_EQ(OBSampleFromFrame(123456, 5, video, audio, 1), 0u) << video;
  }
}

}  // namespace
}  // namespace quill
