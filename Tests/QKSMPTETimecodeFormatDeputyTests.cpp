// What only single cases show; the rows are in Data/formats.txt.

#include "DeputyField.h"

namespace quill {
namespace {

// With options by letter, for labels.
DeputyField fieldOf(std::string_view options) { return {SMPTEFormatterOf(options), QKTimecodeFormatSMPTE}; }

QKSMPTETimecodeFormatDeputy deputyOf(std::string_view options) {
  const auto deputy = SMPTEFormatterOf(options).deputyForFormat(QKTimecodeFormatSMPTE);
  return *classCast<QKSMPTETimecodeFormatDeputy>(deputy.get());
}

TEST(QKSMPTEDeputy, RendersOtherRatesAndValues) {
  OpenVideoTimecode custom = customAt(2000, {3001, 2000});
  HostTimecode host(*timecodeAt(k11988Drop, "0:00:00:104")), atTwo(*timecodeAt(k11988Drop, "0:00:00:002"));
  Number number = 1;
  const std::pair<Object*, const char*> rows[] = {
      {&custom, "00:00:01:1001"}, {&host, "00:00:00;104"}, {&atTwo, "00:00:00;02"}, {&number, ""}};
  for (const auto& [object, text] : rows) EXPECT_EQ(deputyOf("hf").stringForObjectValue(object, {}), text);
  const Ref<QKVideoTimecode> value = timecodeAt(k25, "1:02:03:04");
  EXPECT_EQ(deputyOf("f").stringForObjectValue(value.get(), {}), "02:03:04");
  EXPECT_EQ(labelOf(value), "0:02:03:04") << "hidden hours are taken off the value";
}

TEST(QKSMPTEDeputy, IndexesOutOfBoundsFail) {
  eachPairIn("deputies.txt", "indexes", [](const std::string& call, const std::string& answer) {
    ReportRecorder reports(ReportRecorder::Returned);
    const auto words = partsOf(call, " ");
    std::string got = std::to_string(deputyOf(words[0]).segmentTagForIndex(std::stoll(words[1]), nullptr));
    for (const RecordedAssertion& assertion : reports.assertions) {
      got += ' ' + std::to_string(assertion.line);
      EXPECT_EQ(
          assertion.file + ' ' + assertion.description,
          "QKSMPTETimecodeFormatDeputy -[QKSMPTETimecodeFormatDeputy segmentTagForIndex:inObjectValue:] out-of-bounds segmentIndex.");
    }
    EXPECT_EQ(got, answer);
  });
  bool left = true, right = false;
  deputyOf("hf").segmentWithTagHasPadding(6, &left, &right, nullptr);
  EXPECT_TRUE(left && !right) << "unknown tags are left alone";
}

TEST(QKSMPTEDeputy, WritesAVideoTimecodeAsAHostsValueFieldByField) {
  const auto fields = partsOf("0 1 2 9 23 29 59 60 79 80 119 120 999 4000000000000 9223372036854775807", " ");
  Random random;
  const ReportRecorder reports;
  for (int i = 0; i < 20000; ++i) {
    const Ref<QKVideoTimecode> value = random.value();
    // A host's frames always have two digits, so the text must part its fields.
    std::string text = fields[random.below(fields.size())], options = "f";
    for (std::uint64_t n = 0, more = 1 + random.below(4); n < more; ++n)
      (text += ":;./"[n == 0 ? 0 : random.below(4)]) += fields[random.below(fields.size())];
    for (const char letter : {'h', 's', 'q', 'r'}) options.append(random.below(2), letter);
    DeputyField field = fieldOf(options);
    field.formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(random.below(2)));
    EXPECT_EQ(field.entered(*value, text), field.entered(HostTimecode(*value), text)) << *value << ' ' << text;
  }
  EXPECT_TRUE(reports.assertions.empty()) << reports;
}

TEST(QKSMPTEDeputy, WorksInTheSecondsModeAndRefusesUnknownInterpretations) {
  const auto deputy = deputyOf("hf");
  const auto ten = std::make_shared<OpenVideoTimecode>(secondsIn(k25, 10));
  OpenVideoTimecode below = secondsIn(k25, -10.5);
  Ref<Object> result;
  deputy.getObjectValueIncrementingSegmentWithTag(&result, 1, -1, ten.get());
  EXPECT_EQ(labelOf(result), "-0:01:10:00");
  EXPECT_TRUE(deputy.getObjectValueForSegmentWithTag(nullptr, "5", 2, &below, nullptr));
  EXPECT_EQ(labelOf(below), "-0:00:05:12.40");
  DeputyField field = fieldOf("hf");
  field.formatter.setSMPTEStringInterpretation(static_cast<OrbSMPTEStringInterpretation>(2));
  for (const char* text : {"7", "+7"}) EXPECT_EQ(field.entered(*ten, text), "[Unknown OrbSMPTEStringInterpretation]");
  EXPECT_EQ(field.entered(*ten, ""), "0:00:10:00");
  EXPECT_FALSE(deputy.getObjectValue(nullptr, "7", field.formatter, nullptr));
  EXPECT_TRUE(deputy.getObjectValue(nullptr, "", field.formatter, nullptr));
}

}  // namespace
}  // namespace quill
