// A host that brings every service itself, so that the library needs nothing but a compiler: build
// the library with -DMORVELUNE_PLATFORM=none. This host has one thread, files in memory and a
// network of one picture.
#include <algorithm>
#include <deque>
#include <iostream>
#include <map>
#include <stdexcept>
#include <utility>

#include "morvelune/MorveluneExtension.h"
#include "morvelune/platform/ASCII.h"

using namespace morvelune;

namespace {

// What this host never needs. A host that calls the string helpers must implement these.
[[noreturn]] void unavailable() {
  throw std::logic_error("this host does not have that");
}

class Files : public FileManager {
 public:
  std::optional<Data> contents(const URL& file) const override {
    const auto found = files_.find(file.path());
    if (found == files_.end()) return std::nullopt;
    return Data::copyOf(found->second);
  }

  std::optional<Error> moveItem(const URL& from, const URL& to) override {
    if (files_.contains(to.path()))
      return Error{NSCocoaErrorDomain, NSFileWriteFileExistsError, "There is such a file."};
    auto file = files_.extract(from.path());
    if (!file) return Error{NSCocoaErrorDomain, NSFileNoSuchFileError, "There is no such file."};
    file.key() = to.path();
    files_.insert(std::move(file));
    return std::nullopt;
  }

  std::string globallyUniqueString() override { return std::to_string(++unique_); }

  void write(const std::string& path, std::string bytes) { files_[path] = std::move(bytes); }
  void remove(const std::string& path) { files_.erase(path); }

 private:
  std::map<std::string, std::string> files_;
  int unique_ = 0;
};

// Answers every download with the same picture, and everything else with nothing.
class Session : public URLSession {
 public:
  explicit Session(std::shared_ptr<Files> files) : files_(std::move(files)) {}

  std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                           DataCompletion completion) override {
    return std::make_shared<Task>(*this, [url, completion = std::move(completion)] {
      std::cout << "GET " << (url ? url->absoluteString() : "nothing") << '\n';
      completion(Data{}, URLResponse{204, {}}, {});
    });
  }

  std::shared_ptr<URLSessionTask> downloadTask(std::optional<URL> url,
                                               DownloadCompletion completion) override {
    return std::make_shared<Task>(*this, [this, url, completion = std::move(completion)] {
      std::cout << "GET " << (url ? url->absoluteString() : "nothing") << '\n';
      files_->write("/tmp/download", "\x89PNG\r\n\x1A\n........");
      completion(URL::fileURL("/tmp/download"), URLResponse{200, "photo.png"}, {});
      files_->remove("/tmp/download");
    });
  }

  // Finishes the started requests, one at a time.
  void run() {
    while (!started_.empty()) {
      const auto finish = std::move(started_.front());
      started_.pop_front();
      finish();
    }
  }

 private:
  struct Task : URLSessionTask {
    Task(Session& owner, std::function<void()> what) : session(owner), finish(std::move(what)) {}
    void resume() override {
      if (finish) session.started_.push_back(std::exchange(finish, nullptr));
    }
    Session& session;
    std::function<void()> finish;  // empty once it was started
  };

  const std::shared_ptr<Files> files_;
  std::deque<std::function<void()>> started_;
};

class Attachments : public NotificationAttachments {
 public:
  Result attachment(const std::string& identifier, const URL& file,
                    std::optional<std::string_view> typeHint) const override {
    if (!typeHint)
      return Error{UNErrorDomain, UNErrorCodeAttachmentUnrecognizedType, "Nothing tells the type."};
    return std::make_shared<const UNNotificationAttachment>(identifier, file,
                                                            std::string(*typeHint));
  }
};

class Box : public Device {
 public:
  std::optional<std::string> identifierForVendor() const override { return std::nullopt; }
  std::shared_ptr<const Screen> mainScreen() const override { return nullptr; }
  bool isOperatingSystemAtLeastVersion(const OperatingSystemVersion&) const override {
    return true;
  }
};

