// CBOR (RFC 8949) as archives use it: items of definite length, written from left to right, read at byte offsets.
//
// - Reading trusts nothing: what is wrong is an ArchiveError that names the byte.
// - Nothing here looks at what items mean.
#pragma once

#include "../Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quill::inline v0::detail {

enum class CborMajor : std::uint8_t { Unsigned, Negative, Bytes, Text, Array, Map, Tag, Simple };

inline constexpr std::uint64_t kTagShareable = 28;  // what follows can be referred to
inline constexpr std::uint64_t kTagReference = 29;  // over the number of a shareable item

// Arrays and maps that are open at one place of a document.
inline constexpr std::size_t kMostNested = 64;

// ---- Writing ----

void appendHead(std::string& out, CborMajor major, std::uint64_t argument);
void appendInteger(std::string& out, std::int64_t value);
void appendDouble(std::string& out, double value);  // its 64 bits
void appendBool(std::string& out, bool value);
void appendNull(std::string& out);
// Whether it is valid UTF-8.
bool isValidText(std::string_view text);
// As a text, or as a byte string when it is no valid UTF-8.
void appendText(std::string& out, std::string_view text);

// ---- Reading ----

// The head of an item. All that is inside or behind it begins at "next".
struct CborItem {
  CborMajor major;
  std::uint8_t width;      // of the argument in bytes: 0, 1, 2, 4 or 8
  std::uint64_t argument;  // the value, length, tag or bits of a float
  std::size_t begin;
  std::size_t next;

  bool isNull() const { return major == CborMajor::Simple && width == 0 && argument == 22; }
  bool isBool() const { return major == CborMajor::Simple && width == 0 && (argument == 20 || argument == 21); }
  bool isFloat() const { return major == CborMajor::Simple && width >= 2; }
  bool isTag(std::uint64_t tag) const { return major == CborMajor::Tag && argument == tag; }
  // Of a float, exactly; a NaN keeps its payload.
  double floatValue() const;
  // "a text", for a report.
  const char* kind() const;
};

// An ArchiveError for a head that is no valid one or whose item cannot fit into the rest of the bytes.
CborItem cborItemAt(std::string_view bytes, std::size_t offset);

// The bytes of a text or byte string.
std::string_view cborString(std::string_view bytes, const CborItem& item);

// The offset behind an item, all that is inside it included. Of a document whose form has been checked.
std::size_t cborEnd(std::string_view bytes, std::size_t offset);

// Checks a document that is one item: well-formed, definite lengths, valid UTF-8, at most kMostNested arrays and maps
// within each other, keys that are texts or integers, none twice in a map, references to shareable items that begin
// before them, nothing behind the item. Answers the offsets of the shareable items, ascending.
std::vector<std::size_t> checkCborForm(std::string_view bytes);

}  // namespace quill::inline v0::detail
