// Platform: the services through which the library reaches the system that it runs on.
//
// A host that brings a service of its own installs a copy with that service replaced:
//
//   auto mine = std::make_shared<Platform>(*Platform::native());
//   mine->systemLog = std::make_shared<MyLog>();
//   Platform::install(mine);
#pragma once

#include <memory>

#include "morvelune/platform/Device.h"
#include "morvelune/platform/Digest.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/FileManager.h"
#include "morvelune/platform/Locale.h"
#include "morvelune/platform/MainQueue.h"
#include "morvelune/platform/NotificationAttachments.h"
#include "morvelune/platform/NotificationCenter.h"
#include "morvelune/platform/SystemLog.h"
#include "morvelune/platform/Text.h"
#include "morvelune/platform/URLSession.h"

namespace morvelune {

// No service is null in a platform that is installed.
struct MORVELUNE_API Platform {
  std::shared_ptr<URLSession> urlSession;
  std::shared_ptr<FileManager> fileManager;
  std::shared_ptr<NotificationAttachments> notificationAttachments;
  std::shared_ptr<Device> device;
  std::shared_ptr<Locale> locale;
  std::shared_ptr<Text> text;
  std::shared_ptr<Digest> digest;
  std::shared_ptr<NotificationCenter> notificationCenter;
  std::shared_ptr<MainQueue> mainQueue;
  std::shared_ptr<SystemLog> systemLog;

  // The platform in use: the installed one, else native(), which may throw. Never null. Any
  // thread.
  [[nodiscard]] static std::shared_ptr<const Platform> current();
  // Puts `platform` in use for the whole process; null restores the native one. Any thread.
  static void install(std::shared_ptr<const Platform> platform);
  // The platform of the system that this library was built for, made on first use. Never null. A
  // library that was built without one throws std::logic_error.
  [[nodiscard]] static std::shared_ptr<const Platform> native();
};

}  // namespace morvelune
