// What is archived comes back, and older layouts are read as they were meant.

#include "ArchivedFields.h"
#include "OldLayoutWriter.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>

namespace quill {
namespace {

constexpr ArchiveKind kKinds[] = {ArchiveKind::Keyed, ArchiveKind::Sequential};

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
  using Double = std::numeric_limits<double>;
  using Integer = std::numeric_limits<std::int64_t>;
  const MediaTime times[] = {{0, 1},
                             {8640008640, 2400000},
                             {-1, 3, 3, -5},
                             {Integer::max(), 0x7fffffff},
                             {Integer::min(), 1, 1, Integer::max()},
                             {1, -48},
                             {},
                             MediaTime::positiveInfinity(),
                             MediaTime::negativeInfinity(),
                             MediaTime::indefinite(),
                             {7, 9, 0xffffffff, 11}};
  for (int mode = -1; mode <= 21; ++mode) {
    const bool isKnown = mode >= 0 && mode <= QKSMPTETimecodeModeCustom;
    const auto expect = [isKnown](const Ref<Layout>& layout, bool isNumber) {
      const auto audio = audioLayout(layout, 0xfedcba9876543210, 0x8000000000000000);
      for (const auto& one : {layout, audio, extendedLayout(audio, 59.94, -1, 0x7fffffff, -3)}) {
        expectComesBack(unarchivedObject(archivedData(*one, kKinds[0]), kArchivedClasses), isKnown && isNumber);
      }
    };
    const auto info = mode == 19 ? infoLayout(29.5, 27000000) : infoLayout(0, 0);
    for (const MediaTime& time : times) expect(ticksLayout(time, mode, info), time.isNumeric());
    for (const double time :
         {0.0, -0.0, -3600.1, Double::max(), Double::denorm_min(), Double::infinity(), Double::quiet_NaN()})
      expect(secondsLayout(time, mode, info), time == time);
  }
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
  const auto shared = ticksLayout({-5, 3}, 3, infoLayout(0, 0));
  for (const auto& [kind, allowsNegative] : {std::pair(kKinds[0], true), {kKinds[1], true}, {kKinds[0], false}}) {
    const auto layout = formatterLayout({4, kNil, 0, allowsNegative, shared, shared, kNil, shared});
    const auto formatter = unarchived<QKTimecodeFormatter>(archivedData(*layout, kind));
    formatter->setAllowsNegative(false);
    EXPECT_EQ(fieldsOf(formatter->minimum()), fieldsOf(formatter->maximum()));
    EXPECT_EQ(fieldsOf(formatter->minimum()), "mode 3 time 0 3 1 0 custom 0 0");
    EXPECT_EQ(fieldsOf(formatter->defaultObjectPrototype()), "mode 3 time -5 3 1 0 custom 0 0");
  }
}

// clang-format off
TEST(Coding, OlderAndOddLayoutsAreReadAsTheyWereMeant) {
  const auto empty = std::make_shared<TextObject>("");
  const auto video = deputyLayout("OrbisOneDVideoTimecodeFormatDeputy", 0, {});
  const auto sound = deputyLayout("OrbisOneDAudioTimecodeFormatDeputy", 0, {});
  const auto SMPTE = [](std::int64_t version) { return deputyLayout("OrbisSMPTETimecodeFormatDeputy", version, {}); };
  const char* const kSame = nullptr;
  const char* const kError = "";
  const struct {
    const char* label;
    Ref<Layout> layout;
    const char* keyed;  // a part of its fields
    const char* sequential;
  } rows[] = {
      {"version 0, no custom rate", oldTicks(5, 7, false, 3, 0, 0), "mode 3 time 5 7 1 0 custom 0 0", kSame},
      {"a rate below 2^31", oldTicks(5, 0x7fffffff, false, 19, 10), "time 5 2147483647 1 0 custom 10 2147483647", kSame},
      {"a rate of 2^31", oldTicks(5, 0x80000000, false, 19, 10), "time 5 -2147483648 1 0 custom 10 27000000", kSame},
      {"a rate past 2^32", oldTicks(5, 0x100000030, true, 19, 10), "time -5 48 1 0 custom 10 27000000", kSame},
      {"ticks past 2^63", oldTicks(0x8000000000000001, 48, true, 3, 0), "time -2 48 1 1 custom 0 0", kSame},
      {"old seconds, no custom rate", oldSeconds(2, false, 3, 0), "mode 3 seconds 2 custom 0 27000000", "mode 0 seconds 0 custom 0 0"},
      {"no custom info", ticksLayout({1, 2}, 3, kNil), "mode 3 time 1 2 1 0 custom 0 0", kSame},
      {"a version to come", ticksLayout({1, 2}, 3, infoLayout(29.5, 27), 9), "time 1 2 1 0 custom 29.5 27", kSame},
      {"empty nil symbol of version 3", formatterLayout({3, kNil, 0, false, kNil, kNil, empty}), "nil none", kSame},
      {"empty nil symbol of version 4", formatterLayout({4, kNil, 0, false, kNil, kNil, empty}), "nil \"\"", kSame},
      {"nothing", formatterLayout({4}), "min none max none nil none prototype mode 6 time 0 1 1 0 custom 0 0 audio 1 0 music 120 4 4 film 1 entries 0 deputies SMPTE 0 0 1 1 1; HMS 3 0; ", kSame},
      {"a dictionary with other numbers", formatterLayout({1, dictionaryOf({{-1, video}, {1, sound}, {2, kNil}, {9, video}})}),
       "1 1; QKOneDAudioTimecodeFormatDeputy; QKOneDVideoTimecodeFormatDeputy; QKOneDAudio", kSame},
      {"keys missing", SMPTE(1), "SMPTE 0 0 0 0 0", kError},
      {"keys missing in version 0", SMPTE(0), "SMPTE 0 0 0 0 1", kError},
  };
  // clang-format on
  for (const auto& row : rows) {
    for (const ArchiveKind kind : kKinds) {
      const ReportRecorder reports;
      const char* const part = kind == ArchiveKind::Keyed || row.sequential == kSame ? row.keyed : row.sequential;
      const std::string bytes = archivedData(*row.layout, kind);
      if (part == kError) {
        EXPECT_THROW(unarchivedObject(bytes, kArchivedClasses), ArchiveError) << row.label;
        continue;
      }
      const std::string fields = fieldsOf(unarchivedObject(bytes, kArchivedClasses));
      EXPECT_NE(fields.find(part), std::string::npos) << row.label << ": " << fields;
      EXPECT_TRUE(reports.logs.empty() && reports.assertions.empty()) << row.label << reports;
    }
  }
  // The audio frames are left out, on purpose.
  for (const auto& [classes, size] : {std::pair(QKTimecodeFormatter::keyedUnarchiverClasses(), 10u),
                                      {_QKTimecodeFormatterDeputyCollection::keyedUnarchiverClasses(), 7u}}) {
    EXPECT_EQ(classes.size(), size);
    EXPECT_EQ(std::count(classes.begin(), classes.end(), &QKOneDAudioTimecodeFormatDeputy::descriptor), 0);
  }
}

}  // namespace
}  // namespace quill
