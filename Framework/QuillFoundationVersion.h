// The version of the library as a program finds it at run time.
#pragma once

#include "../Platform/Export.h"

namespace quill::inline v0 {

QUILL_EXPORT extern const double QuillFoundationVersionNumber;  // 44000.5
QUILL_EXPORT extern const char QuillFoundationVersionString[];  // as `what` finds it in a binary

}  // namespace quill::inline v0
