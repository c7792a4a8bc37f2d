// Options: what the command line asks for.
#pragma once

#include "FieldModel.h"
#include "NumberModel.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace field {

struct Options {
  enum class Action : std::uint8_t { Run, Help, Version, ListModes };

  Action action = Action::Run;
  std::map<std::string_view, std::string> field;  // what is asked of the field: texts by option, "--mode"
  std::optional<std::string> load;                // a file's name
  std::optional<std::string> save;
  bool strict = false;
  bool inAllFormats = false;

  bool isNumber() const { return field.contains("--number"); }  // instead of a timecode
};

// Reads the arguments behind the program's name. False with a sentence that says what is wrong. Help, version and the
// list of modes end the reading.
bool parseOptions(std::span<const std::string_view> arguments, Options* options, std::string* error);

// Gives a field the settings, the bounds and the value asked for; the others it keeps. False with a sentence that says
// what is wrong.
bool prepareField(const Options& options, FieldModel* model, std::string* error);
bool prepareField(const Options& options, NumberModel* model, std::string* error);

extern const std::string_view kHelp;

}  // namespace field
