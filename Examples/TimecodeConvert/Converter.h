// Converter: a position or duration, written in one notation, in another.
#pragma once

#include "../Shared/Parameters.h"
#include "Framework/QKExtendedTimecode.h"
#include "Framework/QKTimecodeFormatter.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace convert {

// In the order of the formats.
inline constexpr std::string_view kFormatNames[] = {"smpte", "hms", "frames", "samples", "seconds", "bars", "feet"};

struct Settings {
  quill::QKTimecodeFormat from = quill::QKTimecodeFormatSMPTE;
  quill::QKTimecodeFormat to = quill::QKTimecodeFormatSMPTE;
  quill::QKSMPTETimecodeMode mode = quill::QKSMPTETimecodeMode_2997Drop;
  std::uint64_t audioRate = 48000;
  double tempo = 120;
  examples::TimeSignature signature;
  quill::QKFilmType film = quill::QKFilmType_35mm_4perf;
  bool quarterFrames = false;
  std::int64_t places = 3;
};

class Converter {
 public:
  explicit Converter(const Settings& settings);

  // Reads a text, alone and not over a value before it, and writes it in the other notation. False with a sentence that
  // says what is wrong.
  bool convert(std::string_view text, std::string* result, std::string* error);

 private:
  bool convertUnguarded(std::string_view text, std::string* result, std::string* error);

  std::int64_t musicalRate_;  // what bars are read and written at; 0: as the value is
  quill::Ref<quill::QKExtendedTimecode> zero_;
  quill::QKTimecodeFormatter reader_;
  quill::QKTimecodeFormatter writer_;
};

}  // namespace convert
