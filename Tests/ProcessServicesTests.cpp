// What belongs to the whole process: notifications, the locale, reports.

#include "../Platform/LocaleInfo.h"
#include "../Platform/NotificationCenter.h"
#include "../Platform/NumberFormatter.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <locale>

namespace quill {
namespace {

struct NotificationCenterPosting : ::testing::Test {
  // Writes the label down for each notification it gets.
  NotificationCenter::Observer writing(const char* label) {
    return [this, label](const Notification&) { log += label; };
  }
  std::string posted(std::string_view name, const Object* sender) {
    log.clear();
    center.post(name, sender, nullptr);
    return log;
  }
  NotificationCenter center;
  std::string log;
  Number one = 1, two = 2;
};

TEST_F(NotificationCenterPosting, CallsWhoObservesNameAndSenderInOrder) {
  center.addObserver(std::nullopt, nullptr, writing("all "));
  center.addObserver("a", nullptr, writing("a "));
  center.addObserver(std::nullopt, &one, writing("one "));
  const auto first = center.addObserver("a", &one, writing("a-one "));
  EXPECT_EQ(posted("a", &one), "all a one a-one ");
  EXPECT_EQ(posted("a", &two) + posted("b", &one) + posted("", nullptr), "all a all one all ");
  center.removeObserver(NotificationCenter::Token{99}), center.removeObserversOf(nullptr);
  EXPECT_EQ(posted("a", &one), "all a one a-one ");
  center.removeObserver(first), center.removeObserver(first);
  EXPECT_EQ(posted("a", &one), "all a one ");
  center.removeObserversOf(&one);
  EXPECT_EQ(posted("a", &one), "all a ");
  const UserInfo information{{"key", 7}};
  center.addObserver("c", nullptr, [&](const Notification& c) {
    log += c.name == "c" && c.object == &one && c.userInfo == &information ? "c " : "another ";
  });
  center.post("c", &one, &information);
  EXPECT_EQ(log, "all a all c ");
}

TEST_F(NotificationCenterPosting, LetsObserversPostAndChangeTheList) {
  NotificationCenter::Token self{}, later{};
  self = center.addObserver("a", nullptr, [&](const Notification&) {
    log += "self( ";
    center.post("b", nullptr, nullptr);
    log += ") ";
    center.removeObserver(self), center.removeObserver(later);
    center.addObserver("a", nullptr, writing("new "));
  });
  center.addObserver("b", nullptr, writing("b "));
  center.addObserver("a", nullptr, writing("between "));
  later = center.addObserver("a", nullptr, writing("later "));
  EXPECT_EQ(posted("a", nullptr), "self( b ) between ");
  EXPECT_EQ(posted("a", nullptr), "between new ");
  // An observer may remove others while it dies.
  for (const bool bySender : {false, true}) {
    std::shared_ptr<void> dying(nullptr, [this](void*) { center.removeObserversOf(&two); });
    const auto token = center.addObserver("c", &one, [held = std::move(dying)](const Notification&) {});
    center.addObserver("c", &two, writing("two "));
    bySender ? center.removeObserversOf(&one) : center.removeObserver(token);
    EXPECT_EQ(posted("c", &two), "");
  }
}

template <class Character>
struct Punctuation : std::numpunct<Character> {
  explicit Punctuation(const Character (&marks)[3]) : decimal(marks[0]), thousands(marks[1]) {}
  Character do_decimal_point() const override { return decimal; }
  Character do_thousands_sep() const override { return thousands; }
  Character decimal, thousands;
};

TEST(LocaleInfo, TakesTheSeparatorsOfTheGlobalLocale) {
  const struct {
    char narrow[3];
    wchar_t wide[3];
    Locale expected;
  } rows[] = {
      {", ", L",\u202F", {",", "\u202F", "-"}},
      {",\xA0", L"\u066B\u066C", {"\u066B", "\u066C", "-"}},
      {",.", L".,", {",", ".", "-"}},  // the narrow facet is replaced
      {".,", L",.", {",", ".", "-"}},  // the wide one is
      {".", L".", {".", "", "-"}},
      {{'\0', ','}, {L'\0', L','}, {".", ",", "-"}},
      {",'", {L',', wchar_t(0xD801)}, {",", "'", "-"}},  // half a pair
  };
  for (const auto& row : rows) {
    const std::locale narrow(std::locale::classic(), new Punctuation<char>(row.narrow));
    const std::locale before = std::locale::global({narrow, new Punctuation<wchar_t>(row.wide)});
    const Locale found = Locale::fromGlobalLocale();
    std::locale::global(before);
    EXPECT_EQ(found, row.expected) << found.decimalSeparator << found.groupingSeparator << " of row " << &row - rows;
  }
  // The current one serves formatters made afterwards.
  const Locale before = Locale::current();
  const NumberFormatter early;
  Locale::setCurrent({"\u066B", "'", "\u2212"});
  EXPECT_TRUE(early.locale() == before && NumberFormatter().decimalSeparator() == "\u066B");
  Locale::setCurrent(before);
}

TEST(Reports, PrintAndRaiseByDefault) {
  const ReportRecorder restoring;
  setLogSink({}), setAssertionHandler({}), setLightAssertionSink({});
  ::testing::internal::CaptureStderr();
  ::testing::internal::CaptureStdout();
  logLine("WARNING: no % here %s");
  lightAssertionFailed("a >= 0", "QKTimecode", 132);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "MyAssertMessage: a >= 0,  file: QKTimecode, line: 132, value: 0\n");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "WARNING: no % here %s\n");
  const Number number;
  for (const Object* object : {static_cast<const Object*>(&number), static_cast<const Object*>(nullptr)}) {
    try {
      assertionFailed({"-[Number test]", object, "NumberFile", 7, "it must hold"});
      ADD_FAILURE() << "went on";
    } catch (const InternalInconsistencyFailure& f) {
      EXPECT_EQ(f.method() + f.file() + std::to_string(f.line()) + f.what() + f.object(),
                "-[Number test]NumberFile7it must hold" + (object ? number.classNameAndAddress() : ""));
    }
  }
}

TEST(Reports, GoToTheSinksThatAreSet) {
  const ReportRecorder reports(ReportRecorder::Returned);
  assertionFailed({"-[X y]", nullptr, "X", 1, "three"});  // goes on
  setLogSink([](std::string_view) {})("four");            // the sink before is handed back
  EXPECT_EQ(testing::PrintToString(reports), "log: four\nassertion: -[X y] X:1 three\n");
}

}  // namespace
}  // namespace quill
