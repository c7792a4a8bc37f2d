#include "Options.h"

namespace field {

const std::string_view kHelp =
    R"(Usage: TimecodeField [option...]
       TimecodeField [option...] < entries

One timecode, shown in seven formats and edited in any of them, or one number.
In a terminal it is stepped and typed into; without one, or in one without
cursor control (TERM=dumb), it reads entries from standard input.

Options
  --format NAME           the format that entries have, and the row that is
                          edited at first: smpte (the default), hms, frames,
                          samples, seconds, bars or feet
  --mode NAME             timecode mode, such as 25 or 29.97df (the default)
  --list-modes            print the names of the modes
  --audio-rate N          samples a second, 48000 by default
  --film NAME             35mm_4perf (the default), 35mm_3perf, 16mm, ...
  --tempo N               beats a minute, 120 by default
  --signature N/N         time signature, 4/4 by default
  --decimals N            decimal places of hms and seconds, 0 to 9
  --interpretation RULE   preserving: fields not typed keep their values (the
                          default); discarding: they become 0
  --value ENTRY           first value, typed over zero or what was loaded
  --min ENTRY, --max ENTRY
                          bounds that typing and stepping stop at
  --negatives             allow negative values; otherwise they become zero
  --subframes             show subframes, 80 to a frame
  --quarter-frames        show quarter frames, 4 to a frame
  --rollover on|off       hours start again at 24 (on, the default), or an
                          smpte field ends at 99:59:59 and the last frame
  --number digits|whole   a number instead, scrubbed digit by digit or as a
                          whole; it has --value, --min, --max, --decimals (6
                          or none by default), --all and --strict
  --load FILE             start with what was saved
  --save FILE             save at the end
  --all                   answer an entry in all formats, a line each
  --strict                exit with 1 when an entry failed
  --help, --version
An option's value may also follow "=": --mode=25, --min=-1:00.

Files
  A file holds the value and all settings. Options given beside --load override
  what was loaded; --mode then keeps the label, --tempo the bars and beats, and
  others the time. A file that cannot be read or used ends the program before
  anything is read or written. Saving first writes a file of its own beside FILE
  and then gives it that name, so FILE is always a whole one, the old or the
  new. Both options may name the same file. A program ended by a signal saves
  nothing.

Entries
  smpte       1234 or 12:34 is 12 seconds 34 frames: digits fill the fields from
              the right, and fields are parted by : ; . or ,
  hms         1:02:03.5 or 1:02:03:5; 12 is 12 seconds, 1234 is 12.34 seconds;
              behind a separator the last field is the fraction
  frames, samples, seconds
              a number; seconds may have a fraction
  bars        3 or 3.2 or 3.2.1.120: bars from 0, beats and divisions from 1,
              ticks from 0, 240 to a division; a beat is a quarter note
  feet        1205 or 12+05: feet and frames; 5 is frame 5 of the same foot
  +45  -1:00  a sign makes an entry an amount to add or to take away

Entries from standard input
  One a line; line ends may be LF or CRLF. Each changes the value that the one
  before left, and prints a line:
    ENTRY  ->  TEXT  frame FRAMES  SECONDS s
    ENTRY  ->  error: TEXT
  or, with --all, instead of the first of these a line for each format:
    ENTRY  ->  FORMAT  TEXT
    ENTRY  ->  FORMAT  error: TEXT
  "  ->  " is an arrow between two spaces on each side, and two spaces part the
  columns; bars have spaces of their own. The first TEXT is the value in the
  format chosen; FRAMES are whole frames counted from zero; SECONDS have seven
  places. All are negative for a negative value. FORMAT is the name of one,
  filled up with spaces; a format that cannot show the value says why. A failed
  entry changes nothing. In ENTRY, bytes that cannot be printed are written as
  \x00, a backslash as \\. Lines that are empty or blank are passed over.
  Warnings go to standard error.

  A number is answered with
    ENTRY  ->  TEXT
  or, with --all, a line for each segment:
    ENTRY  ->  SEGMENT  TEXT

Keys in a terminal
  Left Right          select a segment
  Home End            select the first, the last
  Up Down             step it; PageUp PageDown and Shift-Up Shift-Down by ten
  Tab Shift-Tab       edit the next format, the one before
  0-9 -               type into the segment, which takes it once it is full
  Delete              set the segment to 0
  + - : ; . , and digits beyond the segment
                      start a whole entry, such as 1234 or +1:00
  Enter               take what was typed; with nothing typed, start an entry
  Escape              give up what was typed
  Backspace Ctrl-U    erase in it; Left Right Home End Delete edit an entry
  m M                 next mode, the one before
  a t T               type the audio rate, the tempo, the time signature
  g G                 next film gauge, the one before
  d D                 one decimal place more, one less
  s f                 subframes, quarter frames
  n r i               negatives, 24-hour rollover, interpretation
  [ ]                 the value as minimum, as maximum, or none again
  w                   save now
  ?                   all keys, in a window that is too small for them
  q Ctrl-C Ctrl-D     quit; Ctrl-Z stops for a while

Keys of a number
  As above, but for these:
  Left Right          with digits, select one; to a whole number with decimals,
                      add a tenth
  Up Down             step the digit, or the whole number by one. A digit steps
                      also in front of the number, where "_" stands for it. A
                      step through zero keeps the digits below: ten less than
                      3.25 is -3.25
  Tab Shift-Tab       change between digits and whole
  0-9                 type into the digit, where it counts as units: 5 typed
                      into the tens of 123 gives 108. Of a whole number it
                      starts an entry, as - and the decimal point do of either
  Delete              make the number 0
  Of the letters only d, D and q have a meaning.

Exit status: 0; 1 when something failed (reading, writing, loading, saving, an
entry with --strict); 2 for a usage error.
)";

