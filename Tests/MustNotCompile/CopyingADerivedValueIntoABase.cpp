// A derived value is never cut down to its base by a copy.
// error: deleted

#include "Framework/QKVideoTimecode.h"

class Derived : public quill::QKVideoTimecode {};

quill::QKVideoTimecode copyOf(const Derived& derived, const quill::QKVideoTimecode& same) {
#ifdef QUILL_MUST_NOT_COMPILE
  return quill::QKVideoTimecode(derived);
#else
  return derived.isNegative() ? quill::QKVideoTimecode(same) : same;
#endif
}
