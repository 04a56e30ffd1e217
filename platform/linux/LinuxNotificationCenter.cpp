#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

struct Registration {
  Registration(std::string name_, const std::shared_ptr<const void>& object,
               LinuxNotificationCenter::Observer observer_)
      : name(std::move(name_)),
        owner(object),
        address(object.get()),
        observer(std::move(observer_)) {}

  [[nodiscard]] bool wants(const PostedNotification& notification) const {
    if (name != notification.name) return false;
    if (address == nullptr) return true;
    // The owner too, because a new object may stand at the address of one that is gone.
    const std::shared_ptr<const void>& object = notification.object;
    return address == object.get() && !owner.owner_before(object) && !object.owner_before(owner);
  }

  const std::string name;
  const std::weak_ptr<const void> owner;
  const void* const address;  // null for posts of any object
  const LinuxNotificationCenter::Observer observer;
  LinuxNotificationCenter::Token token{};
  std::atomic<bool> removed = false;
};

class ObserverList : public LinuxNotificationCenter {
 public:
  Token addObserver(std::string name, std::shared_ptr<const void> object,
                    Observer observer) override {
    auto registration =
        std::make_shared<Registration>(std::move(name), object, std::move(observer));
    const std::lock_guard lock(mutex_);
    registration->token = Token{++lastToken_};
    registrations_.push_back(registration);
    return registration->token;
  }

  void removeObserver(Token token) override {
    std::shared_ptr<Registration> removed;  // released after the lock
    const std::lock_guard lock(mutex_);
    const auto found =
        std::find_if(registrations_.begin(), registrations_.end(),
                     [token](const auto& registration) { return registration->token == token; });
    if (found == registrations_.end()) return;
    removed = std::move(*found);
    registrations_.erase(found);
    removed->removed = true;
  }

  void post(const PostedNotification& notification) override {
    for (const auto& registration : thoseThatWant(notification)) {
      if (!registration->removed) registration->observer(notification);
    }
  }

 private:
  [[nodiscard]] std::vector<std::shared_ptr<const Registration>> thoseThatWant(
      const PostedNotification& notification) const {
    std::vector<std::shared_ptr<const Registration>> wanting;
    const std::lock_guard lock(mutex_);
    std::copy_if(registrations_.begin(), registrations_.end(), std::back_inserter(wanting),
                 [&notification](const auto& each) { return each->wants(notification); });
    return wanting;
  }

  mutable std::mutex mutex_;
  std::vector<std::shared_ptr<Registration>> registrations_;  // in the order added
  std::uint64_t lastToken_ = 0;
};

}  // namespace

std::shared_ptr<LinuxNotificationCenter> makeLinuxNotificationCenter() {
  return std::make_shared<ObserverList>();
}

}  // namespace morvelune
