#include "QKTimecodeSegmentNumberFormatter.h"

#include "../Platform/TextServices.h"

namespace quill::inline v0 {

namespace {

// The length of the run of digits passed over.
std::int64_t scanDigits(Scanner& scanner) {
  std::string_view run;
  scanner.scanCharacters(CharacterSet::decimalDigits(), &run);
  return static_cast<std::int64_t>(run.size());
}

}  // namespace

const ClassDescriptor QKTimecodeSegmentNumberFormatter::descriptor{
    "QKTimecodeSegmentNumberFormatter", nullptr, 0, &NumberFormatter::descriptor,
    []() -> Ref<Object> { return std::make_shared<QKTimecodeSegmentNumberFormatter>(); }};

QKTimecodeSegmentNumberFormatter::QKTimecodeSegmentNumberFormatter() {
  setFormatterBehavior(Behavior10_4);
  QKTimecodeSegmentNumberFormatter::setNumberStyle(DecimalStyle);
  setUsesGroupingSeparator(false);
}

QKTimecodeSegmentNumberFormatter::~QKTimecodeSegmentNumberFormatter() = default;

Ref<Object> QKTimecodeSegmentNumberFormatter::copy() const {
  return std::make_shared<QKTimecodeSegmentNumberFormatter>(*this);
}

bool QKTimecodeSegmentNumberFormatter::isPartialStringValid(std::string_view partial,
                                                            std::optional<std::string>* newString, std::string*) const {
  if (newString) newString->reset();
  Scanner scanner(partial);
  scanner.skipNothing();

  if (scanner.scanString("-") || scanner.scanString(minusSign())) {
    if (minimum() && !(minimum()->doubleValue() < 0)) return false;
  }

  const bool isGrouped =
      usesGroupingSeparator() && !groupingSeparator().empty() && groupingSeparator() != decimalSeparator();
  std::int64_t integerDigits = scanDigits(scanner);
  if (isGrouped && integerDigits > 3) return false;
  while (isGrouped && integerDigits > 0 && scanner.scanString(groupingSeparator())) {
    if (scanDigits(scanner) != 3) return false;
    integerDigits += 3;
  }
  if (integerDigits > maximumIntegerDigits()) return false;

  if (maximumFractionDigits() != 0 && scanner.scanString(decimalSeparator())) {
    if (scanDigits(scanner) > maximumFractionDigits()) return false;
  }
  return scanner.isAtEnd();
}

}  // namespace quill::inline v0
