// What reading an archive takes from the heap, however it is made: a fixed multiple of its size.

#include "../ArchivedMarker.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <random>

static std::size_t allocatedBytes = 0;

void* operator new(std::size_t size) {
  allocatedBytes += size;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace quill {
namespace {

// All that is allocated while bytes are read, freed again or not; 1 KB of it for messages and the like.
constexpr std::size_t kBytesPerByte = 64, kFixedBytes = 1024;

std::size_t allocatedBytesToRead(std::string_view bytes, bool* isRead) {
  allocatedBytes = 0;
  try {
    *isRead = unarchivedObject(bytes, kMarkerClasses) != nullptr;
  } catch (const ArchiveError&) {
    *isRead = false;
  }
  return allocatedBytes;
}

std::string repeated(std::string_view text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

std::string withLength(char major, std::uint32_t length) {
  std::string head(1, static_cast<char>(static_cast<unsigned char>(major) | 26));
  for (int shift = 24; shift >= 0; shift -= 8) head += static_cast<char>(length >> shift & 0xFF);
  return head;
}

TEST(ArchiveAllocations, StayInProportionToTheBytes) {
  takeAllLabels();
  const std::string header(
      "\xD9\xD9\xF7\xA5\x66"
      "format\x77"
      "QuillFoundation archive\x67"
      "version\x01\x64"
      "kind\x65"
      "keyed\x67"
      "classes\xA0\x64"
      "root");
  const std::string array = "\x80", map = "\xA0";
  const std::string marker =
                        "\xD8\x1C\x82\x66"
                        "Marker",
                    label =
                        "\xA1\x65"
                        "Label",
                    other =
                        "\xA1\x61"
                        "x";
  constexpr int kMany = 20000;
  std::string manyKeys = withLength('\xA0', kMany), manyNumbers = manyKeys;
  for (int i = 0; i < kMany; ++i) {
    const std::string digits = std::to_string(10000 + i);
    manyKeys += "\x65" + digits + "\x01";
    manyNumbers += std::string{'\x19', static_cast<char>(i >> 8), static_cast<char>(i)} + "\x60";
  }
  const struct {
    const char* name;
    std::string root;
    bool isRead;
  } rows[] = {
      {"a marker", marker + map, true},
      {"a text of 4 GB", withLength('\x60', 0xFFFFFFFF), false},
      {"a byte string of 4 GB", withLength('\x40', 0xFFFFFFFF), false},
      {"an array of 4 G", withLength('\x80', 0xFFFFFFFF), false},
      {"a map of 4 G", withLength('\xA0', 0xFFFFFFFF), false},
      {"an array of 2^64-1", "\x9B\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", false},
      {"unknown keys", marker + manyKeys, true},
      {"unknown empty arrays", marker + other + withLength('\x80', kMany) + repeated(array, kMany), true},
      {"unknown objects", marker + other + withLength('\x80', kMany) + repeated("\xD8\x1C\xF6", kMany), true},
      {"numbered texts", marker + label + manyNumbers, true},
      {"a long text", marker + label + withLength('\x60', kMany) + repeated("x", kMany), true},
      {"keys of one map twice", marker + withLength('\xA0', kMany) + repeated("\x61x\x01", kMany), false},
      {"an unknown class", "\xD8\x1C\x81" + withLength('\x60', kMany) + repeated("x", kMany), false},
      {"nested labels", repeated(marker + label, 31) + "\xF6", true},
  };
  for (const auto& row : rows) {
    const std::string archive = header + row.root;
    bool isRead = false;
    const std::size_t used = allocatedBytesToRead(archive, &isRead);
    EXPECT_EQ(isRead, row.isRead) << row.name;
    EXPECT_LE(used, kFixedBytes + kBytesPerByte * archive.size()) << row.name;
  }

  Marker first;
  const auto second = std::make_shared<Chapter>();
  first.next = first.label = second;
  std::mt19937 random(1);
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    const std::string archive = archivedData(first, kind);
    for (int round = 0; round < 20000; ++round) {
      std::string changed = archive;
      for (auto changes = 1 + random() % 4; changes > 0; --changes) {
        changed[3 + random() % (archive.size() - 3)] = static_cast<char>(random());
      }
      bool isRead = false;
      ASSERT_LE(allocatedBytesToRead(changed, &isRead), kFixedBytes + kBytesPerByte * changed.size());
    }
  }
}

}  // namespace
}  // namespace quill
