// A real HTTP origin on the loopback interface, one connection and thread a request, on a port that
// the system chooses, whose answers are bytes and blows that the test says.
//
//   LoopbackOrigin origin;
//   origin.serve("/a.png", {.body = pngBytes()});
//   ...GET origin.url("/a.png")...
//   EXPECT_EQ(origin.requests().at(0).target, "/a.png");
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace morvelune::testing {

using Headers = std::vector<std::pair<std::string, std::string>>;

// How one path is answered.
struct Reply {
  // What becomes of the answer: sent whole; the connection reset before any byte; the connection
  // closed after half of the body that Content-Length promises; nothing ever sent; the head and
  // half of the body sent and then nothing more, or a byte now and then; the body sent alone,
  // without a head.
  enum class Fate : std::uint8_t { whole, reset, cutShort, silent, stall, drip, headless };

  int status = 200;
  // With {"Connection", "close"} the answer has no Content-Length and ends with the connection.
  Headers headers{};
  std::string body{};
  // When not 0, the body is this many bytes instead: `body`, then zeros.
  std::size_t bodySize = 0;
  std::chrono::milliseconds delay{0};  // before the head is sent
  std::size_t requests = 0;            // no answer before the origin has received so many in all
  Fate fate = Fate::whole;
};

struct ReceivedRequest {
  std::string target;  // path and query
  std::string head;
};

class LoopbackOrigin {
 public:
  LoopbackOrigin();
  // Ends all connections, silent ones too.
  ~LoopbackOrigin();

  // Answers GET of `path` (without a query) from now on, and gives its URL; any other path gets 404
  // with a short body.
  std::string serve(const std::string& path, Reply reply);
  [[nodiscard]] std::string url(const std::string& path) const;  // http://127.0.0.1:PORT + path
  [[nodiscard]] int port() const;
  // Those received so far, in the order in which they arrived.
  [[nodiscard]] std::vector<ReceivedRequest> requests() const;
  // A port of the loopback interface on which nothing listens.
  [[nodiscard]] static int closedPort();

 private:
  void acceptConnections();
  void serveConnection(int connection);
  void answer(int connection, Reply reply);
  Reply replyTo(const ReceivedRequest& request);

  mutable std::mutex mutex_;  // of all but the listener and its thread
  std::condition_variable received_;
  bool isEnding_ = false;
  std::map<std::string, Reply> replies_;
  std::vector<ReceivedRequest> requests_;
  std::set<int> connections_;
  std::vector<std::thread> threads_;  // one per connection
  const int listener_;
  std::thread acceptor_;
};

}  // namespace morvelune::testing
