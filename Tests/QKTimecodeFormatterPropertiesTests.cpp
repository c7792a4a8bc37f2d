#include "../Framework/QKExtendedTimecode.h"
#include "ArchivedFields.h"
#include "FormatterFixtures.h"

namespace quill {
namespace {

// Writes down what one formatter posts: "p" for a change, "b" for one of a bound.
struct Posts {
  explicit Posts(const QKTimecodeFormatter& formatter) {
    NotificationCenter::defaultCenter().addObserver(
        std::string("QKTimecodeFormatterFormatChangedNotification"), &formatter, [this](const Notification& posted) {
          const UserInfo ofBounds{{"QKTimecodeFormatterMinOrMaxChanged", Number::boolean(true)}};
          EXPECT_TRUE(!posted.userInfo || *posted.userInfo == ofBounds) << "the user information";
          all += posted.userInfo ? 'b' : 'p';
        });
  }
  std::string all;
};

TEST(QKTimecodeFormatterProperties, ChangesPostAndCopiesHaveAllButTheCurrentTimecode) {
  const Ref<QKVideoTimecode> one = timecodeAt(k25, "0:00:01:00"), minusOne = timecodeAt(k25, "-0:00:01:00");
  const ReportRecorder reports;
  const auto formatter = std::make_shared<QKTimecodeFormatter>();
  QKTimecodeFormatter &f = *formatter, assigned;
  Posts posts(f);
  const auto posted = [&](const std::string& expected) { EXPECT_EQ(std::exchange(posts.all, ""), expected); };
  EXPECT_TRUE(fieldsOf(formatter).starts_with("format 0 0 min none max none nil none prototype "));
  EXPECT_NE(fieldsOf(formatter).find("entries 0 deputies SMPTE 0 0 1 1 1; HMS 3 0; "), std::string::npos);
  f.setTimecodeFormat(QKTimecodeFormatSeconds), posted("p");
  f.setTimecodeFormat(QKTimecodeFormatSeconds), posted("");
  f.setAllowsNegative(false), posted("");
  f.setAllowsNegative(true), posted("p");
  f.setMinimum(nullptr), f.setMaximum(nullptr), posted("");
  f.setMinimum(minusOne.get()), f.setMinimum(minusOne.get()), posted("bb");
  f.setAllowsNegative(false), posted("b");  // clears the minimum
  f.setAllowsNegative(true), f.setAllowsNegative(false), posted("pp");
  f.setMaximum(one.get()), f.setMaximum(nullptr), posted("bb");
  EXPECT_EQ(labelOf(f.minimum()) + ' ' + labelOf(f.maximum()), "0:00:00:00 none");
  f.setMaximum(one.get()), posted("b");
  f.setNilSymbol("--"), f.setCurrentTimecode(one), f.setDefaultObjectPrototype(minusOne), posted("");
  f.setSMPTEStringInterpretation(OrbSMPTEStringInterpretationDiscardingUpper), posted("");
  // Settings, whatever the format.
  f.setSMPTEDisplaysHours(true), posted("");
  f.setSMPTEDisplaysHours(false), f.setSMPTEHas24HourRollover(false), posted("pp");
  f.setSMPTEDisplaysSubframes(true), f.setSMPTEDisplaysQuarterFrames(true), posted("pp");
  f.setSMPTEDisplaysFrames(false), posted("p");
  f.setSMPTEDisplaysSubframes(false), posted("");  // reads false while frames are hidden
  f.setSMPTEDisplaysFrames(true), f.setSMPTEDisplaysFrameDivision(true), posted("p");
  f.setSMPTEDisplaysFrameDivision(false), posted("pp");
  f.setSMPTEDisplaysFrameDivision(true), posted("p");
  EXPECT_TRUE(f.SMPTEDisplaysSubframes() && !f.SMPTEDisplaysQuarterFrames());
  f.setSMPTEDisplaysSubframes(false), f.setSMPTEDisplaysQuarterFrames(true), posted("pp");
  EXPECT_TRUE(f.SMPTEDisplaysFrameDivision());
  f.setSMPTEDisplaysFrameDivision(false), posted("p");
  const auto settings = [&] {
    return joined({f.HMSSecondsDecimalPlaces(), int{f.HMSHas24HourRollover()}, f.ODTSecondsDecimalPlaces(),
                   f.MSeparator(), f.MBeatsDecimalPlaces(), int{f.MDisplaysDivisionsAndTicks()},
                   int{f.MIsDivisionsFieldDropped()}, f.FFSeparator(), int{f.FFDisplaysQuarterFrames()}});
  };
  EXPECT_EQ(settings(), "3 0 6 1 3 1 0 1 0");
  f.setHMSSecondsDecimalPlaces(3), f.setHMSHas24HourRollover(false), f.setODTSecondsDecimalPlaces(6), posted("");
  f.setHMSSecondsDecimalPlaces(-2), f.setHMSHas24HourRollover(true), f.setODTSecondsDecimalPlaces(1), posted("ppp");
  f.setMSeparator(1), f.setMBeatsDecimalPlaces(3), f.setMDisplaysDivisionsAndTicks(true), posted("");
  f.setMIsDivisionsFieldDropped(false), f.setFFSeparator(1), f.setFFDisplaysQuarterFrames(false), posted("");
  f.setMSeparator(0), f.setMBeatsDecimalPlaces(2), f.setMDisplaysDivisionsAndTicks(false), posted("ppp");
  f.setMIsDivisionsFieldDropped(true), f.setFFSeparator(2), f.setFFDisplaysQuarterFrames(true), posted("ppp");
  EXPECT_EQ(settings(), "0 1 1 0 2 0 1 2 1");
  EXPECT_TRUE(reports.isQuiet()) << reports;

  f.setAllowsNegative(true), f.setMinimum(minusOne.get());
  assigned.setCurrentTimecode(one);
  assigned = f;
  const auto copied = copyOf(f);
  for (QKTimecodeFormatter* copy : {copied.get(), &assigned}) {
    EXPECT_EQ(fieldsOf(copy->copy()), fieldsOf(formatter));
    EXPECT_FALSE(copy->currentTimecode());
    copy->setSMPTEDisplaysHours(true);  // of deputies of its own
    EXPECT_FALSE(f.SMPTEDisplaysHours());
  }
  EXPECT_NE(fieldsOf(formatter).find("entries 1 deputies SMPTE 0 0 0 0 1; HMS 0 1; "), std::string::npos);
  minusOne->clearTimecode(), f.setAllowsNegative(false);  // clears the minimum, of f alone
  EXPECT_EQ(labelOf(assigned.defaultObjectPrototype()) + labelOf(assigned.minimum()), "-0:00:01:00-0:00:01:00");
}

TEST(QKTimecodeFormatterProperties, BoundsAreCopyableTimecodes) {
  QKVideoTimecode timecode({1, 1}, k25);
  HostTimecode host(timecode), legacy(timecode, &QKBasicTimecode::legacyProtocol);
  HostTimecode fixed(timecode, &QKBasicTimecode::protocol, false), noTimecode(timecode, nullptr);
  Number number = 1;
  ReportRecorder reports(ReportRecorder::Returned);
  for (const auto set : {&QKTimecodeFormatter::setMinimum, &QKTimecodeFormatter::setMaximum}) {
    for (Object* object : std::initializer_list<Object*>{&timecode, &host, &legacy})
      (QKTimecodeFormatter().*set)(object);
    EXPECT_TRUE(reports.isQuiet()) << reports;
    for (Object* object : std::initializer_list<Object*>{&fixed, &noTimecode, &number}) {
      (QKTimecodeFormatter().*set)(object);
      expectAssertion(
          reports, "QKTimecodeFormatter", 0,
          "Invalid object for QKTimecodeFormatter minimum or maximum. Object must conform to QKBasicTimecode, Copying and Coding protocols and also implement -compare:");
    }
  }
}

TEST(QKTimecodeFormatterProperties, GettersHandOutCopies) {
  QKTimecodeFormatter f;
  const Ref<QKVideoTimecode> value = timecodeAt(k25, "0:00:01:00");
  f.setMinimum(value.get()), f.setMaximum(value.get()), f.setCurrentTimecode(value), f.setDefaultObjectPrototype(value);
  for (const auto& copy : {f.minimum(), f.maximum(), f.currentTimecode(), f.defaultObjectPrototype()})
    static_cast<QKVideoTimecode&>(*copy).clearTimecode();
  value->addVideoFrames(25);  // bounds are kept as copies, the other two as given
  EXPECT_EQ(labelOf(f.minimum()) + ' ' + labelOf(f.maximum()), "0:00:01:00 0:00:01:00");
  EXPECT_EQ(labelOf(f.currentTimecode()) + ' ' + labelOf(f.defaultObjectPrototype()), "0:00:02:00 0:00:02:00");
  f.setDefaultObjectPrototype(nullptr);
  EXPECT_TRUE(f.defaultObjectPrototype()->isEqual(QKExtendedTimecode()));
}

// A setting without a deputy of its class answers false, sets nothing and posts nothing.
TEST(QKTimecodeFormatterProperties, DeputiesStandByFormat) {
  const Ref<QKFormatDeputy> plain = std::make_shared<QKFormatDeputy>();
  for (const Ref<QKFormatDeputy>& deputy : {plain, Ref<QKFormatDeputy>()}) {
    QKTimecodeFormatter f;
    const Posts posts(f);
    for (std::int64_t format = -1; format <= 7; ++format) {
      f.setDeputy(deputy, static_cast<QKTimecodeFormat>(format));
      EXPECT_EQ(f.deputyForFormat(static_cast<QKTimecodeFormat>(format)), format < 0 || format > 6 ? nullptr : deputy);
    }
    f.setSMPTEDisplaysHours(true), f.setSMPTEHas24HourRollover(true), f.setSMPTEDisplaysFrameDivision(true);
    f.setHMSHas24HourRollover(true), f.setHMSSecondsDecimalPlaces(2), f.setODTSecondsDecimalPlaces(2);
    EXPECT_FALSE(f.SMPTEDisplaysHours() || f.SMPTEDisplaysFrames() || f.SMPTEHas24HourRollover());
    EXPECT_EQ(posts.all, "");
  }
  EXPECT_EQ(QKTimecodeFormatter::keyPathsForValuesAffectingSMPTEDisplaysFrameDivision(),
            (std::array<std::string_view, 2>{"SMPTEDisplaysSubframes", "SMPTEDisplaysQuarterFrames"}));
}

TEST(QKTimecodeFormatterProperties, AFormatterTakesItsObserversWithIt) {
  std::optional<QKTimecodeFormatter> formatter(std::in_place);
  const Posts posts(*formatter);
  formatter.emplace();  // another one at the same address
  formatter->setAllowsNegative(true);
  EXPECT_EQ(posts.all, "");
}

}  // namespace
}  // namespace quill
