// Every frame of 24 hours, in every fixed mode. The full walk is for optimised builds (QUILL_FULL_SWEEPS); others take
// the minutes where labels change and a stride.

#include "../Framework/QKTimecode.h"
#include "OpenVideoTimecode.h"
#include "SlowLabelWalker.h"

#include <gtest/gtest.h>

#include <future>

namespace quill {
namespace {

#ifdef QUILL_FULL_SWEEPS
bool isTaken(const SMPTEFieldSet&, std::int64_t) { return true; }
#else
bool isTaken(const SMPTEFieldSet& label, std::int64_t n) {
  const std::int64_t m = label.minutes;
  const bool minuteChanges = m == 0 || m == 9 || m == 10 || m == 59;
  return (minuteChanges && label.hours % 23 == 0) || n % 499 == 0;
}
#endif

// At a timescale in which audio frames are whole too.
class OpenTimecode : public QKTimecode {
 public:
  using QKTimecode::privateSetSMPTEHours;
  using QKTimecode::QKTimecode;
};

// Sends one frame after the other through the views of one value and back through another one.
template <class Value>
class RoundTrip {
 public:
  RoundTrip(QKSMPTETimecodeMode mode, const Value& zero) : mode_(mode), read_(zero), written_(zero) {}

  // What differs at frame n, whose label the walker says; null when nothing does.
  const char* differenceAt(std::int64_t n, const SMPTEFieldSet& label) {
    read_.setVideoFrames(static_cast<std::uint64_t>(n));
    if (read_.videoFrames() != static_cast<std::uint64_t>(n)) return "frames back from frames";
    const SMPTEFieldSet fields = fieldsOf(read_);
    if (fields != label) return "fields";
    if (isDroppedLabel(mode_, label.minutes, label.seconds, label.frames)) return "dropped label";

    const double fraction = static_cast<double>(fields.subframes) / 80;
    written_.privateSetSMPTEHours(fields.hours, fields.minutes, fields.seconds, fields.frames, fraction);
    if (written_.signedVideoFrames() != n) return "frames from fields";
    if (n % 31 != 0) return nullptr;
    // Fields one by one, over a label that was there before.
    written_.setSMPTEHours(fields.hours);
    written_.setSMPTEMinutes(59 - fields.minutes);
    written_.setSMPTESeconds(fields.seconds);
    written_.setSMPTEFrames(fields.frames);
    written_.setSMPTESubframes(fields.subframes);
    written_.setSMPTEMinutes(fields.minutes);
    written_.setSMPTEFrames(fields.frames);
    return written_.signedVideoFrames() == n ? nullptr : "frames from single fields";
  }

 private:
  QKSMPTETimecodeMode mode_;
  Value read_, written_;
};

// Walks until `endHour` and describes the first difference.
template <class Value, class Walker>
std::string walk(const TimecodeModeRow& row, const Value& zero, Walker walker, std::int64_t n, std::int64_t endHour,
                 std::int64_t endMinute) {
  RoundTrip roundTrip(row.mode, zero);
  std::int64_t taken = 0;
  for (; walker.label().hours < endHour || walker.label().minutes < endMinute; walker.next(), ++n) {
    if (!isTaken(walker.label(), n)) continue;
    ++taken;
    if (const char* difference = roundTrip.differenceAt(n, walker.label())) {
      return std::string(row.shortName) + ": " + difference + " at frame " + std::to_string(n) + ", " +
             textOf(walker.label());
    }
  }
  return taken > 0 ? "" : "nothing walked";
}

bool isElapsed(const TimecodeModeRow& row) { return row.kind == TimecodeModeKind::Duration; }

template <class Value>
std::string walkDay(const TimecodeModeRow& row, const Value& zero) {
  if (isElapsed(row)) {
    return walk(row, zero, SlowElapsedWalker(row.tickRate, row.ticksPerFrame()), 0, 24, 0);
  }
  return walk(row, zero, SlowLabelWalker(row.countingRate, row.droppedLabels()), 0, 24, 0);
}

// Frames in an hour of labels, by counting.
std::int64_t framesInAnHour(const TimecodeModeRow& row) {
  SlowLabelWalker walker(row.countingRate, row.droppedLabels());
  std::int64_t n = 0;
  for (; walker.label().hours == 0; walker.next()) ++n;
  return n;
}

// What differs in all modes. Two at a time: a value belongs to one thread, and nothing is reported while nothing is
// wrong.
template <class Make>
std::string walkDayInEveryMode(Make makeZero) {
  const auto walkEverySecondMode = [makeZero](std::size_t first) {
    std::string differences;
    for (std::size_t i = first; i < std::size(kTimecodeModeTable); i += 2) {
      const TimecodeModeRow& row = kTimecodeModeTable[i];
      const std::string difference = walkDay(row, makeZero(row.mode));
      if (!difference.empty()) differences += difference + '\n';
    }
    return differences;
  };
  auto odd = std::async(std::launch::async, walkEverySecondMode, 1);
  return walkEverySecondMode(0) + odd.get();
}

TEST(SMPTESweep, EveryFrameOfADayComesBackAndSucceedsTheOneBefore) {
  EXPECT_EQ(walkDayInEveryMode([](QKSMPTETimecodeMode mode) { return ticksIn(mode, 0); }), "");
}

TEST(SMPTESweep, EveryFrameOfADayComesBackAtTheTimescalesOfAudioFrames) {
  for (const std::uint64_t audio : {44100u, 48000u}) {
    const auto zero = [audio](QKSMPTETimecodeMode mode) {
      return OpenTimecode(0, QKTimecodeBestTimeRate, mode, audio);
    };
    EXPECT_EQ(walkDayInEveryMode(zero), "") << audio;
  }
}

TEST(SMPTESweep, HoursHaveNoEnd) {
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    if (isElapsed(row)) {
      // The first hour after zero at which a frame starts: 1001 hours of 1000/1001 of the whole rate.
      const std::int64_t n = row.countingRate * 3600 * 1000;
      const SlowElapsedWalker walker(row.tickRate, row.ticksPerFrame(), 1001);
      EXPECT_EQ(walk(row, ticksIn(row.mode, 0), walker, n, 1001, 11), "");
      continue;
    }
    const std::int64_t hour = framesInAnHour(row);
    for (const std::int64_t hours : {24, 99, 100, 1000000}) {
      const SlowLabelWalker walker(row.countingRate, row.droppedLabels(), {hours, 0, 0, 0, 0});
      EXPECT_EQ(walk(row, ticksIn(row.mode, 0), walker, hours * hour, hours, 11), "") << hours;
    }
  }
}

}  // namespace
}  // namespace quill
