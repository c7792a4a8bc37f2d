// The floor to measure against: what the library does, written by hand for one fixed case in plain integers. SMPTE labels
// are of 29.97 drop-frame below 100 hours, samples of 48000 a second, footage of 35 mm film with 4 perforations a frame,
// bars of 4/4 at 120 beats a minute. No object, no options, no checks; out of line, as a library call is.
#pragma once

#include <array>
#include <cstdint>

namespace kernel {

// Ticks of 1/2400000 second.
inline constexpr std::uint64_t kTicksPerFrame = 80080, kTicksPerSubframe = 1001;

// A frame number as the eleven characters of "HH:MM:SS;FF", and back.
void renderLabel(std::uint32_t frame, char* buffer);
std::uint32_t parseLabel(const char* text);

// A count of subframes, 80 a frame, as hours, minutes, seconds, frames and subframes; the ticks of fields that exist.
using Fields = std::array<std::uint32_t, 5>;
Fields fieldsOf(std::uint32_t subframes);
std::uint64_t ticksOfFields(const Fields& fields);

// The first sample of a frame in the sequence 1602, 1601, 1602, 1601, 1602; the ticks of a sample in it.
std::uint64_t firstSampleOf(std::uint32_t frame);
std::uint64_t ticksOfSample(std::uint64_t sample);

// Feet, frames, quarter frames of a count of subframes; the ticks of feet and frames.
using Footage = std::array<std::uint32_t, 3>;
Footage footageOf(std::uint32_t subframes);
std::uint64_t ticksOfFootage(const Footage& footage);

// Bars from 0, beats and divisions from 1, 1/960 beats from 0; and the ticks of it.
using Position = std::array<std::uint32_t, 4>;
Position positionOf(std::uint64_t ticks);
std::uint64_t ticksOfPosition(const Position& position);

// value * to / from, halves away from zero; the narrow one for a product within 64 bits.
std::int64_t rescaleNarrow(std::int64_t value, std::int32_t from, std::int32_t to);
std::int64_t rescaleWide(std::int64_t value, std::int32_t from, std::int32_t to);

}  // namespace kernel
