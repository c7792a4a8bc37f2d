// How an operation is measured: `measure(row, who, over(at, operation))` runs the operation on 4096 inputs that `at` makes
// of their numbers, keeps each result from the optimiser and counts what is taken from the heap. The measurements of a
// row do one job by different means: their answers are compared, outside of the measured time.
#pragma once

#include "../Framework/QKVideoTimecode.h"
#include "Kernels.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

// Of this thread, by operator new, released again or not; and the size of the latest.
extern thread_local std::size_t allocations, latestAllocation;

enum Who : std::uint8_t { kLibrary, kFloor, kLibavutil, kGStreamer, kOneThread, kTwoThreads };
inline constexpr const char* kWhoNames[] = {"library", "floor", "libavutil", "gstreamer", "one by one", "in two"};

inline std::string measurementName(std::string_view row, Who who) { return std::string(row) + '/' + kWhoNames[who]; }

// Rows that several places name.
inline constexpr std::string_view kAllocation = "allocate and release a value", kRender = "render a label",
                                  kAddAndRender = "add a frame, render", kParse = "parse a label",
                                  kStep = "step a segment", kReadFields = "read five SMPTE fields",
                                  kNarrow = "rescale, 64-bit product", kWide = "rescale, wide product";

// ---- Inputs: spread over 20 hours of 29.97 drop-frame ----

inline constexpr std::size_t kInputs = 4096;
inline constexpr std::int32_t kTickRate = 2400000;

inline std::uint32_t frameAt(std::size_t i) { return static_cast<std::uint32_t>(i * 2654435761U % 2157840); }
inline std::uint32_t subframesAt(std::size_t i) {
  return frameAt(i) * 80 + static_cast<std::uint32_t>(i * 40503U % 80);
}
inline std::string labelAt(std::size_t i) {
  std::string text(11, ' ');
  kernel::renderLabel(frameAt(i), text.data());
  return text;
}

// ---- Answers ----

inline std::uint64_t answerOf(std::uint64_t number) { return number; }
inline std::uint64_t answerOf(std::string_view text) { return std::hash<std::string_view>()(text); }
inline std::uint64_t answerOf(const std::string& text) { return answerOf(std::string_view(text)); }
inline std::uint64_t answerOf(const std::optional<std::string>& text) { return answerOf(*text); }
// A value that exists stands for its ticks, one just made for its frame.
inline std::uint64_t answerOf(const quill::QKVideoTimecode* value) {
  return static_cast<std::uint64_t>(value->timeValue().value);
}
inline std::uint64_t answerOf(const quill::Ref<quill::Object>& value) {
  return answerOf(static_cast<const quill::QKVideoTimecode*>(value.get())) / kernel::kTicksPerFrame;
}
template <class Field, std::size_t count>
std::uint64_t answerOf(const std::array<Field, count>& fields) {
  std::uint64_t answer = 0;
  for (const Field field : fields) answer = answer * 1000 + static_cast<std::uint64_t>(field);
  return answer;
}

// ---- Measuring ----

// Makes the inputs anew for each run: an operation may change them.
template <class At, class Operation>
auto over(At at, Operation operation, std::size_t count = kInputs) {
  return [=] {
    std::vector<decltype(at(0))> inputs;
    inputs.reserve(count);
    for (std::size_t i = 0; i < count; ++i) inputs.push_back(at(i));
    return [inputs = std::move(inputs), operation](std::size_t i) mutable { return operation(inputs[i]); };
  };
}

// In the order of the table.
inline std::vector<std::string> rowNames;

// What `--instructions` counts of the library: an operation on some inputs, run once before for what is made on first use.
struct Counted {
  static constexpr std::size_t kMostTimes = 512;
  std::string row;
  std::size_t times;
  std::function<std::function<void()>()> make;
};
inline std::vector<Counted> countedOperations;

template <class Make>
Counted counted(std::string_view row, Make make, std::size_t times) {
  return {std::string(row), times, [=]() -> std::function<void()> {
            return [times, operation = make()]() mutable {
              for (std::size_t i = 0; i < times; ++i) {
                auto result = operation(i);
                benchmark::DoNotOptimize(result);
              }
            };
          }};
}

template <class Make>
benchmark::internal::Benchmark* measure(std::string_view row, Who who, Make make, std::size_t count = kInputs) {
  if (std::find(rowNames.begin(), rowNames.end(), row) == rowNames.end()) rowNames.emplace_back(row);
  if (who == kLibrary) countedOperations.push_back(counted(row, make, std::min(count, Counted::kMostTimes)));
  return benchmark::RegisterBenchmark(measurementName(row, who).c_str(), [=](benchmark::State& state) {
    auto operation = make();
    std::uint64_t answer = 0;
    // What is made on first use is made here.
    for (std::size_t i = 0; i < count; ++i) answer = answer * 31 + answerOf(operation(i));
    std::size_t taken = 0;
    for (auto _ : state) {
      const std::size_t before = allocations;
      for (std::size_t i = 0; i < count; ++i) {
        auto result = operation(i);
        benchmark::DoNotOptimize(result);
      }
      taken += allocations - before;
    }
    const auto operations = static_cast<double>(count);
    const auto report = [&](const char* name, double number) {
      state.counters[name] = benchmark::Counter(number, benchmark::Counter::kAvgThreads);
    };
    report("operations", operations);
    report("allocations", static_cast<double>(taken) / operations / static_cast<double>(state.iterations()));
    report("answer", static_cast<double>(answer >> 32));
  });
}

// `rescale(value, from, to)` of counts from 0 up, with products within 64 bits or beyond.
template <class Rescale>
void measureRescaling(Who who, Rescale narrow, Rescale wide) {
  const auto at = [](std::int64_t unit) { return [=](std::size_t i) { return frameAt(i) * unit; }; };
  const auto by = [](Rescale rescale, std::int32_t from, std::int32_t to) {
    return [=](std::int64_t value) { return static_cast<std::uint64_t>(rescale(value, from, to)); };
  };
  measure(kNarrow, who, over(at(80080), by(narrow, kTickRate, 44100)));
  measure(kWide, who, over(at(10000019), by(wide, 999999937, 2147483629)));
}

// What each file measures.
void measureLibraryAndFloor();
void measurePeers();

}  // namespace bench
