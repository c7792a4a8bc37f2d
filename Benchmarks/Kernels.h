// The floor to measure against: what the library does, written by hand for one fixed case in plain integers. SMPTE labels
// are of 29.97 drop-frame below 100 hours, samples of 48000 a second, footage of 35 mm film with 4 perforations a frame,
// bars of 4/4 at 120 beats a minute. No object, no options, no checks; out of line, as a library call is.
#pragma once

#include <array>
#include <cstdint>

namespace kernel {

// SMPTE: hours, minutes, seconds, frames, subframes (80 a frame).
using Fields = std::array<std::uint32_t, 5>;

// A frame number as the eleven characters of "HH:MM:SS;FF", and back.
void renderLabel(std::uint32_t frame, char* buffer);
std::uint32_t parseLabel(const char* text);

// A count of subframes as fields, and back. The label exists.
Fields fieldsOf(std::uint32_t subframes);
std::uint32_t subframesOf(const Fields& fields);

// The first sample of a frame in the sequence 1602, 1601, 1602, 1601, 1602, and the frame that holds a sample, with the
// sample's offset in it.
std::uint64_t firstSampleOf(std::uint32_t frame);
struct SamplePlace {
  std::uint32_t frame, offset;
};
SamplePlace frameOf(std::uint64_t sample);

// Feet, frames, quarter frames of a count of subframes, and the frame at so many feet and frames.
std::array<std::uint32_t, 3> footageOf(std::uint32_t subframes);
std::uint32_t frameAt(std::uint32_t feet, std::uint32_t frames);

// Bars from 0, beats and divisions from 1, ticks from 0; 960 ticks a beat, 1250 time units a tick.
using Position = std::array<std::uint32_t, 4>;
Position positionOf(std::uint64_t timeUnits);
std::uint64_t timeUnitsOf(const Position& position);

// value * to / from, halves away from zero; the narrow one for a product within 64 bits.
std::int64_t rescaleNarrow(std::int64_t value, std::int32_t from, std::int32_t to);
std::int64_t rescaleWide(std::int64_t value, std::int32_t from, std::int32_t to);

}  // namespace kernel
