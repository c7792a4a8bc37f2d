#include "../Framework/QKExtendedTimecode.h"
#include "FormatterFixtures.h"

namespace quill {
namespace {

constexpr auto k25 = QKSMPTETimecodeMode_25;
constexpr auto kDiscarding = OrbSMPTEStringInterpretationDiscardingUpper;

const UserInfo kOfBounds{{"QKTimecodeFormatterMinOrMaxChanged", Number::boolean(true)}};

// Counts what one formatter posts.
struct Posts {
  explicit Posts(const QKTimecodeFormatter& formatter) {
    NotificationCenter::defaultCenter().addObserver(
        std::string("QKTimecodeFormatterFormatChangedNotification"), &formatter,
        [this](const Notification& notification) {
          ++all;
          ofBounds += notification.userInfo ? 1 : 0;
          EXPECT_TRUE(!notification.userInfo || *notification.userInfo == kOfBounds) << "the user information";
        });
  }
  int all = 0, ofBounds = 0;
};

TEST(QKTimecodeFormatterProperties, StartPlain) {
  const QKTimecodeFormatter f;
  EXPECT_EQ(f.timecodeFormat(), QKTimecodeFormatSMPTE);
  EXPECT_EQ(f.SMPTEStringInterpretation(), OrbSMPTEStringInterpretationPreservingUpper);
  EXPECT_FALSE(f.allowsNegative() || f.currentTimecode() || f.minimum() || f.maximum());
  EXPECT_EQ(f.nilSymbol(), std::nullopt);
  EXPECT_TRUE(f.defaultObjectPrototype()->isEqual(QKExtendedTimecode()));
  EXPECT_TRUE(f.SMPTEDisplaysHours() && f.SMPTEDisplaysFrames() && f.SMPTEHas24HourRollover());
  EXPECT_FALSE(f.SMPTEDisplaysSubframes() || f.SMPTEDisplaysQuarterFrames());
}

TEST(QKTimecodeFormatterProperties, ChangesPost) {
  const Ref<QKVideoTimecode> one = timecodeAt(k25, "0:00:01:00"), minusOne = timecodeAt(k25, "-0:00:01:00");
  ReportRecorder reports;
  QKTimecodeFormatter f;
  Posts posts(f);
  // What the change before has posted: all of it, and what names a bound.
  auto expect = [&, change = 0](int all, int ofBounds) mutable {
    EXPECT_TRUE(posts.all == all && posts.ofBounds == ofBounds) << "change " << change;
    posts.all = posts.ofBounds = 0;
    ++change;
  };
  f.setTimecodeFormat(QKTimecodeFormatSeconds), expect(1, 0);
  f.setTimecodeFormat(QKTimecodeFormatSeconds), expect(0, 0);
  f.setAllowsNegative(false), expect(0, 0);
  f.setAllowsNegative(true), expect(1, 0);
  f.setMinimum(nullptr), expect(0, 0);
  f.setMinimum(minusOne.get()), expect(1, 1);
  f.setMinimum(minusOne.get()), expect(1, 1);
  f.setAllowsNegative(false), expect(1, 1);  // clears the minimum
  f.setAllowsNegative(true), expect(1, 0);
  f.setAllowsNegative(false), expect(1, 0);
  f.setMaximum(nullptr), expect(0, 0);
  f.setMaximum(one.get()), expect(1, 1);
  f.setMaximum(nullptr), expect(1, 1);
  f.setSMPTEStringInterpretation(kDiscarding), f.setNilSymbol("none"), expect(0, 0);
  // Settings, whatever the format.
  f.setSMPTEDisplaysHours(true), expect(0, 0);
  f.setSMPTEDisplaysHours(false), expect(1, 0);
  f.setSMPTEHas24HourRollover(false), expect(1, 0);
  f.setSMPTEDisplaysSubframes(true), f.setSMPTEDisplaysQuarterFrames(true), expect(2, 0);
  f.setSMPTEDisplaysFrameDivision(true), expect(0, 0);
  f.setSMPTEDisplaysFrames(false), expect(1, 0);
  f.setSMPTEDisplaysSubframes(false), expect(0, 0);  // reads false while frames are hidden
  f.setSMPTEDisplaysFrames(true), expect(1, 0);
  f.setSMPTEDisplaysFrameDivision(false), expect(2, 0);
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

TEST(QKTimecodeFormatterProperties, BoundsKeepTheirOrder) {
  const struct {
    const char *minimum, *maximum;  // null: none
    bool setsMinimum;               // else the maximum
    const char *set, *newMinimum, *newMaximum;
    bool allowsNegative = true;
  } rows[] = {
      {nullptr, "0:00:09:00", true, "0:00:05:00", "0:00:05:00", "0:00:09:00"},
      {nullptr, "0:00:03:00", true, "0:00:05:00", "0:00:03:00", "0:00:03:00"},
      {"0:00:05:00", nullptr, false, "0:00:03:00", "0:00:05:00", "0:00:05:00"},
      {"-0:00:05:00", nullptr, false, "-0:00:03:00", "-0:00:05:00", "-0:00:03:00"},
      {nullptr, nullptr, true, "-0:00:05:00", "0:00:00:00", "none", false},
      {nullptr, "0:00:09:00", false, "-0:00:05:00", "none", "0:00:00:00", false},
      {"0:00:01:00", "0:00:02:00", false, nullptr, "0:00:01:00", "none"},
  };
  for (const auto& row : rows) {
    QKTimecodeFormatter formatter;
    formatter.setAllowsNegative(row.allowsNegative);
    const auto set = [&](const char* label, bool isMinimum) {
      const Ref<QKVideoTimecode> bound = label ? timecodeAt(k25, label) : nullptr;
      isMinimum ? formatter.setMinimum(bound.get()) : formatter.setMaximum(bound.get());
    };
    if (row.minimum) set(row.minimum, true);
    if (row.maximum) set(row.maximum, false);
    set(row.set, row.setsMinimum);
    EXPECT_EQ(labelOf(formatter.minimum()), row.newMinimum) << &row - rows;
    EXPECT_EQ(labelOf(formatter.maximum()), row.newMaximum) << &row - rows;
  }
}

TEST(QKTimecodeFormatterProperties, BoundsAreCopyableTimecodes) {
  QKVideoTimecode timecode({1, 1}, k25);
  HostTimecode host(timecode), legacy(timecode, &QKBasicTimecode::legacyProtocol);
  HostTimecode fixed(timecode, &QKBasicTimecode::protocol, false), noTimecode(timecode, nullptr);
  Number number = 1;
  ReportRecorder reports(ReportRecorder::Returned);
  QKTimecodeFormatter formatter;
  for (Object* object : {static_cast<Object*>(&timecode), static_cast<Object*>(&host), static_cast<Object*>(&legacy),
                         static_cast<Object*>(nullptr)}) {
    formatter.setMinimum(object);
    formatter.setMaximum(object);
    EXPECT_EQ(labelOf(formatter.minimum()), object ? "0:00:01:00" : "none");
  }
  EXPECT_TRUE(reports.isQuiet()) << reports;
  for (Object* object :
       {static_cast<Object*>(&fixed), static_cast<Object*>(&noTimecode), static_cast<Object*>(&number)}) {
    for (const auto set : {&QKTimecodeFormatter::setMinimum, &QKTimecodeFormatter::setMaximum}) {
      (formatter.*set)(object);
      expectAssertion(reports, "QKTimecodeFormatter", 0,
                      "Invalid object for QKTimecodeFormatter minimum or maximum. Object must "
                      "conform to QKBasicTimecode, Copying and Coding protocols and also implement "
                      "-compare:");
    }
  }
}

TEST(QKTimecodeFormatterProperties, GettersHandOutCopies) {
  QKTimecodeFormatter f;
  const Ref<QKVideoTimecode> value = timecodeAt(k25, "0:00:01:00");
  f.setMinimum(value.get());
  f.setCurrentTimecode(value);
  f.setDefaultObjectPrototype(value);
  for (const auto& copy : {f.minimum(), f.currentTimecode(), f.defaultObjectPrototype()}) {
    ASSERT_NE(copy, value);
    static_cast<QKVideoTimecode&>(*copy).clearTimecode();
  }
  EXPECT_EQ(labelOf(value), "0:00:01:00");
  value->setSMPTESeconds(2);  // bounds are kept as copies, the other two as given
  EXPECT_EQ(labelOf(f.minimum()), "0:00:01:00");
  EXPECT_EQ(labelOf(f.currentTimecode()), "0:00:02:00");
  EXPECT_EQ(labelOf(f.defaultObjectPrototype()), "0:00:02:00");
  f.setDefaultObjectPrototype(nullptr);
  EXPECT_TRUE(f.defaultObjectPrototype()->isEqual(QKExtendedTimecode()));
}

TEST(QKTimecodeFormatterProperties, CopiesHaveAllButTheCurrentTimecode) {
  QKTimecodeFormatter formatter, assigned;
  const Ref<QKVideoTimecode> one = timecodeAt(k25, "0:00:01:00"), two = timecodeAt(k25, "0:00:02:00");
  formatter.setAllowsNegative(true);
  formatter.setMinimum(one.get());
  formatter.setMaximum(two.get());
  formatter.setNilSymbol("none");
  formatter.setCurrentTimecode(one);
  formatter.setDefaultObjectPrototype(two);
  formatter.setSMPTEStringInterpretation(kDiscarding);
  formatter.setSMPTEDisplaysHours(false);
  formatter.setTimecodeFormat(QKTimecodeFormatSeconds);
  assigned.setCurrentTimecode(two);
  assigned = formatter;
  const Ref<QKTimecodeFormatter> copied = copyOf(formatter);
  two->clearTimecode();
  for (QKTimecodeFormatter* copy : {copied.get(), &assigned}) {
    EXPECT_TRUE(copy->allowsNegative() && !copy->currentTimecode());
    EXPECT_EQ(labelOf(copy->minimum()), "0:00:01:00");
    EXPECT_EQ(labelOf(copy->maximum()), "0:00:02:00");
    EXPECT_EQ(labelOf(copy->defaultObjectPrototype()), "0:00:02:00");
    EXPECT_EQ(copy->nilSymbol(), "none");
    EXPECT_EQ(copy->SMPTEStringInterpretation(), kDiscarding);
    EXPECT_EQ(copy->timecodeFormat(), QKTimecodeFormatSeconds);
    EXPECT_FALSE(copy->SMPTEDisplaysHours());
    copy->setSMPTEDisplaysHours(true);  // of deputies of its own
    EXPECT_FALSE(formatter.SMPTEDisplaysHours());
  }
}

TEST(QKTimecodeFormatterProperties, DeputiesStandByFormat) {
  QKTimecodeFormatter formatter;
  const Ref<QKFormatDeputy> plain = std::make_shared<QKFormatDeputy>();
  EXPECT_TRUE(classCast<QKSMPTETimecodeFormatDeputy>(
      static_cast<Object*>(formatter.deputyForFormat(QKTimecodeFormatSMPTE).get())));
  for (const std::int64_t format : {-1, 7}) {
    formatter.setDeputy(plain, static_cast<QKTimecodeFormat>(format));
    EXPECT_FALSE(formatter.deputyForFormat(static_cast<QKTimecodeFormat>(format)));
  }
  formatter.setDeputy(plain, QKTimecodeFormatFeetFrames);
  EXPECT_EQ(formatter.deputyForFormat(QKTimecodeFormatFeetFrames), plain);

  // Settings without a deputy of their class answer false, set nothing and post nothing.
  for (const Ref<QKFormatDeputy>& deputy : {plain, Ref<QKFormatDeputy>()}) {
    formatter.setDeputy(deputy, QKTimecodeFormatSMPTE);
    const Posts posts(formatter);
    formatter.setSMPTEDisplaysHours(true);
    formatter.setSMPTEHas24HourRollover(true);
    formatter.setSMPTEDisplaysFrameDivision(true);
    EXPECT_FALSE(formatter.SMPTEDisplaysHours() || formatter.SMPTEDisplaysFrames() ||
                 formatter.SMPTEDisplaysSubframes() || formatter.SMPTEDisplaysQuarterFrames() ||
                 formatter.SMPTEHas24HourRollover() || formatter.SMPTEDisplaysFrameDivision());
    EXPECT_EQ(posts.all, 0);
    EXPECT_EQ(formatter.deputyForFormat(QKTimecodeFormatSMPTE), deputy);
  }
}

TEST(QKTimecodeFormatterProperties, FrameDivisionIsEitherLowerField) {
  QKTimecodeFormatter formatter;
  for (int bits = 0; bits < 8; ++bits) {
    const bool sub = bits & 1, quarter = bits & 2, wanted = bits & 4, is = sub || quarter;
    formatter.setSMPTEDisplaysSubframes(sub);
    formatter.setSMPTEDisplaysQuarterFrames(quarter);
    EXPECT_EQ(formatter.SMPTEDisplaysFrameDivision(), is);
    formatter.setSMPTEDisplaysFrameDivision(wanted);
    EXPECT_EQ(formatter.SMPTEDisplaysSubframes(), wanted == is ? sub : wanted) << bits;
    EXPECT_EQ(formatter.SMPTEDisplaysQuarterFrames(), wanted == is && quarter) << bits;
  }
  EXPECT_EQ(QKTimecodeFormatter::keyPathsForValuesAffectingSMPTEDisplaysFrameDivision(),
            (std::array<std::string_view, 2>{"SMPTEDisplaysSubframes", "SMPTEDisplaysQuarterFrames"}));
}

TEST(QKTimecodeFormatterProperties, AFormatterTakesItsObserversWithIt) {
  std::optional<QKTimecodeFormatter> formatter(std::in_place);
  const Posts posts(*formatter);
  formatter.emplace();  // another one at the same address
  formatter->setAllowsNegative(true);
  EXPECT_EQ(posts.all, 0);
}

}  // namespace
}  // namespace quill
