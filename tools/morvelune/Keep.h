// Keeps delivered attachments in a folder of the user's.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include "morvelune/platform/UNNotificationContent.h"

namespace morvelune::tool {

// Makes the folder, and those that it is in, unless it is there. Throws
// std::filesystem::filesystem_error when that fails or no file can be made in it.
void prepareKeepFolder(const std::filesystem::path& folder);

// Puts each file into the folder, named by its position, identifier and type, such as
// "1-photo.png", and notes its new path in `kept`, where those that were kept already stand. What
// else is in the folder is left alone, and a name that is taken is changed to "1-photo-2.png". The
// old files stay until the caller removes them. Only a file that was made here is written to, and
// one that was not finished is removed. False when `isEnough` gave true, which is asked now and
// then. Throws std::filesystem::filesystem_error when a file cannot be kept.
[[nodiscard]] bool keepAttachments(const UNNotificationContent::Attachments& attachments,
                                   const std::filesystem::path& folder,
                                   std::map<std::string, std::string>& kept,
                                   const std::function<bool()>& isEnough);

}  // namespace morvelune::tool
