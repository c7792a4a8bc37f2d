// One QKTimecode written into an archive of its own and read back, keyed and sequential.

#include "../Framework/QKTimecode.h"
#include "../Platform/Archive.h"

#include <benchmark/benchmark.h>

namespace {

using namespace quill;

QKTimecode example() {
  QKTimecode timecode(8640008640, 2400000, QKSMPTETimecodeMode_2997Drop, 48000);
  timecode.setAudioFrameSequencePhaseFrame(3);
  return timecode;
}

void Encode(benchmark::State& state, ArchiveKind kind) {
  const QKTimecode timecode = example();
  for (auto _ : state) benchmark::DoNotOptimize(archivedData(timecode, kind).data());
}
BENCHMARK_CAPTURE(Encode, Keyed, ArchiveKind::Keyed);
BENCHMARK_CAPTURE(Encode, Sequential, ArchiveKind::Sequential);

void Decode(benchmark::State& state, ArchiveKind kind) {
  const std::string archive = archivedData(example(), kind);
  for (auto _ : state) benchmark::DoNotOptimize(unarchived<QKTimecode>(archive).get());
}
BENCHMARK_CAPTURE(Decode, Keyed, ArchiveKind::Keyed);
BENCHMARK_CAPTURE(Decode, Sequential, ArchiveKind::Sequential);

void EncodeAndDecode(benchmark::State& state, ArchiveKind kind) {
  const QKTimecode timecode = example();
  for (auto _ : state) {
    const std::string archive = archivedData(timecode, kind);
    benchmark::DoNotOptimize(unarchived<QKTimecode>(archive).get());
  }
}
BENCHMARK_CAPTURE(EncodeAndDecode, Keyed, ArchiveKind::Keyed);
BENCHMARK_CAPTURE(EncodeAndDecode, Sequential, ArchiveKind::Sequential);

}  // namespace
