// How an operation is measured: `measure(row, who, make)` runs what `make()` gives, a function of the number of an input,
// over all inputs, keeps each result from the optimiser and counts what it takes from the heap. A row's measurements do
// the same job by different means: their answers are compared too, outside of the measured time.
#pragma once

#include "../Framework/QKVideoTimecode.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

// Of this thread, by operator new, freed again or not; and the size of the latest.
extern thread_local std::size_t allocations, latestAllocation;

enum class Who { Library, Floor, Libavutil, GStreamer, OneThread, TwoThreads };
inline constexpr std::string_view kNames[] = {"library", "floor", "libavutil", "gstreamer", "1-thread", "2-threads"};

inline std::string benchmarkName(std::string_view row, Who who) {
  return std::string(row) + '/' + std::string(kNames[static_cast<std::size_t>(who)]);
}

// ---- Inputs: 29.97 drop-frame, spread over 20 hours ----

inline constexpr std::size_t kInputs = 4096;
inline constexpr std::int32_t kTickRate = 2400000;
inline constexpr std::int64_t kTicksPerSubframe = 1001, kTicksPerFrame = 80080;

inline std::uint32_t frameOfInput(std::size_t i) { return static_cast<std::uint32_t>(i * 2654435761U % 2157840); }
inline std::uint32_t subframesOfInput(std::size_t i) {
  return frameOfInput(i) * 80 + static_cast<std::uint32_t>(i * 40503U % 80);
}

// A vector of what `at` gives for each input.
template <class At>
auto inputs(At at, std::size_t count = kInputs) {
  std::vector<decltype(at(std::size_t{}))> all;
  all.reserve(count);
  for (std::size_t i = 0; i < count; ++i) all.push_back(at(i));
  return all;
}

template <class Value>
Value valueAt(std::int64_t ticks) {
  return Value(quill::MediaTime(ticks, kTickRate), quill::QKSMPTETimecodeMode_2997Drop);
}
template <class Value = quill::QKVideoTimecode>
Value frameValue(std::size_t i) {
  return valueAt<Value>(frameOfInput(i) * kTicksPerFrame);
}
template <class Value = quill::QKVideoTimecode>
Value subframeValue(std::size_t i) {
  return valueAt<Value>(subframesOfInput(i) * kTicksPerSubframe);
}

std::vector<std::string> labels();

// ---- What an operation answers, to compare ----

inline std::uint64_t answerOf(std::uint64_t number) { return number; }
inline std::uint64_t answerOf(std::string_view text) { return std::hash<std::string_view>()(text); }
inline std::uint64_t answerOf(const std::string& text) { return answerOf(std::string_view(text)); }
inline std::uint64_t answerOf(const std::optional<std::string>& text) { return answerOf(std::string_view(*text)); }
// A value stands for its ticks, a value just made for its frame.
inline std::uint64_t answerOf(const quill::QKVideoTimecode* value) {
  return static_cast<std::uint64_t>(value->timeValue().value);
}
inline std::uint64_t answerOf(const quill::Ref<quill::Object>& value) {
  return answerOf(static_cast<const quill::QKVideoTimecode*>(value.get())) / std::uint64_t{kTicksPerFrame};
}
template <class Field, std::size_t count>
std::uint64_t answerOf(const std::array<Field, count>& fields) {
  std::uint64_t answer = 0;
  for (const Field field : fields) answer = answer * 1000 + static_cast<std::uint64_t>(field);
  return answer;
}

// ---- Measuring ----

// In the order of their first measurement.
std::vector<std::string>& rowNames();

// One run of the benchmark goes `operations` times through `make()`.
template <class Make>
benchmark::internal::Benchmark* measure(std::string_view row, Who who, Make make, std::size_t operations = kInputs) {
  if (std::find(rowNames().begin(), rowNames().end(), row) == rowNames().end()) rowNames().emplace_back(row);
  return benchmark::RegisterBenchmark(benchmarkName(row, who).c_str(), [make, operations](benchmark::State& state) {
    auto operation = make();
    std::uint64_t answer = 0;
    // What is made on first use is made here.
    for (std::size_t i = 0; i < operations; ++i) answer = answer * 31 + answerOf(operation(i));
    std::size_t taken = 0;
    for (auto _ : state) {
      const std::size_t before = allocations;
      for (std::size_t i = 0; i < operations; ++i) {
        auto result = operation(i);
        benchmark::DoNotOptimize(result);
      }
      taken += allocations - before;
    }
    const auto all = static_cast<double>(operations) * static_cast<double>(state.iterations());
    const auto count = [&](const char* name, double number) {
      state.counters[name] = benchmark::Counter(number, benchmark::Counter::kAvgThreads);
    };
    count("operations", static_cast<double>(operations));
    count("allocations", static_cast<double>(taken) / all);
    count("answer", static_cast<double>(answer >> 32));
  });
}

// Rows that several files measure.
inline constexpr std::string_view kAllocation = "allocate and release a value", kRender = "render a label",
                                  kAddAndRender = "add a frame, render", kParse = "parse a label";

// `rescale(value, from, to)` of counts from 0 up, with products within 64 bits or beyond.
template <class Rescale>
void measureRescaling(Who who, bool isWide, Rescale rescale) {
  const std::int32_t from = isWide ? 999999937 : kTickRate, to = isWide ? 2147483629 : 44100;
  const std::int64_t unit = isWide ? 10000019 : kTicksPerFrame;
  measure(isWide ? "rescale, wide product" : "rescale, 64-bit product", who, [=] {
    return [=, values = inputs([&](std::size_t i) { return frameOfInput(i) * unit; })](std::size_t i) {
      return static_cast<std::uint64_t>(rescale(values[i], from, to));
    };
  });
}

// What each file measures.
void measureValues();
void measureText();
void measureArchives();
void measureLibavutil();
void measureGStreamer();

}  // namespace bench
