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

#include "detection/MediaTypes.h"

namespace morvelune::tool {
namespace {

namespace fs = std::filesystem;

// With its dot; empty when no extension is known.
std::string usualExtension(const std::optional<std::string>& type) {
  for (const detection::MediaType& each : detection::mediaTypes()) {
    if (each.identifier == type) return '.' + std::string(each.extensions.front());
  }
  return "";
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
