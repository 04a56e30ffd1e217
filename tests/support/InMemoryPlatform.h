// A platform in memory: its network, files, device and log are what the test says.
//
//   InMemoryPlatform memory;                       // installed until it goes out of scope
//   memory.network().answer("http://h/a.png", {.body = pngBytes()});
//   ...start tasks...
//   memory.network().finish("http://h/a.png");     // runs the completion, on this thread
#pragma once

#include <algorithm>
#include <deque>
#include <mutex>

#include "morvelune/platform/Platform.h"

namespace morvelune::testing {

// What a scripted server answers: a response with a body, or an error.
struct Answer {
  int status = 200;
  std::string body = {};
  std::optional<std::string> suggestedFilename = {};
  std::optional<Error> error = {};
};

// Files that exist only in memory, by path, for one thread at a time. Folders are not modelled:
// those that hold a file exist.
class InMemoryFileManager : public FileManager {
 public:
  std::optional<Data> contents(const URL& file) const override {
    const auto found = files.find(file.path());
    if (!file.isFileURL() || found == files.end() || !isReadable) return std::nullopt;
    return Data::copyOf(found->second);
  }

  std::optional<Error> moveItem(const URL& from, const URL& to) override {
    const auto error = [](int code, const char* text) {
      return Error{NSCocoaErrorDomain, code, text};
    };
    const std::string path = to.path();
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    if (!from.isFileURL() || !to.isFileURL() || path.find('\0') != std::string::npos) {
      return error(NSFileWriteInvalidFileNameError, "invalid name");
    }
    const auto inFolder = files.lower_bound(folder);
    if (!files.contains(from.path()) || inFolder == files.end() ||
        !inFolder->first.starts_with(folder)) {
      return error(NSFileNoSuchFileError, "no such file");
    }
    if (files.contains(path)) return error(NSFileWriteFileExistsError, "file exists");
    auto node = files.extract(from.path());
    node.key() = path;
    files.insert(std::move(node));
    return std::nullopt;
  }

  std::string globallyUniqueString() override {
    return "UNIQUE" + std::to_string(++uniqueStrings_);
  }

  std::map<std::string, std::string> files;  // contents by path
  bool isReadable = true;

 private:
  int uniqueStrings_ = 0;
};

// The platform's rules over the files in memory, without its limits of size.
class InMemoryNotificationAttachments : public NotificationAttachments {
 public:
  explicit InMemoryNotificationAttachments(std::shared_ptr<FileManager> files)
      : files_(std::move(files)) {}

  Result attachment(const std::string& identifier, const URL& file,
                    const std::optional<std::string>& typeHint) const override {
    if (!files_->contents(file)) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentInvalidURL, "Invalid attachment file URL"};
    }
    if (!typeHint) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentUnrecognizedType,
                   "Unrecognized attachment file type"};
    }
    return std::make_shared<const UNNotificationAttachment>(identifier, file, *typeHint);
  }

 private:
  const std::shared_ptr<FileManager> files_;
};

// A session whose requests finish when the test says so, on the test's thread, one at a time.
class InMemoryURLSession : public URLSession,
                           public std::enable_shared_from_this<InMemoryURLSession> {
 public:
  explicit InMemoryURLSession(std::shared_ptr<InMemoryFileManager> files)
      : files_(std::move(files)) {}
  ~InMemoryURLSession() override { InMemoryURLSession::invalidateAndCancel(); }

  std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                           DataCompletion completion) override {
    return task(url, [completion = std::move(completion)](const Answer& answer) {
      if (answer.error) return completion({}, {}, answer.error);
      const URLResponse response{answer.status, answer.suggestedFilename};
      completion(Data::copyOf(answer.body), response, {});
    });
  }

  std::shared_ptr<URLSessionTask> downloadTask(std::optional<URL> url,
                                               DownloadCompletion completion) override {
    return task(url, [this, completion = std::move(completion)](const Answer& answer) {
      if (answer.error) return completion({}, {}, answer.error);
      const std::string path = "/tmp/download" + std::to_string(++downloads_) + ".tmp";
      files_->files[path] = answer.body;
      completion(URL::fileURL(path), URLResponse{answer.status, answer.suggestedFilename}, {});
      files_->files.erase(path);
    });
  }

  void invalidateAndCancel() override {
    invalidated_ = true;
    finishAll();
  }

  // What requests for `url` are answered; one that nothing was said about cannot connect.
  void answer(const std::string& url, Answer answer) { answers_[url] = std::move(answer); }

  // Finishes the oldest pending request for `url`; false when there is none.
  bool finish(const std::string& url) {
    const auto isWanted = [&url](const Request& request) { return request.url == url; };
    const auto found = std::find_if(pending_.begin(), pending_.end(), isWanted);
    if (found == pending_.end()) return false;
    const Request next = std::move(*found);
    pending_.erase(found);
    next.complete(answerTo(url));
    return true;
  }
  // Finishes all pending requests in the order in which they were started.
  void finishAll() {
    while (!pending_.empty()) finish(std::string(pending_.front().url));
  }

  // The URLs of all tasks made and of all tasks started, in order; "" for a missing URL.
  std::vector<std::string> made;
  std::vector<std::string> started;
  // Called whenever a task is about to be made or started.
  std::function<void()> watch = [] {};

 private:
  struct Request {
    std::string url;
    std::function<void(const Answer&)> complete;
  };

  struct Task : URLSessionTask {
    Task(std::shared_ptr<InMemoryURLSession> from, Request what)
        : session(std::move(from)), request(std::move(what)) {}
    void resume() override {
      if (!request.complete) return;
      session->watch();
      session->started.push_back(request.url);
      session->pending_.push_back(std::exchange(request, {}));
    }
    std::shared_ptr<InMemoryURLSession> session;
    Request request;  // empty once it was started
  };

  std::shared_ptr<URLSessionTask> task(const std::optional<URL>& url,
                                       std::function<void(const Answer&)> complete) {
    watch();
    made.push_back(url ? url->absoluteString() : "");
    return std::make_shared<Task>(shared_from_this(), Request{made.back(), std::move(complete)});
  }

  Answer answerTo(const std::string& url) const {
    const auto failure = [](int code, const char* description) {
      return Answer{.error = Error{NSURLErrorDomain, code, description}};
    };
    if (invalidated_) return failure(NSURLErrorCancelled, "cancelled");
    if (const auto known = answers_.find(url); known != answers_.end()) return known->second;
    if (!url.starts_with("http")) return failure(NSURLErrorUnsupportedURL, "unsupported URL");
    return failure(NSURLErrorCannotConnectToHost, "cannot connect");
  }

  const std::shared_ptr<InMemoryFileManager> files_;
  std::map<std::string, Answer> answers_;
  std::deque<Request> pending_;
  bool invalidated_ = false;
  int downloads_ = 0;
};

