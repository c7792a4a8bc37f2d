#include "../Framework/SMPTEArithmetic.h"

#include "OpenVideoTimecode.h"
#include "SlowLabelWalker.h"
#include "TextTable.h"

#include <algorithm>

namespace quill {
namespace {

// Any integer is a rate; a fraction, or a mode given for one, is not.
static_assert(std::is_convertible_v<int, TimeRate> && !std::is_convertible_v<double, TimeRate> &&
              !std::is_convertible_v<QKSMPTETimecodeMode, TimeRate> && TimeRate(-1) == QKTimecodeBestTimeRate);

QKSMPTETimecodeMode modeOf(std::size_t mode) { return static_cast<QKSMPTETimecodeMode>(mode); }

TEST(TimecodeModeTable, HoldsTheNineteenModesWhoseNamesReadBothWays) {
  std::vector<Cells> modes;
  eachRowIn("labels.txt", "modes", [&](const Cells& cells) { modes.push_back(cells); });
  ASSERT_EQ(modes.size(), 21u);
  for (std::size_t i = 0; i < modes.size(); ++i) {
    const std::string name = "QKSMPTETimecodeMode" + modes[i][0], shortName = modes[i][1];
    SCOPED_TRACE(name);
    EXPECT_EQ(timecodeModeName(modeOf(i)), name);
    EXPECT_EQ(timecodeModeShortName(modeOf(i)), shortName);
    EXPECT_TRUE(timecodeModeNamed(name) == modeOf(i) && timecodeModeNamed(shortName) == modeOf(i));
    const TimecodeModeRow* row = timecodeModeRow(modeOf(i));
    ASSERT_EQ(row != nullptr, i < 19);
    if (!row) continue;
    const double labels = doubleOf(modes[i].at(2)), whole = doubleOf(modes.at(std::stoul(modes[i].at(4))).at(2));
    const double decimals = doubleOf(partsOf(partsOf(shortName, " ")[0], "df")[0]);
    const double rate = decimals == whole ? whole : whole * 1000 / 1001;
    EXPECT_NEAR(rate, decimals, 0.002);
    EXPECT_TRUE(row->videoFrameRate() == rate && row->nominalFrameRate() == (labels == 0 ? rate : labels));
    EXPECT_EQ(std::to_string(row->droppedLabels()) + " " + std::to_string(row->plainMode),
              modes[i].at(3) + " " + modes[i][4]);
  }
  EXPECT_FALSE(timecodeModeRow(modeOf(21)) || timecodeModeRow(static_cast<QKSMPTETimecodeMode>(-1)));
  EXPECT_TRUE(timecodeModeName(modeOf(21)).empty() && timecodeModeShortName(modeOf(21)).empty());
}

TEST(TimecodeModeTable, NamesAsPeopleWriteThem) {
  eachRowIn("labels.txt", "mode names", [](const Cells& row) {
    EXPECT_EQ(timecodeModeNamed(row.at(0)).value_or(static_cast<QKSMPTETimecodeMode>(-1)), std::stoi(row.at(1)));
  });
  EXPECT_TRUE(isDroppedLabel(modeOf(6), 61, 0, 1) && !isDroppedLabel(modeOf(6), -1, 0, 1));
  EXPECT_FALSE(isDroppedLabel(modeOf(6), 1, 0, -1) || isDroppedLabel(modeOf(19), 1, 0, 1));
}

// "1 2 3 4" or "1 2 3 4 5".
SMPTEFieldSet fieldSetOf(const std::string& text) {
  std::int64_t f[5] = {};
  std::ranges::transform(partsOf(text, " "), f, [](const std::string& field) { return std::stoll(field); });
  return {f[0], f[1], f[2], f[3], f[4]};
}

TEST(SMPTEArithmetic, LabelsAndFrameNumbersOfWorkedRows) {
  eachRowIn("labels.txt", "frame numbers", [](const Cells& cells) {
    const TimecodeModeRow& row = *timecodeModeRow(timecodeModeNamed(cells.at(0)).value());
    const std::int64_t frame = std::stoll(cells.at(1));
    const SMPTEFieldSet label = fieldSetOf(cells.at(2));
    const auto counting = SMPTECounting::atRate(row.nominalFrameRate(), row.kind == TimecodeModeKind::Drop);
    EXPECT_EQ(labelFromFrame(counting, frame), label);
    EXPECT_EQ(frameFromLabel(counting, label), frame);
    SlowLabelWalker walker{&row};
    for (std::int64_t n = 0; n < frame; ++n) walker.next();
    EXPECT_EQ(walker.label, label);
    // A skipped label is dropped, and stands for the first frame of its minute.
    for (std::int64_t f = 0; f < row.countingRate; ++f) {
      const std::int64_t first = std::max(f, row.droppedLabels());
      EXPECT_EQ(frameFromLabel(counting, {0, 9, 0, f, 0}), frameFromLabel(counting, {0, 9, 0, first, 0})) << f;
      EXPECT_EQ(isDroppedLabel(row.mode, 9, 0, f), first != f) << f;
      EXPECT_FALSE(isDroppedLabel(row.mode, 10, 0, f) || isDroppedLabel(row.mode, 9, 1, f)) << f;
    }
  });
}

// Across a dropped label a change by field arithmetic alone would be D frames off. It is exact for changes that reach no
// further than k seconds to either side of the minute.
TEST(SMPTEArithmetic, SmallChangesMoveByAsManyFramesAsTheySay) {
  for (const std::int64_t rate : {30, 60}) {
    const auto counting = SMPTECounting::atRate(static_cast<double>(rate), true);
    const std::int64_t farthest = 99 / rate * rate;
    std::int64_t differences = 0;
    for (std::int64_t n = farthest; n < counting.framesPerTenMinutes + 2 * rate; ++n) {
      const SMPTEFieldSet label = labelFromFrame(counting, n);
      for (std::int64_t frames = 1; frames < farthest; frames += frames % rate == rate - 1 ? 2 : 1) {
        // Not whole seconds, which move the label, not the frames.
        const SMPTEFieldSet change{0, 0, frames / rate, frames % rate, 0};
        for (const bool adds : {true, false}) {
          SMPTEFieldSet moved = adds ? addFields(label, change, rate) : subtractFields(label, change, rate);
          moved = privateHMSFsFrameAdjustment(moved, dropFrameAdjustment(rate, label, moved, change), rate);
          differences += frameFromLabel(counting, moved) != (adds ? n + frames : n - frames);
        }
      }
    }
    EXPECT_EQ(differences, 0) << rate;
  }
}

TEST(SMPTEArithmetic, DropFrameAdjustment) {
  eachRowIn("labels.txt", "drop-frame adjustment", [](const Cells& row) {
    const SMPTEFieldSet before = fieldSetOf(row.at(1)), after = fieldSetOf(row.at(2)), change = fieldSetOf(row.at(3));
    EXPECT_EQ(dropFrameAdjustment(std::stoll(row.at(0)), before, after, change), std::stoll(row.at(4)));
  });
}

TEST(SMPTEArithmetic, PartsOfAFrameBeginAThousandthEarly) {
  eachRowIn("labels.txt", "parts of a frame", [](const Cells& row) {
    EXPECT_EQ(std::to_string(subframesFromFraction(doubleOf(row.at(0)))), row.at(1));
    EXPECT_EQ(std::to_string(quarterFramesFromFraction(doubleOf(row[0]))), row.at(2));
  });
}

TEST(SMPTEArithmetic, CountsUpToTheEndOf64Bits) {
  EXPECT_EQ(frameFromLabel(SMPTECounting::atRate(29.5, false), {1, 2, 1, 3, 0}), 106200 + 2 * 1770 + 29 + 3);
  for (const double rate : {1.0, 25.0, 30.0, 1e15}) {
    const auto counting = SMPTECounting::atRate(rate, rate == 30);
    for (const std::int64_t n : {std::int64_t{0}, std::int64_t{0xFFFFFFFF}, std::int64_t{0x100000000}, kInt64Highest})
      EXPECT_EQ(frameFromLabel(counting, labelFromFrame(counting, n)), n) << rate;
    for (const std::int64_t hours : {kInt64Highest / counting.framesPerHour + 1, kInt64Highest})
      EXPECT_EQ(frameFromLabel(counting, {hours, hours, 59, hours, 0}), kInt64Highest) << rate;
  }
}

TEST(QKTimecodeUtilities, AreArithmetic) {
  eachRowIn("platform.txt", "least common multiples", [](const Cells& row) {
    const std::uint64_t a = saturatingUInt64(row.at(0)), b = saturatingUInt64(row.at(1)),
                        c = saturatingUInt64(row.at(2));
    EXPECT_TRUE(_QKTimecodeUtilityLCM(a, b) == c && _QKTimecodeUtilityLCM(b, a) == c);
  });
  EXPECT_TRUE(allNonnegative(0, -1) && allNonnegative(3, 1, 0, kInt64Highest) && allNonnegative(2, 1, 0, -1));
  EXPECT_FALSE(allNonnegative(3, 1, 0, -1) || allNonnegative(1, kInt64Lowest));
  EXPECT_EQ(privateSecondsFromHMS(1, 2, 3.5), 3723.5);
  EXPECT_EQ(privateSecondsFromHMS(kInt64Lowest, -1, 0), -kTwoTo63 * 3600 - 60);
}

}  // namespace
}  // namespace quill
