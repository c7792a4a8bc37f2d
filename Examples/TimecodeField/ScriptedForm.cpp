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

void addColumns(std::string& lines, const std::string& start, std::string_view name, std::string_view text) {
  const std::size_t end = lines.size() + start.size() + std::max(name.size(), std::string_view("seconds").size());
  lines.append(start).append(name);
  lines.resize(end, ' ');
  lines.append("  ").append(text) += '\n';
}

// The value in one format, or in all of them, a line each.
std::string answer(const FieldModel& model, const std::string& start, bool inAllFormats) {
  if (!inAllFormats) return start + model.text() + "  frame " + model.frames() + "  " + model.seconds() + " s\n";
  std::string lines;
  for (const Row& row : kRows) addColumns(lines, start, row.name, model.text(row.format));
  return lines;
}

std::string answer(const NumberModel& model, const std::string& start, bool inSegments) {
  if (!inSegments) return start + model.text() + '\n';
  std::string lines;
  for (const NumberSegment& segment : model.segments()) addColumns(lines, start, segment.name, segment.text);
  return lines;
}

}  // namespace

template <class Model>
std::optional<std::uint64_t> runScriptedForm(Model& model, bool inAllFormats, std::istream& input,
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

template std::optional<std::uint64_t> runScriptedForm(FieldModel&, bool, std::istream&, std::ostream&);
template std::optional<std::uint64_t> runScriptedForm(NumberModel&, bool, std::istream&, std::ostream&);

}  // namespace field
