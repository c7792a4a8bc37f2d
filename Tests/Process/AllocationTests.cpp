// What takes memory from the heap, and how much: its own program, because it replaces the global operator new.

#include "../../Framework/QKTimecodeFormatter.h"
#include "../../Framework/QKTimecodeSegmentNumberFormatter.h"
#include "../../Platform/NotificationCenter.h"
#include "../../Platform/TextServices.h"
#include "../ArchivedMarker.h"
#include "../OpenVideoTimecode.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>

// Freed again or not. The program has one thread.
static std::size_t allocations = 0, allocatedBytes = 0;

// Neither is inlined: GCC takes half of the pair for a mistake.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  allocatedBytes += size;
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace quill {
namespace {

// Everything that a caller does with a value, but text and reports; answers something of it all.
std::uint64_t useAll(QKVideoTimecode value) {
  QKVideoTimecode copy(value), assigned;
  assigned = copy;
  std::int64_t f[6] = {};
  value.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
  copy.setSMPTEHours(1), copy.setSMPTEMinutes(61), copy.setSMPTESeconds(61);
  copy.setSMPTEFrames(500), copy.setSMPTESubframes(500), copy.setSMPTEQuarterFrames(50);
  copy.addSMPTEHours(0, 1, 2, 3, 4, 5), copy.subtractSMPTEHours(9, 0, 0, 31, 0, 0),
      copy.addSMPTEHours(1, 1, 0, 0, 0, 0);
  copy.setSeconds(copy.seconds() + 1.5), copy.addSeconds(2.5), copy.subtractSeconds(0.5);
  copy.setVideoFrames(copy.videoFrames() + 7), copy.setSignedVideoFrames(copy.signedVideoFrames() - 3);
  copy.addVideoFrames(5), copy.subtractVideoFrames(7);
  copy.setTimecodeNumberValue(1234567), copy.setIsNegative(!copy.isNegative());
  copy.takeConvertedValueFromTimecode(value), copy.setTimecodeMode(value.timecodeMode());
  copy.setTimeRate(copy.timeRate() + 1), copy.setTimeRate(QKTimecodeUseSeconds), copy.setTimeRate(48000);
  copy.setTimeValue({1, 3});
  const bool same = copy.isEqual(value) || copy == value || copy < assigned;
  copy.clearTimecode();
  QKVideoTimecode::timeRateForTimecodeModes({k24}, {48000});
  return static_cast<std::uint64_t>(copy.compare(value) + f[3] + same) + value.hash();
}

TEST(Allocation, IsNoneInValueOperationsAndInWhatRunsPerKeystroke) {
  std::string text;
  std::string_view found;
  double value = 0;
  const CharacterSet legal(",.;:0123456789");
  QKTimecodeSegmentNumberFormatter formatter;
  formatter.setMinimum(0);
  NotificationCenter idle, center;
  center.addObserver(std::nullopt, nullptr, [](const Notification&) {});
  const QKVideoTimecode whole({5, 2}, MediaTime(1, 48)), odd({5, 2}, MediaTime(2, 59));
  std::vector<std::tuple<std::string, std::size_t, std::function<void()>>> rows = {
      {"custom rates", 0, [&] { useAll(whole), useAll(odd); }},
      {"a copy", 1, [&] { whole.copy(); }},
      {"integers", 0, [&] { appendInteger(text, std::int64_t{-123}), appendPadded(text, -5, 4); }},
      {"fixed", 0, [&] { appendFixed(text, 12.5, 3); }},
      {"a set", 0, [&] { EXPECT_TRUE(CharacterSet(legal).contains('5')); }},
      {"a set of others", 1, [&] { CharacterSet("é"); }},
      {"scanning", 0, [&] { EXPECT_TRUE(Scanner("12:").scanCharacters(CharacterSet::decimalDigits(), &found)); }},
      {"scanning a double", 0, [&] { EXPECT_TRUE(Scanner(" 30.5").scanDouble(&value)); }},
      {"parsing", 0, [&] { EXPECT_TRUE(formatter.getNumber(nullptr, " 47.25 ", nullptr)); }},
      {"typing", 0, [&] { EXPECT_FALSE(formatter.isPartialStringValid("-4", nullptr, nullptr)); }},
      {"posting", 0, [&] { idle.post("name", &formatter, nullptr), center.post("name", &formatter, nullptr); }},
  };
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    const QKVideoTimecode ticks({1001, 30000}, row.mode), seconds(3.7, QKTimecodeUseSeconds, row.mode);
    rows.emplace_back(row.shortName, 0, [=] { useAll(ticks), useAll(seconds); });
  }
  for (const auto& [name, count, run] : rows) {
    run();  // makes what is made on first use
    text.clear();
    const std::size_t before = allocations;
    run();
    EXPECT_EQ(allocations - before, count) << name;
  }
}

// Nothing for a text that std::string holds in itself, one block for a longer one.
TEST(Allocation, OfRenderingIsThatOfTheStringAlone) {
  const std::tuple<QKSMPTETimecodeMode, const char*, const char*> rows[] = {
      {k25, "1:02:03:04.00", "01:02:03:04"},
      {k2997Duration, "1:02:03:04.05", "01:02:03:04.05"},
      {QKSMPTETimecodeMode_120, "-1:02:03:104.05", "-01:02:03:104.05"}};
  for (const auto& [mode, label, text] : rows) {
    QKTimecodeFormatter formatter;
    formatter.setAllowsNegative(true);
    formatter.setSMPTEDisplaysSubframes(std::string_view(text).find('.') != std::string_view::npos);
    OpenVideoTimecode value = valueAt(mode, label);
    const std::size_t before = allocations;  // the first time, too
    const std::optional<std::string> shown = formatter.stringForObjectValue(&value);
    const std::size_t made = allocations - before;
    EXPECT_EQ(shown, text);
    EXPECT_EQ(made, std::string_view(text).size() > std::string().capacity() ? 1u : 0u) << text;
  }
}

// 1 KB of it for messages and the like.
bool isReadInProportion(std::string_view bytes) {
  allocatedBytes = 0;
  bool isRead = false;
  try {
    isRead = unarchivedObject(bytes, kMarkerClasses) != nullptr;
  } catch (const ArchiveError&) {
  }
  EXPECT_LE(allocatedBytes, 1024 + 64 * bytes.size());
  return isRead;
}

TEST(Allocation, OfReadingAnArchiveIsInProportionToTheBytes) {
  takeAllLabels();
  const std::string many = "00004E20", label = "A1 'Label'", unknown = "A1 'x'";
  std::string keys, numbers;
  for (int i = 10000; i < 30000; ++i) {
    keys += "'" + std::to_string(i) + "' 01";
    numbers += "1A000" + std::to_string(i) + "60";
  }
  const std::pair<std::string, bool> rows[] = {
      {markerHex("A0"), true},
      {"7AFFFFFFFF", false},  // texts and arrays of 4 G and more
      {"9BFFFFFFFFFFFFFFFF", false},
      {markerHex("BA" + many + keys), true},
      {markerHex(unknown + "9A" + many + repeated("80", 20000)), true},
      {markerHex(unknown + "9A" + many + repeated("D81CF6", 20000)), true},
      {markerHex(label + "BA" + many + numbers), true},
      {markerHex(label + "7A" + many + repeated("78", 20000)), true},
      {markerHex("BA" + many + repeated("617801", 20000)), false},  // one key
      {"D81C 81 7A" + many + repeated("78", 20000), false},         // an unknown class
      {repeated(markerHex(label), 31) + "F6", true},
  };
  for (const auto& [root, isRead] : rows)
    EXPECT_EQ(isReadInProportion(keyedArchiveOf(root)), isRead) << root.substr(0, 50);
}

}  // namespace
}  // namespace quill
