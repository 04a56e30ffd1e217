// How a session's tasks ended: makes their completions and keeps what these were told, as text.
//
//   Endings endings;
//   session.dataTask(url, endings.of("a"))->resume();
//   EXPECT_EQ(endings.wait(1).at("a"), answered(200, "body"));
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

#include "morvelune/platform/URLSession.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {

using EndingsByName = std::map<std::string, std::string>;

inline std::string answered(int status, const std::string& body) {
  return std::to_string(status).append(" [").append(body).append("]");
}

inline std::string failed(int code) {
  return std::string(NSURLErrorDomain).append(" ").append(std::to_string(code));
}

// It outlives the tasks whose completions it made.
class Endings {
 public:
  // The completion of a data task or of a download. It adds to what was told before, so that the
  // text of a second call, or of an answer beside an error, is none that a test wants.
  [[nodiscard]] auto of(const std::string& name) {
    return [this, name](const auto& got, const std::optional<URLResponse>& response,
                        const std::optional<Error>& error) {
      std::string told = response ? std::to_string(response->statusCode) : "";
      if (got) told.append(" [").append(text(*got)).append("]");
      if (error) told += error->domain + " " + std::to_string(error->code);
      if (error && error->localizedDescription.empty()) told += " undescribed";
      const std::lock_guard lock(mutex_);
      endings_[name] += told;
      changed_.notify_all();
    };
  }

  // Starts a data task and a download, both of which should end so.
  void startBoth(URLSession& session, const std::optional<URL>& url, const std::string& ending) {
    const std::string name = std::to_string(wanted_.size());
    wanted_["data " + name] = wanted_["file " + name] = ending;
    session.dataTask(url, of("data " + name))->resume();
    session.downloadTask(url, of("file " + name))->resume();
  }
  // How the tasks should end that were started so.
  [[nodiscard]] const EndingsByName& wanted() const { return wanted_; }

  // Those of the tasks so far, by name, once there are `count` or ten seconds have passed.
  EndingsByName wait(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return endings_.size() >= count; });
    return endings_;
  }

 private:
  static std::string text(const Data& data) {
    return {reinterpret_cast<const char*>(data.bytes().data()), data.size()};
  }
  static std::string text(const URL& location) { return contentsOf(location.path()); }

  std::mutex mutex_;
  std::condition_variable changed_;
  EndingsByName endings_;
  EndingsByName wanted_;
};

}  // namespace morvelune::testing
