#include "platform/linux/CurlTransfer.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/linux/SuggestedFilename.h"

namespace morvelune {
namespace {

int errorCode(CURLcode code) {
  switch (code) {
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_URL_MALFORMAT:
    case CURLE_BAD_FUNCTION_ARGUMENT:  // longer than libcurl takes
      return NSURLErrorUnsupportedURL;
    case CURLE_COULDNT_RESOLVE_HOST:
      return NSURLErrorCannotFindHost;
    case CURLE_COULDNT_CONNECT:
      return NSURLErrorCannotConnectToHost;
    case CURLE_OPERATION_TIMEDOUT:
      return NSURLErrorTimedOut;
    case CURLE_TOO_MANY_REDIRECTS:
      return NSURLErrorHTTPTooManyRedirects;
    case CURLE_FILESIZE_EXCEEDED:
      return NSURLErrorDataLengthExceedsMaximum;
    case CURLE_GOT_NOTHING:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
      return NSURLErrorNetworkConnectionLost;
    case CURLE_PEER_FAILED_VERIFICATION:
      return NSURLErrorServerCertificateUntrusted;
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CONNECT_ERROR:
      return NSURLErrorSecureConnectionFailed;
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_WEIRD_SERVER_REPLY:
      return NSURLErrorBadServerResponse;
    default:
      return NSURLErrorUnknown;
  }
}

// In iOS's words.
const char* description(int code) {
  switch (code) {
    case NSURLErrorCancelled:
      return "cancelled";
    case NSURLErrorTimedOut:
      return "The request timed out.";
    case NSURLErrorUnsupportedURL:
      return "unsupported URL";
    case NSURLErrorCannotFindHost:
      return "A server with the specified hostname could not be found.";
    case NSURLErrorCannotConnectToHost:
      return "Could not connect to the server.";
    case NSURLErrorNetworkConnectionLost:
      return "The network connection was lost.";
    case NSURLErrorHTTPTooManyRedirects:
      return "too many HTTP redirects";
    case NSURLErrorResourceUnavailable:
      return "resource unavailable";
    case NSURLErrorBadServerResponse:
      return "bad server response";
    case NSURLErrorDataLengthExceedsMaximum:
      return "resource exceeds maximum size";
    case NSURLErrorSecureConnectionFailed:
      return "A secure connection to the server could not be made.";
    case NSURLErrorServerCertificateUntrusted:
      return "The certificate for this server is invalid.";
    case NSURLErrorCannotCreateFile:
      return "cannot create file";
    case NSURLErrorCannotWriteToFile:
      return "cannot write file";
    default:
      return "unknown error";
  }
}

Error errorOf(int code) {
  return {NSURLErrorDomain, code, description(code)};
}

Error headersTooLarge() {
  return {NSURLErrorDomain, NSURLErrorDataLengthExceedsMaximum,
          "response headers exceed maximum size"};
}

FinishedTransfer failedWith(Error error, TransferRequest request) {
  return {std::move(request.completion), {{}, {}, {}, std::move(error)}};
}

}  // namespace

FinishedTransfer failedTransfer(TransferRequest request, int code) {
  return failedWith(errorOf(code), std::move(request));
}

CurlTransfer::CurlTransfer(TransferRequest request, const URLSessionOptions& options)
    : request_(std::move(request)), options_(options) {}

std::optional<int> CurlTransfer::prepare() {
  // libcurl would take an address without a scheme for http.
  if (!request_.url || !request_.url->isHTTP()) return NSURLErrorUnsupportedURL;
  handle_.reset(curl_easy_init());
  if (!handle_) return NSURLErrorUnknown;
  const CURLcode configured = configure();
  return configured == CURLE_OK ? std::nullopt : std::optional(errorCode(configured));
}

// Not set, because libcurl's defaults are right: GET, HTTP/2 over TLS, verified certificates, no
// .netrc, no Referer.
CURLcode CurlTransfer::configure() {
  CURLcode result = CURLE_OK;
  const auto set = [this, &result](CURLoption option, auto value) {
    if (result == CURLE_OK) result = curl_easy_setopt(handle(), option, value);
  };
  set(CURLOPT_ERRORBUFFER, said_.data());
  set(CURLOPT_URL, request_.url->absoluteString().c_str());
  set(CURLOPT_PATH_AS_IS, 1L);
  set(CURLOPT_PROTOCOLS_STR, "http,https");  // of redirects too
  set(CURLOPT_FOLLOWLOCATION, 1L);
  set(CURLOPT_MAXREDIRS, options_.maximumRedirects);
  set(CURLOPT_USERAGENT, "MorveluneExtension/1.0");
  set(CURLOPT_ACCEPT_ENCODING, "");  // all that libcurl can decode
  set(CURLOPT_COOKIEFILE, "");       // cookies, of this transfer only
  set(CURLOPT_PROXY, "");            // not even the environment's
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_QUICK_EXIT, 1L);  // a name lookup that hangs is left behind
  // libcurl would stop connecting after 300 s, even where idleTimeout is longer.
  set(CURLOPT_CONNECTTIMEOUT, static_cast<long>(options_.idleTimeout.count()));
  set(CURLOPT_TIMEOUT, static_cast<long>(options_.resourceTimeout.count()));
  // Refuses an answer by its Content-Length; receive() has the last word.
  set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(maximumBytes()));

  using Callback = std::size_t (*)(char*, std::size_t, std::size_t, void*);
  set(CURLOPT_WRITEDATA, static_cast<void*>(this));
  set(CURLOPT_WRITEFUNCTION,
      Callback([](char* bytes, std::size_t, std::size_t count, void* self) noexcept {
        const std::span received(reinterpret_cast<const std::byte*>(bytes), count);
        return static_cast<CurlTransfer*>(self)->receive(received) ? count : 0;
      }));
  set(CURLOPT_HEADERDATA, static_cast<void*>(this));
  set(CURLOPT_HEADERFUNCTION,
      Callback([](char*, std::size_t, std::size_t count, void* self) noexcept {
        return static_cast<CurlTransfer*>(self)->receiveHeader(count) ? count : 0;
      }));
  using SocketCallback = curl_socket_t (*)(void*, curlsocktype, curl_sockaddr*);
  set(CURLOPT_OPENSOCKETDATA, static_cast<void*>(this));
  set(CURLOPT_OPENSOCKETFUNCTION,
      SocketCallback([](void* self, curlsocktype, curl_sockaddr* to) noexcept {
        return static_cast<CurlTransfer*>(self)->openSocket(*to);
      }));
  return result;
}

