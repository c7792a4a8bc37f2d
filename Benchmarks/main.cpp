// Runs the benchmarks, repetitions of all of them in random order, so that a busy machine is fair to each, and prints one
// table of medians. Fails where an operation takes more from the heap than it may, and where two measurements of a row
// answer differently; a ratio above its limit is marked with "!".

#include "Measure.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>

namespace bench {

thread_local std::size_t allocations = 0, latestAllocation = 0;

namespace {

constexpr double kNone = -1;

// The most that an operation may take, in times of the floor: of the floor of another row, where one is named.
struct Limit {
  std::string_view row;
  double ratio;
  std::string_view floorRow;
};
constexpr Limit kLimits[] = {{kReadFields, 2.5, kReadFields},
                             {kRender, 6, kRender},
                             {kAddAndRender, 8, kAddAndRender},
                             {kParse, 20, kParse},
                             {kStep, 15, kAddAndRender},
                             {kNarrow, 1.6, kNarrow},
                             {kWide, 1.5, kWide}};
constexpr double kParseLimitWithoutAllocation = 12;

// How often an operation may take memory: a result that is an object is one block, an archive is free to.
double allocationLimit(std::string_view row) {
  if (row.find("archive") != row.npos) return kNone;
  for (const std::string_view making : {"parse", "step", "copy", "allocate"}) {
    if (row.starts_with(making)) return 1;
  }
  return 0;
}

struct Measurement {
  std::vector<double> times;  // in nanoseconds, by run
  double allocations = 0;
  double answer = 0;
};

std::string cell(double number, int places) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", places, number);
  return number == kNone ? "" : text;
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
    std::printf("29.97 drop-frame, %zu inputs, medians; %s\n", kInputs, QUILL_BENCHMARK_BUILD);
    printLine("", {"ns", "floor", "x floor", "limit", "allocated", "libavutil", "gstreamer"});
    for (const std::string& row : rowNames()) printRow(row);
    for (const std::string_view row : {kRender, kParse}) {
      const double one = medianTime(row, kOneThread), two = medianTime(row, kTwoThreads);
      if (one != kNone && two != kNone)
        printLine(std::string(row) + ", two threads: times faster", {cell(one / two, 2)});
    }
    if (measurements_.empty()) fail("nothing", "measured");
    return !failed_;
  }

 private:
  const Measurement* find(std::string_view row, Who who) const {
    const auto found = measurements_.find(measurementName(row, who));
    return found == measurements_.end() ? nullptr : &found->second;
  }
  double medianTime(std::string_view row, Who who) const {
    const Measurement* measurement = find(row, who);
    if (!measurement) return kNone;
    std::vector<double> times = measurement->times;
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
  }
  void fail(const std::string& what, const char* problem) {
    std::fprintf(stderr, "FAILED: %s: %s\n", what.c_str(), problem);
    failed_ = true;
  }

  void printRow(const std::string& row) {
    const Measurement* library = find(row, kLibrary);
    if (!library) return;
    const auto* limit = std::find_if(std::begin(kLimits), std::end(kLimits), [&](auto& l) { return l.row == row; });
    const bool isLimited = limit != std::end(kLimits);
    const double floor = medianTime(isLimited ? limit->floorRow : row, kFloor);
    const auto ratio = [&](double time) { return time == kNone || floor == kNone ? kNone : time / floor; };
    const auto print = [&](std::string_view name, double time, double most) {
      const bool isAbove = most != kNone && ratio(time) > most;
      printLine(name, {cell(time, 1), cell(floor, 1), (isAbove ? "! " : "") + cell(ratio(time), 1), cell(most, 1),
                       cell(library->allocations, 0), cell(ratio(medianTime(row, kLibavutil)), 1),
                       cell(ratio(medianTime(row, kGStreamer)), 1)});
    };
    const double time = medianTime(row, kLibrary), allocation = medianTime(kAllocation, kLibrary);
    print(row, time, isLimited ? limit->ratio : kNone);
    if (row == kParse && allocation != kNone) {
      print("  beside the allocation", time - allocation, kParseLimitWithoutAllocation);
    }

    const double most = allocationLimit(row);
    if (most != kNone && library->allocations > most) fail(row, "takes too much from the heap");
    for (const Who who : {kFloor, kLibavutil, kGStreamer, kOneThread, kTwoThreads}) {
      const Measurement* other = find(row, who);
      if (other && other->answer != library->answer) fail(measurementName(row, who), "answers as the library does not");
    }
  }

  std::map<std::string, Measurement> measurements_;  // by name
  bool failed_ = false;
};

}  // namespace

std::vector<std::string>& rowNames() {
  static std::vector<std::string> names;
  return names;
}
void addRow(std::string_view row) {
  std::vector<std::string>& names = rowNames();
  if (std::find(names.begin(), names.end(), row) == names.end()) names.emplace_back(row);
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
  // What is given later counts.
  std::string defaults[] = {"--benchmark_repetitions=15", "--benchmark_min_time=0.02",
                            "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> arguments = {argv[0]};
  for (std::string& flag : defaults) arguments.push_back(flag.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  auto count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

  bench::measureLibraryAndFloor();
  bench::measurePeers();
  bench::Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.print() ? 0 : 1;
}
