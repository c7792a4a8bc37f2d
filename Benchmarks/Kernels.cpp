#include "Kernels.h"

namespace kernel {

namespace {

constexpr std::uint32_t kFramesPerTenMinutes = 17982;
constexpr std::uint32_t kFramesPerMinute = 1798;
constexpr std::uint32_t kSubframesPerFrame = 80;
constexpr std::uint32_t kFirstSamples[] = {0, 1602, 3203, 4805, 6406, 8008};

__extension__ using UInt128 = unsigned __int128;

// A frame number with the skipped labels counted, and back.
inline std::uint32_t labelOfFrame(std::uint32_t frame) {
  const std::uint32_t tens = frame / kFramesPerTenMinutes, rest = frame % kFramesPerTenMinutes;
  std::uint32_t label = frame + 18 * tens;
  if (rest >= 1800) label += 2 * ((rest - 1800) / kFramesPerMinute + 1);
  return label;
}

inline std::uint32_t frameOfLabel(std::uint32_t minutes, std::uint32_t seconds, std::uint32_t frames) {
  return (minutes * 60 + seconds) * 30 + frames - 2 * (minutes - minutes / 10);
}

inline void putTwoDigits(char* buffer, std::uint32_t value) {
  buffer[0] = static_cast<char>('0' + value / 10);
  buffer[1] = static_cast<char>('0' + value % 10);
}

inline std::uint32_t twoDigits(const char* text) {
  return static_cast<std::uint32_t>((text[0] - '0') * 10 + (text[1] - '0'));
}

template <class Product>
std::int64_t rescale(std::int64_t value, std::int32_t from, std::int32_t to) {
  const auto divisor = static_cast<std::uint64_t>(from);
  const std::uint64_t magnitude = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
  const Product product = static_cast<Product>(magnitude) * static_cast<std::uint64_t>(to);
  auto quotient = static_cast<std::uint64_t>(product / divisor);
  const auto remainder = static_cast<std::uint64_t>(product) - quotient * divisor;  // [0, divisor)
  if (remainder >= divisor - remainder) ++quotient;
  return static_cast<std::int64_t>(value < 0 ? 0 - quotient : quotient);
}

}  // namespace

void renderLabel(std::uint32_t frame, char* buffer) {
  const std::uint32_t label = labelOfFrame(frame);
  putTwoDigits(buffer, label / 108000);
  buffer[2] = ':';
  putTwoDigits(buffer + 3, label / 1800 % 60);
  buffer[5] = ':';
  putTwoDigits(buffer + 6, label / 30 % 60);
  buffer[8] = ';';
  putTwoDigits(buffer + 9, label % 30);
}

std::uint32_t parseLabel(const char* text) {
  return frameOfLabel(twoDigits(text) * 60 + twoDigits(text + 3), twoDigits(text + 6), twoDigits(text + 9));
}

Fields fieldsOf(std::uint32_t subframes) {
  const std::uint32_t label = labelOfFrame(subframes / kSubframesPerFrame);
  return {label / 108000, label / 1800 % 60, label / 30 % 60, label % 30, subframes % kSubframesPerFrame};
}

std::uint32_t subframesOf(const Fields& fields) {
  return frameOfLabel(fields[0] * 60 + fields[1], fields[2], fields[3]) * kSubframesPerFrame + fields[4];
}

std::uint64_t firstSampleOf(std::uint32_t frame) { return std::uint64_t{frame / 5} * 8008 + kFirstSamples[frame % 5]; }

SamplePlace frameOf(std::uint64_t sample) {
  const auto rest = static_cast<std::uint32_t>(sample % 8008);
  std::uint32_t place = rest / 1602;  // [0, 4]; the frame, or the one before it
  if (rest >= kFirstSamples[place + 1]) ++place;
  return {static_cast<std::uint32_t>(sample / 8008 * 5) + place, rest - kFirstSamples[place]};
}

std::array<std::uint32_t, 3> footageOf(std::uint32_t subframes) {
  const std::uint32_t frame = subframes / kSubframesPerFrame;
  return {frame / 16, frame % 16, subframes % kSubframesPerFrame / 20};
}

std::uint32_t frameAt(std::uint32_t feet, std::uint32_t frames) { return feet * 16 + frames; }

Position positionOf(std::uint64_t timeUnits) {
  const auto ticks = static_cast<std::uint32_t>(timeUnits / 1250);
  return {ticks / 3840, ticks / 960 % 4 + 1, ticks / 240 % 4 + 1, ticks % 240};
}

std::uint64_t timeUnitsOf(const Position& position) {
  return std::uint64_t{((position[0] * 4 + position[1] - 1) * 4 + position[2] - 1) * 240 + position[3]} * 1250;
}

std::int64_t rescaleNarrow(std::int64_t value, std::int32_t from, std::int32_t to) {
  return rescale<std::uint64_t>(value, from, to);
}

std::int64_t rescaleWide(std::int64_t value, std::int32_t from, std::int32_t to) {
  return rescale<UInt128>(value, from, to);
}

}  // namespace kernel
