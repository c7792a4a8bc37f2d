// Reads and writes of a value's fields, conversions, comparing: no text.

#include "Kernels.h"
#include "Measure.h"

#include "../Framework/QKExtendedTimecode.h"

namespace bench {

namespace {

using namespace quill;

// Reads input i of values that `at` makes; the floor reads input i of plain numbers.
template <class At, class Read, class FloorAt, class FloorRead>
void measureReads(std::string_view row, At at, Read read, FloorAt floorAt, FloorRead floorRead) {
  measure(row, Who::Library,
          [=] { return [=, values = inputs(at)](std::size_t i) mutable { return read(values[i]); }; });
  measure(row, Who::Floor,
          [=] { return [=, numbers = inputs(floorAt)](std::size_t i) { return floorRead(numbers[i]); }; });
}

// Writes what `fieldsAt` gives for input i into one of 64 values; the floor answers the ticks.
template <class Value, class FieldsAt, class Write, class FloorWrite>
void measureWrites(std::string_view row, FieldsAt fieldsAt, Write write, FloorWrite floorWrite) {
  measure(row, Who::Library, [=] {
    return [=, fields = inputs(fieldsAt), values = std::vector<Value>(64, valueAt<Value>(0))](std::size_t i) mutable {
      Value& value = values[i % 64];
      write(value, fields[i]);
      return static_cast<const QKVideoTimecode*>(&value);
    };
  });
  measure(row, Who::Floor, [=] {
    return [=, fields = inputs(fieldsAt)](std::size_t i) { return std::uint64_t{floorWrite(fields[i])}; };
  });
}

void measureFields() {
  measureReads(
      "read five SMPTE fields", subframeValue<>,
      [](QKVideoTimecode& value) {
        std::array<std::int64_t, 5> f;
        value.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], nullptr);
        return f;
      },
      subframesOfInput, kernel::fieldsOf);
  measureWrites<QKVideoTimecode>(
      "set five SMPTE fields", [](std::size_t i) { return kernel::fieldsOf(subframesOfInput(i)); },
      [](QKVideoTimecode& value, const kernel::Fields& fields) {
        value.setSMPTEHours(fields[0]);
        value.setSMPTEMinutes(fields[1]);
        value.setSMPTESeconds(fields[2]);
        value.setSMPTEFrames(fields[3]);
        value.setSMPTESubframes(fields[4]);
      },
      [](const kernel::Fields& fields) { return kernel::subframesOf(fields) * std::uint64_t{kTicksPerSubframe}; });
}

void measureAudioFrames() {
  const auto at = [](std::size_t i) {
    return QKTimecode(frameOfInput(i) * kTicksPerFrame, kTickRate, QKSMPTETimecodeMode_2997Drop, 48000);
  };
  measureReads(
      "time to audio frames, 272M", at, [](QKTimecode& value) { return value.audioFrames(); }, frameOfInput,
      kernel::firstSampleOf);
  measureReads(
      "audio frames to time, 272M",
      [=](std::size_t i) { return std::pair(at(i), kernel::firstSampleOf(frameOfInput(i + 1)) + i % 1600); },
      [](std::pair<QKTimecode, std::uint64_t>& pair) {
        pair.first.setAudioFrames(pair.second);
        return static_cast<const QKVideoTimecode*>(&pair.first);
      },
      [=](std::size_t i) { return kernel::firstSampleOf(frameOfInput(i + 1)) + i % 1600; },
      [](std::uint64_t sample) {
        const auto [frame, offset] = kernel::frameOf(sample);
        return frame * std::uint64_t{kTicksPerFrame} + offset * std::uint64_t{50};
      });
}

void measureFootage() {
  measureReads(
      "time to feet and frames", subframeValue<QKExtendedTimecode>,
      [](QKExtendedTimecode& value) {
        std::array<std::int64_t, 3> f;
        value.getFFFeet(&f[0], &f[1], &f[2]);
        return f;
      },
      subframesOfInput, kernel::footageOf);
  measureWrites<QKExtendedTimecode>(
      "feet and frames to time", [](std::size_t i) { return kernel::footageOf(subframesOfInput(i)); },
      [](QKExtendedTimecode& value, const std::array<std::uint32_t, 3>& footage) {
        value.setFFFeet(footage[0]);
        value.setFFFrames(footage[1]);
      },
      [](const std::array<std::uint32_t, 3>& footage) {
        return kernel::frameAt(footage[0], footage[1]) * std::uint64_t{kTicksPerFrame};
      });
}

