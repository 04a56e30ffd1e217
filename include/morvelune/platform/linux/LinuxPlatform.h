// The platform on Linux, on libcurl, ICU and OpenSSL's libcrypto.
//
//   LinuxOptions options;
//   options.device.country = "FR";
//   Platform::install(makeLinuxPlatform(options));
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Platform.h"

namespace morvelune {

// The bounds of a session's requests.
struct URLSessionOptions {
  // iOS's default time-out: how long a request may stand still, connecting included.
  static constexpr std::chrono::seconds defaultIdleTimeout{60};
  // iOS's default for a whole request, redirects included: seven days.
  static constexpr std::chrono::seconds defaultResourceTimeout{7 * 24 * 60 * 60};
  // As many as iOS is known to follow.
  static constexpr long defaultMaximumRedirects = 20;
  // Far above the headers of any answer that means well.
  static constexpr std::int64_t defaultMaximumHeaderBytes = 256 << 10;
  // Far above any answer to a tracking request, which is read and thrown away.
  static constexpr std::int64_t defaultMaximumDataBytes = 1 << 20;
  // Above the largest attachment that iOS shows, a movie of 50 MB.
  static constexpr std::int64_t defaultMaximumDownloadBytes = 64 << 20;

  std::chrono::seconds idleTimeout = defaultIdleTimeout;
  std::chrono::seconds resourceTimeout = defaultResourceTimeout;
  long maximumRedirects = defaultMaximumRedirects;
  // Headers of all answers to a request: redirects, and trailers behind a body, count too.
  std::int64_t maximumHeaderBytes = defaultMaximumHeaderBytes;
  std::int64_t maximumDataBytes = defaultMaximumDataBytes;          // decoded body of a data task
  std::int64_t maximumDownloadBytes = defaultMaximumDownloadBytes;  // decoded body of a download
  // An existing folder for downloads; empty for the process's own ($TMPDIR, else /tmp).
  std::string temporaryDirectory = {};
};

// The device that the library shall see. What is absent is unknown, except that country and
// languages come from the process's locale, as ICU reads it.
struct DeviceProfile {
  std::optional<std::string> identifierForVendor = {};
  std::optional<Size> screen = {};  // in points, as held
  std::optional<UIInterfaceOrientation> orientation = {};
  std::optional<std::string> country = {};                 // such as "FR"; "" for none
  std::optional<std::vector<std::string>> languages = {};  // most preferred first, such as "fr-FR"
};

struct LinuxOptions {
  URLSessionOptions session = {};
  DeviceProfile device = {};
};

// A main queue that the host's main loop drains.
class MORVELUNE_API LinuxMainQueue : public MainQueue {
 public:
  // Readable, for poll() and its kin, while tasks wait. Owned by the queue.
  [[nodiscard]] virtual int descriptor() const = 0;
  // Runs the tasks that wait now, in order, on the calling thread, and tells how many. Tasks that
  // they queue wait for the next call.
  virtual std::size_t drain() = 0;
};

// A notification centre whose observers are functions. Callable from any thread; observers are
// called on the posting thread.
class MORVELUNE_API LinuxNotificationCenter : public NotificationCenter {
 public:
  using Observer = std::function<void(const PostedNotification&)>;
  enum class Token : std::uint64_t {};

  // Has `observer` called for each post of `name`; with an object only for posts of that very
  // object, which the centre does not keep alive. The token removes it again. Observers are called
  // in the order in which they were added. An observer may add and remove observers. An added one
  // is called from the next post on; a removed one no longer, not even for this post.
  virtual Token addObserver(std::string name, std::shared_ptr<const void> object,
                            Observer observer) = 0;
  // The observer is not called any more, unless a post on another thread is calling it right now.
  // An unknown token does nothing.
  virtual void removeObserver(Token token) = 0;
};

// A session that its owner can end. It is ended when the last handle on it goes, and at the exit of
// the process, where a completion that called exit() leaves its download's file behind. A forked
// child can only let go of it: that waits for no thread, removes no file and touches no connection.
class MORVELUNE_API LinuxURLSession : public URLSession {
 public:
  // Ends every started task that has not ended, with NSURLErrorCancelled. Returns when all
  // completions have returned, or at once when called from a completion. Tasks that are started
  // later fail alike.
  virtual void invalidateAndCancel() = 0;
};

// A session of its own, with two threads that start when they are first needed. While the system
// gives it no thread or no socket, a request fails with NSURLErrorResourceUnavailable, and its
// completion may be called by resume(). As many requests run at once as the limit of descriptors
// allows when the session is made (two each, of all but 64), but of those whose server was heard,
// or that began, within the last 200 ms only 64; the others wait in line, where no time-out counts.
[[nodiscard]] MORVELUNE_API std::shared_ptr<LinuxURLSession> makeLinuxURLSession(
    const URLSessionOptions& options = {});

// A platform with a session of its own, and services as `options` say. It shares the process's main
// queue and notification centre with every other one.
[[nodiscard]] MORVELUNE_API std::shared_ptr<Platform> makeLinuxPlatform(
    const LinuxOptions& options = {});
// The same with a session that the caller keeps.
[[nodiscard]] MORVELUNE_API std::shared_ptr<Platform> makeLinuxPlatform(
    std::shared_ptr<LinuxURLSession> session, const DeviceProfile& device);

// The process's main queue and notification centre.
[[nodiscard]] MORVELUNE_API std::shared_ptr<LinuxMainQueue> linuxMainQueue();
[[nodiscard]] MORVELUNE_API std::shared_ptr<LinuxNotificationCenter> linuxNotificationCenter();

}  // namespace morvelune
