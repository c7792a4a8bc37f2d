// Runs the benchmarks, repetitions of all of them in random order, so that a busy machine is fair to each, and prints one
// table of medians. Fails where an operation takes more from the heap than it may, and where two measurements of a row
// answer differently; a ratio above its limit is marked with "!". With --instructions it is what instructions.sh counts.

#include "Measure.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <new>

#if __has_include(<valgrind/callgrind.h>) && defined(__GLIBC__)
#include <gnu/libc-version.h>
#include <valgrind/callgrind.h>
#define QUILL_CALLGRIND
#endif

namespace bench {

thread_local std::size_t allocations = 0, latestAllocation = 0;

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// The most that an operation may take, in times of the floor: of the floor of another row, where one is named.
struct Limit {
  std::string_view row;
  double ratio;
  std::string_view floorRow = row;
};
constexpr Limit kLimits[] = {{kReadFields, 2.5},         {kRender, 6},   {kAddAndRender, 8}, {kParse, 20},
                             {kStep, 15, kAddAndRender}, {kNarrow, 1.6}, {kWide, 1.5}};
constexpr double kParseAloneLimit = 12;

// How often an operation may take memory: a result that is an object is one block, an archive is free to.
double allocationLimit(std::string_view row) {
  const auto does = [&](std::string_view word) { return row.find(word) != row.npos; };
  return does("archive") ? kNone : does("parse") || does("step") || does("copy") || does("allocate") ? 1 : 0;
}

struct Measurement {
  std::vector<double> times;  // in nanoseconds, by run
  double allocations = 0;
  double answer = 0;
};

std::string cell(double number, int places) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", places, number);
  return std::isnan(number) ? "" : text;
}

void printLine(std::string_view name, std::initializer_list<std::string> cells) {
  std::printf("%-40.*s", static_cast<int>(name.size()), name.data());
  for (const std::string& cell : cells) std::printf("%10s", cell.c_str());
  std::puts("");
}

class Table : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      Measurement& measurement = measurements_[run.run_name.function_name];
      const bool hasThreads = !run.run_name.time_type.empty();
      const double time = hasThreads ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
      measurement.times.push_back(time / run.counters.at("operations"));
      measurement.allocations = std::max(measurement.allocations, run.counters.at("allocations").value);
      measurement.answer = run.counters.at("answer");
    }
  }

  // False where something failed.
  bool print() {
    if (measurements_.empty()) fail("nothing", "measured");
    std::puts("29.97 drop-frame, 4096 inputs, medians; " QUILL_BENCHMARK_BUILD "\npeers: " QUILL_PEERS);
    printLine("", {"ns", "floor", "x floor", "limit", "allocated", "libavutil", "gstreamer"});
    for (const std::string& row : rowNames) {
      if (!at(row, kLibrary).times.empty()) printRow(row);
    }
    for (const std::string_view row : {kRender, kParse}) {
      const double times = medianTime(row, kOneThread) / medianTime(row, kTwoThreads);
      if (times > 0) printLine(std::string(row) + ", two threads: times faster", {cell(times, 2)});
    }
    return !failed_;
  }

 private:
  Measurement& at(std::string_view row, Who who) { return measurements_[measurementName(row, who)]; }

  double medianTime(std::string_view row, Who who) {
    std::vector<double>& times = at(row, who).times;
    std::sort(times.begin(), times.end());
    return times.empty() ? kNone : times[times.size() / 2];
  }

  void fail(const std::string& what, const char* problem) {
    std::fprintf(stderr, "FAILED: %s: %s\n", what.c_str(), problem);
    failed_ = true;
  }

  void printRow(const std::string& row) {
    const Measurement& library = at(row, kLibrary);
    Limit limit = {row, kNone};
    for (const Limit& other : kLimits) limit = other.row == row ? other : limit;
    const double floor = medianTime(limit.floorRow, kFloor);
    const auto print = [&](std::string_view name, double time, double most) {
      if (std::isnan(time)) return;
      printLine(name, {cell(time, 1), cell(floor, 1), (time > most * floor ? "! " : "") + cell(time / floor, 1),
                       cell(most, 1), cell(library.allocations, 0), cell(medianTime(row, kLibavutil) / floor, 1),
                       cell(medianTime(row, kGStreamer) / floor, 1)});
    };
    const double time = medianTime(row, kLibrary);
    print(row, time, limit.ratio);
    if (row == kParse) print("  beside the allocation", time - medianTime(kAllocation, kLibrary), kParseAloneLimit);

    if (library.allocations > allocationLimit(row)) fail(row, "takes too much from the heap");
    for (const Who who : {kFloor, kLibavutil, kGStreamer, kOneThread, kTwoThreads}) {
      const bool isAsked = !at(row, who).times.empty();
      if (isAsked && at(row, who).answer != library.answer) fail(measurementName(row, who), "answers otherwise");
    }
  }

  std::map<std::string, Measurement> measurements_;  // by name
  bool failed_ = false;
};

// For callgrind, which writes a profile after each operation, named by it. The first line says what the counts hold for.
int countInstructions() {
#ifdef QUILL_CALLGRIND
  std::printf("%s, glibc %s, %d bits\n", QUILL_BENCHMARK_BUILD, gnu_get_libc_version(), int{8 * sizeof(void*)});
  for (const Counted& operation : countedOperations) {
    const std::string name = std::to_string(operation.times) + ' ' + operation.row;
    const auto run = operation.make();
    run();
    CALLGRIND_ZERO_STATS;
    run();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
  }
  return 0;
#else
  std::fputs("Built without valgrind/callgrind.h, or with another C library than glibc.\n", stderr);
  return 1;
#endif
}

}  // namespace
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
  const bool isCounting = argc == 2 && std::string_view(argv[1]) == "--instructions";
  if (isCounting) argc = 1;
  // What is given later counts.
  std::string defaults[] = {"--benchmark_repetitions=25", "--benchmark_min_time=0.01",
                            "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> arguments = {argv[0]};
  for (std::string& flag : defaults) arguments.push_back(flag.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  auto count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

  bench::measureLibraryAndFloor();
  if (isCounting) return bench::countInstructions();
  bench::measurePeers();
  bench::Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.print() ? 0 : 1;
}
