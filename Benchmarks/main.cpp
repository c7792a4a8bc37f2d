// Runs the benchmarks, repetitions of all of them in random order, so that a busy machine is fair to each, and prints one
// table of medians. Fails where an operation takes more from the heap than it may, and where two measurements of one job
// answer differently; a time above its limit is marked.

#include "Measure.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>

namespace bench {

thread_local std::size_t allocations = 0, latestAllocation = 0;

namespace {

// Those whose packages were found.
void measurePeers() {
#ifdef QUILL_PEER_Libavutil
  measureLibavutil();
  std::puts("peer: " QUILL_PEER_Libavutil);
#else
  std::puts("no libavutil, so its column is empty");
#endif
#ifdef QUILL_PEER_GStreamer
  measureGStreamer();
  std::puts("peer: " QUILL_PEER_GStreamer);
#else
  std::puts("no gstreamer-video-1.0, so its column is empty");
#endif
}

constexpr double kNone = -1;

struct Limit {
  std::string_view row;
  double ratio = kNone;           // to the floor
  double allocations = kNone;     // an operation
  std::string_view floorOf = {};  // the row with the floor, where it has none
};
constexpr Limit kLimits[] = {
    {"read five SMPTE fields", 2.5, 0},
    {kRender, 6, 0},
    {kAddAndRender, 8, 0},
    {kParse, 20, 1},
    {"step a segment", 15, 1, kAddAndRender},
    {"set five SMPTE fields", kNone, 0},
    {"rescale, 64-bit product", 1.6, 0},
    {"rescale, wide product", 1.5, 0},
    {"time to audio frames, 272M", kNone, 0},
    {"audio frames to time, 272M", kNone, 0},
    {"time to feet and frames", kNone, 0},
    {"feet and frames to time", kNone, 0},
    {"time to bars and beats", kNone, 0},
    {"bars and beats to time", kNone, 0},
    {"read every view, any mode", kNone, 0},
    {"compare two values", kNone, 0},
    {"hash a value", kNone, 0},
    {"convert a column, per value", kNone, 0},
    {"copy a value", kNone, 1},
};
constexpr Limit kNoLimit = {};
constexpr double kParseRatioWithoutAllocation = 12;

// The list of a row's columns behind the floor.
constexpr Who kPeers[] = {Who::Libavutil, Who::GStreamer};

struct Measurement {
  std::vector<double> nanoseconds;  // by run
  double allocations = 0;
  double answer = 0;
};

double medianOf(std::vector<double> numbers) {
  std::sort(numbers.begin(), numbers.end());
  const std::size_t half = numbers.size() / 2;
  return numbers.size() % 2 ? numbers[half] : (numbers[half - 1] + numbers[half]) / 2;
}

void printNumber(int width, int places, double number) {
  if (number == kNone) {
    std::printf("%*s", width, "");
  } else {
    std::printf("%*.*f", width, places, number);
  }
}

class Table : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      Measurement& measurement = measurements_[run.run_name.function_name];
      const bool isReal = !run.run_name.time_type.empty();  // of several threads
      const double time = isReal ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
      measurement.nanoseconds.push_back(time / run.counters.at("operations"));
      measurement.allocations = std::max(measurement.allocations, run.counters.at("allocations").value);
      measurement.answer = run.counters.at("answer");
    }
  }

  // False where something failed.
  bool print() {
    std::printf("29.97 drop-frame, %zu inputs, medians; %s\n", kInputs, QUILL_BENCHMARK_BUILD);
    std::printf("%-40s%9s%7s%8s%7s%8s%11s%11s\n", "", "ns", "floor", "ratio", "limit", "allocs", "libavutil",
                "gstreamer");
    for (const std::string& row : rowNames()) printRow(row);
    printThreads(kRender);
    printThreads(kParse);
    if (measurements_.empty()) fail("nothing", "measured");
    return !failed_;
  }

 private:
  const Measurement* find(std::string_view row, Who who) const {
    const auto found = measurements_.find(benchmarkName(row, who));
    return found == measurements_.end() ? nullptr : &found->second;
  }
  double medianTime(std::string_view row, Who who) const {
    const Measurement* measurement = find(row, who);
    return measurement ? medianOf(measurement->nanoseconds) : kNone;
  }
  void fail(std::string_view row, std::string_view problem) {
    std::fprintf(stderr, "FAILED: %.*s: %.*s\n", static_cast<int>(row.size()), row.data(),
                 static_cast<int>(problem.size()), problem.data());
    failed_ = true;
  }

  void printRow(const std::string& row) {
    const Measurement* library = find(row, Who::Library);
    if (!library) return;
    const auto* limit =
        std::find_if(std::begin(kLimits), std::end(kLimits), [&](const Limit& l) { return l.row == row; });
    if (limit == std::end(kLimits)) limit = &kNoLimit;
    const double floor = medianTime(limit->floorOf.empty() ? row : limit->floorOf, Who::Floor);
    const double time = medianTime(row, Who::Library);
    printStart(row, time, floor, limit->ratio);
    std::printf("%8.4g", library->allocations);
    for (const Who peer : kPeers) {
      const double peerTime = medianTime(row, peer);
      printNumber(11, 1, peerTime == kNone || floor == kNone ? kNone : peerTime / floor);
    }
    printEnd(time, floor, limit->ratio);
    const double allocation = medianTime(kAllocation, Who::Library);
    if (row == kParse && allocation != kNone) {
      printStart("  beside the allocation", time - allocation, floor, kParseRatioWithoutAllocation);
      printEnd(time - allocation, floor, kParseRatioWithoutAllocation);
    }
    if (limit->allocations != kNone && library->allocations > limit->allocations) fail(row, "too many allocations");
    for (const Who who : {Who::Floor, Who::Libavutil, Who::GStreamer, Who::OneThread, Who::TwoThreads}) {
      const Measurement* other = find(row, who);
      if (other && other->answer != library->answer) fail(benchmarkName(row, who), "another answer than the library's");
    }
  }

  static void printStart(std::string_view row, double time, double floor, double limit) {
    std::printf("%-40.*s", static_cast<int>(row.size()), row.data());
    printNumber(9, 1, time);
    printNumber(7, 1, floor);
    printNumber(8, 1, floor == kNone ? kNone : time / floor);
    printNumber(7, 1, limit);
  }
  static void printEnd(double time, double floor, double limit) {
    std::puts(limit != kNone && floor != kNone && time > limit * floor ? "  above" : "");
  }

  void printThreads(std::string_view row) const {
    const double one = medianTime(row, Who::OneThread), two = medianTime(row, Who::TwoThreads);
    if (one == kNone || two == kNone) return;
    std::printf("%-40.*s%10.2f times as many by two threads as by one\n", static_cast<int>(row.size()), row.data(),
                one / two);
  }

  std::map<std::string, Measurement> measurements_;  // by name
  bool failed_ = false;
};

}  // namespace

std::vector<std::string>& rowNames() {
  static std::vector<std::string> names;
  return names;
}

}  // namespace bench

// Neither is inlined: GCC takes half of the pair for a mistake.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++bench::allocations;
  bench::latestAllocation = size;
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

int main(int argc, char** argv) {
  using namespace bench;
  std::string defaults[] = {"--benchmark_repetitions=15", "--benchmark_min_time=0.02",
                            "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> arguments = {argv[0]};
  for (std::string& flag : defaults) arguments.push_back(flag.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  auto count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

  measureText();
  measureValues();
  measureArchives();
  measurePeers();
  for (const Limit& limit : kLimits) {
    if (std::find(rowNames().begin(), rowNames().end(), limit.row) == rowNames().end()) std::abort();
  }
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.print() ? 0 : 1;
}
