#include "morvelune/MVLURLHelpers.h"

#include <algorithm>
#include <limits>
#include <locale>
#include <sstream>

#include "morvelune/MVLCommonHelpers.h"
#include "morvelune/MVLConstants.h"
#include "morvelune/UIScreenMorvelune.h"
#include "morvelune/platform/Platform.h"
#include "util/Tags.h"

namespace morvelune {
namespace {

// Truncated toward zero. A NaN gives 0, and what no "%d" can show gives the nearest number that
// it can, as the platform's own conversion does.
int wholePoints(double points) {
  if (!(points > std::numeric_limits<int>::min())) {
    return points == points ? std::numeric_limits<int>::min() : 0;
  }
  if (points >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  return static_cast<int>(points);
}

std::string screenSize(const Screen* screen) {
  const Size size = screen ? screen->bounds() : Size{};
  return std::to_string(wholePoints(size.width)) + "," + std::to_string(wholePoints(size.height));
}

std::string orientationName(const std::shared_ptr<const Screen>& screen) {
  switch (mvl_currentOrientation(screen)) {
    case UIInterfaceOrientationPortrait:
    case UIInterfaceOrientationPortraitUpsideDown:
      return "portrait";
    default:
      return "landscape";
  }
}

// The first of its texts with 15, 16 and 17 significant digits that reads back as the same number,
// such as "2.5" or "1e+300".
std::string shortestText(double number) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  for (int digits = std::numeric_limits<double>::digits10;
       digits <= std::numeric_limits<double>::max_digits10; ++digits) {
    text.str("");
    text.precision(digits);
    text << number;
    std::istringstream back(text.str());
    back.imbue(std::locale::classic());
    double read = 0;
    if (back >> read && read == number) break;
  }
  return text.str();
}

// The text that a parameter's value is inserted as; empty for a value that counts as missing.
std::optional<std::string> insertedText(const Value& value) {
  if (auto text = value.string()) return text;
  if (const auto flag = value.boolean()) return *flag ? "1" : "0";
  if (auto text = value.visitInteger([](auto number) { return std::to_string(number); })) {
    return text;
  }
  if (const auto number = value.real()) return shortestText(*number);
  return std::nullopt;
}

// The common parameters with the given ones laid over them, all as text.
Dictionary mergedParameters(const Dictionary& given) {
  std::vector<Dictionary::Entry> readable;
  for (const auto& [key, value] : given) {
    if (auto text = insertedText(value)) readable.push_back({key, std::move(*text)});
  }
  return MVLURLHelpers::commonURLParameters().with(Dictionary(std::move(readable)));
}

}  // namespace

std::optional<std::string> MVLURLHelpers::filledURL(std::optional<std::string_view> url,
                                                    const std::optional<Dictionary>& parameters,
                                                    bool allParamsRequired) {
  if (!url) return std::nullopt;
  std::string filled(*url);
  for (const auto& [key, value] : mergedParameters(parameters.value_or(Dictionary()))) {
    const NSRange tag = rangeOfTag(key, filled);
    if (tag.location == NSNotFound) continue;
    const std::string_view text = *value.stringView();
    const bool isNull = text == kMVLNullValue;
    if (isNull && allParamsRequired) return std::nullopt;
    filled.replace(tag.location, tag.length, isNull ? "" : text);
  }
  return filled;
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
  const auto screen = platform->device->mainScreen();
  const auto languages = platform->locale->preferredLanguages();
  return Dictionary{
      {"idfv", platform->device->identifierForVendor().value_or("")},
      {"uid", ""},
      {"idMember", ""},
      {"s", screenSize(screen.get())},
      {"o", orientationName(screen)},
      {"country", MVLCommonHelpers::countryCode()},
      {"lang", languages && !languages->empty() ? languages->front() : ""},
  };
}

}  // namespace morvelune
