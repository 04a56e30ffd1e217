// The factories of the services on Apple's platforms, one per implementation file.
#pragma once

#import <UIKit/UIKit.h>

#include <memory>

#include "morvelune/platform/Platform.h"

namespace morvelune::apple {

// Runs its tasks on the platform's shared session.
std::shared_ptr<URLSession> makeURLSession();
std::shared_ptr<FileManager> makeFileManager();
std::shared_ptr<NotificationAttachments> makeNotificationAttachments();
std::shared_ptr<Device> makeDevice();
// Null for nil.
std::shared_ptr<const Screen> makeScreen(UIScreen* screen);
std::shared_ptr<Locale> makeLocale();
std::shared_ptr<Text> makeText();
std::shared_ptr<Digest> makeDigest();
std::shared_ptr<NotificationCenter> makeNotificationCenter();
std::shared_ptr<MainQueue> makeMainQueue();
std::shared_ptr<SystemLog> makeSystemLog();

}  // namespace morvelune::apple
