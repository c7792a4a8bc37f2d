// Object: the root of everything that a formatter shows, a notification names or an archive holds.
//
// - A class is described by a ClassDescriptor of constant data; nothing is registered before main().
// - A protocol is a pure abstract class with a Protocol of its own; an object says by address which ones it serves.
// - Objects are owned through Ref, and live on the stack as well.
#pragma once

#include "Export.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>

namespace quill::inline v0 {

class KeyedCoder;
class Object;

template <class T>
using Ref = std::shared_ptr<T>;

// The identity of a protocol: its address. The name is for people.
struct Protocol {
  const char* name;
  // A second descriptor that counts as this one, or null.
  const Protocol* alias = nullptr;
};

struct ClassDescriptor {
  const char* name;                   // as in descriptions
  const char* archiveName;            // as in archives; null for a class that archives nothing
  std::int64_t version;               // of the layout that it archives
  const ClassDescriptor* superclass;  // null for Object
  Ref<Object> (*make)();              // a plain new instance; null for an abstract class
  // An instance read from a coder; null for a class that archives nothing. Decoding is always secure.
  Ref<Object> (*makeWithCoder)(KeyedCoder& coder) = nullptr;
};

// Answered by an object whose copy() gives an object.
struct QUILL_EXPORT Copying {
  static const Protocol protocol;
};

class QUILL_EXPORT Object {
 public:
  static const ClassDescriptor descriptor;

  virtual ~Object();

  // The class of this very object.
  virtual const ClassDescriptor& classDescriptor() const;

  // The object as that protocol's class, or null when it does not serve it. Asked through protocolCast.
  virtual void* asProtocol(const Protocol& protocol);

  // A text for people: "<QKVideoTimecode: 0x7f30c0>" unless a class says more.
  virtual std::string description() const;

  // As description, for a report about this object: it never reports anything itself.
  virtual std::string descriptionForReport() const;

  virtual bool isEqual(const Object& other) const;
  // Equal objects have equal hashes, except where a class says otherwise.
  virtual std::uint64_t hash() const;

  // A new object of the same class, in one allocation; null for a class that cannot be copied.
  virtual Ref<Object> copy() const;

  // Writes what makeWithCoder of the class reads. A class that archives nothing throws an ArchiveError.
  virtual void encodeWithCoder(KeyedCoder& coder) const;

  // "<QKVideoTimecode: 0x7f30c0>"
  std::string classNameAndAddress() const;

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

// Whether the object's class is the one described or derives from it.
inline bool isKindOf(const Object& object, const ClassDescriptor& descriptor) {
  const ClassDescriptor* c = &object.classDescriptor();
  while (c && c != &descriptor) c = c->superclass;
  return c != nullptr;
}

// The object as a T, or null when it is none or null. T names a class with a descriptor of its own.
template <class T>
T* classCast(Object* object) {
  return object && isKindOf(*object, T::descriptor) ? static_cast<T*>(object) : nullptr;
}
template <class T>
const T* classCast(const Object* object) {
  return object && isKindOf(*object, T::descriptor) ? static_cast<const T*>(object) : nullptr;
}

// The object as that protocol's class, or null when it is null or does not serve it.
inline void* asProtocolOrAlias(Object* object, const Protocol& protocol) {
  if (!object) return nullptr;
  void* const served = object->asProtocol(protocol);
  return served || !protocol.alias ? served : object->asProtocol(*protocol.alias);
}

template <class P>
P* protocolCast(Object* object) {
  return static_cast<P*>(asProtocolOrAlias(object, P::protocol));
}

inline bool conformsTo(Object* object, const Protocol& protocol) {
  return asProtocolOrAlias(object, protocol) != nullptr;
}

// A class that properly derives from another: a base deletes its copying from such a one, which would cut it down.
template <class Derived, class Base>
concept ProperlyDerivedFrom = std::derived_from<Derived, Base> && !std::same_as<Derived, Base>;

// A copy with the type of the argument.
template <class T>
Ref<T> copyOf(const T& object) {
  return std::static_pointer_cast<T>(object.copy());
}

}  // namespace quill::inline v0
