// What parsing shares: the descriptions of its failures, and taking characters off the front of a text.
#pragma once

#include "../../Platform/TextServices.h"

namespace quill::inline v0::detail {

inline constexpr std::string_view kIllegalCharacters = "Illegal characters.";
inline constexpr std::string_view kObjectDoesNotConform = "Object does not conform to protocol";
inline constexpr std::string_view kValueDoesNotConform = "Value doesn't conform to protocol";

// Sets the description where one is wanted; always false.
inline bool fail(std::string* error, std::string_view description) {
  if (error) *error = description;
  return false;
}

inline bool failNotVisible(std::string* error, std::int64_t tag) {
  if (!error) return false;
  *error = "Segment with tag ";
  appendInteger(*error, tag);
  *error += " not visible";
  return false;
}

// Takes the characters of a set off the front; how many they are.
inline std::uint64_t takeCharacters(std::string_view& text, const CharacterSet& set) {
  std::uint64_t count = 0;
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text.front());
    const DecodedCharacter next = byte < 0x80 ? DecodedCharacter{byte, 1} : decodeCharacter(text);
    if (!set.contains(next.character)) break;
    text.remove_prefix(next.byteCount);
    ++count;
  }
  return count;
}

inline void takeWhitespace(std::string_view& text) {
  // A printing ASCII character, the usual case, needs no set.
  if (text.empty() || (text.front() > ' ' && text.front() < 0x7F)) return;
  takeCharacters(text, CharacterSet::whitespace());
}

}  // namespace quill::inline v0::detail
