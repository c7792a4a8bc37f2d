// What the library does, beside the kernels written by hand.

#include "Measure.h"

#include "../Framework/QKExtendedTimecode.h"
#include "../Framework/QKTimecodeFormatter.h"
#include "../Platform/Archive.h"

#include <concepts>
#include <cstdlib>

namespace bench {

namespace {

using namespace quill;

template <class Value = QKVideoTimecode>
Value valueOf(std::uint64_t ticks) {
  Value value(MediaTime(static_cast<std::int64_t>(ticks), kTickRate), QKSMPTETimecodeMode_2997Drop);
  if constexpr (std::derived_from<Value, QKTimecode>) value.setAudioFrameRate(48000);
  return value;
}
template <class Value = QKVideoTimecode>
Value frameValueAt(std::size_t i) {
  return valueOf<Value>(frameAt(i) * kernel::kTicksPerFrame);
}

// ---- Text ----

// A formatter, with a value that entries start from.
Ref<QKTimecodeFormatter> formatterOf(QKTimecodeFormat format) {
  auto formatter = std::make_shared<QKTimecodeFormatter>();
  formatter->setTimecodeFormat(format);
  formatter->setCurrentTimecode(frameValueAt(1).copy());
  return formatter;
}

auto rendering(QKTimecodeFormat format = QKTimecodeFormatSMPTE) {
  return [formatter = formatterOf(format)](QKVideoTimecode& value) { return formatter->stringForObjectValue(&value); };
}

auto parsing(QKTimecodeFormat format = QKTimecodeFormatSMPTE) {
  return [formatter = formatterOf(format)](const std::string& text) {
    Ref<Object> value;
    if (!formatter->getObjectValue(&value, text, nullptr)) std::abort();
    return value;
  };
}

// The kernel's label of a frame some frames on.
auto floorRendering(std::uint32_t step) {
  return [=, buffer = std::array<char, 11>()](std::uint32_t& frame) mutable {
    kernel::renderLabel(frame += step, buffer.data());
    return std::string_view(buffer.data(), buffer.size());
  };
}

void measureLabels() {
  measure(kRender, kLibrary, over(frameValueAt<>, rendering()));
  measure(kRender, kFloor, over(frameAt, floorRendering(0)));
  measure(kAddAndRender, kLibrary, over(frameValueAt<>, [render = rendering()](QKVideoTimecode& value) {
            value.addVideoFrames(1);
            return render(value);
          }));
  measure(kAddAndRender, kFloor, over(frameAt, floorRendering(1)));
  measure(kParse, kLibrary, over(labelAt, parsing()));
  measure(kParse, kFloor,
          over(labelAt, [](const std::string& text) { return std::uint64_t{kernel::parseLabel(text.data())}; }));
  measure(kStep, kLibrary,
          over(frameValueAt<>, [formatter = formatterOf(QKTimecodeFormatSMPTE)](QKVideoTimecode& value) {
            constexpr std::int64_t kFramesTag = 3;
            Ref<Object> stepped;
            formatter->getObjectValueIncrementingSegmentWithTag(&stepped, kFramesTag, 1, &value);
            return stepped;
          }));
  // Each thread has a formatter and values of its own.
  for (const Who who : {kOneThread, kTwoThreads}) {
    const int threads = who - kOneThread + 1;
    measure(kRender, who, [] { return over(frameValueAt<>, rendering())(); })->Threads(threads)->UseRealTime();
    measure(kParse, who, [] { return over(labelAt, parsing())(); })->Threads(threads)->UseRealTime();
  }
}

// How the cost grows with fields and digits: entries of the lowest fields, hours and counts of frames.
void measureGrowth() {
  const auto withSubframes = formatterOf(QKTimecodeFormatSMPTE);
  withSubframes->setSMPTEDisplaysSubframes(true);
  measure("render a label with subframes", kLibrary,
          over(frameValueAt<>, [=](QKVideoTimecode& value) { return withSubframes->stringForObjectValue(&value); }));
  for (const std::size_t fields : {1U, 2U, 3U}) {
    measure("parse, fields typed: " + std::to_string(fields), kLibrary,
            over([=](std::size_t i) { return labelAt(i).substr(12 - 3 * fields); }, parsing()));
  }
  for (const auto& [digits, power] : {std::pair(2, 10), {3, 100}, {6, 100000}, {9, 100000000}}) {
    const auto number = [power = power](std::size_t i) { return std::uint64_t(power) * (1 + i % 9) + i % 10; };
    const auto hours = [=](std::size_t i) {
      return valueOf(number(i) * 3600 * kTickRate + frameAt(i) % 100000 * 80080);
    };
    const auto frames = [=](std::size_t i) { return valueOf(number(i) * kernel::kTicksPerFrame); };
    const auto label = [=](std::size_t i) { return std::to_string(number(i)) + labelAt(i).substr(2); };
    const auto count = [=](std::size_t i) { return std::to_string(number(i)); };
    const std::string end = " of " + std::to_string(digits) + " digits";
    measure("render, hours" + end, kLibrary, over(hours, rendering()));
    measure("parse, hours" + end, kLibrary, over(label, parsing()));
    measure("render, frames" + end, kLibrary, over(frames, rendering(QKTimecodeFormatVideoFrames)));
    measure("parse, frames" + end, kLibrary, over(count, parsing(QKTimecodeFormatVideoFrames)));
  }
}

// ---- Views and times ----

// Reads `count` fields of values at `ticks` times what `at` says, and sets them in 64 values in turn, so that each set
// changes something.
template <class Value, std::size_t count, class At, class Get, class Set, class FloorRead, class FloorSet>
void measureView(const std::string& name, At at, std::uint64_t ticks, Get get, Set set, FloorRead floorRead,
                 FloorSet floorSet) {
  const auto reading = [=](Value& value) {
    std::array<std::int64_t, count> fields;
    get(value, fields);
    return fields;
  };
  const auto setting = [=, values = std::vector<Value>(64, valueOf<Value>(0)), next = 0U](const auto& fields) mutable {
    Value& value = values[next++ % 64];
    set(value, fields);
    return static_cast<const QKVideoTimecode*>(&value);
  };
  const auto fieldsAt = [=](std::size_t i) { return floorRead(at(i)); };
  measure("read " + name, kLibrary, over([=](std::size_t i) { return valueOf<Value>(at(i) * ticks); }, reading));
  measure("read " + name, kFloor, over(at, floorRead));
  measure("set " + name, kLibrary, over(fieldsAt, setting));
  measure("set " + name, kFloor, over(fieldsAt, floorSet));
}

void measureViews() {
  measureView<QKVideoTimecode, 5>(
      "five SMPTE fields", subframesAt, kernel::kTicksPerSubframe,
      [](auto& value, auto& f) { value.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], nullptr); },
      [](auto& value, const auto& f) {
        value.setSMPTEHours(f[0]), value.setSMPTEMinutes(f[1]), value.setSMPTESeconds(f[2]);
        value.setSMPTEFrames(f[3]), value.setSMPTESubframes(f[4]);
      },
      kernel::fieldsOf, kernel::ticksOfFields);
  measureView<QKTimecode, 1>(
      "audio frames, 272M", frameAt, kernel::kTicksPerFrame,
      [](auto& value, auto& f) { f[0] = static_cast<std::int64_t>(value.audioFrames()); },
      [](auto& value, std::uint64_t frames) { value.setAudioFrames(frames); }, kernel::firstSampleOf,
      kernel::ticksOfSample);
  measureView<QKExtendedTimecode, 3>(
      "feet and frames", [](std::size_t i) { return frameAt(i) * 80; }, kernel::kTicksPerSubframe,
      [](auto& value, auto& f) { value.getFFFeet(&f[0], &f[1], &f[2]); },
      [](auto& value, const auto& f) { value.setFFFeet(f[0]), value.setFFFrames(f[1]); }, kernel::footageOf,
      kernel::ticksOfFootage);
  measureView<QKExtendedTimecode, 4>(
      "bars and beats", [](std::size_t i) { return subframesAt(i) * std::uint64_t{1250}; }, 1,
      [](auto& value, auto& f) { value.getBars(&f[0], &f[1], &f[2], &f[3]); },
      [](auto& value, const auto& f) {
        value.setBars(f[0]), value.setIntegerBeats(f[1]), value.setDivisions(f[2]), value.setTicks(f[3]);
      },
      kernel::positionOf, kernel::ticksOfPosition);
}

