// The table of the process is the list of the guards that stand in it, newest first: it needs no memory of its own, so
// nothing can fail, and an entry that another one hides is found again when that one goes.

#include "KeyedCoder.h"

#include "TextServices.h"

#include <functional>

namespace quill::inline v0 {

namespace {

DecodingRegistration* newestRegistration = nullptr;

std::string withByte(std::string problem, std::uint64_t byteOffset) {
  problem += ", at byte ";
  appendInteger(problem, byteOffset);
  return problem;
}

[[noreturn]] void cannot(const char* what, std::string_view className) {
  throw std::logic_error("a coder that does not " + std::string(what) + ": " + std::string(className));
}

}  // namespace

const Protocol Coding::protocol{"Coding"};

ArchiveError::ArchiveError(const std::string& problem, std::uint64_t byteOffset)
    : std::runtime_error(withByte(problem, byteOffset)), byteOffset_(byteOffset) {}

ArchiveError::ArchiveError(const std::string& problem) : std::runtime_error(problem), byteOffset_(0) {}

ArchiveError::~ArchiveError() = default;

KeyedCoder::~KeyedCoder() = default;

void KeyedCoder::encodeInteger(std::int64_t value, std::string_view key) { encodeInt64(value, key); }
void KeyedCoder::encodeInt32(std::int32_t value, std::string_view key) { encodeInt64(value, key); }
void KeyedCoder::encodeInt64(std::int64_t, std::string_view) { cannot("write", className()); }
void KeyedCoder::encodeDouble(double, std::string_view) { cannot("write", className()); }
void KeyedCoder::encodeBool(bool, std::string_view) { cannot("write", className()); }
void KeyedCoder::encodeObject(const Object*, std::string_view) { cannot("write", className()); }
void KeyedCoder::encodeObject(const Object*) { cannot("write", className()); }
void KeyedCoder::encodeValues(std::string_view, std::initializer_list<Number>) { cannot("write", className()); }

bool KeyedCoder::containsValueForKey(std::string_view) { cannot("read", className()); }
std::int64_t KeyedCoder::decodeInteger(std::string_view key) { return decodeInt64(key); }
std::int32_t KeyedCoder::decodeInt32(std::string_view) { cannot("read", className()); }
std::int64_t KeyedCoder::decodeInt64(std::string_view) { cannot("read", className()); }
double KeyedCoder::decodeDouble(std::string_view) { cannot("read", className()); }
bool KeyedCoder::decodeBool(std::string_view) { cannot("read", className()); }
Ref<Object> KeyedCoder::decodeObject(ClassSet, std::string_view) { cannot("read", className()); }
Ref<Object> KeyedCoder::decodeObject(ClassSet) { cannot("read", className()); }
void KeyedCoder::decodeValues(std::string_view, std::span<Number>) { cannot("read", className()); }

void KeyedCoder::setClass(const ClassDescriptor*, std::string_view) { cannot("register classes", className()); }

DecodingRegistration::DecodingRegistration(KeyedCoder& coder, const ClassDescriptor& descriptor) {
  if (coder.acceptsClassRegistration()) {
    coder.setClass(&descriptor, descriptor.archiveName);
  } else if (coder.className() == "DesignerXMLDecoder") {
    registered_ = &descriptor;
    earlier_ = newestRegistration;
    newestRegistration = this;
  }
}

DecodingRegistration::~DecodingRegistration() {
  if (!registered_) return;
  DecodingRegistration** place = &newestRegistration;
  while (*place != this) place = &(*place)->earlier_;
  *place = earlier_;
}

const ClassDescriptor* DecodingRegistration::processWideClass(std::string_view archiveName) {
  for (const auto* entry = newestRegistration; entry; entry = entry->earlier_) {
    if (entry->registered_->archiveName == archiveName) return entry->registered_;
  }
  return nullptr;
}

const ClassDescriptor TextObject::descriptor{"TextObject", nullptr, 0, &Object::descriptor, []() -> Ref<Object> {
                                               return std::make_shared<TextObject>(std::string());
                                             }};

TextObject::TextObject(std::string text) : text_(std::move(text)) {}

TextObject::~TextObject() = default;

bool TextObject::isEqual(const Object& other) const {
  const auto* text = classCast<TextObject>(&other);
  return text && text->text_ == text_;
}

std::uint64_t TextObject::hash() const { return std::hash<std::string>()(text_); }

Ref<Object> TextObject::copy() const { return std::make_shared<TextObject>(text_); }

void* TextObject::asProtocol(const Protocol& protocol) {
  return &protocol == &Copying::protocol || &protocol == &Coding::protocol ? this : nullptr;
}

const ClassDescriptor NumberedObjects::descriptor{"NumberedObjects", nullptr, 0, &Object::descriptor,
                                                  []() -> Ref<Object> { return std::make_shared<NumberedObjects>(); }};

NumberedObjects::NumberedObjects() = default;

NumberedObjects::~NumberedObjects() = default;

void* NumberedObjects::asProtocol(const Protocol& protocol) { return &protocol == &Coding::protocol ? this : nullptr; }

}  // namespace quill::inline v0
