#include "Options.h"

#include "../Shared/Parameters.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace convert {

using namespace quill;

const std::string_view kHelp =
    R"(Usage: timecode-convert [option...] --to FORMAT VALUE...
       timecode-convert [option...] --to FORMAT < values

Writes positions or durations that stand in one notation in another, each in a
line of its own.

Formats
  smpte      01:02:03;04        seconds    3723.500
  hms        01:02:03.500       bars       12 1 1 000
  frames     107892             feet       6743+04
  samples    172972800

Options
  --from FORMAT       notation of the values, smpte unless given
  --to FORMAT         notation to write
  --mode NAME         timecode mode, such as 25 or 29.97df (the default); it
                      says how long a frame is in smpte, frames and feet
  --list-modes        print the names of the modes
  --film GAUGE        16mm, 35mm_4perf (the default), 35mm_3perf, 35mm_2perf,
                      70mm_5perf, 35mm_8perf, 65mm_5perf, 65mm_8perf,
                      65mm_12perf or 65mm_15perf
  --audio-rate HZ     samples a second, 48000 unless given
  --tempo BPM         quarter notes a minute, 120 unless given
  --signature N/D     time signature, 4/4 unless given
  --quarter-frames    quarter frames in smpte and feet: 6743+04/2
  --places COUNT      decimal places in hms and seconds, 0 to 9, 3 unless given
  --help, --version
An option's value may also follow "=": --mode=25. What follows "--" is a value.

Values
  Digits alone fill the fields from the right: 1234 in smpte is 12 seconds and
  34 frames. A field beyond its range runs into the next, and a label that
  drop-frame counting leaves out counts as the first one behind it. "-" in front
  makes a value negative; bars are written from zero up. What a notation cannot
  express is cut off, such as part of a frame.

Values from standard input
  One a line; line ends may be LF or CRLF. Each line gives one line, an empty one
  where it is blank or fails, so that columns stay side by side. Errors go to
  standard error with the number of the line.

Exit status: 0; 1 when a value failed, or reading or writing; 2 for a usage
error.
)";

namespace {

using examples::quoted;

// Where a text could be read, its value goes to the place; else a sentence says what it ought to be.
template <class Target, class Read>
bool store(Target* target, const std::optional<Read>& read, std::string* error, std::string_view sentence,
           std::string_view value) {
  if (!read) {
    *error = std::string(sentence) + ", not " + quoted(value);
    return false;
  }
  *target = static_cast<Target>(*read);
  return true;
}

bool setFormat(QKTimecodeFormat* format, std::string_view value, std::string* error) {
  const auto place = std::ranges::find(kFormatNames, value) - kFormatNames;
  const bool isKnown = place < std::ssize(kFormatNames);
  return store(format, isKnown ? std::optional(place) : std::nullopt, error,
               "a format is smpte, hms, frames, samples, seconds, bars or feet", value);
}

// An option with a value.
constexpr struct ValueOption {
  std::string_view name;
  bool (*set)(Options* options, std::string_view value, std::string* error);
} kValueOptions[] = {
    {"--from",
     [](Options* o, std::string_view value, std::string* error) { return setFormat(&o->settings.from, value, error); }},
    {"--to",
     [](Options* o, std::string_view value, std::string* error) {
       o->hasTarget = true;
       return setFormat(&o->settings.to, value, error);
     }},
    {"--mode",
     [](Options* o, std::string_view value, std::string* error) {
       return store(&o->settings.mode, examples::modeFrom(value), error, "a mode is one of " + examples::modeList(", "),
                    value);
     }},
    {"--film",
     [](Options* o, std::string_view value, std::string* error) {
       return store(&o->settings.film, examples::filmTypeFrom(value), error,
                    "a film gauge is one of " + examples::filmTypeList(", "), value);
     }},
    {"--tempo",
     [](Options* o, std::string_view value, std::string* error) {
       return store(&o->settings.tempo, examples::tempoFrom(value), error, "a tempo is a number from 1 to 10000",
                    value);
     }},
    {"--signature",
     [](Options* o, std::string_view value, std::string* error) {
       return store(&o->settings.signature, examples::timeSignatureFrom(value), error,
                    "a time signature is two numbers from 1 to 1000, such as 6/8", value);
     }},
    {"--audio-rate",
     [](Options* o, std::string_view value, std::string* error) {
       return store(&o->settings.audioRate, examples::wholeNumber(value, 1, 10'000'000), error,
                    "an audio rate is a whole number from 1 to 10000000", value);
     }},
    {"--places",
     [](Options* o, std::string_view value, std::string* error) {
       return store(&o->settings.places, examples::wholeNumber(value, 0, 9), error,
                    "decimal places are a number from 0 to 9", value);
     }},
};

constexpr struct PlainOption {
  std::string_view name;
  void (*set)(Options* options);
} kPlainOptions[] = {
    {"--quarter-frames", [](Options* o) { o->settings.quarterFrames = true; }},
    {"--list-modes", [](Options* o) { o->action = Options::Action::ListModes; }},
    {"--version", [](Options* o) { o->action = Options::Action::Version; }},
    {"--help", [](Options* o) { o->action = Options::Action::Help; }},
    {"-h", [](Options* o) { o->action = Options::Action::Help; }},
};

// "-01:00" is a value; "-x" and "--x" are meant as options.
bool isValue(std::string_view argument) {
  const std::string_view rest = argument.substr(std::min<std::size_t>(argument.size(), 1));
  const char first = rest.empty() ? '0' : rest.front();
  return !argument.starts_with('-') || first == '.' || (first >= '0' && first <= ':');
}

}  // namespace

bool parseOptions(std::span<const std::string_view> arguments, Options* options, std::string* error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const auto* plain = std::ranges::find(kPlainOptions, name, &PlainOption::name);
    const auto* option = std::ranges::find(kValueOptions, name, &ValueOption::name);
    if (argument == "--") {
      options->values.insert(options->values.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                             arguments.end());
      break;
    }
    if (plain != std::end(kPlainOptions) && equals == std::string_view::npos) {
      plain->set(options);
      if (options->action != Options::Action::Convert) return true;
    } else if (option != std::end(kValueOptions)) {
      const bool isBehind = equals == std::string_view::npos;
      if (isBehind && ++i == arguments.size()) {
        *error = std::string(name) + " needs a value";
        return false;
      }
      if (!option->set(options, isBehind ? arguments[i] : argument.substr(equals + 1), error)) return false;
    } else if (isValue(argument)) {
      options->values.push_back(argument);
    } else {
      *error = "there is no option " + quoted(argument);
      return false;
    }
  }
  if (options->hasTarget) return true;
  *error = "--to is missing";
  return false;
}

}  // namespace convert
