// KeyedCoder: how objects write themselves into an archive and read themselves back.
//
// - A keyed coder names every value; a missing one reads as 0, false or null. A sequential coder keeps values in a fixed
//   order, told by type strings. An object asks allowsKeyedCoding and does the one or the other.
// - An archive stores one version for each archive class name in it, superclasses included.
// - An object that is met twice is written once: identity is kept within an archive.
// - Decoding is secure: an object is made only of a class that the caller names, or of a registered one that derives
//   from a class that the caller names.
// - A reader takes its input for hostile. Whatever is wrong with it ends in an ArchiveError that says what and where.
// - A coder that only writes or only reads leaves the other half alone: what it does not override throws
//   std::logic_error, and the integers of other widths go through the 64-bit ones.
//
// Type characters of a sequential value: i signed 32 bits, I unsigned 32 bits, q signed 64 bits, Q unsigned 64 bits,
// d double. A string of them stands for as many values; "di" is the same as "d" and then "i".
#pragma once

#include "Number.h"

#include <initializer_list>
#include <map>
#include <span>
#include <stdexcept>
#include <string_view>

namespace quill::inline v0 {

// Answered by an object that archives itself.
struct QUILL_EXPORT Coding {
  static const Protocol protocol;
};

// An archive that cannot be read, or an object that cannot be written. what() says what is wrong and, of an archive, at
// which byte: "an integer that is out of range, at byte 17".
class QUILL_EXPORT ArchiveError : public std::runtime_error {
 public:
  ArchiveError(const std::string& problem, std::uint64_t byteOffset);
  explicit ArchiveError(const std::string& problem);
  ~ArchiveError() override;
  // From the start of the archive, in bytes: of the value that is wrong, or the length of an archive that ends where a
  // value is due. 0 for an object that cannot be written.
  std::uint64_t byteOffset() const { return byteOffset_; }

 private:
  std::uint64_t byteOffset_;
};

// The classes that an object may have, each by its descriptor; the class itself, not what derives from it.
using ClassSet = std::span<const ClassDescriptor* const>;

class QUILL_EXPORT KeyedCoder {
 public:
  KeyedCoder(const KeyedCoder&) = delete;
  KeyedCoder& operator=(const KeyedCoder&) = delete;
  virtual ~KeyedCoder();

  // "ArchiveWriter", "ArchiveReader"; a host's coder has a name of its own.
  virtual std::string_view className() const = 0;
  virtual bool allowsKeyedCoding() const = 0;

  // ---- Writing, keyed ----

  virtual void encodeInteger(std::int64_t value, std::string_view key);
  virtual void encodeInt32(std::int32_t value, std::string_view key);
  virtual void encodeInt64(std::int64_t value, std::string_view key);
  virtual void encodeDouble(double value, std::string_view key);
  virtual void encodeBool(bool value, std::string_view key);
  // Null is written as a nil object. The object lives until the archive is complete: its identity is its address.
  virtual void encodeObject(const Object* object, std::string_view key);

  // ---- Reading, keyed ----
  //
  // 0, false or null for a key that is missing; an ArchiveError for a value of another type or out of range.

  virtual bool containsValueForKey(std::string_view key);
  virtual std::int64_t decodeInteger(std::string_view key);
  virtual std::int32_t decodeInt32(std::string_view key);
  virtual std::int64_t decodeInt64(std::string_view key);
  virtual double decodeDouble(std::string_view key);
  virtual bool decodeBool(std::string_view key);
  virtual Ref<Object> decodeObject(ClassSet classes, std::string_view key);

  // ---- Sequential ----

  // As many values as the type string has characters, each converted to its type: of an integer the low bits, of a
  // double the saturated integer.
  virtual void encodeValues(std::string_view types, std::initializer_list<Number> values);
  virtual void encodeObject(const Object* object);
  // An ArchiveError for a value that is missing, of another type or out of range. A number is signed, unsigned or a
  // double as its type is.
  virtual void decodeValues(std::string_view types, std::span<Number> values);
  virtual Ref<Object> decodeObject(ClassSet classes);

  // ---- Classes ----

  // The version that the archive stores for an archive class name, 0 for a name that it does not hold.
  virtual std::int64_t versionForClassName(std::string_view archiveName) const = 0;

  // Whether class names can be registered on this very coder.
  virtual bool acceptsClassRegistration() const = 0;
  // From now on the archive name stands for the class on this coder, where the class derives from one that is asked for
  // and none that is asked for has that name itself; null takes it back.
  virtual void setClass(const ClassDescriptor* descriptor, std::string_view archiveName);

 protected:
  KeyedCoder() = default;
};

// What an object's decoding does first: registers its class under its archive name, on the coder where that takes
// registrations. Otherwise, only for a coder whose class name is "DesignerXMLDecoder", in the one table of the process,
// until this guard dies, failures included. For any other coder nothing is registered. The table is not synchronised:
// two threads do not decode with such coders at once.
class QUILL_EXPORT DecodingRegistration {
 public:
  DecodingRegistration(KeyedCoder& coder, const ClassDescriptor& descriptor);
  DecodingRegistration(const DecodingRegistration&) = delete;
  DecodingRegistration& operator=(const DecodingRegistration&) = delete;
  ~DecodingRegistration();

  // The class that the table of the process has for a name now, or null.
  static const ClassDescriptor* processWideClass(std::string_view archiveName);

 private:
  const ClassDescriptor* registered_ = nullptr;  // in the table of the process
  DecodingRegistration* earlier_ = nullptr;      // the next entry of that table
};

// A text as an object. Archives hold it as a value: its identity is not kept.
class QUILL_EXPORT TextObject final : public Object {
 public:
  static const ClassDescriptor descriptor;
  explicit TextObject(std::string text);
  ~TextObject() override;
  const std::string& text() const { return text_; }
  std::string description() const override { return text_; }
  bool isEqual(const Object& other) const override;
  std::uint64_t hash() const override;
  Ref<Object> copy() const override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;

 private:
  std::string text_;
};

// Objects by number. Archives hold it as a value: its identity is not kept, that of the objects in it is.
class QUILL_EXPORT NumberedObjects final : public Object {
 public:
  static const ClassDescriptor descriptor;
  NumberedObjects();
  ~NumberedObjects() override;
  std::map<std::int64_t, Ref<Object>>& objects() { return objects_; }
  const std::map<std::int64_t, Ref<Object>>& objects() const { return objects_; }
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;

 private:
  std::map<std::int64_t, Ref<Object>> objects_;
};

}  // namespace quill::inline v0
