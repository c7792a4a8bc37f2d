// Archives in Data that every later version of the library must read: Data/README.md says what each holds, and rows of
// Data/archives.txt what it reads as.

#include "../Platform/Archive.h"
#include "ArchivedFields.h"
#include "ReportRecorder.h"
#include "TextTable.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace quill {
namespace {

// Runs each file, with the fields that it reads as.
template <class Act>
void eachGolden(Act act) {
  eachRowIn("archives.txt", "goldens", [act](const Cells& row) {
    for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
      const bool isKeyed = kind == ArchiveKind::Keyed;
      SCOPED_TRACE(isKeyed ? "keyed" : "sequential");
      std::ifstream stream(QUILL_TEST_DATA "/" + row[0] + (isKeyed ? "-keyed.quill" : "-sequential.quill"),
                           std::ios::binary);
      act(kind, std::string(std::istreambuf_iterator<char>(stream), {}), isKeyed ? row.at(1) : row.back());
    }
  });
}

TEST(GoldenArchive, IsReadAndWrittenAsItWas) {
  const std::filesystem::directory_iterator folder(QUILL_TEST_DATA);
  auto files =
      std::count_if(begin(folder), end(folder), [](auto& file) { return file.path().extension() == ".quill"; });
  eachGolden([&files](ArchiveKind kind, const std::string& bytes, const std::string& fields) {
    const ReportRecorder reports;
    const Ref<Object> read = unarchivedObject(bytes, kArchivedClasses);
    EXPECT_EQ(fieldsOf(read), fields);
    EXPECT_TRUE(reports.isQuiet()) << reports;
    // The layouts of today, all keys in their order.
    const auto isOld = [&bytes](const ClassDescriptor* one) {
      return ArchiveReader(bytes).versionForClassName(one->archiveName) < one->version;
    };
    const std::string written = archivedData(*read, kind);
    const bool isAnew = isOld(&read->classDescriptor()) ||
                        (isKindOf(*read, QKTimecode::descriptor) && isOld(&QKVideoTimecode::descriptor));
    EXPECT_EQ(written == bytes, !isAnew);
    --files;
  });
  EXPECT_EQ(files, 0) << "a file without a row";
}

// Nothing for an object that can be written and read again, and for an ArchiveError within the archive: that of an old
// formatter may hold a deputy at the number of another one, which is then read but not read again.
std::string fault(const std::string& bytes, ArchiveKind kind) {
  std::string written;
  try {
    const Ref<Object> read = unarchivedObject(bytes, kArchivedClasses);
    if (!read) return "";
    written = archivedData(*read, kind);
    const Ref<Object> again = unarchivedObject(written, kArchivedClasses);
    return archivedData(*again, kind) == written ? "" : "another object when read again";
  } catch (const ArchiveError& error) {
    return error.byteOffset() <= std::max(bytes.size(), written.size()) ? "" : "an error outside of the archive";
  } catch (const std::exception& error) {
    return error.what();
  }
}

#ifdef QUILL_FULL_SWEEPS
constexpr int kFlips[] = {1, 16, 32, 128, 255};
#else
constexpr int kFlips[] = {32, 255};
#endif

TEST(GoldenArchive, MayEndAnywhereAndHaveAnyByteFlipped) {
  eachGolden([](ArchiveKind kind, const std::string& bytes, const std::string&) {
    const ReportRecorder reports;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const std::string start = bytes.substr(0, i);
      ASSERT_THROW(unarchivedObject(start, kArchivedClasses), ArchiveError) << i;
      ASSERT_EQ(fault(start, kind), "") << i;
      std::string flipped = bytes;
      for (const int flip : kFlips) {
        flipped[i] = static_cast<char>(bytes[i] ^ flip);
        ASSERT_EQ(fault(flipped, kind), "") << i << " by " << flip;
      }
    }
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {  // several behind the head at once
      std::string changed = bytes;
      const std::size_t root = bytes.find("root");
      for (auto changes = 2 + random() % 5; changes > 0; --changes)
        changed[root + random() % (bytes.size() - root)] = static_cast<char>(random());
      ASSERT_EQ(fault(changed, kind), "") << round;
    }
    EXPECT_TRUE(reports.assertions.empty() && reports.logs.empty()) << reports;
  });
}

}  // namespace
}  // namespace quill
