#include "../Framework/TimecodeModeTable.h"

#include "../Platform/TextServices.h"
#include "SlowLabelWalker.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <type_traits>

namespace quill {
namespace {

static_assert(std::is_same_v<std::underlying_type_t<QKSMPTETimecodeMode>, std::int64_t>);
static_assert(QKSMPTETimecodeModeCustom == 19 && QKSMPTETimecodeModeInvalid == 20);

QKSMPTETimecodeMode modeOf(std::int64_t mode) { return static_cast<QKSMPTETimecodeMode>(mode); }

TEST(TimecodeModeTable, HoldsTheNineteenModesWhoseNamesReadBothWays) {
  // Name, short name, labels a second (0: the rate), dropped labels, and the mode without dropping.
  const std::tuple<std::string, std::string, double, std::int64_t, std::int64_t> rows[] = {
      {"_23976Duration", "23.976 duration", 0, 0, 1},
      {"_23976", "23.976", 24, 0, 1},
      {"_24", "24", 24, 0, 2},
      {"_25", "25", 25, 0, 3},
      {"_2997Duration", "29.97 duration", 0, 0, 5},
      {"_2997", "29.97", 30, 0, 5},
      {"_2997Drop", "29.97df", 30, 2, 5},
      {"_30", "30", 30, 0, 7},
      {"_50", "50", 50, 0, 8},
      {"_5994Duration", "59.94 duration", 0, 0, 10},
      {"_5994", "59.94", 60, 0, 10},
      {"_5994Drop", "59.94df", 60, 4, 10},
      {"_60", "60", 60, 0, 12},
      {"_90", "90", 90, 0, 13},
      {"_100", "100", 100, 0, 14},
      {"_11988Duration", "119.88 duration", 0, 0, 16},
      {"_11988", "119.88", 120, 0, 16},
      {"_11988Drop", "119.88df", 120, 8, 16},
      {"_120", "120", 120, 0, 18},
      {"Custom", "custom", 0, 0, 0},
      {"Invalid", "invalid", 0, 0, 0}};
  for (std::int64_t i = 0; i < 21; ++i) {
    const auto& [name, shortName, labels, dropped, plain] = rows[i];
    const auto mode = modeOf(i);
    EXPECT_EQ(timecodeModeName(mode), "QKSMPTETimecodeMode" + name);
    EXPECT_EQ(timecodeModeShortName(mode), shortName);
    EXPECT_EQ(timecodeModeNamed(timecodeModeName(mode)), mode) << name;
    EXPECT_EQ(timecodeModeNamed(shortName), mode) << shortName;
    const TimecodeModeRow* row = timecodeModeRow(mode);
    ASSERT_EQ(row != nullptr, i < 19) << name;
    if (!row) continue;
    const auto kind = dropped       ? TimecodeModeKind::Drop
                      : labels == 0 ? TimecodeModeKind::Duration
                                    : TimecodeModeKind::Counting;
    const double whole = std::get<2>(rows[plain]),
                 decimals = doubleFromText(shortName.substr(0, shortName.find_first_not_of("0123456789.")));
    const bool isWhole = decimals == whole;
    const double rate = isWhole ? whole : whole * 1000 / 1001;
    EXPECT_NEAR(rate, decimals, 0.002) << name;
    EXPECT_TRUE(row->mode == mode && row->kind == kind && row->plainMode == plain) << name;
    EXPECT_TRUE(row->videoFrameRate() == rate && row->nominalFrameRate() == (labels == 0 ? rate : labels)) << name;
    EXPECT_EQ(static_cast<double>(row->tickRate), whole * 80 * (isWhole ? 1 : 1000)) << name;
    EXPECT_TRUE(row->droppedLabels() == dropped && row->ticksPerFrame() == (isWhole ? 80 : 80080)) << name;
  }
  EXPECT_FALSE(timecodeModeRow(modeOf(-1)) || timecodeModeRow(modeOf(21)));
  EXPECT_TRUE(timecodeModeName(modeOf(21)).empty() && timecodeModeShortName(modeOf(-1)).empty());
}

TEST(TimecodeModeTable, NamesAsPeopleWriteThem) {
  const std::tuple<const char*, std::int64_t> rows[] = {
      {" 29.97 DF ", 6}, {"29.97drop", 6}, {"59.94 Drop-Frame", 11}, {"29.97 ndf", 5},   {"29.97 non-drop", 5},
      {"25fps", 3},      {"23.98", 1},     {"23.98 duration", 0},    {"119.88 DUR", 15}, {"qksmptetimecodemode_30", 7}};
  for (const auto& [text, mode] : rows) EXPECT_EQ(timecodeModeNamed(text), modeOf(mode)) << text;
  for (const char* text : {"", "df", "fps", "31", "24df", "29.97dfdf", "25 duration", "29,97", "29.970"}) {
    EXPECT_FALSE(timecodeModeNamed(text)) << text;
  }
}

TEST(TimecodeModeTable, ADroppedLabelIsOneThatCountingLabelsOneByOneNeverMeets) {
  for (const TimecodeModeRow& row : kTimecodeModeTable) {
    SlowLabelWalker walker(row.countingRate, row.droppedLabels());
    std::int64_t differences = 0, dropped = 0;
    for (std::int64_t n = 0; n < 3600 * row.countingRate; ++n) {
      const std::int64_t second = n / row.countingRate;
      const SMPTEFieldSet label{0, second / 60, second % 60, n % row.countingRate, 0};
      const bool isMet = label == walker.label();
      if (isMet) walker.next();
      dropped += !isMet;
      differences += isDroppedLabel(row.mode, label.minutes, label.seconds, label.frames) == isMet;
    }
    EXPECT_TRUE(differences == 0 && dropped == 54 * row.droppedLabels()) << row.shortName;
  }
  constexpr auto k2997Drop = QKSMPTETimecodeMode_2997Drop;
  EXPECT_TRUE(isDroppedLabel(k2997Drop, 61, 0, 1));
  EXPECT_FALSE(isDroppedLabel(k2997Drop, -1, 0, 1) || isDroppedLabel(k2997Drop, 1, 0, -1));
  EXPECT_FALSE(isDroppedLabel(QKSMPTETimecodeModeCustom, 1, 0, 1) || isDroppedLabel(modeOf(-1), 1, 0, 1));
}

}  // namespace
}  // namespace quill
