// What a device would make of a push, as far as that can be told without the network.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "morvelune/platform/Value.h"
#include "tools/morvelune/Findings.h"

namespace morvelune::tool {

struct InspectedAction {
  std::string name;
  std::optional<std::string> url = {};     // empty when there is none; a finding says why
  std::vector<std::string> unfilled = {};  // the tags that no parameter filled, each once
};

struct InspectedAttachment {
  std::string identifier;
  std::optional<std::string> url = {};         // empty when it is missing or no valid one
  std::optional<std::string> typeByName = {};  // of the file that would be fetched
};

struct InspectedButton {
  std::optional<std::string> identifier;
  Dictionary customParams;  // that a tap on it gives
  bool delaysDismiss = false;
};

struct Inspection {
  bool recognised = false;  // this system sent the push
  std::size_t bytes = 0;
  std::vector<InspectedAction> tracking;  // every action of the descriptor
  std::vector<InspectedAttachment> attachments;
  std::vector<InspectedButton> buttons;
  Dictionary customParams;
  Findings findings;  // in the order of the payload's sections
};

// Asks the library's functions on the installed platform; nothing is logged or fetched. A push of
// another sender is looked at as if it had been recognised. `bytes` is the payload's size.
[[nodiscard]] Inspection inspect(const Dictionary& payload, std::size_t bytes);

}  // namespace morvelune::tool
