// What the models of a field share: what they show, and the text that is typed into them.
#pragma once

#include "Platform/TextServices.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace field {

struct Message {
  std::string text;
  bool isError = false;
};

// What is being edited as it is drawn: its text, and which characters of it are the selected segment.
struct FieldText {
  std::string text;
  quill::Range selected;
};

// "from 0 to 100", "from ... up", "up to ...", "no limits".
inline std::string rangeText(const std::optional<std::string>& minimum, const std::optional<std::string>& maximum) {
  if (minimum && maximum) return "from " + *minimum + " to " + *maximum;
  if (minimum) return "from " + *minimum + " up";
  return maximum ? "up to " + *maximum : "no limits";
}

inline constexpr std::int64_t kMostDecimals = 9;

// A text being typed, and the place in it where the next character goes.
class EntryText {
 public:
  const std::string& text() const { return text_; }
  std::size_t cursor() const { return cursor_; }

  // False when no entry is longer than that.
  bool type(char character) {
    if (text_.size() >= kLongest) return false;
    text_.insert(cursor_++, 1, character);
    return true;
  }

  void eraseBefore() {
    if (cursor_ > 0) text_.erase(--cursor_, 1);
  }
  void eraseAfter() { text_.erase(cursor_, 1); }
  void clear() { *this = {}; }

  // Negative to the left, as far as the text goes.
  void moveCursorBy(std::int64_t count) {
    const auto size = static_cast<std::int64_t>(text_.size());  // [0, kLongest]
    const auto cursor = static_cast<std::int64_t>(cursor_);
    cursor_ = static_cast<std::size_t>(cursor + std::clamp(count, -cursor, size - cursor));
  }

 private:
  static constexpr std::size_t kLongest = 1000;

  std::string text_;
  std::size_t cursor_ = 0;  // in [0, text_.size()]
};

}  // namespace field
