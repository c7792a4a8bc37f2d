#include "../Framework/QKOneDFramesTimecodeFormatDeputy.h"

#include "../Platform/Archive.h"
#include "DeputyField.h"
#include "ReportRecorder.h"

#include <cmath>

namespace quill {
namespace {

// A count of video frames and nothing else, of any 64 bits.
class Counter : public Object, public QKBasicTimecode, public QKOneDimensionalVideoTimecode {
 public:
  Counter(std::uint64_t count, bool isNegative) : count_(count), isNegative_(isNegative) {}
  bool isNegative() const override { return isNegative_; }
  void setIsNegative(bool isNegative) override { isNegative_ = isNegative; }
  void clearTimecode() override { *this = Counter(0, false); }
  int compare(const Object&) const override { return 0; }
  std::uint64_t videoFrames() override { return count_; }
  void setVideoFrames(std::uint64_t frames) override { count_ = frames; }
  void addVideoFrames(std::uint64_t frames) override { add(frames, isNegative_); }
  void subtractVideoFrames(std::uint64_t frames) override { add(frames, !isNegative_); }
  Ref<Object> copy() const override { return std::make_shared<Counter>(*this); }
  void* asProtocol(const Protocol& protocol) override {
    if (&protocol == &QKBasicTimecode::protocol) return static_cast<QKBasicTimecode*>(this);
    const bool isVideo = &protocol == &QKOneDimensionalVideoTimecode::protocol;
    return isVideo ? static_cast<QKOneDimensionalVideoTimecode*>(this) : nullptr;
  }