namespace {

using examples::quoted;

template <class Model>
using Setter = bool (Model::*)(std::string_view text);

// What the field is asked for, in the order in which it is done. None for a model that does not have it.
constexpr struct FieldOption {
  std::string_view name;
  Setter<FieldModel> set;
  Setter<NumberModel> setNumber = nullptr;
  std::string_view text = {};  // of an option that takes no value
} kFieldOptions[] = {
    {"--number", nullptr, &NumberModel::setScrubbing},
    {"--mode", &FieldModel::setMode},
    {"--audio-rate", &FieldModel::setAudioRate},
    {"--film", &FieldModel::setFilm},
    {"--tempo", &FieldModel::setTempo},
    {"--signature", &FieldModel::setSignature},
    {"--format", &FieldModel::setFormat},
    {"--decimals", &FieldModel::setDecimals, &NumberModel::setDecimals},
    {"--interpretation", &FieldModel::setInterpretation},
    {"--negatives", &FieldModel::setNegatives, nullptr, "on"},
    {"--subframes", &FieldModel::setSubframes, nullptr, "on"},
    {"--quarter-frames", &FieldModel::setQuarterFrames, nullptr, "on"},
    {"--rollover", &FieldModel::setRollover},
    {"--min", &FieldModel::setMinimum, &NumberModel::setMinimum},
    {"--max", &FieldModel::setMaximum, &NumberModel::setMaximum},
    {"--value", &FieldModel::setValue, &NumberModel::takeEntry},
};

constexpr struct {
  std::string_view name;
  std::optional<std::string> Options::*file;
} kFileOptions[] = {{"--load", &Options::load}, {"--save", &Options::save}};

constexpr struct {
  std::string_view name;
  void (*set)(Options* options);
} kPlainOptions[] = {
    {"--all", [](Options* options) { options->inAllFormats = true; }},
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

template <class Model>
bool prepare(const Options& options, Setter<Model> FieldOption::*setter, Model* model, std::string* error) {
  for (const FieldOption& option : kFieldOptions) {
    const auto given = options.field.find(option.name);
    if (given == options.field.end()) continue;
    const Setter<Model> set = option.*setter;
    if (set && (model->*set)(given->second)) continue;
    *error = std::string(option.name);
    *error += set ? " " + quoted(given->second) + ": " + model->message().text : " is not for numbers";
    return false;
  }
  return true;
}

}  // namespace

bool parseOptions(std::span<const std::string_view> arguments, Options* options, std::string* error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const bool hasValue = equals != std::string_view::npos;
    const auto* const fieldOption = find(kFieldOptions, name);
    const auto* const fileOption = find(kFileOptions, name);
    const auto* const plainOption = find(kPlainOptions, name);
    if (!fieldOption && !fileOption && !plainOption) {
      *error = argument.starts_with("--") || argument == "-h"
                   ? "there is no option " + quoted(name)
                   : quoted(argument) + " is no option; entries are read from standard input";
      return false;
    }
    const bool takesValue = fileOption || (fieldOption && fieldOption->text.empty());
    if (hasValue && !takesValue) {
      *error = std::string(name) + " takes no value";
      return false;
    }
    if (takesValue && !hasValue && i + 1 == arguments.size()) {
      *error = std::string(name) + " needs a value";
      return false;
    }
    const std::string_view value = hasValue     ? argument.substr(equals + 1)
                                   : takesValue ? arguments[++i]
                                                : std::string_view();
    if (plainOption) {
      plainOption->set(options);
      if (options->action != Options::Action::Run) return true;
    } else if (fileOption) {
      options->*fileOption->file = value;
    } else {
      options->field[fieldOption->name] = takesValue ? value : fieldOption->text;
    }
  }
  if (options->field.contains("--subframes") && options->field.contains("--quarter-frames")) {
    *error = "--subframes and --quarter-frames exclude each other";
    return false;
  }
  if (options->isNumber() && (options->load || options->save)) {
    *error = "--load and --save are not for numbers";
    return false;
  }
  return true;
}

bool prepareField(const Options& options, FieldModel* model, std::string* error) {
  return prepare(options, &FieldOption::set, model, error);
}

bool prepareField(const Options& options, NumberModel* model, std::string* error) {
  return prepare(options, &FieldOption::setNumber, model, error);
}

}  // namespace field
