// MVLCommonHelpers: the user's country, and notifications that reach observers on the main thread.
//
//   MVLCommonHelpers::postNotificationOnMainThread("tapped", Dictionary{{"bid", "b1"}});
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// Stateless; callable from any thread.
class MORVELUNE_API MVLCommonHelpers {
 public:
  MVLCommonHelpers() = delete;

  // The country code of the user's locale, such as "FR"; "" when it has none.
  [[nodiscard]] static std::string countryCode();

  // Queues a task for the main thread that posts a notification through the platform's notification
  // centre. Nothing is posted within this call, not even on the main thread. Posts of one thread
  // arrive in the order of its calls. The object, which is the sender, and the dictionary are held
  // until then; absent ones reach observers as absent. Without a name nothing is posted.
  static void postNotificationOnMainThread(std::optional<std::string_view> name,
                                           std::shared_ptr<const void> object,
                                           std::optional<Dictionary> userInfo);
  // The same without an object.
  static void postNotificationOnMainThread(std::optional<std::string_view> name,
                                           std::optional<Dictionary> userInfo);
  // The same without an object and a dictionary.
  static void postNotificationOnMainThread(std::optional<std::string_view> name);
};

}  // namespace morvelune
