// The floor to measure against: SMPTE labels of one fixed mode, 29.97 drop-frame, in plain integers. No object, no
// options, no checks; kept out of line, as a library call would be.
#pragma once

#include <cstdint>

namespace kernel {

constexpr std::uint32_t kFramesPerTenMinutes = 17982;
constexpr std::uint32_t kFramesPerMinute = 1798;

inline void putTwoDigits(char* buffer, std::uint32_t value) {
  buffer[0] = static_cast<char>('0' + value / 10);
  buffer[1] = static_cast<char>('0' + value % 10);
}

inline std::uint32_t twoDigits(const char* text) {
  return static_cast<std::uint32_t>((text[0] - '0') * 10 + (text[1] - '0'));
}

// A frame number of less than 100 hours as the eleven characters of "HH:MM:SS;FF".
[[gnu::noinline]] inline void renderLabel(std::uint32_t frame, char* buffer) {
  const std::uint32_t tens = frame / kFramesPerTenMinutes, rest = frame % kFramesPerTenMinutes;
  std::uint32_t label = frame + 18 * tens;  // the frame number with the skipped labels counted
  if (rest >= 1800) label += 2 * ((rest - 1800) / kFramesPerMinute + 1);
  putTwoDigits(buffer, label / 108000);
  buffer[2] = ':';
  putTwoDigits(buffer + 3, label / 1800 % 60);
  buffer[5] = ':';
  putTwoDigits(buffer + 6, label / 30 % 60);
  buffer[8] = ';';
  putTwoDigits(buffer + 9, label % 30);
}

// And back.
[[gnu::noinline]] inline std::uint32_t parseLabel(const char* text) {
  const std::uint32_t minutes = twoDigits(text) * 60 + twoDigits(text + 3);
  const std::uint32_t label = (minutes * 60 + twoDigits(text + 6)) * 30 + twoDigits(text + 9);
  return label - 2 * (minutes - minutes / 10);
}

}  // namespace kernel
