// Recorder: notes what a service extension asks of its platform, and what it gets.
//
// It stands between the two as decorators of the platform's services; neither knows of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "morvelune/platform/Platform.h"

namespace morvelune::tool {

// Times are milliseconds since the recorder was made.
struct RecordedRequest {
  enum class Kind : std::uint8_t { tracking, attachment };
  enum class Outcome : std::uint8_t { pending, finished, failed };

  Kind kind = Kind::tracking;
  std::string url;         // as the payload gave it, valid or not; "" when it gave none
  std::string identifier;  // of the attachment
  Outcome outcome = Outcome::pending;
  std::optional<int> status;
  std::uintmax_t bytes = 0;  // of the body
  double startedMs = 0;
  std::optional<double> finishedMs;
  std::optional<std::string> error;
};

// A downloaded file of which the platform made no attachment. One of unknown type always is: its
// staged name has no extension that could tell the type.
struct RefusedAttachment {
  std::string identifier;
  std::string reason;
};

struct Recording {
  std::vector<RecordedRequest> requests;  // in the order in which they were started
  std::vector<std::string> log;           // in the order in which the lines were written
  std::vector<RefusedAttachment> refused;
};

// What a session does not see of a download: its entry in the payload.
struct AttachmentEntry {
  std::string identifier;
  std::string address;
};

class Recorder {
 public:
  // `entries` are those of the downloads, in the order in which they will be made.
  explicit Recorder(std::vector<AttachmentEntry> entries);

  // A copy of `platform` whose session and attachments are noted, and whose log lines are noted
  // only: a log that nobody reads must not hold up a delivery.
  [[nodiscard]] std::shared_ptr<const Platform> decorate(const Platform& platform) const;
  [[nodiscard]] double elapsedMs() const;
  // How many started requests have not completed. It falls on the main queue, after whatever a
  // request's completion queued there.
  [[nodiscard]] std::size_t pending() const;
  // What was noted so far. Nothing is noted or logged afterwards.
  [[nodiscard]] Recording finish();

 private:
  class Notes;
  class Session;
  class Attachments;
  class Log;
  std::shared_ptr<Notes> notes_;
};

}  // namespace morvelune::tool