// Of values in each of the 19 modes in turn.
std::uint64_t readEveryView(QKExtendedTimecode& value) {
  std::array<std::int64_t, 15> f;
  double seconds = 0;
  value.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
  value.getHMSHours(&f[6], &f[7], &seconds);
  value.getFFFeet(&f[8], &f[9], &f[10]);
  value.getBars(&f[11], &f[12], &f[13], &f[14]);
  benchmark::DoNotOptimize(seconds += value.seconds());
  return value.videoFrames() + value.audioFrames() + answerOf(f);
}
QKExtendedTimecode valueOfAnyModeAt(std::size_t i) {
  const auto mode = static_cast<QKSMPTETimecodeMode>(i % std::size(kTimecodeModeTable));
  return QKExtendedTimecode(frameAt(i), QKTimecodeBestTimeRate, mode, 48000);
}

void measureTimes() {
  const auto convert = [](std::int64_t value, std::int32_t from, std::int32_t to) {
    return MediaTime(value, from).convertedTo(to).value;
  };
  measureRescaling(kLibrary, convert, convert);
  measureRescaling(kFloor, kernel::rescale<std::uint64_t>, kernel::rescale<kernel::UInt128>);
  measure("read every view, any mode", kLibrary, over(valueOfAnyModeAt, readEveryView));
  measure("compare two values", kLibrary, over(frameValueAt<>, [other = frameValueAt(1)](const QKVideoTimecode& value) {
            return std::uint64_t(value.compare(other));
          }));
  measure("hash a value", kLibrary, over(frameValueAt<>, [](const QKVideoTimecode& value) { return value.hash(); }));
  measure("copy a value", kLibrary, over(frameValueAt<>, [](const QKVideoTimecode& value) { return value.copy(); }));
  // As large as what parsing, stepping and copying make.
  frameValueAt(1).copy();
  measure(kAllocation, kLibrary, over(frameAt, [size = latestAllocation](std::uint32_t) {
            void* block = ::operator new(size);
            benchmark::DoNotOptimize(block);
            ::operator delete(block);
            return std::uint64_t{0};
          }));
}

