// Three feet of 3-perforation film are a group of 64 frames, whose feet start at 0, 21 and 42. Walking from foot to foot
// while frames are left over ends in the foot that holds the frame, so the place in the group gives it at once.

#include "FilmFootage.h"

#include "../Platform/Reports.h"

#include <algorithm>

namespace quill::inline v0 {

namespace {

constexpr std::string_view kFile = "QKExtendedTimecode";
constexpr std::int64_t kFeetPerGroup = 3, kFramesPerGroup = 64, kFramesPerShortFoot = 21;

constexpr std::int64_t floorModulo(std::int64_t n, std::int64_t d) { return (n % d + d) % d; }

// Frames of a foot in its group: 21, 21, 22.
constexpr std::int64_t framesOfFoot(std::int64_t foot) {
  return kFramesPerShortFoot + (floorModulo(foot, kFeetPerGroup) == 2 ? 1 : 0);
}

// The footage that starts so many frames, negative ones too, past the start of a foot.
FeetFramesQuarterFrames framesPastFoot(std::int64_t foot, std::int64_t frames) {
  const std::int64_t footInGroup = floorModulo(foot, kFeetPerGroup);  // [0, 3)
  const std::int64_t rest = floorModulo(frames, kFramesPerGroup);     // [0, 64)
  std::int64_t groups = frames / kFramesPerGroup - (frames % kFramesPerGroup < 0 ? 1 : 0);
  std::int64_t frame = footInGroup * kFramesPerShortFoot + rest;  // [0, 106)
  if (frame >= kFramesPerGroup) {
    ++groups;
    frame -= kFramesPerGroup;
  }
  const std::int64_t foundFoot = std::min<std::int64_t>(frame / kFramesPerShortFoot, kFeetPerGroup - 1);
  return {saturatingAdd(foot, groups * kFeetPerGroup + foundFoot - footInGroup),
          frame - foundFoot * kFramesPerShortFoot};
}

FeetFramesQuarterFrames differenceWithoutInversion(FeetFramesQuarterFrames a, FeetFramesQuarterFrames b) {
  std::int64_t quarters = saturatingSubtract(a.quarterFrames, b.quarterFrames), borrow = 0;
  if (quarters < 0) {
    borrow = -(quarters / 4) + (quarters % 4 < 0 ? 1 : 0);
    quarters = floorModulo(quarters, 4);
  }
  FeetFramesQuarterFrames result{a.feet, saturatingSubtract(saturatingSubtract(a.frames, borrow), b.frames)};
  if (result.frames < 0) result = framesPastFoot(result.feet, result.frames);
  result.feet = saturatingSubtract(result.feet, b.feet);
  result.quarterFrames = quarters;
  return result;
}

// The first field that is not 0, or null.
std::int64_t* leadingField(FeetFramesQuarterFrames& footage) {
  for (std::int64_t* field : {&footage.feet, &footage.frames, &footage.quarterFrames}) {
    if (*field != 0) return field;
  }
  return nullptr;
}

}  // namespace

std::optional<std::string> privateDescriptionForFilmType(QKFilmType type) {
  const FilmTypeRow* row = filmTypeRow(type);
  return row ? std::optional(std::string(row->name)) : std::nullopt;
}

FeetFramesQuarterFrames footageOfFrame(QKFilmType type, std::uint64_t frame) {
  const auto position = static_cast<double>(frame);  // in every gauge to the nearest that a double holds
  if (type == QKFilmType_35mm_3perf) {
    const double groups = std::trunc(position / kFramesPerGroup);  // [0, 2^58]
    return framesPastFoot(saturateToInt64(groups) * kFeetPerGroup,
                          saturateToInt64(position - groups * kFramesPerGroup));
  }
  const double perFoot = framesPerFoot(type), feet = std::trunc(position / perFoot);
  const double frames = std::max(position - feet * perFoot, 0.0);  // below 0 where 53 bits rounded the feet up
  return {saturateToInt64(feet), saturateToInt64(frames)};
}

std::int64_t frameOfFootage(QKFilmType type, std::int64_t feet, std::int64_t frames) {
  const double perFoot = framesPerFoot(type);
  const std::int64_t whole = saturateToInt64(perFoot);
  std::int64_t firstFrame = 0;
  if (static_cast<double>(whole) == perFoot) {
    firstFrame = saturatingMultiply(whole, feet);
  } else if (type == QKFilmType_35mm_3perf) {
    firstFrame = saturatingAdd(saturatingMultiply(kFramesPerGroup, feet / kFeetPerGroup),
                               kFramesPerShortFoot * (feet % kFeetPerGroup));
  } else {
    firstFrame = saturateToInt64(perFoot * static_cast<double>(feet));
  }
  return saturatingAdd(firstFrame, frames);
}

FeetFramesQuarterFrames private35mm3perfAddFFQ(FeetFramesQuarterFrames a, FeetFramesQuarterFrames b) {
  const std::int64_t quarters = saturatingAdd(a.quarterFrames, b.quarterFrames);
  FeetFramesQuarterFrames sum{a.feet, saturatingAdd(saturatingAdd(a.frames, b.frames), quarters / 4)};
  if (sum.frames >= framesOfFoot(sum.feet)) sum = framesPastFoot(sum.feet, sum.frames);
  sum.feet = saturatingAdd(sum.feet, b.feet);
  sum.quarterFrames = quarters % 4;
  return sum;
}

FeetFramesQuarterFrames private35mm3perfSubtractFFQ(FeetFramesQuarterFrames a, FeetFramesQuarterFrames b) {
  FeetFramesQuarterFrames difference = differenceWithoutInversion(a, b);
  if (difference.feet >= 0) return difference;
  difference = differenceWithoutInversion(b, a);
  if (std::int64_t* leading = leadingField(difference)) {
    *leading = wrappingNegate(*leading);
  } else {
    lightAssertionFailed("NO", kFile, __LINE__);
  }
  return difference;
}

SignedFootage signAndMagnitudeOf(FeetFramesQuarterFrames difference) {
  auto& [feet, frames, quarters] = difference;
  if (feet < 0) {
    feet = wrappingNegate(feet);
  } else if (frames < 0) {
    if (feet != 0) lightAssertionFailed("new.feet == 0", kFile, __LINE__);
    frames = wrappingNegate(frames);
  } else if (quarters < 0) {
    if (frames != 0 || feet != 0) lightAssertionFailed("new.frames == 0 && new.feet == 0", kFile, __LINE__);
    quarters = wrappingNegate(quarters);
  } else {
    return {difference, false};
  }
  return {difference, true};
}

}  // namespace quill::inline v0
