// Every frame of 24 hours, in every fixed mode: as fields and as text, there and back. The full walk is for optimised
// builds (QUILL_FULL_SWEEPS); others take the minutes where labels change and a stride.

#include "../Framework/QKTimecode.h"
#include "../Framework/QKTimecodeFormatter.h"
#include "OpenVideoTimecode.h"
#include "SlowLabelWalker.h"

#include <gtest/gtest.h>

#include <functional>
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

bool isDuration(const TimecodeModeRow& row) { return row.kind == TimecodeModeKind::Duration; }

// Sends labels, with their numbers from n on, through a trip until the end, and describes the first difference.
template <class Trip>
std::string walk(SlowLabelWalker walker, std::int64_t n, std::int64_t endHours, std::int64_t endMinutes, Trip trip) {
  std::int64_t taken = 0;
  for (; walker.label.hours < endHours || walker.label.minutes < endMinutes; walker.next(), ++n) {
    if (!isTaken(walker.label, n)) continue;
    ++taken;
    if (const char* difference = trip.differenceAt(n, walker.label))
      return std::string(walker.row->shortName) + ": " + difference + " at " + textOf(walker.label) + '\n';
  }
  return taken > 0 ? "" : "nothing walked";
}

// What differs in all modes. Two at a time: a value belongs to one thread, and nothing is reported while nothing is
// wrong.
std::string inEveryMode(const std::function<std::string(const TimecodeModeRow&)>& walkMode) {
  const auto inEverySecondMode = [&walkMode](std::size_t first) {
    std::string differences;
    for (std::size_t i = first; i < std::size(kTimecodeModeTable); i += 2)
      differences += walkMode(kTimecodeModeTable[i]);
    return differences;
  };
  auto odd = std::async(std::launch::async, inEverySecondMode, 1);
  return inEverySecondMode(0) + odd.get();
}

std::int64_t framesInAnHour(const TimecodeModeRow& row) {
  std::int64_t frames = 0;
  for (SlowLabelWalker walker{&row}; walker.label.hours == 0; walker.next()) ++frames;
  return frames;
}

// ---- Fields ----

// Sends frames through the views of one value and back through another one.
struct FieldsTrip {
  OpenVideoTimecode read, written = read;

  const char* differenceAt(std::int64_t n, const SMPTEFieldSet& label) {
    read.setVideoFrames(static_cast<std::uint64_t>(n));
    if (read.videoFrames() != static_cast<std::uint64_t>(n)) return "frames back from frames";
    const SMPTEFieldSet f = fieldsOf(read);
    if (f != label) return "fields";
    if (isDroppedLabel(read.timecodeMode(), label.minutes, label.seconds, label.frames)) return "dropped label";
    written.privateSetSMPTEHours(f.hours, f.minutes, f.seconds, f.frames, static_cast<double>(f.subframes) / 80);
    if (written.signedVideoFrames() != n) return "frames from fields";
    if (n % 31 != 0) return nullptr;
    // Fields one by one, over a label that was there before.
    written.setSMPTEHours(f.hours), written.setSMPTEMinutes(59 - f.minutes), written.setSMPTESeconds(f.seconds);
    written.setSMPTEFrames(f.frames), written.setSMPTESubframes(f.subframes);
    written.setSMPTEMinutes(f.minutes), written.setSMPTEFrames(f.frames);
    return written.signedVideoFrames() == n ? nullptr : "frames from single fields";
  }
};

TEST(SMPTESweep, EveryFrameOfADayComesBackAndSucceedsTheOneBefore) {
  for (const std::uint64_t audio : {0u, 44100u, 48000u}) {  // 0: only video frames need be whole
    const auto walkMode = [audio](const TimecodeModeRow& row) {
      OpenVideoTimecode zero = ticksIn(row.mode, 0);
      if (audio) zero.bestTimeScale = QKTimecode(0, QKTimecodeBestTimeRate, row.mode, audio).timeValue().timescale;
      return walk({&row, isDuration(row)}, 0, 24, 0, FieldsTrip{zero});
    };
    EXPECT_EQ(inEveryMode(walkMode), "") << audio;
  }
}

TEST(SMPTESweep, HoursHaveNoEnd) {
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    // Of labels any, and of elapsed time 1001 hours of 1000/1001 of the whole rate, when a frame starts on the hour.
    const std::int64_t hours = isDuration(row) ? 1001 : 1000000, n = hours * framesInAnHour(row);
    const std::int64_t elapsed = row.countingRate * 3600 * 1000;
    EXPECT_EQ(walk({&row, isDuration(row), {hours, 0, 0, 0, 0}}, isDuration(row) ? elapsed : n, hours, 11,
                   FieldsTrip{ticksIn(row.mode, 0)}),
              "");
  }
}

