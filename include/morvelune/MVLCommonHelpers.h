// MVLCommonHelpers: the user's country, and notifications that reach observers on the main thread.
//
//   MVLCommonHelpers::postNotificationOnMainThread("tapped", Dictionary{{"bid", "b1"}});
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "morvelune/platform/Value.h"

namespace morvelune {

// Stateless; callable from any thread.
class MVLCommonHelpers {
 public:
  MVLCommonHelpers() = delete;

  // The country code of the user's locale, such as "FR"; "" when it has none.
  [[nodiscard]] static std::string countryCode();

  // Posts a notification through the platform's notification centre from a task on the main queue,
  // and so never before this call has returned, on the main thread either. Posts of one thread
  // arrive in its order. The object, which is the sender, and the dictionary are held until then;
  // absent ones reach observers as absent. Without a name nothing is posted.
  static void postNotificationOnMainThread(std::optional<std::string> name,
                                           std::shared_ptr<const void> object,
                                           std::optional<Dictionary> userInfo);
  // The same without an object.
  static void postNotificationOnMainThread(std::optional<std::string> name,
                                           std::optional<Dictionary> userInfo);
  // The same without an object and a dictionary.
  static void postNotificationOnMainThread(std::optional<std::string> name);
};

}  // namespace morvelune
