// Archives in Data that every later version of the library must read: Data/README.md says what each holds, and rows of
// Data/archives.txt what it reads as. A layout, once its files are there, never changes. QUILL_WRITE_GOLDENS in the
// environment writes the files that are missing.

#include "ArchivedFields.h"
#include "OldLayoutWriter.h"
#include "ReportRecorder.h"
#include "TextTable.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace quill {
namespace {

struct Golden {
  std::string name;
  Ref<Layout> layout;
};

// clang-format off
const std::vector<Golden>& goldens() {
  static const auto& all = *[] {
    // Objects of their own each time: one that is met again would only be referred to.
    const auto info = [] { return infoLayout(29.5, 27000000); };
    const auto old = [] { return oldTicks(48048, 48000, true, 5, 29.5); };
    const auto now = [] { return ticksLayout({8640008640, 2400000}, 6, infoLayout(0, 0)); };
    const auto oldAudio = [&] { return audioLayout(old(), 44100, 3); };
    const auto audio = [&] { return audioLayout(now(), 48000, 9223372036854775809u); };
    LayoutItems flags{{"OSTFDisplaysSubframes", kYes}, {"OSTFDisplaysQuarterFrames", kNo},
                      {"OSTFDisplaysHours", kNo}, {"OSTFHas24HourRollover", kYes}};
    const auto SMPTE0 = deputyLayout("OrbisSMPTETimecodeFormatDeputy", 0, flags);
    std::swap(flags[0].number, flags[1].number);
    flags.emplace_back("oStf_displaysFrames", kYes);
    const auto SMPTE1 = deputyLayout("OrbisSMPTETimecodeFormatDeputy", 1, flags);
    const auto HMS = deputyLayout("OrbisHMSTimecodeFormatDeputy", 0,
                                  {{"OHTFSecondsDecimalPlaces", 4}, {"OHTFHas24HourRollover", 1}});
    const auto video = deputyLayout("OrbisOneDVideoTimecodeFormatDeputy", 0, {});
    const auto sound = deputyLayout("OrbisOneDAudioTimecodeFormatDeputy", 0, {});
    const auto time = deputyLayout("OrbisOneDTimeTimecodeFormatDeputy", 0, {{"OTTFSecondsDecimalPlaces", 2}});
    const auto music = deputyLayout("OrbisMeasuredTimecodeFormatDeputy", 0, {{"OMTFSeparator", 0}, {"OMTFDisplaysDivisionsAndTicks", kNo},
                                                                   {"OMTFIsDivisionsFieldDropped", kYes}, {"OMTFBeatsDecimalPlaces", 2}});
    const auto film = deputyLayout("OrbisFFTimecodeFormatDeputy", 0, {{"OFTFSeparator", 2}, {"OFTFDisplaysQuarterFrames", kYes}});
    const auto collection = collectionLayout({SMPTE1, HMS, video, sound, time, music, film});
    const auto dictionary = dictionaryOf({{0, SMPTE0}, {1, HMS}, {4, time}});
    const auto formatter = [&](std::int64_t version, const char* nilSymbol) {
      const auto symbol = std::make_shared<TextObject>(nilSymbol);
      if (version < 2) return formatterLayout({version, dictionary, 2, true, old(), oldAudio(), symbol, old(), 1});
      return formatterLayout({version, collection, 2, true, now(), audio(), symbol, ticksLayout({1, 2}, 3, info()), 1});
    };
    return new std::vector<Golden>{
        {"custom-video-mode-info-0", info()}, {"video-timecode-1-ticks", old()},
        {"video-timecode-1-seconds", oldSeconds(1.5, true, 5, 29.5)}, {"video-timecode-2-ticks", now()},
        {"video-timecode-2-custom", ticksLayout({-7, 27000000, 3, 5}, 19, info())},
        {"video-timecode-2-seconds", secondsLayout(-0.1, 3, infoLayout(0, 0))},
        {"timecode-0", audio()}, {"timecode-0-of-1", oldAudio()},
        {"extended-timecode-0", extendedLayout(audio(), 132.7, 7, 8, 4)},
        {"smpte-deputy-0", SMPTE0}, {"smpte-deputy-1", SMPTE1}, {"hms-deputy-0", HMS},
        {"video-frames-deputy-0", video}, {"audio-frames-deputy-0", sound}, {"seconds-deputy-0", time},
        {"bars-beats-deputy-0", music}, {"feet-frames-deputy-0", film},
        {"number-formatter-0", numbersLayout()}, {"scrubbable-number-formatter-0", scrubbableLayout()},
        {"deputy-collection-0", collection}, {"formatter-0", formatter(0, "--")}, {"formatter-1", formatter(1, "")},
        {"formatter-2", formatter(2, "--")}, {"formatter-3", formatter(3, "")}, {"formatter-4", formatter(4, "")},
    };
  }();
  return all;
}
// clang-format on

template <class Act>
void eachGolden(Act act) {
  for (const Golden& golden : goldens()) {
    for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
      const std::string file = golden.name + (kind == ArchiveKind::Keyed ? "-keyed.quill" : "-sequential.quill");
      const std::string path = std::string(QUILL_TEST_DATA) + '/' + file;
      if (std::getenv("QUILL_WRITE_GOLDENS") && !std::filesystem::exists(path))
        std::ofstream(path, std::ios::binary) << archivedData(*golden.layout, kind);
      std::ifstream stream(path, std::ios::binary);
      SCOPED_TRACE(file);
      act(golden, kind, std::string(std::istreambuf_iterator<char>(stream), {}));
    }
  }
}

TEST(GoldenArchive, IsReadAndWrittenAsItWas) {
  std::map<std::string, Cells> fields;  // as keyed, and as sequential where they differ
  eachRowIn("archives.txt", "goldens", [&](const Cells& row) { fields[row[0]] = {row.at(1), row.back()}; });
  EXPECT_EQ(fields.size(), goldens().size());
  eachGolden([&](const Golden& golden, ArchiveKind kind, const std::string& bytes) {
    ASSERT_EQ(bytes, archivedData(*golden.layout, kind));
    const ReportRecorder reports;
    const Ref<Object> read = unarchivedObject(bytes, kArchivedClasses);
    EXPECT_EQ(fieldsOf(read), fields.at(golden.name)[kind == ArchiveKind::Keyed ? 0 : 1]);
    EXPECT_TRUE(reports.isQuiet()) << reports;
    // The layouts of today, all keys in their order.
    const bool isOld = golden.layout->classDescriptor().version < read->classDescriptor().version;
    EXPECT_TRUE(isOld || golden.name.ends_with("of-1") || archivedData(*read, kind) == bytes);
  });
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
  eachGolden([](const Golden&, ArchiveKind kind, const std::string& bytes) {
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
