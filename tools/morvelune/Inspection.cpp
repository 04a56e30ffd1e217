#include "tools/morvelune/Inspection.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

#include "detection/MediaTypes.h"
#include "morvelune/MVLConstants.h"
#include "morvelune/MVLNotificationContentExtension.h"
#include "morvelune/MVLPushHelpers.h"
#include "morvelune/MVLURLHelpers.h"
#include "morvelune/platform/ASCII.h"
#include "morvelune/platform/Path.h"
#include "payload/PayloadKeys.h"
#include "payload/TrackingDescriptor.h"
#include "platform/linux/SuggestedFilename.h"
#include "tools/morvelune/Json.h"
#include "tools/morvelune/TextTable.h"
#include "util/Tags.h"

namespace morvelune::tool {
namespace {

using Type = Value::Type;
using Types = std::initializer_list<Type>;

// The platform's documented limit for a remote notification's payload.
constexpr std::size_t mostBytes = 4096;

// The longest identifier, in bytes, under which a file can surely be staged: a file name has at
// most 255, of which the longest name of a download takes 28 ("CFNetworkDownload_XXXXXX.tmp"), two
// hyphens 2 and a globally unique string up to 61, with a process number of seven digits.
constexpr std::size_t longestIdentifier = 255 - 28 - 2 - 61;

// Integers and other numbers are one to a sender.
Type kindOf(const Value& value) {
  return value.type() == Type::real ? Type::integer : value.type();
}

std::string nameOf(Type type) {
  switch (type) {
    case Type::boolean:
      return "a boolean";
    case Type::integer:
    case Type::real:
      return "a number";
    case Type::string:
      return "a string";
    case Type::array:
      return "an array";
    case Type::dictionary:
      return "a dictionary";
    case Type::null:
    case Type::data:
    case Type::opaque:
      break;
  }
  return "null";
}

std::string namesOf(Types types) {
  std::string names;
  for (const Type type : types) names += (names.empty() ? "" : " or ") + nameOf(type);
  return names;
}

std::string join(const std::string& path, std::string_view key) {
  return (path + '.').append(key);
}

std::string element(std::string_view key, std::size_t index) {
  return std::string(key) + '[' + std::to_string(index) + ']';
}

// The names of the tags that stand in an address, each once. A name is taken to hold no character
// that separates the parts of an address, so that the text between two tags is none.
std::vector<std::string> tagsIn(const std::string& address) {
  std::vector<std::string> names;
  std::set<std::string> seen;
  const std::string lower = asciiLowercased(address);
  for (const std::string_view bar : tagDelimiters) {
    for (std::size_t open = lower.find(bar); open != std::string::npos;) {
      const std::size_t begin = open + bar.size();
      const std::size_t close = lower.find(bar, begin);
      if (close == std::string::npos) break;
      const std::string name = address.substr(begin, close - begin);
      const std::string tag = address.substr(open, close + bar.size() - open);
      const bool isTag = name.find_first_of("/?#&=%| ") == std::string::npos &&
                         MVLURLHelpers::rangeOfTag(name, tag).location == 0 && !name.empty();
      if (isTag && seen.insert(name).second) names.push_back(name);
      open = isTag ? lower.find(bar, close + bar.size()) : close;
    }
  }
  return names;
}

// Whether "aps" has a text to show, be it one that the app translates.
bool hasAlertText(const Dictionary& aps) {
  if (const auto body = aps.string("alert")) return !body->empty();
  const Dictionary alert = aps.dictionary("alert").value_or(Dictionary());
  const auto keys = {"title", "subtitle", "body", "title-loc-key", "subtitle-loc-key", "loc-key"};
  return std::any_of(keys.begin(), keys.end(),
                     [&alert](const char* key) { return !alert.string(key).value_or("").empty(); });
}

class Inspector {
 public:
  Inspector(const Dictionary& payload, std::size_t bytes) : payload_(payload) {
    result_.bytes = bytes;
  }

