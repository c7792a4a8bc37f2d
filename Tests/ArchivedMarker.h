// Classes to archive: a marker that holds others, what derives from it, and a coder that takes no registrations; and
// archives written in hex.
#pragma once

#include "../Platform/Archive.h"

#include <stdexcept>

namespace quill {

class Marker : public Object {
 public:
  static const ClassDescriptor descriptor;
  static constexpr std::int64_t kPoison = 0x506F69736F6E0000;  // a marker at this position cannot be decoded
  // What the label may be, for all markers.
  static inline std::vector<const ClassDescriptor*> labelClasses;
  // What the table of the process had for "Marker" when the decoding of a marker ended.
  static inline const ClassDescriptor* classInTable = nullptr;

  Marker() = default;
  explicit Marker(KeyedCoder& coder) {
    const DecodingRegistration registration(coder, descriptor);
    const ClassDescriptor* const nextClasses[] = {&descriptor, nextDescriptor};
    if (coder.allowsKeyedCoding()) {
      version = coder.decodeInteger("Version"), position = coder.decodeInt64("Position");
      rate = coder.decodeDouble("Rate"), track = coder.decodeInt32("Track"), isLocked = coder.decodeBool("Locked");
      label = coder.decodeObject(labelClasses, "Label"), next = coder.decodeObject(nextClasses, "Next");
    } else {
      version = coder.versionForClassName("Marker");
      Number values[4];
      coder.decodeValues("qdii", values);
      position = values[0].int64Value(), rate = values[1].doubleValue();
      track = static_cast<std::int32_t>(values[2].int64Value()), isLocked = values[3].boolValue();
      label = coder.decodeObject(labelClasses), next = coder.decodeObject(nextClasses);
    }
    classInTable = DecodingRegistration::processWideClass("Marker");
    if (position == kPoison) throw std::runtime_error("poison");
  }

  void encodeWithCoder(KeyedCoder& coder) const override {
    if (!coder.allowsKeyedCoding()) {
      coder.encodeValues("qdii", {position, rate, track, Number::boolean(isLocked)});
      coder.encodeObject(label.get()), coder.encodeObject(next.get());
      return;
    }
    coder.encodeInteger(descriptor.version, "Version"), coder.encodeInt64(position, "Position");
    coder.encodeDouble(rate, "Rate"), coder.encodeInt32(track, "Track"), coder.encodeBool(isLocked, "Locked");
    coder.encodeObject(label.get(), "Label"), coder.encodeObject(next.get(), "Next");
  }
  const ClassDescriptor& classDescriptor() const override { return descriptor; }

  std::int64_t version = 0, position = 0;
  double rate = 0;
  std::int32_t track = 0;
  bool isLocked = false;
  Ref<Object> label, next;

 private:
  static const ClassDescriptor* const nextDescriptor;  // of a chapter
};

class Chapter : public Marker {
 public:
  static const ClassDescriptor descriptor;
  Chapter() = default;
  explicit Chapter(KeyedCoder& coder) : Marker(coder) { const DecodingRegistration registration(coder, descriptor); }
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
};

template <class T>
inline constexpr auto makeDefault = []() -> Ref<Object> { return std::make_shared<T>(); };
template <class T>
inline constexpr auto makeDecoded = [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<T>(coder); };

inline const ClassDescriptor Marker::descriptor{
    "Marker", "Marker", 2, &Object::descriptor, makeDefault<Marker>, makeDecoded<Marker>};
inline const ClassDescriptor Chapter::descriptor{
    "Chapter", "Chapter", -5, &Marker::descriptor, makeDefault<Chapter>, makeDecoded<Chapter>};
inline const ClassDescriptor* const Marker::nextDescriptor = &Chapter::descriptor;

// Both, and the values that a label may be.
inline const ClassDescriptor* const kMarkerClasses[] = {&Marker::descriptor, &Chapter::descriptor,
                                                        &TextObject::descriptor, &Number::descriptor,
                                                        &NumberedObjects::descriptor};

inline void takeAllLabels() { Marker::labelClasses.assign(std::begin(kMarkerClasses), std::end(kMarkerClasses)); }

// A coder of a host.
struct HostReader : ArchiveReader {
  HostReader(std::string_view hostName, std::string_view bytes) : ArchiveReader(bytes), name(hostName) {}
  std::string_view className() const override { return name; }
  bool acceptsClassRegistration() const override { return false; }
  std::string_view name;
};

inline std::string repeated(std::string_view text, int count) {
  std::string result;
  for (; count > 0; --count) result += text;
  return result;
}

// Bytes of hex digits; 'a text' stands for its CBOR, of at most 255 bytes, and "a text" for its bytes.
inline std::string bytesOf(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i < hex.size(); ++i) {
    if (hex[i] == '\'' || hex[i] == '"') {
      const std::string text = hex.substr(i + 1, hex.find(hex[i], i + 1) - i - 1);
      if (hex[i] == '\'' && text.size() > 23) bytes += '\x78';
      if (hex[i] == '\'') bytes += static_cast<char>(text.size() + (text.size() > 23 ? 0 : 0x60));
      bytes += text;
      i += text.size() + 1;
    } else if (hex[i] != ' ') {
      bytes += static_cast<char>(std::stoi(hex.substr(i++, 2), nullptr, 16));
    }
  }
  return bytes;
}

// Two digits.
inline std::string hexOf(int byte) { return {"0123456789ABCDEF"[byte / 16], "0123456789ABCDEF"[byte % 16]}; }

// An archive with that root object and these versions of classes.
inline std::string archiveOf(ArchiveKind kind, const std::string& rootHex,
                             const std::string& versions = "A2 'Chapter' 09 'Marker' 19012C") {
  return bytesOf("D9D9F7 A5 'format' 'QuillFoundation archive' 'version' 01 'kind'" +
                 std::string(kind == ArchiveKind::Keyed ? "'keyed'" : "'sequential'") + "'classes'" + versions +
                 "'root'" + rootHex);
}
inline std::string keyedArchiveOf(const std::string& rootHex) { return archiveOf(ArchiveKind::Keyed, rootHex); }

// A marker of a keyed archive.
inline std::string markerHex(const std::string& entries) { return "D81C 82 'Marker'" + entries; }

}  // namespace quill
