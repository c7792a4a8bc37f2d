// TerminalForm: the field in a terminal: what each key does and what the screen shows. A Model is a FieldModel or a
// NumberModel.
#pragma once

#include "FieldModel.h"
#include "Keys.h"
#include "NumberModel.h"
#include "Terminal.h"

#include <string>
#include <string_view>
#include <vector>

namespace field {

// Shows the field until a key quits or the terminal goes away. The library's log lines go to the status line. The file
// is the one that a key saves a timecode in; empty for none.
template <class Model>
void runTerminalForm(Model& model, const std::string& file);

// What a form keeps besides the field.
struct FormState {
  std::string file;            // to save in; empty for none
  std::string status;          // what is to be said besides the field's message, since the last key
  bool keysComeFirst = false;  // until the next key, in a window too small for everything
};

// False when the key quits.
template <class Model>
bool handleKey(Model& model, FormState& state, const Key& key);

struct ScreenLine {
  std::string text;
  quill::Range marked = {};  // characters drawn in reverse
  bool isBold = false;
};

// As many lines as the window has rows, of at most size.columns characters. What matters least goes first when the window
// is small.
template <class Model>
std::vector<ScreenLine> screenLines(const Model& model, const FormState& state, TerminalSize size);

// The bytes that draw them over whatever the screen shows.
std::string drawing(const std::vector<ScreenLine>& lines);

}  // namespace field
