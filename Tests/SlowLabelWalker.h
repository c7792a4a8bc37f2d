// Counts labels one after the other, the way a person reads them aloud. It knows no frame numbers and no arithmetic but
// adding one: what the fast arithmetic says about frame n is checked against the label that n steps lead to.
#pragma once

#include "../Framework/SMPTEArithmetic.h"

namespace quill {

struct SlowLabelWalker {
  const TimecodeModeRow* row;
  bool isElapsed = false;  // a full second begins anew where it falls in a frame, as in a duration mode
  SMPTEFieldSet label{};   // not a skipped one; on the hour where time elapses
  std::int64_t ticks = 0;  // of the elapsed time since the last full second

  void next() {
    ++label.frames;
    if (isElapsed) {
      const std::int64_t frame = row->ticksPerFrame();
      if ((ticks += frame) < row->tickRate) return;
      ticks -= row->tickRate;
      label.subframes = std::min<std::int64_t>((ticks * 1000 + frame) * 80 / (1000 * frame), 79);  // 1/1000 added
    } else if (label.frames < row->countingRate) {
      return;
    }
    label.frames = 0;
    if (++label.seconds < 60) return;
    label.seconds = 0;
    if (++label.minutes == 60) ++label.hours, label.minutes = 0;
    if (label.minutes % 10 != 0) label.frames = row->droppedLabels();
  }
};

}  // namespace quill
