// What the fuzz targets share.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// Ends the program and says why: the fuzzer keeps the bytes.
#define QUILL_REQUIRE(condition) \
  ((condition) ? void() : (std::fprintf(stderr, "line %d: %s\n", __LINE__, #condition), std::abort()))

// Takes numbers off the front of the bytes, 0 behind their end; always as many, so that the fuzzer changes one at a time.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : text(reinterpret_cast<const char*>(data), size) {}

  template <class T>
  T take() {
    T value{};
    text.remove_prefix(text.copy(reinterpret_cast<char*>(&value), sizeof value));
    return value;
  }
  unsigned below(unsigned n) { return take<std::uint8_t>() % n; }
  template <class T, std::size_t n>
  T of(const T (&choices)[n]) {
    return choices[below(n)];
  }

  std::string_view text;  // the rest
};
