// What the text side must do without the heap, counted in a process whose operator new counts.

#include "../../Framework/QKTimecodeSegmentNumberFormatter.h"
#include "../../Platform/NotificationCenter.h"
#include "../../Platform/TextServices.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>

static int allocationCount = 0;

void* operator new(std::size_t size) {
  ++allocationCount;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace quill {
namespace {

TEST(TextAllocations, AreNoneInWhatRunsPerKeystroke) {
  std::string text;
  text.reserve(64);
  const CharacterSet legal(",.;:0123456789");
  QKTimecodeSegmentNumberFormatter formatter;
  formatter.setMinimum(0);
  const Number sender = 1;
  NotificationCenter idle, center;
  int calls = 0;
  center.addObserver(std::nullopt, nullptr, [&](const Notification&) { ++calls; });

  const struct {
    const char* label;
    std::function<void()> run;
  } rows[] = {
      {"integers", [&] { appendInteger(text, std::int64_t{-123}), appendPadded(text, -5, 4); }},
      {"fixed", [&] { appendFixed(text, 12.5, 3); }},
      {"set", [&] { EXPECT_TRUE(CharacterSet(legal).contains('5')); }},
      {"scanner",
       [&] {
         Scanner scanner(" 12:30.5");
         std::string_view found;
         EXPECT_TRUE(scanner.scanCharacters(CharacterSet::decimalDigits(), &found));
         EXPECT_TRUE(scanner.scanString(":"));
         double value = 0;
         scanner.setDecimalSeparator(".");
         EXPECT_TRUE(scanner.scanDouble(&value));
         EXPECT_TRUE(scanner.isAtEnd());
       }},
      {"parsing", [&] { EXPECT_TRUE(formatter.getNumber(nullptr, " 47.25 ", nullptr)); }},
      {"typing", [&] { EXPECT_FALSE(formatter.isPartialStringValid("-4", nullptr, nullptr)); }},
      {"posting to nobody", [&] { idle.post("name", &sender, nullptr); }},
      {"posting to somebody", [&] { center.post("name", &sender, nullptr); }},
  };
  for (const auto& row : rows) {
    text.clear();
    row.run();  // makes what is made on first use
    text.clear();
    const int before = allocationCount;
    row.run();
    EXPECT_EQ(allocationCount, before) << row.label;
  }
  EXPECT_EQ(calls, 2);

  const int before = allocationCount;
  const CharacterSet other("é");
  EXPECT_GT(allocationCount, before) << "the count works";
}

}  // namespace
}  // namespace quill
