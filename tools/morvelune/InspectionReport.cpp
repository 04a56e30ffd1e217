#include "tools/morvelune/InspectionReport.h"

#include <optional>
#include <utility>

#include "tools/morvelune/Json.h"
#include "tools/morvelune/TextTable.h"

namespace morvelune::tool {
namespace {

using nlohmann::ordered_json;

std::string nameOf(Severity severity) {
  return severity == Severity::error ? "error" : "warning";
}

std::string compact(const Dictionary& dictionary) {
  return dictionary.empty() ? "" : shown(toJson(dictionary).dump());
}

std::string trackingText(const Listed<InspectedAction>& tracking) {
  Rows rows;
  for (const InspectedAction& action : tracking.entries) {
    rows.push_back({shown(action.name), shown(action.url.value_or("no address"))});
  }
  return section("\nTracking", std::move(rows), tracking.more);
}

std::string attachmentsText(const Listed<InspectedAttachment>& attachments) {
  Rows rows;
  for (const InspectedAttachment& each : attachments.entries) {
    rows.push_back({shown(each.identifier), each.typeByName.value_or("no type by name"),
                    shown(each.url.value_or("no valid address"))});
  }
  return section("\nAttachments", std::move(rows), attachments.more);
}

std::string buttonsText(const Listed<InspectedButton>& buttons) {
  Rows rows;
  for (const InspectedButton& button : buttons.entries) {
    rows.push_back({button.identifier ? shown(*button.identifier) : "no identifier",
                    button.sameAs          ? "taken for an earlier one"
                    : button.delaysDismiss ? "delays dismissal"
                                           : "",
                    compact(button.customParams)});
  }
  return section("\nButtons", std::move(rows), buttons.more);
}

std::string customParamsText(const Dictionary& customParams) {
  Rows rows;
  for (const auto& [key, value] : customParams) {
    rows.push_back({shown(key), shown(toJson(value).dump())});
  }
  return section("\nCustom parameters", std::move(rows));
}

// Through the base class: the keys are known to differ, and looking each one up again would take
// time that grows with the square of their number.
ordered_json trackingJson(const std::vector<InspectedAction>& tracking) {
  ordered_json::object_t object;
  ordered_json::object_t::Container& entries = object;
  for (const InspectedAction& action : tracking) {
    ordered_json json{{"url", orNull(action.url)}, {"unfilled", action.unfilled.entries}};
    if (action.unfilled.more > 0) json["unfilledMore"] = action.unfilled.more;
    entries.emplace_back(action.name, std::move(json));
  }
  return object;
}

ordered_json attachmentsJson(const std::vector<InspectedAttachment>& attachments) {
  ordered_json list = ordered_json::array();
  for (const InspectedAttachment& each : attachments) {
    list.push_back({{"identifier", each.identifier},
                    {"url", orNull(each.url)},
                    {"typeByName", orNull(each.typeByName)}});
  }
  return list;
}

ordered_json buttonsJson(const std::vector<InspectedButton>& buttons) {
  ordered_json list = ordered_json::array();
  for (const InspectedButton& button : buttons) {
    if (button.sameAs) {
      list.push_back({{"bid", orNull(button.identifier)}, {"sameAs", *button.sameAs}});
    } else {
      list.push_back({{"bid", orNull(button.identifier)},
                      {"customParams", toJson(button.customParams)},
                      {"delayDismiss", button.delaysDismiss}});
    }
  }
  return list;
}

// How many entries of each list are not there; lists that are whole have none.
ordered_json moreJson(const Inspection& inspection) {
  ordered_json more = ordered_json::object();
  const auto add = [&more](const char* list, std::size_t count) {
    if (count > 0) more[list] = count;
  };
  add("tracking", inspection.tracking.more);
  add("attachments", inspection.attachments.more);
  add("buttons", inspection.buttons.more);
  if (!inspection.findings.more().empty()) more["findings"] = moreJson(inspection.findings);
  return more;
}

}  // namespace

std::string textReport(const std::string& name, const Inspection& inspection) {
  const std::string findings = findingsText(inspection.findings);
  return shown(name) + ": " + (inspection.recognised ? "recognised, " : "not recognised, ") +
         std::to_string(inspection.bytes) + " bytes\n" +
         (findings.empty() ? "\nNo findings\n" : '\n' + findings) +
         trackingText(inspection.tracking) + attachmentsText(inspection.attachments) +
         buttonsText(inspection.buttons) + customParamsText(inspection.customParams);
}

ordered_json jsonReport(ordered_json head, const Inspection& inspection) {
  head["recognised"] = inspection.recognised;
  head["bytes"] = inspection.bytes;
  head["tracking"] = trackingJson(inspection.tracking.entries);
  head["attachments"] = attachmentsJson(inspection.attachments.entries);
  head["buttons"] = buttonsJson(inspection.buttons.entries);
  head["customParams"] = toJson(inspection.customParams);
  head["findings"] = findingsJson(inspection.findings);
  if (ordered_json more = moreJson(inspection); !more.empty()) head["more"] = std::move(more);
  return head;
}

std::string findingsText(const Findings& findings) {
  std::string text = findings.kept().empty() ? "" : "Findings\n";
  for (const Finding& each : findings.kept()) {
    text += "  " + nameOf(each.code->severity) + ' ' + std::string(each.code->name) + " at " +
            shown(cut(each.path)) + "\n    " + each.message + '\n';
  }
  for (const auto& [code, count] : findings.more()) text += andMore(count, code);
  return text;
}

ordered_json moreJson(const Findings& findings) {
  ordered_json more = ordered_json::object();
  for (const auto& [code, count] : findings.more()) more[code] = count;
  return more;
}

ordered_json findingsJson(const Findings& findings) {
  ordered_json list = ordered_json::array();
  for (const Finding& each : findings.kept()) {
    list.push_back({{"code", each.code->name},
                    {"severity", nameOf(each.code->severity)},
                    {"path", each.path},
                    {"message", each.message}});
  }
  return list;
}

}  // namespace morvelune::tool
