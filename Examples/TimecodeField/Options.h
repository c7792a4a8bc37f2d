// Options: what the command line asks for.
#pragma once

#include "FieldModel.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace field {

struct Options {
  enum class Action : std::uint8_t { Run, Help, Version, ListModes };

  Action action = Action::Run;
  Settings settings;
  std::optional<std::string> value;
  std::optional<std::string> minimum;
  std::optional<std::string> maximum;
  bool strict = false;
};

// Reads the arguments behind the program's name. False with a sentence that says what is wrong. Help, version and the
// list of modes end the reading.
bool parseOptions(std::span<const std::string_view> arguments, Options* options, std::string* error);

// Gives a new field the bounds and the first value asked for. False with a sentence that says what is wrong.
bool prepareField(const Options& options, FieldModel* model, std::string* error);

// "23.976 duration", ..., in the order of the table.
std::string modeList(std::string_view separator);

extern const std::string_view kHelp;

}  // namespace field
