// Every label of 24 hours as text, in every fixed mode: the text gives the value that the label stands for, and the value
// gives the text. The full walk is for optimised builds (QUILL_FULL_SWEEPS); others take the minutes where labels change
// and a stride.

#include "FormatterFixtures.h"
#include "SlowLabelWalker.h"

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

bool isElapsed(const TimecodeModeRow& row) { return row.kind == TimecodeModeKind::Duration; }

// The labels that a mode shows: a second of a duration mode begins anew with frame 0.
SlowLabelWalker walkerOf(const TimecodeModeRow& row, std::int64_t hours) {
  return {row.countingRate, isElapsed(row) ? 0 : row.droppedLabels(), {hours, 0, 0, 0, 0}};
}

std::int64_t framesInAnHour(const TimecodeModeRow& row) {
  std::int64_t n = 0;
  for (SlowLabelWalker walker = walkerOf(row, 0); walker.label().hours == 0; walker.next()) ++n;
  return n;
}

// The ticks of label number n, by counting frames or by the clock.
std::int64_t ticksOf(const TimecodeModeRow& row, const SMPTEFieldSet& f, std::int64_t n) {
  if (!isElapsed(row)) return n * row.ticksPerFrame();
  return ((f.hours * 60 + f.minutes) * 60 + f.seconds) * row.tickRate + f.frames * row.ticksPerFrame();
}

void appendTwo(std::string& text, std::int64_t n) {
  text += static_cast<char>('0' + n / 10);
  text += static_cast<char>('0' + n % 10);
}

// "01:02:03;04", with hours of the day.
std::string textOf(const TimecodeModeRow& row, const SMPTEFieldSet& f) {
  std::string text;
  appendTwo(text, f.hours % 24);
  appendTwo(text += ':', f.minutes);
  appendTwo(text += ':', f.seconds);
  text += row.kind == TimecodeModeKind::Drop ? ';' : ':';
  if (row.countingRate > 100) text += static_cast<char>('0' + f.frames / 100);
  appendTwo(text, f.frames % 100);
  return text;
}

// Sends texts through one formatter for each way to read them.
class TextTrip {
 public:
  TextTrip(const TimecodeModeRow& row, const std::string& now) : row_(row) {
    for (QKTimecodeFormatter* formatter : {&preserving_, &discarding_, &fine_}) {
      formatter->setAllowsNegative(true);
      formatter->setCurrentTimecode(timecodeAt(row.mode, now));
    }
    discarding_.setSMPTEStringInterpretation(OrbSMPTEStringInterpretationDiscardingUpper);
    fine_.setSMPTEDisplaysSubframes(true);
  }

  // What differs at label number n; null when nothing does.
  const char* differenceAt(const SMPTEFieldSet& label, std::int64_t n) {
    const std::string text = textOf(row_, label);
    const std::int64_t ticks = ticksOf(row_, label, n);
    // Each way to read it has every other label, and either edge of a minute.
    QKTimecodeFormatter& formatter = (n + label.minutes) % 2 == 0 ? preserving_ : discarding_;
    if (!goesThere(formatter, text, ticks)) return "value";
    if (!comesBack(formatter, text)) return "text";
    if (n % 31 != 0) return nullptr;
    std::string fine = text + '.';
    const std::int64_t subframes = label.frames == 0 ? 79 : n % 80;
    appendTwo(fine, subframes);
    const std::int64_t rest = subframes * row_.ticksPerFrame() / 80;
    if (label.frames == row_.countingRate - 1 && isElapsed(row_)) return nullptr;  // a part of a frame
    return goesThere(fine_, fine, ticks + rest) && comesBack(fine_, fine) ? nullptr : "subframes";
  }

  // The same below zero, from a formatter at zero.
  bool comesBackNegative(const SMPTEFieldSet& label, std::int64_t n) {
    const std::string text = '-' + textOf(row_, label);
    return n == 0 || (goesThere(preserving_, text, -ticksOf(row_, label, n)) && comesBack(preserving_, text));
  }

 private:
  bool goesThere(QKTimecodeFormatter& formatter, const std::string& text, std::int64_t ticks) {
    return formatter.getObjectValue(&value_, text, nullptr) &&
           static_cast<QKVideoTimecode&>(*value_).timeValue() ==
               MediaTime(ticks, static_cast<std::int32_t>(row_.tickRate));
  }
  bool comesBack(const QKTimecodeFormatter& formatter, const std::string& text) {
    return formatter.stringForObjectValue(value_.get()) == text;
  }

  const TimecodeModeRow& row_;
  QKTimecodeFormatter preserving_, discarding_, fine_;
  Ref<Object> value_;
};

// Walks from label number n at the hour to the end, and describes the first difference.
std::string walk(const TimecodeModeRow& row, std::int64_t hours, std::int64_t n, std::int64_t endHours,
                 std::int64_t endMinutes) {
  // What is typed over: the day of a value past 24 hours stays.
  TextTrip trip(row, std::to_string(hours / 24 * 24 + 12) + ":34:56:07");
  std::int64_t taken = 0;
  for (SlowLabelWalker walker = walkerOf(row, hours);
       walker.label().hours < endHours || walker.label().minutes < endMinutes; walker.next(), ++n) {
    if (!isTaken(walker.label(), n)) continue;
    ++taken;
    if (const char* difference = trip.differenceAt(walker.label(), n)) {
      return std::string(row.shortName) + ": " + difference + " at " + quill::textOf(walker.label()) + '\n';
    }
  }
  return taken > 0 ? "" : "nothing walked";
}

TEST(SMPTETextSweep, EveryLabelOfADayIsItsValueAndComesBack) {
  QKTimecodeFormatter::_orbSMPTETimecodeFormatterUsesHighOrderTyping();  // fixed before threads start
  const auto walkEverySecondMode = [](std::size_t first) {
    std::string differences;
    for (std::size_t i = first; i < std::size(kTimecodeModeTable); i += 2) {
      differences += walk(kTimecodeModeTable[i], 0, 0, 24, 0);
    }
    return differences;
  };
  auto odd = std::async(std::launch::async, walkEverySecondMode, 1);
  EXPECT_EQ(walkEverySecondMode(0), "");
  EXPECT_EQ(odd.get(), "");
}

TEST(SMPTETextSweep, LaterDaysStayWhereTheyAre) {
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    const std::int64_t hour = framesInAnHour(row);
    for (const std::int64_t hours : {24, 99, 100, 999999}) {
      EXPECT_EQ(walk(row, hours, hours * hour, hours, 3), "") << hours;
    }
  }
}

TEST(SMPTETextSweep, TextsBelowZeroComeBack) {
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    TextTrip trip(row, "0:00:00:00");
    std::int64_t n = 0;
    for (SlowLabelWalker walker = walkerOf(row, 0); walker.label().minutes < 12; walker.next(), ++n) {
      if (!isTaken(walker.label(), n) || trip.comesBackNegative(walker.label(), n)) continue;
      ADD_FAILURE() << row.shortName << " at -" << quill::textOf(walker.label());
      break;
    }
  }
}

}  // namespace
}  // namespace quill
