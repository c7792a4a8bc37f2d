#include "Cbor.h"

#include "../KeyedCoder.h"
#include "../TextServices.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <compare>
#include <cstring>

namespace quill::inline v0::detail {

namespace {

// The offset of the first byte that is no valid UTF-8, or the length.
std::size_t validPrefix(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size()) {
    std::uint64_t eight = 0;  // ASCII goes by eight, the last ones with those before them
    if (text.size() >= sizeof eight) {
      const std::size_t from = std::min(i, text.size() - sizeof eight);
      std::memcpy(&eight, text.data() + from, sizeof eight);
      if ((eight & 0x8080808080808080) == 0) {
        i = from + sizeof eight;
        continue;
      }
    }
    if (static_cast<unsigned char>(text[i]) < 0x80) {
      ++i;
      continue;
    }
    const DecodedCharacter decoded = decodeCharacter(text.substr(i));
    if (decoded.character == kInvalidCharacter) break;
    i += decoded.byteCount;
  }
  return i;
}

// A head whose argument, where it is not in the first byte, takes that many bytes more.
void appendItem(std::string& out, CborMajor major, unsigned information, std::uint64_t argument, unsigned width) {
  char bytes[1 + sizeof argument] = {static_cast<char>(static_cast<unsigned>(major) << 5 | information)};
  for (unsigned i = width; i > 0; argument >>= 8) bytes[i--] = static_cast<char>(argument & 0xFF);
  out.append(bytes, 1 + width);
}

// Out of line: what reads heads stays short.
[[noreturn]] void fail(const char* problem, std::size_t offset) { throw ArchiveError(problem, offset); }

[[noreturn]] void failTooLong(const CborItem& item) {
  throw ArchiveError(std::string(item.kind()) + " that is longer than the archive", item.begin);
}

// The key of a map: where it begins, and its head's argument.
struct Key {
  std::size_t begin;
  std::uint64_t argument;
};
using Keys = std::vector<Key>;

// Equal keys are equal items, however wide their heads. Heads come first: few keys of an object are of one length.
struct KeyOrder {
  std::string_view bytes;

  std::strong_ordering compare(const Key& a, const Key& b) const {
    const CborMajor major = majorOf(a);
    if (const auto order = major <=> majorOf(b); order != 0) return order;
    if (const auto order = a.argument <=> b.argument; order != 0 || major != CborMajor::Text) return order;
    return cborString(bytes, cborItemAt(bytes, a.begin)) <=> cborString(bytes, cborItemAt(bytes, b.begin));
  }
  bool operator()(const Key& a, const Key& b) const {
    const auto order = compare(a, b);
    return order < 0 || (order == 0 && a.begin < b.begin);
  }

 private:
  CborMajor majorOf(const Key& key) const {
    return static_cast<CborMajor>(static_cast<unsigned char>(bytes[key.begin]) >> 5);
  }
};

void checkNoKeyTwice(std::string_view bytes, Keys::iterator first, Keys::iterator last) {
  const KeyOrder order{bytes};
  std::sort(first, last, order);
  const auto twice =
      std::adjacent_find(first, last, [&](const Key& a, const Key& b) { return order.compare(a, b) == 0; });
  if (twice != last) throw ArchiveError("a key that the map has already", twice[1].begin);
}

}  // namespace

void appendHead(std::string& out, CborMajor major, std::uint64_t argument) {
  if (argument < 24) return appendItem(out, major, static_cast<unsigned>(argument), 0, 0);
  const unsigned log2 = argument <= 0xFF ? 0 : argument <= 0xFFFF ? 1 : argument <= 0xFFFFFFFF ? 2 : 3;
  appendItem(out, major, 24 + log2, argument, 1u << log2);
}

void appendInteger(std::string& out, std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  if (value < 0) {
    appendHead(out, CborMajor::Negative, ~bits);  // -1 - value
  } else {
    appendHead(out, CborMajor::Unsigned, bits);
  }
}

void appendDouble(std::string& out, double value) {
  appendItem(out, CborMajor::Simple, 27, std::bit_cast<std::uint64_t>(value), sizeof value);
}

void appendBool(std::string& out, bool value) { appendHead(out, CborMajor::Simple, value ? 21 : 20); }

void appendNull(std::string& out) { appendHead(out, CborMajor::Simple, 22); }

bool isValidText(std::string_view text) { return validPrefix(text) == text.size(); }

void appendText(std::string& out, std::string_view text) {
  appendHead(out, isValidText(text) ? CborMajor::Text : CborMajor::Bytes, text.size());
  out += text;
}

double CborItem::floatValue() const {
  if (width == 8) return std::bit_cast<double>(argument);
  const int fractionBits = width == 4 ? 23 : 10;
  const std::uint64_t sign = argument >> (8 * width - 1);
  const std::uint64_t exponentMask = width == 4 ? 0xFF : 0x1F;
  const std::uint64_t exponent = argument >> fractionBits & exponentMask;
  const std::uint64_t fraction = argument & ((std::uint64_t{1} << fractionBits) - 1);
  const auto bias = static_cast<int>(exponentMask / 2);
  if (exponent == 0) {
    const double magnitude = std::ldexp(static_cast<double>(fraction), 1 - bias - fractionBits);
    return sign ? -magnitude : magnitude;
  }
  const std::uint64_t wideExponent = exponent == exponentMask ? 0x7FF : exponent + 1023 - static_cast<unsigned>(bias);
  return std::bit_cast<double>(sign << 63 | wideExponent << 52 | fraction << (52 - fractionBits));
}

