#include "support/LoopbackOrigin.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace morvelune::testing {
namespace {

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

// Whether either side ends the connection within that time; -1 waits until one does.
bool endsWithin(int connection, int milliseconds) {
  pollfd end{connection, POLLRDHUP, 0};
  return poll(&end, 1, milliseconds) != 0;
}

// The request; nothing when the connection ends before it has come, or when what comes is no HTTP,
// such as the start of TLS.
std::optional<ReceivedRequest> receive(int connection) {
  std::string head;
  while (head.find("\r\n\r\n") == std::string::npos) {
    char bytes[4096];
    const ssize_t count = recv(connection, bytes, sizeof bytes, 0);
    if (count <= 0) return std::nullopt;
    head.append(bytes, static_cast<std::size_t>(count));
    if (head[0] < 'A' || head[0] > 'Z') return std::nullopt;
  }
  const std::size_t target = head.find(' ') + 1;
  return ReceivedRequest{head.substr(target, head.find(' ', target) - target), head};
}

}  // namespace

LoopbackOrigin::LoopbackOrigin() : listener_(boundSocket()) {
  listen(listener_, SOMAXCONN);
  acceptor_ = std::thread([this] { acceptConnections(); });
}

LoopbackOrigin::~LoopbackOrigin() {
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
    for (const int connection : connections_) shutdown(connection, SHUT_RDWR);
  }
  received_.notify_all();
  for (std::thread& thread : threads_) thread.join();
  close(listener_);
}

std::string LoopbackOrigin::serve(const std::string& path, Reply reply) {
  const std::lock_guard lock(mutex_);
  replies_[path] = std::move(reply);
  return url(path);
}

std::string LoopbackOrigin::url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port()) + path;
}

int LoopbackOrigin::port() const {
  return portOf(listener_);
}

std::vector<ReceivedRequest> LoopbackOrigin::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

int LoopbackOrigin::closedPort() {
  static const int held = boundSocket();  // so that no other process is given the port
  return portOf(held);
}

void LoopbackOrigin::acceptConnections() {
  for (int connection = -1; (connection = accept(listener_, nullptr, nullptr)) >= 0;) {
    const std::lock_guard lock(mutex_);
    connections_.insert(connection);
    threads_.emplace_back([this, connection] { serveConnection(connection); });
  }
}

void LoopbackOrigin::serveConnection(int connection) {
  if (const auto request = receive(connection)) answer(connection, replyTo(*request));
  const std::lock_guard lock(mutex_);
  connections_.erase(connection);
  close(connection);
}

void LoopbackOrigin::answer(int connection, Reply reply) {
  using Fate = Reply::Fate;
  {
    std::unique_lock lock(mutex_);
    received_.wait(lock, [&] { return isEnding_ || requests_.size() >= reply.requests; });
  }
  const int delay = static_cast<int>(reply.delay.count());
  if (endsWithin(connection, reply.fate == Fate::silent ? -1 : delay)) return;
  if (reply.fate == Fate::reset) {
    const linger abortively{1, 0};
    setsockopt(connection, SOL_SOCKET, SO_LINGER, &abortively, sizeof abortively);
    return;
  }
  if (reply.bodySize > 0) reply.body.resize(reply.bodySize);
  std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " Scripted\r\n";
  const std::pair<std::string, std::string> closes{"Connection", "close"};
  if (std::count(reply.headers.begin(), reply.headers.end(), closes) == 0) {
    reply.headers.emplace_back("Content-Length", std::to_string(reply.body.size()));
    reply.headers.push_back(closes);
  }
  for (const auto& [name, value] : reply.headers) head += name + ": " + value + "\r\n";
  if (reply.fate == Fate::headless) head.clear();
  if (reply.fate == Fate::cutShort || reply.fate == Fate::stall || reply.fate == Fate::drip) {
    reply.body.resize(reply.body.size() / 2);
  }
  const std::string all = head.empty() ? reply.body : head + "\r\n" + reply.body;
  send(connection, all.data(), all.size(), MSG_NOSIGNAL);
  if (reply.fate == Fate::stall) endsWithin(connection, -1);
  while (reply.fate == Fate::drip && !endsWithin(connection, 200)) {
    send(connection, "\0", 1, MSG_NOSIGNAL);
  }
}

Reply LoopbackOrigin::replyTo(const ReceivedRequest& request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  received_.notify_all();
  const auto found = replies_.find(request.target.substr(0, request.target.find('?')));
  return found != replies_.end() ? found->second : Reply{.status = 404, .body = "not found\n"};
}

}  // namespace morvelune::testing
