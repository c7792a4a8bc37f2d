// Archives of bytes: one object and all that it holds, keyed or sequential, in CBOR (RFC 8949). The format is described
// in Docs/archive-format.md.
//
// - The same object archived twice gives the same bytes.
// - A writer keeps the identity of objects by their address: all of them live until it is done.
// - A reader first checks the form of the whole archive, then decodes what it is asked for, each object once.
#pragma once

#include "KeyedCoder.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quill::inline v0 {

enum class ArchiveKind : std::uint8_t { Keyed, Sequential };

// The archive of an object. Throws an ArchiveError for an object, or one that it holds, that archives nothing.
QUILL_EXPORT std::string archivedData(const Object& object, ArchiveKind kind);

// The object of an archive of either kind; null for an archive of a nil object. Its class must be among those given.
QUILL_EXPORT Ref<Object> unarchivedObject(std::string_view bytes, ClassSet classes);

// As unarchivedObject, as a T.
template <class T>
Ref<T> unarchived(std::string_view bytes) {
  const ClassDescriptor* const classes[] = {&T::descriptor};
  return std::static_pointer_cast<T>(unarchivedObject(bytes, classes));
}

// Writes one archive. An ArchiveError for an object that archives nothing, for one whose class has no archive name, for
// a key that an object has written already, and for objects that are nested deeper than a reader takes (31 of a keyed
// archive, 63 of a sequential one). Operations that read, that belong to the other kind or that come from outside of an
// object throw std::logic_error.
class QUILL_EXPORT ArchiveWriter final : public KeyedCoder {
 public:
  explicit ArchiveWriter(ArchiveKind kind);
  ~ArchiveWriter() override;

  // The object that the archive is of; null is a nil object. Once.
  void encodeRoot(const Object* object);
  // The archive. After encodeRoot.
  std::string bytes() const;

  std::string_view className() const override { return "ArchiveWriter"; }
  bool allowsKeyedCoding() const override { return kind_ == ArchiveKind::Keyed; }

  void encodeInt64(std::int64_t value, std::string_view key) override;
  void encodeDouble(double value, std::string_view key) override;
  void encodeBool(bool value, std::string_view key) override;
  void encodeObject(const Object* object, std::string_view key) override;
  void encodeValues(std::string_view types, std::initializer_list<Number> values) override;
  void encodeObject(const Object* object) override;

  // Of what has been written so far.
  std::int64_t versionForClassName(std::string_view archiveName) const override;
  bool acceptsClassRegistration() const override { return false; }

 private:
  class Level;

  enum class State : std::uint8_t { Empty, Writing, Done, Failed };

  [[noreturn]] void fail(const std::string& problem);
  void beginValue(std::string_view key);
  void beginValue();
  void appendObject(const Object* object);
  void appendNumber(const Number& number);

  ArchiveKind kind_;
  State state_ = State::Empty;
  std::string root_;                                           // the root object, as far as it is written
  Level* level_ = nullptr;                                     // what is being written
  std::map<const Object*, std::uint64_t> numbers_;             // of the objects met, in order
  std::map<std::string, std::int64_t, std::less<>> versions_;  // by archive class name
};

// Reads one archive, whose bytes outlive it. Whatever is wrong with them is an ArchiveError. Values that nobody asks for
// are ignored. Operations that write, that belong to the other kind or that come from outside of an object throw
// std::logic_error.
//
// A host's coder derives from it to have a class name of its own and to say whether it takes registrations.
class QUILL_EXPORT ArchiveReader : public KeyedCoder {
 public:
  // Checks the form of the whole archive.
  explicit ArchiveReader(std::string_view bytes);
  explicit ArchiveReader(std::string&& bytes) = delete;  // they would be gone
  ~ArchiveReader() override;

  // The object that the archive is of; null for a nil object.
  Ref<Object> decodeRoot(ClassSet classes);

  std::string_view className() const override { return "ArchiveReader"; }
  bool allowsKeyedCoding() const override { return kind_ == ArchiveKind::Keyed; }

  bool containsValueForKey(std::string_view key) override;
  std::int32_t decodeInt32(std::string_view key) override;
  std::int64_t decodeInt64(std::string_view key) override;
  double decodeDouble(std::string_view key) override;
  bool decodeBool(std::string_view key) override;
  Ref<Object> decodeObject(ClassSet classes, std::string_view key) override;
  void decodeValues(std::string_view types, std::span<Number> values) override;
  Ref<Object> decodeObject(ClassSet classes) override;

  std::int64_t versionForClassName(std::string_view archiveName) const override;
  bool acceptsClassRegistration() const override { return true; }
  void setClass(const ClassDescriptor* descriptor, std::string_view archiveName) override;

 private:
  class Level;
  // A text key and the offset of its value.
  struct Entry {
    std::string_view key;
    std::size_t offset;
    bool operator<(std::string_view other) const;
  };
  // An object that has been decoded, or is being decoded.
  struct Decoded {
    const ClassDescriptor* descriptor;
    bool isDone;
    Ref<Object> object;
  };

  std::vector<Entry> entriesOf(std::size_t mapOffset) const;
  static const Entry* find(const std::vector<Entry>& entries, std::string_view key);
  const Entry* find(std::string_view key) const;
  std::size_t nextValue();
  const ClassDescriptor& classNamed(std::string_view name, std::size_t offset, ClassSet classes) const;
  Ref<Object> objectAt(std::size_t offset, ClassSet classes);
  Ref<Object> sharedObjectAt(std::size_t offset, ClassSet classes);

  std::string_view bytes_;
  ArchiveKind kind_ = ArchiveKind::Keyed;
  std::vector<std::size_t> shareable_;      // offsets of the objects
  std::vector<Entry> versions_;             // by archive class name
  std::size_t root_ = 0;                    // offset
  Level* level_ = nullptr;                  // the object that is being decoded
  std::map<std::size_t, Decoded> decoded_;  // by offset
  std::map<std::string, const ClassDescriptor*, std::less<>> registered_;
};

}  // namespace quill::inline v0