  Inspection inspect() {
    result_.recognised = MVLPushHelpers::isMorveluneNotification(payload_);
    if (!result_.recognised) find(codes::notRecognised, keys::identifier);
    if (result_.bytes > mostBytes) {
      find(codes::payloadTooLarge, ".", {std::to_string(result_.bytes), std::to_string(mostBytes)});
    }
    inspectAps();
    inspectTracking();
    inspectAttachments();
    inspectButtons();
    result_.customParams = MVLPushHelpers::customParamsFromUserInfo(payload_);
    return std::move(result_);
  }

 private:
  void find(const FindingCode& code, std::string path,
            std::initializer_list<std::optional<std::string_view>> details = {}) {
    result_.findings.add({&code, std::move(path), formatted(code.message, details)});
  }

  void expect(Types types, const Value& value, const std::string& path) {
    if (std::find(types.begin(), types.end(), kindOf(value)) != types.end()) return;
    find(codes::wrongType, path, {nameOf(kindOf(value)), namesOf(types)});
  }

  // The same for a key of a dictionary at `path`, when it is there.
  void expect(Types types, const Dictionary& parent, std::string_view key,
              const std::string& path = "") {
    const auto value = parent.value(key);
    if (value) expect(types, *value, path.empty() ? std::string(key) : join(path, key));
  }

  void inspectAps() {
    expect({Type::dictionary}, payload_, keys::aps);
    const Dictionary aps = payload_.dictionary(keys::aps).value_or(Dictionary());
    const Value mutableContent = aps.value("mutable-content").value_or(Value());
    if (mutableContent != Value(1) && mutableContent != Value(1.0)) {
      find(codes::noMutableContent, "aps.mutable-content");
    }
    expect({Type::string, Type::dictionary}, aps, "alert", keys::aps);
    const Dictionary alert = aps.dictionary("alert").value_or(Dictionary());
    for (const char* key : {"title", "subtitle", "body"}) {
      expect({Type::string}, alert, key, "aps.alert");
    }
    if (!hasAlertText(aps)) find(codes::noAlert, "aps.alert");
  }

  void inspectTracking() {
    if (!payload_.contains(keys::tracking)) return;
    expect({Type::dictionary}, payload_, keys::tracking);
    const Dictionary descriptor = payload_.dictionary(keys::tracking).value_or(Dictionary());
    expect({Type::string}, descriptor, keys::trackingURL, keys::tracking);
    expect({Type::dictionary}, descriptor, keys::trackingParams, keys::tracking);
    const TrackingDescriptor addresses(descriptor);
    std::size_t cost = 0;
    for (const auto& [key, entry] : descriptor) {
      if (key == keys::trackingURL || key == keys::trackingParams) continue;
      cost += addresses.fillingCost(key);
      if (cost > mostAddressCost) {
        ++result_.tracking.more;
      } else {
        cost += inspectAction(descriptor, key, entry, addresses);
      }
    }
    findUnfilledTags();
    const std::string display = MVLUNCenterTrackingActionReceived;
    if (!descriptor.contains(display)) findMissingAddress(display, whyNoText(descriptor, display));
  }

  // Gives what the address takes, filled and in the report. There, a character may take six bytes.
  std::size_t inspectAction(const Dictionary& descriptor, const std::string& name,
                            const Value& entry, const TrackingDescriptor& addresses) {
    expect({Type::string}, entry, join(keys::tracking, name));
    InspectedAction action{.name = name};
    const std::string filled = addresses.filledAddress(name).value_or("");
    const std::vector<std::string> unfilled = tagsIn(filled);
    if (!entry.stringView() || !descriptor.stringView(keys::trackingURL)) {
      findMissingAddress(name, whyNoText(descriptor, name));
    } else if (const auto url = URL::parse(filled)) {
      action.url = url->absoluteString();
      for (const std::string& tag : unfilled) noteUnfilled(tag, name);
    } else {
      findMissingAddress(name, whyNoURL(filled, unfilled));
    }
    for (const std::string& tag : unfilled) action.unfilled.add(tag, mostUnfilledListed);
    const std::size_t written =
        dump(orNull(action.url)).size() + dump(action.unfilled.entries).size();
    result_.tracking.add(std::move(action), mostListed);
    return filled.size() + written;
  }