// A column of times at 29.97 drop-frame brought to 25.
void measureColumn() {
  constexpr std::size_t kRows = 1000000;
  constexpr std::string_view kConvert = "convert a column, per value";
  const auto at = [](std::size_t i) { return MediaTime(std::int64_t{subframesAt(i)} * 1001, kTickRate); };
  const auto library = [](MediaTime time) {
    QKVideoTimecode value(time, QKSMPTETimecodeMode_2997Drop);
    value.setTimecodeMode(QKSMPTETimecodeMode_25);
    return std::uint64_t(value.timeValue().value);
  };
  const auto floor = [](MediaTime t) {
    return std::uint64_t(kernel::rescale<std::uint64_t>(t.value, kTickRate, 2000));
  };
  measure(kConvert, kLibrary, over(at, library, kRows), kRows);
  measure(kConvert, kFloor, over(at, floor, kRows), kRows);
}

// ---- Archives ----

void measureArchive(const std::string& what, const Ref<Object>& object, ArchiveKind kind) {
  const std::string archive = archivedData(*object, kind);
  const std::string row = what + ", " + std::to_string(archive.size()) + " bytes";
  constexpr std::size_t kTimes = 32;
  const auto writing = [=](const Ref<Object>& written) { return archivedData(*written, kind); };
  const auto reading = [](const std::string& bytes) {
    static constexpr const ClassDescriptor* kClasses[] = {&QKTimecode::descriptor, &NumberedObjects::descriptor};
    return std::uint64_t{unarchivedObject(bytes, kClasses) != nullptr};
  };
  measure("archive " + row, kLibrary, over([=](std::size_t) { return object; }, writing, kTimes), kTimes);
  measure("unarchive " + row, kLibrary, over([=](std::size_t) { return archive; }, reading, kTimes), kTimes);
}

void measureArchives() {
  measureArchive("a value, keyed", frameValueAt<QKTimecode>(1).copy(), ArchiveKind::Keyed);
  measureArchive("a value, sequential", frameValueAt<QKTimecode>(1).copy(), ArchiveKind::Sequential);
  for (const std::size_t count : {1U, 10U, 100U}) {
    const auto list = std::make_shared<NumberedObjects>();
    for (std::size_t i = 0; i < count; ++i) {
      list->objects()[static_cast<std::int64_t>(i)] = frameValueAt<QKTimecode>(i).copy();
    }
    measureArchive("a list of " + std::to_string(count), list, ArchiveKind::Keyed);
  }
}

}  // namespace

void measureLibraryAndFloor() {
  measureLabels();
  measureViews();
  measureTimes();
  measureColumn();
  measureArchives();
  measureGrowth();
}

}  // namespace bench
