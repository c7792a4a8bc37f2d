#include "Formatter.h"

namespace quill::inline v0 {

const ClassDescriptor Formatter::descriptor{"Formatter", nullptr, 0, &Object::descriptor, nullptr};

Formatter::~Formatter() = default;

std::optional<std::string> Formatter::stringForObjectValue(Object*) const { return std::nullopt; }

bool Formatter::getObjectValue(Ref<Object>*, std::string_view, std::string* error) {
  if (error) *error = "Text cannot be read.";
  return false;
}

bool Formatter::isPartialStringValid(std::string_view, std::optional<std::string>*, std::string*) const { return true; }

}  // namespace quill::inline v0
