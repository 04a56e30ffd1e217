// TransferLoop: the thread that moves the bytes of all of a session's transfers at once.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include "platform/linux/CompletionQueue.h"
#include "platform/linux/CurlTransfer.h"

namespace morvelune {

// Callable from any thread but its own. The thread starts with the first request.
class TransferLoop {
 public:
  // Posts what becomes of each request to `completions`, which outlives the loop.
  TransferLoop(const URLSessionOptions& options, CompletionQueue& completions);
  ~TransferLoop() { stop(); }
  TransferLoop(const TransferLoop&) = delete;
  TransferLoop& operator=(const TransferLoop&) = delete;

  // Performs the request. Fails it with NSURLErrorCancelled once the loop is stopped, and with
  // NSURLErrorResourceUnavailable when the system does not give what a loop needs.
  void start(TransferRequest request);
  // Ends all unfinished requests with NSURLErrorCancelled. Returns when all completions
  // have been posted.
  void stop();

 private:
  struct MultiDeleter {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };
  using Transfers = std::unordered_map<CURL*, std::unique_ptr<CurlTransfer>>;

  [[nodiscard]] bool isRunning();

  // On the loop's thread.
  void run();
  [[nodiscard]] bool admitStarted();
  [[nodiscard]] std::chrono::milliseconds untilRoom() const;
  void admit(TransferRequest request);
  void finishEnded();
  [[nodiscard]] std::chrono::milliseconds failIdle();
  void failAll();
  std::unique_ptr<CurlTransfer> remove(Transfers::iterator transfer);

  const URLSessionOptions options_;
  CompletionQueue& completions_;
  const std::size_t maximumTransfers_;          // at once
  std::unique_ptr<CURLM, MultiDeleter> multi_;  // null once stopped, or if it could not be made
  Transfers transfers_;                         // the thread's own, as the next one is
  std::deque<TransferRequest> waiting_;         // for a transfer to end

  std::once_flag stopOnce_;
  std::mutex mutex_;  // guards what follows; thread_ until stopped_ is set
  std::vector<TransferRequest> started_;
  bool stopped_ = false;
  std::thread thread_;
};

}  // namespace morvelune
