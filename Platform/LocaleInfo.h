// Locale: the separators and signs that number text is written with for people.
#pragma once

#include "Export.h"

#include <string>

namespace quill::inline v0 {

struct QUILL_EXPORT Locale {
  std::string decimalSeparator = ".";   // one character
  std::string groupingSeparator = ",";  // one character, or empty
  std::string minusSign = "-";

  // The process's current locale. At first it has the separators of the C++ global locale at its first use; a
  // character that a "char" cannot hold is taken from the wide facet. Not synchronised.
  static const Locale& current();
  // Formatters made before keep the separators that they have.
  static void setCurrent(const Locale& locale);
  // The separators of a C++ locale, as current() takes them from the global one.
  static Locale fromGlobalLocale();

  friend bool operator==(const Locale&, const Locale&) = default;
};

}  // namespace quill::inline v0