class French : public Locale {
 public:
  std::optional<std::string> countryCode() const override { return "FR"; }
  std::optional<std::vector<std::string>> preferredLanguages() const override {
    return std::vector<std::string>{"fr-FR"};
  }
  std::optional<std::string> currencyName(std::string_view, std::string_view) const override {
    return std::nullopt;
  }
};

// Searches ASCII text; this host needs nothing else of it.
class AsciiText : public Text {
 public:
  NSRange rangeIgnoringCase(std::string_view pattern, std::string_view text) const override {
    const auto same = [](char left, char right) {
      return asciiLowercased(left) == asciiLowercased(right);
    };
    const auto at = std::search(text.begin(), text.end(), pattern.begin(), pattern.end(), same);
    if (pattern.empty() || at == text.end()) return {};
    return {static_cast<std::size_t>(at - text.begin()), pattern.size()};
  }
  std::string caseFolded(std::string_view text) const override { return asciiLowercased(text); }
  bool matches(std::string_view, std::string_view) const override { unavailable(); }
  double doubleValue(std::string_view) const override { unavailable(); }
  std::string fixedNotation(double) const override { unavailable(); }
  std::string addingPercentEncodingForQuery(std::string_view) const override { unavailable(); }
  std::string addingPercentEscapes(std::string_view) const override { unavailable(); }
  std::optional<std::string> removingPercentEncoding(std::string_view) const override {
    unavailable();
  }
};

class Digests : public Digest {
 public:
  std::array<std::byte, 16> md5(std::string_view) const override { unavailable(); }
  std::array<std::byte, 20> sha1(std::string_view) const override { unavailable(); }
};

// Shows what is posted.
class Center : public NotificationCenter {
 public:
  void post(const PostedNotification& notification) override {
    std::cout << "posted: " << notification.name << '\n';
  }
};

class Queue : public MainQueue {
 public:
  void async(std::function<void()> task) override { tasks_.push_back(std::move(task)); }

  void run() {
    for (; !tasks_.empty(); tasks_.pop_front()) tasks_.front()();
  }

 private:
  std::deque<std::function<void()>> tasks_;
};

class Log : public SystemLog {
 public:
  void writeLine(const std::string& line) override { std::cout << "log: " << line << '\n'; }
};

// A call that needs a platform says so when there is none.
void showCountry() {
  try {
    const std::string country = MVLCommonHelpers::countryCode();
    std::cout << "country: " << country << '\n';
  } catch (const std::logic_error& error) {
    std::cout << error.what() << '\n';
  }
}

}  // namespace

int main() {
  showCountry();
  const auto files = std::make_shared<Files>();
  const auto session = std::make_shared<Session>(files);
  const auto queue = std::make_shared<Queue>();
  Platform::install(std::make_shared<const Platform>(Platform{
      .urlSession = session,
      .fileManager = files,
      .notificationAttachments = std::make_shared<Attachments>(),
      .device = std::make_shared<Box>(),
      .locale = std::make_shared<French>(),
      .text = std::make_shared<AsciiText>(),
      .digest = std::make_shared<Digests>(),
      .notificationCenter = std::make_shared<Center>(),
      .mainQueue = queue,
      .systemLog = std::make_shared<Log>(),
  }));
  showCountry();

  const Dictionary payload{
      {"k2tid", "1"},
      {"mvl-tk", Dictionary{{"url", "https://track.example"}, {"display", "seen?c=|COUNTRY|"}}},
      {"mvl-atts",
       Array{Dictionary{{"att-id", "photo"}, {"att-url", "https://media.example/photo.png"}}}}};
  const UNNotificationRequest request{std::make_shared<const UNNotificationContent>(
      UNNotificationContent::Fields{.title = "Summer sale", .userInfo = payload})};
  const auto extension = std::make_shared<MVLNotificationServiceExtension>();
  extension->didReceiveNotificationRequest(request, [](const auto& content) {
    std::cout << "delivered: " << content->title().value_or("") << '\n';
    for (const auto& each : content->attachments()) {
      std::cout << "attachment: " << each->identifier() << ", " << each->type().value_or("")
                << '\n';
    }
  });
  session->run();

  MVLCommonHelpers::postNotificationOnMainThread("shown");
  queue->run();
}
