#include "support/LoopbackOrigin.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace morvelune::testing {
namespace {

std::string lowercased(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// A socket bound to a port of the loopback interface that the system chose.
int boundSocket() {
  const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no port on the loopback interface");
  }
  return descriptor;
}

int portOf(int descriptor) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length);
  return ntohs(address.sin_port);
}

bool sendAll(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

// The first `size` bytes of `body`, or all of it and then zeros.
bool sendBody(int connection, std::string_view body, std::size_t size) {
  static constexpr std::array<char, 16384> zeros{};
  if (!sendAll(connection, body.substr(0, size))) return false;
  for (std::size_t left = size - std::min(size, body.size()); left > 0;) {
    const std::size_t count = std::min(left, zeros.size());
    if (!sendAll(connection, {zeros.data(), count})) return false;
    left -= count;
  }
  return true;
}

// Takes the next head, up to its empty line, off `buffer`; nothing once the connection has ended,
// or when what comes is no HTTP, such as the start of TLS.
std::optional<std::string> receiveHead(int connection, std::string& buffer) {
  std::size_t end = 0;
  while ((end = buffer.find("\r\n\r\n")) == std::string::npos) {
    std::array<char, 4096> bytes{};
    const ssize_t count = recv(connection, bytes.data(), bytes.size(), 0);
    if (count <= 0) return std::nullopt;
    buffer.append(bytes.data(), static_cast<std::size_t>(count));
    if (std::isupper(static_cast<unsigned char>(buffer[0])) == 0) return std::nullopt;
  }
  std::string head = buffer.substr(0, end + 2);
  buffer.erase(0, end + 4);
  return head;
}

ReceivedRequest parseHead(const std::string& head) {
  ReceivedRequest request;
  const std::size_t blank = head.find(' ');
  request.method = head.substr(0, blank);
  request.target = head.substr(blank + 1, head.find(' ', blank + 1) - blank - 1);
  for (std::size_t line = head.find("\r\n") + 2; line < head.size();) {
    const std::size_t end = head.find("\r\n", line);
    const std::size_t colon = head.find(':', line);
    const std::size_t value = head.find_first_not_of(' ', colon + 1);
    request.headers.emplace_back(lowercased(head.substr(line, colon - line)),
                                 head.substr(value, end - value));
    line = end + 2;
  }
  return request;
}

}  // namespace

class LoopbackOrigin::Server {
 public:
  Server() {
    listen(listener_, SOMAXCONN);
    acceptor_ = std::thread([this] { acceptConnections(); });
  }

  ~Server() {
    {
      const std::lock_guard lock(mutex);
      stopping_ = true;
      shutdown(listener_, SHUT_RDWR);
      for (const int connection : connections_) shutdown(connection, SHUT_RDWR);
    }
    stopped_.notify_all();
    acceptor_.join();
    for (std::thread& thread : threads_) thread.join();
    close(listener_);
  }

  [[nodiscard]] int port() const { return portOf(listener_); }

  std::mutex mutex;  // of all that follows
  std::map<std::string, Reply> replies;
  std::vector<ReceivedRequest> received;

 private:
  void acceptConnections() {
    for (int connection = -1; (connection = accept(listener_, nullptr, nullptr)) >= 0;) {
      const std::lock_guard lock(mutex);
      if (stopping_) {
        close(connection);
        return;
      }
      connections_.insert(connection);
      threads_.emplace_back([this, connection] { serveConnection(connection); });
    }
  }

  void serveConnection(int connection) {
    std::string buffer;
    for (bool open = true; open;) {
      const std::optional<std::string> head = receiveHead(connection, buffer);
      open = head && answer(connection, parseHead(*head));
    }
    const std::lock_guard lock(mutex);
    connections_.erase(connection);
    close(connection);
  }

  // Whether the connection stays open.
  bool answer(int connection, const ReceivedRequest& request) {
    const Reply reply = replyTo(request);
    if (!pause(reply.delay)) return false;
    if (reply.fate == Reply::Fate::silent) return waitForStop();
    if (reply.fate == Reply::Fate::reset) {
      const linger abortively{1, 0};
      setsockopt(connection, SOL_SOCKET, SO_LINGER, &abortively, sizeof abortively);
      return false;
    }
    if (reply.fate == Reply::Fate::headless) return sendAll(connection, reply.body) && false;
    const std::size_t size = reply.bodySize > 0 ? reply.bodySize : reply.body.size();
    std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " Scripted\r\n";
    bool closes = false;
    for (const auto& [name, value] : reply.headers) {
      head += name + ": " + value + "\r\n";
      closes = closes || (lowercased(name) == "connection" && lowercased(value) == "close");
    }
    if (!closes) head += "Content-Length: " + std::to_string(size) + "\r\n";
    const std::size_t sent = reply.fate == Reply::Fate::whole ? size : size / 2;
    if (!sendAll(connection, head + "\r\n") || !sendBody(connection, reply.body, sent))
      return false;
    if (reply.fate == Reply::Fate::stall) return waitForStop();
    return !closes && reply.fate == Reply::Fate::whole;
  }

  Reply replyTo(const ReceivedRequest& request) {
    const std::lock_guard lock(mutex);
    received.push_back(request);
    const auto found = replies.find(request.target.substr(0, request.target.find('?')));
    return found != replies.end() ? found->second : Reply{.status = 404, .body = "not found\n"};
  }

  // False when the origin ends meanwhile.
  bool pause(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex);
    return !stopped_.wait_for(lock, time, [this] { return stopping_; });
  }

  bool waitForStop() {
    std::unique_lock lock(mutex);
    stopped_.wait(lock, [this] { return stopping_; });
    return false;
  }

  bool stopping_ = false;
  std::condition_variable stopped_;
  std::set<int> connections_;
  std::vector<std::thread> threads_;  // one per connection
  const int listener_ = boundSocket();
  std::thread acceptor_;
};

std::optional<std::string> ReceivedRequest::header(const std::string& name) const {
  const auto found = std::find_if(headers.begin(), headers.end(),
                                  [&name](const auto& header) { return header.first == name; });
  return found != headers.end() ? std::optional(found->second) : std::nullopt;
}

LoopbackOrigin::LoopbackOrigin() : server_(std::make_unique<Server>()) {}
LoopbackOrigin::~LoopbackOrigin() = default;

void LoopbackOrigin::serve(const std::string& path, Reply reply) {
  const std::lock_guard lock(server_->mutex);
  server_->replies[path] = std::move(reply);
}

std::string LoopbackOrigin::url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port()) + path;
}

int LoopbackOrigin::port() const {
  return server_->port();
}

std::vector<ReceivedRequest> LoopbackOrigin::requests() const {
  const std::lock_guard lock(server_->mutex);
  return server_->received;
}

int LoopbackOrigin::closedPort() {
  const int descriptor = boundSocket();
  const int port = portOf(descriptor);
  close(descriptor);
  return port;
}

}  // namespace morvelune::testing
