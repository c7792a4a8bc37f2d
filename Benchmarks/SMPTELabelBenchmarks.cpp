// An SMPTE label rendered and parsed through the formatter, beside the hand-written floor. 29.97 drop-frame, 4096 inputs
// spread over 24 hours.

#include "../Framework/QKTimecodeFormatter.h"
#include "../Framework/QKVideoTimecode.h"
#include "SMPTEKernel.h"

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <vector>

namespace {

using namespace quill;

constexpr std::size_t kInputs = 4096;
constexpr std::uint32_t kFramesPerDay = 2589408;
constexpr std::int32_t kTickRate = 2400000, kTicksPerFrame = 80080;

std::uint32_t frameOfInput(std::size_t i) { return static_cast<std::uint32_t>((i * 2654435761U) % kFramesPerDay); }

const std::vector<std::string>& labels() {
  static const auto all = [] {
    std::vector<std::string> texts(kInputs, "00:00:00;00");
    for (std::size_t i = 0; i < kInputs; ++i) kernel::renderLabel(frameOfInput(i), texts[i].data());
    return texts;
  }();
  return all;
}

const std::vector<QKVideoTimecode>& values() {
  static const auto all = [] {
    std::vector<QKVideoTimecode> timecodes;
    for (std::size_t i = 0; i < kInputs; ++i) {
      timecodes.emplace_back(MediaTime(std::int64_t{frameOfInput(i)} * kTicksPerFrame, kTickRate),
                             QKSMPTETimecodeMode_2997Drop);
    }
    return timecodes;
  }();
  return all;
}

void RenderFloor(benchmark::State& state) {
  char buffer[12] = {};
  std::size_t i = 0;
  for (auto _ : state) {
    kernel::renderLabel(frameOfInput(i++ % kInputs), buffer);
    benchmark::DoNotOptimize(buffer);
  }
}
BENCHMARK(RenderFloor);

void RenderThroughFormatter(benchmark::State& state) {
  const QKTimecodeFormatter formatter;
  std::vector<QKVideoTimecode> timecodes = values();
  std::size_t i = 0;
  for (auto _ : state) {
    const auto text = formatter.stringForObjectValue(&timecodes[i++ % kInputs]);
    benchmark::DoNotOptimize(text->data());
  }
}
BENCHMARK(RenderThroughFormatter);

void ParseFloor(benchmark::State& state) {
  std::size_t i = 0;
  const auto& texts = labels();
  for (auto _ : state) benchmark::DoNotOptimize(kernel::parseLabel(texts[i++ % kInputs].data()));
}
BENCHMARK(ParseFloor);

void ParseThroughFormatter(benchmark::State& state) {
  QKTimecodeFormatter formatter;
  formatter.setCurrentTimecode(values()[0].copy());
  formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(state.range(0)));
  std::size_t i = 0;
  const auto& texts = labels();
  for (auto _ : state) {
    Ref<Object> value;
    formatter.getObjectValue(&value, texts[i++ % kInputs], nullptr);
    benchmark::DoNotOptimize(value.get());
  }
}
BENCHMARK(ParseThroughFormatter)
    ->Arg(OrbSMPTEStringInterpretationPreservingUpper)
    ->Arg(OrbSMPTEStringInterpretationDiscardingUpper);

}  // namespace

BENCHMARK_MAIN();
