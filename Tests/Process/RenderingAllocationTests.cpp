// What rendering may take from the heap: nothing for a text that std::string holds in itself, one block for a longer one.

#include "../FormatterFixtures.h"

#include <cstdlib>
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

TEST(RenderingAllocations, AreThoseOfTheStringAlone) {
  const std::size_t held = std::string().capacity();  // characters without the heap
  const struct {
    QKSMPTETimecodeMode mode;
    const char* label;
    bool showsSubframes;
    const char* text;
  } rows[] = {
      {QKSMPTETimecodeMode_25, "1:02:03:04", false, "01:02:03:04"},
      {QKSMPTETimecodeMode_2997Drop, "-1:02:03:04", false, "-01:02:03;04"},
      {QKSMPTETimecodeMode_2997Duration, "1:02:03:04.05", true, "01:02:03:04.05"},
      {QKSMPTETimecodeMode_120, "1:02:03:104.05", true, "01:02:03:104.05"},
      {QKSMPTETimecodeMode_120, "-1:02:03:104.05", true, "-01:02:03:104.05"},
  };
  for (const auto& row : rows) {
    QKTimecodeFormatter formatter;
    formatter.setAllowsNegative(true);
    formatter.setSMPTEDisplaysSubframes(row.showsSubframes);
    const Ref<QKVideoTimecode> value = timecodeAt(row.mode, row.label);
    for (int i = 0; i < 2; ++i) {  // the first time, too
      const int before = allocationCount;
      const std::optional<std::string> text = formatter.stringForObjectValue(value.get());
      const int made = allocationCount - before;
      EXPECT_EQ(text, row.text);
      EXPECT_EQ(made, std::string_view(row.text).size() > held ? 1 : 0) << row.text;
    }
  }
}

}  // namespace
}  // namespace quill
