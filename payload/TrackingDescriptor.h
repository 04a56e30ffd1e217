// TrackingDescriptor: the addresses that a push wants requested, one per action.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "morvelune/platform/Value.h"
#include "util/TemplateFiller.h"

namespace morvelune {

// Prepares the parameters once for all actions.
class TrackingDescriptor {
 public:
  explicit TrackingDescriptor(const Dictionary& descriptor);

  // The text of an action's address, its tags filled; it need not be a valid URL. Nothing when the
  // descriptor has no base address or no entry for the action.
  [[nodiscard]] std::optional<std::string> filledAddress(std::string_view action) const;
  // What filling the address of an action costs at most, in about the time that reading a byte
  // takes; what the address grows by comes on top.
  [[nodiscard]] std::size_t fillingCost(std::string_view action) const;

 private:
  const Dictionary descriptor_;
  const TemplateFiller filler_;
};

}  // namespace morvelune
