#include "morvelune/MVLURLHelpers.h"

#include "morvelune/platform/Platform.h"
#include "util/CommonParameters.h"
#include "util/Tags.h"
#include "util/TemplateFiller.h"

namespace morvelune {

std::optional<std::string> MVLURLHelpers::filledURL(std::optional<std::string_view> url,
                                                    const std::optional<Dictionary>& parameters,
                                                    bool allParamsRequired) {
  if (!url) return std::nullopt;
  const TemplateFiller filler(parameters ? *parameters : Dictionary());
  return filler.filled(*url, allParamsRequired);
}

std::optional<std::string> MVLURLHelpers::filledURL(std::optional<std::string_view> url,
                                                    const std::optional<Dictionary>& parameters) {
  return filledURL(url, parameters, false);
}

std::optional<std::string> MVLURLHelpers::filledURL(std::optional<std::string_view> url) {
  return filledURL(url, std::nullopt, false);
}

NSRange MVLURLHelpers::rangeOfTag(std::string_view tag, std::string_view inString) {
  const auto text = Platform::current()->text;
  for (const std::string_view delimiter : tagDelimiters) {
    const std::string written = std::string(delimiter).append(tag).append(delimiter);
    const NSRange range = text->rangeIgnoringCase(written, inString);
    if (range.location != NSNotFound) return range;
  }
  return {};
}

Dictionary MVLURLHelpers::commonURLParameters() {
  const auto platform = Platform::current();
  std::vector<Dictionary::Entry> entries;
  for (const auto& [key, read] : commonParameters()) {
    entries.push_back({std::string(key), read(*platform)});
  }
  return Dictionary(std::move(entries));
}

}  // namespace morvelune
