#include "Object.h"

#include "KeyedCoder.h"
#include "TextServices.h"

namespace quill::inline v0 {

const Protocol Copying::protocol{"Copying"};

const ClassDescriptor Object::descriptor{"Object", nullptr, 0, nullptr, nullptr};

Object::~Object() = default;

const ClassDescriptor& Object::classDescriptor() const { return descriptor; }

void* Object::asProtocol(const Protocol&) { return nullptr; }

std::string Object::description() const { return classNameAndAddress(); }

std::string Object::descriptionForReport() const { return description(); }

bool Object::isEqual(const Object& other) const { return this == &other; }

std::uint64_t Object::hash() const { return reinterpret_cast<std::uintptr_t>(this); }

Ref<Object> Object::copy() const { return nullptr; }

void Object::encodeWithCoder(KeyedCoder&) const {
  throw ArchiveError(std::string("the class ") + classDescriptor().name + " archives nothing");
}

std::string Object::classNameAndAddress() const {
  std::string text = "<";
  text += classDescriptor().name;
  text += ": ";
  appendAddress(text, this);
  text += '>';
  return text;
}

}  // namespace quill::inline v0
