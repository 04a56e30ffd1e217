// What a device would make of a push, as far as that can be told without the network.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "morvelune/platform/Value.h"
#include "tools/morvelune/Findings.h"

namespace morvelune::tool {

// The first entries of a list, and how many more there are.
template <typename T>
struct Listed {
  std::vector<T> entries;
  std::size_t more = 0;

  void add(T entry, std::size_t most) {
    if (entries.size() < most) {
      entries.push_back(std::move(entry));
    } else {
      ++more;
    }
  }
};

struct InspectedAction {
  std::string name;
  std::optional<std::string> url = {};  // empty when there is none; a finding says why
  Listed<std::string> unfilled = {};    // the tags that no parameter filled, each once
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
  // The position of the button, from 0, for which a tap on this one is taken.
  std::optional<std::size_t> sameAs = {};
};

struct Inspection {
  bool recognised = false;  // this system sent the push
  std::size_t bytes = 0;
  // The actions of the descriptor. Those beyond mostAddressCost are counted, but not looked at.
  Listed<InspectedAction> tracking;
  Listed<InspectedAttachment> attachments;
  Listed<InspectedButton> buttons;
  Dictionary customParams;
  Findings findings;  // in the order of the payload's sections
};

// Bounds what is listed, and with it the report, whatever the payload.
inline constexpr std::size_t mostListed = 200;
inline constexpr std::size_t mostUnfilledListed = 20;  // of one action
// How much is spent on the addresses of all actions together: about the bytes of the templates and
// of the addresses that they become. What the push service carries costs less than all of it, but
// for parameters that no sender would think of.
inline constexpr std::size_t mostAddressCost = 1 << 21;

// Asks the library's functions on the installed platform; nothing is logged or fetched. A push of
// another sender is looked at as if it had been recognised. `bytes` is the payload's size.
[[nodiscard]] Inspection inspect(const Dictionary& payload, std::size_t bytes);

}  // namespace morvelune::tool
