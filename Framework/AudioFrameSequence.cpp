// The tables are data, used as they stand; no rounding rule gives all of them (at 44100 the frames 22, 46 and 70 break
// the alternation).

#include "AudioFrameSequence.h"

#include "../Platform/Reports.h"

#include <algorithm>

namespace quill::inline v0 {

namespace {

constexpr std::int32_t _gFrameToSample24fps48k[] = {0, 2002};

constexpr std::int32_t _gFrameToSample30fps48k[] = {0, 1602, 3203, 4805, 6406, 8008};

constexpr std::int32_t _gFrameToSample30fps32k[] = {0,    1068, 2135,  3203,  4271,  5339,  6406,  7474,
                                                    8542, 9610, 10677, 11745, 12813, 13881, 14948, 16016};

// clang-format off
constexpr std::int32_t _gFrameToSample30fps44k[] = {
    0, 1472, 2943, 4415, 5886, 7358, 8829, 10301, 11772, 13244,
    14715, 16187, 17658, 19130, 20601, 22073, 23544, 25016, 26487, 27959,
    29430, 30902, 32373, 33844, 35315, 36787, 38258, 39730, 41201, 42673,
    44144, 45616, 47087, 48559, 50030, 51502, 52973, 54445, 55916, 57388,
    58859, 60331, 61802, 63274, 64745, 66217, 67688, 69159, 70630, 72102,
    73573, 75045, 76516, 77988, 79459, 80931, 82402, 83874, 85345, 86817,
    88288, 89760, 91231, 92703, 94174, 95646, 97117, 98589, 100060, 101532,
    103003, 104474, 105945, 107417, 108888, 110360, 111831, 113303, 114774, 116246,
    117717, 119189, 120660, 122132, 123603, 125075, 126546, 128018, 129489, 130961,
    132432, 133904, 135375, 136847, 138318, 139790, 141261, 142733, 144204, 145676,
    147147};
// clang-format on

constexpr AudioFrameSequence kSequences[] = {{30, 32000, _gFrameToSample30fps32k},
                                             {30, 44100, _gFrameToSample30fps44k},
                                             {30, 48000, _gFrameToSample30fps48k},
                                             {24, 48000, _gFrameToSample24fps48k}};

}  // namespace

const AudioFrameSequence* audioFrameSequence(std::int32_t videoFrameRate, std::uint64_t audioFrameRate) {
  for (const AudioFrameSequence& sequence : kSequences) {
    if (sequence.videoFrameRate == videoFrameRate && sequence.audioFrameRate == audioFrameRate) {
      return &sequence;
    }
  }
  return nullptr;
}

std::uint64_t OBSampleFromFrame(std::uint64_t frame, std::uint64_t firstSample, std::int32_t videoFrameRate,
                                std::uint64_t audioFrameRate, std::uint64_t sequencePhaseFrame) {
  if (frame < sequencePhaseFrame) {
    lightAssertionFailed("frame >= sequencePhaseFrame", "QKTimecode", 132);
  } else if (frame + firstSample == sequencePhaseFrame) {
    return 0;
  }
  const AudioFrameSequence* sequence = audioFrameSequence(videoFrameRate, audioFrameRate);
  if (!sequence) return 0;
  return firstSample + sequence->firstSampleOfFrame(frame - sequencePhaseFrame);  // modulo 2^64
}

std::uint64_t OBFrameFromSample(std::uint64_t sample, std::uint64_t audioFrameRate, std::int32_t videoFrameRate,
                                std::int32_t* remainder) {
  if (remainder) *remainder = 0;
  const AudioFrameSequence* sequence = audioFrameSequence(videoFrameRate, audioFrameRate);
  if (!sequence) return 0;
  const std::uint64_t cycle = sample / sequence->samplesInCycle();
  const auto rest = static_cast<std::int32_t>(sample % sequence->samplesInCycle());
  const auto& starts = sequence->firstSamples;
  const auto frame = std::upper_bound(starts.begin(), starts.end(), rest) - 1;  // the last start not above rest
  if (remainder) *remainder = rest - *frame;
  return cycle * sequence->framesInCycle() + static_cast<std::uint64_t>(frame - starts.begin());
}

}  // namespace quill::inline v0
