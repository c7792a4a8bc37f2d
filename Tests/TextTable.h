// Tables of tests that are written as text, and the values in them.
#pragma once

#include "../Platform/MediaTime.h"
#include "../Platform/Number.h"
#include "../Platform/TextServices.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quill {

using Cells = std::vector<std::string>;

inline Cells partsOf(std::string_view text, std::string_view separator) {
  Cells parts;
  for (std::size_t end = 0; (end = text.find(separator)) != text.npos; text.remove_prefix(end + separator.size()))
    parts.emplace_back(text.substr(0, end));
  parts.emplace_back(text);
  return parts;
}

// Runs each row, which a failure shows: "a | b; c | d" has two rows of two cells. Behind "#" stand comments.
template <class Run>
void eachRowOf(std::string_view table, Run run, std::string_view end = "; ") {
  for (const std::string& row : partsOf(table, end)) {
    if (row.empty() || row[0] == '#') continue;
    SCOPED_TRACE(row);
    run(partsOf(row, " | "));
  }
}

// The same for the lines of a section, "[title]", of a file in Data.
template <class Run>
void eachRowIn(const std::string& file, const std::string& section, Run run) {
  std::ifstream stream(QUILL_TEST_DATA "/" + file);
  const std::string text(std::istreambuf_iterator<char>(stream), {}), title = "\n[" + section + "]\n";
  const std::size_t begin = text.find(title);
  ASSERT_NE(begin, text.npos) << file << title;
  const std::string_view rows = std::string_view(text).substr(begin + title.size());
  eachRowOf(rows.substr(0, rows.find("\n[")), run, "\n");
}

// Text where "<ff>" stands for a byte, and "<name>" for what the names say.
inline std::string bytesIn(std::string_view text, const std::map<std::string, std::string_view>& names = {}) {
  std::string bytes;
  for (std::size_t end; (end = text.find('<')) != text.npos; text.remove_prefix(text.find('>') + 1)) {
    bytes += text.substr(0, end);
    const std::string name(text.substr(end + 1, text.find('>') - end - 1));
    const auto named = names.find(name);
    named != names.end() ? bytes += named->second : bytes += static_cast<char>(std::stoi(name, nullptr, 16));
  }
  return bytes += text;
}

// The same for rows of two cells, which may have bytes in hex.
template <class Run>
void eachPairIn(const std::string& file, const std::string& section, Run run) {
  eachRowIn(file, section, [&](const Cells& row) { run(bytesIn(row.at(0)), bytesIn(row.at(1))); });
}

// "-1.5", "inf", "nan".
inline double doubleOf(const std::string& text) {
  if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
  const bool isNegative = text[0] == '-';
  const std::string magnitude = text.substr(isNegative);
  const double value = doubleFromText(magnitude == "inf" ? "1e999" : magnitude);
  return isNegative ? -value : value;
}

// A number: "-1" is signed, "1u" unsigned, "-1.5d" a double and "1b" a boolean.
inline Number numberOf(const std::string& text) {
  switch (text.back()) {
    case 'u': return saturatingUInt64(text);
    case 'd': return doubleOf(text.substr(0, text.size() - 1));
    case 'b': return Number::boolean(text == "1b");
    default: return std::int64_t{std::stoll(text)};
  }
}

// A time: "13/25", "13/25r" where it is rounded, "13/25?" where it is not valid, and "up", "down", "none" and "bad". An
// epoch follows a comma.
inline MediaTime timeOf(const std::string& text) {
  if (text == "up") return MediaTime::positiveInfinity();
  if (text == "down") return MediaTime::negativeInfinity();
  if (text == "none") return MediaTime::indefinite();
  if (text == "bad") return {};
  const bool isRounded = text.find('r') != text.npos, isValid = text.find('?') == text.npos;
  const std::size_t comma = text.find(',');
  return {std::stoll(text), std::stoi(text.substr(text.find('/') + 1)),
          (isValid ? kMediaTimeValid : 0u) | (isRounded || !isValid ? kMediaTimeHasBeenRounded : 0u),
          comma == text.npos ? 0 : std::stoll(text.substr(comma + 1))};
}

inline std::string textOf(const MediaTime& time) {
  for (const char* other : {"up", "down", "none", "bad"})
    if (time == timeOf(other)) return other;
  const std::string text = std::to_string(time.value) + "/" + std::to_string(time.timescale);
  for (const std::string mark : {"", "r", "?"})
    if (timeOf(text + mark).flags == time.flags)
      return text + mark + (time.epoch ? "," + std::to_string(time.epoch) : "");
  return "odd";
}

}  // namespace quill
