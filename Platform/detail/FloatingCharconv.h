// Whether the standard library's charconv knows floating point and may be used. Not on 32-bit x86, where libstdc++ reads
// doubles through the x87 and may round twice.
#pragma once

#include <version>

#if defined(__cpp_lib_to_chars) && !defined(QUILL_NO_FLOATING_CHARCONV) && !defined(__i386__)
#define QUILL_HAS_FLOATING_CHARCONV 1
#else
#define QUILL_HAS_FLOATING_CHARCONV 0
#endif
