// Registrations stand in the order of their tokens, so a post walks from token to token: what an observer adds has a
// higher token than the last one at the start, and what it removes is not found any more. A registration is held while
// its observer runs, and let go of outside the list, because an observer that dies may come back here.

#include "NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace quill::inline v0 {

NotificationCenter& NotificationCenter::defaultCenter() {
  static NotificationCenter& center = *new NotificationCenter;
  return center;
}

NotificationCenter::NotificationCenter() = default;

NotificationCenter::~NotificationCenter() = default;

NotificationCenter::Token NotificationCenter::addObserver(std::optional<std::string> name, const Object* sender,
                                                          Observer observer) {
  const Token token{++lastToken_};
  registrations_.push_back(
      std::make_shared<Registration>(Registration{token, std::move(name), sender, std::move(observer)}));
  return token;
}

void NotificationCenter::removeObserver(Token token) {
  const auto place =
      std::find_if(registrations_.begin(), registrations_.end(), [=](const auto& one) { return one->token == token; });
  if (place == registrations_.end()) return;
  const Ref<Registration> removed = std::move(*place);
  registrations_.erase(place);
}

void NotificationCenter::removeObserversOf(const Object* sender) {
  if (!sender) return;
  const auto isOther = [=](const auto& one) { return one->sender != sender; };
  const auto removedBegin = std::stable_partition(registrations_.begin(), registrations_.end(), isOther);
  const std::vector<Ref<Registration>> removed(std::make_move_iterator(removedBegin),
                                               std::make_move_iterator(registrations_.end()));
  registrations_.erase(removedBegin, registrations_.end());
}

void NotificationCenter::post(std::string_view name, const Object* sender, const UserInfo* userInfo) {
  const Token last{lastToken_};
  for (Token done{0}; done < last;) {
    const auto next = std::upper_bound(registrations_.begin(), registrations_.end(), done,
                                       [](Token token, const auto& one) { return token < one->token; });
    if (next == registrations_.end() || (*next)->token > last) return;
    const Ref<Registration> one = *next;
    done = one->token;
    if (one->name && *one->name != name) continue;
    if (one->sender && one->sender != sender) continue;
    one->observer({name, sender, userInfo});
  }
}

}  // namespace quill::inline v0
