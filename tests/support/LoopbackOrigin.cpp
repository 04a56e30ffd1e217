#include "support/LoopbackOrigin.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <regex>
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

bool sendAll(int connection, const std::string& bytes) {
  const ssize_t sent = send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
  return sent == static_cast<ssize_t>(bytes.size());
}

// Whether either side ends the connection within that time; -1 waits until one does.
bool endsWithin(int connection, int milliseconds) {
  pollfd end{connection, POLLRDHUP, 0};
  return poll(&end, 1, milliseconds) != 0;
}

// Takes the next request off `buffer`; nothing once the connection has ended, or when what comes
// is no HTTP, such as the start of TLS.
std::optional<ReceivedRequest> receive(int connection, std::string& buffer) {
  std::size_t end = 0;
  while ((end = buffer.find("\r\n\r\n")) == std::string::npos) {
    std::array<char, 4096> bytes{};
    const ssize_t count = recv(connection, bytes.data(), bytes.size(), 0);
    if (count <= 0) return std::nullopt;
    buffer.append(bytes.data(), static_cast<std::size_t>(count));
    if (buffer[0] < 'A' || buffer[0] > 'Z') return std::nullopt;
  }
  const std::string head = buffer.substr(0, end + 2);
  buffer.erase(0, end + 4);
  const std::size_t blank = head.find(' ');
  return ReceivedRequest{.method = head.substr(0, blank),
                         .target = head.substr(blank + 1, head.find(' ', blank + 1) - blank - 1),
                         .head = head};
}

}  // namespace

std::optional<std::string> ReceivedRequest::header(const std::string& name) const {
  std::smatch found;
  const std::regex line("\n" + name + ": *([^\r]*)", std::regex::icase);
  return std::regex_search(head, found, line) ? std::optional(found.str(1)) : std::nullopt;
}

LoopbackOrigin::LoopbackOrigin() : listener_(boundSocket()) {
  listen(listener_, SOMAXCONN);
  acceptor_ = std::thread([this] { acceptConnections(); });
}

LoopbackOrigin::~LoopbackOrigin() {
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  {
    const std::lock_guard lock(mutex_);
    for (const int connection : connections_) shutdown(connection, SHUT_RDWR);
  }
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
  const int descriptor = boundSocket();
  const int port = portOf(descriptor);
  close(descriptor);
  return port;
}

void LoopbackOrigin::acceptConnections() {
  for (int connection = -1; (connection = accept(listener_, nullptr, nullptr)) >= 0;) {
    const std::lock_guard lock(mutex_);
    connections_.insert(connection);
    threads_.emplace_back([this, connection] { serveConnection(connection); });
  }
}

void LoopbackOrigin::serveConnection(int connection) {
  std::string buffer;
  for (bool open = true; open;) {
    const std::optional<ReceivedRequest> request = receive(connection, buffer);
    open = request && answer(connection, *request);
  }
  const std::lock_guard lock(mutex_);
  connections_.erase(connection);
  close(connection);
}

// Whether the connection stays open.
bool LoopbackOrigin::answer(int connection, const ReceivedRequest& request) {
  using Fate = Reply::Fate;
  Reply reply = replyTo(request);
  const int delay = static_cast<int>(reply.delay.count());
  if (endsWithin(connection, reply.fate == Fate::silent ? -1 : delay)) return false;
  if (reply.fate == Fate::reset) {
    const linger abortively{1, 0};
    setsockopt(connection, SOL_SOCKET, SO_LINGER, &abortively, sizeof abortively);
    return false;
  }
  if (reply.fate == Fate::headless) return sendAll(connection, reply.body) && false;
  if (reply.bodySize > 0) reply.body.resize(reply.bodySize);
  std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " Scripted\r\n";
  bool closes = false;
  for (const auto& [name, value] : reply.headers) {
    head.append(name).append(": ").append(value).append("\r\n");
    closes = closes || (name == "Connection" && value == "close");
  }
  if (!closes) head += "Content-Length: " + std::to_string(reply.body.size()) + "\r\n";
  if (reply.fate != Fate::whole) reply.body.resize(reply.body.size() / 2);
  if (!sendAll(connection, head + "\r\n" + reply.body)) return false;
  if (reply.fate == Fate::stall) endsWithin(connection, -1);
  return !closes && reply.fate == Fate::whole;
}

Reply LoopbackOrigin::replyTo(const ReceivedRequest& request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  const auto found = replies_.find(request.target.substr(0, request.target.find('?')));
  return found != replies_.end() ? found->second : Reply{.status = 404, .body = "not found\n"};
}

}  // namespace morvelune::testing
