#include "platform/linux/TransferLoop.h"

#include <sys/resource.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/linux/BackgroundThread.h"

namespace morvelune {
namespace {

using std::chrono::milliseconds;

// Nothing needs the loop to wake by itself: this only keeps a wait within an int.
constexpr milliseconds longestWait = std::chrono::hours(1);

// How many transfers that move may run at once, and how long one moves after it was last heard.
// Each holds some 25 KB of libcurl's, so that 256 at once would take 7 MB, which an extension does
// not have, and are no faster. One that stands still does not count, so that no silent server holds
// back another's answer for longer.
constexpr std::size_t mostMoving = 64;
constexpr milliseconds movesFor(200);

// How many transfers may run at once: each has at most four descriptors at a time, in a lookup two
// or three, then two sockets of which one will do, and a file. The process needs others. A limit
// that is raised later does not count.
std::size_t transfersByDescriptors() {
  constexpr rlim_t others = 64;
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlim_t wanted = std::min<rlim_t>(limit.rlim_cur, 1 << 20);  // it may be "infinite"
  return wanted > others + 4 ? (wanted - others) / 4 : 1;
}

// Called as a session is made: what libcurl's own start registers to run at the exit of the process
// then runs after the end of that session, also when it is a static object.
CURLM* makeMulti(std::size_t maximumTransfers) {
  static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
  CURLM* const multi = initialised == CURLE_OK ? curl_multi_init() : nullptr;
  // libcurl keeps connections for later requests; those must not take the descriptors of others.
  curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, static_cast<long>(maximumTransfers));
  curl_multi_setopt(multi, CURLMOPT_MAX_TOTAL_CONNECTIONS, static_cast<long>(maximumTransfers));
  return multi;
}

// False also when libcurl got no sockets to wake it by.
bool wake(CURLM* multi) {
  return curl_multi_wakeup(multi) == CURLM_OK;
}

}  // namespace

TransferLoop::TransferLoop(const URLSessionOptions& options, CompletionQueue& completions)
    : options_(options),
      completions_(completions),
      maximumTransfers_(transfersByDescriptors()),
      multi_(makeMulti(maximumTransfers_)) {}

void TransferLoop::start(TransferRequest request) {
  int failure = NSURLErrorResourceUnavailable;
  {
    const std::lock_guard lock(mutex_);
    if (stopped_) {
      failure = NSURLErrorCancelled;
    } else if (isRunning()) {
      started_.push_back(std::move(request));
      return;
    }
  }
  completions_.post(failedTransfer(std::move(request), failure));
}

// Wakes the loop, which waits for the lock then. False while the system does not give what a loop
// needs: its two threads, and libcurl's sockets.
bool TransferLoop::isRunning() {
  if (thread_.joinable()) return wake(multi_.get());
  if (!wake(multi_.get())) multi_.reset(makeMulti(maximumTransfers_));
  if (!wake(multi_.get()) || !completions_.start()) return false;
  thread_ = backgroundThread([this] { run(); });
  return thread_.joinable();
}

void TransferLoop::stop() {
  std::call_once(stopOnce_, [this] {
    {
      const std::lock_guard lock(mutex_);
      stopped_ = true;  // from here on start() touches neither the thread nor libcurl
      curl_multi_wakeup(multi_.get());
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
    const milliseconds wait = std::min(failIdle(), untilRoom());
    const int timeout = static_cast<int>(wait.count());
    if (curl_multi_poll(multi_.get(), nullptr, 0, timeout, nullptr) != CURLM_OK) {
      std::this_thread::sleep_for(std::min(wait, milliseconds(10)));  // where it cannot wait
    }
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
  std::move(started.begin(), started.end(), std::back_inserter(waiting_));
  for (; untilRoom() == milliseconds::zero(); waiting_.pop_front()) {
    admit(std::move(waiting_.front()));
  }
  return true;
}

// Zero when a waiting request may start now; else when one may, unless a transfer ends before.
milliseconds TransferLoop::untilRoom() const {
  if (waiting_.empty() || transfers_.size() >= maximumTransfers_) return longestWait;
  const auto now = std::chrono::steady_clock::now();
  milliseconds next = longestWait;
  std::size_t moving = 0;
  for (const auto& [handle, transfer] : transfers_) {
    const auto left = transfer->lastActivity() + movesFor - now;
    if (left.count() <= 0) continue;
    next = std::min(next, std::chrono::ceil<milliseconds>(left));
    ++moving;
  }
  return moving < mostMoving ? milliseconds::zero() : next;
}

void TransferLoop::admit(TransferRequest request) {
  auto transfer = std::make_unique<CurlTransfer>(std::move(request), options_);
  std::optional<int> failure = transfer->prepare();
  if (!failure && curl_multi_add_handle(multi_.get(), transfer->handle()) != CURLM_OK) {
    failure = NSURLErrorResourceUnavailable;
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
  {
    const std::lock_guard lock(mutex_);
    std::move(started_.begin(), started_.end(), std::back_inserter(waiting_));
    started_.clear();
  }
  for (TransferRequest& request : waiting_) {
    completions_.post(failedTransfer(std::move(request), NSURLErrorCancelled));
  }
  waiting_.clear();
}

std::unique_ptr<CurlTransfer> TransferLoop::remove(Transfers::iterator transfer) {
  curl_multi_remove_handle(multi_.get(), transfer->first);
  return std::move(transfers_.extract(transfer).mapped());
}

}  // namespace morvelune