curl_socket_t CurlTransfer::openSocket(const curl_sockaddr& to) {
  const int socket = ::socket(to.family, to.socktype | SOCK_CLOEXEC, to.protocol);
  hasNoSocket_ =
      socket < 0 && (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM);
  return socket >= 0 ? socket : CURL_SOCKET_BAD;
}

bool CurlTransfer::receiveHeader(std::size_t bytes) {
  lastActivity_ = std::chrono::steady_clock::now();
  constexpr std::int64_t keepingALine = 64;
  headerBytes_ += static_cast<std::int64_t>(bytes) + keepingALine;
  if (headerBytes_ > options_.maximumHeaderBytes) failure_ = headersTooLarge();
  return headerBytes_ <= options_.maximumHeaderBytes;
}

bool CurlTransfer::receive(std::span<const std::byte> bytes) {
  lastActivity_ = std::chrono::steady_clock::now();
  received_ += static_cast<std::int64_t>(bytes.size());
  std::optional<int> code;
  if (received_ > maximumBytes()) {
    code = NSURLErrorDataLengthExceedsMaximum;
  } else if (isDownload()) {
    code = writeToFile(bytes);
  } else {
    data_.insert(data_.end(), bytes.begin(), bytes.end());
  }
  if (code) failure_ = errorOf(*code);
  return !code;
}

// The file is made for the first bytes, so that only a request with an answer takes a descriptor
// for it. Gives a code when the system refuses.
std::optional<int> CurlTransfer::writeToFile(std::span<const std::byte> bytes) {
  if (!file_) file_ = TemporaryFile::create(options_.temporaryDirectory);
  if (!file_) return NSURLErrorCannotCreateFile;
  if (!file_->write(bytes)) return NSURLErrorCannotWriteToFile;
  return std::nullopt;
}

FinishedTransfer CurlTransfer::finish(CURLcode result) {
  if (result != CURLE_OK) return fail(errorOfResult(result));
  if (isDownload()) {
    if (const auto code = writeToFile({})) return fail(errorOf(*code));  // an empty answer's, too
    if (!file_->close()) return fail(errorOf(NSURLErrorCannotWriteToFile));
  }
  return {std::move(request_.completion),
          {response(), std::move(data_), std::move(file_), std::nullopt}};
}

FinishedTransfer CurlTransfer::fail(int code) {
  return fail(errorOf(code));
}

FinishedTransfer CurlTransfer::fail(Error error) {
  file_.reset();  // gone before the completion is called
  return failedWith(std::move(error), std::move(request_));
}

// Whether the system gave no socket, or no thread to look up the name on. The latter libcurl tells
// in words only; a text that it words otherwise one day is told as a missing host.
bool CurlTransfer::isStarved(CURLcode result) const {
  if (result == CURLE_COULDNT_CONNECT) return hasNoSocket_;
  const std::string_view said = said_.data();
  return result == CURLE_COULDNT_RESOLVE_HOST && said.find("thread") != std::string_view::npos;
}

Error CurlTransfer::errorOfResult(CURLcode result) const {
  if (failure_) return *failure_;
  if (isStarved(result)) return errorOf(NSURLErrorResourceUnavailable);
  // What libcurl says of a header line longer than it takes, too.
  long sent = 0;
  curl_easy_getinfo(handle(), CURLINFO_REQUEST_SIZE, &sent);
  if (result == CURLE_OUT_OF_MEMORY && sent > 0) return headersTooLarge();
  // libcurl says "unsupported protocol" of a redirect to another scheme, and of an answer from an
  // HTTP server that is not HTTP.
  if (result == CURLE_UNSUPPORTED_PROTOCOL && URL::unchecked(effectiveURL()).isHTTP()) {
    return errorOf(NSURLErrorBadServerResponse);
  }
  return errorOf(errorCode(result));
}

URLResponse CurlTransfer::response() const {
  long status = 0;
  curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  constexpr int lastRequest = -1;  // after all redirects
  curl_header* header = nullptr;
  std::optional<std::string_view> disposition;
  if (curl_easy_header(handle(), "Content-Disposition", 0, CURLH_HEADER, lastRequest, &header) ==
      CURLHE_OK) {
    disposition = header->value;
  }
  return {static_cast<int>(status), suggestedFilename(disposition, effectiveURL())};
}

std::string CurlTransfer::effectiveURL() const {
  const char* url = nullptr;
  curl_easy_getinfo(handle(), CURLINFO_EFFECTIVE_URL, &url);
  return url != nullptr ? url : "";
}

std::int64_t CurlTransfer::maximumBytes() const {
  return isDownload() ? options_.maximumDownloadBytes : options_.maximumDataBytes;
}

}  // namespace morvelune
