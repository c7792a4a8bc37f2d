// The export macro of the library.
#pragma once

#if defined(QUILL_STATIC)
#define QUILL_EXPORT
#elif defined(_WIN32)
#if defined(QUILL_BUILDING)
#define QUILL_EXPORT __declspec(dllexport)
#else
#define QUILL_EXPORT __declspec(dllimport)
#endif
#else
#define QUILL_EXPORT __attribute__((visibility("default")))
#endif
