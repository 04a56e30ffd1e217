#include "platform/linux/TransferLoop.h"

#include <algorithm>
#include <utility>

#include "platform/linux/BackgroundThread.h"

namespace morvelune {
namespace {

using std::chrono::milliseconds;

// Nothing needs the loop to wake by itself: this only keeps a wait within an int.
constexpr milliseconds longestWait = std::chrono::hours(1);

// Called as a session is made: what libcurl's own start registers to run at the exit of the process
// then runs after the end of that session, also when it is a static object.
CURLM* makeMulti() {
  static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
  return initialised == CURLE_OK ? curl_multi_init() : nullptr;
}

}  // namespace

TransferLoop::TransferLoop(const URLSessionOptions& options, CompletionQueue& completions)
    : options_(options), completions_(completions), multi_(makeMulti()) {}

void TransferLoop::start(TransferRequest request) {
  const std::lock_guard lock(mutex_);
  if (stopped_) return completions_.post(failedTransfer(std::move(request), NSURLErrorCancelled));
  if (!multi_) return completions_.post(failedTransfer(std::move(request), NSURLErrorUnknown));
  if (!thread_.joinable()) thread_ = backgroundThread([this] { run(); });
  started_.push_back(std::move(request));
  curl_multi_wakeup(multi_.get());
}

void TransferLoop::stop() {
  std::call_once(stopOnce_, [this] {
    {
      const std::lock_guard lock(mutex_);
      stopped_ = true;  // from here on start() touches neither the thread nor libcurl
      if (multi_) curl_multi_wakeup(multi_.get());
    }
    if (thread_.joinable()) thread_.join();
    multi_.reset();
  });
}

void TransferLoop::run() {
  while (admitStarted()) {
    int running = 0;
    curl_multi_perform(multi_.get(), &running);
    finishEnded();
    const milliseconds wait = failIdle();
    curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(wait.count()), nullptr);
  }
  failAll();
}

// False when the loop is stopped.
bool TransferLoop::admitStarted() {
  std::vector<TransferRequest> started;
  {
    const std::lock_guard lock(mutex_);
    if (stopped_) return false;
    started.swap(started_);
  }
  for (TransferRequest& request : started) admit(std::move(request));
  return true;
}

void TransferLoop::admit(TransferRequest request) {
  auto transfer = std::make_unique<CurlTransfer>(std::move(request), options_);
  std::optional<int> failure = transfer->prepare();
  if (!failure && curl_multi_add_handle(multi_.get(), transfer->handle()) != CURLM_OK) {
    failure = NSURLErrorUnknown;
  }
  if (failure) return completions_.post(transfer->fail(*failure));
  CURL* const handle = transfer->handle();
  transfers_.emplace(handle, std::move(transfer));
}

void TransferLoop::finishEnded() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode result = message->data.result;  // the message goes with its transfer
    const auto transfer = remove(transfers_.find(message->easy_handle));
    completions_.post(transfer->finish(result));
  }
}

// Fails the transfers that stood still for too long; tells when the next one will have.
milliseconds TransferLoop::failIdle() {
  const auto now = std::chrono::steady_clock::now();
  milliseconds next = longestWait;
  for (auto i = transfers_.begin(); i != transfers_.end();) {
    const auto transfer = i++;
    const auto left = transfer->second->lastActivity() + options_.idleTimeout - now;
    if (left.count() > 0) {
      next = std::min(next, std::chrono::ceil<milliseconds>(left));
    } else {
      completions_.post(remove(transfer)->fail(NSURLErrorTimedOut));
    }
  }
  return next;
}

void TransferLoop::failAll() {
  while (!transfers_.empty()) {
    completions_.post(remove(transfers_.begin())->fail(NSURLErrorCancelled));
  }
  const std::lock_guard lock(mutex_);
  for (TransferRequest& request : started_) {
    completions_.post(failedTransfer(std::move(request), NSURLErrorCancelled));
  }
  started_.clear();
}

std::unique_ptr<CurlTransfer> TransferLoop::remove(Transfers::iterator transfer) {
  curl_multi_remove_handle(multi_.get(), transfer->first);
  return std::move(transfers_.extract(transfer).mapped());
}

}  // namespace morvelune
