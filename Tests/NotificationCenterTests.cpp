#include "../Platform/NotificationCenter.h"

#include <gtest/gtest.h>

namespace quill {
namespace {

class NotificationCenterPosting : public ::testing::Test {
 protected:
  // Writes the label down for each notification it gets.
  NotificationCenter::Observer writing(const char* label) {
    return [this, label](const Notification&) { log_ += label; };
  }
  std::string posted(std::string_view name, const Object* sender) {
    log_.clear();
    center_.post(name, sender, nullptr);
    return log_;
  }
  NotificationCenter center_;
  std::string log_;
  Number one_ = 1, two_ = 2;
};

TEST_F(NotificationCenterPosting, CallsWhoObservesNameAndSenderInOrder) {
  center_.addObserver(std::nullopt, nullptr, writing("all "));
  center_.addObserver("a", nullptr, writing("a "));
  center_.addObserver(std::nullopt, &one_, writing("one "));
  const auto first = center_.addObserver("a", &one_, writing("a-one "));
  EXPECT_EQ(posted("a", &one_), "all a one a-one ");
  EXPECT_EQ(posted("a", &two_), "all a ");
  EXPECT_EQ(posted("b", &one_), "all one ");
  EXPECT_EQ(posted("", nullptr), "all ");
  for (const auto token : {decltype(first){0}, decltype(first){99}}) center_.removeObserver(token);
  center_.removeObserversOf(nullptr);
  EXPECT_EQ(posted("a", &one_), "all a one a-one ");
  center_.removeObserver(first);
  center_.removeObserver(first);
  EXPECT_EQ(posted("a", &one_), "all a one ");
  center_.removeObserversOf(&one_);
  EXPECT_EQ(posted("a", &one_), "all a ");

  const UserInfo information{{"key", 7}};
  center_.addObserver("c", nullptr, [&](const Notification& c) {
    log_ += c.name == "c" && c.object == &one_ && c.userInfo == &information ? "c " : "another ";
  });
  center_.post("c", &one_, &information);
  EXPECT_EQ(log_, "all a all c ");
}

TEST_F(NotificationCenterPosting, LetsObserversPostAndChangeTheList) {
  NotificationCenter::Token self{}, later{};
  self = center_.addObserver("a", nullptr, [&](const Notification&) {
    log_ += "self( ";
    center_.post("b", nullptr, nullptr);
    log_ += ") ";
    center_.removeObserver(self);
    center_.removeObserver(later);
    center_.addObserver("a", nullptr, writing("new "));
  });
  center_.addObserver("b", nullptr, writing("b "));
  center_.addObserver("a", nullptr, writing("between "));
  later = center_.addObserver("a", nullptr, writing("later "));
  EXPECT_EQ(posted("a", nullptr), "self( b ) between ");
  EXPECT_EQ(posted("a", nullptr), "between new ");
}

TEST_F(NotificationCenterPosting, SurvivesObserversThatRemoveWhileTheyDie) {
  for (const bool bySender : {false, true}) {
    std::shared_ptr<void> dying(nullptr, [this](void*) { center_.removeObserversOf(&two_); });
    const auto token = center_.addObserver("a", &one_, [held = std::move(dying)](const Notification&) {});
    center_.addObserver("a", &two_, writing("two "));
    center_.addObserver("a", nullptr, writing("any "));
    bySender ? center_.removeObserversOf(&one_) : center_.removeObserver(token);
    EXPECT_EQ(posted("a", &two_), bySender ? "any any " : "any ");
  }
}

}  // namespace
}  // namespace quill
