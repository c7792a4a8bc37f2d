// Numbers out of any text; the first bytes choose a number formatter's settings. What is read lies within the bounds, is
// what the C library reads, and comes back from its own text.

#include "../Framework/QKTimecodeSegmentNumberFormatter.h"
#include "../Platform/TextServices.h"
#include "FuzzInput.h"

#include <bit>
#include <cmath>

using namespace quill;

static void checkFormatter(FuzzInput& in) {
  const Locale locales[] = {{".", ",", "-"}, {",", ".", "-"}, {"\u066B", "\u066C", "\u2212"}, {".", "", "-"}};
  QKTimecodeSegmentNumberFormatter formatter;
  formatter.setLocale(in.of(locales));
  formatter.setUsesGroupingSeparator(in.below(2) != 0);
  formatter.setMinimumIntegerDigits(in.below(256));
  formatter.setMaximumFractionDigits(in.of<std::int64_t>({1100, 0, 3}));
  const auto bounds = in.below(4);
  const auto minimum = in.take<double>(), maximum = in.take<double>();
  if (bounds & 1) formatter.setMinimum(minimum);
  if (bounds & 2) formatter.setMaximum(maximum);
  formatter.isPartialStringValid(in.text, nullptr, nullptr);
  Number number, again;
  if (!formatter.getNumber(&number, in.text, nullptr)) return;
  const double value = number.doubleValue();
  QUILL_REQUIRE(!((bounds & 1) && value < minimum) && !((bounds & 2) && value > maximum));
  const bool isWhole = number.kind() == Number::Kind::Signed;
  if (!std::isfinite(value) || (!isWhole && formatter.maximumFractionDigits() < 1100)) return;
  QUILL_REQUIRE(formatter.getNumber(&again, formatter.stringFromNumber(number), nullptr));
  QUILL_REQUIRE(isWhole ? again == number : again.doubleValue() == value);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput in(data, size);
  checkFormatter(in);
  Scanner scanner(in.text);
  scanner.skipNothing();
  scanner.setDecimalSeparator(".");
  double scanned = 0;
  if (scanner.scanDouble(&scanned)) {  // the C library is in the C locale here
    const double expected = std::strtod(std::string(in.text.substr(0, scanner.byteOffset())).c_str(), nullptr);
    QUILL_REQUIRE(std::bit_cast<std::uint64_t>(scanned) == std::bit_cast<std::uint64_t>(expected));
  }
  return 0;
}
