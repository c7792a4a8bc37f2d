#include "ScriptedForm.h"

#include <istream>
#include <ostream>

namespace field {

std::string printable(std::string_view text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto [character, byteCount] = quill::decodeCharacter(text);
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    if (character == '\\') {
      result += "\\\\";
    } else if (isControl || character == quill::kInvalidCharacter) {
      for (const char c : text.substr(0, byteCount)) {
        const auto byte = static_cast<unsigned char>(c);
        result += "\\x";
        result += kHex[byte >> 4];
        result += kHex[byte & 15];
      }
    } else {
      result += text.substr(0, byteCount);
    }
    text.remove_prefix(byteCount);
  }
  return result;
}

std::optional<std::uint64_t> runScriptedForm(FieldModel& model, std::istream& input, std::ostream& output) {
  std::uint64_t failures = 0;
  std::string entry;
  while (std::getline(input, entry)) {
    if (entry.ends_with('\r')) entry.pop_back();
    if (entry.find_first_not_of(" \t") == std::string::npos) continue;
    std::string line = printable(entry) + "  ->  ";
    if (model.takeEntry(entry)) {
      line += model.text() + "  frame " + model.frames() + "  " + model.seconds() + " s\n";
    } else {
      line += "error: " + model.message().text + '\n';
      ++failures;
    }
    output.write(line.data(), static_cast<std::streamsize>(line.size()));
  }
  output.flush();
  if (input.bad() || !output) return std::nullopt;
  return failures;
}

}  // namespace field
