// The platform on Linux, on libcurl, ICU and OpenSSL's libcrypto.
//
//   LinuxOptions options;
//   options.device.country = "FR";
//   Platform::install(makeLinuxPlatform(options));
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "morvelune/platform/Platform.h"

namespace morvelune {

// The bounds of a session's requests.
struct URLSessionOptions {
  // The platform's default time-out: how long a request may stand still, connecting included.
  static constexpr std::chrono::seconds defaultIdleTimeout{60};
  // The most that the platform is known to follow.
  static constexpr long defaultMaximumRedirects = 20;
  // Far above any answer to a tracking request, which is read and thrown away.
  static constexpr std::int64_t defaultMaximumDataBytes = 1 << 20;
  // Above the largest attachment that the platform shows, a movie of 50 MB.
  static constexpr std::int64_t defaultMaximumDownloadBytes = 64 << 20;

  std::chrono::seconds idleTimeout = defaultIdleTimeout;
  long maximumRedirects = defaultMaximumRedirects;
  std::int64_t maximumDataBytes = defaultMaximumDataBytes;          // decoded body of a data task
  std::int64_t maximumDownloadBytes = defaultMaximumDownloadBytes;  // decoded body of a download
  // An existing folder for downloads; empty for the process's own ($TMPDIR, else /tmp).
  std::string temporaryDirectory = {};
};

// How the device is held; the values are the platform's own.
enum class ScreenOrientation : std::uint8_t {
  unknown = 0,
  portrait = 1,
  portraitUpsideDown = 2,
  landscapeRight = 3,
  landscapeLeft = 4,
};

// The device that the library shall see. What is absent is unknown, except that country and
// languages come from the process's locale, as ICU reads it.
struct DeviceProfile {
  std::optional<std::string> identifierForVendor = {};
  std::optional<Size> screen = {};  // in points, as held
  std::optional<ScreenOrientation> orientation = {};
  std::optional<std::string> country = {};                 // such as "FR"; "" for none
  std::optional<std::vector<std::string>> languages = {};  // most preferred first, such as "fr-FR"
};

struct LinuxOptions {
  URLSessionOptions session = {};
  DeviceProfile device = {};
};

// A main queue that the host's main loop drains.
class LinuxMainQueue : public MainQueue {
 public:
  // Readable, for poll() and its kin, while tasks wait. Owned by the queue.
  [[nodiscard]] virtual int descriptor() const = 0;
  // Runs the tasks that wait now, in order, on the calling thread, and tells how many. Tasks that
  // they queue wait for the next call.
  virtual std::size_t drain() = 0;
};

// A platform of its own: a session with its two threads, and services as `options` say. It shares
// the process's main queue and notification centre with every other one.
[[nodiscard]] std::shared_ptr<Platform> makeLinuxPlatform(const LinuxOptions& options = {});

// The process's main queue.
[[nodiscard]] std::shared_ptr<LinuxMainQueue> linuxMainQueue();

}  // namespace morvelune
