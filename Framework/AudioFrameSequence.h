// The audio frame sequences of SMPTE 272M: how many audio samples belong to each video frame at rates where a video
// frame does not hold a whole number of them.
//
// A sequence is a cycle of video frames that holds a whole number of samples; it starts over at every cycle.
#pragma once

#include "../Platform/Export.h"

#include <cstdint>
#include <span>

namespace quill::inline v0 {

struct AudioFrameSequence {
  std::int32_t videoFrameRate;   // nominal frames per second: 24 or 30
  std::uint64_t audioFrameRate;  // samples per second
  // The first sample of each frame of a cycle, then the samples of a whole cycle.
  std::span<const std::int32_t> firstSamples;

  std::uint64_t framesInCycle() const { return firstSamples.size() - 1; }
  std::uint64_t samplesInCycle() const { return static_cast<std::uint64_t>(firstSamples.back()); }
  // Both counted from the start of the sequence.
  std::uint64_t firstSampleOfFrame(std::uint64_t frame) const {
    const auto place = static_cast<std::size_t>(frame % framesInCycle());
    return static_cast<std::uint64_t>(firstSamples[place]) + frame / framesInCycle() * samplesInCycle();
  }
};

// The sequence of 30 frames (29.97) at 32000, 44100 or 48000 samples a second or of 24 (23.976) at 48000; null for any
// other pair.
QUILL_EXPORT const AudioFrameSequence* audioFrameSequence(std::int32_t videoFrameRate, std::uint64_t audioFrameRate);

// The sample at which a video frame starts, counted from `firstSample` at the frame `sequencePhaseFrame`; 0 for a pair
// of rates without a sequence. When frame + firstSample is the phase frame the answer is 0: the sum is compared, on
// purpose. A frame before the phase frame reports the light assertion "frame >= sequencePhaseFrame" and goes on with
// the difference modulo 2^64. Frame 7 at 30 and 48000 with phase 0 gives 11211.
QUILL_EXPORT std::uint64_t OBSampleFromFrame(std::uint64_t frame, std::uint64_t firstSample,
                                             std::int32_t videoFrameRate, std::uint64_t audioFrameRate,
                                             std::uint64_t sequencePhaseFrame);

// The video frame that holds a sample, both counted from 0, and the sample's offset in it (when `remainder` is not
// null); 0 and 0 for a pair of rates without a sequence. Sample 11210 at 48000 and 30 gives frame 6 and 1600.
QUILL_EXPORT std::uint64_t OBFrameFromSample(std::uint64_t sample, std::uint64_t audioFrameRate,
                                             std::int32_t videoFrameRate, std::int32_t* remainder);

}  // namespace quill::inline v0
