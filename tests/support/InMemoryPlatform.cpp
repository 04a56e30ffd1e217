#include "support/InMemoryPlatform.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <tuple>
#include <utility>

namespace morvelune::testing {
namespace {

constexpr char temporaryFolder[] = "/tmp/";

Answer failure(int code, const std::string& description) {
  return {.status = 0, .error = Error{NSURLErrorDomain, code, description}};
}

// The platform's rules over the files in memory, without its limits of size.
class InMemoryNotificationAttachments : public NotificationAttachments {
 public:
  explicit InMemoryNotificationAttachments(std::shared_ptr<InMemoryFileManager> files)
      : files_(std::move(files)) {}

  [[nodiscard]] Result attachment(const std::string& identifier, const URL& file,
                                  const std::optional<std::string>& typeHint) const override {
    if (!files_->exists(file.path())) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentInvalidURL, "Invalid attachment file URL"};
    }
    if (!typeHint) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentUnrecognizedType,
                   "Unrecognized attachment file type"};
    }
    return std::make_shared<const UNNotificationAttachment>(identifier, file, *typeHint);
  }

 private:
  std::shared_ptr<InMemoryFileManager> files_;
};

}  // namespace

std::optional<Data> InMemoryFileManager::contents(const URL& file) const {
  const std::lock_guard lock(mutex_);
  const auto found = files_.find(file.path());
  if (!file.isFileURL() || found == files_.end()) return std::nullopt;
  return Data::copyOf(found->second);
}

std::optional<Error> InMemoryFileManager::moveItem(const URL& from, const URL& to) {
  const std::lock_guard lock(mutex_);
  const std::string destination = to.path();
  const std::string folder = destination.substr(0, destination.rfind('/') + 1);
  const bool validName =
      from.isFileURL() && to.isFileURL() && destination.find('\0') == std::string::npos;
  if (!validName) return Error{NSCocoaErrorDomain, NSFileWriteInvalidFileNameError, "invalid name"};
  // Folders are not modelled: those that hold a file exist.
  const bool folderExists = std::any_of(files_.begin(), files_.end(), [&folder](const auto& file) {
    return file.first.substr(0, file.first.rfind('/') + 1) == folder;
  });
  if (!folderExists || !files_.contains(from.path())) {
    return Error{NSCocoaErrorDomain, NSFileNoSuchFileError, "no such file"};
  }
  if (files_.contains(destination)) {
    return Error{NSCocoaErrorDomain, NSFileWriteFileExistsError, "file exists"};
  }
  auto node = files_.extract(from.path());
  node.key() = destination;
  files_.insert(std::move(node));
  return std::nullopt;
}

std::string InMemoryFileManager::globallyUniqueString() {
  const std::lock_guard lock(mutex_);
  return "UNIQUE" + std::to_string(++uniqueStrings_);
}

void InMemoryFileManager::write(const std::string& path, std::string bytes) {
  const std::lock_guard lock(mutex_);
  files_[path] = std::move(bytes);
}

void InMemoryFileManager::remove(const std::string& path) {
  const std::lock_guard lock(mutex_);
  files_.erase(path);
}

bool InMemoryFileManager::exists(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  return files_.contains(path);
}

std::vector<std::string> InMemoryFileManager::paths() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> paths;
  for (const auto& [path, bytes] : files_) paths.push_back(path);
  return paths;
}

struct InMemoryURLSession::State {
  explicit State(std::shared_ptr<InMemoryFileManager> fileManager)
      : files(std::move(fileManager)) {}

  struct Pending {
    std::string url;
    std::function<void(const Answer&)> complete;
  };

  std::mutex mutex;
  std::shared_ptr<InMemoryFileManager> files;
  std::map<std::string, Answer> answers;
  std::vector<std::string> made;
  std::vector<std::string> started;
  std::deque<Pending> pending;
  int downloads = 0;
  bool invalidated = false;

  // With the lock held.
  [[nodiscard]] Answer answerTo(const std::string& url) const {
    if (invalidated) return failure(NSURLErrorCancelled, "cancelled");
    const auto known = answers.find(url);
    if (known != answers.end()) return known->second;
    if (!url.starts_with("http")) return failure(NSURLErrorUnsupportedURL, "unsupported URL");
    return failure(NSURLErrorCannotConnectToHost, "cannot connect");
  }

  // Completes outside the lock, so that a completion may call the session.
  bool completeFirst(const std::function<bool(const Pending&)>& wanted) {
    std::unique_lock lock(mutex);
    const auto found = std::find_if(pending.begin(), pending.end(), wanted);
    if (found == pending.end()) return false;
    const Pending next = std::move(*found);
    pending.erase(found);
    const Answer answer = answerTo(next.url);
    lock.unlock();
    next.complete(answer);
    return true;
  }
};