 private:
  void add(std::uint64_t frames, bool against) {
    const bool crosses = against && frames > count_;
    count_ = crosses ? frames - count_ : against ? count_ - frames : count_ + frames;
    isNegative_ = isNegative_ != crosses;
  }
  std::uint64_t count_;
  bool isNegative_;
};

Ref<Object> counterOf(double count) {
  return std::make_shared<Counter>(static_cast<std::uint64_t>(std::abs(count)), count < 0);
}

const QKOneDVideoTimecodeFormatDeputy video;
const QKOneDAudioTimecodeFormatDeputy audio;
DeputyField counts() { return DeputyField(video, {counterOf}); }

TEST(QKOneDFramesTimecodeFormatDeputySegments, AreGroupsOfThreeDigits) {
  counts().expectSegments(
      "0 > 0; -1 > -1; -999 > -999; 1000 > 1|000; -10000 > -10|000; 123456 > 123|456; 1234567 > 1|234|567; "
      "9e18 > 9|000|000|000|000|000|000");
  const Ref<Object> value = counterOf(1234567);
  Object* const object = value.get();
  EXPECT_EQ(video.formatterForSegmentTag(2, object), &sharedDeputyLeadingIntegerNumberFormatter());
  EXPECT_EQ(video.formatterForSegmentTag(0, object), &sharedDeputyFollowingThreeDigitNumberFormatter());
  EXPECT_EQ(video.segmentTagForIndex(5, object), -1);
  for (const std::int64_t hidden : {std::int64_t{-1}, std::int64_t{3}, kLowest, kHighest}) {
    EXPECT_LT(video.segmentIndexForTag(hidden, object), 0);
    EXPECT_EQ(video.segmentFieldWidthForTag(hidden, object), 0);
    EXPECT_FALSE(video.formatterForSegmentTag(hidden, object));
  }
  EXPECT_EQ(counts().paddings(0, 2), "00 01 01");
  EXPECT_EQ(video.defaultSelectedSegmentTagInObjectValue(object), 0);
  EXPECT_EQ(video.defaultNilSymbol(), "—");
  EXPECT_TRUE(!video.isPartialStringValid("1,2", nullptr) && video.isPartialStringValid("-12", nullptr));
}

TEST(QKOneDFramesTimecodeFormatDeputyParsing, TakesCountsAndAmounts) {
  counts().expectEntries(
      "-100  25  > 25; 100 +25 > 125; -100 +25 > -75; 100 - 125 > -25; -100 > -100; -100 - > -100; "
      "100 9223372036854775807 > 9223372036854775807; 100 12a > [Illegal characters.]; "
      "100 1,5 > [Illegal characters.]; 100 +-5 > [Illegal characters.]; 100 --5 > [Excess + or -'s]");
  DeputyField(audio, {inTicks}).expectEntries("1 25 > 25; 1 +25 > 6000025; 1 -6000025 > -25");  // 6000000 in a second
  EXPECT_EQ(DeputyField(audio).entered(QKVideoTimecode(), "1"), "[Object does not conform to protocol]");
}

TEST(QKOneDFramesTimecodeFormatDeputyStepping, MirrorsThroughZero) {
  counts().expectSteps(
      "999 0 1 > 1000; 1234567 1 -3 > 1231567; 500 0 -501 > -1; 500 1 -1 > -1500; -500 1 1 > 1500; "
      "250500 2 -1 > -1250500; 1000 1 -1 > 0; 1000 1 -2 > -1000; -1000 1 2 > 0; 0 1 -1 > -1000; 7 1 0 > 7; "
      "7 -1 1 > 7; 7 7 1 > 7; 0 6 1 > 1000000000000000000; 0 0 -9223372036854775808 > -1");
  DeputyField(video).expectSteps("20.833333333333332 1 -1 > -1500");  // setting a count in seconds loses the sign
  DeputyField(audio, {inTicks}).expectSteps("1 1 1 > 6001000; 1 2 -7 > -1000000");
}

TEST(QKOneDFramesTimecodeFormatDeputyTyping, ChangesOneGroup) {
  counts().expectTyped(
      "1234567 0 89 > 1234089; 1234567 0 1234 > 1235234; -1234567 1 9 > -1009567; 1234567 2 -9 > -9234567; "
      "-1234567 2 9 > 9234567; 5 0 123456 > 123456; 1e18 6 9 > 9000000000000000000; "
      "1234567 1 99999999999999999999 > 9223372036854775807; 1234567 0 -1 > [Number below the minimum.]; "
      "1234567 0  > [Not a number.]; 1234567 3 1 > [Segment with tag 3 not visible]");
  DeputyField(video).expectTyped("-62.5 0 8 > -1008");
  QKVideoTimecode other;
  EXPECT_EQ(DeputyField(audio).typed(other, 0, "1"), "[Value doesn't conform to protocol]");
}

TEST(QKOneDFramesTimecodeFormatDeputyReports, NameWhatIsMissingOrTooLarge) {
  ReportRecorder reports(ReportRecorder::Returned);
  const QKOneDFramesTimecodeFormatDeputy base;
  const Ref<Object> five = counterOf(5);
  EXPECT_EQ(base.framesFromObject(five.get()), 0);
  base.setFramesOnObject(1, five.get());
  base.addFramesOnObject(1, five.get());
  base.subtractFramesOnObject(1, five.get());
  EXPECT_EQ(video.framesFromObject(five.get()), 5);
  EXPECT_EQ(audio.framesFromObject(five.get()), 0);  // it has none
  const char* const operations[] = {"framesInvocation", "setFramesInvocation", "addFramesInvocation",
                                    "subtractFramesInvocation"};
  ASSERT_EQ(reports.assertions.size(), 4u);
  for (int i = 0; i < 4; ++i) {
    const auto& report = reports.assertions[static_cast<std::size_t>(i)];
    const std::string method = std::string("+[QKOneDFramesTimecodeFormatDeputy ") + operations[i] + "]";
    EXPECT_EQ(report.method, method);
    EXPECT_EQ(report.description, method + " must be implemented by subclass.");
    EXPECT_EQ(report.file, "QKOneDFramesTimecodeFormatDeputy");
    EXPECT_EQ(report.line, 28 + 5 * i);
  }
  Counter large(std::uint64_t{1} << 63, false);
  const std::string light = "MyAssertMessage: frames >= 0,  file: QKOneDFramesTimecodeFormatDeputy";
  EXPECT_EQ(video.framesFromObject(&large), kLowest);
  EXPECT_EQ(reports.lights, std::vector{light + ", line: 59, value: 0\n"});
  EXPECT_EQ(video.segmentCountInObjectValue(&large), 7);
  reports.clear();
  EXPECT_EQ(DeputyField(video).entered(*five, "9223372036854775808"), "-9223372036854775808");
  EXPECT_EQ(reports.lights.front(), light + ", line: 150, value: 0\n");
}

TEST(QKOneDFramesTimecodeFormatDeputyCoding, IsAVersionAlone) {
  for (const ArchiveKind kind : {ArchiveKind::Keyed, ArchiveKind::Sequential}) {
    const std::string videoArchive = archivedData(video, kind), audioArchive = archivedData(audio, kind);
    EXPECT_TRUE(unarchived<QKOneDVideoTimecodeFormatDeputy>(videoArchive));
    EXPECT_TRUE(unarchived<QKOneDAudioTimecodeFormatDeputy>(audioArchive));
    EXPECT_THROW(unarchived<QKOneDAudioTimecodeFormatDeputy>(videoArchive), ArchiveError);
    const bool isKeyed = kind == ArchiveKind::Keyed;
    const auto npos = std::string::npos;
    EXPECT_EQ(videoArchive.find(std::string("OrbisOneDVideoTimecodeFormatDeputyVersion\0", 42)) != npos, isKeyed);
    EXPECT_EQ(audioArchive.find(std::string("OrbisOneDAudioTimecodeFormatDeputyVersion\0", 42)) != npos, isKeyed);
  }
  EXPECT_TRUE(conformsTo(audio.copy().get(), Coding::protocol));
  EXPECT_FALSE(conformsTo(QKOneDFramesTimecodeFormatDeputy().copy().get(), Coding::protocol));
}

TEST(QKOneDFramesTimecodeFormatDeputy, SurvivesRandomInput) {
  const ReportRecorder reports;  // of counts and times out of range
  DeputyField(audio).survivesRandomInput(1234.5);
  counts().survivesRandomInput(1234567);
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

}  // namespace
}  // namespace quill
