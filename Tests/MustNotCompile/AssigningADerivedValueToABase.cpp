// A derived value is never cut down to its base by an assignment.
// error: deleted

#include "Framework/QKVideoTimecode.h"

class Derived : public quill::QKVideoTimecode {};

void assign(quill::QKVideoTimecode& base, const Derived& derived, const quill::QKVideoTimecode& same) {
#ifdef QUILL_MUST_NOT_COMPILE
  base = derived;
#else
  if (!derived.isNegative()) base = same;
#endif
}
