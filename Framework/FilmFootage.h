// Film footage as plain arithmetic: the gauges, and positions in feet, frames and quarter frames of a frame.
//
// - A gauge is a row: its perforations in a foot of film over those of a frame are its frames per foot.
// - 35 mm film with 3 perforations a frame has 64 frames in 3 feet, counted in feet of 21, 21 and 22 frames; its sums and
//   differences are made of feet and frames, not of time.
// - Magnitudes, but for the differences of 3-perforation footage. Each function is defined for every input: what 64 bits
//   do not hold stops at the end of the range.
#pragma once

#include "../Platform/Export.h"
#include "../Platform/IntegerMath.h"

#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace quill::inline v0 {

enum QKFilmType : std::int64_t {
  QKFilmType_16mm = 0,
  QKFilmType_35mm_4perf = 1,
  QKFilmType_35mm_3perf = 2,
  QKFilmType_35mm_2perf = 3,
  QKFilmType_70mm_5perf = 4,
  QKFilmType_35mm_8perf = 5,
  QKFilmType_65mm_5perf = 6,
  QKFilmType_65mm_8perf = 7,
  QKFilmType_65mm_12perf = 8,
  QKFilmType_65mm_15perf = 9,
};

struct FilmTypeRow {
  QKFilmType type;
  std::string_view name;
  std::int64_t perforationsPerFoot;
  std::int64_t perforationsPerFrame;

  constexpr double framesPerFoot() const {
    return static_cast<double>(perforationsPerFoot) / static_cast<double>(perforationsPerFrame);
  }
};

#define QUILL_FILM(suffix) QKFilmType_##suffix, "QKFilmType_" #suffix
// In the order of the film types. The gauges of 65 mm count 120 perforations a foot and that of 70 mm 64, on purpose.
inline constexpr FilmTypeRow kFilmTypeTable[] = {
    {QUILL_FILM(16mm), 40, 1},          {QUILL_FILM(35mm_4perf), 64, 4},  {QUILL_FILM(35mm_3perf), 64, 3},
    {QUILL_FILM(35mm_2perf), 64, 2},    {QUILL_FILM(70mm_5perf), 64, 5},  {QUILL_FILM(35mm_8perf), 64, 8},
    {QUILL_FILM(65mm_5perf), 120, 5},   {QUILL_FILM(65mm_8perf), 120, 8}, {QUILL_FILM(65mm_12perf), 120, 12},
    {QUILL_FILM(65mm_15perf), 120, 15},
};
#undef QUILL_FILM

consteval bool filmTypeRowsStandInOrder() {
  for (std::int64_t i = 0; const FilmTypeRow& row : kFilmTypeTable) {
    const bool isWhole = row.perforationsPerFoot % row.perforationsPerFrame == 0;
    const bool mayBeBroken = row.type == QKFilmType_35mm_3perf || row.type == QKFilmType_70mm_5perf;
    if (row.type != i++ || isWhole == mayBeBroken) return false;
  }
  return true;
}
static_assert(filmTypeRowsStandInOrder());
static_assert(kFilmTypeTable[QKFilmType_70mm_5perf].framesPerFoot() == 12.8);

// Null outside the enumeration.
constexpr const FilmTypeRow* filmTypeRow(QKFilmType type) {
  const auto index = static_cast<std::uint64_t>(type);
  return index < std::size(kFilmTypeTable) ? &kFilmTypeTable[index] : nullptr;
}

// 16 outside the enumeration.
constexpr double framesPerFoot(QKFilmType type) {
  const FilmTypeRow* row = filmTypeRow(type);
  return row ? row->framesPerFoot() : 16;
}

// "QKFilmType_35mm_4perf"; nothing outside the enumeration.
QUILL_EXPORT std::optional<std::string> privateDescriptionForFilmType(QKFilmType type);

struct FeetFramesQuarterFrames {
  std::int64_t feet = 0;
  std::int64_t frames = 0;
  std::int64_t quarterFrames = 0;

  friend constexpr bool operator==(const FeetFramesQuarterFrames&, const FeetFramesQuarterFrames&) = default;
};

// The foot that holds a video frame, and the frame's place in it, both from 0; quarter frames are 0. At
// QKFilmType_35mm_3perf frame 63 gives 2 feet 21 frames.
QUILL_EXPORT FeetFramesQuarterFrames footageOfFrame(QKFilmType type, std::uint64_t frame);

// The video frame at so many feet and frames; where a foot holds no whole number of frames, its first is cut (but for the
// 3-perforation feet, which are counted). Frames may pass their foot. At QKFilmType_35mm_3perf 4 feet give 85.
QUILL_EXPORT std::int64_t frameOfFootage(QKFilmType type, std::int64_t feet, std::int64_t frames);

// The sum of two footages at 3 perforations a frame. Frames are carried over the feet that follow a's, then b's feet are
// added, so that a + b and b + a may differ by a frame. 0+20+3 and 0+0+1 give 1+0+0.
QUILL_EXPORT FeetFramesQuarterFrames private35mm3perfAddFFQ(FeetFramesQuarterFrames a, FeetFramesQuarterFrames b);

// a less b at 3 perforations a frame. Where b is the larger one, b less a with its first field that is not 0 negated;
// that there is none reports the light assertion "NO". 1+0+0 less 1+0+1 gives 0, 0, -1.
QUILL_EXPORT FeetFramesQuarterFrames private35mm3perfSubtractFFQ(FeetFramesQuarterFrames a, FeetFramesQuarterFrames b);

struct SignedFootage {
  FeetFramesQuarterFrames magnitude;
  bool isNegative = false;
};

// A difference as a magnitude and a sign. A field before the negative one that is not 0 reports the light assertion
// "new.feet == 0" or "new.frames == 0 && new.feet == 0"; no difference has one.
QUILL_EXPORT SignedFootage signAndMagnitudeOf(FeetFramesQuarterFrames difference);

}  // namespace quill::inline v0
