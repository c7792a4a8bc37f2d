// What the programs share: how the parameters of a timecode are written on a command line, and texts for people.
#pragma once

#include "Framework/FilmFootage.h"
#include "Framework/TimecodeModeTable.h"
#include "Platform/TextServices.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace examples {

// ---- Texts ----

// The first line of a text for people, without control characters.
inline std::string firstLine(std::string_view text) {
  std::string line(text.substr(0, text.find('\n')));
  std::erase_if(line, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  return line;
}

inline std::string quoted(std::string_view text) { return '"' + firstLine(text) + '"'; }

// "23.976 duration", ..., in the order of the table.
inline std::string modeList(std::string_view separator) {
  std::string list;
  for (const auto& row : quill::kTimecodeModeTable) list.append(list.empty() ? "" : separator).append(row.shortName);
  return list;
}

// "35mm_4perf"
inline std::string_view shortName(const quill::FilmTypeRow& row) { return row.name.substr(row.name.find('_') + 1); }

// "16mm", ..., in the order of the table.
inline std::string filmTypeList(std::string_view separator) {
  std::string list;
  for (const auto& row : quill::kFilmTypeTable) list.append(list.empty() ? "" : separator).append(shortName(row));
  return list;
}

// ---- Parameters: nothing where a text is none ----

// Digits alone, within the limits.
inline std::optional<std::int64_t> wholeNumber(std::string_view text, std::int64_t lowest, std::int64_t highest) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  const std::int64_t number = quill::saturatingInt64(text);
  return number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

// Of the fixed modes: "29.97df".
inline std::optional<quill::QKSMPTETimecodeMode> modeFrom(std::string_view text) {
  const auto mode = quill::timecodeModeNamed(text);
  return mode && quill::timecodeModeRow(*mode) ? mode : std::nullopt;
}

// "35mm_4perf" or "QKFilmType_35mm_4perf".
inline std::optional<quill::QKFilmType> filmTypeFrom(std::string_view text) {
  for (const auto& row : quill::kFilmTypeTable) {
    if (text == row.name || text == shortName(row)) return row.type;
  }
  return std::nullopt;
}

// Quarter notes a minute, from 1 to 10000: "59.94".
inline std::optional<double> tempoFrom(std::string_view text) {
  if (text.find_first_not_of("0123456789.") != std::string_view::npos) return std::nullopt;
  const double tempo = quill::doubleFromText(text);
  return tempo >= 1 && tempo <= 10000 ? std::optional(tempo) : std::nullopt;
}

struct TimeSignature {
  std::int64_t numerator = 4;
  std::int64_t denominator = 4;
};

// Two numbers from 1 to 1000: "6/8".
inline std::optional<TimeSignature> timeSignatureFrom(std::string_view text) {
  const std::size_t slash = std::min(text.find('/'), text.size());
  const auto numerator = wholeNumber(text.substr(0, slash), 1, 1000);
  const auto denominator = wholeNumber(text.substr(std::min(slash + 1, text.size())), 1, 1000);
  if (!numerator || !denominator) return std::nullopt;
  return TimeSignature{*numerator, *denominator};
}

}  // namespace examples
