#include "Keys.h"

#include "Platform/TextServices.h"

#include <string_view>

namespace field {

namespace {

constexpr char kEscape = '\x1b';
constexpr std::size_t kLongestSequence = 32;

// What follows "ESC [" or "ESC O".
constexpr struct {
  std::string_view sequence;
  Key::Code code;
} kSequences[] = {
    {"A", Key::Up},     {"B", Key::Down},        {"C", Key::Right},    {"D", Key::Left},    {"1;2A", Key::PageUp},
    {"a", Key::PageUp}, {"1;2B", Key::PageDown}, {"b", Key::PageDown}, {"5~", Key::PageUp}, {"6~", Key::PageDown},
    {"H", Key::Home},   {"F", Key::End},         {"1~", Key::Home},    {"7~", Key::Home},   {"4~", Key::End},
    {"8~", Key::End},   {"3~", Key::Delete},     {"Z", Key::BackTab},  {"M", Key::Enter},
};

Key keyForByte(char byte) {
  if (byte >= 0x20 && byte < 0x7F) return {Key::Character, byte};
  switch (byte) {
    case '\r':
    case '\n': return {Key::Enter};
    case '\t': return {Key::Tab};
    case '\b':
    case 0x7F: return {Key::Backspace};
    case 'C' - '@':
    case 'D' - '@': return {Key::Quit};
    case 'U' - '@': return {Key::EraseLine};
    default: return {};
  }
}

// The length of the sequence that `bytes`, "ESC [" or "ESC O" in front, begin with; 0 when its end is not there.
std::size_t sequenceLength(std::string_view bytes) {
  if (bytes[1] == 'O') return bytes.size() > 2 ? 3 : 0;
  for (std::size_t i = 2; i < bytes.size(); ++i) {
    const bool isParameter = bytes[i] >= 0x20 && bytes[i] < 0x40;
    if (isParameter && i < kLongestSequence) continue;
    return bytes[i] >= 0x40 && bytes[i] < 0x7F ? i + 1 : i;  // a byte that cannot end it is the next key's
  }
  return 0;
}

Key keyForSequence(std::string_view afterIntroducer) {
  for (const auto& row : kSequences) {
    if (row.sequence == afterIntroducer) return {row.code};
  }
  return {};
}

}  // namespace

std::optional<Key> takeKey(std::string* bytes, bool isAll) {
  if (bytes->empty()) return std::nullopt;
  std::size_t length = 1;
  Key key;
  if (bytes->front() != kEscape) {
    // A character of several bytes may be cut at the end of what was read.
    const auto lead = static_cast<unsigned char>(bytes->front());
    const std::size_t wanted = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (bytes->size() < wanted && !isAll) return std::nullopt;
    length = quill::decodeCharacter(*bytes).byteCount;
    key = length == 1 ? keyForByte(bytes->front()) : Key{};
  } else if (bytes->size() == 1) {
    if (!isAll) return std::nullopt;
    key = {Key::Escape};
  } else if ((*bytes)[1] == '[' || (*bytes)[1] == 'O') {
    length = sequenceLength(*bytes);
    if (length == 0 && !isAll) return std::nullopt;
    if (length == 0) length = bytes->size();
    key = keyForSequence(std::string_view(*bytes).substr(2, length - 2));
  } else {
    key = {Key::Escape};
  }
  bytes->erase(0, length);
  return key;
}

}  // namespace field
