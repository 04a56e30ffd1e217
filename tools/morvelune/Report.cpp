#include "tools/morvelune/Report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "tools/morvelune/InspectionReport.h"
#include "tools/morvelune/Json.h"
#include "tools/morvelune/TextTable.h"

namespace morvelune::tool {
namespace {

using nlohmann::ordered_json;

std::string nameOf(Cause cause) {
  switch (cause) {
    case Cause::handedBack:
      return "handed-back";
    case Cause::timeLimit:
      return "time-limit";
    case Cause::complete:
      break;
  }
  return "complete";
}

std::string nameOf(RecordedRequest::Kind kind) {
  return kind == RecordedRequest::Kind::tracking ? "tracking" : "attachment";
}

std::string nameOf(RecordedRequest::Outcome outcome) {
  switch (outcome) {
    case RecordedRequest::Outcome::finished:
      return "finished";
    case RecordedRequest::Outcome::failed:
      return "failed";
    case RecordedRequest::Outcome::pending:
      break;
  }
  return "pending";
}

// An attachment's file as the user finds it.
struct File {
  std::string path;
  std::optional<std::uintmax_t> bytes;  // empty when it cannot be told
  bool kept = false;
};

File fileOf(const UNNotificationAttachment& attachment, const Report& report) {
  File file{.path = attachment.url().path(), .bytes = std::nullopt};
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file.path, error);
  if (!error) file.bytes = size;
  const auto kept = report.keptPaths.find(file.path);
  if (kept != report.keptPaths.end()) {
    file.path = kept->second;
    file.kept = true;
  }
  return file;
}

// To a tenth of a millisecond; more would be noise.
double rounded(double milliseconds) {
  return std::round(milliseconds * 10) / 10;
}

ordered_json contentJson(const UNNotificationContent& content, const Report& report) {
  ordered_json attachments = ordered_json::array();
  for (const auto& attachment : content.attachments()) {
    const File file = fileOf(*attachment, report);
    attachments.push_back({{"identifier", attachment->identifier()},
                           {"type", orNull(attachment->type())},
                           {"path", file.path},
                           {"bytes", orNull(file.bytes)}});
  }
  return {{"title", content.title().value_or("")},
          {"subtitle", content.subtitle().value_or("")},
          {"body", content.body().value_or("")},
          {"userInfo", toJson(content.userInfo().value_or(Dictionary()))},
          {"attachments", std::move(attachments)}};
}

ordered_json requestJson(const RecordedRequest& request) {
  ordered_json json{{"kind", nameOf(request.kind)}, {"url", request.url}};
  if (request.kind == RecordedRequest::Kind::attachment) json["identifier"] = request.identifier;
  json["outcome"] = nameOf(request.outcome);
  json["status"] = orNull(request.status);
  json["bytes"] = request.bytes;
  json["startedMs"] = rounded(request.startedMs);
  json["finishedMs"] =
      request.finishedMs ? ordered_json(rounded(*request.finishedMs)) : ordered_json();
  json["error"] = orNull(request.error);
  return json;
}

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string deliveryText(const Delivery& delivery, const Report& report) {
  Rows rows;
  const auto add = [&rows](const char* name, const std::optional<std::string>& text) {
    if (text) rows.push_back({name, shown(*text)});
  };
  add("title", delivery.content->title());
  add("subtitle", delivery.content->subtitle());
  add("body", delivery.content->body());
  for (const auto& attachment : delivery.content->attachments()) {
    const File file = fileOf(*attachment, report);
    rows.push_back({"attachment", shown(attachment->identifier()),
                    shown(attachment->type().value_or("unknown type")),
                    file.bytes ? std::to_string(*file.bytes) + " bytes" : "",
                    // Any other file is gone when this is read.
                    file.kept ? shown(file.path) : ""});
  }
  return "Delivered after " + number(delivery.afterMs) + " ms: " + nameOf(delivery.cause) + '\n' +
         aligned(rows);
}

std::vector<std::string> requestRow(const RecordedRequest& request) {
  const std::string end = request.finishedMs ? " to " + number(*request.finishedMs) : "";
  std::vector<std::string> row{nameOf(request.kind),
                               shown(request.identifier),
                               nameOf(request.outcome),
                               request.status ? std::to_string(*request.status) : "",
                               request.status ? std::to_string(request.bytes) + " bytes" : "",
                               number(request.startedMs) + end + " ms",
                               request.url.empty() ? "no address" : shown(request.url)};
  if (request.error) row.push_back(shown(*request.error));
  return row;
}

}  // namespace

std::string textReport(const Report& report) {
  std::string text = findingsText(report.findings);
  if (!text.empty()) text += '\n';
  text += report.recognised ? "Recognised: yes\n" : "Recognised: no\n";
  for (const Delivery& delivery : report.outcome.deliveries) {
    text += '\n' + deliveryText(delivery, report);
  }
  Rows requests;
  for (const RecordedRequest& request : report.outcome.recording.requests) {
    requests.push_back(requestRow(request));
  }
  Rows refused;
  for (const RefusedAttachment& each : report.outcome.recording.refused) {
    refused.push_back({shown(each.identifier), shown(each.reason)});
  }
  return text + section("\nRequests", requests) + section("\nRefused by the platform", refused);
}

std::string jsonReport(const Report& report) {
  ordered_json deliveries = ordered_json::array();
  for (const Delivery& delivery : report.outcome.deliveries) {
    deliveries.push_back({{"cause", nameOf(delivery.cause)},
                          {"afterMs", rounded(delivery.afterMs)},
                          {"content", contentJson(*delivery.content, report)}});
  }
  ordered_json requests = ordered_json::array();
  for (const RecordedRequest& request : report.outcome.recording.requests) {
    requests.push_back(requestJson(request));
  }
  ordered_json json{{"recognised", report.recognised},
                    {"deliveries", std::move(deliveries)},
                    {"requests", std::move(requests)},
                    {"log", report.outcome.recording.log},
                    {"findings", findingsJson(report.findings)}};
  if (ordered_json more = moreJson(report.findings); !more.empty()) {
    json["more"]["findings"] = std::move(more);
  }
  return dump(json) + '\n';
}

}  // namespace morvelune::tool
