// The parameters that every URL template may use.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "morvelune/platform/Platform.h"

namespace morvelune {

struct CommonParameter {
  std::string_view key;
  std::string (*read)(const Platform& platform);  // what the device says now
};

// Always the same ones, each key once also when case does not count.
[[nodiscard]] std::span<const CommonParameter> commonParameters();

}  // namespace morvelune
