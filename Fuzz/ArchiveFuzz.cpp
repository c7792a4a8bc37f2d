// Any bytes end in a value or an ArchiveError at a byte of them; what was read can be written and read again.

#include "../Tests/ArchivedMarker.h"

#include <cstdlib>

using namespace quill;

static Ref<Object> decodedOrNull(std::string_view bytes) {
  try {
    return unarchivedObject(bytes, kMarkerClasses);
  } catch (const ArchiveError& error) {
    if (error.byteOffset() > bytes.size()) std::abort();
  } catch (const std::runtime_error&) {
    // a poisoned marker
  }
  return nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  takeAllLabels();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const Ref<Object> object = decodedOrNull(bytes);
  if (DecodingRegistration::processWideClass("Marker")) std::abort();
  if (!object) return 0;
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    std::string written;
    try {
      written = archivedData(*object, kind);
    } catch (const ArchiveError&) {
      continue;  // objects that referred to each other may be nested deeper now
    }
    const Ref<Object> again = decodedOrNull(written);
    if (!again || archivedData(*again, kind) != written) std::abort();
  }
  return 0;
}
