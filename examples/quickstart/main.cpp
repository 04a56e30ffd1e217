// Delivers one push as a device would, and prints what would be shown.
#include <future>
#include <iostream>

#include "morvelune/MorveluneExtension.h"

using namespace morvelune;

int main() {
  const UNNotificationRequest request{
      std::make_shared<const UNNotificationContent>(UNNotificationContent::Fields{
          .title = "Summer sale",
          .body = "Two days only",
          .userInfo = Dictionary{
              {"k2tid", "1"},
              {"mvl-tk", Dictionary{{"url", "http://127.0.0.1:9/track"},  // nobody answers there
                                    {"display", "seen?user=|user|&screen=|s|"},
                                    {"params", Dictionary{{"user", "7"}}}}}}})};

  std::promise<std::shared_ptr<const UNNotificationContent>> delivered;
  const auto extension = std::make_shared<MVLNotificationServiceExtension>();
  extension->didReceiveNotificationRequest(
      request, [&delivered](auto content) { delivered.set_value(std::move(content)); });

  const auto content = delivered.get_future().get();
  const auto address = MVLPushHelpers::trackingURLForAction("display", request);
  std::cout << content->title().value_or("") << ": " << content->body().value_or("") << '\n'
            << "attachments: " << content->attachments().size() << '\n'
            << "tracking: " << (address ? address->absoluteString() : "none") << ", scheduled: "
            << content->userInfo()->boolean(MVLPayloadTrackingSentKey).value_or(false) << '\n';
}
