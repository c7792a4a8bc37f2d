// Archives of one kind, QUILL_FUZZ_KIND: any bytes end in a value or an ArchiveError at a byte of them; what was read can
// be used, written and read again. No setting out of an archive makes a formatter run away.

#include "../Platform/Reports.h"
#include "../Tests/ArchivedFields.h"
#include "../Tests/ArchivedMarker.h"
#include "FuzzInput.h"

using namespace quill;

static Ref<Object> decodedOrNull(std::string_view bytes, ArchiveKind kind) {
  std::vector<const ClassDescriptor*> classes(std::begin(kMarkerClasses), std::end(kMarkerClasses));
  classes.insert(classes.end(), std::begin(kArchivedClasses), std::end(kArchivedClasses));
  try {
    ArchiveReader reader(bytes);
    if (reader.allowsKeyedCoding() == (kind == ArchiveKind::Keyed)) return reader.decodeRoot(classes);
  } catch (const ArchiveError& error) {
    QUILL_REQUIRE(error.byteOffset() <= bytes.size());
  } catch (const std::runtime_error&) {
    // a poisoned marker
  }
  return nullptr;
}

// Shows, types and steps with a formatter, or a value with a plain one. The state of a value may raise.
static void use(const Ref<Object>& object) try {
  QKTimecodeFormatter plain;
  auto* formatter = classCast<QKTimecodeFormatter>(object.get());
  if (classCast<QKVideoTimecode>(object.get())) (formatter = &plain)->setDefaultObjectPrototype(object);
  if (!formatter) return;
  Ref<Object> result, value = formatter->defaultObjectPrototype();
  formatter->setAllowsNegative(true);
  formatter->stringForObjectValue(value.get());
  formatter->getObjectValue(&result, "1:02.5", nullptr);
  formatter->getObjectValueIncrementingSegmentWithTag(&result, 1, 1, value.get());
  formatter->getObjectValueForSegmentWithTag(&result, "12", 0, value.get(), nullptr);
} catch (const InternalInconsistencyFailure&) {
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  setLogSink([](std::string_view) {});
  setLightAssertionSink([](std::string_view) {});
  takeAllLabels();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const Ref<Object> object = decodedOrNull(bytes, ArchiveKind::QUILL_FUZZ_KIND);
  QUILL_REQUIRE(!DecodingRegistration::processWideClass("Marker"));
  if (!object) return 0;
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    std::string written;
    try {
      written = archivedData(*object, kind);
    } catch (const ArchiveError&) {
      continue;  // objects that referred to each other may be nested deeper now
    }
    const Ref<Object> again = decodedOrNull(written, kind);
    // The dictionary of an old formatter may hold a deputy in the place of another, where no collection is read with it.
    QUILL_REQUIRE(again || classCast<QKTimecodeFormatter>(object.get()));
    QUILL_REQUIRE(!again || archivedData(*again, kind) == written);
  }
  use(object);
  return 0;
}