// Keeps the lines, for one thread at a time.
class InMemorySystemLog : public SystemLog {
 public:
  void writeLine(const std::string& line) override { lines.push_back(line); }

  std::vector<std::string> lines;
};

// A device, screen and locale made of plain fields.
class InMemoryDevice : public Device {
 public:
  std::optional<std::string> identifierForVendor() const override { return vendor; }
  std::shared_ptr<const Screen> mainScreen() const override { return screen; }
  bool isOperatingSystemAtLeastVersion(const OperatingSystemVersion& version) const override {
    return std::tie(system.major, system.minor, system.patch) >=
           std::tie(version.major, version.minor, version.patch);
  }

  std::optional<std::string> vendor;
  std::shared_ptr<const Screen> screen;
  OperatingSystemVersion system{17, 0, 0};
};

class InMemoryScreen : public Screen {
 public:
  InMemoryScreen(Size size, std::optional<Point> fixedOrigin)
      : size_(size), fixedOrigin_(fixedOrigin) {}
  Size bounds() const override { return size_; }
  std::optional<Point> fixedOriginInCurrentSpace() const override { return fixedOrigin_; }

 private:
  const Size size_;
  const std::optional<Point> fixedOrigin_;
};

class InMemoryLocale : public Locale {
 public:
  std::optional<std::string> countryCode() const override { return country; }
  std::optional<std::vector<std::string>> preferredLanguages() const override { return languages; }
  std::optional<std::string> currencyName(std::string_view locale,
                                          std::string_view code) const override {
    return Platform::native()->locale->currencyName(locale, code);
  }

  std::optional<std::string> country;
  std::optional<std::vector<std::string>> languages;
};

// Installs itself as the process's platform and takes itself back when it goes out of scope. Text,
// digests, the notification centre and the main queue are the native ones, which need no script.
class InMemoryPlatform {
 public:
  InMemoryPlatform() {
    services_->urlSession = network_;
    services_->fileManager = files_;
    services_->notificationAttachments = std::make_shared<InMemoryNotificationAttachments>(files_);
    services_->device = device_;
    services_->locale = locale_;
    services_->systemLog = log_;
    Platform::install(services_);
  }
  ~InMemoryPlatform() { Platform::install(nullptr); }
  InMemoryPlatform(const InMemoryPlatform&) = delete;
  InMemoryPlatform& operator=(const InMemoryPlatform&) = delete;

  InMemoryURLSession& network() { return *network_; }
  InMemoryFileManager& files() { return *files_; }
  InMemoryDevice& device() { return *device_; }
  InMemoryLocale& locale() { return *locale_; }
  std::vector<std::string> log() const { return log_->lines; }

 private:
  std::shared_ptr<InMemoryFileManager> files_ = std::make_shared<InMemoryFileManager>();
  std::shared_ptr<InMemoryURLSession> network_ = std::make_shared<InMemoryURLSession>(files_);
  std::shared_ptr<InMemoryDevice> device_ = std::make_shared<InMemoryDevice>();
  std::shared_ptr<InMemoryLocale> locale_ = std::make_shared<InMemoryLocale>();
  std::shared_ptr<InMemorySystemLog> log_ = std::make_shared<InMemorySystemLog>();
  std::shared_ptr<Platform> services_ = std::make_shared<Platform>(*Platform::native());
};

}  // namespace morvelune::testing
