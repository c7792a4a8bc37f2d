// Formatter: the base of everything that turns an object into text and text into an object.
#pragma once

#include "Object.h"

#include <optional>
#include <string>
#include <string_view>

namespace quill::inline v0 {

class QUILL_EXPORT Formatter : public Object {
 public:
  static const ClassDescriptor descriptor;

  ~Formatter() override;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }

  // The text for an object (null: no value), or nothing for an object that the formatter cannot show. Showing may
  // bring the object to another timescale or edit it where a formatter says so.
  virtual std::optional<std::string> stringForObjectValue(Object* object) const;

  // The object that a text says. False, with a short English description, when it says none; `object` is then left
  // alone. A text for no value gives a null object and true. Both out-pointers may be null.
  virtual bool getObjectValue(Ref<Object>* object, std::string_view string, std::string* error);

  // Whether a text could become a valid one while it is typed. The out-pointers may be null; `newString`, where a
  // formatter has a better text to offer, is set to it.
  virtual bool isPartialStringValid(std::string_view partial, std::optional<std::string>* newString,
                                    std::string* error) const;

 protected:
  Formatter() = default;
  Formatter(const Formatter&) = default;
  Formatter& operator=(const Formatter&) = default;
};

}  // namespace quill::inline v0
