#include "TimecodeModeTable.h"

#include <array>
#include <string>

namespace quill::inline v0 {

namespace {

// Lower-case letters, digits and "." of a name; what people put between them is dropped.
std::string folded(std::string_view name) {
  std::string result;
  for (const char c : name) {
    if (c >= 'A' && c <= 'Z') {
      result += static_cast<char>(c - 'A' + 'a');
    } else if (c != ' ' && c != '-' && c != '_') {
      result += c;
    }
  }
  return result;
}

// Other ways to say the end of a short name.
constexpr std::array<std::string_view, 2> kSuffixes[] = {{"ndf", ""},    {"nondrop", ""},     {"fps", ""},
                                                         {"drop", "df"}, {"dropframe", "df"}, {"dur", "duration"}};

bool replaceSuffix(std::string& text, std::string_view suffix, std::string_view replacement) {
  if (!text.ends_with(suffix)) return false;
  text.replace(text.size() - suffix.size(), suffix.size(), replacement);
  return true;
}

}  // namespace

std::string_view timecodeModeName(QKSMPTETimecodeMode mode) {
  if (const auto* row = timecodeModeRow(mode)) return row->name;
  if (mode == QKSMPTETimecodeModeCustom) return "QKSMPTETimecodeModeCustom";
  return mode == QKSMPTETimecodeModeInvalid ? "QKSMPTETimecodeModeInvalid" : std::string_view();
}

std::string_view timecodeModeShortName(QKSMPTETimecodeMode mode) {
  if (const auto* row = timecodeModeRow(mode)) return row->shortName;
  if (mode == QKSMPTETimecodeModeCustom) return "custom";
  return mode == QKSMPTETimecodeModeInvalid ? "invalid" : std::string_view();
}

std::optional<QKSMPTETimecodeMode> timecodeModeNamed(std::string_view name) {
  std::string wanted = folded(name);
  const auto find = [](const std::string& text) -> std::optional<QKSMPTETimecodeMode> {
    for (std::int64_t i = 0; i <= QKSMPTETimecodeModeInvalid; ++i) {
      const auto mode = static_cast<QKSMPTETimecodeMode>(i);
      if (text == folded(timecodeModeShortName(mode)) || text == folded(timecodeModeName(mode))) {
        return mode;
      }
    }
    return std::nullopt;
  };
  if (const auto mode = find(wanted)) return mode;
  if (wanted.starts_with("23.98")) wanted.replace(0, 5, "23.976");
  for (const auto& [suffix, replacement] : kSuffixes) {
    if (replaceSuffix(wanted, suffix, replacement)) break;
  }
  return find(wanted);
}

bool isDroppedLabel(QKSMPTETimecodeMode mode, std::int64_t minutes, std::int64_t seconds, std::int64_t frames) {
  const auto* row = timecodeModeRow(mode);
  return row && minutes > 0 && minutes % 10 != 0 && seconds == 0 && frames >= 0 && frames < row->droppedLabels();
}

}  // namespace quill::inline v0
