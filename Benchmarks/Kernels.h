// The floor to measure against: what the library does, written by hand for one fixed case in plain integers. SMPTE labels
// are of 29.97 drop-frame below 100 hours, samples of 48000 a second, footage of 35 mm film with 4 perforations a frame,
// bars of 4/4 at 120 beats a minute. No object, no options, no checks; out of line, as a library call is.
#pragma once

#include <array>
#include <cstdint>

namespace kernel {

// Ticks of 1/2400000 second.
inline constexpr std::uint64_t kTicksPerFrame = 80080, kTicksPerSubframe = 1001;

inline constexpr std::uint32_t kFirstSamples[] = {0, 1602, 3203, 4805, 6406, 8008};

__extension__ using UInt128 = unsigned __int128;

// A frame number with the skipped labels counted, and back.
inline std::uint32_t labelOf(std::uint32_t frame) {
  const std::uint32_t tens = frame / 17982, rest = frame % 17982;
  return frame + 18 * tens + (rest >= 1800 ? 2 * ((rest - 1800) / 1798 + 1) : 0);
}
inline std::uint32_t frameOf(std::uint32_t minutes, std::uint32_t seconds, std::uint32_t frames) {
  return (minutes * 60 + seconds) * 30 + frames - 2 * (minutes - minutes / 10);
}

inline void putTwoDigits(char* buffer, std::uint32_t value) {
  buffer[0] = static_cast<char>('0' + value / 10);
  buffer[1] = static_cast<char>('0' + value % 10);
}
inline std::uint32_t twoDigits(const char* text) {
  return static_cast<std::uint32_t>((text[0] - '0') * 10 + (text[1] - '0'));
}

// A frame number as the eleven characters of "HH:MM:SS;FF", and back.
[[gnu::noinline]] inline void renderLabel(std::uint32_t frame, char* buffer) {
  const std::uint32_t label = labelOf(frame);
  putTwoDigits(buffer, label / 108000);
  buffer[2] = ':';
  putTwoDigits(buffer + 3, label / 1800 % 60);
  buffer[5] = ':';
  putTwoDigits(buffer + 6, label / 30 % 60);
  buffer[8] = ';';
  putTwoDigits(buffer + 9, label % 30);
}
[[gnu::noinline]] inline std::uint32_t parseLabel(const char* text) {
  return frameOf(twoDigits(text) * 60 + twoDigits(text + 3), twoDigits(text + 6), twoDigits(text + 9));
}

// A count of subframes, 80 a frame, as hours, minutes, seconds, frames and subframes; the ticks of fields that exist.
using Fields = std::array<std::uint32_t, 5>;
[[gnu::noinline]] inline Fields fieldsOf(std::uint32_t subframes) {
  const std::uint32_t label = labelOf(subframes / 80);
  return {label / 108000, label / 1800 % 60, label / 30 % 60, label % 30, subframes % 80};
}
[[gnu::noinline]] inline std::uint64_t ticksOfFields(const Fields& fields) {
  return frameOf(fields[0] * 60 + fields[1], fields[2], fields[3]) * kTicksPerFrame + fields[4] * kTicksPerSubframe;
}

// The first sample of a frame in the sequence 1602, 1601, 1602, 1601, 1602; the ticks of a sample in it.
[[gnu::noinline]] inline std::uint64_t firstSampleOf(std::uint32_t frame) {
  return std::uint64_t{frame / 5} * 8008 + kFirstSamples[frame % 5];
}
[[gnu::noinline]] inline std::uint64_t ticksOfSample(std::uint64_t sample) {
  const auto rest = static_cast<std::uint32_t>(sample % 8008);
  std::uint32_t place = rest / 1602;  // [0, 4]: its frame, or the one before
  if (rest >= kFirstSamples[place + 1]) ++place;
  return (sample / 8008 * 5 + place) * kTicksPerFrame + std::uint64_t{rest - kFirstSamples[place]} * 50;
}

// Feet, frames, quarter frames of a count of subframes; the ticks of feet and frames.
using Footage = std::array<std::int64_t, 3>;
[[gnu::noinline]] inline Footage footageOf(std::uint32_t subframes) {
  return {subframes / 80 / 16, subframes / 80 % 16, subframes % 80 / 20};
}
[[gnu::noinline]] inline std::uint64_t ticksOfFootage(const Footage& footage) {
  return static_cast<std::uint64_t>(footage[0] * 16 + footage[1]) * kTicksPerFrame;
}

// Bars from 0, beats and divisions from 1, 1/960 beats from 0; and the ticks of it.
using Position = std::array<std::uint32_t, 4>;
[[gnu::noinline]] inline Position positionOf(std::uint64_t ticks) {
  const auto count = static_cast<std::uint32_t>(ticks / 1250);
  return {count / 3840, count / 960 % 4 + 1, count / 240 % 4 + 1, count % 240};
}
[[gnu::noinline]] inline std::uint64_t ticksOfPosition(const Position& position) {
  return std::uint64_t{((position[0] * 4 + position[1] - 1) * 4 + position[2] - 1) * 240 + position[3]} * 1250;
}

// value * to / from, halves away from zero, for a product that the type holds.
template <class Product>
[[gnu::noinline]] std::int64_t rescale(std::int64_t value, std::int32_t from, std::int32_t to) {
  const auto divisor = static_cast<std::uint64_t>(from), bits = static_cast<std::uint64_t>(value);
  const Product product = static_cast<Product>(value < 0 ? 0 - bits : bits) * static_cast<std::uint64_t>(to);
  auto quotient = static_cast<std::uint64_t>(product / divisor);
  const auto remainder = static_cast<std::uint64_t>(product) - quotient * divisor;  // [0, divisor)
  if (remainder >= divisor - remainder) ++quotient;
  return static_cast<std::int64_t>(value < 0 ? 0 - quotient : quotient);
}

}  // namespace kernel