  // A tag that several actions leave unfilled is one finding, at the first of them.
  void noteUnfilled(const std::string& tag, const std::string& action) {
    const auto [place, isNew] = unfilledAt_.try_emplace(tag, unfilled_.size());
    if (isNew) unfilled_.push_back({tag, action, 0});
    ++unfilled_[place->second].actions;
  }

  void findUnfilledTags() {
    for (const auto& [tag, firstAction, actions] : unfilled_) {
      std::string where;
      if (actions > 1) where.append(" in ").append(std::to_string(actions)).append(" actions");
      find(codes::tagUnfilled, join(keys::tracking, firstAction),
           {cut(tag), where,
            "\"params\" has no text or number for it, or an earlier one of that name was filled; "
            "give it a value or take it out"});
    }
  }

  void findMissingAddress(const std::string& action, const std::string& reason) {
    const bool isDisplay = action == MVLUNCenterTrackingActionReceived;
    find(isDisplay ? codes::trackingNoUrl : codes::actionNoUrl, join(keys::tracking, action),
         {reason});
  }

  static std::string whyNoText(const Dictionary& descriptor, const std::string& action) {
    const bool hasBase = descriptor.stringView(keys::trackingURL).has_value();
    const std::string missing = hasBase ? cut(action) : keys::trackingURL;
    return "\"mvl-tk\" has no text \"" + missing + "\", so nothing can be requested; add it";
  }

  static std::string whyNoURL(const std::string& filled, const std::vector<std::string>& unfilled) {
    const std::string noURL =
        "no valid URL, which older systems cannot request and newer ones encode; ";
    if (unfilled.empty() || filled.find('|') == std::string::npos) {
      return '"' + cut(filled) + "\" is " + noURL + "percent-encode what a URL cannot hold";
    }
    std::string tags;
    for (const std::string& tag : unfilled) {
      tags.append(tags.empty() ? "|" : ", |").append(tag).append("|");
    }
    return "what stays unfilled (" + cut(tags) + ") makes it " + noURL +
           "give it a value in \"params\" or take it out";
  }

  void inspectAttachments() {
    expect({Type::array}, payload_, MVLPayloadAttachmentsKey);
    const Array entries = payload_.array(MVLPayloadAttachmentsKey).value_or(Array());
    std::set<std::string> identifiers;
    std::size_t index = 0;
    for (const Value& entry : entries) {
      const std::string path = element(MVLPayloadAttachmentsKey, index++);
      expect({Type::dictionary}, entry, path);
      const Dictionary attachment = entry.dictionary().value_or(Dictionary());
      expect({Type::string}, attachment, MVLAttachmentURLKey, path);
      expect({Type::string}, attachment, MVLAttachmentIDKey, path);
      const auto identifier = attachment.string(MVLAttachmentIDKey);
      InspectedAttachment inspected{.identifier =
                                        identifier.value_or(keys::defaultAttachmentIdentifier)};
      inspectAddress(attachment.string(MVLAttachmentURLKey), join(path, MVLAttachmentURLKey),
                     inspected);
      const bool isFirst = identifiers.insert(inspected.identifier).second;
      const std::string idPath = join(path, MVLAttachmentIDKey);
      findUnstageable(inspected.identifier, idPath);
      if (!identifier && entries.size() > 1) {
        find(codes::attachmentIdMissing, idPath);
      } else if (!isFirst) {
        find(codes::attachmentIdRepeated, idPath, {cut(inspected.identifier)});
      }
      result_.attachments.add(std::move(inspected), mostListed);
    }
  }

  // An identifier becomes a part of a file's name.
  void findUnstageable(const std::string& identifier, const std::string& path) {
    if (identifier.find('/') != std::string::npos) find(codes::attachmentIdSlash, path);
    if (identifier.find('\0') != std::string::npos) find(codes::attachmentIdZero, path);
    if (identifier.size() > longestIdentifier) {
      find(codes::attachmentIdLong, path,
           {std::to_string(identifier.size()), std::to_string(longestIdentifier)});
    }
  }

