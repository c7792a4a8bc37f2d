#include "Options.h"

#include <utility>

namespace field {

using namespace quill;

const std::string_view kHelp =
    R"(Usage: TimecodeField [option...]
       TimecodeField [option...] < entries

One SMPTE timecode field. In a terminal it is shown, to be stepped and typed
into; without one, or in one without cursor control (TERM=dumb), it reads
entries from standard input.

Options
  --mode NAME             timecode mode, such as 25 or 29.97df (the default)
  --list-modes            print the names of the modes
  --interpretation RULE   preserving: fields not typed keep their values (the
                          default); discarding: they become 0
  --value ENTRY           first value, typed over zero
  --min ENTRY, --max ENTRY
                          bounds that typing and stepping stop at
  --negatives             allow negative values; otherwise they become zero
  --subframes             show subframes, 80 to a frame
  --quarter-frames        show quarter frames, 4 to a frame
  --rollover on|off       hours start again at 24 (on, the default), or the
                          field ends at 99:59:59 and the last frame
  --strict                exit with 1 when an entry failed
  --help, --version
An option's value may also follow "=": --mode=25, --min=-1:00.

Entries
  1234        digits fill the fields from the right: 12 seconds, 34 frames
  1:0:0       fields are parted by : ; . or ,
  +45  -1:00  a sign makes it an amount to add or to take away

Entries from standard input
  One a line; line ends may be LF or CRLF. Each changes the value that the one
  before left, and prints a line:
    ENTRY  ->  TIMECODE  frame FRAMES  SECONDS s
    ENTRY  ->  error: TEXT
  "  ->  " is an arrow between two spaces on each side, and two spaces part the
  columns. FRAMES are whole frames counted from zero; SECONDS have seven
  places, which tell any two ticks apart. Both are negative for a negative
  value. A failed entry changes nothing. In ENTRY, bytes that cannot be printed
  are written as \x00, a backslash as \\. Lines that are empty or blank are
  passed over. Warnings go to standard error.

Keys in a terminal
  Left Right          select a segment; Tab and Shift-Tab go round
  Home End            select the first, the last
  Up Down             step it; PageUp PageDown and Shift-Up Shift-Down by ten
  0-9 -               type into the segment, which takes it once it is full
  Delete              set the segment to 0
  + - : ; . , and digits beyond the segment
                      start a whole entry, such as 1234 or +1:00
  Enter               take what was typed; with nothing typed, start an entry
  Escape              give up what was typed
  Backspace Ctrl-U    erase in it; Left Right Home End Delete edit an entry
  m M                 next mode, the one before
  s f                 subframes, quarter frames
  n r i               negatives, 24-hour rollover, interpretation
  [ ]                 the value as minimum, as maximum, or none again
  ?                   all keys, in a window that is too small for them
  q Ctrl-C Ctrl-D     quit; Ctrl-Z stops for a while

Exit status: 0; 1 when something failed (reading, writing, an entry with
--strict); 2 for a usage error.
)";

std::string modeList(std::string_view separator) {
  std::string list;
  for (const auto& row : kTimecodeModeTable) {
    if (!list.empty()) list += separator;
    list += row.shortName;
  }
  return list;
}

namespace {

std::string quoted(std::string_view text) { return "\"" + firstLine(text) + "\""; }

// An option with a value: what it sets, or what is wrong with the value.
struct ValueOption {
  std::string_view name;
  bool (*set)(Options* options, std::string_view value, std::string* error);
};

constexpr ValueOption kValueOptions[] = {
    {"--mode",
     [](Options* options, std::string_view value, std::string* error) {
       const auto mode = timecodeModeNamed(value);
       if (!mode || !timecodeModeRow(*mode)) {
         *error = "no mode is called " + quoted(value) + "; the modes are " + modeList(", ");
         return false;
       }
       options->settings.mode = *mode;
       return true;
     }},
    {"--interpretation",
     [](Options* options, std::string_view value, std::string* error) {
       const bool discarding = value == "discarding";
       if (!discarding && value != "preserving") {
         *error = "the interpretation is preserving or discarding, not " + quoted(value);
         return false;
       }
       options->settings.interpretation =
           discarding ? OrbSMPTEStringInterpretationDiscardingUpper : OrbSMPTEStringInterpretationPreservingUpper;
       return true;
     }},
    {"--rollover",
     [](Options* options, std::string_view value, std::string* error) {
       options->settings.rollover = value == "on";
       if (value == "on" || value == "off") return true;
       *error = "the rollover is on or off, not " + quoted(value);
       return false;
     }},
    {"--value",
     [](Options* options, std::string_view value, std::string*) {
       options->value = value;
       return true;
     }},
    {"--min",
     [](Options* options, std::string_view value, std::string*) {
       options->minimum = value;
       return true;
     }},
    {"--max",
     [](Options* options, std::string_view value, std::string*) {
       options->maximum = value;
       return true;
     }},
};

struct PlainOption {
  std::string_view name;
  void (*set)(Options* options);
};

constexpr PlainOption kPlainOptions[] = {
    {"--negatives", [](Options* options) { options->settings.negatives = true; }},
    {"--subframes", [](Options* options) { options->settings.subframes = true; }},
    {"--quarter-frames", [](Options* options) { options->settings.quarterFrames = true; }},
    {"--strict", [](Options* options) { options->strict = true; }},
    {"--list-modes", [](Options* options) { options->action = Options::Action::ListModes; }},
    {"--version", [](Options* options) { options->action = Options::Action::Version; }},
    {"--help", [](Options* options) { options->action = Options::Action::Help; }},
    {"-h", [](Options* options) { options->action = Options::Action::Help; }},
};

template <class Option, std::size_t count>
const Option* find(const Option (&options)[count], std::string_view name) {
  for (const auto& option : options) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

}  // namespace

bool parseOptions(std::span<const std::string_view> arguments, Options* options, std::string* error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const bool hasValue = equals != std::string_view::npos;
    if (const auto* option = find(kPlainOptions, name)) {
      if (hasValue) {
        *error = std::string(name) + " takes no value";
        return false;
      }
      option->set(options);
      if (options->action != Options::Action::Run) return true;
    } else if (const auto* valueOption = find(kValueOptions, name)) {
      if (!hasValue && i + 1 == arguments.size()) {
        *error = std::string(name) + " needs a value";
        return false;
      }
      const auto value = hasValue ? argument.substr(equals + 1) : arguments[++i];
      if (!valueOption->set(options, value, error)) return false;
    } else {
      *error = argument.starts_with("--") || argument == "-h"
                   ? "there is no option " + quoted(name)
                   : quoted(argument) + " is no option; entries are read from standard input";
      return false;
    }
  }
  if (options->settings.subframes && options->settings.quarterFrames) {
    *error = "--subframes and --quarter-frames exclude each other";
    return false;
  }
  return true;
}

bool prepareField(const Options& options, FieldModel* model, std::string* error) {
  const auto works = [&](std::string_view option, bool (FieldModel::*take)(std::string_view),
                         const std::optional<std::string>& entry) {
    if (!entry || (model->*take)(*entry)) return true;
    *error = std::string(option) + " " + quoted(*entry) + ": " + model->message().text;
    return false;
  };
  return works("--min", &FieldModel::setMinimum, options.minimum) &&
         works("--max", &FieldModel::setMaximum, options.maximum) &&
         // An empty entry brings zero within the bounds.
         works("--value", &FieldModel::takeFirstEntry, options.value.value_or(""));
}

}  // namespace field
