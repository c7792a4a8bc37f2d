#include "../Platform/LocaleInfo.h"

#include "../Platform/NumberFormatter.h"

#include <gtest/gtest.h>

#include <locale>

namespace quill {
namespace {

template <class Character>
struct Punctuation : std::numpunct<Character> {
  Punctuation(Character decimal, Character thousands) : decimal_(decimal), thousands_(thousands) {}
  Character do_decimal_point() const override { return decimal_; }
  Character do_thousands_sep() const override { return thousands_; }
  std::string do_grouping() const override { return "\3"; }
  Character decimal_, thousands_;
};

TEST(LocaleInfo, TakesTheSeparatorsOfTheGlobalLocale) {
  const struct {
    char narrow[3];
    wchar_t wide[3];
    Locale expected;
  } rows[] = {
      {".,", L".,", {".", ",", "-"}},
      {", ", L",\u202F", {",", "\u202F", "-"}},
      {",\xA0", L"\u066B\u066C", {"\u066B", "\u066C", "-"}},
      {",.", L".,", {",", ".", "-"}},  // the narrow facet is replaced
      {".,", L",.", {",", ".", "-"}},  // the wide one is
      {".", L".", {".", "", "-"}},
      {{'\0', ','}, {L'\0', L','}, {".", ",", "-"}},
      {",'", {L',', wchar_t(0xD801)}, {",", "'", "-"}},  // half a pair
  };
  for (const auto& row : rows) {
    const std::locale narrow(std::locale::classic(), new Punctuation<char>(row.narrow[0], row.narrow[1]));
    const std::locale before = std::locale::global({narrow, new Punctuation<wchar_t>(row.wide[0], row.wide[1])});
    const Locale found = Locale::fromGlobalLocale();
    std::locale::global(before);
    EXPECT_EQ(found, row.expected) << found.decimalSeparator << found.groupingSeparator << " of row " << &row - rows;
  }
}

TEST(LocaleInfo, CurrentOneServesFormattersMadeAfterwards) {
  const Locale before = Locale::current(), other{"\u066B", "'", "\u2212"};
  const NumberFormatter early;
  Locale::setCurrent(other);
  const NumberFormatter late;
  Locale::setCurrent(before);
  EXPECT_TRUE(early.locale() == before && late.locale() == other && Locale::current() == before);
}

}  // namespace
}  // namespace quill
