#include "QuillFoundationVersion.h"

namespace quill::inline v0 {

const double QuillFoundationVersionNumber = 44000.5;
const char QuillFoundationVersionString[] = "@(#)PROGRAM:QuillFoundation  PROJECT:QuillKit-44000.5.41";

}  // namespace quill::inline v0