const char* CborItem::kind() const {
  switch (major) {
    case CborMajor::Unsigned:
    case CborMajor::Negative: return "an integer";
    case CborMajor::Bytes: return "a byte string";
    case CborMajor::Text: return "a text";
    case CborMajor::Array: return "an array";
    case CborMajor::Map: return "a map";
    case CborMajor::Tag: return argument == kTagShareable || argument == kTagReference ? "an object" : "a tag";
    case CborMajor::Simple: break;
  }
  return isFloat() ? "a double" : isBool() ? "a boolean" : isNull() ? "null" : "a simple value";
}

CborItem cborItemAt(std::string_view bytes, std::size_t offset) {
  if (offset >= bytes.size()) fail("the archive ends where a value is due", bytes.size());
  const auto first = static_cast<unsigned char>(bytes[offset]);
  CborItem item{static_cast<CborMajor>(first >> 5), 0, first & 0x1Fu, offset, offset + 1};
  const bool isSimple = item.major == CborMajor::Simple;
  if (item.argument >= 28) fail(item.argument == 31 ? "an indefinite length" : "an invalid first byte", offset);
  if (item.argument >= 24) {
    item.width = static_cast<std::uint8_t>(1u << (item.argument - 24));
    if (bytes.size() - item.next < item.width) fail("a value that is cut short", offset);
    item.argument = 0;
    for (unsigned i = 0; i < item.width; ++i) {
      item.argument = item.argument << 8 | static_cast<unsigned char>(bytes[item.next++]);
    }
    if (isSimple && item.width == 1 && item.argument < 32) fail("an invalid simple value", offset);
  }
  // Every item inside takes a byte at least.
  const std::uint64_t rest = bytes.size() - item.next;
  const bool isString = item.major == CborMajor::Bytes || item.major == CborMajor::Text;
  if (((isString || item.major == CborMajor::Array) && item.argument > rest) ||
      (item.major == CborMajor::Map && item.argument > rest / 2)) {
    failTooLong(item);
  }
  return item;
}

std::string_view cborString(std::string_view bytes, const CborItem& item) {
  return bytes.substr(item.next, static_cast<std::size_t>(item.argument));
}

std::size_t cborEnd(std::string_view bytes, std::size_t offset) {
  for (std::uint64_t left = 1; left > 0; --left) {
    const CborItem item = cborItemAt(bytes, offset);
    offset = item.next;
    switch (item.major) {
      case CborMajor::Bytes:
      case CborMajor::Text: offset += static_cast<std::size_t>(item.argument); break;
      case CborMajor::Array: left += item.argument; break;
      case CborMajor::Map: left += 2 * item.argument; break;
      case CborMajor::Tag: ++left; break;
      default: break;
    }
  }
  return offset;
}

std::vector<std::size_t> checkCborForm(std::string_view bytes) {
  struct Open {
    std::uint64_t left;  // items, two for each entry of a map
    bool isMap;
    std::size_t firstKey;  // in keys
  };
  std::array<Open, kMostNested> open;
  std::size_t depth = 0;
  Keys keys;  // of the maps that are open
  std::vector<std::size_t> shareable;
  std::size_t offset = 0;
  bool isTagged = false;  // the last head was a tag: its item is still due
  do {
    const CborItem item = cborItemAt(bytes, offset);
    offset = item.next;
    const bool isText = item.major == CborMajor::Text;
    if (!isTagged && depth > 0 && open[depth - 1].isMap && open[depth - 1].left % 2 == 0) {
      if (!isText && item.major > CborMajor::Negative) {
        throw ArchiveError(std::string(item.kind()) + " as a key", item.begin);
      }
      keys.push_back({item.begin, item.argument});
    }
    isTagged = item.major == CborMajor::Tag;
    if (isTagged) {
      if (item.argument == kTagReference) {
        const CborItem number = cborItemAt(bytes, offset);
        if (number.major != CborMajor::Unsigned || number.argument >= shareable.size()) {
          throw ArchiveError("a reference to no object before it", offset);
        }
      }
      if (item.argument == kTagShareable) shareable.push_back(item.begin);
      continue;
    }
    if (isText || item.major == CborMajor::Bytes) {
      const std::string_view string = cborString(bytes, item);
      const std::size_t valid = isText ? validPrefix(string) : string.size();
      if (valid < string.size()) throw ArchiveError("a text that is no valid UTF-8", offset + valid);
      offset += string.size();
    } else if (item.major == CborMajor::Array || item.major == CborMajor::Map) {
      if (depth == kMostNested) throw ArchiveError("values that are nested too deep", item.begin);
      if (item.argument > 0) {
        const bool isMap = item.major == CborMajor::Map;
        open[depth++] = {isMap ? 2 * item.argument : item.argument, isMap, keys.size()};
        continue;
      }
    }
    // The item is complete, and so may be what it stands in.
    while (depth > 0 && --open[depth - 1].left == 0) {
      const Open& closed = open[--depth];
      if (!closed.isMap) continue;
      const auto firstKey = keys.begin() + static_cast<std::ptrdiff_t>(closed.firstKey);
      checkNoKeyTwice(bytes, firstKey, keys.end());
      keys.erase(firstKey, keys.end());
    }
  } while (depth > 0 || isTagged);
  if (offset != bytes.size()) throw ArchiveError("bytes behind the archive", offset);
  return shareable;
}

}  // namespace quill::inline v0::detail
