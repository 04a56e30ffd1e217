// CurlTransfer: one GET over libcurl, from its request to its outcome.
#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "morvelune/platform/URLSession.h"
#include "morvelune/platform/linux/LinuxPlatform.h"
#include "platform/linux/TemporaryFile.h"

namespace morvelune {

// What became of a request: a response and its body, or an error alone.
struct TransferOutcome {
  std::optional<URLResponse> response;
  std::vector<std::byte> data;          // the body of a transfer into memory
  std::unique_ptr<TemporaryFile> file;  // that of a transfer into a file, closed
  std::optional<Error> error;
};

using TransferCompletion = std::function<void(TransferOutcome)>;

enum class BodyDestination : std::uint8_t { memory, temporaryFile };

struct TransferRequest {
  std::optional<URL> url;
  BodyDestination destination = BodyDestination::memory;
  TransferCompletion completion;
};

// A completion and what it shall be told.
struct FinishedTransfer {
  TransferCompletion completion;
  TransferOutcome outcome;
};

// A request that failed with a code of NSURLErrorDomain.
[[nodiscard]] FinishedTransfer failedTransfer(TransferRequest request, int code);

// Used on one thread only. `options` outlives it.
class CurlTransfer {
 public:
  CurlTransfer(TransferRequest request, const URLSessionOptions& options);
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;

  // Makes the handle ready to be performed. Gives a code of NSURLErrorDomain when it cannot.
  [[nodiscard]] std::optional<int> prepare();
  [[nodiscard]] CURL* handle() const { return handle_.get(); }
  // When the server was last heard, or when the transfer was made.
  [[nodiscard]] std::chrono::steady_clock::time_point lastActivity() const { return lastActivity_; }

  // The end of a transfer: as libcurl tells it, or failed with a code of NSURLErrorDomain. The
  // transfer cannot be used any more.
  [[nodiscard]] FinishedTransfer finish(CURLcode result);
  [[nodiscard]] FinishedTransfer fail(int code);

 private:
  struct HandleDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };

  [[nodiscard]] CURLcode configure();
  [[nodiscard]] curl_socket_t openSocket(const curl_sockaddr& to);
  [[nodiscard]] bool receiveHeader(std::size_t bytes);
  [[nodiscard]] bool receive(std::span<const std::byte> bytes);
  [[nodiscard]] std::optional<int> writeToFile(std::span<const std::byte> bytes);
  [[nodiscard]] FinishedTransfer fail(Error error);
  [[nodiscard]] bool isStarved(CURLcode result) const;
  [[nodiscard]] Error errorOfResult(CURLcode result) const;
  [[nodiscard]] bool isDownload() const {
    return request_.destination == BodyDestination::temporaryFile;
  }
  [[nodiscard]] URLResponse response() const;
  [[nodiscard]] std::string effectiveURL() const;
  [[nodiscard]] std::int64_t maximumBytes() const;

  TransferRequest request_;
  const URLSessionOptions& options_;
  std::chrono::steady_clock::time_point lastActivity_ = std::chrono::steady_clock::now();
  std::array<char, CURL_ERROR_SIZE> said_{};  // by libcurl, of its error
  std::unique_ptr<CURL, HandleDeleter> handle_;
  std::unique_ptr<TemporaryFile> file_;  // of a download whose body has begun
  std::vector<std::byte> data_;
  std::int64_t received_ = 0;  // bytes of the decoded body
  bool hasNoSocket_ = false;
  std::int64_t headerBytes_ = 0;  // of all answers, and what keeping their lines takes
  std::optional<Error> failure_;  // why one of libcurl's callbacks refused
};

}  // namespace morvelune
