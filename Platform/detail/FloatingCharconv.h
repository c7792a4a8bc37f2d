// Whether the standard library's charconv knows floating point and may be used.
#pragma once

#include <version>

#if defined(__cpp_lib_to_chars) && !defined(QUILL_NO_FLOATING_CHARCONV)
#define QUILL_HAS_FLOATING_CHARCONV 1
#else
#define QUILL_HAS_FLOATING_CHARCONV 0
#endif
