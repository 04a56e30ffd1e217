#include "tools/morvelune/Options.h"

#include <CLI/Error.hpp>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace morvelune::tool {
namespace {

Size screenSize(const std::string& text) {
  constexpr double largest = 100000;  // points; far above any screen
  const std::size_t x = text.find('x');
  if (x == std::string::npos) throw std::invalid_argument("\"" + text + "\" is no WxH");
  return {decimal(text.substr(0, x), largest), decimal(text.substr(x + 1), largest)};
}

UIInterfaceOrientation screenOrientation(const std::string& text) {
  constexpr std::array<std::pair<std::string_view, UIInterfaceOrientation>, 5> names{
      {{"portrait", UIInterfaceOrientationPortrait},
       {"portrait-upside-down", UIInterfaceOrientationPortraitUpsideDown},
       {"landscape-right", UIInterfaceOrientationLandscapeRight},
       {"landscape-left", UIInterfaceOrientationLandscapeLeft},
       {"unknown", UIInterfaceOrientationUnknown}}};
  for (const auto& [name, orientation] : names) {
    if (text == name) return orientation;
  }
  throw std::invalid_argument("\"" + text + "\" is no orientation");
}

// An empty text is an empty list.
std::vector<std::string> languageList(const std::string& text) {
  std::vector<std::string> languages;
  std::istringstream rest(text);
  for (std::string language; std::getline(rest, language, ',');) languages.push_back(language);
  return languages;
}

}  // namespace

void addOption(CLI::App& app, const char* name, const std::function<void(const std::string&)>& read,
               const char* description, const char* typeName) {
  const auto reading = [name, read](const std::string& text) {
    try {
      read(text);
    } catch (const std::invalid_argument& error) {
      throw CLI::ValidationError(name, error.what());
    }
  };
  app.add_option_function<std::string>(name, reading, description)->type_name(typeName);
}

double decimal(const std::string& text, double most) {
  const bool wellFormed = text.find_first_of("0123456789") != std::string::npos &&
                          text.find_first_not_of("0123456789.") == std::string::npos &&
                          std::count(text.begin(), text.end(), '.') <= 1;
  const double value = wellFormed ? std::strtod(text.c_str(), nullptr) : -1;
  if (value < 0 || value > most) {
    throw std::invalid_argument("\"" + text + "\" is no number from 0 to " +
                                std::to_string(static_cast<long>(most)));
  }
  return value;
}

void addDeviceOptions(CLI::App& app, DeviceProfile& device) {
  addOption(
      app, "--idfv", [&device](const auto& text) { device.identifierForVendor = text; },
      "The device's identifier for the vendor", "TEXT");
  addOption(
      app, "--screen", [&device](const auto& text) { device.screen = screenSize(text); },
      "The screen's size in points, such as 375x812", "WxH");
  addOption(
      app, "--orientation",
      [&device](const auto& text) { device.orientation = screenOrientation(text); },
      "portrait, portrait-upside-down, landscape-right, landscape-left or unknown", "NAME");
  addOption(
      app, "--country", [&device](const auto& text) { device.country = text; },
      "The country of the user's locale", "CC");
  addOption(
      app, "--languages", [&device](const auto& text) { device.languages = languageList(text); },
      "The user's languages, most preferred first", "A,B");
}

}  // namespace morvelune::tool
