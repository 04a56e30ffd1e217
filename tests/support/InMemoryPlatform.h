// A platform in memory: its network, files, device and log are what the test says.
//
//   InMemoryPlatform memory;                       // installed until it goes out of scope
//   memory.network().answer("http://h/a.png", {.body = png()});
//   ...start tasks...
//   memory.network().finish("http://h/a.png");     // runs the completion, on this thread
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "morvelune/platform/Platform.h"

namespace morvelune::testing {

// What a scripted server answers: a response with a body, or an error.
struct Answer {
  int status = 200;
  std::string body = {};
  std::optional<std::string> suggestedFilename = {};
  std::optional<Error> error = {};
};

// Files that exist only in memory, by path.
class InMemoryFileManager : public FileManager {
 public:
  [[nodiscard]] std::optional<Data> contents(const URL& file) const override;
  [[nodiscard]] std::optional<Error> moveItem(const URL& from, const URL& to) override;
  [[nodiscard]] std::string globallyUniqueString() override;

  void write(const std::string& path, std::string bytes);
  void remove(const std::string& path);
  [[nodiscard]] bool exists(const std::string& path) const;
  [[nodiscard]] std::vector<std::string> paths() const;

 private:
  mutable std::mutex mutex_;
  std::map<std::string, std::string> files_;
  std::uint64_t uniqueStrings_ = 0;
};

// A session whose requests finish when the test says so, on the test's thread.
class InMemoryURLSession : public URLSession {
 public:
  explicit InMemoryURLSession(std::shared_ptr<InMemoryFileManager> files);
  ~InMemoryURLSession() override;

  [[nodiscard]] std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                                         DataCompletion completion) override;
  [[nodiscard]] std::shared_ptr<URLSessionTask> downloadTask(
      std::optional<URL> url, DownloadCompletion completion) override;
  void invalidateAndCancel() override;

  // What requests for `url` are answered; one that nothing was said about cannot connect.
  void answer(const std::string& url, Answer answer);
  // The URLs of all tasks made and of all tasks started, in order; "" for a missing URL.
  [[nodiscard]] std::vector<std::string> made() const;
  [[nodiscard]] std::vector<std::string> started() const;
  // Finishes the oldest pending request for `url`; false when there is none.
  bool finish(const std::string& url);
  // Finishes all pending requests in the order in which they were started.
  void finishAll();

 private:
  class Task;
  struct State;
  std::shared_ptr<State> state_;
};

// Keeps the lines.
class InMemorySystemLog : public SystemLog {
 public:
  void writeLine(const std::string& line) override;
  [[nodiscard]] std::vector<std::string> lines() const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

// A device, screen and locale made of plain fields.
class InMemoryDevice : public Device {
 public:
  [[nodiscard]] std::optional<std::string> identifierForVendor() const override;
  [[nodiscard]] std::shared_ptr<const Screen> mainScreen() const override;
  [[nodiscard]] bool isOperatingSystemAtLeastVersion(
      const OperatingSystemVersion& version) const override;

  std::optional<std::string> vendor;
  std::shared_ptr<const Screen> screen;
  OperatingSystemVersion system{17, 0, 0};
};

class InMemoryScreen : public Screen {
 public:
  InMemoryScreen(Size size, std::optional<Point> fixedOrigin)
      : size_(size), fixedOrigin_(fixedOrigin) {}
  [[nodiscard]] Size bounds() const override { return size_; }
  [[nodiscard]] std::optional<Point> fixedOriginInCurrentSpace() const override {
    return fixedOrigin_;
  }

 private:
  Size size_;
  std::optional<Point> fixedOrigin_;
};

class InMemoryLocale : public Locale {
 public:
  [[nodiscard]] std::optional<std::string> countryCode() const override { return country; }
  [[nodiscard]] std::optional<std::vector<std::string>> preferredLanguages() const override {
    return languages;
  }
  [[nodiscard]] std::optional<std::string> currencyName(
      std::string_view localeIdentifier, std::string_view currencyCode) const override;

  std::optional<std::string> country;
  std::optional<std::vector<std::string>> languages;
};

// Installs itself as the process's platform and takes itself back when it goes out of scope. Text,
// digests, the notification centre and the main queue are the native ones, which need no script.
class InMemoryPlatform {
 public:
  InMemoryPlatform();
  ~InMemoryPlatform();
  InMemoryPlatform(const InMemoryPlatform&) = delete;
  InMemoryPlatform& operator=(const InMemoryPlatform&) = delete;

  [[nodiscard]] InMemoryURLSession& network() { return *network_; }
  [[nodiscard]] InMemoryFileManager& files() { return *files_; }
  [[nodiscard]] InMemoryDevice& device() { return *device_; }
  [[nodiscard]] InMemoryLocale& locale() { return *locale_; }
  [[nodiscard]] std::vector<std::string> log() const { return log_->lines(); }
  // To replace a service by one that fails, before any is used.
  [[nodiscard]] Platform& services() { return *services_; }

 private:
  std::shared_ptr<InMemoryFileManager> files_;
  std::shared_ptr<InMemoryURLSession> network_;
  std::shared_ptr<InMemoryDevice> device_;
  std::shared_ptr<InMemoryLocale> locale_;
  std::shared_ptr<InMemorySystemLog> log_;
  std::shared_ptr<Platform> services_;
};

}  // namespace morvelune::testing
