// Values written into an archive and read back.

#include "Measure.h"

#include "../Framework/QKTimecode.h"
#include "../Platform/Archive.h"

namespace bench {

namespace {

using namespace quill;

Ref<QKTimecode> example(std::size_t i) {
  auto timecode = std::make_shared<QKTimecode>(frameValue<QKTimecode>(i));
  timecode->setAudioFrameRate(48000);
  timecode->setAudioFrameSequencePhaseFrame(3);
  return timecode;
}

void measureArchive(const Ref<Object>& object, std::string_view what, ArchiveKind kind) {
  const std::string archive = archivedData(*object, kind);
  const std::string text = std::string(what) + ", " + std::to_string(archive.size()) + " bytes";
  // What does not vary needs fewer runs.
  constexpr std::size_t kOperations = 32;
  measure(
      "archive " + text, Who::Library, [=] { return [=](std::size_t) { return archivedData(*object, kind); }; },
      kOperations);
  measure(
      "unarchive " + text, Who::Library,
      [=] {
        return [=](std::size_t) {
          static constexpr const ClassDescriptor* kClasses[] = {&QKTimecode::descriptor, &NumberedObjects::descriptor};
          return std::uint64_t{unarchivedObject(archive, kClasses)->hash() & 1};
        };
      },
      kOperations);
}

}  // namespace

void measureArchives() {
  measureArchive(example(1), "keyed", ArchiveKind::Keyed);
  measureArchive(example(1), "sequential", ArchiveKind::Sequential);
  for (const int count : {1, 10, 100}) {
    const auto list = std::make_shared<NumberedObjects>();
    for (int i = 0; i < count; ++i) list->objects()[i] = example(static_cast<std::size_t>(i));
    measureArchive(list, "keyed, " + std::to_string(count) + " in a list", ArchiveKind::Keyed);
  }
}

}  // namespace bench
