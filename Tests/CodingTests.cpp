// What is archived comes back, and older layouts are read as they were meant.

#include "ArchivedFields.h"
#include "ArchivedMarker.h"
#include "FormatterFixtures.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace quill {
namespace {

constexpr ArchiveKind kKinds[] = {ArchiveKind::Keyed, ArchiveKind::Sequential};

ArchiveKind kindNamed(const std::string& name) { return kKinds[name == "keyed" ? 0 : 1]; }

// The same fields and bytes, and no report of any kind.
void expectComesBack(const Ref<Object>& object, bool isComparable) {
  for (const ArchiveKind kind : kKinds) {
    const ReportRecorder reports;
    const std::string bytes = archivedData(*object, kind);
    const Ref<Object> read = unarchivedObject(bytes, kArchivedClasses);
    ASSERT_TRUE(read);
    EXPECT_EQ(fieldsOf(read), fieldsOf(object));
    EXPECT_EQ(archivedData(*read, kind), bytes);
    EXPECT_TRUE(!isComparable || (read->isEqual(*object) && object->isEqual(*read)));
    EXPECT_TRUE(reports.isQuiet()) << reports;
  }
}

TEST(Coding, TimecodesOfEveryModeAndTimeComeBack) {
  const std::string
      audio = "1BFEDCBA9876543210 1B8000000000000000",
      more = "FB404DF851EB851EB8 20 1A7FFFFFFF 22",
      versions =
          "A4 'OrbisVideoTimecode' 02 'OrbisTimecode' 00 'OrbisExtendedTimecode' 00 '_OrbisCustomVideoModeInfo' 00";
  eachRowIn("archives.txt", "times", [&](const Cells& row) {
    const bool isTicks = row.at(0).starts_with("00");
    const std::string video = isTicks ? "88'OrbisVideoTimecode'" : "85'OrbisVideoTimecode'",
                      plain = isTicks ? "8A'OrbisTimecode'" : "87'OrbisTimecode'",
                      extended = isTicks ? "8E'OrbisExtendedTimecode'" : "8B'OrbisExtendedTimecode'";
    for (int mode = -1; mode <= 21; ++mode) {
      const bool isKnown = mode >= 0 && mode <= kCustom;
      const std::string time = row[0] + (mode < 0 ? "20" : hexOf(mode)) + "D81C 83 '_OrbisCustomVideoModeInfo'" +
                               (mode == kCustom ? "FB403D800000000000 1A019BFCC0" : "FB0000000000000000 00");
      for (const std::string& root : {video + time, plain + time + audio, extended + time + audio + more}) {
        const std::string bytes = archiveOf(ArchiveKind::Sequential, "D81C" + root, versions);
        expectComesBack(unarchivedObject(bytes, kArchivedClasses), isKnown && row.at(1) == "1");
      }
    }
  });
  QKTimecode made(MediaTime(1, 3), MediaTime(1, 49), 0, 44100);
  made.setAudioFrameSequencePhaseFrame(12);
  expectComesBack(made.copy(), true);
}

TEST(Coding, EveryClassMakesAndCopiesItsOwnAndArchivesWhereItSaysSo) {
  std::vector<const ClassDescriptor*> classes = {&QKFormatDeputy::descriptor,
                                                 &QKOneDFramesTimecodeFormatDeputy::descriptor,
                                                 &QKTimecodeSegmentNumberFormatter::descriptor};
  classes.insert(classes.end(), std::begin(kArchivedClasses), std::end(kArchivedClasses));
  for (const ClassDescriptor* one : classes) {
    const Ref<Object> made = one->make(), copy = made->copy();
    ASSERT_TRUE(copy && copy != made) << one->name;
    EXPECT_TRUE(&made->classDescriptor() == one && &copy->classDescriptor() == one) << one->name;
    EXPECT_EQ(fieldsOf(copy), fieldsOf(made));
    EXPECT_TRUE(conformsTo(made.get(), Copying::protocol)) << one->name;
    EXPECT_EQ(conformsTo(made.get(), Coding::protocol), one->makeWithCoder != nullptr) << one->name;
  }
}

TEST(Coding, FormattersWithAllOptionsChangedComeBack) {
  expectComesBack(std::make_shared<QKTimecodeFormatter>(), false);
  std::ifstream stream(QUILL_TEST_DATA "/formatter-4-keyed.quill", std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(stream), {});
  QKTimecodeFormatter formatter = *unarchived<QKTimecodeFormatter>(bytes);
  for (const char* symbol : {"", "none \xE2\x80\x94", "\xFF"}) {
    formatter.setNilSymbol(symbol);
    for (std::int64_t format = -1; format <= 7; ++format) {
      QKTimecodeFormatter without = formatter;  // a deputy that is absent stays so
      without.setDeputy(nullptr, static_cast<QKTimecodeFormat>(format));
      expectComesBack(without.copy(), false);
    }
  }
}

TEST(Coding, BoundsAreTheFormattersOwnEvenWhereAnArchiveHoldsOneObjectThrice) {
  eachRowIn("archives.txt", "shared bounds", [](const Cells& row) {
    const auto formatter = unarchived<QKTimecodeFormatter>(archiveOf(kindNamed(row.at(0)), row.at(2), row.at(1)));
    formatter->setAllowsNegative(false);
    EXPECT_EQ(fieldsOf(formatter->minimum()), fieldsOf(formatter->maximum()));
    EXPECT_EQ(fieldsOf(formatter->minimum()), "mode 3 time 0 3 1 0 custom 0 0");
    EXPECT_EQ(fieldsOf(formatter->defaultObjectPrototype()), "mode 3 time -5 3 1 0 custom 0 0");
  });
}

TEST(Coding, OlderAndOddLayoutsAreReadAsTheyWereMeant) {
  eachRowIn("archives.txt", "layouts", [](const Cells& row) {
    const ReportRecorder reports;
    const std::string bytes = archiveOf(kindNamed(row.at(0)), row.at(2), row.at(1));
    if (row.at(3) == "nothing: an ArchiveError") {
      EXPECT_THROW(unarchivedObject(bytes, kArchivedClasses), ArchiveError);
      return;
    }
    const std::string fields = fieldsOf(unarchivedObject(bytes, kArchivedClasses));
    EXPECT_NE(fields.find(row[3]), std::string::npos) << fields;
    EXPECT_TRUE(reports.logs.empty() && reports.assertions.empty()) << reports;
  });
  // The audio frames are left out, on purpose.
  for (const auto& [classes, size] : {std::pair(QKTimecodeFormatter::keyedUnarchiverClasses(), 10u),
                                      {_QKTimecodeFormatterDeputyCollection::keyedUnarchiverClasses(), 7u}}) {
    EXPECT_EQ(classes.size(), size);
    EXPECT_EQ(std::count(classes.begin(), classes.end(), &QKOneDAudioTimecodeFormatDeputy::descriptor), 0);
  }
}

}  // namespace
}  // namespace quill
