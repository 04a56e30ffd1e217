#include "payload/TrackingDescriptor.h"

#include "morvelune/platform/Path.h"
#include "payload/PayloadKeys.h"

namespace morvelune {

TrackingDescriptor::TrackingDescriptor(const Dictionary& descriptor)
    : descriptor_(descriptor),
      filler_(descriptor.dictionary(keys::trackingParams).value_or(Dictionary())) {}

std::optional<std::string> TrackingDescriptor::filledAddress(std::string_view action) const {
  const auto base = descriptor_.stringView(keys::trackingURL);
  const auto component = descriptor_.stringView(action);
  if (!base || !component) return std::nullopt;
  return filler_.filled(stringByAppendingPathComponent(*base, *component), false);
}

std::size_t TrackingDescriptor::fillingCost(std::string_view action) const {
  constexpr std::size_t looksPerRead = 2;  // as long as reading one takes, with all that follows
  const std::size_t size = descriptor_.stringView(keys::trackingURL).value_or("").size() +
                           descriptor_.stringView(action).value_or("").size();
  return size * (1 + filler_.looksPerByte() / looksPerRead);
}

}  // namespace morvelune
