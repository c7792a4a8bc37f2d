// ScriptedForm: entries from a stream, one a line, each applied to a field and answered. A Model is a FieldModel or a
// NumberModel.
#pragma once

#include "FieldModel.h"
#include "NumberModel.h"

#include <iosfwd>

namespace field {

// Reads to the end. An answer is a line, or one for each format, or for each segment of a number. The number of entries
// that failed, or nothing when a stream broke.
template <class Model>
std::optional<std::uint64_t> runScriptedForm(Model& model, bool inAllFormats, std::istream& input,
                                             std::ostream& output);

// A text in which every byte can be printed: those that cannot are "\x00", a backslash "\\".
std::string printable(std::string_view text);

}  // namespace field
