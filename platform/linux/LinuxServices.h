// The factories of the Linux services, one per implementation file; that of the session is public
// and stands in LinuxPlatform.h.
#pragma once

#include <memory>

#include "morvelune/platform/linux/LinuxPlatform.h"

namespace morvelune {

std::shared_ptr<FileManager> makeLinuxFileManager();
std::shared_ptr<NotificationAttachments> makeLinuxNotificationAttachments();
std::shared_ptr<Device> makeLinuxDevice(const DeviceProfile& profile);
std::shared_ptr<Locale> makeLinuxLocale(const DeviceProfile& profile);
std::shared_ptr<Text> makeLinuxText();
std::shared_ptr<Digest> makeLinuxDigest();
std::shared_ptr<LinuxNotificationCenter> makeLinuxNotificationCenter();
std::shared_ptr<LinuxMainQueue> makeLinuxMainQueue();
std::shared_ptr<SystemLog> makeLinuxSystemLog();

}  // namespace morvelune
