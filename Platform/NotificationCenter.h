// NotificationCenter: posts a named notification to whoever observes its name and sender.
//
// - Observers are called at once, in the order in which they were added, on the poster's thread.
// - An observer may add and remove observers, itself included, and post again; one added during a post is not called
//   for it, one removed is not called any more.
// - Not synchronised.
#pragma once

#include "Number.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quill::inline v0 {

using UserInfo = std::map<std::string, Number, std::less<>>;

struct Notification {
  std::string_view name;
  const Object* object;      // the sender, or null
  const UserInfo* userInfo;  // null when there is none
};

class QUILL_EXPORT NotificationCenter {
 public:
  using Observer = std::function<void(const Notification&)>;

  // Stands for one registration. 0 is none.
  enum class Token : std::uint64_t {};

  // The one of the process, made on first use and never destroyed.
  static NotificationCenter& defaultCenter();

  NotificationCenter();
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;
  ~NotificationCenter();

  // No name observes every name, a null sender every sender.
  Token addObserver(std::optional<std::string> name, const Object* sender, Observer observer);
  // A token that is not (or no longer) registered changes nothing.
  void removeObserver(Token token);
  // Removes every registration for one sender; an object that posts calls it when it dies.
  void removeObserversOf(const Object* sender);

  void post(std::string_view name, const Object* sender, const UserInfo* userInfo);

 private:
  struct Registration {
    Token token;
    std::optional<std::string> name;
    const Object* sender;
    Observer observer;
  };

  std::vector<Ref<Registration>> registrations_;  // in the order of their tokens
  std::uint64_t lastToken_ = 0;
};

}  // namespace quill::inline v0
