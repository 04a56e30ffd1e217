#include "tools/morvelune/Keep.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>
#include <utility>

namespace morvelune::tool {
namespace {

namespace fs = std::filesystem;

// The types that the platform shows, each with the file-name extension it is best known by.
constexpr std::array<std::pair<std::string_view, std::string_view>, 11> usualExtensions{
    {{"public.aiff-audio", ".aiff"},
     {"com.microsoft.waveform-audio", ".wav"},
     {"public.mp3", ".mp3"},
     {"public.mpeg-4-audio", ".m4a"},
     {"public.jpeg", ".jpg"},
     {"com.compuserve.gif", ".gif"},
     {"public.png", ".png"},
     {"public.mpeg", ".mpg"},
     {"public.mpeg-2-video", ".m2v"},
     {"public.mpeg-4", ".mp4"},
     {"public.avi", ".avi"}}};

std::string usualExtension(const std::optional<std::string>& type) {
  const auto* const row = std::find_if(usualExtensions.begin(), usualExtensions.end(),
                                       [&](const auto& each) { return each.first == type; });
  return row == usualExtensions.end() ? "" : std::string(row->second);
}

// An identifier comes from the payload and may hold anything.
std::string safe(std::string identifier) {
  constexpr std::size_t longest = 100;  // with all that is added, below the 255 of file systems
  constexpr std::string_view allowed =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
  if (identifier.size() > longest) identifier.resize(longest);
  for (char& c : identifier) {
    if (allowed.find(c) == std::string_view::npos) c = '_';
  }
  return identifier.empty() ? "attachment" : identifier;
}

// Whether the file is there under the new name now; false when the name was taken. A link costs
// nothing and never replaces a file; across file systems, or where there are no links, a copy.
bool place(const fs::path& file, const fs::path& name) {
  std::error_code error;
  fs::create_hard_link(file, name, error);
  if (!error) return true;
  // Made here or not at all, so that what is taken back below is never somebody else's.
  const int made = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (made < 0 && errno == EEXIST) return false;
  if (made < 0) {
    throw fs::filesystem_error("cannot make", name, {errno, std::generic_category()});
  }
  close(made);
  try {
    return fs::copy_file(file, name, fs::copy_options::overwrite_existing);
  } catch (const fs::filesystem_error&) {
    fs::remove(name, error);  // half a copy
    throw;
  }
}

}  // namespace

void prepareKeepFolder(const fs::path& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) fs::create_directories(folder);
  if (access(folder.c_str(), W_OK | X_OK) != 0) {
    throw fs::filesystem_error("cannot write", folder,
                               std::error_code(errno, std::generic_category()));
  }
}

void keepAttachments(const UNNotificationContent::Attachments& attachments, const fs::path& folder,
                     std::map<std::string, std::string>& kept) {
  for (std::size_t i = 0; i < attachments.size(); ++i) {
    const std::string path = attachments[i]->url().path();
    if (kept.contains(path)) continue;
    const std::string stem = std::to_string(i + 1) + '-' + safe(attachments[i]->identifier());
    const std::string extension = usualExtension(attachments[i]->type());
    fs::path name = folder / (stem + extension);
    for (int n = 2; !place(path, name); ++n) {
      name = folder / (stem + '-' + std::to_string(n) + extension);
    }
    kept.emplace(path, name);
  }
}

}  // namespace morvelune::tool
