// How a session's tasks ended: makes their completions and keeps what these were told.
//
//   Endings endings(files);
//   session.dataTask(url, endings.ofData("a"))->resume();
//   EXPECT_EQ(endings.wait(1).at("a").body, "...");
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "morvelune/platform/FileManager.h"
#include "morvelune/platform/URLSession.h"

namespace morvelune::testing {

struct Ending {
  std::optional<std::string> body;  // of a download, what the file held
  std::optional<URL> location;
  std::optional<URLResponse> response;
  std::optional<Error> error;
  int calls = 0;
};

// It outlives the tasks whose completions it made.
class Endings {
 public:
  explicit Endings(std::shared_ptr<FileManager> files) : files_(std::move(files)) {}

  [[nodiscard]] URLSession::DataCompletion ofData(const std::string& name) {
    return [this, name](std::optional<Data> data, std::optional<URLResponse> response,
                        std::optional<Error> error) {
      add(name, {text(data), {}, std::move(response), std::move(error)});
    };
  }

  [[nodiscard]] URLSession::DownloadCompletion ofDownload(const std::string& name) {
    return [this, name](std::optional<URL> location, std::optional<URLResponse> response,
                        std::optional<Error> error) {
      const auto body = location ? text(files_->contents(*location)) : std::nullopt;
      add(name, {body, std::move(location), std::move(response), std::move(error)});
    };
  }

  // Those of the tasks so far, by name, once there are `count` or ten seconds have passed.
  std::map<std::string, Ending> wait(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return endings_.size() >= count; });
    return endings_;
  }

 private:
  static std::optional<std::string> text(const std::optional<Data>& data) {
    if (!data) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(data->bytes().data()), data->size());
  }

  void add(const std::string& name, Ending ending) {
    const std::lock_guard lock(mutex_);
    ending.calls = endings_[name].calls + 1;
    endings_[name] = std::move(ending);
    changed_.notify_all();
  }

  std::shared_ptr<FileManager> files_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::string, Ending> endings_;
};

}  // namespace morvelune::testing
