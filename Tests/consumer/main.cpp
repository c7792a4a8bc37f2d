// Uses values, formatter, archives and what is exported as data, of an installed library.
#include <Framework/QuillFoundation.h>
#include <iostream>

int main() {
  using namespace quill;
  QKTimecodeFormatter formatter;
  formatter.setCurrentTimecode(std::make_shared<QKVideoTimecode>(MediaTime(0, 1), QKSMPTETimecodeMode_2997Drop));
  Ref<Object> value;
  std::string error;
  if (!formatter.getObjectValue(&value, "00:00:59;29", &error)) return 1;
  const ClassDescriptor* const classes[] = {&QKVideoTimecode::descriptor};
  const Ref<Object> read = unarchivedObject(archivedData(*value, ArchiveKind::Keyed), classes);
  formatter.getObjectValueIncrementingSegmentWithTag(&value, 3, 1, read.get());
  std::cout << *formatter.stringForObjectValue(value.get()) << '\n' << QuillFoundationVersionString << '\n';
  try {
    formatter.setMinimum(&formatter);
  } catch (const InternalInconsistencyFailure&) {  // one type on both sides
    return QuillFoundationVersionNumber == 44000.5 ? 0 : 1;
  }
  return 1;
}
