// Keys: what a terminal sends for the keys of a keyboard, taken apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace field {

struct Key {
  enum Code : std::uint8_t {
    Character,  // printable ASCII, in `character`
    Enter,
    Escape,
    Tab,
    BackTab,
    Left,
    Right,
    Up,
    Down,
    PageUp,  // and Shift-Up
    PageDown,
    Home,
    End,
    Backspace,
    Delete,
    EraseLine,
    Quit,
    Other,  // a key without a meaning here
  };

  Code code = Other;
  char character = 0;

  friend bool operator==(const Key&, const Key&) = default;
};

// Takes the first key off what a terminal sent. Nothing while the bytes are only the start of one: a lone escape
// character is the Escape key once nothing has followed it for a while (`isAll`). Characters beyond ASCII and unknown
// sequences are one Other each.
std::optional<Key> takeKey(std::string* bytes, bool isAll);

}  // namespace field
