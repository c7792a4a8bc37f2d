// Runs the rows of Data/video-timecode.txt, which says how they are written; and what only single cases and random walks
// show.

#include "TimecodeRows.h"

#include <cmath>
#include <sstream>

namespace quill {
namespace {

using V = OpenVideoTimecode;

// A mode is never made of a bare number, a tick count never of a boolean, a value never of one argument.
static_assert(!std::is_constructible_v<V, MediaTime, int> && !std::is_convertible_v<MediaTime, V> &&
              !std::is_constructible_v<V, bool, int, QKSMPTETimecodeMode> && !std::is_convertible_v<Number, V>);

MediaTime time(std::size_t i = 0) { return timeOf(words.at(i)); }

V valueOf(const std::string& text) {
  if (text == "new") return {};
  const Cells parts = partsOf(text, " "), names = partsOf(parts[0], "@");
  const QKSMPTETimecodeMode mode = modeNamed(names[0]);
  const std::string& time = parts.at(1);
  if (names.size() > 1) return customAt(doubleOf(names[1]), timeOf(time));
  if (time.find(':') != time.npos) return valueAt(mode, time);
  if (time.back() == 's') return secondsIn(mode, doubleOf(time.substr(0, time.size() - 1)));
  return time.back() == 't' ? ticksIn(mode, std::stoll(time)) : storing(timeOf(time), mode);
}

V anyValue() {
  const auto fixed = static_cast<QKSMPTETimecodeMode>(random() % 19);
  switch (random() % 10) {
    case 0: return secondsIn(fixed, x());
    case 1: return secondsIn(kCustom, -1e17);
    case 2: return V({7, static_cast<std::int32_t>(random())}, kCustom);
    case 3: return V({n(), -24}, fixed);
    case 4: return V({kInt64Lowest, 1}, fixed);
    case 5: return storing(timeOf("down"), fixed);
    case 6: return V({2, 1}, random() % 2 ? kInvalid : kUnknown);
    case 7: return customAt(random() % 2 ? 29.5 : x());
    default: return ticksIn(fixed, static_cast<std::int64_t>(random()));
  }
}
V any;  // of the walk
V other() { return words.empty() ? any : valueOf(words.at(0) + ' ' + words.at(1)); }
QKSMPTETimecodeMode mode(std::size_t i = 0) { return words.empty() ? any.timecodeMode() : modeNamed(words.at(i)); }

// ---- Operations ----

void make(V& v, const Number& number, TimeRate rate, QKSMPTETimecodeMode mode) { v = V(number, rate, mode); }
void makeForDuration(V& v, const MediaTime& time, const MediaTime& duration, std::int64_t dropFrame) {
  v = dropFrame ? V(time, duration, dropFrame) : V(time, duration);
}
void addMinutes(V& v, std::int64_t count) {
  for (; count > 0; --count) v.addSMPTEHours(0, 1, 0, 0, 0, 0);
}
int compareTo(const V& v, const V& other) { return other.compare(v); }
int compareToNumber(const V& v, const Number& number) { return v.compare(number); }
bool areSecondsFinite(const V& v) { return std::isfinite(v.seconds()); }
double billionthsOfFrame(const V& v) { return std::round(1e9 * v.privateVideoFramesFractionalPart()); }
std::uint64_t hashInContainers(const V& v) { return std::hash<QKVideoTimecode>()(v); }
std::string wholeLabel(V& v) { return partsOf(labelOf(v), ".")[0]; }
std::int64_t highestField(V& v) {
  std::int64_t f[6] = {7, 7, 7, 7, 7, 7};
  v.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
  return *std::max_element(std::begin(f), std::end(f));
}
std::string readAlone(V& v) {
  std::int64_t quarters = -1;
  v.getSMPTEHours(nullptr, nullptr, nullptr, nullptr, nullptr, &quarters);
  const SMPTEFieldSet f{v.SMPTEHours(), v.SMPTEMinutes(), v.SMPTESeconds(), v.SMPTEFrames(), v.SMPTESubframes()};
  return textOf(f) + ' ' + std::to_string(v.SMPTEQuarterFrames()) + std::to_string(quarters);
}
std::string framesOf(V& v) {
  const auto frames = [&v] { return std::to_string(v.videoFrames()) + " " + std::to_string(v.signedVideoFrames()); };
  const std::string first = frames();
  v.setIsNegative(true);
  return first + ", " + frames();
}
std::string preserved(V& v, QKSMPTETimecodeMode mode) {
  const Ref<QKVideoTimecode> result = v.timecodePreservingSMPTEWithMode(mode);
  return labelOf(*result) + " in mode " + std::to_string(result->timecodeMode());
}
std::string customOf(const V& v) {
  return Number(v.videoFrameRate()).description() + " at " + std::to_string(v.customVideoModeInfo().preferredTimeScale);
}
std::string described(const V& v) {
  std::ostringstream stream;
  stream << v;
  std::string text = stream.str().replace(0, v.classNameAndAddress().size(), "name");
  for (std::size_t at = 0; (at = text.find('\n')) != text.npos;) text.replace(at, 1, ", ");
  return text;
}
std::uint64_t timeRateFor() {
  std::vector<QKSMPTETimecodeMode> modes;
  std::vector<std::uint64_t> rates;
  for (const std::string& word : words)
    word[0] == 'm' ? modes.push_back(modeNamed(word.substr(1))) : rates.push_back(saturatingUInt64(word));
  return V::timeRateForTimecodeModes(modes, rates);
}
std::int64_t clamped(const V& v, std::int64_t value, std::int64_t lowest, std::int64_t highest, bool warns) {
  return v.privateClampIntegerValue(&value, lowest, highest, warns), value;
}

// Those that take any arguments come first.
constexpr auto kOperations =
    all(OP(v.setTimeRate(n())), OP(v.timeRate()), OP(v.isNegative()), OP(v.setIsNegative(n() % 2 != 0)), OP(v.hash()),
        OP(v.compare(other())), OP(compareTo(v, other())), OP(v.isEqual(other())), OP(highestField(v)),
        OP(readAlone(v)), OP(v.SMPTEHours()), OP(v.SMPTEMinutes()), OP(v.SMPTESeconds()), OP(v.SMPTEFrames()),
        OP(v.SMPTESubframes()), OP(v.SMPTEQuarterFrames()), OP(v.setSMPTEHours(n())), OP(v.setSMPTEMinutes(n())),
        OP(v.setSMPTESeconds(n())), OP(v.setSMPTEFrames(n())), OP(v.setSMPTESubframes(n())),
        OP(v.setSMPTEQuarterFrames(n())), OP(v.addSMPTEHours(n(0), n(1), n(2), n(3), n(4), n(5))),
        OP(v.subtractSMPTEHours(n(0), n(1), n(2), n(3), n(4), n(5))), OP(areSecondsFinite(v)), OP(v.setSeconds(x())),
        OP(v.addSeconds(x())), OP(v.subtractSeconds(x())), OP(framesOf(v)), OP(v.videoFrames()),
        OP(v.signedVideoFrames()), OP(v.setVideoFrames(u())), OP(v.setSignedVideoFrames(n())),
        OP(v.addVideoFrames(u())), OP(v.subtractVideoFrames(u())), OP(v.setTimecodeNumberValue(number())),
        OP(v.addTimecodeNumberValue(number(), n(1) % 2 != 0)), OP(v.setTimecodeMode(mode())),
        OP(v.takeConvertedValueFromTimecode(other())), OP(preserved(v, mode())), OP(v.setCustomVideoFrameRate(x())),
        OP(v.privateSetSMPTEHours(n(0), n(1), n(2), n(3), x(4))),
        OP(textOf(v.privateNormalizeHMSFs({n(0), n(1), n(2), n(3), n(4)}))), OP(billionthsOfFrame(v)),
        OP(v.privateWholeVideoFrames()), OP(v._doubleFrameTime()), OP(v.privateFramesPerHour()),
        OP(v.privateFramesPerTenMinutes()), OP(v.privateFramesPerMinute()), OP(v.clearTimecode()),
        OP(make(v, number(), n(1), mode(2))), OP(makeForDuration(v, time(0), time(1), n(2))), OP(v.timeValue()),
        OP(v.storedTime()), OP(v.setTimeValue(time())), OP(v.setStoredTime(time())), OP(v.timecodeMode()),
        OP(v.videoFrameRate()), OP(v.nominalFrameRate()), OP(v.isDuration()), OP(v.isDropFrame()), OP(customOf(v)),
        OP(described(v)), OP(timeRateFor()), OP(V::minimumTickRateForMode(mode())), OP(v._compareDouble(other())),
        OP(compareToNumber(v, number())), OP(hashInContainers(v)), OP(wholeLabel(v)), OP(addMinutes(v, n())),
        OP(V::setFallbackTimecodeMode(mode())), OP(V::fallbackTimecodeMode()), OP(v.privateNormalizeSecondsValue()),
        OP(clamped(v, n(0), n(1), n(2), n(3) != 0)));

const auto kThatTakeAny =
    static_cast<std::size_t>(std::ranges::find(kOperations, "make", &Operation<V>::name) - kOperations.begin());

// ---- Rows ----

TEST(QKVideoTimecode, Rows) {
  for (const char* section : {"making", "time and mode", "frames and seconds", "fields", "text and hash", "reports"}) {
    eachRowIn("video-timecode.txt", section, [](const Cells& row) { expectRow(kOperations, valueOf(row.at(0)), row); });
  }
}

// The label of the opposite sign.
std::string mirrored(const std::string& label) {
  if (label == "0:00:00:00.00") return label;
  return label[0] == '-' ? label.substr(1) : '-' + label;
}

TEST(QKVideoTimecode, RowsThatHoldForMirroredLabels) {
  eachRowIn("video-timecode.txt", "setters and sums", [](const Cells& row) {
    V before = valueOf(row.at(0));
    std::string operation = row.at(1);
    expectRow(kOperations, before, row);
    if (operation.starts_with("add") || operation.starts_with("subtract"))
      operation.replace(0, operation.find("SMPTE"), operation[0] == 'a' ? "subtract" : "add");
    before.setIsNegative(true);
    expectRow(kOperations, before, {row[0], operation, mirrored(row[2])});
  });
}

TEST(QKVideoTimecode, AnInvalidModeReportsWhatIsAskedInItsOrder) {
  const char* const table =
      "videoFrames | 2174 1816 1826; signedVideoFrames | 2136 1816 1826; "
      "SMPTEFrames | 1374 1826 2174 1816 1826 1816 1826";
  eachRowOf(table, [](const Cells& row) {
    ReportRecorder reports(ReportRecorder::Returned);
    V value({2, 1}, kInvalid);
    answerOf(kOperations, value, row.at(0));
    Cells lines;
    for (const auto& assertion : reports.assertions) lines.push_back(std::to_string(assertion.line));
    EXPECT_EQ(lines, partsOf(row.at(1), " ")) << reports;
  });
}

TEST(QKVideoTimecode, NonNumericTimesLogAndAreLeftAlone) {
  eachRowIn("video-timecode.txt", "not numeric", [](const Cells& row) {
    for (const char* text : {"24 bad", "29.97df up", "29.97-duration none", "custom 0/24?"})
      expectLeftAlone(kOperations, valueOf(text), row);
  });
  // An object that is being made has its class, its address and the time that it was given.
  const ReportRecorder reports;
  const std::string name = QKVideoTimecode(MediaTime::indefinite(), k25).classNameAndAddress();
  EXPECT_TRUE(reports.logs.at(0).starts_with("ERROR: " + name + "\ntime: {indefinite}")) << reports;
  EXPECT_TRUE(reports.logs[0].ends_with(" initialized with non-numeric rhoTime. Using kMediaTimeZero instead."));
}

TEST(QKVideoTimecode, OrderIsByPositionAloneAndEqualityAsksForModeStorageAndRateToo) {
  const ReportRecorder reports;
  eachRowIn("video-timecode.txt", "order", [](const Cells& row) {
    const V first = valueOf(row.at(0)), second = valueOf(row.at(1));
    const QKVideoTimecode &a = first, &b = second;
    const int order = std::stoi(row.at(2));
    const bool same = row.at(3) == "1";
    EXPECT_TRUE(a.compare(b) == order && b.compare(a) == -order);
    EXPECT_TRUE((a <=> b) == (order <=> 0) && (b <=> a) == (0 <=> order));
    EXPECT_TRUE(a.isEqual(b) == same && b.isEqual(a) == same && (a == b) == same && a.isEqual(a));
  });
  const QKVideoTimecode one(1.0, QKTimecodeUseSeconds, k24), nan(kNaN, QKTimecodeUseSeconds, k24);
  const V bad = storing({}, k24), other = bad;
  const QKVideoTimecode& none = bad;
  EXPECT_FALSE((one <=> none) <= 0 || (one <=> none) > 0 || (one <=> nan) <= 0 || (nan <=> nan) >= 0);
  EXPECT_TRUE(nan.compare(one) == 0 && none.isEqual(none) && !none.isEqual(Number(1)) && none == other);
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

// ---- What no row can show ----

TEST(QKVideoTimecode, ACopyHasEverythingAndSharesNothing) {
  // A minute from 00:00:00;00 remembers the frames field 0 for the tenth minute.
  QKVideoTimecode original, assigned;
  original.addSMPTEHours(0, 1, 0, 0, 0, 0);
  const Ref<QKVideoTimecode> copied = copyOf(original);
  QKVideoTimecode constructed(original);
  assigned = original;
  for (QKVideoTimecode* copy : {copied.get(), &constructed, &assigned, &original}) {
    EXPECT_EQ(labelOf(*copy), "0:01:00:02.00");
    copy->addSMPTEHours(0, 9, 0, 0, 0, 0);
    EXPECT_EQ(labelOf(*copy), "0:10:00:00.00");
  }
}

// The promise is for 29.97 drop-frame and for steps that do not pass zero.
TEST(QKVideoTimecode, WholeHoursMinutesAndSecondsTakenBackReturnToTheLabel) {
  for (std::int64_t n = 0; n < 2 * 17982; n += 5) {
    for (const auto& [h, m, s] :
         {std::array{0, 0, 1}, {0, 0, 29}, {0, 0, 60}, {0, 1, 0}, {0, 9, 59}, {0, 10, 0}, {1, 0, 0}, {1, 59, 133}}) {
      for (const std::int64_t ticks : {n * 80080, -n * 80080, (n + 3 * 107892) * 80080}) {
        V value = ticksIn(k2997Drop, ticks);
        if (ticks >= 0) value.addSMPTEHours(h, m, s, 0, 0, 0);
        value.subtractSMPTEHours(h, m, s, 0, 0, 0);
        if (ticks < 0) value.addSMPTEHours(h, m, s, 0, 0, 0);
        ASSERT_EQ(value.timeValue().value, ticks) << h << ':' << m << ':' << s << ": " << labelOf(value);
      }
    }
  }
}

// Sane values and arguments report no assertion, and leave labels that exist and that read back as they are written: in
// the duration modes, where doubles would miss some, unless the label reaches the next second.
TEST(QKVideoTimecode, OnAnyWalkNothingButTheDocumentedReportsHappen) {
  const auto isInsane = [](const V& v) { return v.timecodeMode() > kCustom || v.storedTime().timescale < 0; };
  ReportRecorder reports(ReportRecorder::Returned);
  V value;
  for (int step = 0; step < 50000; ++step) {
    isNonnegative = random() % 4 != 0;
    if (step % 12 == 0) value = anyValue();
    const auto& operation = kOperations[random() % kThatTakeAny];
    any = anyValue();
    const bool mayAssert = !isNonnegative || isInsane(value) || isInsane(any);
    reports.clear();
    operation.run(value);
    ASSERT_TRUE(mayAssert || reports.assertions.empty()) << operation.text << '\n' << reports;
    if (isInsane(value)) continue;
    reports.clear();
    const SMPTEFieldSet f = fieldsOf(value);
    ASSERT_TRUE(reports.assertions.empty()) << operation.text << '\n' << reports;
    const TimecodeModeRow* const row = timecodeModeRow(value.timecodeMode());
    if (!row) continue;
    const double part = static_cast<double>(f.subframes) / 80, frames = static_cast<double>(f.frames) + part;
    ASSERT_TRUE(f == carriedFields(f, row->countingRate) && frames < row->nominalFrameRate() && f.hours >= 0 &&
                !isDroppedLabel(row->mode, f.minutes, f.seconds, f.frames))
        << operation.text << value.description() << textOf(f);
    const bool isDuration = row->kind == TimecodeModeKind::Duration;
    if (f.hours > 100000 || (isDuration && frames > row->nominalFrameRate() - 0.001)) continue;
    V again = ticksIn(row->mode, step % 2 ? 1 : -1);
    if (isDuration) again.bestTimeScale = 1000 * row->countingRate * (1 + step % 100);
    again.privateSetSMPTEHours(f.hours, f.minutes, f.seconds, f.frames, part);
    ASSERT_EQ(textOf(fieldsOf(again)), textOf(f)) << row->shortName << again.bestTimeScale;
  }
}

}  // namespace
}  // namespace quill
