// A host's main loop on Linux: it waits for its own descriptors and for the main queue's, and so
// receives on this thread what other threads post.
#include <poll.h>

#include <iostream>
#include <thread>

#include "morvelune/MorveluneExtension.h"
#include "morvelune/platform/linux/LinuxPlatform.h"

using namespace morvelune;

int main() {
  const auto queue = linuxMainQueue();
  int left = 3;
  linuxNotificationCenter()->addObserver(
      "tapped", nullptr, [&left](const PostedNotification& notification) {
        std::cout << "tapped " << notification.userInfo->string("bid").value_or("?") << '\n';
        --left;
      });

  std::thread worker([] {
    for (const char* bid : {"b1", "b2", "b3"}) {
      MVLCommonHelpers::postNotificationOnMainThread("tapped", Dictionary{{"bid", bid}});
    }
  });
  while (left > 0) {
    pollfd descriptors[] = {
        {queue->descriptor(), POLLIN, 0}};  // and whatever else the host waits for
    if (poll(descriptors, 1, -1) > 0) queue->drain();
  }
  worker.join();
}