  void inspectAddress(const std::optional<std::string>& address, const std::string& path,
                      InspectedAttachment& attachment) {
    if (!address || address->empty()) return find(codes::attachmentNoUrl, path);
    const auto url = URL::parseRFC2396(*address);
    if (!url) return find(codes::attachmentBadUrl, path);
    attachment.url = *address;
    if (!url->isHTTP()) return find(codes::attachmentScheme, path);
    if (url->scheme() == "http") find(codes::attachmentPlainHttp, path);
    for (const std::string& tag : tagsIn(*address)) {
      find(codes::tagUnfilled, path,
           {cut(tag), "", "tags are filled in tracking addresses only; write its value out"});
    }
    const std::string name = suggestedFilename(std::nullopt, *address);
    const std::string extension = pathExtension(name);
    attachment.typeByName = detection::typeOfExtension(extension);
    if (attachment.typeByName) return;
    const bool isKnown = detection::typeOfExtension(asciiLowercased(extension)).has_value();
    find(isKnown ? codes::extensionCase : codes::extensionUnknown, path, {cut(name)});
  }

  void inspectButtons() {
    expect({Type::array}, payload_, keys::buttons);
    const Array entries = payload_.array(keys::buttons).value_or(Array());
    std::map<std::string, std::size_t> firstOf;
    std::size_t index = 0;
    for (const Value& entry : entries) {
      const std::string path = element(keys::buttons, index);
      expect({Type::dictionary}, entry, path);
      const Dictionary button = entry.dictionary().value_or(Dictionary());
      expect({Type::string}, button, keys::buttonIdentifier, path);
      expect({Type::dictionary}, button, keys::buttonParams, path);
      expect({Type::boolean, Type::integer, Type::string}, button, keys::delayDismiss, path);
      const auto identifier = button.string(keys::buttonIdentifier);
      InspectedButton inspected;
      inspected.identifier = identifier;
      if (!identifier) {
        find(codes::buttonNoBid, join(path, keys::buttonIdentifier));
      } else if (const auto [first, isNew] = firstOf.try_emplace(*identifier, index); isNew) {
        inspected = tapped(*identifier, button, path);
      } else {
        find(codes::buttonBidRepeated, join(path, keys::buttonIdentifier), {cut(*identifier)});
        inspected.sameAs = first->second;
      }
      result_.buttons.add(std::move(inspected), mostListed);
      ++index;
    }
  }

  // What a tap gives when the button is the first of its identifier. The library looks for it
  // among this one alone, because a search per button would take time that grows with the square
  // of their number.
  InspectedButton tapped(const std::string& identifier, const Dictionary& button,
                         const std::string& path) {
    if (identifier == UNNotificationDefaultActionIdentifier ||
        identifier == UNNotificationDismissActionIdentifier) {
      find(codes::buttonBidReserved, join(path, keys::buttonIdentifier), {identifier});
    }
    const Dictionary payload{{keys::identifier, true}, {keys::buttons, Array{button}}};
    const UNNotificationResponse response{{{std::make_shared<const UNNotificationContent>(
                                              UNNotificationContent::Fields{.userInfo = payload})}},
                                          identifier};
    return {identifier,
            MVLNotificationContentExtension::actionCustomParams(identifier, response)
                .value_or(Dictionary()),
            MVLNotificationContentExtension::shouldDelayDismissForNotificationResponse(response)};
  }

  struct Unfilled {
    std::string tag;
    std::string firstAction;
    std::size_t actions;
  };

  const Dictionary& payload_;
  std::vector<Unfilled> unfilled_;
  std::map<std::string, std::size_t> unfilledAt_;  // where a tag stands there
  Inspection result_;
};

}  // namespace

Inspection inspect(const Dictionary& payload, std::size_t bytes) {
  return Inspector(payload, bytes).inspect();
}

}  // namespace morvelune::tool
