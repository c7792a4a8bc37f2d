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

namespace {

// The value in one format, or in all of them, a line each.
std::string answer(const FieldModel& model, const std::string& start, bool inAllFormats) {
  if (!inAllFormats) return start + model.text() + "  frame " + model.frames() + "  " + model.seconds() + " s\n";
  std::string lines;
  for (const Row& row : kRows) {
    std::string name(row.name);
    name.resize(std::string_view("seconds").size(), ' ');
    lines += start + name + "  " + model.text(row.format) + '\n';
  }
  return lines;
}

}  // namespace

std::optional<std::uint64_t> runScriptedForm(FieldModel& model, bool inAllFormats, std::istream& input,
                                             std::ostream& output) {
  std::uint64_t failures = 0;
  std::string entry;
  while (std::getline(input, entry)) {
    if (entry.ends_with('\r')) entry.pop_back();
    if (entry.find_first_not_of(" \t") == std::string::npos) continue;
    const std::string start = printable(entry) + "  ->  ";
    std::string lines;
    if (model.takeEntry(entry)) {
      lines = answer(model, start, inAllFormats);
    } else {
      lines = start + "error: " + model.message().text + '\n';
      ++failures;
    }
    output.write(lines.data(), static_cast<std::streamsize>(lines.size()));
  }
  output.flush();
  if (input.bad() || !output) return std::nullopt;
  return failures;
}

}  // namespace field