class InMemoryURLSession::Task : public URLSessionTask {
 public:
  Task(std::shared_ptr<State> state, std::string url, std::function<void(const Answer&)> complete)
      : state_(std::move(state)), pending_{std::move(url), std::move(complete)} {}

  void resume() override {
    const std::lock_guard lock(state_->mutex);
    if (std::exchange(resumed_, true)) return;
    state_->started.push_back(pending_.url);
    state_->pending.push_back(std::move(pending_));
  }

 private:
  std::shared_ptr<State> state_;
  State::Pending pending_;
  bool resumed_ = false;
};

InMemoryURLSession::InMemoryURLSession(std::shared_ptr<InMemoryFileManager> files)
    : state_(std::make_shared<State>(std::move(files))) {}

InMemoryURLSession::~InMemoryURLSession() {
  InMemoryURLSession::invalidateAndCancel();
}

std::shared_ptr<URLSessionTask> InMemoryURLSession::dataTask(std::optional<URL> url,
                                                             DataCompletion completion) {
  auto complete = [completion = std::move(completion)](const Answer& answer) {
    if (answer.error) return completion({}, {}, answer.error);
    completion(Data::copyOf(answer.body), URLResponse{answer.status, answer.suggestedFilename}, {});
  };
  const std::string text = url ? url->absoluteString() : "";
  const std::lock_guard lock(state_->mutex);
  state_->made.push_back(text);
  return std::make_shared<Task>(state_, text, std::move(complete));
}

std::shared_ptr<URLSessionTask> InMemoryURLSession::downloadTask(std::optional<URL> url,
                                                                 DownloadCompletion completion) {
  auto complete = [completion = std::move(completion), state = state_](const Answer& answer) {
    if (answer.error) return completion({}, {}, answer.error);
    const std::string path =
        temporaryFolder + ("download" + std::to_string(++state->downloads)) + ".tmp";
    state->files->write(path, answer.body);
    completion(URL::fileURL(path), URLResponse{answer.status, answer.suggestedFilename}, {});
    state->files->remove(path);
  };
  const std::string text = url ? url->absoluteString() : "";
  const std::lock_guard lock(state_->mutex);
  state_->made.push_back(text);
  return std::make_shared<Task>(state_, text, std::move(complete));
}

void InMemoryURLSession::invalidateAndCancel() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->invalidated = true;
  }
  finishAll();
}

void InMemoryURLSession::answer(const std::string& url, Answer answer) {
  const std::lock_guard lock(state_->mutex);
  state_->answers[url] = std::move(answer);
}

std::vector<std::string> InMemoryURLSession::made() const {
  const std::lock_guard lock(state_->mutex);
  return state_->made;
}

std::vector<std::string> InMemoryURLSession::started() const {
  const std::lock_guard lock(state_->mutex);
  return state_->started;
}

bool InMemoryURLSession::finish(const std::string& url) {
  return state_->completeFirst([&url](const auto& pending) { return pending.url == url; });
}

void InMemoryURLSession::finishAll() {
  while (state_->completeFirst([](const auto&) { return true; })) {
  }
}

void InMemorySystemLog::writeLine(const std::string& line) {
  const std::lock_guard lock(mutex_);
  lines_.push_back(line);
}

std::vector<std::string> InMemorySystemLog::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

std::optional<std::string> InMemoryDevice::identifierForVendor() const {
  return vendor;
}

std::shared_ptr<const Screen> InMemoryDevice::mainScreen() const {
  return screen;
}

bool InMemoryDevice::isOperatingSystemAtLeastVersion(const OperatingSystemVersion& version) const {
  return std::tie(system.major, system.minor, system.patch) >=
         std::tie(version.major, version.minor, version.patch);
}

std::optional<std::string> InMemoryLocale::currencyName(std::string_view localeIdentifier,
                                                        std::string_view currencyCode) const {
  return Platform::native()->locale->currencyName(localeIdentifier, currencyCode);
}

InMemoryPlatform::InMemoryPlatform()
    : files_(std::make_shared<InMemoryFileManager>()),
      network_(std::make_shared<InMemoryURLSession>(files_)),
      device_(std::make_shared<InMemoryDevice>()),
      locale_(std::make_shared<InMemoryLocale>()),
      log_(std::make_shared<InMemorySystemLog>()),
      services_(std::make_shared<Platform>(*Platform::native())) {
  services_->urlSession = network_;
  services_->fileManager = files_;
  services_->notificationAttachments = std::make_shared<InMemoryNotificationAttachments>(files_);
  services_->device = device_;
  services_->locale = locale_;
  services_->systemLog = log_;
  Platform::install(services_);
}

InMemoryPlatform::~InMemoryPlatform() {
  Platform::install(nullptr);
}

}  // namespace morvelune::testing
