// The narrow facet of a named locale only approximates a separator beyond ASCII, so such a one is taken from the wide
// facet. Of two facets that are both ASCII but differ, one was replaced by the host: the one that no longer says what
// the classic locale says.
//
// A locale that does not group still names a separator, which a formatter that is told to group uses: grouping() is not
// consulted.

#include "LocaleInfo.h"

#include "TextServices.h"

#include <locale>

namespace quill::inline v0 {

namespace {

// Empty for a facet that says none.
std::string separatorOf(char narrow, wchar_t wide, char classic) {
  const auto character = static_cast<char32_t>(wide);
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;  // half a pair, in 16 bits
  const bool isUsable = character <= 0x10FFFF && !isSurrogate;
  const bool narrowIsAscii = static_cast<unsigned char>(narrow) < 0x80;
  std::string text;
  if (narrowIsAscii && (!isUsable || (character < 0x80 && narrow != classic))) {
    if (narrow != '\0') text += narrow;
  } else if (isUsable && character != 0) {
    appendCharacter(text, character);
  }
  return text;
}

Locale& currentLocale() {
  static Locale& locale = *new Locale(Locale::fromGlobalLocale());
  return locale;
}

}  // namespace

const Locale& Locale::current() { return currentLocale(); }

void Locale::setCurrent(const Locale& locale) { currentLocale() = locale; }

Locale Locale::fromGlobalLocale() {
  const std::locale global;
  const auto& narrow = std::use_facet<std::numpunct<char>>(global);
  const auto& wide = std::use_facet<std::numpunct<wchar_t>>(global);
  Locale locale;
  const std::string decimal = separatorOf(narrow.decimal_point(), wide.decimal_point(), '.');
  if (!decimal.empty()) locale.decimalSeparator = decimal;
  locale.groupingSeparator = separatorOf(narrow.thousands_sep(), wide.thousands_sep(), ',');
  return locale;
}

}  // namespace quill::inline v0