// ---- Text ----

// Sends texts through one formatter for each way to read them. A second of a duration mode begins with frame 0.
class TextTrip {
 public:
  // Over a value near the hour: the day of a value past 24 hours stays. "-" counts down from the value, so over zero.
  TextTrip(const TimecodeModeRow& row, std::int64_t hours, bool isNegative) : row_(row), isNegative_(isNegative) {
    const MediaTime now =
        valueAt(row.mode, isNegative ? "0:00:00:00.00" : std::to_string(hours / 24 * 24 + 12) + ":34:56:07.00")
            .timeValue();
    for (QKTimecodeFormatter* formatter : {&preserving_, &discarding_, &fine_}) {
      formatter->setAllowsNegative(true);
      formatter->setCurrentTimecode(std::make_shared<QKVideoTimecode>(now, row.mode));
    }
    discarding_.setSMPTEStringInterpretation(OrbSMPTEStringInterpretationDiscardingUpper);
    fine_.setSMPTEDisplaysSubframes(true);
  }

  const char* differenceAt(std::int64_t n, const SMPTEFieldSet& label) {
    const SMPTEFieldSet shown{label.hours % 24, label.minutes, label.seconds, label.frames, label.frames ? n % 80 : 79};
    const std::int64_t sign = isNegative_ && n != 0 ? -1 : 1;
    std::string text = (sign < 0 ? "-" : "") + std::string(shown.hours < 10 ? "0" : "") + textOf(shown);
    const std::size_t dot = text.size() - 3, frames = text.rfind(':');
    if (row_.countingRate > 100 && dot - frames == 3) text.insert(frames + 1, "0");
    if (row_.kind == TimecodeModeKind::Drop) text[frames] = ';';
    const std::string fine = text;
    text.resize(text.rfind('.'));
    // By counting frames or by the clock.
    const std::int64_t seconds = (label.hours * 60 + label.minutes) * 60 + label.seconds;
    const std::int64_t ticks =
        isDuration(row_) ? seconds * row_.tickRate + label.frames * row_.ticksPerFrame() : n * row_.ticksPerFrame();
    // Each way to read it has every other label, and either edge of a minute.
    const char* const difference =
        differenceOf(isNegative_ || (n + label.minutes) % 2 == 0 ? preserving_ : discarding_, text, sign * ticks);
    const bool isPart = isDuration(row_) && label.frames == row_.countingRate - 1;  // of a frame
    if (difference || n % 31 != 0 || isPart) return difference;
    return differenceOf(fine_, fine, sign * (ticks + shown.subframes * row_.ticksPerFrame() / 80));
  }

 private:
  const char* differenceOf(QKTimecodeFormatter& formatter, const std::string& text, std::int64_t ticks) {
    const MediaTime time(ticks, static_cast<std::int32_t>(row_.tickRate));
    const bool isRead = formatter.getObjectValue(&value_, text, nullptr);
    if (!isRead || static_cast<QKVideoTimecode&>(*value_).timeValue() != time) return "value";
    return formatter.stringForObjectValue(value_.get()) == text ? nullptr : "text";
  }

  const TimecodeModeRow& row_;
  bool isNegative_;
  QKTimecodeFormatter preserving_, discarding_, fine_;
  Ref<Object> value_;
};

TEST(SMPTETextSweep, EveryLabelOfADayIsItsValueAndComesBack) {
  QKTimecodeFormatter::_orbSMPTETimecodeFormatterUsesHighOrderTyping();  // fixed before threads start
  const auto walkMode = [](const TimecodeModeRow& row) { return walk({&row}, 0, 24, 0, TextTrip(row, 0, false)); };
  EXPECT_EQ(inEveryMode(walkMode), "");
}

TEST(SMPTETextSweep, LaterDaysAndTextsBelowZeroComeBackToo) {
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    for (const std::int64_t hours : {24, 99, 100, 1000000})
      EXPECT_EQ(
          walk({&row, false, {hours, 0, 0, 0, 0}}, hours * framesInAnHour(row), hours, 3, TextTrip(row, hours, false)),
          "");
    EXPECT_EQ(walk({&row}, 0, 0, 12, TextTrip(row, 0, true)), "");
  }
}

}  // namespace
}  // namespace quill
