// Options: what the command line asks for.
#pragma once

#include "Converter.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace convert {

struct Options {
  enum class Action : std::uint8_t { Convert, Help, Version, ListModes };

  Action action = Action::Convert;
  Settings settings;
  bool hasTarget = false;
  std::vector<std::string_view> values;  // none: from standard input
};

// Reads the arguments behind the program's name. False with a sentence that says what is wrong. Help, version and the
// list of modes end the reading.
bool parseOptions(std::span<const std::string_view> arguments, Options* options, std::string* error);

extern const std::string_view kHelp;

}  // namespace convert
