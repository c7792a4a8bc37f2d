// Settings of a number formatter, written as text.
#pragma once

#include "../Platform/NumberFormatter.h"
#include "TextTable.h"

namespace quill {

// A formatter with settings as the rows in Data have them.
template <class Formatter = NumberFormatter>
Formatter formatterOf(const std::string& settings, Formatter f = {}) {
  f.setLocale(Locale{});
  for (const std::string& setting : partsOf(settings, " ")) {
    if (setting.empty()) continue;
    const std::string value = setting.substr(1);
    switch (setting[0]) {
      case 'i': f.setMinimumIntegerDigits(std::stoll(value)); break;
      case 'I': f.setMaximumIntegerDigits(std::stoll(value)); break;
      case 'f': f.setMinimumFractionDigits(std::stoll(value)); break;
      case 'F': f.setMaximumFractionDigits(std::stoll(value)); break;
      case 'd': f.setNumberStyle(NumberFormatter::DecimalStyle); break;
      case 'n': f.setNumberStyle(NumberFormatter::NoStyle); break;
      case 'l':
        f.setLocale({std::string(substring(value, {0, 1})), std::string(substring(value, {1, 1})),
                     std::string(substring(value, {2, 1}))});
        break;
      case 'g': f.setUsesGroupingSeparator(value == "1"); break;
      case 'p': f.setDecimalSeparator(value); break;
      case 's': f.setGroupingSeparator(value); break;
      case '<': f.setMinimum(numberOf(value)); break;
      case '>': f.setMaximum(numberOf(value)); break;
      case 'z': f.setNilSymbol(value); break;
      case '0': f.setZeroSymbol(value); break;
      default: ADD_FAILURE() << setting;
    }
  }
  return f;
}

}  // namespace quill