void measureBars() {
  const auto timeUnits = [](std::size_t i) { return std::uint64_t{subframesOfInput(i)} * 1250; };
  measureReads(
      "time to bars and beats",
      [=](std::size_t i) { return valueAt<QKExtendedTimecode>(static_cast<std::int64_t>(timeUnits(i))); },
      [](QKExtendedTimecode& value) {
        std::array<std::int64_t, 4> p;
        value.getBars(&p[0], &p[1], &p[2], &p[3]);
        return p;
      },
      timeUnits, kernel::positionOf);
  measureWrites<QKExtendedTimecode>(
      "bars and beats to time", [=](std::size_t i) { return kernel::positionOf(timeUnits(i)); },
      [](QKExtendedTimecode& value, const kernel::Position& position) {
        value.setBars(position[0]);
        value.setIntegerBeats(position[1]);
        value.setDivisions(position[2]);
        value.setTicks(position[3]);
      },
      kernel::timeUnitsOf);
}

// Each of a mode of its own, 19 of them in turn.
QKExtendedTimecode valueOfAnyMode(std::size_t i) {
  const auto mode = static_cast<QKSMPTETimecodeMode>(i % std::size(kTimecodeModeTable));
  QKExtendedTimecode value(MediaTime(frameOfInput(i), 30), mode);
  value.setAudioFrameRate(48000);
  return value;
}

std::uint64_t readEveryView(QKExtendedTimecode& value) {
  std::int64_t f[13] = {};
  double seconds = 0, beats = 0;
  value.getSMPTEHours(&f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
  value.getHMSHours(&f[6], &f[7], &seconds);
  value.getFFFeet(&f[8], &f[9], &f[10]);
  value.getBars(&f[11], &f[12], &f[12], &f[12]);
  value.getBars(&f[11], &beats);
  return value.videoFrames() + value.audioFrames() + static_cast<std::uint64_t>(value.seconds() + seconds + beats) +
         static_cast<std::uint64_t>(f[3] + f[10] + f[11]);
}

void measureComparing() {
  measure("compare two values", Who::Library, [] {
    return [values = inputs(frameValue<>)](std::size_t i) {
      return static_cast<std::uint64_t>(values[i].compare(values[kInputs - 1 - i]));
    };
  });
  measure("hash a value", Who::Library,
          [] { return [values = inputs(frameValue<>)](std::size_t i) { return values[i].hash(); }; });
  measure("copy a value", Who::Library,
          [] { return [values = inputs(frameValue<>)](std::size_t i) { return values[i].copy(); }; });
}

// Times of 29.97 drop-frame to those of 25, a million in a column.
void measureColumn() {
  constexpr std::size_t kRows = 1000000;
  constexpr std::string_view kColumn = "convert a column, per value";
  const auto at = [](std::size_t i) { return MediaTime(subframesOfInput(i) * kTicksPerSubframe, kTickRate); };
  measure(
      kColumn, Who::Library,
      [=] {
        return [from = inputs(at, kRows), to = std::vector<MediaTime>(kRows)](std::size_t i) mutable {
          QKVideoTimecode value(from[i], QKSMPTETimecodeMode_2997Drop);
          value.setTimecodeMode(QKSMPTETimecodeMode_25);
          to[i] = value.timeValue();
          return static_cast<std::uint64_t>(to[i].value);
        };
      },
      kRows);
  measure(
      kColumn, Who::Floor,
      [=] {
        const auto ticks = [=](std::size_t i) { return at(i).value; };
        return [from = inputs(ticks, kRows), to = std::vector<std::int64_t>(kRows)](std::size_t i) mutable {
          to[i] = kernel::rescaleNarrow(from[i], kTickRate, 2000);
          return static_cast<std::uint64_t>(to[i]);
        };
      },
      kRows);
}

}  // namespace

void measureValues() {
  measureFields();
  for (const bool isWide : {false, true}) {
    measureRescaling(Who::Library, isWide, [](std::int64_t value, std::int32_t from, std::int32_t to) {
      return MediaTime(value, from).convertedTo(to).value;
    });
    measureRescaling(Who::Floor, isWide, isWide ? kernel::rescaleWide : kernel::rescaleNarrow);
  }
  measureAudioFrames();
  measureFootage();
  measureBars();
  measure("read every view, any mode", Who::Library,
          [] { return [values = inputs(valueOfAnyMode)](std::size_t i) mutable { return readEveryView(values[i]); }; });
  measureComparing();
  measureColumn();
}

}  // namespace bench
