// Counts labels one after the other, the way a person reads them aloud. It knows no frame numbers and no arithmetic but
// adding one: what the fast arithmetic says about frame n is checked against the label that n steps lead to.
#pragma once

#include "../Framework/SMPTEArithmetic.h"

namespace quill {

// Labels of a counting or drop-frame mode.
class SlowLabelWalker {
 public:
  // Starts at a label, which must not be a skipped one.
  SlowLabelWalker(std::int64_t labelsPerSecond, std::int64_t droppedLabels, const SMPTEFieldSet& start = {})
      : labelsPerSecond_(labelsPerSecond), droppedLabels_(droppedLabels), label_(start) {}

  const SMPTEFieldSet& label() const { return label_; }

  void next() {
    if (++label_.frames < labelsPerSecond_) return;
    label_.frames = 0;
    if (++label_.seconds < 60) return;
    label_.seconds = 0;
    if (++label_.minutes == 60) {
      label_.minutes = 0;
      ++label_.hours;
    }
    if (label_.minutes % 10 != 0) label_.frames = droppedLabels_;
  }

 private:
  std::int64_t labelsPerSecond_;
  std::int64_t droppedLabels_;
  SMPTEFieldSet label_;
};

// Labels of a duration mode: adds one frame's ticks, and starts counting frames again at each full second.
class SlowElapsedWalker {
 public:
  // Starts on the hour.
  SlowElapsedWalker(std::int64_t ticksPerSecond, std::int64_t ticksPerFrame, std::int64_t hours = 0)
      : ticksPerSecond_(ticksPerSecond), ticksPerFrame_(ticksPerFrame) {
    label_.hours = hours;
  }

  // The subframes are those of the first frame of the second, 1/1000 of a frame added.
  const SMPTEFieldSet& label() const { return label_; }

  void next() {
    ++label_.frames;
    if ((ticks_ += ticksPerFrame_) < ticksPerSecond_) return;
    ticks_ -= ticksPerSecond_;
    label_.frames = 0;
    label_.subframes = (ticks_ * 1000 + ticksPerFrame_) * 80 / (1000 * ticksPerFrame_);
    if (label_.subframes > 79) label_.subframes = 79;
    if (++label_.seconds < 60) return;
    label_.seconds = 0;
    if (++label_.minutes < 60) return;
    label_.minutes = 0;
    ++label_.hours;
  }

 private:
  std::int64_t ticksPerSecond_;
  std::int64_t ticksPerFrame_;
  std::int64_t ticks_ = 0;  // since the last full second
  SMPTEFieldSet label_;
};

}  // namespace quill
