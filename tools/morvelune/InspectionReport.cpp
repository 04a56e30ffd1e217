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

std::string trackingText(const std::vector<InspectedAction>& tracking) {
  Rows rows;
  for (const InspectedAction& action : tracking) {
    rows.push_back({shown(action.name), action.url.value_or("no address")});
  }
  return section("\nTracking", rows);
}

std::string attachmentsText(const std::vector<InspectedAttachment>& attachments) {
  Rows rows;
  for (const InspectedAttachment& each : attachments) {
    rows.push_back({shown(each.identifier), each.typeByName.value_or("no type by name"),
                    each.url.value_or("no valid address")});
  }
  return section("\nAttachments", rows);
}

std::string buttonsText(const std::vector<InspectedButton>& buttons) {
  Rows rows;
  for (const InspectedButton& button : buttons) {
    rows.push_back({button.identifier ? shown(*button.identifier) : "no identifier",
                    button.delaysDismiss ? "delays dismissal" : "", compact(button.customParams)});
  }
  return section("\nButtons", rows);
}

std::string customParamsText(const Dictionary& customParams) {
  Rows rows;
  for (const auto& [key, value] : customParams) {
    rows.push_back({shown(key), shown(toJson(value).dump())});
  }
  return section("\nCustom parameters", rows);
}

// Through the base class: the keys are known to differ, and looking each one up again would take
// time that grows with the square of their number.
ordered_json trackingJson(const std::vector<InspectedAction>& tracking) {
  ordered_json::object_t object;
  ordered_json::object_t::Container& entries = object;
  for (const InspectedAction& action : tracking) {
    entries.emplace_back(action.name,
                         ordered_json{{"url", orNull(action.url)}, {"unfilled", action.unfilled}});
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
    list.push_back({{"bid", orNull(button.identifier)},
                    {"customParams", toJson(button.customParams)},
                    {"delayDismiss", button.delaysDismiss}});
  }
  return list;
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
  head["tracking"] = trackingJson(inspection.tracking);
  head["attachments"] = attachmentsJson(inspection.attachments);
  head["buttons"] = buttonsJson(inspection.buttons);
  head["customParams"] = toJson(inspection.customParams);
  head["findings"] = findingsJson(inspection.findings);
  return head;
}

std::string findingsText(const Findings& findings) {
  std::string text = findings.empty() ? "" : "Findings\n";
  for (const Finding& each : findings) {
    text += "  " + nameOf(each.code->severity) + ' ' + std::string(each.code->name) + " at " +
            shown(each.path) + "\n    " + each.message + '\n';
  }
  return text;
}

ordered_json findingsJson(const Findings& findings) {
  ordered_json list = ordered_json::array();
  for (const Finding& each : findings) {
    list.push_back({{"code", each.code->name},
                    {"severity", nameOf(each.code->severity)},
                    {"path", each.path},
                    {"message", each.message}});
  }
  return list;
}

}  // namespace morvelune::tool
