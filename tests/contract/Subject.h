// The platforms under the contracts. A build defines subjects(); each suite runs on those that have
// its service. A rule from which a platform's own operation departs is named in `departures`, and
// what tests it is skipped there.
#pragma once

#include <gtest/gtest.h>

#include <set>

#include "morvelune/platform/Platform.h"

namespace morvelune::testing {

// A main queue, and one turn of the loop that drains it.
using Queue = std::pair<std::shared_ptr<MainQueue>, std::function<void()>>;

// A device and its locale, and what they are to tell.
using DeviceAndLocale = std::pair<std::shared_ptr<Device>, std::shared_ptr<Locale>>;
struct DeviceState {
  std::optional<std::string> vendor;
  std::optional<Size> screen;
  std::optional<std::string> country;
  std::vector<std::string> languages;
};

// A service that a platform does not have is an empty function.
struct Subject {
  std::string name;
  std::function<std::shared_ptr<Text>()> text = {};
  std::function<std::shared_ptr<Digest>()> digest = {};
  std::function<std::shared_ptr<Locale>()> locale = {};
  std::function<DeviceAndLocale(const DeviceState&)> device = {};
  std::function<std::shared_ptr<FileManager>()> files = {};
  std::function<std::shared_ptr<NotificationAttachments>()> attachments = {};
  std::function<std::shared_ptr<URLSession>()> session = {};
  std::function<Queue()> queue = {};
  std::set<std::string> departures = {};

  friend void PrintTo(const Subject& subject, std::ostream* out) { *out << subject.name; }
};

[[nodiscard]] std::vector<Subject> subjects();

template <typename Factory>
std::vector<Subject> subjectsWith(Factory Subject::*service) {
  std::vector<Subject> with = subjects();
  std::erase_if(with, [service](const Subject& each) { return !(each.*service); });
  return with;
}

// INSTANTIATE_CONTRACT(TextContract, text): the suite, on each platform with that service.
#define INSTANTIATE_CONTRACT(suite, service)                                                       \
  INSTANTIATE_TEST_SUITE_P(Platforms, suite, ::testing::ValuesIn(subjectsWith(&Subject::service)), \
                           [](const auto& tested) { return tested.param.name; })

// Skips the rest of the test on a platform that departs from the rule.
#define NEEDS_RULE(rule) \
  if (GetParam().departures.contains(rule)) GTEST_SKIP() << (rule)

}  // namespace morvelune::testing
