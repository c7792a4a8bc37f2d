// Runs the suite. With --comma-locale it first gives the process a C and a C++ global locale that write a decimal
// comma, and pins the library's own locale to the plain one: the results must be the same then, and a result that
// differs comes from code that asks a global locale where it must not.

#include "Platform/LocaleInfo.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <locale>
#include <sstream>
#include <string>

namespace {

template <class Character>
class CommaPunctuation : public std::numpunct<Character> {
 protected:
  Character do_decimal_point() const override { return Character{','}; }
  Character do_thousands_sep() const override { return Character{'.'}; }
  std::string do_grouping() const override { return "\3"; }
};

// False, with a word on standard error, when the process did not come to write commas.
bool setCommaLocales() {
  if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) {
    std::fputs("no C locale de_DE.UTF-8: is the system's package of locales installed?\n", stderr);
    return false;
  }
  std::locale::global(
      std::locale(std::locale(std::locale(), new CommaPunctuation<char>), new CommaPunctuation<wchar_t>));
  char printed[16];
  std::snprintf(printed, sizeof printed, "%.1f", 1.5);
  std::ostringstream streamed;
  streamed << 1234.5;
  if (std::strcmp(printed, "1,5") != 0 || streamed.str() != "1.234,5") {
    std::fprintf(stderr, "no decimal comma: \"%s\", \"%s\"\n", printed, streamed.str().c_str());
    return false;
  }
  quill::Locale::setCurrent(quill::Locale{});
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  bool commas = false;
  for (int i = 1; i < argc; ++i) commas = commas || std::strcmp(argv[i], "--comma-locale") == 0;
  if (commas && !setCommaLocales()) return 1;
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
