// QKTimecodeSegmentNumberFormatter: the number formatter of one field of a timecode, which says while a number is typed
// whether it can still become a valid one. It archives nothing: deputies make theirs anew.
#pragma once

#include "../Platform/NumberFormatter.h"

namespace quill::inline v0 {

class QUILL_EXPORT QKTimecodeSegmentNumberFormatter : public NumberFormatter {
 public:
  static const ClassDescriptor descriptor;

  // Behaviour 10.4, decimal style (up to three fraction digits), no grouping.
  QKTimecodeSegmentNumberFormatter();
  QKTimecodeSegmentNumberFormatter(const QKTimecodeSegmentNumberFormatter&) = default;
  QKTimecodeSegmentNumberFormatter& operator=(const QKTimecodeSegmentNumberFormatter&) = default;
  template <ProperlyDerivedFrom<QKTimecodeSegmentNumberFormatter> Derived>
  QKTimecodeSegmentNumberFormatter(const Derived&) = delete;
  template <ProperlyDerivedFrom<QKTimecodeSegmentNumberFormatter> Derived>
  QKTimecodeSegmentNumberFormatter& operator=(const Derived&) = delete;
  ~QKTimecodeSegmentNumberFormatter() override;

  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  Ref<Object> copy() const override;

  // Whether a text is, or can become by typing on, a number with no more digits than the maximum counts. A minus sign is
  // taken once, in front, unless the minimum is 0 or above; a decimal separator, which may be last, unless the maximum
  // of fraction digits is 0. White space is not taken. With grouping, the first group has 1 to 3 digits and each one
  // after a grouping separator exactly 3. With two integer digits "12" is valid, "123" and "1 2" are not. Never proposes
  // a text (`newString` is set to nothing) and gives no error.
  bool isPartialStringValid(std::string_view partial, std::optional<std::string>* newString,
                            std::string* error) const override;
};

}  // namespace quill::inline v0
